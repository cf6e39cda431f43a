#include "zansong/common/charset.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include "common/handles.h"

TSString StringConv(const char* text, const char* from, const char* to) {
  zansong::ScopedIconv converter(to, from);
  if (!converter.valid()) {
    std::printf("Can not open iconv ");
    std::fflush(stdout);
    return TSString();
  }
  const size_t length = text == nullptr ? 0 : std::strlen(text);
  // Six output bytes per input byte is more than any conversion between
  // the character sets in use needs.
  std::vector<char> output(length * 6 + 1);
  // iconv takes a non-const input pointer but does not write through it.
  char* in = const_cast<char*>(text == nullptr ? "" : text);
  size_t in_left = length;
  char* out = output.data();
  size_t out_left = output.size() - 1;
  size_t result = ::iconv(converter.get(), &in, &in_left, &out, &out_left);
  if (result != static_cast<size_t>(-1)) {
    // Return a stateful encoding to its initial state.
    result = ::iconv(converter.get(), nullptr, nullptr, &out, &out_left);
  }
  if (result == static_cast<size_t>(-1)) {
    std::printf("ICONV ERROR ");
    std::fflush(stdout);
  }
  return TSString(output.data(), static_cast<int>(out - output.data()));
}
