// Choosing a free title and directory name for a new album.
#include "fileman/album_title.h"

#include <cstdio>

#include "zansong/storage/files.h"
#include "zansong/storage/naming.h"

namespace zansong {
namespace {

constexpr int kHighestPadded = 99;

// "_" + n, three digits wide below 100.
TSString NumberSuffix(int n) {
  char text[24];
  std::snprintf(text, sizeof text, n <= kHighestPadded ? "_%03d" : "_%d", n);
  return TSString(text);
}

class NameTest {
 public:
  NameTest(TDBSongMan& man, const TSString& parent, const TSString& title, const char* prefix)
      : man_(man), parent_(parent), title_(title), dir_(GetExternalName2(title)), prefix_(prefix) {}

  bool PlainFree() { return Free(title_, dir_); }
  bool NumberFree(int n) { return Free(title_ + NumberSuffix(n), dir_ + NumberSuffix(n)); }

 private:
  bool Free(const TSString& title, const TSString& dir) {
    return man_.GetIDByTitle("album", title.c_str(), prefix_) == 0 &&
           !DirExists((parent_ + dir).c_str());
  }

  TDBSongMan& man_;
  TSString parent_;
  TSString title_;
  TSString dir_;
  const char* prefix_;
};

}  // namespace

void ChooseAlbumName(TDBSongMan& man, const TSString& parent, const TSString& title,
                     const char* prefix, TSString* chosenTitle, TSString* dirName) {
  NameTest test(man, parent, title, prefix);
  if (test.PlainFree()) {
    *chosenTitle = title;
    *dirName = GetExternalName2(title);
    return;
  }
  int n = kHighestPadded;
  while (n > 1 && test.NumberFree(n)) --n;
  int chosen = n + 1;
  if (chosen > kHighestPadded) {
    while (!test.NumberFree(chosen)) ++chosen;
  }
  *chosenTitle = title + NumberSuffix(chosen);
  *dirName = GetExternalName2(title) + NumberSuffix(chosen);
}

}  // namespace zansong
