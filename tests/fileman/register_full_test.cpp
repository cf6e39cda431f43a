// FM_Add_AllSongs, the older full scan, and the FM_Add_Songs stub.
#include <gtest/gtest.h>

#include <string>

#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/register.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

TEST_F(DeviceTest, FullScanListsNothingAndReturnsZero) {
  const std::string root = image_.SongRoot();
  const std::string songDb = root + ".zansong.db";
  MakeDirs(root + "A");
  WriteSongFile(root + "A/1.mid", "One");
  StdoutCapture capture;
  EXPECT_EQ(0, FM_Add_AllSongs(root.c_str(), ""));
  capture.Finish();
  EXPECT_TRUE(PathExists(songDb));
  EXPECT_EQ(0, QueryInt(songDb, "SELECT COUNT(*) FROM song"));
  EXPECT_EQ(0, QueryInt(songDb, "SELECT COUNT(*) FROM album"));
  FM_Add_Songs(root.c_str(), 1);  // a stub: nothing happens
  EXPECT_EQ(0, QueryInt(songDb, "SELECT COUNT(*) FROM song"));
}

TEST_F(DeviceTest, FullScanOfAStorageWhoseCatalogueCannotBeMadeGivesTheCatalogueFailure) {
  StdoutCapture capture;
  EXPECT_EQ(kResultDbFail, FM_Add_AllSongs(image_.Path("/no/such/root/").c_str(), ""));
  capture.Finish();
}

}  // namespace
}  // namespace zansong_test
