// GetSMFInfo on arbitrary bytes, full walk and head-only.
#include <cstring>

#include "fuzz_file.h"
#include "zansong/formats/smf.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path = zansong_fuzz::WriteInput(data, size, "input.mid");
  TSongPara para;
  for (bool headOnly : {false, true}) {
    if (GetSMFInfo(path.c_str(), &para, headOnly, "") == 1) {
      // Every text field must be terminated within its buffer.
      if (memchr(para.title, 0, sizeof para.title) == nullptr ||
          memchr(para.notice, 0, sizeof para.notice) == nullptr ||
          memchr(para.text, 0, sizeof para.text) == nullptr ||
          memchr(para.longTitle, 0, sizeof para.longTitle) == nullptr ||
          memchr(para.songId, 0, sizeof para.songId) == nullptr || para.totalTimeMs < 0) {
        __builtin_trap();
      }
    }
  }
  return 0;
}
