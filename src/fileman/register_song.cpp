// Reading a new song's title, format, time and album from its files.
#include "fileman/register_song.h"

#include <cstring>
#include <string>
#include <vector>

#include "zansong/common/charset.h"
#include "zansong/common/path.h"
#include "zansong/formats/audio.h"
#include "zansong/formats/smf.h"
#include "zansong/formats/title_text.h"
#include "zansong/storage/files.h"

namespace zansong {

namespace {

bool Contains(const TSString& text, const char* part) { return std::strstr(text.c_str(), part); }

// Song cache paths separate their directories with "/" only: a backslash
// or a colon is a character of a name on this storage (a Shift-JIS name
// whose second byte is 0x5C holds one), never a separator, so these two
// do not use the path splitters, which take all three.

// The file name of path without its extension.
TSString NameWithoutExtension(const TSString& path) {
  std::string name = path.c_str();
  name.erase(0, name.rfind('/') + 1);  // npos + 1 == 0: no directory part
  const std::string::size_type dot = name.rfind('.');
  if (dot != std::string::npos) name.erase(dot);
  return name.c_str();
}

// The directory of a relative song path: its album path ("" for a song
// directly in the root).
TSString AlbumPathOf(const TSString& path) {
  const std::string text = path.c_str();
  const std::string::size_type slash = text.rfind('/');
  return slash == std::string::npos ? TSString() : TSString(text.substr(0, slash).c_str());
}

// path with extension ".jpg" when that file exists under root, else "".
TSString CoverBeside(const TSString& root, const TSString& path) {
  TSString jpg = ChangeFileExtSX(path, ".jpg");
  return FileExists((root + jpg).c_str()) ? jpg : TSString();
}

}  // namespace

void SplitCacheLine(const std::string& line, int count, std::string* fields) {
  std::string::size_type from = 0;
  for (int i = 0; i < count; ++i) {
    if (from > line.size()) {
      fields[i].clear();
      continue;
    }
    std::string::size_type tab = line.find('\t', from);
    // The last field takes the rest of the line.
    if (i == count - 1 || tab == std::string::npos) tab = line.size();
    fields[i] = line.substr(from, tab - from);
    from = tab + 1;
  }
}

bool ReadNewSong(const TSString& root, const TSString& prefix, const std::string& line,
                 NewSong* song) {
  std::string fields[4];
  SplitCacheLine(line, 4, fields);
  SongInfo& info = song->info;
  info.midiPath = fields[0].c_str();
  info.audioPath = fields[1].c_str();
  info.format = fields[2].c_str();
  info.mtime = fields[3].c_str();
  info.length = 0;
  const bool downloaded = prefix == "y";

  if (!Contains(info.format, "SMF")) {
    info.title = NameWithoutExtension(info.audioPath);
    info.albumPath = AlbumPathOf(info.audioPath);
    if (downloaded) info.coverartPath = CoverBeside(root, info.audioPath);
    info.length = static_cast<int>(GetAudioTime((root + info.audioPath).c_str()));
    song->readable = true;
    return true;
  }

  TSongPara para;
  if (!GetSMFInfo((root + info.midiPath).c_str(), &para, false, "")) {
    song->readable = false;
    return false;
  }
  if (para.title[0] == '\0') {
    info.title = NameWithoutExtension(info.midiPath);
  } else {
    std::vector<char> slim(std::strlen(para.title) + 1);
    GetSlimText(slim.data(), para.title);
    info.title = slim.data();
    song->titleFromFile = true;
  }
  info.syncId = para.songId;
  info.length = static_cast<int>(para.totalTimeMs);
  const bool withAudio = Contains(info.format, "WAV") || Contains(info.format, "MP3");
  if (!withAudio) {
    if (para.partMode == 1) info.format = "SMFSOLO";
    if (para.partMode == 2) info.format = "SMFKW";
  } else if (info.audioPath.Length() > 0) {
    int audio = static_cast<int>(GetAudioTime((root + info.audioPath).c_str()));
    if (audio > info.length) info.length = audio;
  }
  info.albumPath = AlbumPathOf(info.midiPath);
  if (downloaded) info.coverartPath = CoverBeside(root, info.midiPath);
  song->readable = true;
  return true;
}

void FinishTitle(NewSong* song) {
  if (!song->titleFromFile) return;
  song->info.title = StringConv(song->info.title.c_str(), "SHIFT-JIS", "UTF-8");
  song->titleFromFile = false;
}

}  // namespace zansong
