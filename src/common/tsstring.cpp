#include "zansong/common/tsstring.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "zansong/common/convert.h"

namespace {

// Shift-JIS byte classes.
bool IsSjisLead(unsigned char c) { return (c >= 0x81 && c <= 0x9F) || (c >= 0xE0 && c <= 0xFC); }
bool IsSjisTrail(unsigned char c) { return c >= 0x40 && c <= 0xFC && c != 0x7F; }
bool IsSjisInvalidSingle(unsigned char c) {
  return c == 0x00 || c == 0x80 || c == 0xA0 || c >= 0xFD;
}

// Walks text as Shift-JIS and calls visit(index) for every byte that begins
// a character: ordinary single-byte characters and lead bytes.  is_lead
// tells which of the two it is.  Trail bytes are skipped.
template <typename Visit>
void ForEachSjisCharStart(const char* text, int length, Visit visit) {
  bool after_lead = false;
  for (int i = 0; i < length; ++i) {
    if (after_lead) {
      after_lead = false;  // trail byte of a two-byte character
      continue;
    }
    const bool lead = IsSjisLead(static_cast<unsigned char>(text[i]));
    visit(i, lead);
    after_lead = lead;
  }
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

// Construction and assignment.

TSString::TSString() : buffer_(new char[1]), length_(0) { buffer_[0] = 0; }

TSString::TSString(const char* text) : buffer_(nullptr), length_(0) {
  Assign(text, text == nullptr ? 0 : static_cast<int>(std::strlen(text)));
}

TSString::TSString(const char* text, int n) : buffer_(nullptr), length_(0) {
  if (n < 0) n = 0;
  if (text == nullptr) {
    // Pre-sized buffer for the caller to fill; zeroed so that reading it
    // before it is filled is harmless.
    buffer_ = new char[static_cast<size_t>(n) + 1]();
    length_ = n;
    return;
  }
  const size_t available = strnlen(text, static_cast<size_t>(n));
  Assign(text, static_cast<int>(available));
}

TSString::TSString(int value) : buffer_(nullptr), length_(0) {
  char text[24];
  Assign(text, IntToStr(value, text));
}

TSString::TSString(unsigned int value) : buffer_(nullptr), length_(0) {
  char text[24];
  Assign(text, UIntToStr(static_cast<long long>(value), text));
}

TSString::TSString(int value, int width) : buffer_(nullptr), length_(0) {
  if (width < 0) {
    char text[24];
    Assign(text, IntToStr(value, text));
    return;
  }
  char* out = new char[static_cast<size_t>(width) + 1];
  UIntToStr(static_cast<unsigned int>(value), out, width);
  Adopt(out, width);
}

TSString::TSString(const TSString& other) : buffer_(nullptr), length_(0) {
  Assign(other.buffer_, static_cast<int>(std::strlen(other.buffer_)));
}

TSString& TSString::operator=(const char* text) {
  Assign(text, text == nullptr ? 0 : static_cast<int>(std::strlen(text)));
  return *this;
}

TSString& TSString::operator=(const TSString& other) {
  if (this != &other) Assign(other.buffer_, static_cast<int>(std::strlen(other.buffer_)));
  return *this;
}

TSString::~TSString() { delete[] buffer_; }

void TSString::Adopt(char* buffer, int n) {
  delete[] buffer_;
  buffer_ = buffer;
  length_ = n;
}

void TSString::Assign(const char* text, int n) {
  char* fresh = new char[static_cast<size_t>(n) + 1];
  if (n > 0) std::memcpy(fresh, text, static_cast<size_t>(n));
  fresh[n] = 0;
  Adopt(fresh, n);
}

TSString& TSString::operator+=(const TSString& other) {
  const int total = length_ + other.length_;
  char* fresh = new char[static_cast<size_t>(total) + 1];
  std::memcpy(fresh, buffer_, static_cast<size_t>(length_));
  std::memcpy(fresh + length_, other.buffer_, static_cast<size_t>(other.length_));
  fresh[total] = 0;
  Adopt(fresh, total);
  return *this;
}

TSString operator+(const TSString& a, const TSString& b) {
  TSString result(nullptr, a.Length() + b.Length());
  char* out = result;
  std::memcpy(out, a.c_str(), static_cast<size_t>(a.Length()));
  std::memcpy(out + a.Length(), b.c_str(), static_cast<size_t>(b.Length()));
  return result;
}

bool operator==(const TSString& a, const TSString& b) {
  return std::strcmp(a.c_str(), b.c_str()) == 0;
}
bool operator==(const TSString& a, const char* b) {
  return std::strcmp(a.c_str(), b == nullptr ? "" : b) == 0;
}
bool operator!=(const TSString& a, const TSString& b) { return !(a == b); }
bool operator!=(const TSString& a, const char* b) { return !(a == b); }

// Editing.

void TSString::Delete(int pos, int count) {
  if (pos < 1) pos = 1;
  if (pos > length_ + 1) pos = length_ + 1;
  if (count < 0) count = 0;
  // pos + count may exceed INT_MAX; compare in 64 bits.
  const long long end = static_cast<long long>(pos) + count;
  const int removed = end > length_ ? length_ - pos + 1 : count;
  if (removed <= 0) return;
  const int start = pos - 1;
  const int total = length_ - removed;
  char* fresh = new char[static_cast<size_t>(total) + 1];
  std::memcpy(fresh, buffer_, static_cast<size_t>(start));
  std::memcpy(fresh + start, buffer_ + start + removed, static_cast<size_t>(total - start));
  fresh[total] = 0;
  Adopt(fresh, total);
}

void TSString::Insert(const TSString& s, int pos) {
  if (pos < 1) pos = 1;
  if (pos > length_ + 1) pos = length_ + 1;
  const int start = pos - 1;
  const int total = length_ + s.length_;
  char* fresh = new char[static_cast<size_t>(total) + 1];
  std::memcpy(fresh, buffer_, static_cast<size_t>(start));
  std::memcpy(fresh + start, s.buffer_, static_cast<size_t>(s.length_));
  std::memcpy(fresh + start + s.length_, buffer_ + start, static_cast<size_t>(length_ - start));
  fresh[total] = 0;
  Adopt(fresh, total);
}

TSString TSString::SubString(int pos) const { return SubString(pos, length_); }

TSString TSString::SubString(int pos, int count) const {
  if (pos > length_ || count <= 0) return TSString();
  if (pos < 1) pos = 1;  // never read before the buffer
  const int available = length_ - pos + 1;
  return TSString(buffer_ + pos - 1, count < available ? count : available);
}

void TSString::SetLength(int n) {
  if (n < 0) n = 0;
  if (n < length_) Assign(buffer_, n);
}

void TSString::Trim() {
  int first = 0;
  int last = length_;
  while (first < last && static_cast<unsigned char>(buffer_[first]) <= 0x20) ++first;
  while (last > first && static_cast<unsigned char>(buffer_[last - 1]) <= 0x20) --last;
  if (first == 0 && last == length_) return;
  Assign(buffer_ + first, last - first);
}

void TSString::Strip(const TSString& set) {
  std::string kept;
  for (int i = 0; i < length_; ++i) {
    if (std::memchr(set.buffer_, buffer_[i], static_cast<size_t>(set.length_)) == nullptr) {
      kept.push_back(buffer_[i]);
    }
  }
  if (static_cast<int>(kept.size()) != length_) Assign(kept.data(), static_cast<int>(kept.size()));
}

void TSString::UpperCase() {
  for (int i = 0; i < length_; ++i) {
    if (buffer_[i] >= 'a' && buffer_[i] <= 'z') buffer_[i] = static_cast<char>(buffer_[i] - 32);
  }
}

void TSString::LowerCase() {
  for (int i = 0; i < length_; ++i) {
    if (buffer_[i] >= 'A' && buffer_[i] <= 'Z') buffer_[i] = static_cast<char>(buffer_[i] + 32);
  }
}

void TSString::UpperCaseSJIS() {
  ForEachSjisCharStart(buffer_, length_, [this](int i, bool lead) {
    if (!lead && buffer_[i] >= 'a' && buffer_[i] <= 'z') {
      buffer_[i] = static_cast<char>(buffer_[i] - 32);
    }
  });
}

void TSString::LowerCaseSJIS() {
  ForEachSjisCharStart(buffer_, length_, [this](int i, bool lead) {
    if (!lead && buffer_[i] >= 'A' && buffer_[i] <= 'Z') {
      buffer_[i] = static_cast<char>(buffer_[i] + 32);
    }
  });
}

// Searching and conversion.

int TSString::AnsiPos(const TSString& sub) const {
  if (sub.length_ == 0) return 1;
  for (int i = 0; i + sub.length_ <= length_; ++i) {
    if (std::memcmp(buffer_ + i, sub.buffer_, static_cast<size_t>(sub.length_)) == 0) return i + 1;
  }
  return 0;
}

int TSString::AnsiPosSJIS(const TSString& sub) const {
  if (sub.length_ == 0) return 1;
  int found = 0;
  ForEachSjisCharStart(buffer_, length_, [&](int i, bool) {
    if (found == 0 && i + sub.length_ <= length_ &&
        std::memcmp(buffer_ + i, sub.buffer_, static_cast<size_t>(sub.length_)) == 0) {
      found = i + 1;
    }
  });
  return found;
}

int TSString::ToInt() const {
  for (int i = 0; i < length_; ++i) {
    if (!IsDigit(buffer_[i]) && !(i == 0 && buffer_[i] == '-')) return 0;
  }
  // strtol saturates instead of overflowing; the narrowing keeps the low bits.
  return static_cast<int>(std::strtol(buffer_, nullptr, 10));
}

long long TSString::ToLongLongInt() const {
  for (int i = 0; i < length_; ++i) {
    if (!IsDigit(buffer_[i])) return 0;
  }
  return std::strtoll(buffer_, nullptr, 10);
}

TSString& TSString::SQLString(int mode) {
  std::string out;
  out.reserve(static_cast<size_t>(length_) + 8);
  if (mode == 0) {
    // Only ordinary single-byte characters are quoted: the trail byte of a
    // two-byte character may have the value of "\" and must stay single.
    int next = 0;
    ForEachSjisCharStart(buffer_, length_, [&](int i, bool lead) {
      out.append(buffer_ + next, static_cast<size_t>(i - next));
      next = i;
      if (!lead && (buffer_[i] == '\'' || buffer_[i] == '\\')) out.push_back(buffer_[i]);
    });
    out.append(buffer_ + next, static_cast<size_t>(length_ - next));
  } else {
    for (int i = 0; i < length_; ++i) {
      if (buffer_[i] == '\'' || buffer_[i] == '\\') out.push_back(buffer_[i]);
      out.push_back(buffer_[i]);
    }
  }
  if (static_cast<int>(out.size()) != length_) Assign(out.data(), static_cast<int>(out.size()));
  return *this;
}

TSString& TSString::SQLLikeStringUTF8(TSString esc) {
  std::string out;
  for (int i = 0; i < length_; ++i) {
    const char c = buffer_[i];
    if (c == '\'' || c == '\\') {
      out.push_back(c);
    } else if (c == '#' || c == '%' || c == '_') {
      out.append(esc.buffer_, static_cast<size_t>(esc.length_));
    }
    out.push_back(c);
  }
  if (static_cast<int>(out.size()) != length_) Assign(out.data(), static_cast<int>(out.size()));
  return *this;
}

TSString& TSString::XMLEscapeString() {
  std::string out;
  for (int i = 0; i < length_; ++i) {
    switch (buffer_[i]) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&apos;";
        break;
      default:
        out.push_back(buffer_[i]);
    }
  }
  if (static_cast<int>(out.size()) != length_) Assign(out.data(), static_cast<int>(out.size()));
  return *this;
}

int is_SJIS(TSString s) {
  bool after_lead = false;
  for (int i = 0; i < s.Length(); ++i) {
    const unsigned char c = static_cast<unsigned char>(s[i]);
    if (after_lead) {
      if (!IsSjisTrail(c)) return 0;
      after_lead = false;
    } else if (IsSjisInvalidSingle(c)) {
      return 0;
    } else {
      after_lead = IsSjisLead(c);
    }
  }
  return 1;
}

// String-valued helpers.

TSString FormatInt(int width, int value) {
  TSString text(value);
  if (text.Length() >= width) return text;
  const std::string zeros(static_cast<size_t>(width - text.Length()), '0');
  return TSString(zeros.c_str()) + text;
}

TSString FormatFloat(const TSString& format, float value) {
  // Accepted: flags and at most three width digits, ".", one to three
  // precision digits.  Anything else could turn the format into a different
  // conversion, so it gives "".
  const int dot = format.AnsiPos(".");
  if (dot < 2 || dot >= format.Length()) return TSString();
  int width_digits = 0;
  for (int i = 0; i < dot - 1; ++i) {
    const char c = format[i];
    if (IsDigit(c)) {
      ++width_digits;
    } else if (width_digits > 0 || c == 0 || std::strchr("-+ #0", c) == nullptr) {
      return TSString();
    }
  }
  const int precision_digits = format.Length() - dot;
  if (width_digits > 3 || precision_digits > 3) return TSString();
  for (int i = dot; i < format.Length(); ++i) {
    if (!IsDigit(format[i])) return TSString();
  }
  const std::string conversion = std::string("%") + format.c_str() + "f";
  const int size = std::snprintf(nullptr, 0, conversion.c_str(), static_cast<double>(value));
  if (size < 0) return TSString();
  TSString result(nullptr, size);
  std::snprintf(result, static_cast<size_t>(size) + 1, conversion.c_str(),
                static_cast<double>(value));
  return result;
}

TSString DoubleQuoteString(const TSString& s) {
  std::string out;
  auto open_quote = [&out] {
    if (out.empty() || out[0] != '"') out.insert(out.begin(), '"');
  };
  for (int i = 0; i < s.Length(); ++i) {
    const char c = s[i];
    if (c == '"') {
      open_quote();
      out.push_back('"');
    } else if (c == '\t' || c == ' ' || c == '\'' || c == ',') {
      open_quote();
    }
    out.push_back(c);
  }
  if (!out.empty() && out[0] == '"') out.push_back('"');
  return TSString(out.c_str(), static_cast<int>(out.size()));
}
