#include "support/stdout_capture.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace zansong_test {

StdoutCapture::StdoutCapture() {
  std::fflush(stdout);
  char name[] = "/tmp/zansong-stdout-XXXXXX";
  file_fd_ = mkstemp(name);
  if (file_fd_ < 0) std::abort();
  unlink(name);
  saved_fd_ = dup(STDOUT_FILENO);
  dup2(file_fd_, STDOUT_FILENO);
}

StdoutCapture::~StdoutCapture() { Finish(); }

std::string StdoutCapture::Finish() {
  if (saved_fd_ < 0) return text_;
  std::fflush(stdout);
  dup2(saved_fd_, STDOUT_FILENO);
  close(saved_fd_);
  saved_fd_ = -1;
  lseek(file_fd_, 0, SEEK_SET);
  char buf[4096];
  ssize_t n;
  while ((n = read(file_fd_, buf, sizeof buf)) > 0) text_.append(buf, static_cast<size_t>(n));
  close(file_fd_);
  file_fd_ = -1;
  return text_;
}

}  // namespace zansong_test
