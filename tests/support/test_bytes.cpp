#include "support/test_bytes.h"

namespace zansong_test {

std::string BlockPattern(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 7 + i / 512) & 0xFF);
  return bytes;
}

}  // namespace zansong_test
