#include "zansong/formats/title_text.h"

#include <cstddef>
#include <cstring>

#include "zansong/formats/smf.h"

namespace {

bool IsBlank(char c) { return static_cast<unsigned char>(c) <= 0x20; }

// Collapses at most max bytes of src (up to its NUL) into dst, terminated;
// returns the length written.
size_t Collapse(const char* src, size_t max, char* dst) {
  size_t n = 0;
  bool seenVisible = false;
  bool inBlanks = false;
  for (size_t i = 0; i < max && src[i] != '\0'; ++i) {
    if (IsBlank(src[i])) {
      if (seenVisible && !inBlanks) dst[n++] = src[i];
      inBlanks = true;
    } else {
      dst[n++] = src[i];
      seenVisible = true;
      inBlanks = false;
    }
  }
  dst[n] = '\0';
  return n;
}

}  // namespace

void GetDummyLongTitle(TSongPara* para) {
  char collapsed[33];
  Collapse(para->longTitle, 32, collapsed);
  std::memcpy(para->title, collapsed, std::strlen(collapsed) + 1);
}

void GetSlimText(char* dst, const char* src) {
  size_t n = Collapse(src, static_cast<size_t>(-1), dst);
  if (n > 0 && IsBlank(dst[n - 1])) dst[n - 1] = '\0';
}

void GetNewTitle(const char* src, char* dst) { Collapse(src, 32, dst); }

void GetFileName(const char* entry, char* dst) {
  size_t n = 0;
  size_t i = 0;
  for (; i < 8 && entry[i] != '\0' && !IsBlank(entry[i]); ++i) dst[n++] = entry[i];
  // The extension is looked at only when the name field was not cut short
  // by a NUL.
  bool fieldGoesOn = true;
  for (size_t j = i; j < 8; ++j) {
    if (entry[j] == '\0') {
      fieldGoesOn = false;
      break;
    }
  }
  if (fieldGoesOn && entry[8] != '\0' && !IsBlank(entry[8])) {
    dst[n++] = '.';
    for (size_t j = 8; j < 11 && entry[j] != '\0' && !IsBlank(entry[j]); ++j) dst[n++] = entry[j];
  }
  dst[n] = '\0';
}
