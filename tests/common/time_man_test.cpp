#include "zansong/common/time_man.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <cctype>
#include <ctime>
#include <string>

namespace {

bool AllDigits(const std::string& s) {
  for (char c : s) {
    if (!std::isdigit(static_cast<unsigned char>(c))) return false;
  }
  return true;
}

// "HH:MM:SS" with two digits in each part.
bool IsTimeString(const std::string& s) {
  return s.size() == 8 && s[2] == ':' && s[5] == ':' && AllDigits(s.substr(0, 2)) &&
         AllDigits(s.substr(3, 2)) && AllDigits(s.substr(6, 2));
}

TEST(GetClockTest, ReadsTheTimeOfDayInSeconds) {
  timeval before;
  gettimeofday(&before, nullptr);
  const double clock = getclock();
  timeval after;
  gettimeofday(&after, nullptr);
  EXPECT_GE(clock, static_cast<double>(before.tv_sec));
  EXPECT_LE(clock, static_cast<double>(after.tv_sec) + 1.0);
  EXPECT_GE(getclock(), clock);
}

TEST(TTimeManTest, TimeStringHasTwoDigitsPerPart) {
  EXPECT_STREQ("01:02:05", TTimeMan::GetTimeString(3725).c_str());
  EXPECT_STREQ("00:00:00", TTimeMan::GetTimeString(0).c_str());
  EXPECT_STREQ("00:00:59", TTimeMan::GetTimeString(59).c_str());
  EXPECT_STREQ("99:59:59", TTimeMan::GetTimeString(99 * 3600 + 59 * 60 + 59).c_str());
}

TEST(TTimeManTest, HoursAbove99KeepTheirLastTwoDigits) {
  EXPECT_STREQ("23:00:01", TTimeMan::GetTimeString(123 * 3600 + 1).c_str());
}

TEST(TTimeManTest, RemainTimeComesFromRateAndWorkLeft) {
  TTimeMan time;
  // 3600 s (36000 tenths) for 100 units: 36 s per unit plus the small floor.
  time.Reset(100, 36000, 0);
  EXPECT_STREQ("01:00:00", time.GetRemainTimeString(0, 0.0f).c_str());
  EXPECT_STREQ("00:30:00", time.GetRemainTimeString(50, 0.0f).c_str());
  EXPECT_STREQ("00:00:00", time.GetRemainTimeString(100, 0.0f).c_str());
  EXPECT_STREQ("00:00:00", time.GetRemainTimeString(150, 0.0f).c_str());  // never negative
}

TEST(TTimeManTest, DurationInMilliseconds) {
  TTimeMan time;
  time.Reset(10, 125000, 1);  // 125 s over 10 units
  EXPECT_STREQ("00:02:05", time.GetRemainTimeString(0, 0.0f).c_str());
}

TEST(TTimeManTest, WithoutWorkOnlyTheFloorRateCounts) {
  TTimeMan time;
  // No work: the duration is ignored and each unit counts 1/700000 s.
  time.Reset(0, 36000, 0);
  EXPECT_STREQ("00:00:00", time.GetRemainTimeString(0, 0.0f).c_str());
  EXPECT_STREQ("00:00:02", time.GetRemainTimeString(-1470000, 0.0f).c_str());
  time.Reset(1470000, 0, 1);
  EXPECT_STREQ("00:00:02", time.GetRemainTimeString(0, 0.0f).c_str());
}

TEST(TTimeManTest, SecondRemainTimeWithinIntervalIsEmpty) {
  TTimeMan time;
  time.Reset(100, 1000, 1);
  EXPECT_STREQ("", time.GetRemainTimeString(0, 3600.0f).c_str());
  EXPECT_TRUE(IsTimeString(time.GetRemainTimeString(0, 0.0f).c_str()));
  EXPECT_STREQ("", time.GetRemainTimeString(0, 3600.0f).c_str());
}

TEST(TTimeManTest, SizeStringIsThrottledLikeTheRemainTime) {
  TTimeMan time;
  time.Reset(100, 1000, 1);
  EXPECT_STREQ("", time.GetCurrentSizeString(42, 3600.0f).c_str());
  EXPECT_STREQ("1234567890123", time.GetCurrentSizeString(1234567890123LL, 0.0f).c_str());
  EXPECT_STREQ("-5", time.GetCurrentSizeString(-5, 0.0f).c_str());
  EXPECT_STREQ("", time.GetCurrentSizeString(42, 3600.0f).c_str());
  // The two share the last-string time.
  EXPECT_STREQ("", time.GetRemainTimeString(0, 3600.0f).c_str());
}

TEST(TTimeManTest, CurrentTimeStringRightAfterResetHasTheTimeForm) {
  TTimeMan time;
  time.Reset(1, 1, 1);
  const std::string elapsed = time.GetCurrentTimeString().c_str();
  EXPECT_TRUE(IsTimeString(elapsed)) << elapsed;
  EXPECT_EQ("00:00:0", elapsed.substr(0, 7));
}

TEST(TTimeManTest, DateStringIsTenDigitsOfTheLocalTime) {
  TTimeMan time;
  const time_t before = std::time(nullptr);
  const std::string date = time.GetDateString().c_str();
  ASSERT_EQ(10u, date.size());
  ASSERT_TRUE(AllDigits(date)) << date;
  tm local;
  localtime_r(&before, &local);
  // Year, month and day as of a moment ago (a test run at midnight may see
  // the next day).
  char day[8];
  strftime(day, sizeof day, "%y%m%d", &local);
  const int month = std::stoi(date.substr(2, 2));
  const int hour = std::stoi(date.substr(6, 2));
  const int minute = std::stoi(date.substr(8, 2));
  EXPECT_TRUE(month >= 1 && month <= 12);
  EXPECT_TRUE(hour >= 0 && hour <= 23);
  EXPECT_TRUE(minute >= 0 && minute <= 59);
  EXPECT_GE(date.substr(0, 6), std::string(day));
}

}  // namespace
