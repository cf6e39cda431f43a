// Playlists: creating, copying, filling and removing entries.
#include <sqlite3.h>

#include <cstring>
#include <list>
#include <string>

#include "common/device_path.h"
#include "fileman/catalogue_session.h"
#include "fileman/playlist_entries.h"
#include "fileman/unique_title.h"
#include "zansong/fileman/playlists.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

using zansong::AddPlaylistEntry;
using zansong::CatalogueSession;
using zansong::PlaylistPrefixFor;

namespace {

const char kDefaultPlaylistTitle[] = "My Playlist";

bool IsPrefix(const char* prefix, const char* wanted) {
  return prefix != nullptr && std::strcmp(prefix, wanted) == 0;
}

// The internal song root when the prefix names it, else root.
std::string CatalogueRoot(const char* root, const char* prefix, const char* internalPrefix) {
  if (IsPrefix(prefix, internalPrefix))
    return zansong::DevicePathFor(zansong::DevicePath::kSongRoot);
  return root != nullptr ? root : "";
}

bool PlaylistsFull(TDBSongMan& man, const char* prefix) {
  return man.GetAlbumCount(prefix) > kAlbumLimit - 1;
}

// Creates the playlist row; its id, or 0 when the row was not written.
int CreatePlaylistRow(TDBSongMan& man, const char* title, const char* prefix) {
  int changesBefore = sqlite3_total_changes(man.db);
  int id = man.CreatePlaylist(title, prefix);
  return sqlite3_total_changes(man.db) != changesBefore ? id : 0;
}

}  // namespace

int FM_Create_New_Playlist(const char* root, const char* title) {
  const char* prefix = PlaylistPrefixFor(root);
  CatalogueSession session(root);
  if (!session.ok()) return kResultDbFail;
  TDBSongMan& man = session.man();
  if (PlaylistsFull(man, prefix)) return kResultPlaylistLimit;
  const std::string wanted =
      title != nullptr && *title != '\0' ? std::string(title) : kDefaultPlaylistTitle;
  const std::string suffix = zansong::UniqueTitleSuffix([&](const std::string& s) {
    return man.GetIDByTitle("playlist", (wanted + s).c_str(), prefix) == 0;
  });
  int id = CreatePlaylistRow(man, (wanted + suffix).c_str(), prefix);
  return id != 0 ? id : kResultCannotExecute;
}

int FH_Copy_Playlist(const char* root, std::list<int>& playlistIds, const char* srcPrefix,
                     int destPlaylistId) {
  const std::string sourceRoot = CatalogueRoot(root, srcPrefix, "l");
  const char* destPrefix = PlaylistPrefixFor(root);
  // The destination made for the first source receives the later ones too.
  int destId = destPlaylistId;
  for (int id : playlistIds) {
    TSString title;
    std::list<std::string> songPrefixes;
    std::list<int> songIds;
    {
      CatalogueSession source(sourceRoot.c_str());
      if (!source.ok()) return kResultDbFail;
      if (destId == 0) title = source.man().GetTextByID("playlist", "playlist_title", id);
      source.man().GetPSongIDPfixList(songPrefixes, songIds, id);
    }
    CatalogueSession dest(root);
    if (!dest.ok()) return kResultDbFail;
    TDBSongMan& man = dest.man();
    if (destId == 0) {
      if (PlaylistsFull(man, destPrefix)) return kResultPlaylistLimit;
      destId = man.CreatePlaylist(title.c_str(), destPrefix);
    }
    auto songPrefix = songPrefixes.begin();
    for (int songId : songIds) {
      int rc =
          AddPlaylistEntry(man, dest.batch(), destId, songId, destPrefix, (songPrefix++)->c_str());
      if (rc != kResultOk) return rc;
    }
  }
  return kResultOk;
}

int FH_Add_To_Playlist(const char* root, std::list<int>& ids, const char* srcPrefix, int playlistId,
                       const char* destPrefix, int byAlbum) {
  const std::string sourceRoot = CatalogueRoot(root, srcPrefix, "d");
  const std::string destRoot = CatalogueRoot(root, destPrefix, "l");
  for (int id : ids) {
    std::list<int> songIds;
    {
      CatalogueSession source(sourceRoot.c_str());
      if (!source.ok()) return kResultDbFail;
      if (byAlbum == 1) {
        source.man().GetSongIDList(songIds, id, false);
      } else {
        songIds.push_back(id);
      }
    }
    CatalogueSession dest(destRoot.c_str());
    if (!dest.ok()) return kResultDbFail;
    for (int songId : songIds) {
      int rc =
          AddPlaylistEntry(dest.man(), dest.batch(), playlistId, songId, destPrefix, srcPrefix);
      if (rc != kResultOk) return rc;
    }
  }
  return kResultOk;
}

int FH_delete_plsong(const char* root, std::list<int>& psongIds) {
  if (psongIds.empty()) {
    CatalogueSession session(root);
    return session.ok() ? kResultOk : kResultDbFail;
  }
  // The catalogue is closed after each deletion and opened again for the
  // next one.
  for (int id : psongIds) {
    CatalogueSession session(root);
    if (!session.ok()) return kResultDbFail;
    session.man().DeleteData("psong", "psong_id", std::to_string(id).c_str());
  }
  return kResultOk;
}

int AddToULQPlaylist(int) { return 0; }
