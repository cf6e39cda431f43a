// zanfm's copy and copy-album commands run as a program on an image, with
// the catalogue and the files checked afterwards.
#include <gtest/gtest.h>
#include <string>

#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "tools/zanfm/zanfm_run.h"

namespace zansong_test {
namespace {

class ZanfmCopyTest : public DeviceTest {
 protected:
  void SetUp() override {
    root_ = image_.SongRoot();
    MakeDirs(root_ + "Live");
    MakeDirs(root_ + "Best");
    WriteSongFile(root_ + "Live/a.mid", "Alpha");
    WriteSongFile(root_ + "Live/b.mid", "Beta");
    ASSERT_EQ(0, Zanfm("register")) << out_;
  }
  int Zanfm(const std::string& args) { return RunZanfm(image_, args, &out_); }
  int Int(const std::string& sql) { return IntOn(root_ + ".zansong.db", sql); }
  int AlbumOf(const std::string& path) {
    return Int("SELECT album_id FROM album WHERE album_path='" + path + "'");
  }

  std::string root_;
  std::string out_;
};

TEST_F(ZanfmCopyTest, CopyPutsTheSongsIntoTheAlbum) {
  const std::string best = std::to_string(AlbumOf("Best"));
  ASSERT_EQ(0, Zanfm("copy 1 2 --to " + best)) << out_;
  EXPECT_TRUE(PathExists(root_ + "Best/a.mid"));
  EXPECT_TRUE(PathExists(root_ + "Best/b.mid"));
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM song WHERE album_id=" + best));
}

TEST_F(ZanfmCopyTest, AFailedCopyShowsTheMessageAndExitsNonZero) {
  ::unlink((root_ + "Live/a.mid").c_str());
  EXPECT_NE(0, Zanfm("copy 1 --to " + std::to_string(AlbumOf("Best"))));
  EXPECT_NE(std::string::npos, out_.find("exist")) << out_;
  EXPECT_NE(0, Zanfm("copy 1"));
}

TEST_F(ZanfmCopyTest, CopyKeepMovesIntoTheKeepFolder) {
  ASSERT_EQ(0, Zanfm("copy 2 --keep")) << out_;
  EXPECT_TRUE(PathExists(root_ + "Recorded Songs/Keep/b.mid"));
  EXPECT_FALSE(PathExists(root_ + "Live/b.mid"));
}

TEST_F(ZanfmCopyTest, CopyAlbumMakesANumberedAlbum) {
  ASSERT_EQ(0, Zanfm("copy-album " + std::to_string(AlbumOf("Live")))) << out_;
  EXPECT_EQ(2,
            Int("SELECT COUNT(*) FROM song WHERE album_id=" + std::to_string(AlbumOf("Live_002"))));
  ASSERT_EQ(0, Zanfm("copy-album " + std::to_string(AlbumOf("Live")) + " --into " +
                     std::to_string(AlbumOf("Best"))))
      << out_;
  EXPECT_TRUE(PathExists(root_ + "Best/b.mid"));
}

TEST_F(ZanfmCopyTest, CopyOnAStickGoesThroughItsCatalogue) {
  const std::string stick = image_.UsbRoot("sdb1");
  MakeDirs(stick + "Tunes");
  MakeDirs(stick + "More");
  WriteSongFile(stick + "Tunes/t.mid", "Tune");
  ASSERT_EQ(0, Zanfm("register --usb sdb1")) << out_;
  const int more =
      IntOn(stick + ".zansong.db", "SELECT album_id FROM album WHERE album_path='More'");
  ASSERT_EQ(0, Zanfm("copy 1 --to " + std::to_string(more) + " --usb sdb1")) << out_;
  EXPECT_TRUE(PathExists(stick + "More/t.mid"));
  EXPECT_EQ(1, IntOn(stick + ".zansong.db",
                     "SELECT COUNT(*) FROM song WHERE album_id=" + std::to_string(more)));
}

}  // namespace
}  // namespace zansong_test
