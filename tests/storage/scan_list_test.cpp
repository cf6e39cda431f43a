// Plain directory listings and the listers kept only for old callers.
#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

#include "support/device_image.h"
#include "zansong/storage/scan.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::PathExists;
using zansong_test::WriteFile;

class ScanListTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.root() + "/list/";
    MakeDirs(dir_);
  }
  std::string dir_;
};

TEST_F(ScanListTest, FileListWalksEveryDepth) {
  WriteFile(dir_ + "a.txt", "x");
  MakeDirs(dir_ + "b/c/d");
  WriteFile(dir_ + "b/c/d/e.mid", "x");
  MakeDirs(dir_ + "empty");
  std::list<std::string> files;
  EXPECT_EQ(1, GetDirFileList(dir_.c_str(), files));
  files.sort();
  EXPECT_EQ((std::list<std::string>{dir_ + "a.txt", dir_ + "b/c/d/e.mid"}), files);
  EXPECT_EQ(0, GetDirFileList((dir_ + "missing/").c_str(), files));
}

TEST_F(ScanListTest, FileVectorIsSortedAndSkipsSideFilesAndBadNames) {
  WriteFile(dir_ + "b.mid", "x");
  WriteFile(dir_ + "A.wav", "x");
  WriteFile(dir_ + "._b.mid", "x");
  WriteFile(dir_ + "bad\x81\x20.mid", "x");  // not valid Shift-JIS
  MakeDirs(dir_ + "sub");
  std::vector<TDirFileName> names;
  std::string dir = dir_;
  EXPECT_EQ(1, GetDirFileVector(&dir[0], names));
  ASSERT_EQ(2u, names.size());
  EXPECT_STREQ("A.wav", names[0].name.c_str());
  EXPECT_STREQ("A.WAV", names[0].nameUpper.c_str());
  EXPECT_EQ(0, names[0].value);
  EXPECT_STREQ("b.mid", names[1].name.c_str());
  EXPECT_STREQ("B.MID", names[1].nameUpper.c_str());
  EXPECT_FALSE(PathExists(dir_ + "._b.mid"));  // side files are deleted
  EXPECT_TRUE(PathExists(dir_ + "bad\x81\x20.mid"));
}

TEST_F(ScanListTest, FileVectorOfAMissingDirectoryIsZero) {
  std::vector<TDirFileName> names;
  std::string dir = dir_ + "missing/";
  EXPECT_EQ(0, GetDirFileVector(&dir[0], names));
  EXPECT_TRUE(names.empty());
}

TEST_F(ScanListTest, KeptListersDoNothing) {
  WriteFile(dir_ + "a.mid", "x");
  std::list<std::string> files, dirs;
  EXPECT_EQ(0, GetDirFileList2(dir_.c_str(), files, dirs, 0, 0));
  EXPECT_TRUE(files.empty());
  EXPECT_TRUE(dirs.empty());
  char buffer[8] = "keep";
  GetZanId(buffer, sizeof(buffer));
  EXPECT_STREQ("keep", buffer);
  GetZanVersion(buffer, sizeof(buffer));
  EXPECT_STREQ("keep", buffer);
}

}  // namespace
