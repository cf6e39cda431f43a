// Text and containers: TSString, string lists, conversions, time strings, the
// system root.
#ifndef ZANSONG_COMMON_H_
#define ZANSONG_COMMON_H_

#include "zansong/common/charset.h"
#include "zansong/common/convert.h"
#include "zansong/common/file_util.h"
#include "zansong/common/path.h"
#include "zansong/common/string_list.h"
#include "zansong/common/sysroot.h"
#include "zansong/common/time_man.h"
#include "zansong/common/tsstring.h"

#endif  // ZANSONG_COMMON_H_
