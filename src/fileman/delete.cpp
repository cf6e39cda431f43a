// Deleting songs and albums, files first, then their rows.
#include <sys/stat.h>

#include <array>
#include <cstring>
#include <ctime>
#include <list>
#include <string>

#include "db/prefix.h"
#include "fileman/catalogue_session.h"
#include "zansong/common/path.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/delete.h"
#include "zansong/fileman/messages.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"

using zansong::CatalogueSession;

namespace {

// Results of RemoveDirTree that the album deletion tells apart.
constexpr int kTreeRemoved = 0;
constexpr int kTreeFileKept = -3;
constexpr int kTreeOtherFilesLeft = -4;

// The category folders that are emptied but never removed.
constexpr std::array<const char*, 6> kProtectedFolders = {"Recorded Songs",
                                                          "Recorded Songs/Temporary Folder",
                                                          "Recorded Songs/Keep",
                                                          "Downloaded Songs",
                                                          "FromToPC",
                                                          ""};

// Whether anything is still at path, whether or not it can be read.
bool StillPresent(const std::string& path) {
  struct stat st;
  return ::lstat(path.c_str(), &st) == 0;
}

// Deletes the files of one song and tells whether both are gone.
bool DeleteSongFiles(const std::string& root, const SongInfo& info, const char* prefix) {
  const std::string midi = info.midiPath.c_str();
  const std::string audio = info.audioPath.c_str();
  TSString picture;
  if (!midi.empty()) {
    DeleteFile((root + midi).c_str());
    picture = ChangeFileExtSX(midi.c_str(), ".jpg");
  }
  if (!audio.empty()) {
    DeleteFile((root + audio).c_str());
    picture = ChangeFileExtSX(audio.c_str(), ".jpg");
  }
  if (zansong::PrefixIs(prefix, "y") && picture.Length() > 0) {
    const std::string path = root + picture.c_str();
    if (StillPresent(path)) DeleteFile(path.c_str());
  }
  return !(!midi.empty() && StillPresent(root + midi)) &&
         !(!audio.empty() && StillPresent(root + audio));
}

// Empties or removes the directory of album id; the album result code.
int RemoveAlbumFiles(TDBSongMan& man, const std::string& root, int id, const char* prefix,
                     bool* keepAlbumRow) {
  const std::string path = man.GetTextByID("album", "album_path", id).c_str();
  const std::string dir = root + path + "/";
  DeleteFile((dir + "zanalbum.jpg").c_str());
  std::string tree = dir;  // RemoveDirTree takes a writable buffer
  const bool withJpg = zansong::PrefixIs(prefix, "y");
  int removed;
  if (IsDeletePath(path.c_str())) {
    DeleteFile((dir + ".zanalbum").c_str());
    removed = RemoveDirTree(&tree[0], true, false, withJpg);
  } else {
    removed = RemoveDirTree(&tree[0], false, false, withJpg);
    // Not reset for the later ids of the same call.
    *keepAlbumRow = true;
  }
  if (removed == kTreeFileKept) return kResultWriteProtected;
  if (removed == kTreeRemoved || removed == kTreeOtherFilesLeft) return kResultOk;
  return kResultRepairFailed;
}

// Deletes the rows of album or playlist id; false at the first write that
// failed.
bool DeleteRows(CatalogueSession& session, int id, const char* pfix, bool playlist,
                bool keepAlbumRow) {
  TDBSongMan& man = session.man();
  const std::string key = std::to_string(id);
  if (playlist) {
    return session.Write([&] { return man.DeleteData("psong", "playlist_id", key.c_str()); }) &&
           session.Write([&] { return man.DeleteData("playlist", "playlist_id", key.c_str()); });
  }
  const bool songsGone = session.Write([&] {
    return man.DeletePsongByAlbum(id, pfix);
  }) && session.Write([&] { return man.DeleteData("song", "album_id", key.c_str()); });
  if (!songsGone || keepAlbumRow) return songsGone;
  return session.Write([&] { return man.DeleteData("album", "album_id", key.c_str()); });
}

}  // namespace

int FH_delete_song(const char* root, std::list<int>& songIds, const char* prefix) {
  CatalogueSession session(root);
  if (!session.ok()) return kResultDbFail;
  TDBSongMan& man = session.man();
  const std::string rootText = root != nullptr ? root : "";
  const char* pfix = prefix != nullptr ? prefix : "";
  for (int id : songIds) {
    SongInfo info;
    if (!man.GetSongData(id, &info)) return kResultNoData;
    // A file that is still there is found by looking, not by the delete
    // call's result; its rows stay.
    if (!DeleteSongFiles(rootText, info, pfix)) return kResultDeleteError;
    const std::string key = std::to_string(id);
    const bool deleted =
        session.Write([&] { return man.DeleteData("song", "song_id", key.c_str()); }) &&
        session.Write(
            [&] { return man.DeleteData2("psong", "song_id", key.c_str(), "pfix", pfix); });
    if (!deleted) return kResultDbFail;
  }
  return session.Finish(kResultOk, kResultDbFail);
}

int FH_delete_album(const char* root, std::list<int>& ids, const char* prefix) {
  CatalogueSession session(root);
  if (!session.ok()) return kResultDbFail;
  TDBSongMan& man = session.man();
  const std::string rootText = root != nullptr ? root : "";
  const char* pfix = prefix != nullptr ? prefix : "";
  const bool playlists = zansong::IsPlaylistPrefix(pfix);
  bool keepAlbumRow = false;
  for (int id : ids) {
    // An id without a row would read as the storage root, a protected
    // folder that would be emptied of its songs.
    if (!playlists && man.GetIntByID("album", "album_id", id) != id) return kResultNoData;
    int code = playlists ? kResultOk : RemoveAlbumFiles(man, rootText, id, pfix, &keepAlbumRow);
    if (code != kResultOk && code != kResultRepairFailed) return code;
    PrintRemoconMessage(kMsgDeleting, kButtonNone);
    if (!DeleteRows(session, id, pfix, playlists, keepAlbumRow)) return kResultDbFail;
    // The lock is not held while the next album's files are deleted.
    if (!session.Commit()) return kResultDbFail;
    if (code == kResultRepairFailed) return code;
  }
  return kResultOk;
}

bool IsDeletePath(const char* albumPath) {
  const char* path = albumPath != nullptr ? albumPath : "";
  for (const char* folder : kProtectedFolders) {
    if (std::strcmp(path, folder) == 0) return false;
  }
  return true;
}

TSString GetTodaysDateString() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[16] = "";
  std::strftime(text, sizeof text, "%Y-%m-%d", &local);
  return TSString(text);
}
