// FM_FilenameAndMtimeExists: whether a download is filed already, and
// bringing its texts up to date when it is.
#include "fileman/catalogue_session.h"
#include "fileman/download_record.h"
#include "fileman/working_copy.h"
#include "zansong/db/dbman.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/download.h"
#include "zansong/storage/files.h"

namespace {

constexpr char kPrefix[] = "y";

// Sets table.field of row id to value when it differs; true when it wrote.
bool UpdateText(TDBSongMan& man, const char* table, const char* field, int id,
                const TSString& value) {
  if (man.GetTextByID(table, field, id) == value) return false;
  return man.SetTextByID(table, field, id, value.c_str()) != 0;
}

// Brings the texts of song id, and of its album when the record names one,
// up to date from the record.  True when anything was written.
bool UpdateTexts(TDBSongMan& man, const TSString& root, int id, const zansong::DownloadTexts& r) {
  bool updated = false;
  if (r.songTitle.Length() > 0) updated |= UpdateText(man, "song", "song_title", id, r.songTitle);
  updated |= UpdateText(man, "song", "genre", id, r.genre);
  updated |= UpdateText(man, "song", "composer", id, r.composer);
  if (r.albumDir.Length() == 0 || r.albumTitle.Length() == 0) return updated;
  const TSString albumPath = TSString("Downloaded Songs/") + r.albumDir;
  const int albumId = man.GetAlbumIDByPath(albumPath.c_str());
  if (albumId != 0 && UpdateText(man, "album", "album_title", albumId, r.albumTitle)) {
    // The title file carries the title into a later registration.
    CreateAlbumTitleFile((root + albumPath + "/.zanalbum").c_str(), r.albumTitle.c_str());
    updated = true;
  }
  return updated;
}

}  // namespace

int FM_FilenameAndMtimeExists(const char* dir, const char* fileName, const DownloadRecord* rec) {
  zansong::DownloadTexts r;
  if (dir == nullptr || dir[0] == '\0' || rec == nullptr) return 0;
  if (!zansong::ReadDownloadRecord(*rec, &r) || r.mtime.Length() == 0) return 0;
  TSString root = zansong::RootWithSlash(dir);
  const TSString name(fileName);

  zansong::RefreshWorkingCopy(root);
  bool updated = false;
  int found = 0;
  {
    zansong::CatalogueSession session(root.c_str());
    if (!session.ok()) return 0;
    TDBSongMan& man = session.man();
    int id = man.GetSongIDByFilenameAndMtime(r.albumDir.c_str(), name.c_str(), r.mtime.c_str(),
                                             kPrefix, false);
    if (id != 0) {
      updated = UpdateTexts(man, root, id, r);
      found = 1;
    } else if (man.GetSongIDByFilenameAndMtime(r.albumDir.c_str(), name.c_str(), r.mtime.c_str(),
                                               kPrefix, true) != 0) {
      found = 1;
    }
  }
  if (updated) usbdb_backup(root);
  return found;
}
