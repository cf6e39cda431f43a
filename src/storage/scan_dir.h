// Directory walking shared by the naming rules and the directory scans.
//
// ScopedDir owns one DIR* so that every early return closes it.
#ifndef ZANSONG_STORAGE_SCAN_DIR_H_
#define ZANSONG_STORAGE_SCAN_DIR_H_

#include <dirent.h>

#include <cstring>

namespace zansong {

class ScopedDir {
 public:
  explicit ScopedDir(const char* path) : dir_(::opendir(path)) {}
  ~ScopedDir() { Close(); }
  ScopedDir(const ScopedDir&) = delete;
  ScopedDir& operator=(const ScopedDir&) = delete;

  bool valid() const { return dir_ != nullptr; }
  // The next entry, or nullptr at the end.
  struct dirent* Next() {
    return dir_ != nullptr ? ::readdir(dir_) : nullptr;
  }
  void Close() {
    if (dir_ != nullptr) ::closedir(dir_);
    dir_ = nullptr;
  }

 private:
  DIR* dir_;
};

// "." and "..".
inline bool IsDotEntry(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

}  // namespace zansong

#endif  // ZANSONG_STORAGE_SCAN_DIR_H_
