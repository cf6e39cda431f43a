// Turns a package delivered as an escaped text string (quotes and backslash
// escapes) back into plain text, in place.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <cstdio>
#include <string>

#include "common/handles.h"
#include "storage/package_decode.h"
#include "zansong/storage/package.h"

namespace {

constexpr int kBlockSize = 512;

// Whether the block holds "XML" or "SELF" in any case.
bool LooksLikePackage(const char* block, ssize_t length) {
  std::string upper(block, length);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper.find("XML") != std::string::npos || upper.find("SELF") != std::string::npos;
}

bool WriteAll(int fd, const char* data, size_t length) {
  while (length > 0) {
    ssize_t n = ::write(fd, data, length);
    if (n <= 0) return false;
    data += n;
    length -= static_cast<size_t>(n);
  }
  return true;
}

// Unescapes one block into out; escaped carries an open backslash escape
// from one block to the next.  Returns the number of bytes put in out.
size_t Unescape(const char* in, ssize_t length, bool& escaped, char* out) {
  size_t written = 0;
  for (ssize_t i = 0; i < length; ++i) {
    const char c = in[i];
    if (escaped) {
      out[written++] = c == 'n' ? '\n' : c;
      escaped = false;
    } else if (c == '\\') {
      escaped = true;
    } else if (c != '"') {
      out[written++] = c;
    }
  }
  return written;
}

}  // namespace

int ChangeXmlToSelf(const char* path) {
  zansong::FileDescriptor package(::open(path, O_RDONLY));
  if (!package.valid()) return -1;
  const TSString temporary = TSString(path) + ".tmp";
  zansong::FileDescriptor output(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666));
  if (!output.valid()) return -3;
  struct stat st;
  const bool sizeKnown = ::fstat(package.get(), &st) == 0;

  char block[kBlockSize];
  char plain[kBlockSize];
  bool escaped = false;
  long long total = 0;
  for (bool first = true;; first = false) {
    ssize_t n = ::read(package.get(), block, sizeof(block));
    if (n < 0) return -1;
    if (first && !LooksLikePackage(block, n)) return -1;
    if (n == 0) break;
    total += n;
    size_t length = Unescape(block, n, escaped, plain);
    if (!WriteAll(output.get(), plain, length)) return -1;
  }
  if (output.Close() != 0) return -1;
  if (sizeKnown && total != static_cast<long long>(st.st_size)) return -1;
  package.Close();

  if (sizeKnown) {
    struct utimbuf times;
    times.actime = st.st_atime;
    times.modtime = st.st_mtime;
    ::utime(temporary.c_str(), &times);
  }
  if (!zansong::MoveWithProgram(TSString(path), TSString(path) + ".bak")) std::printf("error!\n");
  if (!zansong::MoveWithProgram(temporary, TSString(path))) std::printf("error!\n");
  std::fflush(stdout);
  return 0;
}

int FM_ChangeXmlToSelf(char* path) { return ChangeXmlToSelf(path); }
