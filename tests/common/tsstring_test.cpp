#include "zansong/common/tsstring.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

// The bytes of s, so that failures print readably and embedded bytes count.
std::string Bytes(const TSString& s) { return std::string(s.c_str(), s.Length()); }

// Shift-JIS two-byte characters whose trail byte has the value of "\".
const char kHyou[] = "\x95\x5C";  // U+8868
const char kSo[] = "\x83\x5C";    // katakana SO
const char kJuu[] = "\x8F\x5C";   // U+5341

TEST(TSStringTest, DefaultAndNullTextAreEmpty) {
  TSString empty;
  EXPECT_EQ(0, empty.Length());
  EXPECT_STREQ("", empty.c_str());
  TSString from_null(static_cast<const char*>(nullptr));
  EXPECT_EQ(0, from_null.Length());
  EXPECT_STREQ("", from_null.c_str());
  TSString assigned("x");
  assigned = static_cast<const char*>(nullptr);
  EXPECT_EQ("", Bytes(assigned));
}

TEST(TSStringTest, CountedConstructorCopiesAtMostNBytes) {
  EXPECT_EQ("abc", Bytes(TSString("abcdef", 3)));
  EXPECT_EQ("ab", Bytes(TSString("ab", 5)));
  EXPECT_EQ("", Bytes(TSString("ab", 0)));
  EXPECT_EQ("", Bytes(TSString("ab", -3)));
}

TEST(TSStringTest, NullTextWithCountGivesPresizedBufferToFill) {
  TSString s(nullptr, 4);
  EXPECT_EQ(4, s.Length());
  EXPECT_EQ(0, s[0]);
  char* buffer = s;
  buffer[0] = 'w';
  buffer[1] = 'x';
  buffer[2] = 'y';
  buffer[3] = 'z';
  EXPECT_STREQ("wxyz", s.c_str());
  EXPECT_EQ(0, s[4]);
}

TEST(TSStringTest, IntegerConstructorsWriteDecimal) {
  EXPECT_EQ("-7", Bytes(TSString(-7)));
  EXPECT_EQ("0", Bytes(TSString(0)));
  EXPECT_EQ("120", Bytes(TSString(120)));
  EXPECT_EQ("2147483647", Bytes(TSString(INT_MAX)));
  EXPECT_EQ("-2147483648", Bytes(TSString(INT_MIN)));
  EXPECT_EQ("4294967295", Bytes(TSString(4294967295u)));
  EXPECT_EQ("0", Bytes(TSString(0u)));
}

TEST(TSStringTest, WidthConstructorZeroPadsAndDropsHighDigits) {
  EXPECT_EQ("007", Bytes(TSString(7, 3)));
  EXPECT_EQ("345", Bytes(TSString(12345, 3)));
  EXPECT_EQ("", Bytes(TSString(12, 0)));
  // The value is taken as unsigned: -1 is 4294967295.
  EXPECT_EQ("295", Bytes(TSString(-1, 3)));
  EXPECT_EQ("-7", Bytes(TSString(-7, -1)));
}

TEST(TSStringTest, CopyEndsAtEmbeddedZero) {
  TSString s(nullptr, 5);
  char* buffer = s;
  buffer[0] = 'a';
  buffer[1] = 'b';
  buffer[2] = 0;
  buffer[3] = 'c';
  buffer[4] = 'd';
  TSString copy(s);
  EXPECT_EQ(2, copy.Length());
  EXPECT_EQ("ab", Bytes(copy));
  TSString assigned("zzzzzz");
  assigned = s;
  EXPECT_EQ(2, assigned.Length());
}

TEST(TSStringTest, SelfAssignmentLeavesStringUnchanged) {
  TSString s("abc");
  TSString& alias = s;
  s = alias;
  EXPECT_EQ("abc", Bytes(s));
  EXPECT_EQ(3, s.Length());
}

TEST(TSStringTest, AssignmentFromOwnBufferIsSafe) {
  TSString s("abcdef");
  s = s.c_str() + 2;
  EXPECT_EQ("cdef", Bytes(s));
}

TEST(TSStringTest, ComparisonIsBytewiseAndCaseSensitive) {
  EXPECT_TRUE(TSString("abc") == TSString("abc"));
  EXPECT_TRUE(TSString("abc") == "abc");
  EXPECT_TRUE(TSString("abc") != "ABC");
  EXPECT_TRUE(TSString("abc") != TSString("abcd"));
  EXPECT_FALSE(TSString("abc") != "abc");
}

TEST(TSStringTest, ConcatenationAddsLengths) {
  TSString joined = TSString("ab") + TSString("cde");
  EXPECT_EQ("abcde", Bytes(joined));
  EXPECT_EQ(5, joined.Length());
  TSString s("x");
  s += TSString("yz");
  EXPECT_EQ("xyz", Bytes(s));
  s += s;
  EXPECT_EQ("xyzxyz", Bytes(s));
  EXPECT_EQ(6, s.Length());
  s += TSString();
  EXPECT_EQ("xyzxyz", Bytes(s));
}

TEST(TSStringTest, DeleteClampsPositionAndCount) {
  TSString s("abc");
  s.Delete(0, 1);
  EXPECT_EQ("bc", Bytes(s));

  s = "abc";
  s.Delete(2, 99);
  EXPECT_EQ("a", Bytes(s));

  s = "abc";
  s.Delete(2, 1);
  EXPECT_EQ("ac", Bytes(s));

  s = "abc";
  s.Delete(4, 1);  // at length+1: nothing to remove
  EXPECT_EQ("abc", Bytes(s));

  s = "abc";
  s.Delete(99, 5);
  EXPECT_EQ("abc", Bytes(s));

  s = "abc";
  s.Delete(1, INT_MAX);
  EXPECT_EQ("", Bytes(s));

  s = "abc";
  s.Delete(INT_MIN, INT_MAX);
  EXPECT_EQ("", Bytes(s));

  s = "abc";
  s.Delete(2, -4);
  EXPECT_EQ("abc", Bytes(s));
}

TEST(TSStringTest, InsertClampsPosition) {
  TSString s("abc");
  s.Insert(TSString("X"), 99);
  EXPECT_EQ("abcX", Bytes(s));
  s = "abc";
  s.Insert(TSString("X"), 1);
  EXPECT_EQ("Xabc", Bytes(s));
  s = "abc";
  s.Insert(TSString("X"), -3);
  EXPECT_EQ("Xabc", Bytes(s));
  s = "abc";
  s.Insert(TSString("XY"), 2);
  EXPECT_EQ("aXYbc", Bytes(s));
  EXPECT_EQ(5, s.Length());
  s = "ab";
  s.Insert(s, 2);
  EXPECT_EQ("aabb", Bytes(s));
}

TEST(TSStringTest, SubStringPastEndIsEmptyAndCountIsCut) {
  TSString s("abc");
  EXPECT_EQ("c", Bytes(s.SubString(3)));
  EXPECT_EQ("", Bytes(s.SubString(4)));
  EXPECT_EQ("bc", Bytes(s.SubString(2, 10)));
  EXPECT_EQ("b", Bytes(s.SubString(2, 1)));
  EXPECT_EQ("", Bytes(s.SubString(2, 0)));
  EXPECT_EQ("", Bytes(s.SubString(2, -1)));
  EXPECT_EQ("bc", Bytes(s.SubString(2, INT_MAX)));
  EXPECT_EQ("", Bytes(s.SubString(INT_MAX, INT_MAX)));
  EXPECT_EQ("", Bytes(TSString().SubString(1)));
}

TEST(TSStringTest, SubStringBeforeFirstPositionStartsAtFirst) {
  TSString s("abc");
  EXPECT_EQ("abc", Bytes(s.SubString(0)));
  EXPECT_EQ("ab", Bytes(s.SubString(-5, 2)));
}

TEST(TSStringTest, SetLengthOnlyShortens) {
  TSString s("abc");
  s.SetLength(10);
  EXPECT_EQ("abc", Bytes(s));
  s.SetLength(3);
  EXPECT_EQ("abc", Bytes(s));
  s.SetLength(1);
  EXPECT_EQ("a", Bytes(s));
  EXPECT_EQ(1, s.Length());
  s.SetLength(-1);
  EXPECT_EQ("", Bytes(s));
}

TEST(TSStringTest, TrimRemovesBlanksAndControlBytesAtBothEnds) {
  TSString s(" \t a b\r\n ");
  s.Trim();
  EXPECT_EQ("a b", Bytes(s));
  s = "\x01\x1f \n";
  s.Trim();
  EXPECT_EQ("", Bytes(s));
  s = "\x81\x40 ";
  s.Trim();  // bytes of 0x80 and above are text
  EXPECT_EQ("\x81\x40", Bytes(s));
  s = "plain";
  s.Trim();
  EXPECT_EQ("plain", Bytes(s));
}

TEST(TSStringTest, StripRemovesEveryByteOfTheSet) {
  TSString s("abcabd-a");
  s.Strip(TSString("ab"));
  EXPECT_EQ("cd-", Bytes(s));
  s = "keep";
  s.Strip(TSString());
  EXPECT_EQ("keep", Bytes(s));
}

TEST(TSStringTest, CaseConversionTouchesOnlyAsciiLetters) {
  TSString s("abcXYZ-09\xE4");
  s.UpperCase();
  EXPECT_EQ("ABCXYZ-09\xE4", Bytes(s));
  s.LowerCase();
  EXPECT_EQ("abcxyz-09\xE4", Bytes(s));
}

TEST(TSStringTest, SjisCaseConversionLeavesTrailBytes) {
  // 0x82 0x61 is a fullwidth letter whose trail byte has the value of "a".
  TSString s(
      "\x82\x61"
      "a");
  TSString plain(s);
  plain.UpperCase();
  EXPECT_EQ(
      "\x82\x41"
      "A",
      Bytes(plain));  // the plain variant breaks the character
  s.UpperCaseSJIS();
  EXPECT_EQ(
      "\x82\x61"
      "A",
      Bytes(s));

  // 0x83 0x41 is katakana A; its trail byte has the value of "A".
  TSString t(
      "\x83\x41"
      "A");
  t.LowerCaseSJIS();
  EXPECT_EQ(
      "\x83\x41"
      "a",
      Bytes(t));
}

TEST(TSStringTest, SjisScanTreatsByteAfterTrailAsCharacterStart) {
  // 0x82 0x82 is one character (the second byte a trail even though it has
  // a lead byte's value); the "a" after it is ordinary.
  TSString s(
      "\x82\x82"
      "a");
  s.UpperCaseSJIS();
  EXPECT_EQ(
      "\x82\x82"
      "A",
      Bytes(s));
}

TEST(TSStringTest, AnsiPosFindsFirstOccurrence) {
  EXPECT_EQ(3, TSString("abc").AnsiPos(TSString("c")));
  EXPECT_EQ(0, TSString("xyz").AnsiPos(TSString("c")));
  EXPECT_EQ(2, TSString("abcbc").AnsiPos(TSString("bc")));
  EXPECT_EQ(1, TSString("abc").AnsiPos(TSString()));
  EXPECT_EQ(1, TSString().AnsiPos(TSString()));
  EXPECT_EQ(0, TSString("ab").AnsiPos(TSString("abc")));
}

TEST(TSStringTest, AnsiPosSjisNeverMatchesFromATrailByte) {
  TSString s = TSString(kHyou) + TSString("a");
  TSString sub("\\a");  // the trail byte of the character and the next byte
  EXPECT_EQ(2, s.AnsiPos(sub));
  EXPECT_EQ(0, s.AnsiPosSJIS(sub));

  TSString t = TSString(kHyou) + TSString("a\\a");
  EXPECT_EQ(2, t.AnsiPos(sub));
  EXPECT_EQ(4, t.AnsiPosSJIS(sub));

  // A match may start at a lead byte.
  EXPECT_EQ(1, t.AnsiPosSJIS(TSString(kHyou)));
  EXPECT_EQ(3, (TSString(kSo) + TSString(kJuu)).AnsiPosSJIS(TSString(kJuu)));
  EXPECT_EQ(1, t.AnsiPosSJIS(TSString()));
}

TEST(TSStringTest, ToIntAcceptsOnlyDigitsWithLeadingMinus) {
  EXPECT_EQ(-12, TSString("-12").ToInt());
  EXPECT_EQ(0, TSString("1-2").ToInt());
  EXPECT_EQ(0, TSString("12a").ToInt());
  EXPECT_EQ(0, TSString(" 12").ToInt());
  EXPECT_EQ(0, TSString().ToInt());
  EXPECT_EQ(7, TSString("007").ToInt());
  EXPECT_EQ(2147483647, TSString("2147483647").ToInt());
}

TEST(TSStringTest, ToLongLongIntAcceptsOnlyDigits) {
  EXPECT_EQ(0, TSString("-12").ToLongLongInt());
  EXPECT_EQ(12345678901LL, TSString("12345678901").ToLongLongInt());
  EXPECT_EQ(0, TSString("12x").ToLongLongInt());
  EXPECT_EQ(0, TSString().ToLongLongInt());
}

TEST(TSStringTest, SqlStringModeZeroNeverDoublesATrailByte) {
  for (const char* character : {kHyou, kSo, kJuu}) {
    TSString s(character);
    s.SQLString(0);
    EXPECT_EQ(std::string(character), Bytes(s));
    TSString bytewise(character);
    bytewise.SQLString(1);
    EXPECT_EQ(std::string(character) + "\\", Bytes(bytewise));
  }
}

TEST(TSStringTest, SqlStringModeZeroDoublesOrdinaryQuotesAndBackslashes) {
  TSString s = TSString("O'") + TSString(kHyou) + TSString("\\'");
  TSString& result = s.SQLString(0);
  EXPECT_EQ(&s, &result);
  EXPECT_EQ(std::string("O''") + kHyou + "\\\\''", Bytes(s));
}

TEST(TSStringTest, SqlStringOtherModesDoubleEveryQuoteAndBackslash) {
  TSString s("it's a\\b");
  s.SQLString(1);
  EXPECT_EQ("it''s a\\\\b", Bytes(s));
  TSString none("plain");
  none.SQLString(2);
  EXPECT_EQ("plain", Bytes(none));
}

TEST(TSStringTest, SqlLikeStringEscapesWildcards) {
  TSString s("50%_a#'\\");
  TSString& result = s.SQLLikeStringUTF8(TSString("\\"));
  EXPECT_EQ(&s, &result);
  EXPECT_EQ("50\\%\\_a\\#''\\\\", Bytes(s));
  TSString t("a_b");
  t.SQLLikeStringUTF8(TSString("!!"));
  EXPECT_EQ("a!!_b", Bytes(t));
}

TEST(TSStringTest, XmlEscapeReplacesTheFiveSpecialCharacters) {
  TSString s("a&b<c>d\"e'f \xE3\x81\x82");
  TSString& result = s.XMLEscapeString();
  EXPECT_EQ(&s, &result);
  EXPECT_EQ("a&amp;b&lt;c&gt;d&quot;e&apos;f \xE3\x81\x82", Bytes(s));
}

TEST(TSStringTest, XmlEscapeEscapesAnExistingEntityAgain) {
  TSString s("&amp;");
  s.XMLEscapeString();
  EXPECT_EQ("&amp;amp;", Bytes(s));
}

TEST(TSStringTest, IsSjisChecksEveryByte) {
  EXPECT_EQ(1, is_SJIS(TSString()));
  EXPECT_EQ(0, is_SJIS(TSString("\x80")));
  EXPECT_EQ(1, is_SJIS(TSString("abc")));
  EXPECT_EQ(1, is_SJIS(TSString(kHyou) + TSString(kSo) + TSString(kJuu)));
  EXPECT_EQ(1, is_SJIS(TSString("\xB1\xDF")));  // half-width katakana
  EXPECT_EQ(0, is_SJIS(TSString("\x95\x7F")));  // 0x7F is no trail byte
  EXPECT_EQ(0, is_SJIS(TSString("\x95\x3F")));  // below the trail range
  EXPECT_EQ(0, is_SJIS(TSString("\x95\xFD")));  // above the trail range
  EXPECT_EQ(0, is_SJIS(TSString("a\xA0")));
  EXPECT_EQ(0, is_SJIS(TSString("\xFD")));
  EXPECT_EQ(0, is_SJIS(TSString("\xFF")));
  EXPECT_EQ(1, is_SJIS(TSString("a\x95")));  // a lead byte at the end is accepted
}

TEST(TSStringTest, FormatIntPadsWithZerosWithoutMovingTheSign) {
  EXPECT_EQ("005", Bytes(FormatInt(3, 5)));
  EXPECT_EQ("0-5", Bytes(FormatInt(3, -5)));
  EXPECT_EQ("12", Bytes(FormatInt(2, 12)));
  EXPECT_EQ("123", Bytes(FormatInt(2, 123)));
  EXPECT_EQ("7", Bytes(FormatInt(0, 7)));
}

TEST(TSStringTest, FormatFloatPrintsWithWidthAndPrecision) {
  EXPECT_EQ("1.5", Bytes(FormatFloat(TSString("3.1"), 1.5f)));
  EXPECT_EQ("12.3", Bytes(FormatFloat(TSString("3.1"), 12.34f)));
  EXPECT_EQ("0.5", Bytes(FormatFloat(TSString("2.1"), 0.5f)));
  EXPECT_EQ(" 3.14", Bytes(FormatFloat(TSString("5.2"), 3.14159f)));
  EXPECT_EQ("3.1  ", Bytes(FormatFloat(TSString("-5.1"), 3.14159f)));
}

TEST(TSStringTest, FormatFloatRejectsFormatWithoutDotOrPrecision) {
  EXPECT_EQ("", Bytes(FormatFloat(TSString(".1"), 1.5f)));
  EXPECT_EQ("", Bytes(FormatFloat(TSString("3."), 1.5f)));
  EXPECT_EQ("", Bytes(FormatFloat(TSString("3"), 1.5f)));
  EXPECT_EQ("", Bytes(FormatFloat(TSString(), 1.5f)));
}

TEST(TSStringTest, FormatFloatRejectsFormatThatIsNoWidthAndPrecision) {
  EXPECT_EQ("", Bytes(FormatFloat(TSString("3.1n"), 1.5f)));
  EXPECT_EQ("", Bytes(FormatFloat(TSString("3.1s%"), 1.5f)));
  EXPECT_EQ("", Bytes(FormatFloat(TSString("x.1"), 1.5f)));
  EXPECT_EQ("", Bytes(FormatFloat(TSString("9999.1"), 1.5f)));
}

TEST(TSStringTest, DoubleQuoteStringQuotesCsvFields) {
  EXPECT_EQ("abc", Bytes(DoubleQuoteString(TSString("abc"))));
  EXPECT_EQ("", Bytes(DoubleQuoteString(TSString())));
  EXPECT_EQ("\"a b\"", Bytes(DoubleQuoteString(TSString("a b"))));
  EXPECT_EQ("\"a,b\"", Bytes(DoubleQuoteString(TSString("a,b"))));
  EXPECT_EQ("\"a\tb\"", Bytes(DoubleQuoteString(TSString("a\tb"))));
  EXPECT_EQ("\"it's\"", Bytes(DoubleQuoteString(TSString("it's"))));
  EXPECT_EQ("\"a\"\"b\"", Bytes(DoubleQuoteString(TSString("a\"b"))));
  EXPECT_EQ("\"\"\"\"", Bytes(DoubleQuoteString(TSString("\""))));
}

}  // namespace
