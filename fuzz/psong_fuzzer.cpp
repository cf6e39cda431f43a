// GetPsongInfo on arbitrary management files.
#include <vector>

#include "fuzz_file.h"
#include "zansong/formats/psong.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path = zansong_fuzz::WriteInput(data, size, "PSONG.MNG");
  std::vector<TSongNameString> songs;
  int result = GetPsongInfo(path.c_str(), songs);
  if (result < -1 || (result > 0 && songs.size() > static_cast<size_t>(result))) __builtin_trap();
  return 0;
}
