// TWaveData::LoadFromFile on arbitrary bytes.
#include "fuzz_file.h"
#include "zansong/formats/audio.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path = zansong_fuzz::WriteInput(data, size, "input.wav");
  TWaveData wave;
  if (wave.LoadFromFile(path.c_str()) < 0) __builtin_trap();
  GetAudioTime(path.c_str());
  return 0;
}
