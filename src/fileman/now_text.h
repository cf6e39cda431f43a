// Private: NowText() is the current local time as ctime writes it, without
// its line end ("Tue Mar  5 14:03:09 2024"): the ctime text of the rows
// that the operations add or update.
#ifndef ZANSONG_SRC_FILEMAN_NOW_TEXT_H_
#define ZANSONG_SRC_FILEMAN_NOW_TEXT_H_

#include "zansong/common/tsstring.h"

namespace zansong {

TSString NowText();

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_NOW_TEXT_H_
