// The extension of a file name, for comparing kinds of song files.
#ifndef ZANSONG_SRC_COMMON_UPPER_EXTENSION_H_
#define ZANSONG_SRC_COMMON_UPPER_EXTENSION_H_

#include "zansong/common/tsstring.h"

namespace zansong {

// The extension of path as ExtractFileExtSX finds it (dot included, "" when
// there is none), upper-cased: ".MID", ".WAV", ".MP3", ...
TSString UpperExtension(const TSString& path);

}  // namespace zansong

#endif  // ZANSONG_SRC_COMMON_UPPER_EXTENSION_H_
