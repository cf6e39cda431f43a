// Fuzz-target helper: the readers under test take file paths, so each input
// is written to a file in a private temporary directory (made on first use,
// removed at a normal exit) and its path handed over.
#ifndef ZANSONG_FUZZ_FUZZ_FILE_H_
#define ZANSONG_FUZZ_FUZZ_FILE_H_

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace zansong_fuzz {

// The directory is made under $TMPDIR (default /tmp).  Its path lives in a
// plain array, which is never destroyed, so the exit handler that removes
// the directory can still read it.
inline const char* ScratchDir() {
  static char dir[4096];
  static const bool made = [] {
    const char* base = std::getenv("TMPDIR");
    std::snprintf(dir, sizeof dir, "%s/zansong-fuzz-XXXXXX", base != nullptr ? base : "/tmp");
    if (mkdtemp(dir) == nullptr) {
      std::perror("mkdtemp");
      std::abort();
    }
    std::atexit([] {
      std::string command = std::string("rm -rf '") + dir + "'";
      if (std::system(command.c_str()) != 0) std::fputs("cannot remove scratch dir\n", stderr);
    });
    return true;
  }();
  (void)made;
  return dir;
}

// Writes data to ScratchDir()/name (created or truncated) and returns the
// path.  Aborts when the file cannot be written: that is a harness failure.
inline std::string WriteInput(const uint8_t* data, size_t size, const char* name) {
  std::string path = std::string(ScratchDir()) + "/" + name;
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) std::abort();
  size_t done = 0;
  while (done < size) {
    ssize_t n = write(fd, data + done, size - done);
    if (n <= 0) std::abort();
    done += static_cast<size_t>(n);
  }
  close(fd);
  return path;
}

}  // namespace zansong_fuzz

#endif  // ZANSONG_FUZZ_FUZZ_FILE_H_
