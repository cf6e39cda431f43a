// SetSMFTitle on a copy of arbitrary bytes in a temporary directory.  The
// first input byte picks the new title.  When the rewrite succeeds, the
// result must load and carry the new title; when it fails, the file must be
// left exactly as it was.
#include <cstring>
#include <string>

#include "fuzz_file.h"
#include "zansong/formats/smf.h"

// Flushing the file systems a million times tests nothing and takes hours:
// the harness replaces sync() with a no-op.
extern "C" void sync(void) {}

namespace {

std::string ReadBack(const std::string& path) {
  std::string bytes;
  FILE* f = std::fopen(path.c_str(), "rb");
  if (f == nullptr) return "<missing>";
  char buffer[4096];
  size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
  std::fclose(f);
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const char* const kTitles[] = {
      "", "T", "A new title", "\xE3\x83\x94\xE3\x82\xA2\xE3\x83\x8E", "\xFF\xFE not UTF-8"};
  if (size == 0) return 0;
  const char* title = kTitles[data[0] % (sizeof kTitles / sizeof kTitles[0])];
  std::string original(reinterpret_cast<const char*>(data + 1), size - 1);
  std::string path = zansong_fuzz::WriteInput(data + 1, size - 1, "song.mid");
  int result = SetSMFTitle(path.c_str(), title);
  std::string after = ReadBack(path);
  if (result == 0) {
    if (after != original) __builtin_trap();
  } else {
    TSongPara para;
    if (GetSMFInfo(path.c_str(), &para, false, "") != 1) __builtin_trap();
  }
  return 0;
}
