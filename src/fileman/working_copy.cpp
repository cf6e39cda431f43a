// RefreshWorkingCopy: the working copy starts as the stick's own catalogue.
#include "fileman/working_copy.h"

#include <string>

#include "common/device_path.h"
#include "zansong/db/dbman.h"
#include "zansong/storage/files.h"

namespace zansong {

void RefreshWorkingCopy(const TSString& root) {
  if (!IsUsbStickRoot(root.c_str())) return;
  TSString stickFile = root + ".zansong.db";
  if (FileExists(stickFile.c_str())) {
    TSString dir = root;
    usbdb_copy(dir);
    return;
  }
  DeleteFile(DevicePathFor(DevicePath::kWorkingDb).c_str());
}

}  // namespace zansong
