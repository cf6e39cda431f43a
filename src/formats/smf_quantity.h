// Reading a variable-length quantity (7 bits a byte, most significant group
// first, bit 7 set on every byte but the last), shared by the walker's hot
// loop and the public readers.
#ifndef ZANSONG_SRC_FORMATS_SMF_QUANTITY_H_
#define ZANSONG_SRC_FORMATS_SMF_QUANTITY_H_

#include <cstddef>
#include <cstdint>

namespace zansong {

// Reads at most size bytes at p.  Returns the quantity's byte count and
// stores its value (wrapping past 32 bits), or returns 0 when the quantity
// does not end within size bytes.
inline int ReadQuantity(const unsigned char* p, size_t size, unsigned* value) {
  unsigned v = 0;
  for (size_t i = 0; i < size; ++i) {
    v = (v << 7) | (p[i] & 0x7Fu);
    if ((p[i] & 0x80) == 0) {
      if (i >= INT32_MAX) return 0;  // longer than any count can say
      *value = v;
      return static_cast<int>(i + 1);
    }
  }
  return 0;
}

}  // namespace zansong

#endif  // ZANSONG_SRC_FORMATS_SMF_QUANTITY_H_
