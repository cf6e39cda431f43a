// Owners of the C handles the library opens (file descriptors, directory
// streams, FILE streams, iconv converters), so that every early return
// closes them.
//
// FileDescriptor owns an fd (-1 for none) and closes it on destruction;
// Close() closes it early and reports close's result, Release() hands the
// fd on to a new owner.  DirectoryHandle owns
// a DIR* (null for none) and lists it with ForEachEntry.  Both are
// move-only.  ScopedFile and ScopedIconv are neither copied nor moved: they
// live on the stack of one function.
#ifndef ZANSONG_COMMON_HANDLES_H_
#define ZANSONG_COMMON_HANDLES_H_

#include <dirent.h>
#include <iconv.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace zansong {

class FileDescriptor {
 public:
  explicit FileDescriptor(int fd = -1) : fd_(fd) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      Close();
      fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  bool valid() const { return fd_ >= 0; }
  int get() const { return fd_; }
  // Gives up ownership: returns the fd and holds none.
  int release() { return std::exchange(fd_, -1); }
  // 0 when there was nothing to close or close succeeded, else -1.
  int Close() {
    if (fd_ < 0) return 0;
    return ::close(std::exchange(fd_, -1));
  }
  // Gives up ownership: returns the fd (-1 for none), which is no longer
  // closed here.
  int Release() { return std::exchange(fd_, -1); }

 private:
  int fd_;
};

class DirectoryHandle {
 public:
  explicit DirectoryHandle(DIR* dir = nullptr) : dir_(dir) {}
  explicit DirectoryHandle(const char* path) : dir_(::opendir(path)) {}
  ~DirectoryHandle() { Close(); }
  DirectoryHandle(DirectoryHandle&& other) noexcept : dir_(std::exchange(other.dir_, nullptr)) {}
  DirectoryHandle& operator=(DirectoryHandle&& other) noexcept {
    if (this != &other) {
      Close();
      dir_ = std::exchange(other.dir_, nullptr);
    }
    return *this;
  }
  DirectoryHandle(const DirectoryHandle&) = delete;
  DirectoryHandle& operator=(const DirectoryHandle&) = delete;

  bool valid() const { return dir_ != nullptr; }
  DIR* get() const { return dir_; }
  // The one listing loop of the library: calls visit(const dirent&) for
  // every entry but "." and "..", in directory order, until visit returns
  // false.  Returns false when the directory is not open (nothing visited),
  // else true.
  template <typename Visit>
  bool ForEachEntry(Visit visit);
  void Close() {
    if (dir_ != nullptr) ::closedir(std::exchange(dir_, nullptr));
  }

 private:
  DIR* dir_;
};

// "." and "..", which every listing skips.
inline bool IsDotEntry(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

template <typename Visit>
bool DirectoryHandle::ForEachEntry(Visit visit) {
  if (dir_ == nullptr) return false;
  while (const dirent* entry = ::readdir(dir_)) {
    if (IsDotEntry(entry->d_name)) continue;
    if (!visit(*entry)) break;
  }
  return true;
}

class ScopedFile {
 public:
  explicit ScopedFile(FILE* file) : file_(file) {}
  ~ScopedFile() { Close(); }
  ScopedFile(const ScopedFile&) = delete;
  ScopedFile& operator=(const ScopedFile&) = delete;
  // Moving hands the stream over; the moved-from handle owns nothing.
  ScopedFile(ScopedFile&& other) noexcept : file_(other.file_) { other.file_ = nullptr; }
  ScopedFile& operator=(ScopedFile&& other) noexcept {
    if (this != &other) {
      Close();
      file_ = other.file_;
      other.file_ = nullptr;
    }
    return *this;
  }

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
