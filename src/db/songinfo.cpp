#include "zansong/db/songinfo.h"

SongInfo::SongInfo() : length(0) {}

TSString getprefix(TSString& category) {
  if (category == "Recorded Songs") return TSString("r");
  if (category == "rec") return TSString("i");
  if (category == "Downloaded Songs") return TSString("y");
  if (category == "FromToPC") return TSString("f");
  if (category == "preset") return TSString("d");
  return TSString("s");
}
