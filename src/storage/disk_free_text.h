// The free-space text of the screen, shared by GetDiskFreeString and the
// tests of its thresholds.
#ifndef ZANSONG_SRC_STORAGE_DISK_FREE_TEXT_H_
#define ZANSONG_SRC_STORAGE_DISK_FREE_TEXT_H_

#include "zansong/common/tsstring.h"

namespace zansong {

// The free-space text for a byte count: "x.x GB" (FormatFloat "2.1" of
// bytes / 2^30, negative values shown as 0) from 1073741824 bytes up,
// "xxx.x MB" ("3.1" of bytes / 2^20) from 1048576 up, else "xxx.x KB"
// ("3.1" of bytes / 1024).  The thresholds apply to the magnitude.
TSString DiskFreeText(long long freeBytes);

}  // namespace zansong

#endif  // ZANSONG_SRC_STORAGE_DISK_FREE_TEXT_H_
