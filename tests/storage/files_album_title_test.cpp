// The album title side file.
#include <gtest/gtest.h>

#include <string>

#include "support/device_image.h"
#include "zansong/storage/files.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::ReadFile;
using zansong_test::WriteFile;

class AlbumTitleTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.Path("/tmp/album/");
    MakeDirs(dir_);
  }
  std::string P(const std::string& name) { return dir_ + name; }
  std::string dir_;
};

TEST_F(AlbumTitleTest, WrittenAsRawBytes) {
  EXPECT_EQ(CreateAlbumTitleFile(P(".zanalbum").c_str(), "My Album"), 1);
  EXPECT_EQ(ReadFile(P(".zanalbum")), "My Album");
}

TEST_F(AlbumTitleTest, ReadBackByteForByte) {
  std::string title = "\x83\x73\x83\x41\x83\x6d \xe3\x83\x94 'q' \"d\" & <x>";
  EXPECT_EQ(CreateAlbumTitleFile(P(".zanalbum").c_str(), title.c_str()), 1);
  EXPECT_EQ(std::string(GetAlbumTitle(P(".zanalbum").c_str()).c_str()), title);
}

TEST_F(AlbumTitleTest, LongestTitleReadBackWhole) {
  std::string title(1023, 'x');
  title[0] = 'A';
  title[1022] = 'Z';
  ASSERT_EQ(CreateAlbumTitleFile(P(".zanalbum").c_str(), title.c_str()), 1);
  EXPECT_EQ(std::string(GetAlbumTitle(P(".zanalbum").c_str()).c_str()), title);
}

TEST_F(AlbumTitleTest, LongerTitleReadBackCut) {
  std::string title(1500, 'y');
  ASSERT_EQ(CreateAlbumTitleFile(P(".zanalbum").c_str(), title.c_str()), 1);
  EXPECT_EQ(ReadFile(P(".zanalbum")), title);
  EXPECT_EQ(std::string(GetAlbumTitle(P(".zanalbum").c_str()).c_str()), title.substr(0, 1023));
}

TEST_F(AlbumTitleTest, FirstLineWithItsLineEnd) {
  WriteFile(P(".zanalbum"), "first\nsecond\n");
  EXPECT_EQ(std::string(GetAlbumTitle(P(".zanalbum").c_str()).c_str()), "first\n");
}

TEST_F(AlbumTitleTest, ReplacesOldTitle) {
  CreateAlbumTitleFile(P(".zanalbum").c_str(), "A much longer old title");
  CreateAlbumTitleFile(P(".zanalbum").c_str(), "New");
  EXPECT_EQ(std::string(GetAlbumTitle(P(".zanalbum").c_str()).c_str()), "New");
}

TEST_F(AlbumTitleTest, EmptyTitle) {
  EXPECT_EQ(CreateAlbumTitleFile(P(".zanalbum").c_str(), ""), 1);
  EXPECT_EQ(ReadFile(P(".zanalbum")), "");
  EXPECT_EQ(GetAlbumTitle(P(".zanalbum").c_str()).Length(), 0);
}

TEST_F(AlbumTitleTest, MissingFileOrDirectory) {
  EXPECT_EQ(GetAlbumTitle(P("none").c_str()).Length(), 0);
  EXPECT_EQ(CreateAlbumTitleFile(P("nodir/.zanalbum").c_str(), "t"), 0);
}

TEST_F(AlbumTitleTest, FailedWriteGivesZero) {
  EXPECT_EQ(CreateAlbumTitleFile("/dev/full", "title"), 0);
}

}  // namespace
