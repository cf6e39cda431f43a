// The storage walks that build song cache lines: GetDirFileList4 (pairs
// MIDI and audio files in memory) and GetDirFileList3 (finds companions on
// disk).  Both share one walker; they differ in depth and in how the files
// of one directory become lines.
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/handles.h"
#include "storage/scan_cache.h"
#include "zansong/common/path.h"
#include "zansong/db/songinfo.h"
#include "zansong/storage/scan.h"

namespace {

// What stays the same through one walk.
struct Walk {
  int start;
  int storageKind;
  int maxLevel;
  bool pairInMemory;  // GetDirFileList4; else GetDirFileList3
  bool withTime;      // song cache lines carry the modification time
  std::list<std::string>* albumDirs;
  std::list<std::string>* songLines;
  int* refusedNames;  // files and folders left out for their names
};

bool StartsWith(const TSString& text, const char* prefix) {
  return std::strncmp(text.c_str(), prefix, std::strlen(prefix)) == 0;
}

std::string ToStd(const TSString& s) { return std::string(s.c_str(), s.Length()); }

TSString UpperExtension(const char* name) {
  TSString ext = ExtractFileExtSX(TSString(name));
  ext.UpperCase();
  return ext;
}

// Special folders that a scan of a whole storage must not take as albums.
bool IsExcludedDir(const Walk& walk, const TSString& rel) {
  if (walk.storageKind == kStorageUsb) {
    return StartsWith(rel, "Recorded Songs/") || StartsWith(rel, "Downloaded Songs/") ||
           StartsWith(rel, "FromToPC/");
  }
  if (walk.storageKind == kStorageInternal) {
    // The root of this kind is the internal song root, so rel is the path
    // below it.
    return StartsWith(rel, "rec/") || StartsWith(rel, "test/");
  }
  return false;
}

// Folders of the recorder that are albums even when empty of songs.
bool IsKeptRecorderDir(const TSString& name) {
  return name == "Recorded Songs/Temporary Folder" || name == "Recorded Songs/Keep";
}

// Pairs each MIDI file of one directory with the first ".WAV" or ".MP3"
// file of the same name (case-sensitive) in directory order, drops a second
// audio file of that name, and turns the rest of the audio files into
// audio-only lines after the MIDI lines.
void PairSongs(const Walk& walk, const std::vector<TSString>& midis,
               const std::vector<TSString>& audios, std::list<std::string>& lines) {
  // Audio files by name without extension (all of them end in a
  // four-character extension), in directory order.
  std::unordered_map<std::string, std::vector<size_t>> byStem;
  for (size_t i = 0; i < audios.size(); ++i) {
    byStem[std::string(audios[i].c_str(), audios[i].Length() - 4)].push_back(i);
  }
  std::vector<bool> taken(audios.size(), false);
  for (const TSString& midi : midis) {
    TSString companion;
    auto found = byStem.find(std::string(midi.c_str(), midi.Length() - 4));
    if (found != byStem.end()) {
      int matched = 0;
      for (size_t i : found->second) {
        if (taken[i]) continue;
        taken[i] = true;
        if (matched++ == 0) {
          companion = audios[i];
        } else {
          break;
        }
      }
    }
    lines.push_back(ToStd(zansong::SongCacheLine(midi, companion, walk.start, walk.withTime)));
  }
  for (size_t i = 0; i < audios.size(); ++i) {
    if (!taken[i]) {
      lines.push_back(
          ToStd(zansong::SongCacheLine(TSString(), audios[i], walk.start, walk.withTime)));
    }
  }
}

int WalkDir(const Walk& walk, const TSString& dir, int level, std::list<std::string>& loose,
            bool* flag) {
  loose.clear();
  bool ignoredFlag;
  if (flag == nullptr) flag = &ignoredFlag;
  zansong::DirectoryHandle d(dir.c_str());
  if (!d.valid()) return kScanUnreadableDir;
  *flag = level + 1 < walk.maxLevel;
  if (level + 1 >= walk.maxLevel) return 0;  // too deep: the contents are not listed

  std::vector<TSString> midis, audios;
  int result = kScanOk;
  d.ForEachEntry([&](const dirent& e) {
    *flag = false;
    if (!zansong::IsCacheableName(e.d_name)) {
      ++*walk.refusedNames;
      return true;
    }
    TSString path = dir + e.d_name;
    struct stat st;
    if (::stat(path.c_str(), &st) != 0) return true;

    if (!S_ISDIR(st.st_mode)) {
      const TSString ext = UpperExtension(e.d_name);
      const bool isMidi = ext == ".MID";
      const bool isAudio = ext == ".WAV" || ext == ".MP3";
      if (!isMidi && !isAudio) return true;
      if (walk.pairInMemory) {
        (isMidi ? midis : audios).push_back(path);
        return true;
      }
      TSString line = GetSongCache(path, walk.start);
      if (line.Length() == 0) return true;
      if (static_cast<int>(loose.size()) > kAlbumSongLimit - 1) {
        result = kScanTooManyLooseSongs;
        return false;
      }
      loose.push_back(ToStd(line));
      return true;
    }

    if (e.d_name[0] == '.') return true;
    path += "/";
    const TSString rel = path.SubString(walk.start);
    if (IsExcludedDir(walk, rel)) return true;
    TSString name = rel;
    name.SetLength(name.Length() - 1);

    std::list<std::string> subLines;
    bool subFlag = false;
    int r = WalkDir(walk, path, level + 1, subLines, &subFlag);
    if (r == kScanTooManyLooseSongs || r > 0) return true;
    if (r != kScanOk) {
      result = r;
      return false;
    }
    if (subLines.empty() && !IsKeptRecorderDir(name) && !subFlag) return true;
    if (static_cast<int>(walk.albumDirs->size()) > kAlbumLimit - 1 ||
        walk.songLines->size() + subLines.size() > static_cast<size_t>(kPrefixSongLimit)) {
      result = kScanStopped;
      return false;
    }
    walk.albumDirs->push_back(ToStd(name));
    walk.songLines->splice(walk.songLines->end(), subLines);
    return true;
  });
  if (result != kScanOk) return result;
  d.Close();

  if (walk.pairInMemory) PairSongs(walk, midis, audios, loose);
  return static_cast<int>(loose.size()) > kAlbumSongLimit ? kScanTooManyLooseSongs : kScanOk;
}

// Whether the lines of a walk carry the modification time.  Downloaded
// songs are compared without it, as the catalogue lists them without it:
// that holds for the downloaded area of a stick and for a walk that
// began in a "Downloaded Songs" folder of any storage.  The walk began level
// directories above dir, so dir's path below the root names that folder
// first when it has more than level components.
bool LinesCarryTime(const char* dir, int start, int storageKind, int level) {
  if (storageKind == kStorageUsbDownloaded) return false;
  const TSString rel = TSString(dir).SubString(start);
  int components = 0;
  TSString first;
  for (int i = 0; i < rel.Length();) {
    int end = i;
    while (end < rel.Length() && rel[end] != '/') ++end;
    if (end > i) {
      if (components == 0) first = rel.SubString(i + 1, end - i);
      ++components;
    }
    i = end + 1;
  }
  if (components <= level) return true;  // the walk began at the root
  return getprefix(first) != "y";
}

// Walks from dir and, once per storage, says how many names were left out
// because a song cache line cannot carry them.
int WalkStorage(Walk& walk, const char* dir, int level, std::list<std::string>& loose, bool* flag) {
  int refused = 0;
  walk.refusedNames = &refused;
  const int result = WalkDir(walk, TSString(dir), level, loose, flag);
  if (refused > 0) {
    std::printf("Names with control characters not registered: %d\n", refused);
    std::fflush(stdout);
  }
  return result;
}

}  // namespace

int GetDirFileList4(const char* dir, int start, std::list<std::string>& albumDirs,
                    std::list<std::string>& songLines, std::list<std::string>& looseSongLines,
                    int storageKind, int level, bool* flag) {
  Walk walk{start,
            storageKind,
            storageKind < kStorageUsbDownloaded ? 4 : 3,
            true,
            LinesCarryTime(dir, start, storageKind, level),
            &albumDirs,
            &songLines,
            nullptr};
  return WalkStorage(walk, dir, level, looseSongLines, flag);
}

int GetDirFileList3(const char* dir, int start, std::list<std::string>& albumDirs,
                    std::list<std::string>& songLines, std::list<std::string>& looseSongLines,
                    int storageKind, int level, bool* flag) {
  Walk walk{start, storageKind, 4, false, true, &albumDirs, &songLines, nullptr};
  return WalkStorage(walk, dir, level, looseSongLines, flag);
}
