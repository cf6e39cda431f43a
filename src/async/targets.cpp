// The small queries of the multi-target requests: type words, write
// protection, file and directory sizes.
#include "zansong/async/targets.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "common/handles.h"

namespace {

constexpr size_t kMaxTemplateBytes = 255;

}  // namespace

int FH2_get_target_type(const char* word) {
  if (word == nullptr) return kTargetUnknown;
  static const struct {
    const char* word;
    int type;
  } kTypes[] = {{"song", kTargetSong},
                {"album", kTargetAlbum},
                {"psong", kTargetPlaylistSong},
                {"playlist", kTargetPlaylist},
                {"sql", kTargetQuery}};
  for (const auto& t : kTypes) {
    if (std::strcmp(word, t.word) == 0) return t.type;
  }
  return kTargetUnknown;
}

int FH2_is_write_protect(const char* path) {
  if (path == nullptr) return 1;
  char name[kMaxTemplateBytes + 1];
  int n = std::snprintf(name, sizeof name, "%sXXXXXX", path);
  if (n < 0 || static_cast<size_t>(n) > kMaxTemplateBytes) return 1;  // no room for the suffix
  zansong::FileDescriptor file(::mkstemp(name));
  if (!file.valid()) return 1;
  file.Close();
  ::unlink(name);
  return 0;
}

long long FH2_get_file_size(const char* path) {
  // The 64-bit call, so that a file beyond 2 GiB has its size also where
  // off_t has 32 bits (armhf).
  struct stat64 st;
  if (path == nullptr || ::stat64(path, &st) != 0 || !S_ISREG(st.st_mode)) return 0;
  return static_cast<long long>(st.st_size);
}

long long FH2_get_dir_size(const char* dir) {
  if (dir == nullptr) return 0;
  std::string prefix = dir;
  if (prefix.empty() || prefix.back() != '/') prefix += '/';
  long long total = 0;
  zansong::DirectoryHandle listing(dir);
  listing.ForEachEntry([&](const dirent& entry) {
    total += FH2_get_file_size((prefix + entry.d_name).c_str());
    return true;
  });
  return total;
}
