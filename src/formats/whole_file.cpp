#include "formats/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <new>

#include "common/handles.h"

namespace zansong {

bool WholeFile::Load(const char* path) {
  data_.reset();
  size_ = 0;
  if (path == nullptr) return false;
  FileDescriptor fd(::open(path, O_RDONLY | O_CLOEXEC));
  if (!fd.valid()) return false;
  struct stat st;
  // A file larger than the address space (4 GiB on 32-bit processors)
  // cannot be held; its size must not wrap around to a small one.
  if (::fstat(fd.get(), &st) != 0 || st.st_size < 0 ||
      static_cast<uint64_t>(st.st_size) > SIZE_MAX) {
    return false;
  }
  size_t want = static_cast<size_t>(st.st_size);
  // Not value-initialised: every byte that is used is read first.
  std::unique_ptr<unsigned char[]> buffer(new (std::nothrow) unsigned char[want == 0 ? 1 : want]);
  if (buffer == nullptr) return false;
  size_t got = 0;
  while (got < want) {
    ssize_t n = ::read(fd.get(), buffer.get() + got, want - got);
    if (n < 0) return false;
    if (n == 0) break;
    got += static_cast<size_t>(n);
  }
  data_ = std::move(buffer);
  size_ = got;
  return true;
}

}  // namespace zansong
