// Unique and numbered names: copies, PIANO numbers, recordings, album
// directories, and the base-name tests they rest on.
#include "zansong/storage/naming.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "common/handles.h"
#include "common/upper_extension.h"
#include "storage/enterable_dir.h"
#include "zansong/common/path.h"
#include "zansong/storage/files.h"

namespace {

// The name without its extension (a leading dot alone is not one).
TSString BaseName(const TSString& name) { return ChangeFileExtSX(name, ""); }

TSString UpperBaseName(const TSString& name) {
  TSString base = BaseName(name);
  base.UpperCase();
  return base;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Calls visit(name, stat) for every entry of dir other than "." and ".."
// that stat accepts.  False when dir cannot be opened.
template <typename Visit>
bool ForEachEntry(const char* dir, Visit visit) {
  return zansong::DirectoryHandle(dir).ForEachEntry([&](const dirent& e) {
    TSString path = TSString(dir) + e.d_name;
    struct stat st;
    if (::stat(path.c_str(), &st) != 0) return true;
    return visit(e.d_name, st);
  });
}

// "PIANO" + n, three digits for 1 to 999, plain above.
TSString PianoName(int n) {
  if (n < 1000) return TSString("PIANO") + FormatInt(3, n);
  return TSString("PIANO") + TSString(n);
}

// The file extension that a song of the given format is stored under.
TSString FormatExtension(const TSString& format) {
  if (format == "WAVE" || format == "CDDA") return ".WAV";
  if (format == "KTVA") return ".FIL";
  if (std::strncmp(format.c_str(), "SMF", 3) == 0) return ".MID";
  if (format == "PSPG") return ".PSPG";
  return ".MID";
}

}  // namespace

namespace zansong {

int IsEnterableDir(const char* path) {
  if (path == nullptr || *path == '\0') return 0;
  struct stat st;
  if (::stat(path, &st) != 0 || !S_ISDIR(st.st_mode)) return 0;
  return ::faccessat(AT_FDCWD, path, X_OK, AT_EACCESS) == 0 ? 1 : 0;
}

}  // namespace zansong

TSString GetExternalCopyDirName(const TSString& dir, const TSString& title, int firstIndex,
                                int width) {
  for (int index = firstIndex;; ++index) {
    TSString name = GetExternalName(title, index, width, true);
    if (!zansong::IsEnterableDir((dir + name).c_str())) return name;
  }
}

TSString GetExternalCopyDirName2(const TSString& dir, const TSString& title, int firstIndex,
                                 int width) {
  return GetExternalCopyDirName(dir, title, firstIndex, width);
}

TSString GetExternalCopyFileName2(const TSString& dir, const TSString& title, int firstIndex,
                                  int width) {
  for (int index = firstIndex;; ++index) {
    TSString name = GetExternalName(title, index, width, true);
    if (!FileNameExists(dir, name)) return name;
  }
}

TSString GetExternalCopyFileName3(const TSString& dir, const TSString& srcPath) {
  std::vector<TSString> used;
  GetFileNameExistsList(dir, used);
  for (TSString& name : used) name.UpperCase();
  const TSString base = BaseName(ExtractFileNameSX(srcPath));
  TSString name = base;
  auto taken = [&used](const TSString& candidate) {
    TSString upper = candidate;
    upper.UpperCase();
    return std::find(used.begin(), used.end(), upper) != used.end();
  };
  for (int counter = 1; taken(name);) {
    ++counter;
    name = base + "_" + FormatInt(3, counter);
  }
  return name;
}

TSString GetExternalCopyFileName(const TSString&, const TSString&, int, int, const TSString&) {
  return TSString();
}

unsigned GetMaxFileIndex(const char* dir, bool dirsOnly) {
  unsigned max = 0;
  ForEachEntry(dir, [&](const char* name, const struct stat& st) {
    if (dirsOnly && !S_ISDIR(st.st_mode)) return true;
    if (!IsDigit(name[0]) || !IsDigit(name[1])) return true;
    unsigned value = (name[0] - '0') * 10 + (name[1] - '0');
    if (IsDigit(name[2])) {
      value = value * 10 + (name[2] - '0');
      if (IsDigit(name[3])) value = value * 10 + (name[3] - '0');
    }
    max = std::max(max, value);
    return true;
  });
  return max;
}

int GetMaxPianoFileNo(const char* dir) {
  int max = 0;
  ForEachEntry(dir, [&](const char* name, const struct stat& st) {
    if (S_ISDIR(st.st_mode)) return true;
    TSString upper(name);
    upper.UpperCase();
    if (std::strncmp(upper.c_str(), "PIANO", 5) != 0) return true;
    const TSString number = BaseName(TSString(name)).SubString(6);
    int value;
    if (number.Length() == 3) {
      value = number.ToInt();
    } else {
      if (number.Length() < 4 || number[0] == '0') return true;
      for (int i = 0; i < number.Length(); ++i) {
        if (!IsDigit(number[i])) return true;
      }
      // Numbers beyond the int range count as the largest int: no new name
      // can follow them.
      long long wide = number.Length() > 10 ? LLONG_MAX : number.ToLongLongInt();
      value = wide > INT_MAX ? INT_MAX : static_cast<int>(wide);
      if (value < 1000) return true;
    }
    max = std::max(max, value);
    return true;
  });
  return max;
}

TSString GetNewSongName2(const TSString& dir) {
  const int max = GetMaxPianoFileNo(dir.c_str());
  if (max < 999) return PianoName(max + 1);
  if (max == 999) {
    for (int n = 1; n <= 999; ++n) {
      if (!FileNameExists(dir, PianoName(n))) return PianoName(n);
    }
    return PianoName(1000);
  }
  if (max > 999999998) return TSString();
  return PianoName(max + 1);
}

TSString GetNewSongName(const TSString& dir, const TSString& format, bool anyExtension) {
  const TSString ext = FormatExtension(format);
  for (int n = 1; n < 1000; ++n) {
    const TSString name = PianoName(n);
    bool taken = anyExtension ? FileNameExists(dir, name) : FileExists((dir + name + ext).c_str());
    if (!taken) return name;
  }
  return TSString();
}

TSString GetRecDateString(const TSString& dir, const TSString& ext) {
  std::time_t now = std::time(nullptr);
  struct tm local;
  localtime_r(&now, &local);
  char base[64];
  std::strftime(base, sizeof(base), "%Y%m%d_%H%M%S", &local);
  TSString suffix;
  for (int counter = 0; FileExists((dir + base + suffix + ext).c_str());) {
    ++counter;
    suffix = TSString("_") + FormatInt(2, counter);
  }
  return dir + base + suffix + ext;
}

TSString GetNewDir(const TSString& parent) {
  for (int n = 1; n <= 999; ++n) {
    TSString name = FormatInt(3, n);
    if (!zansong::IsEnterableDir((parent + name).c_str())) return name;
  }
  for (int n = 1;; ++n) {
    TSString name(n);
    if (!zansong::IsEnterableDir((parent + name).c_str())) return name;
  }
}

TSString GetTitleFromMntDir(const TSString& path) {
  TSString rest = path;
  if (std::strncmp(path.c_str(), "/mnt/", 5) == 0) {
    rest = path.SubString(6);
  } else if (std::strncmp(path.c_str(), "/home/samba/", 12) == 0) {
    rest = path.SubString(13);
  } else {
    return path;
  }
  int slash = rest.AnsiPos("/");
  if (slash > 0) rest = rest.SubString(slash);
  if (rest.Length() >= 2 && rest[rest.Length() - 1] == '/') rest.SetLength(rest.Length() - 1);
  return rest;
}

bool FileNameExists(const TSString& dir, const TSString& name) {
  const TSString wanted = UpperBaseName(name);
  bool found = false;
  ForEachEntry(dir.c_str(), [&](const char* entry, const struct stat& st) {
    if (S_ISDIR(st.st_mode)) return true;
    found = UpperBaseName(TSString(entry)) == wanted;
    return !found;
  });
  return found;
}

void GetFileNameExistsList(const TSString& dir, std::vector<TSString>& names) {
  names.clear();
  ForEachEntry(dir.c_str(), [&](const char* entry, const struct stat& st) {
    if (!S_ISDIR(st.st_mode)) names.push_back(BaseName(TSString(entry)));
    return true;
  });
}

int GetCopyFileNames(const TSString& srcDir, const TSString& dstDir, const TSString& srcName,
                     TSString& srcAudio, TSString& dstName, TSString& dstAudio,
                     const TSString& format) {
  const TSString ext = FormatExtension(format);
  const TSString srcExt = zansong::UpperExtension(srcName);
  if (srcExt == ext || (format == "KTVA" && srcExt == ".EVT")) {
    dstName = srcName;
  } else {
    dstName = ChangeFileExtSX(srcName, ext);
  }

  const TSString wavAudio = ChangeFileExtSX(srcAudio, ".wav");
  const bool wavExists = srcAudio.Length() > 0 && FileExists((srcDir + wavAudio).c_str());
  const bool hasCompanion = srcExt == ".MID" && srcAudio.Length() > 0 &&
                            (FileExists((srcDir + srcAudio).c_str()) || wavExists);
  const bool clash = FileNameExists(dstDir, dstName);
  TSString newName;
  if (clash) newName = GetNewSongName2(dstDir);

  if (!hasCompanion) {
    dstAudio = TSString();
    srcAudio = TSString();
    if (!clash) return 1;
    dstName = newName.Length() > 0 ? newName + ext : TSString();
    return newName.Length() > 0 ? 1 : 0;
  }

  int result = 1;
  if (!clash) {
    dstAudio = wavExists ? wavAudio : srcAudio;
  } else if (newName.Length() > 0) {
    dstName = newName + ext;
    dstAudio = newName + ".WAV";
  } else {
    dstName = TSString();
    dstAudio = TSString();
    result = 0;
  }
  if (wavExists) srcAudio = wavAudio;
  return result;
}
