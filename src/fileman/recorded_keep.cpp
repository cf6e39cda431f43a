// Keeping a recording, and deleting the internal recording.
#include <list>

#include "common/device_path.h"
#include "common/process.h"
#include "db/usb_catalogue.h"
#include "fileman/catalogue_session.h"
#include "zansong/common/tsstring.h"
#include "zansong/db/dbman.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/copy.h"
#include "zansong/fileman/delete.h"
#include "zansong/fileman/recorded.h"
#include "zansong/fileman/rename.h"
#include "zansong/result_codes.h"

namespace {

const char kInternalRecAlbum[] = "rec";
const char kInternalRecPrefix[] = "i";
constexpr int kRenameSong = 0;
constexpr int kRenameFiles = 1;
constexpr int kKeepAlbum = 0;

}  // namespace

int FM_MoveToKeep(const char* dir, int song_id, const char* title) {
  TSString root(dir);
  if (root.Length() == 0 || root[root.Length() - 1] != '/') root += "/";
  usbdb_copy(root);
  int result = FH_rename(root.c_str(), song_id, title, kRenameSong, kRenameFiles);
  if (result != kResultOk) return result;
  std::list<int> ids{song_id};
  result = FH_copy_song_usb(root.c_str(), ids, kKeepAlbum);
  // The stick keeps its old catalogue when the backup fails: the move is
  // not on it.
  if (!zansong::BackupUsbCatalogue(root.c_str()) && result == kResultOk) return kResultDbFail;
  return result;
}

void FM_Delete_InternalRecord() {
  const std::string root = zansong::DevicePathFor(zansong::DevicePath::kSongRoot);
  int id = 0;
  {
    zansong::CatalogueSession session(root.c_str());
    if (session.ok()) id = session.man().GetAlbumIDByPath(kInternalRecAlbum);
  }
  if (id < 1) return;
  std::list<int> ids{id};
  FH_delete_album(root.c_str(), ids, kInternalRecPrefix);
  zansong::SyncFileSystems();
}
