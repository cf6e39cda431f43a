// NowText(): the current local time as ctime(3) prints it, without its line
// end, such as "Tue Mar  5 14:03:09 2024": the ctime text stored with every
// song row an operation adds.
#ifndef ZANSONG_SRC_FILEMAN_NOW_TEXT_H_
#define ZANSONG_SRC_FILEMAN_NOW_TEXT_H_

#include "zansong/common/tsstring.h"

namespace zansong {

TSString NowText();

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_NOW_TEXT_H_
