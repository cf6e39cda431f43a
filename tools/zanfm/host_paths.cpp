#include "zanfm/host_paths.h"

#include "zansong/common/sysroot.h"

namespace zanfm {

std::string StorageRoot(const std::string& usb) {
  const std::string root = FM_GetSystemRoot();
  if (usb.empty()) return root + "/usr/local/songs/";
  return root + "/var/volatile/run/media/" + usb + "/";
}

std::string JsonExportPath() {
  return std::string(FM_GetSystemRoot()) + "/usr/local/www/ctrl/song.json";
}

}  // namespace zanfm
