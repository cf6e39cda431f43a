// MD5 digests of files.
#include <gtest/gtest.h>

#include <string>

#include "common/handles.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/storage/files.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::StdoutCapture;
using zansong_test::WriteFile;

int OpenDescriptors() {
  int count = 0;
  zansong::DirectoryHandle dir("/proc/self/fd");
  bool listed = dir.ForEachEntry([&count](const dirent&) {
    ++count;
    return true;
  });
  return listed ? count : -1;
}

class DigestTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.Path("/tmp/md5/");
    MakeDirs(dir_);
  }
  std::string Digest(const std::string& name, const std::string& bytes) {
    WriteFile(dir_ + name, bytes);
    return GetMD5((dir_ + name).c_str()).c_str();
  }
  std::string dir_;
};

TEST_F(DigestTest, EmptyFile) { EXPECT_EQ(Digest("e", ""), "d41d8cd98f00b204e9800998ecf8427e"); }

TEST_F(DigestTest, KnownText) {
  EXPECT_EQ(Digest("t", "The quick brown fox jumps over the lazy dog"),
            "9e107d9d372bb6826bd81d3542a419d6");
  EXPECT_EQ(Digest("abc", "abc"), "900150983cd24fb0d6963f7d28e17f72");
}

TEST_F(DigestTest, ManyBlocks) {
  EXPECT_EQ(Digest("a", std::string(1000000, 'a')), "7707d6ae4e027c70eea2a935c2296f21");
}

TEST_F(DigestTest, MissingFilePrintsLineAndGivesEmpty) {
  std::string path = dir_ + "missing.mid";
  StdoutCapture out;
  TSString digest = GetMD5(path.c_str());
  EXPECT_EQ(out.Finish(), path + " can't be opened.\n");
  EXPECT_EQ(digest.Length(), 0);
}

TEST_F(DigestTest, LeavesNoOpenDescriptor) {
  WriteFile(dir_ + "f", "data");
  int before = OpenDescriptors();
  for (int i = 0; i < 5; ++i) GetMD5((dir_ + "f").c_str());
  EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
