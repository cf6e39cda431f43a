// Free-space tests against the size of the files about to be written, the
// size of a file system, and the free-space text for the screen.
#include <sys/stat.h>
#include <sys/statfs.h>

#include "storage/disk_free_text.h"
#include "zansong/common/tsstring.h"
#include "zansong/storage/files.h"

namespace {

// The margin kept free beyond the files of a copy.
constexpr long long kCopyMargin = 1048576;

constexpr long long kKiB = 1024;
constexpr long long kMiB = 1024 * kKiB;
constexpr long long kGiB = 1024 * kMiB;

// Available blocks x block size of dir's file system; false when statfs
// fails.
bool FreeBytes(const char* dir, long long* bytes) {
  struct statfs fs;
  if (::statfs(dir, &fs) != 0) return false;
  *bytes = static_cast<long long>(fs.f_bavail) * static_cast<long long>(fs.f_bsize);
  return true;
}

// The size of path, or false when it is "" or cannot be stat'ed.
bool FileSize(const char* path, long long* bytes) {
  struct stat st;
  if (path == nullptr || path[0] == '\0' || ::stat(path, &st) != 0) return false;
  *bytes = static_cast<long long>(st.st_size);
  return true;
}

}  // namespace

int CheckDiskFree(const char* dir, const char* file1, const char* file2) {
  long long size1 = 0;
  if (!FileSize(file1, &size1)) return 1;
  long long size2 = 0;
  if (!FileSize(file2, &size2)) size2 = 0;
  long long free = 0;
  if (!FreeBytes(dir, &free)) return 1;
  return size1 + size2 + kCopyMargin < free ? 1 : 0;
}

int CheckDiskFree(const char* dir, long long need) {
  long long free = 0;
  return CheckAndGetDiskFree(dir, need, free);
}

int CheckAndGetDiskFree(const char* dir, long long need, long long& freeBytes) {
  freeBytes = 0;
  if (!FreeBytes(dir, &freeBytes)) {
    freeBytes = 0;
    return 1;
  }
  return need < freeBytes ? 1 : 0;
}

long long GetDiskSize(const char* dir) {
  struct statfs fs;
  if (::statfs(dir, &fs) != 0) return 0;
  return static_cast<long long>(fs.f_blocks) * static_cast<long long>(fs.f_bsize);
}

TSString GetDiskFreeString(const char* dir) {
  long long free = 0;
  CheckAndGetDiskFree(dir, 0, free);
  return zansong::DiskFreeText(free);
}

namespace zansong {

TSString DiskFreeText(long long freeBytes) {
  const float f = static_cast<float>(freeBytes);
  const unsigned long long magnitude = freeBytes < 0
                                           ? 0ULL - static_cast<unsigned long long>(freeBytes)
                                           : static_cast<unsigned long long>(freeBytes);
  if (magnitude >= static_cast<unsigned long long>(kGiB)) {
    float gib = f / static_cast<float>(kGiB);
    if (gib < 0) gib = 0;
    return FormatFloat("2.1", gib) + " GB";
  }
  if (magnitude >= static_cast<unsigned long long>(kMiB))
    return FormatFloat("3.1", f / static_cast<float>(kMiB)) + " MB";
  return FormatFloat("3.1", f / static_cast<float>(kKiB)) + " KB";
}

}  // namespace zansong
