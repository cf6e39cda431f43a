#include "zansong/common/convert.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

TEST(ConvertTest, IntToStrWritesSignAndDigits) {
  char out[32];
  EXPECT_EQ(2, IntToStr(-7, out));
  EXPECT_STREQ("-7", out);
  EXPECT_EQ(1, IntToStr(0, out));
  EXPECT_STREQ("0", out);
  EXPECT_EQ(10, IntToStr(1234567890, out));
  EXPECT_STREQ("1234567890", out);
  EXPECT_EQ(11, IntToStr(INT_MIN, out));
  EXPECT_STREQ("-2147483648", out);
  EXPECT_EQ(20, IntToStr(LLONG_MIN, out));
  EXPECT_STREQ("-9223372036854775808", out);
}

TEST(ConvertTest, UIntToStrWritesMagnitudeWithoutSign) {
  char out[32];
  EXPECT_EQ(3, UIntToStr(-120LL, out));
  EXPECT_STREQ("120", out);
  EXPECT_EQ(10, UIntToStr(4294967295LL, out));
  EXPECT_STREQ("4294967295", out);
}

TEST(ConvertTest, UIntToStrWithWidthKeepsLowestDigits) {
  char out[16];
  EXPECT_EQ(1, UIntToStr(1234u, out, 2));
  EXPECT_STREQ("34", out);
  EXPECT_EQ(1, UIntToStr(7u, out, 4));
  EXPECT_STREQ("0007", out);
  EXPECT_EQ(1, UIntToStr(7u, out, 0));
  EXPECT_STREQ("", out);
}

TEST(ConvertTest, StrToIntIsTheStandardConversion) {
  char a[] = "  -42xyz";
  char b[] = "abc";
  EXPECT_EQ(-42, StrToInt(a));
  EXPECT_EQ(0, StrToInt(b));
  EXPECT_EQ(0, StrToInt(nullptr));
}

TEST(ConvertTest, CharToHexWritesTwoUpperCaseDigits) {
  char out[3] = {'x', 'x', 'x'};
  CharToHex(0xAF, out);
  EXPECT_EQ('A', out[0]);
  EXPECT_EQ('F', out[1]);
  EXPECT_EQ('x', out[2]);  // no terminator
  CharToHex(0x05, out);
  EXPECT_EQ('0', out[0]);
  EXPECT_EQ('5', out[1]);
}

TEST(ConvertTest, HexToCharCountsOnlyDigitsAndUpperCase) {
  char upper[] = "AF";
  char lower[] = "af";
  char mixed[] = "1g";
  EXPECT_EQ(0xAF, HexToChar(upper));
  EXPECT_EQ(0x00, HexToChar(lower));
  EXPECT_EQ(0x10, HexToChar(mixed));
}

TEST(ConvertTest, HexToUIntReadsEitherCaseAndRejectsOtherCharacters) {
  EXPECT_EQ(0x1Au, HexToUInt("1a", 0));
  EXPECT_EQ(0xABCDu, HexToUInt("ABCD", -1));
  EXPECT_EQ(0xABu, HexToUInt("ABCD", 2));
  EXPECT_EQ(0u, HexToUInt("1g", 0));
  EXPECT_EQ(0u, HexToUInt("", 0));
  EXPECT_EQ(0u, HexToUInt(nullptr, 0));
  EXPECT_EQ(0x12u, HexToUInt("12", 10));  // n past the end stops at the end
  EXPECT_EQ(0xFFFFFFFFu, HexToUInt("ffffffff", 0));
}

TEST(ConvertTest, UIntToHexKeepsLowestDigitsZeroPadded) {
  char out[16];
  EXPECT_EQ(1, UIntToHex(26, out, 4));
  EXPECT_STREQ("001A", out);
  EXPECT_EQ(1, UIntToHex(0x12345, out, 2));
  EXPECT_STREQ("45", out);
}

TEST(ConvertTest, HexTSStringForms) {
  EXPECT_STREQ("001A", UIntToSHex(26, 4).c_str());
  EXPECT_EQ(4, UIntToSHex(26, 4).Length());
  EXPECT_EQ(0x1Au, SHexToUInt(TSString("1A"), 0));
  EXPECT_EQ(0u, SHexToUInt(TSString(), 0));
}

TEST(ConvertTest, BigEndianNumbers) {
  unsigned char bytes[] = {0x4D, 0x54, 0x68, 0x64, 0x00, 0x06};
  EXPECT_EQ(0x4D54u, BigToLittle2(bytes));
  EXPECT_EQ(0x4D546864u, BigToLittle4(bytes));
  EXPECT_EQ(6u, BigToLittle2(bytes + 4));
  unsigned char high[] = {0xFF, 0xFE, 0xFD, 0xFC};
  EXPECT_EQ(0xFFFEFDFCu, BigToLittle4(high));
}

}  // namespace
