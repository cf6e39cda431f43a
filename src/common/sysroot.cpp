// The system root and the fixed paths of the device below it.
#include "zansong/common/sysroot.h"

#include "common/device_path.h"

#include <cstring>

namespace {

std::string g_system_root;

constexpr const char* kUsbStickPrefix = "/var/volatile/run/media/sd";

}  // namespace

extern "C" void FM_SetSystemRoot(const char* prefix) {
  g_system_root = prefix == nullptr ? "" : prefix;
  while (!g_system_root.empty() && g_system_root.back() == '/') g_system_root.pop_back();
}

extern "C" const char* FM_GetSystemRoot() { return g_system_root.c_str(); }

namespace zansong {

const char* DevicePathOnInstrument(DevicePath which) {
  switch (which) {
    case DevicePath::kSongRoot:
      return "/usr/local/songs/";
    case DevicePath::kUsbMountBase:
      return kUsbStickPrefix;
    case DevicePath::kTmpDir:
      return "/tmp/";
    case DevicePath::kWorkingDb:
      return "/tmp/.zansong.db";
    case DevicePath::kSqlite3:
      return "/usr/local/bin/sqlite3";
    case DevicePath::kSongdb2json:
      return "/usr/local/bin/songdb2json";
    case DevicePath::kStripxp:
      return "/usr/local/bin/stripxp.sh";
    case DevicePath::kSchemaScript:
      return "/usr/local/etc/zansong.sql";
    case DevicePath::kJsonExport:
      return "/usr/local/www/ctrl/song.json";
  }
  return "";
}

std::string DevicePathFor(DevicePath which) {
  return g_system_root + DevicePathOnInstrument(which);
}

const char* PathBelowSystemRoot(const char* path) {
  if (path == nullptr) return nullptr;
  size_t n = g_system_root.size();
  if (std::strncmp(path, g_system_root.c_str(), n) != 0) return nullptr;
  return path + n;
}

int IsUsbStickRoot(const char* dir) {
  const char* rest = PathBelowSystemRoot(dir);
  if (rest == nullptr) return 0;
  size_t len = std::strlen(rest);
  size_t prefix_len = std::strlen(kUsbStickPrefix);
  if (len != 28 && len != 29) return 0;
  return std::strncmp(rest, kUsbStickPrefix, prefix_len) == 0 ? 1 : 0;
}

int IsInternalSongRoot(const char* dir) {
  const char* rest = PathBelowSystemRoot(dir);
  if (rest == nullptr) return 0;
  return std::strcmp(rest, DevicePathOnInstrument(DevicePath::kSongRoot)) == 0 ? 1 : 0;
}

}  // namespace zansong
