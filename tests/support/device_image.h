// A fresh device image for one test.
//
// DeviceImage lays out the tree of fixed device paths (device/make-image.sh)
// in a new temporary directory, points the library's system root at it, and
// on destruction resets the root to "" and removes the whole tree.  Tests
// therefore never touch the real /usr/local, /var or /tmp/.zansong.db.
//
// DeviceTest is a GoogleTest fixture that gives each test its own image.
#ifndef ZANSONG_TESTS_SUPPORT_DEVICE_IMAGE_H_
#define ZANSONG_TESTS_SUPPORT_DEVICE_IMAGE_H_

#include <gtest/gtest.h>

#include <string>

namespace zansong_test {

class DeviceImage {
 public:
  DeviceImage();
  // A copy of the whole tree of another image (cp -a), with the system root
  // pointed at the copy: quicker than laying out and filling a new one.
  explicit DeviceImage(const DeviceImage& original, bool copyTree);
  ~DeviceImage();
  DeviceImage(const DeviceImage&) = delete;
  DeviceImage& operator=(const DeviceImage&) = delete;

  // The image's top directory (the system root), without a final "/".
  const std::string& root() const { return root_; }
  // root() + path, for a path written as on the instrument ("/usr/...").
  std::string Path(const std::string& instrumentPath) const { return root_ + instrumentPath; }
  // The internal song root, root() + "/usr/local/songs/".
  std::string SongRoot() const { return Path("/usr/local/songs/"); }
  // A USB stick root, root() + "/var/volatile/run/media/" + name + "/",
  // created when missing.
  std::string UsbRoot(const std::string& name = "sda1") const;
  // The working copy of a stick catalogue, root() + "/tmp/.zansong.db".
  std::string WorkingDb() const { return Path("/tmp/.zansong.db"); }

 private:
  std::string root_;
};

class DeviceTest : public ::testing::Test {
 protected:
  DeviceImage image_;
};

// Small file helpers for tests.
void WriteFile(const std::string& path, const std::string& bytes);
std::string ReadFile(const std::string& path);
bool PathExists(const std::string& path);
// mkdir -p.
void MakeDirs(const std::string& path);
// Creates (or truncates) path as a sparse file of size bytes, which takes
// no space on disk; false when that fails.
bool MakeSparseFile(const std::string& path, long long size);
// Sets the access and modification times of path to seconds since the
// epoch (64-bit: dates after 2038 too); false when that fails.
bool SetFileTimes(const std::string& path, long long seconds);

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_DEVICE_IMAGE_H_
