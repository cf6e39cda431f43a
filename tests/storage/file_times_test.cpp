// File times as text, and setting them from text.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>
#include <string>

#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "support/utc_zone.h"
#include "zansong/storage/files.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::StdoutCapture;
using zansong_test::WriteFile;

// Runs the test in UTC, whatever the machine's zone.
class TimesTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.Path("/tmp/times/");
    MakeDirs(dir_);
    WriteFile(P("f"), "x");
  }
  std::string P(const std::string& name) { return dir_ + name; }
  struct stat Stat(const std::string& name) {
    struct stat st = {};
    stat(P(name).c_str(), &st);
    return st;
  }
  zansong_test::UtcZone utc_;
  std::string dir_;
};

// 2040-02-29 12:34:56 UTC: after 2038, beyond what a signed 32-bit time
// holds.
constexpr long long k2040 = 2214131696LL;

TEST_F(TimesTest, EpochFormSetsBothTimes) {
  EXPECT_EQ(SetModifyTime(P("f").c_str(), "1700000000", true), 0);
  EXPECT_EQ(Stat("f").st_mtime, 1700000000);
  EXPECT_EQ(Stat("f").st_atime, 1700000000);
  EXPECT_EQ(std::string(GetModifyTime(P("f").c_str()).c_str()), "Tue Nov 14 22:13:20 2023");
}

TEST_F(TimesTest, TextFormSetsBothTimes) {
  EXPECT_EQ(SetModifyTime(P("f").c_str(), "Sun Mar  3 04:05:06 2024", false), 0);
  EXPECT_EQ(Stat("f").st_mtime, 1709438706);
  EXPECT_EQ(Stat("f").st_atime, 1709438706);
  EXPECT_EQ(std::string(GetModifyTime(P("f").c_str()).c_str()), "Sun Mar  3 04:05:06 2024");
}

TEST_F(TimesTest, ModifyTimeTextRoundTrips) {
  WriteFile(P("g"), "y");
  SetModifyTime(P("f").c_str(), "1234567890", true);
  TSString text = GetModifyTime(P("f").c_str());
  SetModifyTime(P("g").c_str(), text.c_str(), false);
  EXPECT_EQ(Stat("g").st_mtime, 1234567890);
  EXPECT_EQ(std::string(GetModifyTime(P("g").c_str()).c_str()), text.c_str());
}

TEST_F(TimesTest, UnparsableTextPrintsLine) {
  StdoutCapture out;
  EXPECT_EQ(SetModifyTime(P("f").c_str(), "not a time", false), 0);
  EXPECT_EQ(out.Finish(), "\xC2\xA5nstrptime failed\xC2\xA5n");
}

TEST_F(TimesTest, MissingFileIsNotAnError) {
  EXPECT_EQ(SetModifyTime(P("none").c_str(), "1700000000", true), 0);
}

TEST_F(TimesTest, CreateTimeIsStatusChangeTime) {
  struct stat st = Stat("f");
  char expected[64];
  struct tm local;
  gmtime_r(&st.st_ctime, &local);
  strftime(expected, sizeof(expected), "%a %b %e %H:%M:%S %Y", &local);
  EXPECT_EQ(std::string(GetCreateTime(P("f").c_str()).c_str()), expected);
  // Setting the modification time does not move the creation text back.
  SetModifyTime(P("f").c_str(), "0", true);
  EXPECT_NE(std::string(GetCreateTime(P("f").c_str()).c_str()), "Thu Jan  1 00:00:00 1970");
  EXPECT_EQ(std::string(GetModifyTime(P("f").c_str()).c_str()), "Thu Jan  1 00:00:00 1970");
}

TEST_F(TimesTest, ModifyTimeAfter2038IsReadAsText) {
  ASSERT_TRUE(zansong_test::SetFileTimes(P("f"), k2040));
  EXPECT_EQ(std::string(GetModifyTime(P("f").c_str()).c_str()), "Wed Feb 29 12:34:56 2040");
}

TEST_F(TimesTest, TextAfter2038SetsTheTime) {
  EXPECT_EQ(SetModifyTime(P("f").c_str(), "Wed Feb  29 12:34:56 2040", false), 0);
  EXPECT_EQ(Stat("f").st_mtime, k2040);
  EXPECT_EQ(Stat("f").st_atime, k2040);
}

TEST_F(TimesTest, EpochSecondsAfter2038SetTheTime) {
  EXPECT_EQ(SetModifyTime(P("f").c_str(), "2214131696", true), 0);
  EXPECT_EQ(Stat("f").st_mtime, k2040);
  EXPECT_EQ(std::string(GetModifyTime(P("f").c_str()).c_str()), "Wed Feb 29 12:34:56 2040");
}

TEST_F(TimesTest, TextHasNoLineEnd) {
  TSString text = GetModifyTime(P("f").c_str());
  ASSERT_GT(text.Length(), 0);
  EXPECT_NE(text[text.Length() - 1], '\n');
  EXPECT_EQ(text.Length(), 24);
}

}  // namespace
