// zanfm's record, keep and forget-recording commands run as a program on
// an image, with the catalogue and the files checked afterwards.
#include <gtest/gtest.h>

#include <string>

#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "tools/zanfm/zanfm_run.h"

namespace zansong_test {
namespace {

class ZanfmRecordTest : public DeviceTest {
 protected:
  int Zanfm(const std::string& args) { return RunZanfm(image_, args, &out_); }
  std::string Db() const { return image_.SongRoot() + ".zansong.db"; }
  int Int(const std::string& sql) { return IntOn(Db(), sql); }
  std::string out_;
};

TEST_F(ZanfmRecordTest, RecordKeepAndForgetARecording) {
  const std::string take = image_.Path("/take.mid");
  WriteSongFile(take, "Practice");
  ASSERT_EQ(0, Zanfm("record '" + take + "'")) << out_;
  EXPECT_TRUE(PathExists(take));  // the handed-over file is a copy
  const int song = Int("SELECT song_id FROM song WHERE pfix='i'");
  ASSERT_GT(song, 0) << out_;
  EXPECT_NE(std::string::npos, out_.find("Recorded as song #" + std::to_string(song))) << out_;
  ASSERT_EQ(0, Zanfm("keep " + std::to_string(song) + " 'Kept Take'")) << out_;
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM song WHERE song_title='Kept Take' AND album_id=" +
                   std::to_string(
                       Int("SELECT album_id FROM album WHERE album_path='Recorded Songs/Keep'"))));

  ASSERT_EQ(0, Zanfm("record '" + take + "'")) << out_;
  ASSERT_EQ(1, Int("SELECT COUNT(*) FROM song WHERE pfix='i'"));
  ASSERT_EQ(0, Zanfm("forget-recording")) << out_;
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM song WHERE pfix='i'"));
}

TEST_F(ZanfmRecordTest, RecordOfAMissingFileFails) {
  EXPECT_NE(0, Zanfm("record '" + image_.Path("/none.mid") + "'"));
}

TEST_F(ZanfmRecordTest, AStickRecordingLandsInTheSticksTemporaryFolder) {
  const std::string stick = image_.UsbRoot("sdb1");
  const std::string take = image_.Path("/take.mid");
  WriteSongFile(take, "On Stick");
  ASSERT_EQ(0, Zanfm("record '" + take + "' --usb sdb1")) << out_;
  EXPECT_EQ(1, IntOn(stick + ".zansong.db",
                     "SELECT COUNT(*) FROM song WHERE pfix='r' AND song_title='On Stick'"));
}

}  // namespace
}  // namespace zansong_test
