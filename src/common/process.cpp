#include "common/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

extern char** environ;

namespace zansong {

namespace {

// Owns a posix_spawn_file_actions_t for the length of one start.
class SpawnActions {
 public:
  SpawnActions() { ok_ = posix_spawn_file_actions_init(&actions_) == 0; }
  ~SpawnActions() {
    if (ok_) posix_spawn_file_actions_destroy(&actions_);
  }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  bool ok() const { return ok_; }
  posix_spawn_file_actions_t* get() { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
  bool ok_;
};

}  // namespace

int RunProgram(const std::vector<std::string>& argv, const char* stdinPath,
               const char* stdoutPath) {
  if (argv.empty()) return -1;
  std::fflush(stdout);

  SpawnActions actions;
  if (!actions.ok()) return 127;
  if (stdinPath != nullptr &&
      posix_spawn_file_actions_addopen(actions.get(), STDIN_FILENO, stdinPath, O_RDONLY, 0) != 0) {
    return 127;
  }
  if (stdoutPath != nullptr &&
      posix_spawn_file_actions_addopen(actions.get(), STDOUT_FILENO, stdoutPath,
                                       O_WRONLY | O_CREAT | O_TRUNC, 0666) != 0) {
    return 127;
  }

  std::vector<char*> args;
  args.reserve(argv.size() + 1);
  for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);

  pid_t pid = 0;
  if (posix_spawnp(&pid, args[0], actions.get(), nullptr, args.data(), environ) != 0) {
    return 127;
  }

  int status = 0;
  while (waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return 127;
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
  return 127;
}

void SyncFileSystems() { ::sync(); }

}  // namespace zansong
