#include "zansong/common/convert.h"

#include <cstdlib>
#include <cstring>

namespace {

const char kHexDigits[] = "0123456789ABCDEF";

// Writes the decimal digits of magnitude, most significant first, and
// returns their number.  No terminator.
int WriteDigits(unsigned long long magnitude, char* out) {
  char reversed[24];
  int n = 0;
  do {
    reversed[n++] = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  for (int i = 0; i < n; ++i) out[i] = reversed[n - 1 - i];
  return n;
}

unsigned long long Magnitude(long long value) {
  const unsigned long long bits = static_cast<unsigned long long>(value);
  return value < 0 ? 0ULL - bits : bits;
}

// Value of one hex digit in either case, or -1.
int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

int IntToStr(long long value, char* out) {
  int n = 0;
  if (value < 0) out[n++] = '-';
  n += WriteDigits(Magnitude(value), out + n);
  out[n] = 0;
  return n;
}

int UIntToStr(long long value, char* out) {
  const int n = WriteDigits(Magnitude(value), out);
  out[n] = 0;
  return n;
}

int UIntToStr(unsigned int value, char* out, int width) {
  if (width < 0) width = 0;
  for (int i = width - 1; i >= 0; --i) {
    out[i] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  out[width] = 0;
  return 1;
}

int StrToInt(char* text) {
  if (text == nullptr) return 0;
  // strtol saturates where atoi would overflow.
  return static_cast<int>(std::strtol(text, nullptr, 10));
}

void CharToHex(unsigned char c, char* out) {
  out[0] = kHexDigits[c >> 4];
  out[1] = kHexDigits[c & 0x0F];
}

unsigned char HexToChar(char* two) {
  auto half = [](char c) -> int {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 0;
  };
  return static_cast<unsigned char>(half(two[0]) * 16 + half(two[1]));
}

unsigned int HexToUInt(const char* text, int n) {
  if (text == nullptr) return 0;
  const size_t length = n < 1 ? std::strlen(text) : strnlen(text, static_cast<size_t>(n));
  unsigned int value = 0;
  for (size_t i = 0; i < length; ++i) {
    const int digit = HexValue(text[i]);
    if (digit < 0) return 0;
    value = value * 16 + static_cast<unsigned int>(digit);
  }
  return value;
}

int UIntToHex(unsigned int value, char* out, int width) {
  if (width < 0) width = 0;
  for (int i = width - 1; i >= 0; --i) {
    out[i] = kHexDigits[value & 0x0F];
    value >>= 4;
  }
  out[width] = 0;
  return 1;
}

TSString UIntToSHex(unsigned int value, int width) {
  if (width < 0) width = 0;
  TSString text(nullptr, width);
  UIntToHex(value, text, width);
  return text;
}

unsigned int SHexToUInt(const TSString& text, int n) { return HexToUInt(text.c_str(), n); }

unsigned int BigToLittle2(unsigned char* p) {
  return (static_cast<unsigned int>(p[0]) << 8) | p[1];
}

unsigned int BigToLittle4(unsigned char* p) {
  return (static_cast<unsigned int>(p[0]) << 24) | (static_cast<unsigned int>(p[1]) << 16) |
         (static_cast<unsigned int>(p[2]) << 8) | p[3];
}
