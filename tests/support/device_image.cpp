#include "support/device_image.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "common/process.h"
#include "zansong/common/sysroot.h"

namespace zansong_test {

DeviceImage::DeviceImage() {
  char pattern[] = "/tmp/zansong-test-XXXXXX";
  char* made = mkdtemp(pattern);
  if (made == nullptr) {
    ADD_FAILURE() << "mkdtemp failed";
    std::abort();
  }
  root_ = made;
  int rc = zansong::RunProgram(
      {ZANSONG_MAKE_IMAGE, root_, "--songdb2json", ZANSONG_SONGDB2JSON_PROGRAM});
  if (rc != 0) {
    ADD_FAILURE() << "make-image.sh failed with " << rc;
    std::abort();
  }
  FM_SetSystemRoot(root_.c_str());
}

DeviceImage::DeviceImage(const DeviceImage& original, bool) {
  char pattern[] = "/tmp/zansong-test-XXXXXX";
  char* made = mkdtemp(pattern);
  if (made == nullptr ||
      zansong::RunProgram({"cp", "-a", original.root_ + "/.", std::string(made)}) != 0) {
    ADD_FAILURE() << "cannot copy the image " << original.root_;
    std::abort();
  }
  root_ = made;
  FM_SetSystemRoot(root_.c_str());
}

DeviceImage::~DeviceImage() {
  FM_SetSystemRoot("");
  // The tree may hold read-only directories made by a test; make them
  // writable first so that everything can go.
  zansong::RunProgram({"chmod", "-R", "u+rwx", root_});
  zansong::RunProgram({"rm", "-rf", root_});
}

std::string DeviceImage::UsbRoot(const std::string& name) const {
  std::string dir = Path("/var/volatile/run/media/") + name + "/";
  MakeDirs(dir);
  return dir;
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) ADD_FAILURE() << "cannot write " << path;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

bool PathExists(const std::string& path) {
  struct stat st;
  return lstat(path.c_str(), &st) == 0;
}

void MakeDirs(const std::string& path) {
  std::string partial;
  for (size_t i = 0; i < path.size(); ++i) {
    partial += path[i];
    if ((path[i] == '/' || i + 1 == path.size()) && partial != "/") {
      if (mkdir(partial.c_str(), 0777) != 0 && errno != EEXIST) {
        ADD_FAILURE() << "mkdir " << partial << " failed";
        return;
      }
    }
  }
}

bool MakeSparseFile(const std::string& path, long long size) {
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  if (fd < 0) return false;
  const bool sized = ftruncate(fd, static_cast<off_t>(size)) == 0;
  return close(fd) == 0 && sized;
}

bool SetFileTimes(const std::string& path, long long seconds) {
  const struct timespec times[2] = {{static_cast<time_t>(seconds), 0},
                                    {static_cast<time_t>(seconds), 0}};
  return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

}  // namespace zansong_test
