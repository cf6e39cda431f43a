#include "zansong/common/file_util.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>

#include "common/handles.h"

namespace {

constexpr size_t kBlockSize = 512;

// Reads up to n bytes, retrying short reads and interruptions; the count
// read (less than n only at the end of the file), or -1 on an error.
ssize_t ReadFull(int fd, char* buffer, size_t n) {
  size_t done = 0;
  while (done < n) {
    const ssize_t got = ::read(fd, buffer + done, n - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    if (got == 0) break;
    done += static_cast<size_t>(got);
  }
  return static_cast<ssize_t>(done);
}

bool WriteFull(int fd, const char* buffer, size_t n) {
  size_t done = 0;
  while (done < n) {
    const ssize_t put = ::write(fd, buffer + done, n - done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    done += static_cast<size_t>(put);
  }
  return true;
}

}  // namespace

int FileExistsX(const char* path) {
  zansong::FileDescriptor fd(::open(path, O_RDONLY | O_CLOEXEC));
  return fd.valid() ? 1 : 0;
}

int FileDelete(const char* name) { return ::unlink(name) == 0 ? 1 : 0; }

int FileCopy(const char* from, const char* to) {
  zansong::FileDescriptor source(::open(from, O_RDONLY | O_CLOEXEC));
  if (!source.valid()) return 0;
  zansong::FileDescriptor target(::open(to, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (!target.valid()) return 0;
  char block[kBlockSize];
  for (;;) {
    const ssize_t got = ReadFull(source.get(), block, sizeof block);
    if (got < 0) return 0;  // a copy cut short must not pass for a whole one
    if (got == 0) return 1;
    if (!WriteFull(target.get(), block, static_cast<size_t>(got))) return 0;
  }
}

int FileCompare(const char* a, const char* b) {
  zansong::FileDescriptor first(::open(a, O_RDONLY | O_CLOEXEC));
  if (!first.valid()) return 0;
  zansong::FileDescriptor second(::open(b, O_RDONLY | O_CLOEXEC));
  if (!second.valid()) return 0;
  char block_a[kBlockSize];
  char block_b[kBlockSize];
  for (;;) {
    const ssize_t got = ReadFull(first.get(), block_a, sizeof block_a);
    if (got < 0) return 0;
    if (got == 0) return 1;
    if (ReadFull(second.get(), block_b, static_cast<size_t>(got)) != got) return 0;
    for (ssize_t i = 0; i < got; ++i) {
      if (block_a[i] != block_b[i]) return 0;
    }
  }
}

int strcompare(char* a, char* b, int from, int to) {
  for (int i = from; i <= to; ++i) {
    if (a[i] != b[i]) return 0;
  }
  return 1;
}

void trimleft(char* buf, int n) {
  for (int i = n - 1; i >= 0; --i) {
    if (static_cast<unsigned char>(buf[i]) <= 32) buf[i] = 0;
  }
}
