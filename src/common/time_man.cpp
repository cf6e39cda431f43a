#include "zansong/common/time_man.h"

#include <sys/time.h>

#include <ctime>

#include "zansong/common/convert.h"

double getclock() {
  timeval now;
  ::gettimeofday(&now, nullptr);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_usec) * 0.000001;
}

void TTimeMan::Reset(long long total_units, int duration, int inMilliseconds) {
  total = total_units;
  if (total > 0) {
    const double seconds = inMilliseconds != 0 ? duration / 1000.0 : duration * 0.1;
    secondsPerUnit = seconds / static_cast<double>(total);
  } else {
    secondsPerUnit = 0;
  }
  // A small floor per unit, so that an unmeasured rate still counts down.
  secondsPerUnit += 1.4285714285714286e-6;
  startTime = getclock();
  lastTime = startTime;
}

TSString TTimeMan::GetTimeString(unsigned long seconds) {
  const unsigned long hours = seconds / 3600;
  const unsigned long minutes = seconds / 60 % 60;
  const TSString colon(":");
  return TSString(static_cast<int>(hours % 100), 2) + colon +
         TSString(static_cast<int>(minutes), 2) + colon +
         TSString(static_cast<int>(seconds % 60), 2);
}

TSString TTimeMan::GetCurrentTimeString() {
  const double elapsed = getclock() - startTime;
  return GetTimeString(elapsed > 0 ? static_cast<unsigned long>(elapsed) : 0);
}

TSString TTimeMan::GetRemainTimeString(long long done, float interval) {
  const double now = getclock();
  if (now - lastTime < interval) return TSString();
  lastTime = now;
  const long long left = total - done > 0 ? total - done : 0;
  return GetTimeString(static_cast<unsigned long>(static_cast<double>(left) * secondsPerUnit));
}

TSString TTimeMan::GetCurrentSizeString(long long value, float interval) {
  const double now = getclock();
  if (now - lastTime < interval) return TSString();
  lastTime = now;
  char text[24];
  IntToStr(value, text);
  return TSString(text);
}

TSString TTimeMan::GetDateString() {
  const time_t now = std::time(nullptr);
  tm local;
  char text[16];
  if (::localtime_r(&now, &local) == nullptr ||
      std::strftime(text, sizeof text, "%y%m%d%H%M", &local) == 0) {
    return TSString();
  }
  return TSString(text);
}
