// The album title side file: the title's raw bytes, no line end.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "common/handles.h"
#include "common/process.h"
#include "zansong/storage/files.h"

namespace {

// The title is read back as one line of at most this many bytes.
constexpr int kTitleLineMax = 1023;

}  // namespace

int CreateAlbumTitleFile(const char* path, const char* title) {
  zansong::FileDescriptor fd(::open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666));
  if (!fd.valid()) return 0;
  const TSString text(title);
  ssize_t n;
  do {
    n = ::write(fd.get(), text.c_str(), static_cast<size_t>(text.Length()));
  } while (n < 0 && errno == EINTR);
  fd.Close();
  zansong::SyncFileSystems();
  return n == text.Length() ? 1 : 0;
}

TSString GetAlbumTitle(const char* path) {
  zansong::FileDescriptor fd(::open(path, O_RDONLY));
  if (!fd.valid()) return TSString();
  char line[kTitleLineMax + 1] = {};
  int filled = 0;
  while (filled < kTitleLineMax) {
    ssize_t n = ::read(fd.get(), line + filled, static_cast<size_t>(kTitleLineMax - filled));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    filled += static_cast<int>(n);
  }
  // The first line only, its line end kept.
  if (const void* end = std::memchr(line, '\n', static_cast<size_t>(filled))) {
    filled = static_cast<int>(static_cast<const char*>(end) - line) + 1;
  }
  line[filled] = '\0';
  return TSString(line);
}
