// Splitting paths.  "/", "\" and ":" all count as separators.
//
// The X functions write into out, which needs room for the input's length
// plus one (plus the extension's length for ChangeFileExtX), terminate it
// and return 1 for success or 0 for "not found".  The SX functions are the
// TSString forms.
#ifndef ZANSONG_COMMON_PATH_H_
#define ZANSONG_COMMON_PATH_H_

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

// out = path up to its last separator; a final "/" or "\" is dropped, a
// final ":" kept ("/a/b/c.mid" gives "/a/b").  Without a separator out is
// the whole path.  Returns 1.
ZANSONG_EXPORT int ExtractFileDirX(const char* path, char* out);
// out = the part after the last separator.  Returns 1 when a name followed
// a separator; 0 when there is no separator (out = path) or the path ends in
// one (out = "").
ZANSONG_EXPORT int ExtractFileNameX(const char* path, char* out);
// out = from the last "." of the file name to the end, dot included, and 1;
// "" and 0 when a separator (or the start) comes before any ".".
ZANSONG_EXPORT int ExtractFileExtX(const char* path, char* out);
// out = path cut before its last "." (searching the whole path, directory
// names included) followed by ext, which carries its own dot; with no ".",
// or only one at the very start, out = path + ext.  Returns 1; 0 when path
// ends in a separator (nothing is written).
ZANSONG_EXPORT int ChangeFileExtX(const char* path, const char* ext, char* out);

ZANSONG_EXPORT TSString ExtractFileDirSX(const TSString& path);
ZANSONG_EXPORT TSString ExtractFileNameSX(const TSString& path);
ZANSONG_EXPORT TSString ExtractFileExtSX(const TSString& path);
// "" when ChangeFileExtX fails.
ZANSONG_EXPORT TSString ChangeFileExtSX(const TSString& path, const TSString& ext);

#endif  // ZANSONG_COMMON_PATH_H_
