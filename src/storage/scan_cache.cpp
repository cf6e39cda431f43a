// Song cache lines and the difference of two sorted line lists.
#include "storage/scan_cache.h"

#include "zansong/common/path.h"
#include "zansong/storage/files.h"
#include "zansong/storage/scan.h"

namespace {

TSString UpperExtension(const TSString& path) {
  TSString ext = ExtractFileExtSX(path);
  ext.UpperCase();
  return ext;
}

// The kind of an audio-only song: its upper-cased extension without the dot.
TSString AudioKind(const TSString& audioPath) { return UpperExtension(audioPath).SubString(2); }

TSString JoinLine(const TSString& midi, const TSString& audio, const TSString& kind,
                  const TSString& time) {
  return midi + "\t" + audio + "\t" + kind + "\t" + time;
}

}  // namespace

namespace zansong {

TSString SongCacheLine(const TSString& midiPath, const TSString& audioPath, int start,
                       bool withTime) {
  TSString kind;
  const TSString* timed = &midiPath;
  if (midiPath.Length() == 0) {
    kind = AudioKind(audioPath);
    timed = &audioPath;
  } else if (audioPath.Length() == 0) {
    kind = "SMF";
  } else {
    TSString ext = UpperExtension(audioPath);
    if (ext == ".WAV") kind = "SMF,WAV";
    if (ext == ".MP3") kind = "SMF,MP3";
  }
  TSString time = withTime ? GetModifyTime(timed->c_str()) : TSString();
  return JoinLine(midiPath.SubString(start), audioPath.SubString(start), kind, time);
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
  const TSString ext = UpperExtension(path);
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
  return zansong::SongCacheLine(midiPath, audioPath, start, storageKind != kStorageUsbDownloaded);
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
  auto ia = a.begin();
  auto ib = b.begin();
  while (ia != a.end() && ib != b.end()) {
    int order = ia->compare(*ib);
    if (order < 0) {
      ++ia;
    } else if (order > 0) {
      ++ib;
    } else {
      ia = a.erase(ia);
      ib = b.erase(ib);
    }
  }
}
