// The song list of a piano-disk management file.
#include "zansong/formats/psong.h"

#include "zansong/common/string_list.h"
#include "zansong/formats/title_text.h"

namespace {

const char kMagicLine[] = "PSONG   MNG   \r\n";
const int kHeaderCharacters = 80;
const int kRecordLines = 8;

TSongNameString ReadRecord(const TSStringVector& lines, int first) {
  TSongNameString song;
  TSString nameLine = lines[first];
  TSString name = nameLine.SubString(1, 8);
  TSString ext = nameLine.SubString(9, 3);
  name.Trim();
  ext.Trim();
  song.fileName = name;
  if (ext.Length() > 0) song.fileName += TSString(".") + ext;
  song.fileName.UpperCase();

  TSString titleLine = lines[first + 1];
  if (titleLine.Length() >= 32) {
    char title[33] = {};
    GetNewTitle(titleLine.SubString(1, 32).c_str(), title);
    song.title = title;
  }

  TSString extraLine = lines[first + 2];
  if (extraLine.Length() >= 14) song.extra = extraLine.SubString(8, 7);

  TSString formatLine = lines[first + 3];
  TSString format = formatLine.Length() >= 14 ? formatLine.SubString(9, 4) : TSString("SMF0");
  if (format == "SMF1") {
    song.type = 2;
  } else if (format == "KTVA") {
    song.type = 3;
  } else {
    song.type = 1;
  }
  return song;
}

}  // namespace

int GetPsongInfo(const char* path, std::vector<TSongNameString>& songs) {
  TSStringVector lines;
  if (path == nullptr || !lines.LoadFromFile(path)) return -1;
  int lineCount = lines.Count();
  if (lineCount <= 3 || lines[0] != kMagicLine || lines[2].SubString(1, 4) != "FILE") return 0;
  // A negative count ("-12") would read as a failure code: no songs.
  int count = lines[2].SubString(5, 3).ToInt();
  if (count < 0) count = 0;

  // Lines are numbered from 0 here; the header text starts at the fourth.
  int next = 3;
  int total = 0;
  while (total < kHeaderCharacters) {
    total += lines[next].Length();
    ++next;
    if (next >= lineCount) return 0;
  }

  for (int k = 0; k < count; ++k) {
    int first = next + kRecordLines * k;
    if (first + kRecordLines - 1 >= lineCount) return k + 1;
    songs.push_back(ReadRecord(lines, first));
  }
  return count;
}

int CheckUpperLower(TSString& s) {
  int result = 0;
  for (int i = 0; i < s.Length(); ++i) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c >= 0x80) return 3;
    if (c >= 'A' && c <= 'Z') result |= 1;
    if (c >= 'a' && c <= 'z') result |= 2;
  }
  return result;
}
