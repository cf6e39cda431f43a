// Playlists: creating, copying, filling and removing entries.
#include <list>
#include <string>

#include "common/device_path.h"
#include "db/prefix.h"
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

// The internal song root when the prefix names it, else root.
std::string CatalogueRoot(const char* root, const char* prefix, const char* internalPrefix) {
  if (zansong::PrefixIs(prefix, internalPrefix))
    return zansong::DevicePathFor(zansong::DevicePath::kSongRoot);
  return root != nullptr ? root : "";
}

bool PlaylistsFull(TDBSongMan& man, const char* prefix) {
  return man.GetAlbumCount(prefix) > kAlbumLimit - 1;
}

// Creates the playlist row; its id, or 0 when the row was not written.
int CreatePlaylistRow(CatalogueSession& session, const char* title, const char* prefix) {
  return session.Insert([&] { return session.man().CreatePlaylist(title, prefix); });
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
  int id = CreatePlaylistRow(session, (wanted + suffix).c_str(), prefix);
  return session.Finish(id != 0 ? id : kResultCannotExecute, kResultCannotExecute);
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
      destId = CreatePlaylistRow(dest, title.c_str(), destPrefix);
      if (destId == 0) return kResultCannotExecute;
    }
    auto songPrefix = songPrefixes.begin();
    for (int songId : songIds) {
      int rc = AddPlaylistEntry(dest, destId, songId, destPrefix, (songPrefix++)->c_str());
      if (rc != kResultOk) return rc;
    }
    // The entries of the last round of the batch are only written here.
    if (!dest.Close()) return kResultCannotExecute;
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
      int rc = AddPlaylistEntry(dest, playlistId, songId, destPrefix, srcPrefix);
      if (rc != kResultOk) return rc;
    }
    if (!dest.Close()) return kResultCannotExecute;
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
    const std::string key = std::to_string(id);
    const bool deleted =
        session.Write([&] { return session.man().DeleteData("psong", "psong_id", key.c_str()); });
    if (!deleted || !session.Close()) return kResultDbFail;
  }
  return kResultOk;
}

int AddToULQPlaylist(int) { return 0; }
