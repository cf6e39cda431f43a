// Number and hex conversions on plain character buffers.
//
// The writers fill a caller-supplied buffer that must be large enough and
// (except CharToHex) terminate it with a zero byte.  Decimal writers need at
// most 21 bytes.  Hex digits are written in upper case.
#ifndef ZANSONG_COMMON_CONVERT_H_
#define ZANSONG_COMMON_CONVERT_H_

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

// Decimal text of value, "-" first when negative, no leading zeros ("0" for
// zero).  Returns the number of characters written.
ZANSONG_EXPORT int IntToStr(long long value, char* out);
// Decimal digits of the magnitude of value, without a sign.  Returns the
// number of characters written.
ZANSONG_EXPORT int UIntToStr(long long value, char* out);
// Exactly width digits, the lowest ones of value, zero-padded.  Returns 1.
ZANSONG_EXPORT int UIntToStr(unsigned int value, char* out, int width);
// Standard text-to-int conversion (leading blanks, sign, digits; 0 when
// there are none).  A null text gives 0.
ZANSONG_EXPORT int StrToInt(char* text);

// Two upper-case hex digits of c into out[0] and out[1]; no terminator.
ZANSONG_EXPORT void CharToHex(unsigned char c, char* out);
// The byte of the hex digits two[0] and two[1]; only "0"-"9" and "A"-"F"
// count, any other character gives 0 for its half.
ZANSONG_EXPORT unsigned char HexToChar(char* two);
// The first n characters of text (all of them when n < 1) read as hex,
// either case; 0 when any of them is not a hex digit or text is null.
ZANSONG_EXPORT unsigned int HexToUInt(const char* text, int n);
// Exactly width upper-case hex digits, the lowest ones of value,
// zero-padded.  Returns 1.
ZANSONG_EXPORT int UIntToHex(unsigned int value, char* out, int width);
// TSString forms of UIntToHex and HexToUInt.
ZANSONG_EXPORT TSString UIntToSHex(unsigned int value, int width);
ZANSONG_EXPORT unsigned int SHexToUInt(const TSString& text, int n);

// The big-endian 16-bit or 32-bit number stored at p.
ZANSONG_EXPORT unsigned int BigToLittle2(unsigned char* p);
ZANSONG_EXPORT unsigned int BigToLittle4(unsigned char* p);

#endif  // ZANSONG_COMMON_CONVERT_H_
