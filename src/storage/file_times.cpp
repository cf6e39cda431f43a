// File times as asctime text, and setting a file's times from a text.
#include <sys/stat.h>
#include <utime.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "storage/local_time_text.h"
#include "zansong/storage/files.h"

namespace {

// The local-time form the times are set from: asctime's form, but with
// two blanks after the month and a zero-padded day.
constexpr char kTimeFormat[] = "%a %b  %d %H:%M:%S %Y";
constexpr size_t kTimeTextSize = 128;

// asctime text of a local time, without its line end.
TSString LocalTimeText(time_t t) {
  zansong::LocalTimeText text;
  return TSString(std::string(text.Of(t)).c_str());
}

// The file's status; all zero when stat fails, so the times read as the
// epoch.
struct stat StatOrZero(const char* path) {
  struct stat st;
  std::memset(&st, 0, sizeof(st));
  if (::stat(path, &st) != 0) std::memset(&st, 0, sizeof(st));
  return st;
}

}  // namespace

TSString GetCreateTime(const char* path) { return LocalTimeText(StatOrZero(path).st_ctime); }

TSString GetModifyTime(const char* path) { return LocalTimeText(StatOrZero(path).st_mtime); }

int SetModifyTime(const char* path, const char* timeText, bool isEpoch) {
  if (timeText == nullptr) timeText = "";
  char text[kTimeTextSize] = {};
  if (isEpoch) {
    // All 64 bits, so that dates after 2038 can be given.
    time_t seconds = static_cast<time_t>(std::strtoll(timeText, nullptr, 10));
    struct tm local;
    if (::localtime_r(&seconds, &local) != nullptr) {
      std::strftime(text, sizeof(text), kTimeFormat, &local);
    }
  } else {
    std::strncpy(text, timeText, sizeof(text) - 1);
  }

  struct tm parsed;
  std::memset(&parsed, 0, sizeof(parsed));
  if (::strptime(text, kTimeFormat, &parsed) == nullptr) {
    std::printf("%s", "\xC2\xA5nstrptime failed\xC2\xA5n");
  }
  // Let mktime decide whether daylight saving time applies to that date.
  parsed.tm_isdst = -1;
  struct utimbuf times;
  times.actime = times.modtime = std::mktime(&parsed);
  ::utime(path, &times);
  return 0;
}
