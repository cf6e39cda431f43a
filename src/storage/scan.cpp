// The storage walks that build song cache lines: GetDirFileList4 (pairs
// MIDI and audio files in memory) and GetDirFileList3 (finds companions on
// disk).  Both share one walker; they differ in depth and in how the files
// of one directory become lines.
//
// The walker costs one status call per song file and per directory whose
// kind the listing does not tell, made relative to the open directory;
// other files are passed over by name.  Each song's modification time is
// taken from that one status call.
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/handles.h"
#include "storage/local_time_text.h"
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
  zansong::LocalTimeText* times;
  int* refusedNames;  // files and folders left out for their names
};

// One song file of a directory: its full path and modification time.
struct SongFile {
  std::string path;
  time_t mtime;
};

bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

// "a" to "z" upper-cased, as TSString::UpperCase does.
char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

enum class SongKind { kNone, kMidi, kAudio };

// The kind of a file by the upper-cased extension of its name (the
// extension as ExtractFileExtX finds it): ".MID", or ".WAV" and ".MP3".
SongKind KindOfName(const char* name) {
  char ext[256 + 1];
  if (std::strlen(name) >= sizeof ext || ExtractFileExtX(name, ext) == 0 || std::strlen(ext) != 4) {
    return SongKind::kNone;
  }
  char upper[4];
  for (int i = 0; i < 4; ++i) upper[i] = UpperAscii(ext[i]);
  const std::string_view e(upper, 4);
  if (e == ".MID") return SongKind::kMidi;
  if (e == ".WAV" || e == ".MP3") return SongKind::kAudio;
  return SongKind::kNone;
}

// Special folders that a scan of a whole storage must not take as albums.
bool IsExcludedDir(const Walk& walk, std::string_view rel) {
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
bool IsKeptRecorderDir(std::string_view name) {
  return name == "Recorded Songs/Temporary Folder" || name == "Recorded Songs/Keep";
}

// path from the 1-based position start on, as TSString::SubString(start).
std::string_view Relative(std::string_view path, int start) {
  if (path.empty() || start > static_cast<int>(path.size())) return std::string_view();
  return start < 1 ? path : path.substr(static_cast<size_t>(start - 1));
}

// The song cache line of a pairing, timed by the MIDI file (by the audio
// file of an audio-only song).
std::string LineOf(const Walk& walk, const SongFile* midi, const SongFile* audio) {
  std::string_view time;
  if (walk.withTime) time = walk.times->Of(midi != nullptr ? midi->mtime : audio->mtime);
  return zansong::SongCacheLine(midi != nullptr ? midi->path : std::string_view(),
                                audio != nullptr ? audio->path : std::string_view(), walk.start,
                                time);
}

// Pairs each MIDI file of one directory with the first ".WAV" or ".MP3"
// file of the same name (case-sensitive) in directory order, drops a second
// audio file of that name, and turns the rest of the audio files into
// audio-only lines after the MIDI lines.
void PairSongs(const Walk& walk, const std::vector<SongFile>& midis,
               const std::vector<SongFile>& audios, std::list<std::string>& lines) {
  // Audio files by name without extension (all of them end in a
  // four-character extension), in directory order.
  std::unordered_map<std::string_view, std::vector<size_t>> byStem;
  for (size_t i = 0; i < audios.size(); ++i) {
    const std::string& path = audios[i].path;
    byStem[std::string_view(path).substr(0, path.size() - 4)].push_back(i);
  }
  std::vector<bool> taken(audios.size(), false);
  for (const SongFile& midi : midis) {
    const SongFile* companion = nullptr;
    if (!byStem.empty()) {
      auto found = byStem.find(std::string_view(midi.path).substr(0, midi.path.size() - 4));
      if (found != byStem.end()) {
        int matched = 0;
        for (size_t i : found->second) {
          if (taken[i]) continue;
          taken[i] = true;
          if (matched++ == 0) {
            companion = &audios[i];
          } else {
            break;
          }
        }
      }
    }
    lines.push_back(LineOf(walk, &midi, companion));
  }
  for (size_t i = 0; i < audios.size(); ++i) {
    if (!taken[i]) lines.push_back(LineOf(walk, nullptr, &audios[i]));
  }
}

// Opens the directory name inside the open directory parent.
zansong::DirectoryHandle OpenInside(const zansong::DirectoryHandle& parent, const char* name) {
  int fd = ::openat(dirfd(parent.get()), name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return zansong::DirectoryHandle();
  DIR* dir = ::fdopendir(fd);
  if (dir == nullptr) ::close(fd);
  return zansong::DirectoryHandle(dir);
}

// Walks the open directory d, whose path is dir (ending in "/").
int WalkDir(const Walk& walk, zansong::DirectoryHandle d, const std::string& dir, int level,
            std::list<std::string>& loose, bool* flag) {
  loose.clear();
  bool ignoredFlag;
  if (flag == nullptr) flag = &ignoredFlag;
  if (!d.valid()) return kScanUnreadableDir;
  *flag = level + 1 < walk.maxLevel;
  if (level + 1 >= walk.maxLevel) return 0;  // too deep: the contents are not listed

  std::vector<SongFile> midis, audios;
  std::string path = dir;
  int result = kScanOk;
  d.ForEachEntry([&](const dirent& e) {
    const char* name = e.d_name;
    *flag = false;
    if (!zansong::IsCacheableName(name)) {
      ++*walk.refusedNames;
      return true;
    }
    path.resize(dir.size());
    path += name;

    // The listing tells a directory from a file on most file systems; a
    // status call is needed for the kind of a link or of an entry the
    // listing leaves open, and for a song file's time.
    const SongKind kind = KindOfName(name);
    const bool kindKnown = e.d_type != DT_UNKNOWN && e.d_type != DT_LNK;
    bool isDir = e.d_type == DT_DIR;
    bool statted = false;
    struct stat st;
    if (!kindKnown || (!isDir && kind != SongKind::kNone)) {
      if (::fstatat(dirfd(d.get()), name, &st, 0) != 0) return true;
      isDir = S_ISDIR(st.st_mode);
      statted = true;
    }

    if (!isDir) {
      if (kind == SongKind::kNone) return true;
      if (walk.pairInMemory) {
        (kind == SongKind::kMidi ? midis : audios).push_back(SongFile{path, st.st_mtime});
        return true;
      }
      TSString line = GetSongCache(TSString(path.c_str()), walk.start);
      if (line.Length() == 0) return true;
      if (static_cast<int>(loose.size()) > kAlbumSongLimit - 1) {
        result = kScanTooManyLooseSongs;
        return false;
      }
      loose.emplace_back(line.c_str(), static_cast<size_t>(line.Length()));
      return true;
    }

    if (name[0] == '.') return true;
    path += '/';
    const std::string_view rel = Relative(path, walk.start);
    if (IsExcludedDir(walk, rel)) return true;
    const std::string_view albumName = rel.empty() ? rel : rel.substr(0, rel.size() - 1);

    zansong::DirectoryHandle sub = OpenInside(d, name);
    // An entry that is gone by now is skipped as one that cannot be
    // statted; one that is there but cannot be opened stops the scan.
    if (!sub.valid() && !statted && ::fstatat(dirfd(d.get()), name, &st, 0) != 0) return true;
    std::list<std::string> subLines;
    bool subFlag = false;
    int r = WalkDir(walk, std::move(sub), path, level + 1, subLines, &subFlag);
    if (r == kScanTooManyLooseSongs || r > 0) return true;
    if (r != kScanOk) {
      result = r;
      return false;
    }
    if (subLines.empty() && !IsKeptRecorderDir(albumName) && !subFlag) return true;
    if (static_cast<int>(walk.albumDirs->size()) > kAlbumLimit - 1 ||
        walk.songLines->size() + subLines.size() > static_cast<size_t>(kPrefixSongLimit)) {
      result = kScanStopped;
      return false;
    }
    walk.albumDirs->emplace_back(albumName);
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
  const std::string top = dir != nullptr ? dir : "";
  const int result = WalkDir(walk, zansong::DirectoryHandle(top.c_str()), top, level, loose, flag);
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
  zansong::LocalTimeText times;
  Walk walk{start,
            storageKind,
            storageKind < kStorageUsbDownloaded ? 4 : 3,
            true,
            LinesCarryTime(dir, start, storageKind, level),
            &albumDirs,
            &songLines,
            &times,
            nullptr};
  return WalkStorage(walk, dir, level, looseSongLines, flag);
}

int GetDirFileList3(const char* dir, int start, std::list<std::string>& albumDirs,
                    std::list<std::string>& songLines, std::list<std::string>& looseSongLines,
                    int storageKind, int level, bool* flag) {
  zansong::LocalTimeText times;
  Walk walk{start, storageKind, 4, false, true, &albumDirs, &songLines, &times, nullptr};
  return WalkStorage(walk, dir, level, looseSongLines, flag);
}
