// Clock readings and the time strings of progress boxes.
//
// TTimeMan estimates the remaining time of a piece of work of `total` units
// (bytes or items) from a fixed rate set by Reset, and throttles the strings
// it hands out: GetRemainTimeString and GetCurrentSizeString return "" until
// `interval` seconds have passed since the last string they produced.
#ifndef ZANSONG_COMMON_TIME_MAN_H_
#define ZANSONG_COMMON_TIME_MAN_H_

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

// Time of day in seconds (gettimeofday: seconds + microseconds * 1e-6).
ZANSONG_EXPORT double getclock();

class ZANSONG_EXPORT TTimeMan {
 public:
  // Sets the amount of work and the rate: duration is in milliseconds when
  // inMilliseconds is non-zero, else in tenths of a second, spread over
  // total units (rate 0 when total <= 0), plus 1/700000 s per unit.  Starts
  // the clock.
  void Reset(long long total, int duration, int inMilliseconds);

  // "HH:MM:SS", each part two digits; hours above 99 keep their last two.
  static TSString GetTimeString(unsigned long seconds);
  // GetTimeString of the whole seconds since Reset.
  TSString GetCurrentTimeString();
  // After interval seconds since the last string: the estimated time left
  // for total - done units (at least 0) as GetTimeString.  Otherwise "".
  TSString GetRemainTimeString(long long done, float interval);
  // After interval seconds since the last string: value in decimal.
  // Otherwise "".
  TSString GetCurrentSizeString(long long value, float interval);
  // Local date and time as "YYMMDDhhmm".
  TSString GetDateString();

 private:
  long long total = 0;
  double secondsPerUnit = 0;
  double startTime = 0;
  double lastTime = 0;
};

#endif  // ZANSONG_COMMON_TIME_MAN_H_
