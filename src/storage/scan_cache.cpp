// Song cache lines and the difference of two sorted line lists.
#include "storage/scan_cache.h"

#include <string>
#include <string_view>

#include "common/upper_extension.h"
#include "zansong/common/path.h"
#include "zansong/storage/files.h"
#include "zansong/storage/scan.h"

namespace {

// The kind of an audio-only song: its upper-cased extension without the dot.
TSString AudioKind(const TSString& audioPath) {
  return zansong::UpperExtension(audioPath).SubString(2);
}

// path from the 1-based position start on, as TSString::SubString(start).
std::string_view Relative(std::string_view path, int start) {
  if (path.empty() || start > static_cast<int>(path.size())) return std::string_view();
  return start < 1 ? path : path.substr(static_cast<size_t>(start - 1));
}

TSString JoinLine(const TSString& midi, const TSString& audio, const TSString& kind,
                  const TSString& time) {
  return midi + "\t" + audio + "\t" + kind + "\t" + time;
}

}  // namespace

namespace zansong {

std::string SongCacheLine(std::string_view midiPath, std::string_view audioPath, int start,
                          std::string_view time) {
  const char* kind = "";
  std::string audioKind;  // only an audio-only song needs its kind made
  if (midiPath.empty()) {
    audioKind = AudioKind(TSString(std::string(audioPath).c_str())).c_str();
    kind = audioKind.c_str();
  } else if (audioPath.empty()) {
    kind = "SMF";
  } else {
    TSString ext = zansong::UpperExtension(TSString(std::string(audioPath).c_str()));
    if (ext == ".WAV") kind = "SMF,WAV";
    if (ext == ".MP3") kind = "SMF,MP3";
  }
  const std::string_view midi = Relative(midiPath, start);
  const std::string_view audio = Relative(audioPath, start);
  std::string line;
  line.reserve(midi.size() + audio.size() + std::char_traits<char>::length(kind) + time.size() + 3);
  line.append(midi).append(1, '\t').append(audio).append(1, '\t');
  line.append(kind).append(1, '\t').append(time);
  return line;
}

bool IsCacheableName(const char* name) {
  for (const char* p = name; *p != 0; ++p) {
    const unsigned char c = static_cast<unsigned char>(*p);
    if (c < 0x20 || c == 0x7F) return false;
  }
  return true;
}

}  // namespace zansong

TSString GetSongCache(TSString path, int start) {
  const TSString ext = zansong::UpperExtension(path);
  TSString midi, audio, kind;
  if (ext == ".MID") {
    midi = path.SubString(start);
    kind = "SMF";
    TSString mp3 = Mp3FileExists(path.c_str());
    if (mp3.Length() > 0) {
      audio = mp3.SubString(start);
      kind = "SMF,MP3";
    }
    TSString wav = WavFileExists(path.c_str());
    if (wav.Length() > 0) {
      audio = wav.SubString(start);
      kind = "SMF,WAV";
    }
  } else if (ext == ".WAV" || ext == ".MP3") {
    if (MidFileExists(path.c_str()).Length() > 0) return TSString();
    audio = path.SubString(start);
    kind = ext.SubString(2);
  } else {
    return TSString();
  }
  return JoinLine(midi, audio, kind, GetModifyTime(path.c_str()));
}

TSString GetSongCache2(TSString midiPath, TSString audioPath, int start, int storageKind) {
  TSString time;
  if (storageKind != kStorageUsbDownloaded) {
    time = GetModifyTime(midiPath.Length() > 0 ? midiPath.c_str() : audioPath.c_str());
  }
  std::string line =
      zansong::SongCacheLine(midiPath.c_str(), audioPath.c_str(), start, time.c_str());
  return TSString(line.c_str());
}

void GetSongCacheList(TSString& root, std::list<std::string>& paths,
                      std::list<std::string>& lines) {
  const int start = root.Length() + 1;
  for (const std::string& path : paths) {
    TSString line = GetSongCache(TSString(path.c_str()), start);
    if (line.Length() > 0) lines.emplace_back(line.c_str(), line.Length());
  }
}

void GetDiffCacheList(std::list<std::string>& a, std::list<std::string>& b) {
  using Line = std::list<std::string>::iterator;
  zansong::RemoveCommonLines(
      a, b.begin(), b.end(), [&b](Line line) { return b.erase(line); }, [](Line) {});
}
