#include "zansong/common/path.h"

#include <cstring>
#include <string>

namespace {

bool IsSeparator(char c) { return c == '/' || c == '\\' || c == ':'; }

// Index of the last separator in path[0..length), or -1.
long LastSeparator(const char* path, size_t length) {
  for (size_t i = length; i > 0; --i) {
    if (IsSeparator(path[i - 1])) return static_cast<long>(i - 1);
  }
  return -1;
}

void CopyInto(char* out, const char* from, size_t n) {
  std::memcpy(out, from, n);
  out[n] = 0;
}

// Runs one of the X functions into a buffer of capacity bytes.
template <typename Split>
TSString SplitToString(size_t capacity, Split split) {
  std::string out(capacity, '\0');
  split(&out[0]);
  return TSString(out.c_str());
}

}  // namespace

int ExtractFileDirX(const char* path, char* out) {
  const size_t length = std::strlen(path);
  const long sep = LastSeparator(path, length);
  if (sep < 0) {
    CopyInto(out, path, length);
  } else {
    // A drive-style ":" belongs to the directory; "/" and "\" do not.
    const size_t keep = static_cast<size_t>(sep) + (path[sep] == ':' ? 1 : 0);
    CopyInto(out, path, keep);
  }
  return 1;
}

int ExtractFileNameX(const char* path, char* out) {
  const size_t length = std::strlen(path);
  const long sep = LastSeparator(path, length);
  if (sep < 0) {
    CopyInto(out, path, length);
    return 0;
  }
  const size_t start = static_cast<size_t>(sep) + 1;
  CopyInto(out, path + start, length - start);
  return start < length ? 1 : 0;
}

int ExtractFileExtX(const char* path, char* out) {
  const size_t length = std::strlen(path);
  for (size_t i = length; i > 0; --i) {
    const char c = path[i - 1];
    if (IsSeparator(c)) break;
    if (c == '.') {
      CopyInto(out, path + i - 1, length - (i - 1));
      return 1;
    }
  }
  out[0] = 0;
  return 0;
}

int ChangeFileExtX(const char* path, const char* ext, char* out) {
  const size_t length = std::strlen(path);
  if (length > 0 && IsSeparator(path[length - 1])) return 0;
  const char* dot = std::strrchr(path, '.');
  const size_t keep = (dot == nullptr || dot == path) ? length : static_cast<size_t>(dot - path);
  const size_t ext_length = std::strlen(ext);
  std::memcpy(out, path, keep);
  CopyInto(out + keep, ext, ext_length);
  return 1;
}

TSString ExtractFileDirSX(const TSString& path) {
  return SplitToString(static_cast<size_t>(path.Length()) + 1,
                       [&](char* out) { ExtractFileDirX(path.c_str(), out); });
}

TSString ExtractFileNameSX(const TSString& path) {
  return SplitToString(static_cast<size_t>(path.Length()) + 1,
                       [&](char* out) { ExtractFileNameX(path.c_str(), out); });
}

TSString ExtractFileExtSX(const TSString& path) {
  return SplitToString(static_cast<size_t>(path.Length()) + 1,
                       [&](char* out) { ExtractFileExtX(path.c_str(), out); });
}

TSString ChangeFileExtSX(const TSString& path, const TSString& ext) {
  return SplitToString(static_cast<size_t>(path.Length() + ext.Length()) + 1, [&](char* out) {
    if (ChangeFileExtX(path.c_str(), ext.c_str(), out) == 0) out[0] = 0;
  });
}
