// Titles to file names: the kana tables, the forbidden sets, cuts.
#include <gtest/gtest.h>
#include <iconv.h>

#include <cstring>
#include <string>
#include <vector>

#include "zansong/storage/naming.h"

namespace {

// The characters as the user types them, encoded to Shift-JIS (Microsoft
// code page, which maps the full-width tilde and hyphen the way titles on
// the instrument use them).
std::string ToShiftJis(const std::string& utf8) {
  iconv_t cd = iconv_open("CP932", "UTF-8");
  EXPECT_NE(cd, reinterpret_cast<iconv_t>(-1));
  std::string in = utf8;
  std::vector<char> out(in.size() * 2 + 8);
  char* inp = &in[0];
  size_t inLeft = in.size();
  char* outp = out.data();
  size_t outLeft = out.size();
  size_t rc = iconv(cd, &inp, &inLeft, &outp, &outLeft);
  EXPECT_NE(rc, static_cast<size_t>(-1)) << utf8;
  iconv_close(cd);
  return std::string(out.data(), out.size() - outLeft);
}

// Splits UTF-8 text into its characters.
std::vector<std::string> Characters(const std::string& utf8) {
  std::vector<std::string> chars;
  for (size_t i = 0; i < utf8.size();) {
    unsigned char c = utf8[i];
    size_t n = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    chars.push_back(utf8.substr(i, n));
    i += n;
  }
  return chars;
}

const char kStrict[] = " \\/:*?\"<>|&+,.;=[]^`";
const char kLenient[] = " \\/:*?\"<>|";

std::string Convert(const std::string& title, int size, bool keepDoubleByte, int* length) {
  std::vector<char> out(size + 4, '#');
  *length = ChangeTitleToFilename(TSString(title.c_str()), out.data(), size, keepDoubleByte);
  // Exactly size bytes are written, and nothing past them.
  for (int i = size; i < size + 4; ++i) EXPECT_EQ('#', out[i]);
  for (int i = *length; i < size; ++i) EXPECT_EQ('\0', out[i]);
  return std::string(out.data(), *length);
}

std::string Convert(const std::string& title, bool keepDoubleByte) {
  int length = 0;
  return Convert(title, 64, keepDoubleByte, &length);
}

struct Expected {
  std::string chars;  // UTF-8
  std::vector<unsigned char> half;
};

std::vector<Expected> FullWidthTable() {
  std::vector<unsigned char> kana;
  for (int i = 0; i < 45; ++i) kana.push_back(0xB1 + i);
  kana[12] = 0xB8;  // "su" is written as the half-width "ku"
  kana[27] = 0xB8;  // and so is "fu"
  std::vector<unsigned char> small;
  for (int i = 0xA7; i <= 0xAF; ++i) small.push_back(i);
  std::vector<unsigned char> ascii;
  for (int i = 0x20; i <= 0x7E; ++i) ascii.push_back(i);
  return {
      {"アイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤユヨラリルレロワン",
       kana},
      {"ヲ", {0xA6}},
      {"ァィゥェォャュョッ", small},
      {"ー", {0x2D}},
      {"。「」、・", {0xA1, 0xA2, 0xA3, 0xA4, 0xA5}},
      {"　！”＃＄％＆’（）＊＋，－．／０１２３４５６７８９：；＜＝＞？＠"
       "ＡＢＣＤＥＦＧＨＩＪＫＬＭＮＯＰＱＲＳＴＵＶＷＸＹＺ［￥］＾＿｀"
       "ａｂｃｄｅｆｇｈｉｊｋｌｍｎｏｐｑｒｓｔｕｖｗｘｙｚ｛｜｝～",
       ascii},
  };
}

TEST(ChangeTitleToFilenameTest, EveryFullWidthCharacterBecomesItsHalfWidthForm) {
  int count = 0;
  for (const Expected& group : FullWidthTable()) {
    std::vector<std::string> chars = Characters(group.chars);
    ASSERT_EQ(chars.size(), group.half.size()) << group.chars;
    for (size_t i = 0; i < chars.size(); ++i, ++count) {
      std::string sjis = ToShiftJis(chars[i]);
      ASSERT_EQ(2u, sjis.size()) << chars[i];
      unsigned char half = group.half[i];
      std::string expected(1, std::strchr(kStrict, half) != nullptr ? '_' : char(half));
      EXPECT_EQ(expected, Convert(sjis, false)) << chars[i];
    }
  }
  EXPECT_EQ(156, count);
}

TEST(ChangeTitleToFilenameTest, EveryVoicedKanaBecomesBaseAndMark) {
  const std::string voiced = "ガギグゲゴザジズゼゾダヂヅデドバビブベボパピプペポ";
  const unsigned char bases[] = {0xB6, 0xB7, 0xB8, 0xB9, 0xBA, 0xBB, 0xBC, 0xBD, 0xBE,
                                 0xBF, 0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xCA, 0xCB, 0xCC,
                                 0xCD, 0xCE, 0xCA, 0xCB, 0xCC, 0xCD, 0xCE};
  std::vector<std::string> chars = Characters(voiced);
  ASSERT_EQ(25u, chars.size());
  for (size_t i = 0; i < chars.size(); ++i) {
    std::string expected;
    expected += char(bases[i]);
    expected += char(i < 20 ? 0xDE : 0xDF);
    EXPECT_EQ(expected, Convert(ToShiftJis(chars[i]), false)) << chars[i];
  }
}

TEST(ChangeTitleToFilenameTest, FullWidthSuBecomesHalfWidthKu) {
  EXPECT_EQ("\xB8", Convert(ToShiftJis("ス"), false));
  EXPECT_EQ("\xB8", Convert(ToShiftJis("ク"), false));
}

TEST(ChangeTitleToFilenameTest, OtherDoubleByteCharactersBecomeUnderscore) {
  EXPECT_EQ("a_b", Convert(ToShiftJis("a漢b"), false));
}

TEST(ChangeTitleToFilenameTest, KeepDoubleByteCopiesPairsThatFit) {
  std::string title = ToShiftJis("漢ス");
  EXPECT_EQ(title, Convert(title, true));
  int length = 0;
  // One byte left: the pair is dropped, not split.
  EXPECT_EQ("a", Convert("a" + title, 2, true, &length));
  EXPECT_EQ(1, length);
}

TEST(ChangeTitleToFilenameTest, VoicedKanaWithOneByteLeftWritesOnlyTheBase) {
  int length = 0;
  EXPECT_EQ("a\xB6", Convert("a" + ToShiftJis("ガ"), 2, false, &length));
  EXPECT_EQ(2, length);
}

TEST(ChangeTitleToFilenameTest, StrictSetWithoutKeepDoubleByte) {
  for (const char* c = kStrict; *c != '\0'; ++c) {
    EXPECT_EQ("x_y", Convert(std::string("x") + *c + "y", false)) << *c;
  }
}

TEST(ChangeTitleToFilenameTest, LenientSetWithKeepDoubleByte) {
  for (const char* c = kStrict; *c != '\0'; ++c) {
    bool forbidden = std::strchr(kLenient, *c) != nullptr;
    std::string expected = std::string("x") + (forbidden ? '_' : *c) + "y";
    EXPECT_EQ(expected, Convert(std::string("x") + *c + "y", true)) << *c;
  }
}

TEST(ChangeTitleToFilenameTest, SlashAndDot) {
  EXPECT_EQ("A_B", Convert("A/B", true));
  EXPECT_EQ("a.b", Convert("a.b", true));
  EXPECT_EQ("a_b", Convert("a.b", false));
}

TEST(ChangeTitleToFilenameTest, HalfWidthKanaAreKeptAndUnusedBytesDropped) {
  EXPECT_EQ("\xB1\xDF", Convert("\xB1\x80\xA0\xDF\xFD\xFE\xFF", false));
}

TEST(ChangeTitleToFilenameTest, LeadByteAtTheEndIsDropped) {
  EXPECT_EQ("ab", Convert("ab\x83", false));
  EXPECT_EQ("ab", Convert("ab\x83", true));
}

TEST(ChangeTitleToFilenameTest, CutAtSizeWithoutTerminator) {
  int length = 0;
  EXPECT_EQ("abc", Convert("abcdef", 3, false, &length));
  EXPECT_EQ(3, length);
  EXPECT_EQ("", Convert("abc", 0, false, &length));
  EXPECT_EQ(0, length);
}

TEST(ChangeTitleToFilenameUTF8Test, ForbiddenSetsAndHighBytes) {
  char out[32];
  EXPECT_EQ(5, ChangeTitleToFilenameUTF8("a.b/c", out, sizeof(out), true));
  EXPECT_STREQ("a.b_c", out);
  EXPECT_EQ(5, ChangeTitleToFilenameUTF8("a.b/c", out, sizeof(out), false));
  EXPECT_STREQ("a_b_c", out);
  EXPECT_EQ(4, ChangeTitleToFilenameUTF8("\xC3\xA9&x", out, sizeof(out), true));
  EXPECT_STREQ("\xC3\xA9&x", out);
  EXPECT_EQ(4, ChangeTitleToFilenameUTF8("\xC3\xA9&x", out, sizeof(out), false));
  EXPECT_STREQ("\xC3\xA9_x", out);
}

TEST(ChangeTitleToFilenameUTF8Test, CutMaySplitACharacter) {
  char out[8] = {'#', '#', '#', '#', '#', '#', '#', '#'};
  EXPECT_EQ(2, ChangeTitleToFilenameUTF8("a\xC3\xA9", out, 2, true));
  EXPECT_EQ('a', out[0]);
  EXPECT_EQ('\xC3', out[1]);
  EXPECT_EQ('#', out[2]);
}

TEST(GetExternalNameTest, NumberedNames) {
  EXPECT_STREQ("07_Song", GetExternalName("Song", 7, 2, false).c_str());
  EXPECT_STREQ("123_Song", GetExternalName("Song", 123, 2, false).c_str());
  EXPECT_STREQ("123_Song", GetExternalName("Song book", 123, 2, false).c_str());
  EXPECT_STREQ("007_My_Song.x", GetExternalName("My Song.x", 7, 3, true).c_str());
  EXPECT_STREQ("01_a_b", GetExternalName("a.b", 1, 2, false).c_str());
}

TEST(GetExternalNameTest, LongNamesStopAt64Bytes) {
  std::string title(100, 'x');
  EXPECT_EQ(64, GetExternalName(title.c_str(), 1, 2, true).Length());
}

TEST(GetExternalName2Test, LenientAndAtMost128Bytes) {
  EXPECT_STREQ("a.b_c_", GetExternalName2("a.b/c?").c_str());
  std::string title(300, 'y');
  TSString name = GetExternalName2(title.c_str());
  EXPECT_EQ(128, name.Length());
  EXPECT_EQ(std::string(128, 'y'), name.c_str());
}

}  // namespace
