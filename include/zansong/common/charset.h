// Character-set conversion through iconv.
#ifndef ZANSONG_COMMON_CHARSET_H_
#define ZANSONG_COMMON_CHARSET_H_

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

// Converts text from the character set from to the character set to (iconv
// names such as "SHIFT-JIS" and "UTF-8") and returns the result.  When the
// converter cannot be opened, prints "Can not open iconv " and returns "".
// When the conversion stops on an invalid or unconvertible byte, prints
// "ICONV ERROR " and returns what was converted up to that point.  A null
// text counts as empty.
ZANSONG_EXPORT TSString StringConv(const char* text, const char* from, const char* to);

#endif  // ZANSONG_COMMON_CHARSET_H_
