#include "storage/local_time_text.h"

namespace zansong {

namespace {

constexpr char kDays[] = "SunMonTueWedThuFriSat";
constexpr char kMonths[] = "JanFebMarAprMayJunJulAugSepOctNovDec";

void AppendTwoDigits(int value, std::string* out) {
  out->push_back(static_cast<char>('0' + value / 10));
  out->push_back(static_cast<char>('0' + value % 10));
}

// asctime's text of local, without its line end: "%.3s %.3s%3d %.2d:%.2d:
// %.2d %d".  The fields of a converted time are in range; for a year
// outside 1000-9999 (where the width of %d changes, and from 10000 on
// asctime gives up) asctime itself is asked.
void AppendAsctime(const struct tm& local, std::string* out) {
  const int year = local.tm_year + 1900;
  if (local.tm_year > 9999 - 1900 || year < 1000 || local.tm_wday < 0 || local.tm_wday > 6 ||
      local.tm_mon < 0 || local.tm_mon > 11 || local.tm_mday < 1 || local.tm_mday > 31 ||
      local.tm_hour < 0 || local.tm_hour > 23 || local.tm_min < 0 || local.tm_min > 59 ||
      local.tm_sec < 0 || local.tm_sec > 60) {
    char text[64];
    if (::asctime_r(&local, text) == nullptr) return;
    std::string s(text);
    while (!s.empty() && static_cast<unsigned char>(s.back()) <= 0x20) s.pop_back();
    out->append(s);
    return;
  }
  out->append(kDays + 3 * local.tm_wday, 3);
  out->push_back(' ');
  out->append(kMonths + 3 * local.tm_mon, 3);
  out->push_back(' ');
  if (local.tm_mday < 10) {
    out->push_back(' ');
    out->push_back(static_cast<char>('0' + local.tm_mday));
  } else {
    AppendTwoDigits(local.tm_mday, out);
  }
  out->push_back(' ');
  AppendTwoDigits(local.tm_hour, out);
  out->push_back(':');
  AppendTwoDigits(local.tm_min, out);
  out->push_back(':');
  AppendTwoDigits(local.tm_sec, out);
  out->push_back(' ');
  AppendTwoDigits(year / 100, out);
  AppendTwoDigits(year % 100, out);
}

}  // namespace

std::string_view LocalTimeText::Of(time_t t) {
  // t % kEntries may be negative for times before 1970.
  Entry& e = entries_[static_cast<unsigned long long>(t) % kEntries];
  if (!e.known || e.time != t) {
    e.text.clear();
    struct tm local;
    if (::localtime_r(&t, &local) != nullptr) AppendAsctime(local, &e.text);
    e.time = t;
    e.known = true;
  }
  return e.text;
}

}  // namespace zansong
