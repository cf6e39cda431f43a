// Song counts and capacity limits, for the host to ask before a recording,
// a download or a copy.  Each call opens dir + ".zansong.db" (dir ends in
// "/") read-only with SimpleDB, runs one or two counting queries and closes;
// nothing is printed and no catalogue is created or upgraded.
//
// FM_GetSongCount(dir, pfix, albumId): the number of songs with that prefix
//   and/or album number (decimal text); each filter may be null.  -1 when
//   the catalogue cannot be opened or read.
// FM_IsRecSongFull(dir): 1 when the album "Recorded Songs/Temporary Folder"
//   holds 999 songs or more; 0 otherwise (also without such an album or
//   without a readable catalogue).
// FM_IsPfixSongFull(dir, pfix): 1 when 4999 songs or more carry that
//   prefix; 0 otherwise (also without a readable catalogue).
// Arguments are quoted into the statements, so a quote in them is just a
// character of the value.
#ifndef ZANSONG_FILEMAN_SONG_COUNT_H_
#define ZANSONG_FILEMAN_SONG_COUNT_H_

#include "zansong/export.h"

extern "C" {
ZANSONG_EXPORT int FM_GetSongCount(char const* dir, char const* pfix, char const* albumId);
ZANSONG_EXPORT int FM_IsRecSongFull(char const* dir);
ZANSONG_EXPORT int FM_IsPfixSongFull(char const* dir, char const* pfix);
}

#endif  // ZANSONG_FILEMAN_SONG_COUNT_H_
