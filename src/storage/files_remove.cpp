// Creating marker files, and deleting files, directories and song trees.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "common/handles.h"
#include "common/process.h"
#include "common/upper_extension.h"
#include "zansong/common/file_util.h"
#include "zansong/common/path.h"
#include "zansong/storage/files.h"

namespace {

// Creates or truncates path (mode 0666) and closes it again.
bool CreateEmptyFile(const char* path) {
  zansong::FileDescriptor fd(::open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666));
  return fd.valid();
}

bool PathPresent(const std::string& path) {
  struct stat st;
  return ::lstat(path.c_str(), &st) == 0;
}

bool IsSongExtension(const TSString& ext) {
  return ext == ".MID" || ext == ".WAV" || ext == ".MP3";
}

}  // namespace

int CreateOneTimeRestoreFile(const char* path) {
  if (!CreateEmptyFile(path)) return 0;
  zansong::SyncFileSystems();
  return 1;
}

int is_Writable(const char* path) {
  if (!CreateEmptyFile(path)) return 0;
  ::unlink(path);
  zansong::SyncFileSystems();
  return 1;
}

int DeleteFile(const char* path) { return FileDelete(path); }

int RemoveDir(const char* dir, bool removeSelf) {
  {
    std::string prefix(dir);
    // Subdirectories are not removed; unlink fails on them and that is
    // ignored like any other failure here.
    bool listed = zansong::DirectoryHandle(dir).ForEachEntry([&prefix](const dirent& entry) {
      DeleteFile((prefix + entry.d_name).c_str());
      return true;
    });
    if (!listed) return 0;
  }
  if (!removeSelf) return 1;
  return ::rmdir(dir) == 0 ? 1 : 0;
}

int RemoveDirTree(char* dir, bool removeSelf, bool recurse, bool withJpg) {
  int result = 0;
  bool leftover = false;
  // With withJpg, a ".jpg" is normally a song's companion that goes with
  // its song, whichever of the two the listing shows first; it counts as
  // left over only when it is still there once every song has been seen.
  std::vector<std::string> pictures;
  {
    const std::string prefix(dir);
    bool listed = zansong::DirectoryHandle(dir).ForEachEntry([&](const dirent& entry) {
      std::string path = prefix + entry.d_name;
      struct stat st;
      if (::stat(path.c_str(), &st) != 0) return true;

      if (S_ISDIR(st.st_mode)) {
        if (recurse) {
          std::string sub = path + "/";
          // The last subdirectory's result replaces what came before.
          result = RemoveDirTree(&sub[0], true, true, withJpg);
        } else {
          leftover = true;
        }
        return true;
      }

      TSString ext = zansong::UpperExtension(path.c_str());
      if (IsSongExtension(ext)) {
        if (!DeleteFile(path.c_str())) result = PathPresent(path) ? -3 : -2;
        if (withJpg) DeleteFile(ChangeFileExtSX(path.c_str(), ".jpg").c_str());
      } else if (withJpg && ext == ".JPG") {
        pictures.push_back(path);
      } else {
        leftover = true;
      }
      return true;
    });
    if (!listed) return -1;
  }
  for (const std::string& picture : pictures) {
    if (PathPresent(picture)) leftover = true;
  }

  if (result == 0) {
    if (leftover) {
      result = -4;
    } else if (removeSelf) {
      result = ::rmdir(dir) == 0 ? 0 : -3;
    }
  }
  return result;
}
