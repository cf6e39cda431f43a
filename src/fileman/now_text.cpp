// The ctime text of the current moment.
#include "fileman/now_text.h"

#include <ctime>

namespace zansong {

TSString NowText() {
  std::time_t now = std::time(nullptr);
  char text[64] = "";
  ctime_r(&now, text);
  TSString trimmed(text);
  trimmed.Trim();
  return trimmed;
}

}  // namespace zansong
