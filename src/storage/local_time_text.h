// Private: file times as the text the catalogue keeps, the form of asctime
// without its line end ("Sun Nov  2 18:49:23 2025"), in local time.
//
// LocalTimeText::Append(t, out) appends the text of t to out; nothing when
// t cannot be converted (no local time for it, or a year that asctime
// refuses).  The text is byte for byte asctime's, but written without
// printf.  An object remembers the last time it converted, so that files
// written in the same second cost one conversion; it is meant to live for
// one operation (a later one may run in another time zone).
#ifndef ZANSONG_SRC_STORAGE_LOCAL_TIME_TEXT_H_
#define ZANSONG_SRC_STORAGE_LOCAL_TIME_TEXT_H_

#include <ctime>
#include <string>

namespace zansong {

class LocalTimeText {
 public:
  void Append(time_t t, std::string* out);

 private:
  bool known_ = false;
  time_t last_ = 0;
  std::string lastText_;
};

}  // namespace zansong

#endif  // ZANSONG_SRC_STORAGE_LOCAL_TIME_TEXT_H_
