// Plain directory listings for other operations, and the listers kept only
// for callers that still link them.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "common/handles.h"
#include "zansong/storage/scan.h"

int GetDirFileList(const char* dir, std::list<std::string>& files) {
  bool listed = zansong::DirectoryHandle(dir).ForEachEntry([&](const dirent& e) {
    std::string path = std::string(dir) + e.d_name;
    struct stat st;
    if (::stat(path.c_str(), &st) != 0) return true;
    if (S_ISDIR(st.st_mode)) {
      GetDirFileList((path + "/").c_str(), files);
    } else {
      files.push_back(path);
    }
    return true;
  });
  return listed ? 1 : 0;
}

int GetDirFileVector(char* dir, std::vector<TDirFileName>& names) {
  std::vector<std::string> found;
  bool listed = zansong::DirectoryHandle(dir).ForEachEntry([&](const dirent& e) {
    std::string path = std::string(dir) + e.d_name;
    struct stat st;
    if (::stat(path.c_str(), &st) != 0 || S_ISDIR(st.st_mode)) return true;
    found.push_back(e.d_name);
    ::usleep(10000);  // a slow stick is not flooded with requests
    return true;
  });
  if (!listed) return 0;
  std::sort(found.begin(), found.end());
  for (const std::string& name : found) {
    if (name.compare(0, 2, "._") == 0) {
      // Side files another system leaves on sticks: they are not songs.
      ::unlink((std::string(dir) + name).c_str());
      continue;
    }
    TSString text(name.c_str());
    if (!is_SJIS(text)) continue;
    TDirFileName entry;
    entry.value = 0;
    entry.name = text;
    entry.nameUpper = text;
    entry.nameUpper.UpperCaseSJIS();
    names.push_back(entry);
  }
  return 1;
}

int GetDirFileList2(const char*, std::list<std::string>&, std::list<std::string>&, int, int) {
  return 0;
}

int GetZanId(char*, int) { return 0; }

int GetZanVersion(char*, int) { return 0; }
