// Private: the texts of a DownloadRecord, read without ever reading past
// a field.
//
// ReadDownloadRecord(rec, texts) copies every field of rec into texts.
// False when a field fills its whole array without a terminating NUL (the
// record is then not trusted at all); texts is then partly filled.
//
// RootWithSlash(dir) is the storage root dir with a "/" added when it does
// not end in one.
#ifndef ZANSONG_SRC_FILEMAN_DOWNLOAD_RECORD_H_
#define ZANSONG_SRC_FILEMAN_DOWNLOAD_RECORD_H_

#include "zansong/common/tsstring.h"
#include "zansong/fileman/download.h"

namespace zansong {

struct DownloadTexts {
  TSString midiSource;
  TSString audioSource;
  TSString coverSource;
  TSString albumDir;
  TSString albumTitle;
  TSString songTitle;
  TSString composer;
  TSString genre;
  TSString purchaseDate;
  TSString mtime;
};

bool ReadDownloadRecord(const DownloadRecord& rec, DownloadTexts* texts);

TSString RootWithSlash(const char* dir);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_DOWNLOAD_RECORD_H_
