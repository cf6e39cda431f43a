// Collapsing blanks in titles and building 8+3 file names.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "zansong/formats/smf.h"
#include "zansong/formats/title_text.h"

namespace {

std::string Slim(const std::string& src) {
  char dst[256];
  GetSlimText(dst, src.c_str());
  return dst;
}

std::string NewTitle(const std::string& src) {
  char dst[33];
  GetNewTitle(src.c_str(), dst);
  return dst;
}

std::string FileName(const char* entry) {
  char dst[13];
  GetFileName(entry, dst);
  return dst;
}

TEST(TitleTextTest, SlimTextDropsLeadingBlanksAndCollapsesRuns) {
  EXPECT_EQ(Slim("   a  b\t\t c"), "a b\tc");
  EXPECT_EQ(Slim("\r\n\x01title"), "title");
  EXPECT_EQ(Slim(""), "");
  EXPECT_EQ(Slim("     "), "");
}

TEST(TitleTextTest, SlimTextKeepsTheFirstBlankOfARun) { EXPECT_EQ(Slim("a\t  b"), "a\tb"); }

TEST(TitleTextTest, SlimTextRemovesOneTrailingBlank) {
  EXPECT_EQ(Slim("title   "), "title");
  EXPECT_EQ(Slim("title\r\n"), "title");
}

TEST(TitleTextTest, HighBytesAreVisible) {
  EXPECT_EQ(Slim("\x81\x40  \x82\xA0"), "\x81\x40 \x82\xA0");
}

TEST(TitleTextTest, NewTitleLooksAtMost32BytesAndKeepsTheTrailingBlank) {
  EXPECT_EQ(NewTitle("  Song   name   "), "Song name ");
  EXPECT_EQ(NewTitle(std::string(31, 'a') + "bc"), std::string(31, 'a') + "b");
}

TEST(TitleTextTest, DummyLongTitle) {
  TSongPara para{};
  std::strcpy(para.longTitle, "   Long    title");
  GetDummyLongTitle(&para);
  EXPECT_STREQ(para.title, "Long title");
  std::memset(para.longTitle, 'x', 32);
  para.longTitle[32] = '\0';
  GetDummyLongTitle(&para);
  EXPECT_EQ(std::string(para.title), std::string(32, 'x'));
}

TEST(TitleTextTest, FileNameFromAnEightPlusThreeField) {
  EXPECT_EQ(FileName("SONG0001MID"), "SONG0001.MID");
  EXPECT_EQ(FileName("SONG0001   "), "SONG0001");
  EXPECT_EQ(FileName("AB      MID"), "AB.MID");
  EXPECT_EQ(FileName("AB CD   MID"), "AB.MID");
  EXPECT_EQ(FileName("ABCDEFGHM I"), "ABCDEFGH.M");
  EXPECT_EQ(FileName("AB"), "AB");
  EXPECT_EQ(FileName(""), "");
}

}  // namespace
