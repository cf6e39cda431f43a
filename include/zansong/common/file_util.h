// Whole-file primitives and byte-buffer helpers.  Results are 1 for success
// (or "yes") and 0 for failure (or "no"); nothing is printed.
#ifndef ZANSONG_COMMON_FILE_UTIL_H_
#define ZANSONG_COMMON_FILE_UTIL_H_

#include "zansong/export.h"

// 1 when path can be opened read-only (a readable directory counts).
ZANSONG_EXPORT int FileExistsX(const char* path);
// Unlinks name: 1 on success, else 0.
ZANSONG_EXPORT int FileDelete(const char* name);
// Copies from to to (created or truncated with permission bits 0600) in
// 512-byte blocks.  0 when either cannot be opened or a write fails.
ZANSONG_EXPORT int FileCopy(const char* from, const char* to);
// Reads a in 512-byte blocks and the same number of bytes from b.  1 when
// every block of a matched (so a b that begins with the whole of a
// matches); 0 on a difference, a file that cannot be opened, or a short
// read of b.
ZANSONG_EXPORT int FileCompare(const char* a, const char* b);

// 1 when a[i] == b[i] for every i in from..to (both included), else 0.
ZANSONG_EXPORT int strcompare(char* a, char* b, int from, int to);
// Sets every byte of value 0 to 32 among the first n bytes of buf to 0, so
// the text ends at its first blank or control byte; bytes of 0x80 and above
// are untouched.
ZANSONG_EXPORT void trimleft(char* buf, int n);

#endif  // ZANSONG_COMMON_FILE_UTIL_H_
