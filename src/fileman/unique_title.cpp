// The numbering of new album and playlist titles.
#include "fileman/unique_title.h"

#include <cstdio>

namespace zansong {

namespace {

constexpr int kHighestPadded = 99;

std::string Suffix(int n, bool padded) {
  char text[32];
  std::snprintf(text, sizeof text, padded ? "_%03d" : "_%d", n);
  return text;
}

}  // namespace

std::string UniqueTitleSuffix(const std::function<bool(const std::string& suffix)>& isFree) {
  if (isFree("")) return "";
  int n = kHighestPadded;
  while (n > 1 && isFree(Suffix(n, true))) --n;
  int chosen = n + 1;
  if (chosen <= kHighestPadded) return Suffix(chosen, true);
  while (!isFree(Suffix(chosen, false))) ++chosen;
  return Suffix(chosen, false);
}

}  // namespace zansong
