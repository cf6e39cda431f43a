// Running the zanfm program built beside the test programs
// (build/tools/zanfm) on a device image.
#ifndef ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUN_H_
#define ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUN_H_

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "support/device_image.h"

namespace zansong_test {

// Runs zanfm with args on image; its exit status, the output in *out.
inline int RunZanfm(const DeviceImage& image, const std::string& args, std::string* out) {
  char self[4096];
  ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
  std::string dir(self, n > 0 ? static_cast<size_t>(n) : 0);
  dir = dir.substr(0, dir.rfind('/'));  // build/tests
  const std::string program = dir.substr(0, dir.rfind('/')) + "/tools/zanfm";
  const std::string command = "'" + program + "' --root '" + image.root() + "' " + args + " 2>&1";
  out->clear();
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return -1;
  char buffer[4096];
  size_t got;
  while ((got = fread(buffer, 1, sizeof buffer, pipe)) > 0) out->append(buffer, got);
  int status = pclose(pipe);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUN_H_
