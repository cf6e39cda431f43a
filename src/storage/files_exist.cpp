// Existence tests and lookups that tolerate the letter case of names on disk.
#include <strings.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "common/handles.h"
#include "storage/subdirectory_names.h"
#include "zansong/common/file_util.h"
#include "zansong/common/path.h"
#include "zansong/storage/files.h"

namespace {

// Whether the entry read from a listing of dir is a directory.  File
// systems that do not report entry types in the listing are asked with
// stat (which follows links, as opening the path later would).
bool IsDirectoryEntry(const std::string& dir, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return (entry.d_type & DT_DIR) != 0;
  struct stat st;
  std::string path = dir + entry.d_name;
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// Case-insensitive lookup of one directory level: the parent (spelled as
// on disk, ending in "/") must hold a directory named like component.  On
// a match, *onDisk is the parent followed by the entry's name and "/".
bool FindDirectoryEntry(const std::string& parent, const std::string& component,
                        std::string* onDisk) {
  zansong::DirectoryHandle dir(parent.c_str());
  if (!dir.valid()) return false;
  // "." and ".." are in every directory; the listing leaves them out.
  if (zansong::IsDotEntry(component.c_str())) {
    *onDisk = parent + component + "/";
    return true;
  }
  bool found = false;
  dir.ForEachEntry([&](const dirent& entry) {
    if (strcasecmp(entry.d_name, component.c_str()) != 0) return true;
    if (!IsDirectoryEntry(parent, entry)) return true;
    *onDisk = parent + entry.d_name + "/";
    found = true;
    return false;
  });
  return found;
}

// The on-disk spelling of the absolute directory path, ending in "/", or
// false when some component is missing.  "/" is its own spelling.
bool ResolveDirectory(const std::string& path, std::string* onDisk) {
  if (path.empty()) return false;
  if (path == "/") {
    *onDisk = path;
    return true;
  }
  // The parent is what is left after dropping the last character and then
  // everything after the last remaining "/".
  if (path.size() < 2) return false;
  std::string::size_type slash = path.find_last_of('/', path.size() - 2);
  if (slash == std::string::npos) return false;
  std::string parent = path.substr(0, slash + 1);
  std::string component = path.substr(slash + 1);
  if (!component.empty() && component.back() == '/') component.pop_back();

  std::string parentOnDisk;
  if (!ResolveDirectory(parent, &parentOnDisk)) return false;
  return FindDirectoryEntry(parentOnDisk, component, onDisk);
}

// The song file named like path whose extension is spelled as one of
// spellings: the first spelling that any readable file of the directory
// has wins, and among files with that spelling the first in directory
// order.  The rest of the name is matched without regard to case, so the
// lookup gives the same answer on case-sensitive and case-insensitive file
// systems.  The result is the directory, "/" and the name as on disk; ""
// when there is none.
TSString FindWithExtension(const char* path, const char* const* spellings, int count) {
  TSString stem(path);
  stem.SetLength(stem.Length() > 4 ? stem.Length() - 4 : 0);
  const TSString dirName = ExtractFileDirSX(stem);
  const TSString stemName = ExtractFileNameSX(stem);
  const std::string dir = std::string(dirName.c_str()) + "/";
  const size_t stemLength = static_cast<size_t>(stemName.Length());

  // Names of the right length and stem, in directory order.
  std::vector<std::string> names;
  {
    zansong::DirectoryHandle handle(dir.c_str());
    bool listed = handle.ForEachEntry([&](const dirent& entry) {
      const char* name = entry.d_name;
      if (std::strlen(name) != stemLength + 4) return true;
      if (strncasecmp(name, stemName.c_str(), stemLength) != 0) return true;
      if (IsDirectoryEntry(dir, entry)) return true;
      names.emplace_back(name);
      return true;
    });
    if (!listed) return TSString();
  }
  for (int i = 0; i < count; ++i) {
    for (const std::string& name : names) {
      if (name.compare(stemLength, 4, spellings[i]) != 0) continue;
      if (FileExists((dir + name).c_str())) return dirName + "/" + name.c_str();
    }
  }
  return TSString();
}

}  // namespace

int FileExists(const char* path) { return FileExistsX(path); }

int DirExists(const char* path) { return FH2_is_dir_exists(path, nullptr, 0); }

int FH2_is_dir_exists(const char* path, char* out, int outsize) {
  if (path == nullptr) return 0;
  std::string onDisk;
  if (!ResolveDirectory(path, &onDisk)) return 0;
  // "/" is reported as existing without writing anything.
  if (std::strcmp(path, "/") != 0 && out != nullptr && outsize > 0) {
    std::snprintf(out, static_cast<size_t>(outsize), "%s", onDisk.c_str());
  }
  return 1;
}

int AnyFileExists(const char* dir) {
  bool any = false;
  zansong::DirectoryHandle(dir).ForEachEntry([&any](const dirent&) {
    any = true;
    return false;
  });
  return any ? 1 : 0;
}

TSString FileExists2(const char* path) {
  TSString dirName = ExtractFileDirSX(path);
  std::string dir = std::string(dirName.c_str()) + "/";
  TSString wanted = ExtractFileNameSX(path);
  wanted.UpperCase();

  TSString found;
  zansong::DirectoryHandle(dir.c_str()).ForEachEntry([&](const dirent& entry) {
    if (IsDirectoryEntry(dir, entry)) return true;
    TSString name(entry.d_name);
    name.UpperCase();
    if (!(name == wanted)) return true;
    found = dirName + "/" + entry.d_name;
    return false;
  });
  return found;
}

// Not every mixed-case spelling is tried: the ones with only the middle
// letter in upper case are left out.
TSString MidFileExists(const char* path) {
  static const char* const kSpellings[] = {".MID", ".mid", ".Mid", ".MId", ".MiD", ".mID", ".miD"};
  return FindWithExtension(path, kSpellings, 7);
}

TSString Mp3FileExists(const char* path) {
  static const char* const kSpellings[] = {".MP3", ".mp3", ".Mp3", ".mP3"};
  return FindWithExtension(path, kSpellings, 4);
}

TSString WavFileExists(const char* path) {
  static const char* const kSpellings[] = {".WAV", ".wav", ".Wav", ".WAv", ".WaV", ".wAV", ".waV"};
  return FindWithExtension(path, kSpellings, 7);
}

TSString ChangeNoDirAndSpaceName(const char* path) {
  TSString name(path);
  name.Strip(" ");
  return ExtractFileNameSX(name);
}

namespace zansong {

std::string UpperAsciiName(const std::string& name) {
  std::string upper = name;
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

std::set<std::string> SubdirectoryNamesUpper(const std::string& parent) {
  std::set<std::string> names;
  std::string onDisk;
  if (!ResolveDirectory(parent, &onDisk)) return names;
  // Every directory holds these two, though the listing leaves them out.
  names.insert(".");
  names.insert("..");
  zansong::DirectoryHandle(onDisk.c_str()).ForEachEntry([&](const dirent& entry) {
    if (IsDirectoryEntry(onDisk, entry)) names.insert(UpperAsciiName(entry.d_name));
    return true;
  });
  return names;
}

}  // namespace zansong
