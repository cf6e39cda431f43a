// Running the built zanfm program from a test.
//
// ZanfmProgram() is the built zanfm (in a cross-build, the script that runs
// it under the emulator), quoted for the shell.  RunCommand(c,
// out) runs the shell command c with its standard error joined to its
// standard output, which it returns in *out; the result is the command's
// exit status, or -1 when it could not run or did not exit.
#ifndef ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUNNER_H_
#define ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUNNER_H_

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace zansong_test {

inline std::string ZanfmProgram() { return std::string("'") + ZANSONG_ZANFM_PROGRAM + "'"; }

inline int RunCommand(const std::string& command, std::string* output) {
  output->clear();
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return -1;
  char buffer[4096];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) output->append(buffer, n);
  int status = pclose(pipe);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_TOOLS_ZANFM_ZANFM_RUNNER_H_
