// The small functions around a recording: a free file name, the part
// channels of a MIDI file, the time-zone line of a file, XML escaping.
#include <cstring>

#include "zansong/common/string_list.h"
#include "zansong/common/tsstring.h"
#include "zansong/fileman/recorded.h"
#include "zansong/formats/smf.h"
#include "zansong/storage/naming.h"

namespace {

constexpr int kExtensionLength = 4;
constexpr uint32_t kChannelCount = 16;

// The status word of one part channel (1-based, 0 for none).
const char* ChannelStatus(const TSongPara& para, uint32_t channel) {
  if (channel < 1 || channel > kChannelCount) return "disabled";
  return (para.channelNotes[channel - 1] & 1u) != 0 ? "exist" : "none";
}

}  // namespace

void FM_GetWavTmpName(const char* dir, const char* fileName, char* out, int len) {
  TSString directory(dir);
  if (directory.Length() == 0 || directory[directory.Length() - 1] != '/') directory += "/";
  const TSString name(fileName);
  const TSString extension = name.Length() > kExtensionLength
                                 ? name.SubString(name.Length() - kExtensionLength + 1)
                                 : name;
  const TSString path = directory + GetExternalCopyFileName3(directory, name) + extension;
  if (len > 0) std::strncpy(out, path.c_str(), static_cast<size_t>(len));
}

int FM_GetSMFLRStatus(const char* path, char* second, char* first) {
  TSongPara para;
  if (!GetSMFInfo(path, &para, false, nullptr)) return 0;
  std::strcpy(first, ChannelStatus(para, para.channelA));
  std::strcpy(second, ChannelStatus(para, para.channelB));
  return 1;
}

int FM_GetTimeZone(const char* path, char* out) {
  TSStringVector lines;
  if (!lines.LoadFromFile(TSString(path))) return -1;
  for (int i = 0; i < lines.Count(); ++i) {
    TSString line = lines[i];
    if (line.Length() == 0 || line[0] != '<') continue;
    line.Trim();
    if (out != nullptr) std::memcpy(out, line.c_str(), static_cast<size_t>(line.Length()));
    return 0;
  }
  return -1;
}

void EscapeString(const char* text, char* out) {
  TSString escaped(text);
  escaped.XMLEscapeString();
  std::memcpy(out, escaped.c_str(), static_cast<size_t>(escaped.Length()));
}

int FM_Test(int n) { return n + 1; }
