// File times as text: the same text as asctime gives, in any time zone.
#include "storage/local_time_text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

namespace {

// asctime of t in local time, without the line end; "" when there is none.
std::string AsctimeOf(time_t t) {
  struct tm local;
  char text[64];
  if (localtime_r(&t, &local) == nullptr || asctime_r(&local, text) == nullptr) return "";
  std::string s(text);
  while (!s.empty() && static_cast<unsigned char>(s.back()) <= 0x20) s.pop_back();
  return s;
}

class LocalTimeTextTest : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const char* tz = std::getenv("TZ");
    hadZone_ = tz != nullptr;
    if (hadZone_) oldZone_ = tz;
    setenv("TZ", GetParam(), 1);
    tzset();
  }
  void TearDown() override {
    if (hadZone_) {
      setenv("TZ", oldZone_.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  bool hadZone_ = false;
  std::string oldZone_;
};

TEST_P(LocalTimeTextTest, IsAsctimeWithoutTheLineEnd) {
  std::vector<time_t> times = {0,          1,  59,           86399,      951782400 /* 2000-02-29 */,
                               1700000000, -1, -86400 * 366, 2147483647, 4102444800 /* 2100 */};
  // Every day of two years, at changing hours, across the changes of
  // daylight saving time.
  for (time_t t = 1704067200; t < 1704067200 + 2 * 366 * 86400; t += 86400 + 3607) {
    times.push_back(t);
  }
  // Years with fewer than four digits and beyond four.
  times.push_back(-62135596800 + 86400 * 400);  // year 1 and some
  times.push_back(-30000000000);                // year 1019
  times.push_back(-40000000000);                // year 702
  times.push_back(253402300799);                // 9999-12-31 23:59:59
  times.push_back(253402300800);                // year 10000: asctime gives up
  zansong::LocalTimeText text;
  for (time_t t : times) {
    EXPECT_EQ(AsctimeOf(t), text.Of(t)) << t;
    // A second time comes from the remembered text.
    EXPECT_EQ(AsctimeOf(t), text.Of(t)) << t;
  }
  // Times that share a place among the remembered ones, in turn.
  for (time_t t : {1700000000, 1700000016, 1700000000, 1700000032, 1700000016}) {
    EXPECT_EQ(AsctimeOf(t), text.Of(t)) << t;
  }
}

INSTANTIATE_TEST_SUITE_P(Zones, LocalTimeTextTest,
                         ::testing::Values("UTC", "CET-1CEST,M3.5.0,M10.5.0/3", "JST-9",
                                           "EST5EDT,M3.2.0,M11.1.0", "<+0545>-5:45"));

}  // namespace
