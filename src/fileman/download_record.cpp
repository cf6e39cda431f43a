// Reading the texts of a DownloadRecord, bounded by each field's array.
#include "fileman/download_record.h"

#include <cstring>

namespace zansong {

namespace {

template <size_t N>
bool Field(const char (&field)[N], TSString* text) {
  const void* end = std::memchr(field, '\0', N);
  if (end == nullptr) return false;
  *text = field;
  return true;
}

}  // namespace

bool ReadDownloadRecord(const DownloadRecord& rec, DownloadTexts* texts) {
  return Field(rec.midiSource, &texts->midiSource) && Field(rec.audioSource, &texts->audioSource) &&
         Field(rec.coverSource, &texts->coverSource) && Field(rec.albumDir, &texts->albumDir) &&
         Field(rec.albumTitle, &texts->albumTitle) && Field(rec.songTitle, &texts->songTitle) &&
         Field(rec.composer, &texts->composer) && Field(rec.genre, &texts->genre) &&
         Field(rec.purchaseDate, &texts->purchaseDate) && Field(rec.mtime, &texts->mtime);
}

TSString RootWithSlash(const char* dir) {
  TSString root(dir);
  if (root.Length() == 0 || root[root.Length() - 1] != '/') root += "/";
  return root;
}

}  // namespace zansong
