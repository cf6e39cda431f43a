// The fixed absolute paths of the device, each composed as system root +
// path (the root is set with FM_SetSystemRoot), and the rules that measure
// a path below the root.
#ifndef ZANSONG_SRC_COMMON_DEVICE_PATH_H_
#define ZANSONG_SRC_COMMON_DEVICE_PATH_H_

#include <string>

#include "zansong/common/sysroot.h"

namespace zansong {

// The fixed paths of the device, each defined once (in sysroot.cpp).
enum class DevicePath {
  kSongRoot,      // "/usr/local/songs/"            internal song root
  kUsbMountBase,  // "/var/volatile/run/media/sd"   USB sticks: base + "a1/"
  kTmpDir,        // "/tmp/"                        working directory
  kWorkingDb,     // "/tmp/.zansong.db"             working copy of a stick catalogue
  kSqlite3,       // "/usr/local/bin/sqlite3"
  kSongdb2json,   // "/usr/local/bin/songdb2json"
  kStripxp,       // "/usr/local/bin/stripxp.sh"
  kSchemaScript,  // "/usr/local/etc/zansong.sql"
  kJsonExport,    // "/usr/local/www/ctrl/song.json"
};

// The path as it stands on the instrument, without the system root.
const char* DevicePathOnInstrument(DevicePath which);

// System root + the device path.
std::string DevicePathFor(DevicePath which);

// If path begins with the system root, the rest of it (the path as it would
// read on the instrument); otherwise nullptr.  With the root "" every path
// is returned whole.
const char* PathBelowSystemRoot(const char* path);

// 1 when dir (which must end in "/") is the root of a USB stick: measured
// below the system root, it is 28 or 29 bytes long and begins with
// "/var/volatile/run/media/sd".  Otherwise 0.
int IsUsbStickRoot(const char* dir);

// 1 when dir is the internal song root (system root + "/usr/local/songs/").
int IsInternalSongRoot(const char* dir);

}  // namespace zansong

#endif  // ZANSONG_SRC_COMMON_DEVICE_PATH_H_
