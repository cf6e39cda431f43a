// ReadFileDataMp3 and MakePlayTime on arbitrary bytes.
#include <cstring>

#include "fuzz_file.h"
#include "zansong/formats/audio.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path = zansong_fuzz::WriteInput(data, size, "input.mp3");
  ID3TAG tag;
  MP3INF info;
  if (ReadFileDataMp3(path.c_str(), &tag, &info) == 0) {
    if (memchr(tag.title, 0, sizeof tag.title) == nullptr ||
        memchr(tag.comment, 0, sizeof tag.comment) == nullptr ||
        memchr(tag.year, 0, sizeof tag.year) == nullptr) {
      __builtin_trap();
    }
    MakePlayTime(static_cast<int>(GetFileSize(path.c_str())), &info);
  }
  return 0;
}
