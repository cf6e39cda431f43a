// Text helpers for song titles read from MIDI files and piano disks.
//
// "Blank" below means any byte of value 0x20 or less (space, tab, line
// ends, other control bytes, NUL excepted as it ends the text); bytes of
// 0x80 and above are visible.  Collapsing drops the blanks before the first
// visible byte and keeps only the first byte of every later run of blanks.
//
// GetDummyLongTitle(para): para->title := the collapsed para->longTitle
//   (at most 32 bytes of it, up to its NUL).
// GetSlimText(dst, src): dst := the collapsed src (all of it), without the
//   one blank that may be left at its end.  dst needs strlen(src) + 1 bytes.
// GetNewTitle(src, dst): dst := the collapsed first 32 bytes of src (up to
//   its NUL).  dst needs 33 bytes.
// GetFileName(entry, dst): NAME.EXT from a fixed 8+3 name field: up to 8
//   name bytes while they are above 0x20, then, when the ninth byte is above
//   0x20, "." and up to 3 extension bytes while above 0x20.  A NUL in the
//   field ends it.  dst needs 13 bytes.
#ifndef ZANSONG_FORMATS_TITLE_TEXT_H_
#define ZANSONG_FORMATS_TITLE_TEXT_H_

#include "zansong/export.h"

struct TSongPara;

ZANSONG_EXPORT void GetDummyLongTitle(TSongPara* para);
ZANSONG_EXPORT void GetSlimText(char* dst, const char* src);
ZANSONG_EXPORT void GetNewTitle(const char* src, char* dst);
ZANSONG_EXPORT void GetFileName(const char* entry, char* dst);

#endif  // ZANSONG_FORMATS_TITLE_TEXT_H_
