#include "zansong/common/file_util.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "support/device_image.h"
#include "support/test_bytes.h"

namespace {

using zansong_test::BlockPattern;
using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::PathExists;
using zansong_test::ReadFile;
using zansong_test::WriteFile;

using FileUtilTest = DeviceTest;

TEST_F(FileUtilTest, FileExistsAcceptsFilesAndDirectories) {
  const std::string file = image_.Path("/tmp/f");
  WriteFile(file, "x");
  EXPECT_EQ(1, FileExistsX(file.c_str()));
  EXPECT_EQ(1, FileExistsX(image_.Path("/tmp").c_str()));
  EXPECT_EQ(0, FileExistsX(image_.Path("/tmp/missing").c_str()));
}

TEST_F(FileUtilTest, FileDeleteUnlinksOnce) {
  const std::string file = image_.Path("/tmp/f");
  WriteFile(file, "x");
  EXPECT_EQ(1, FileDelete(file.c_str()));
  EXPECT_FALSE(PathExists(file));
  EXPECT_EQ(0, FileDelete(file.c_str()));
}

TEST_F(FileUtilTest, FileCopyCopiesEveryByteWithOwnerOnlyPermissions) {
  const std::string from = image_.Path("/tmp/from");
  const std::string to = image_.Path("/tmp/to");
  const std::string bytes = BlockPattern(1500);
  WriteFile(from, bytes);
  WriteFile(to, std::string(4000, 'z'));  // truncated by the copy
  ASSERT_EQ(1, FileCopy(from.c_str(), to.c_str()));
  EXPECT_EQ(bytes, ReadFile(to));

  const std::string fresh = image_.Path("/tmp/fresh");
  ASSERT_EQ(1, FileCopy(from.c_str(), fresh.c_str()));
  struct stat info;
  ASSERT_EQ(0, stat(fresh.c_str(), &info));
  EXPECT_EQ(0600u, info.st_mode & 0777u);
}

TEST_F(FileUtilTest, FileCopyOfEmptyFileSucceeds) {
  const std::string from = image_.Path("/tmp/empty");
  WriteFile(from, "");
  const std::string to = image_.Path("/tmp/to");
  EXPECT_EQ(1, FileCopy(from.c_str(), to.c_str()));
  EXPECT_EQ("", ReadFile(to));
}

TEST_F(FileUtilTest, FileCopyFailsWhenSourceOrTargetCannotBeOpened) {
  const std::string from = image_.Path("/tmp/from");
  WriteFile(from, "abc");
  EXPECT_EQ(0, FileCopy(image_.Path("/tmp/missing").c_str(), image_.Path("/tmp/to").c_str()));
  EXPECT_FALSE(PathExists(image_.Path("/tmp/to")));
  EXPECT_EQ(0, FileCopy(from.c_str(), image_.Path("/tmp/no/dir/to").c_str()));
}

TEST_F(FileUtilTest, FileCopyFailsWhenAWriteFails) {
  const std::string from = image_.Path("/tmp/from");
  WriteFile(from, BlockPattern(2000));
  EXPECT_EQ(0, FileCopy(from.c_str(), "/dev/full"));
}

TEST_F(FileUtilTest, FileCompareOfEqualFilesIsOne) {
  const std::string a = image_.Path("/tmp/a");
  const std::string b = image_.Path("/tmp/b");
  WriteFile(a, BlockPattern(1500));
  WriteFile(b, BlockPattern(1500));
  EXPECT_EQ(1, FileCompare(a.c_str(), b.c_str()));
}

TEST_F(FileUtilTest, FileCompareFindsADifferenceInALaterBlock) {
  const std::string a = image_.Path("/tmp/a");
  const std::string b = image_.Path("/tmp/b");
  std::string changed = BlockPattern(1500);
  changed[1200] = static_cast<char>(changed[1200] + 1);
  WriteFile(a, BlockPattern(1500));
  WriteFile(b, changed);
  EXPECT_EQ(0, FileCompare(a.c_str(), b.c_str()));
}

TEST_F(FileUtilTest, FileCompareAcceptsALongerSecondFileThatBeginsWithTheFirst) {
  const std::string a = image_.Path("/tmp/a");
  const std::string b = image_.Path("/tmp/b");
  WriteFile(a, BlockPattern(700));
  WriteFile(b, BlockPattern(1500));
  EXPECT_EQ(1, FileCompare(a.c_str(), b.c_str()));
  EXPECT_EQ(0, FileCompare(b.c_str(), a.c_str()));  // the shorter second file runs out
}

TEST_F(FileUtilTest, FileCompareOfUnopenableFileIsZero) {
  const std::string a = image_.Path("/tmp/a");
  WriteFile(a, "abc");
  const std::string missing = image_.Path("/tmp/missing");
  EXPECT_EQ(0, FileCompare(a.c_str(), missing.c_str()));
  EXPECT_EQ(0, FileCompare(missing.c_str(), a.c_str()));
}

TEST_F(FileUtilTest, FileCompareFailsOnAFailedReadOfTheSecond) {
  const std::string a = image_.Path("/tmp/a");
  WriteFile(a, "abc");
  const std::string dir = image_.Path("/tmp/dir");
  MakeDirs(dir);
  EXPECT_EQ(0, FileCompare(a.c_str(), dir.c_str()));  // read of a directory fails
}

TEST(BufferHelpersTest, StrcompareChecksTheInclusiveRange) {
  char a[] = "abcdef";
  char b[] = "abXdef";
  EXPECT_EQ(1, strcompare(a, b, 0, 1));
  EXPECT_EQ(0, strcompare(a, b, 0, 2));
  EXPECT_EQ(1, strcompare(a, b, 3, 5));
  EXPECT_EQ(0, strcompare(a, b, 2, 2));
}

TEST(BufferHelpersTest, TrimleftZeroesBlanksAndControlBytesWithinN) {
  char text[] = "ab c\x01 d";
  trimleft(text, 6);
  EXPECT_STREQ("ab", text);
  EXPECT_EQ(0, text[2]);
  EXPECT_EQ('c', text[3]);
  EXPECT_EQ(0, text[4]);
  EXPECT_EQ(0, text[5]);
  EXPECT_EQ('d', text[6]);  // beyond n: untouched

  char high[] = "\x81 \x82";
  trimleft(high, 3);
  EXPECT_EQ('\x81', high[0]);
  EXPECT_EQ(0, high[1]);
  EXPECT_EQ('\x82', high[2]);
}

}  // namespace
