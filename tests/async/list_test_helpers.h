// Helpers of the tests of the list operations: building targets, the
// lines a progress function prints, and a cancel in the middle of a copy.
//
// HostInterruptHandler: while it lives, signal 2 raises the cancel flag of
// the process it arrives in, as the host's Ctrl-C handler does; a child
// forked meanwhile inherits the handler.
// StartFifoFeeder(path): forks a process that opens the FIFO at path for
// writing, feeds it 4 KiB at a time without end and sends this process
// signal 2 (the user's Ctrl-C) once the reader has taken the first block;
// it ends when the reader goes away.  Returns its pid (wait for it).
#ifndef ZANSONG_TESTS_ASYNC_LIST_TEST_HELPERS_H_
#define ZANSONG_TESTS_ASYNC_LIST_TEST_HELPERS_H_

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/async/targets.h"

namespace zansong_test {

inline TargetInfo Target(int type, int id, char pfix = 's') {
  TargetInfo t{};
  t.type = type;
  t.pfix = pfix;
  t.id = id;
  return t;
}

// The lines of text, without their newlines.
inline std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// The one line that print prints.
inline std::string LineOf(const std::function<void()>& print) {
  StdoutCapture capture;
  print();
  std::vector<std::string> lines = LinesOf(capture.Finish());
  return lines.size() == 1 ? lines[0] : "(" + std::to_string(lines.size()) + " lines)";
}

// Whether line is what print(n) prints for some n in first..last: the
// final report of a list is the last index read plus one, and the last
// reports may arrive in one read.
inline bool IsLineOfOneOf(const std::string& line, const std::function<void(int)>& print, int first,
                          int last) {
  for (int n = first; n <= last; ++n) {
    if (line == LineOf([&print, n] { print(n); })) return true;
  }
  return false;
}

inline void RaiseCancelFlag(int) { SetCancelFlag(); }

class HostInterruptHandler {
 public:
  HostInterruptHandler() {
    struct sigaction host = {};
    host.sa_handler = RaiseCancelFlag;
    host.sa_flags = SA_RESTART;
    sigemptyset(&host.sa_mask);
    sigaction(SIGINT, &host, &saved_);
  }
  ~HostInterruptHandler() { sigaction(SIGINT, &saved_, nullptr); }
  HostInterruptHandler(const HostInterruptHandler&) = delete;
  HostInterruptHandler& operator=(const HostInterruptHandler&) = delete;

 private:
  struct sigaction saved_ = {};
};

inline pid_t StartFifoFeeder(const std::string& path) {
  const pid_t host = getpid();
  std::fflush(stdout);
  pid_t pid = fork();
  if (pid != 0) return pid;
  signal(SIGPIPE, SIG_IGN);
  int fd = open(path.c_str(), O_WRONLY);
  const std::string block(4096, 'x');
  bool interrupted = false;
  while (write(fd, block.data(), block.size()) > 0) {
    if (!interrupted) kill(host, SIGINT);
    interrupted = true;
  }
  _exit(0);
}

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_ASYNC_LIST_TEST_HELPERS_H_
