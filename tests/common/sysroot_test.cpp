#include "common/device_path.h"

#include <gtest/gtest.h>

#include <string>

#include "support/device_image.h"

namespace {

using zansong::DevicePath;
using zansong::DevicePathFor;
using zansong::IsInternalSongRoot;
using zansong::IsUsbStickRoot;

class SystemRootTest : public ::testing::Test {
 protected:
  void TearDown() override { FM_SetSystemRoot(""); }
};

TEST_F(SystemRootTest, DefaultRootIsEmptyAndPathsAreTheInstrumentOnes) {
  FM_SetSystemRoot(nullptr);
  EXPECT_STREQ("", FM_GetSystemRoot());
  EXPECT_EQ("/usr/local/songs/", DevicePathFor(DevicePath::kSongRoot));
  EXPECT_EQ("/var/volatile/run/media/sd", DevicePathFor(DevicePath::kUsbMountBase));
  EXPECT_EQ("/tmp/", DevicePathFor(DevicePath::kTmpDir));
  EXPECT_EQ("/tmp/.zansong.db", DevicePathFor(DevicePath::kWorkingDb));
  EXPECT_EQ("/usr/local/bin/sqlite3", DevicePathFor(DevicePath::kSqlite3));
  EXPECT_EQ("/usr/local/bin/songdb2json", DevicePathFor(DevicePath::kSongdb2json));
  EXPECT_EQ("/usr/local/bin/stripxp.sh", DevicePathFor(DevicePath::kStripxp));
  EXPECT_EQ("/usr/local/etc/zansong.sql", DevicePathFor(DevicePath::kSchemaScript));
  EXPECT_EQ("/usr/local/www/ctrl/song.json", DevicePathFor(DevicePath::kJsonExport));
}

TEST_F(SystemRootTest, RootIsPutInFrontOfEveryDevicePath) {
  FM_SetSystemRoot("/x");
  EXPECT_STREQ("/x", FM_GetSystemRoot());
  EXPECT_EQ("/x/usr/local/songs/", DevicePathFor(DevicePath::kSongRoot));
  EXPECT_EQ("/x/tmp/.zansong.db", DevicePathFor(DevicePath::kWorkingDb));
  EXPECT_EQ("/x/usr/local/www/ctrl/song.json", DevicePathFor(DevicePath::kJsonExport));
}

TEST_F(SystemRootTest, FinalSlashOfTheRootIsDropped) {
  FM_SetSystemRoot("/x/");
  EXPECT_STREQ("/x", FM_GetSystemRoot());
  EXPECT_EQ("/x/usr/local/bin/sqlite3", DevicePathFor(DevicePath::kSqlite3));
}

TEST_F(SystemRootTest, StickRootIsMeasuredBelowTheRoot) {
  FM_SetSystemRoot("/x");
  EXPECT_EQ(1, IsUsbStickRoot("/x/var/volatile/run/media/sda1/"));
  EXPECT_EQ(1, IsUsbStickRoot("/x/var/volatile/run/media/sda/"));
  EXPECT_EQ(0, IsUsbStickRoot("/x/var/volatile/run/media/sda10/"));
  EXPECT_EQ(0, IsUsbStickRoot("/var/volatile/run/media/sda1/"));
  EXPECT_EQ(0, IsUsbStickRoot("/x/usr/local/songs/"));
}

TEST_F(SystemRootTest, StickRootWithoutARoot) {
  EXPECT_EQ(1, IsUsbStickRoot("/var/volatile/run/media/sdb1/"));
  EXPECT_EQ(0, IsUsbStickRoot("/var/volatile/run/media/sdb12/"));
  EXPECT_EQ(0, IsUsbStickRoot("/var/volatile/run/mediX/sdb1/"));
}

TEST_F(SystemRootTest, InternalSongRootIsRecognisedOnlyUnderTheRoot) {
  FM_SetSystemRoot("/x");
  EXPECT_EQ(1, IsInternalSongRoot("/x/usr/local/songs/"));
  EXPECT_EQ(0, IsInternalSongRoot("/usr/local/songs/"));
  EXPECT_EQ(0, IsInternalSongRoot("/x/usr/local/songs"));
}

TEST(DeviceImageTest, ImageHoldsTheFixedPathsAndSetsTheRoot) {
  std::string root;
  {
    zansong_test::DeviceImage image;
    root = image.root();
    EXPECT_EQ(root, FM_GetSystemRoot());
    for (const char* p :
         {"/usr/local/songs", "/usr/local/bin/sqlite3", "/usr/local/bin/songdb2json",
          "/usr/local/bin/stripxp.sh", "/usr/local/etc/zansong.sql", "/usr/local/www/ctrl",
          "/var/volatile/run/media", "/tmp"}) {
      EXPECT_TRUE(zansong_test::PathExists(image.Path(p))) << p;
    }
  }
  EXPECT_STREQ("", FM_GetSystemRoot());
  EXPECT_FALSE(zansong_test::PathExists(root));
}

}  // namespace
