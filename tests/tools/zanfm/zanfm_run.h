// Running the built zanfm program (through ZanfmProgram(), so that a
// cross-build runs it under its emulator) on a device image.
#ifndef ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUN_H_
#define ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUN_H_

#include <string>

#include "support/device_image.h"
#include "tools/zanfm/zanfm_runner.h"

namespace zansong_test {

// Runs zanfm with args (shell words) on image; its exit status, the output
// (standard output and error) in *out.
inline int RunZanfm(const DeviceImage& image, const std::string& args, std::string* out) {
  return RunCommand(ZanfmProgram() + " --root '" + image.root() + "' " + args, out);
}

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUN_H_
