#include "zansong/common/charset.h"

#include <gtest/gtest.h>

#include <string>

#include "support/stdout_capture.h"

namespace {

using zansong_test::StdoutCapture;

// "Nihongo" (three kanji) and U+8868, whose Shift-JIS trail byte is 0x5C.
const char kNihongoUtf8[] = "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E";
const char kNihongoSjis[] = "\x93\xFA\x96\x7B\x8C\xEA";
const char kHyouUtf8[] = "\xE8\xA1\xA8";
const char kHyouSjis[] = "\x95\x5C";
// Katakana "A" and "SO" in Shift-JIS, and in UTF-8.
const char kAsoSjis[] = "\x83\x41\x83\x5C";
const char kAsoUtf8[] = "\xE3\x82\xA2\xE3\x82\xBD";

std::string Bytes(const TSString& s) { return std::string(s.c_str(), s.Length()); }

TEST(StringConvTest, ShiftJisToUtf8) {
  StdoutCapture capture;
  EXPECT_EQ(std::string(kNihongoUtf8) + " " + kHyouUtf8 + kAsoUtf8,
            Bytes(StringConv((std::string(kNihongoSjis) + " " + kHyouSjis + kAsoSjis).c_str(),
                             "SHIFT-JIS", "UTF-8")));
  EXPECT_EQ("", capture.Finish());
}

TEST(StringConvTest, Utf8ToShiftJis) {
  StdoutCapture capture;
  EXPECT_EQ(std::string("Song ") + kNihongoSjis + kHyouSjis + kAsoSjis,
            Bytes(StringConv((std::string("Song ") + kNihongoUtf8 + kHyouUtf8 + kAsoUtf8).c_str(),
                             "UTF-8", "SHIFT-JIS")));
  EXPECT_EQ("", capture.Finish());
}

TEST(StringConvTest, EmptyTextGivesEmptyResult) {
  StdoutCapture capture;
  EXPECT_EQ("", Bytes(StringConv("", "SHIFT-JIS", "UTF-8")));
  EXPECT_EQ("", Bytes(StringConv(nullptr, "SHIFT-JIS", "UTF-8")));
  EXPECT_EQ("", capture.Finish());
}

TEST(StringConvTest, InvalidInputPrintsErrorAndReturnsWhatWasConverted) {
  StdoutCapture capture;
  // 0x80 is not a Shift-JIS character.
  const TSString result =
      StringConv((std::string("ab") + kHyouSjis + "\x80" + "cd").c_str(), "SHIFT-JIS", "UTF-8");
  EXPECT_EQ("ICONV ERROR ", capture.Finish());
  EXPECT_EQ(std::string("ab") + kHyouUtf8, Bytes(result));
}

TEST(StringConvTest, UnconvertibleCharacterPrintsErrorAndReturnsWhatWasConverted) {
  StdoutCapture capture;
  // U+1F600 has no Shift-JIS form.
  const TSString result = StringConv((std::string(kNihongoUtf8) + "\xF0\x9F\x98\x80" + "x").c_str(),
                                     "UTF-8", "SHIFT-JIS");
  EXPECT_EQ("ICONV ERROR ", capture.Finish());
  EXPECT_EQ(kNihongoSjis, Bytes(result));
}

TEST(StringConvTest, UnknownCharacterSetPrintsCannotOpen) {
  StdoutCapture capture;
  const TSString result = StringConv("abc", "NO-SUCH-CHARSET", "UTF-8");
  EXPECT_EQ("Can not open iconv ", capture.Finish());
  EXPECT_EQ("", Bytes(result));
}

}  // namespace
