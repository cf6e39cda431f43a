#include "formats/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "common/handles.h"

namespace zansong {

WholeFile::~WholeFile() { std::free(data_); }

bool WholeFile::Load(const char* path) {
  std::free(data_);
  data_ = nullptr;
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
  unsigned char* buffer = static_cast<unsigned char*>(std::malloc(want == 0 ? 1 : want));
  if (buffer == nullptr) return false;
  size_t got = 0;
  while (got < want) {
    ssize_t n = ::read(fd.get(), buffer + got, want - got);
    if (n < 0) {
      std::free(buffer);
      return false;
    }
    if (n == 0) break;
    got += static_cast<size_t>(n);
  }
  data_ = buffer;
  size_ = got;
  return true;
}

}  // namespace zansong
