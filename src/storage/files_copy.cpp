// Whole file copies in blocks of 256 KiB, partial copies in 512-byte
// blocks, comparison, and the paired copies of a song with its companion
// file.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "common/handles.h"
#include "zansong/async/cancel.h"
#include "zansong/common/file_util.h"
#include "zansong/storage/files.h"

namespace {

constexpr size_t kBlockSize = 512;
// A whole-file copy moves this much between two looks at the cancel flag:
// large enough to cost little more than one system call per block, small
// enough that even a slow USB stick (about 10 MB/s) takes a few tens of
// milliseconds per block, so that a raised flag stops the copy at once.
constexpr size_t kCopyBlockSize = 256 * 1024;

ssize_t ReadSome(int fd, char* buffer, size_t size) {
  ssize_t n;
  do {
    n = ::read(fd, buffer, size);
  } while (n < 0 && errno == EINTR);
  return n;
}

// Writes all size bytes; false when the file takes fewer.
bool WriteAll(int fd, const char* buffer, size_t size) {
  while (size > 0) {
    ssize_t n = ::write(fd, buffer, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    buffer += n;
    size -= static_cast<size_t>(n);
  }
  return true;
}

// Whether path names the file already open as fd.
bool SameFile(int fd, const char* path) {
  struct stat open, named;
  if (::fstat(fd, &open) != 0 || ::stat(path, &named) != 0) return false;
  return open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

// Copies the rest of in to out in blocks, looking at the cancel flag
// before writing each block: 0 at the end of in, -2 when the flag was
// raised while bytes were left to copy, -1 when a read or write failed.
// size is the size of in when it is a regular file, else -1.  The kernel copies the blocks
// itself where it can; a file system or file kind it cannot copy between
// goes through a buffer.  *copied counts the bytes written.
int CopyBlocks(int in, int out, long long size, long long* copied) {
  for (;;) {
    if (GetCancelFlag() && (size < 0 || *copied < size)) return -2;
    ssize_t n = ::copy_file_range(in, nullptr, out, nullptr, kCopyBlockSize, 0);
    if (n == 0) return 0;
    if (n > 0) {
      *copied += n;
      continue;
    }
    if (errno == EINTR) continue;
    // Nothing was copied by the failed call: the buffered copy takes over
    // at the same place.
    if (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) {
      break;
    }
    return -1;
  }
  std::vector<char> block(kCopyBlockSize);
  ssize_t n;
  while ((n = ReadSome(in, block.data(), block.size())) >= 1) {
    if (GetCancelFlag()) return -2;
    if (!WriteAll(out, block.data(), static_cast<size_t>(n))) return -1;
    *copied += n;
  }
  return n < 0 ? -1 : 0;
}

}  // namespace

int CopyFile(const char* src, const char* dst) {
  zansong::FileDescriptor in(::open(src, O_RDONLY));
  if (!in.valid()) return -1;
  // Truncating the destination would destroy a source that is the same
  // file under another name; that destination cannot be created.
  if (SameFile(in.get(), dst)) return -3;
  zansong::FileDescriptor out(::open(dst, O_WRONLY | O_CREAT | O_TRUNC, 0666));
  if (!out.valid()) return -3;

  struct stat st;
  const bool sizeKnown = ::fstat(in.get(), &st) == 0;

  long long copied = 0;
  const long long size = sizeKnown && S_ISREG(st.st_mode) ? st.st_size : -1;
  int r = CopyBlocks(in.get(), out.get(), size, &copied);
  if (r != 0) return r;  // the partial destination is left for the caller to delete
  if (sizeKnown && copied != static_cast<long long>(st.st_size)) return -1;

  if (sizeKnown) {
    const struct timespec times[2] = {st.st_atim, st.st_mtim};
    ::futimens(out.get(), times);
  }
  return 0;
}

int CopyPartFile(int srcFd, int dstFd, unsigned long from, unsigned long to) {
  if (::lseek(srcFd, static_cast<off_t>(from), SEEK_SET) < 0) return -1;
  if (to != 0) {
    // A range that ends before it starts cannot be copied.
    if (to < from) return -1;
    const size_t size = to - from;
    std::vector<char> buffer(size);
    ssize_t n = ReadSome(srcFd, buffer.data(), size);
    if (n < 1) return 0;
    bool written = WriteAll(dstFd, buffer.data(), static_cast<size_t>(n));
    return static_cast<size_t>(n) < size || !written ? -1 : 0;
  }
  char block[kBlockSize];
  ssize_t n;
  while ((n = ReadSome(srcFd, block, sizeof(block))) >= 1) {
    if (!WriteAll(dstFd, block, static_cast<size_t>(n))) return -1;
  }
  return 0;
}

int CompareFile(const char* a, const char* b) { return FileCompare(a, b); }

int CopyFiles(const TSString& srcDir, const TSString& dstDir, const TSString& srcName1,
              const TSString& srcName2, const TSString& dstName1, const TSString& dstName2) {
  const TSString dst1 = dstDir + dstName1;
  int r = CopyFile((srcDir + srcName1).c_str(), dst1.c_str());
  if (r != 0) {
    DeleteFile(dst1.c_str());
    return r;
  }
  if (dstName2.Length() == 0) return 0;

  const TSString dst2 = dstDir + dstName2;
  r = CopyFile((srcDir + srcName2).c_str(), dst2.c_str());
  if (r == 0) return 0;
  DeleteFile(dst1.c_str());
  DeleteFile(dst2.c_str());
  return r;
}

int CopyFiles2(const TSString& src1, const TSString& src2, const TSString& dst1,
               const TSString& dst2) {
  int r = 0;
  if (src1.Length() != 0) {
    r = CopyFile(src1.c_str(), dst1.c_str());
    if (r != 0) DeleteFile(dst1.c_str());
  }
  if (src2.Length() == 0) return r;

  // When the second copy succeeds the result is 0, even after a failed
  // first copy.
  int r2 = CopyFile(src2.c_str(), dst2.c_str());
  if (r2 == 0) return 0;
  DeleteFile(dst2.c_str());
  if (dst1.Length() != 0) DeleteFile(dst1.c_str());
  return r2;
}
