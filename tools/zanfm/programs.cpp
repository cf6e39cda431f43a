#include "zanfm/programs.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

extern char** environ;

namespace zanfm {

namespace {

// The directory of the running program, "" when it cannot be read.
std::string ProgramDir() {
  char path[4096];
  ssize_t n = ::readlink("/proc/self/exe", path, sizeof path - 1);
  if (n <= 0) return std::string();
  std::string self(path, static_cast<size_t>(n));
  return self.substr(0, self.rfind('/'));
}

// installed, relative to the program's directory, when that file is
// there; else the build tree's file.
std::string Locate(const std::string& installed, const char* inBuildTree) {
  const std::string dir = ProgramDir();
  if (!dir.empty()) {
    std::string candidate = dir + "/" + installed;
    if (::access(candidate.c_str(), X_OK) == 0) return candidate;
  }
  return inBuildTree;
}

}  // namespace

std::string MakeImageScript() {
  return Locate(std::string(ZANFM_BIN_TO_DATA) + "/make-image.sh", ZANFM_BUILD_MAKE_IMAGE);
}

std::string Songdb2jsonProgram() { return Locate("songdb2json", ZANFM_BUILD_SONGDB2JSON); }

int RunCommand(const std::vector<std::string>& argv) {
  if (argv.empty()) return -1;
  std::vector<char*> args;
  for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  std::fflush(stdout);
  pid_t pid;
  if (::posix_spawnp(&pid, args[0], nullptr, nullptr, args.data(), environ) != 0) return 127;
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return 127;
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : 127;
}

}  // namespace zanfm
