// The two entry points over the MIDI walker: reading a file's information
// and rewriting its title.
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "zansong/common/charset.h"
#include "zansong/common/path.h"
#include "zansong/formats/smf.h"
#include "zansong/formats/title_text.h"

namespace {

// Microseconds as whole milliseconds; a time that is not finite counts as 0
// and one beyond the 64-bit range is held at its end.
int64_t MicrosToMillis(double micros) {
  if (!std::isfinite(micros)) return 0;
  if (micros >= 9.2e18) return INT64_MAX / 1000;
  if (micros <= -9.2e18) return INT64_MIN / 1000;
  return static_cast<int64_t>(micros) / 1000;
}

int PartMode(const TSongPara& para) {
  if (para.channelA == 0 && para.channelB == 0) return 0;
  for (uint32_t c = 1; c <= 16; ++c) {
    if ((para.channelNotes[c - 1] & 1) != 0 && c != para.channelA && c != para.channelB) {
      return 2;
    }
  }
  return 1;
}

}  // namespace

int GetSMFInfo(const char* path, TSongPara* para, bool headOnly, const char* /*reserved*/) {
  if (para == nullptr) return 0;
  std::memset(para, 0, sizeof *para);
  TSmfData smf;
  if (!smf.LoadFromFile(path, headOnly)) return 0;
  smf.SetFirst(para);
  para->totalTimeMs = MicrosToMillis(smf.GetTotalTime(headOnly));
  para->format = static_cast<uint32_t>(smf.GetFormat());
  if (para->title[0] == '\0') {
    if (para->longTitle[0] != '\0') {
      GetDummyLongTitle(para);
    } else {
      std::memset(para->title, 0, sizeof para->title);
      std::memset(para->longTitle, 0, sizeof para->longTitle);
    }
  }
  para->partMode = PartMode(*para);
  return 1;
}

int SetSMFTitle(const char* path, const char* newTitleUtf8) {
  TSmfData smf;
  if (path == nullptr || !smf.LoadFromFile(path, false)) {
    ::sync();
    return 0;
  }
  TSongPara scratch{};
  smf.SetFirst(&scratch);
  smf.GetTotalTime(true);

  TSString backup = ChangeFileExtSX(path, ".BAK");
  TSString title = StringConv(newTitleUtf8, "UTF-8", "SHIFT-JIS");
  // A backup name that is the file itself (on a file system that ignores
  // case, too) would lose the song.
  if (backup.Length() == 0 || ::strcasecmp(backup.c_str(), path) == 0 ||
      ::rename(path, backup.c_str()) != 0) {
    ::sync();
    return 0;
  }

  int result = 0;
  if (smf.ChangeTitle(path, title.c_str(), scratch.title[0] == '\0')) {
    struct stat st;
    if (::stat(backup.c_str(), &st) == 0) {
      struct timespec times[2] = {st.st_atim, st.st_mtim};
      ::utimensat(AT_FDCWD, path, times, 0);
    }
    ::unlink(backup.c_str());
    result = 1;
  } else {
    ::unlink(path);
    ::rename(backup.c_str(), path);
  }
  ::sync();
  return result;
}
