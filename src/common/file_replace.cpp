// ReplaceWithCopy: a copy written beside its target, flushed, then renamed
// over it.
#include "common/file_replace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "common/handles.h"

namespace zansong {

namespace {

constexpr size_t kBlockSize = 64 * 1024;

// Writes all n bytes, retrying short writes and interruptions.
bool WriteAll(int fd, const char* data, size_t n) {
  while (n > 0) {
    const ssize_t put = ::write(fd, data, n);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return false;
    if (put == 0) {
      errno = EIO;
      return false;
    }
    data += put;
    n -= static_cast<size_t>(put);
  }
  return true;
}

// Copies everything readable from in to out.
bool CopyContents(int in, int out) {
  std::vector<char> block(kBlockSize);
  for (;;) {
    const ssize_t got = ::read(in, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) return true;
    if (!WriteAll(out, block.data(), static_cast<size_t>(got))) return false;
  }
}

// The directory part of path ("." when it has none).
std::string DirectoryOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return path.substr(0, slash);
}

// Flushes the directory's entries, so that a rename in it is on the device.
bool SyncDirectory(const std::string& dir) {
  FileDescriptor fd(::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!fd.valid()) return false;
  return ::fsync(fd.get()) == 0;
}

// Writes from into the open temporary file and renames it over to.
bool FillAndRename(int source, FileDescriptor& temporary, const std::string& temporaryPath,
                   const std::string& to) {
  struct stat st;
  if (::fstat(source, &st) != 0) return false;
  if (!CopyContents(source, temporary.get())) return false;
  if (::fchmod(temporary.get(), st.st_mode & 07777) != 0) return false;
  if (::fsync(temporary.get()) != 0) return false;
  if (temporary.Close() != 0) return false;
  if (::rename(temporaryPath.c_str(), to.c_str()) != 0) return false;
  return SyncDirectory(DirectoryOf(to));
}

}  // namespace

bool ReplaceWithCopy(const std::string& from, const std::string& to) {
  FileDescriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
  if (!source.valid()) return false;
  std::string temporaryPath = to + ".XXXXXX";
  FileDescriptor temporary(::mkostemp(&temporaryPath[0], O_CLOEXEC));
  if (!temporary.valid()) return false;
  if (FillAndRename(source.get(), temporary, temporaryPath, to)) return true;
  const int cause = errno;
  temporary.Close();
  ::unlink(temporaryPath.c_str());  // gone already when only the directory flush failed
  errno = cause;
  return false;
}

}  // namespace zansong
