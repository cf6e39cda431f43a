// Private: file times as the text the catalogue keeps, the form of asctime
// without its line end ("Sun Nov  2 18:49:23 2025"), in local time.
//
// LocalTimeText::Of(t) is the text of t, valid until the next call; ""
// when t cannot be converted (no local time for it, or a year that asctime
// refuses).  The text is byte for byte asctime's, but written without
// printf.  An object remembers the texts of a few recent times, so that
// files written in the same second cost one conversion; it is meant to
// live for one operation (a later one may run in another time zone).
#ifndef ZANSONG_SRC_STORAGE_LOCAL_TIME_TEXT_H_
#define ZANSONG_SRC_STORAGE_LOCAL_TIME_TEXT_H_

#include <ctime>
#include <string>
#include <string_view>

namespace zansong {

class LocalTimeText {
 public:
  std::string_view Of(time_t t);

 private:
  struct Entry {
    bool known = false;
    time_t time = 0;
    std::string text;
  };
  // Entry t % kEntries holds the last time converted that fell there.
  static constexpr int kEntries = 16;
  Entry entries_[kEntries];
};

}  // namespace zansong

#endif  // ZANSONG_SRC_STORAGE_LOCAL_TIME_TEXT_H_
