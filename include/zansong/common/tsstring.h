// TSString: the byte-string value type that the whole library passes around
// (paths, titles, SQL text, message lines).
//
// A TSString owns a heap buffer of exactly length+1 bytes whose last byte is
// 0; the buffer is never null, so operator char*() can be handed to any
// routine that takes a plain character pointer.  Every size-changing
// operation reallocates to the exact new size.
//
// Positions given to and returned by the editing and searching operations
// count from 1; element access (operator[]) counts from 0.  Out-of-range
// positions are clamped as each operation states; nothing reports an error.
//
// Shift-JIS: lead bytes are 0x81-0x9F and 0xE0-0xFC.  The SJIS variants
// (UpperCaseSJIS, LowerCaseSJIS, AnsiPosSJIS, SQLString mode 0) never treat
// the trail byte of a two-byte character as a character of its own.
#ifndef ZANSONG_COMMON_TSSTRING_H_
#define ZANSONG_COMMON_TSSTRING_H_

#include "zansong/export.h"

class ZANSONG_EXPORT TSString {
 public:
  TSString();
  TSString(const char* text);  // NOLINT: implicit by design; null gives ""
  // Copy of the first min(strlen(text), n) bytes.  With a null text: a
  // buffer of n bytes whose first byte is 0 and whose length field is n,
  // for the caller to fill.
  TSString(const char* text, int n);
  explicit TSString(int value);           // decimal, "-" when negative
  explicit TSString(unsigned int value);  // decimal
  // width >= 0: exactly width digits of (unsigned)value, zero-padded on the
  // left, higher digits dropped.  width < 0: as TSString(int).
  TSString(int value, int width);
  // Copies take the length from the source's zero terminator.
  TSString(const TSString& other);
  TSString& operator=(const char* text);
  TSString& operator=(const TSString& other);
  ~TSString();

  int Length() const { return length_; }
  char& operator[](int i) const { return buffer_[i]; }
  operator char*() { return buffer_; }  // NOLINT: the buffer itself
  const char* c_str() const { return buffer_; }

  TSString& operator+=(const TSString& other);

  // Editing (positions from 1).
  // pos clamped into 1..Length()+1; removes count bytes from pos, or all
  // from pos to the end when pos+count > Length().
  void Delete(int pos, int count);
  // pos clamped into 1..Length()+1; s's first byte lands at pos.
  void Insert(const TSString& s, int pos);
  // The bytes from pos (count of them, cut at the end); "" when pos >
  // Length() or count <= 0.  A pos below 1 counts as 1.
  TSString SubString(int pos) const;
  TSString SubString(int pos, int count) const;
  // Shortens to n bytes (0 when n < 0); never grows.
  void SetLength(int n);
  // Removes leading and trailing bytes of value 0x20 or below.
  void Trim();
  // Removes every byte that occurs in set.
  void Strip(const TSString& set);
  void UpperCase();
  void LowerCase();
  void UpperCaseSJIS();
  void LowerCaseSJIS();

  // Searching and conversion.
  // Position of the first occurrence of sub, 0 when none, 1 for "".  The
  // SJIS variant starts matches only at the start of a character.
  int AnsiPos(const TSString& sub) const;
  int AnsiPosSJIS(const TSString& sub) const;
  // The decimal value when every byte is a digit (ToInt: the first may be
  // "-"), else 0.
  int ToInt() const;
  long long ToLongLongInt() const;
  // Doubles every "'" and "\"; mode 0 scans as Shift-JIS, any other mode
  // byte-wise.  In place; returns *this.
  TSString& SQLString(int mode);
  // Doubles "'" and "\", puts esc before "#", "%" and "_".  In place.
  TSString& SQLLikeStringUTF8(TSString esc);
  // & < > " ' become their entities.  In place.
  TSString& XMLEscapeString();

 private:
  // Takes ownership of buffer (n+1 bytes, terminated) in place of the
  // current one, which is freed.
  ZANSONG_HIDDEN void Adopt(char* buffer, int n);
  // Replaces the contents by a copy of the n bytes at text (which may lie
  // inside the current buffer).
  ZANSONG_HIDDEN void Assign(const char* text, int n);

  char* buffer_;
  int length_;
};

ZANSONG_EXPORT bool operator==(const TSString& a, const TSString& b);
ZANSONG_EXPORT bool operator==(const TSString& a, const char* b);
ZANSONG_EXPORT bool operator!=(const TSString& a, const TSString& b);
ZANSONG_EXPORT bool operator!=(const TSString& a, const char* b);
ZANSONG_EXPORT TSString operator+(const TSString& a, const TSString& b);

// 1 when the whole string is valid Shift-JIS, else 0.
ZANSONG_EXPORT int is_SJIS(TSString s);

// Decimal text of value padded on the left with "0" to width bytes.
ZANSONG_EXPORT TSString FormatInt(int width, int value);
// value printed with "%" + format + "f" (format such as "3.1"); "" when it
// has no "." at position 2 or later or nothing after it.
ZANSONG_EXPORT TSString FormatFloat(const TSString& format, float value);
// CSV field quoting: wrapped in double quotes when the text holds a tab,
// space, apostrophe, comma or double quote; double quotes doubled.
ZANSONG_EXPORT TSString DoubleQuoteString(const TSString& s);

#endif  // ZANSONG_COMMON_TSSTRING_H_
