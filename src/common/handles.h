// Owners of the C handles the text layer opens (file descriptors, FILE
// streams, iconv converters), so that every early return closes them.
// All are move-less and copy-less: they live on the stack of one function.
#ifndef ZANSONG_COMMON_HANDLES_H_
#define ZANSONG_COMMON_HANDLES_H_

#include <iconv.h>
#include <unistd.h>

#include <cstdio>

namespace zansong {

class ScopedFd {
 public:
  explicit ScopedFd(int fd) : fd_(fd) {}
  ~ScopedFd() {
    if (fd_ >= 0) ::close(fd_);
  }
  ScopedFd(const ScopedFd&) = delete;
  ScopedFd& operator=(const ScopedFd&) = delete;

  bool valid() const { return fd_ >= 0; }
  int get() const { return fd_; }

 private:
  int fd_;
};

class ScopedFile {
 public:
  explicit ScopedFile(FILE* file) : file_(file) {}
  ~ScopedFile() { Close(); }
  ScopedFile(const ScopedFile&) = delete;
  ScopedFile& operator=(const ScopedFile&) = delete;

  bool valid() const { return file_ != nullptr; }
  FILE* get() const { return file_; }
  // Closes early; 0 when there was nothing to close or fclose succeeded.
  int Close() {
    if (file_ == nullptr) return 0;
    FILE* file = file_;
    file_ = nullptr;
    return std::fclose(file);
  }

 private:
  FILE* file_;
};

class ScopedIconv {
 public:
  ScopedIconv(const char* to, const char* from) : cd_(::iconv_open(to, from)) {}
  ~ScopedIconv() {
    if (valid()) ::iconv_close(cd_);
  }
  ScopedIconv(const ScopedIconv&) = delete;
  ScopedIconv& operator=(const ScopedIconv&) = delete;

  bool valid() const { return cd_ != reinterpret_cast<iconv_t>(-1); }
  iconv_t get() const { return cd_; }

 private:
  iconv_t cd_;
};

}  // namespace zansong

#endif  // ZANSONG_COMMON_HANDLES_H_
