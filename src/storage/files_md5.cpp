// The MD5 digest of a file's contents, read in 1024-byte blocks.
#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "common/handles.h"
#include "zansong/storage/files.h"

namespace {

struct DigestContextFree {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};
using DigestContext = std::unique_ptr<EVP_MD_CTX, DigestContextFree>;

}  // namespace

TSString GetMD5(const char* path) {
  zansong::FileDescriptor fd(::open(path, O_RDONLY));
  if (!fd.valid()) {
    std::printf("%s can't be opened.\n", path);
    return TSString();
  }
  DigestContext context(EVP_MD_CTX_new());
  if (!context || EVP_DigestInit_ex(context.get(), EVP_md5(), nullptr) != 1) return TSString();

  unsigned char block[1024];
  for (;;) {
    ssize_t n = ::read(fd.get(), block, sizeof(block));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    EVP_DigestUpdate(context.get(), block, static_cast<size_t>(n));
  }

  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (EVP_DigestFinal_ex(context.get(), digest, &length) != 1) return TSString();
  char hex[2 * EVP_MAX_MD_SIZE + 1] = {};
  for (unsigned int i = 0; i < length; ++i) {
    std::snprintf(hex + 2 * i, 3, "%02x", digest[i]);
  }
  return TSString(hex);
}
