// zanfm's copy, delete and playlist-add commands over several targets of
// mixed kinds, run as a program on an image, with the catalogue and the
// files checked afterwards; a wrong target, and a copy cancelled with
// Ctrl-C.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "tools/zanfm/zanfm_run.h"

namespace zansong_test {
namespace {

const char kNoData[] = "Cannot execute. There is no data.";

class ZanfmTargetListTest : public DeviceTest {
 protected:
  void SetUp() override {
    root_ = image_.SongRoot();
    MakeDirs(root_ + "A");
    MakeDirs(root_ + "B");
    WriteSongFile(root_ + "A/a.mid", "Alpha");
    WriteSongFile(root_ + "A/b.mid", "Beta");
    WriteSongFile(root_ + "A/c.mid", "Gamma");
    WriteSongFile(root_ + "B/d.mid", "Delta");
    ASSERT_EQ(0, Zanfm("register")) << out_;
    ASSERT_EQ(0, Zanfm("playlist new Evening")) << out_;
    ASSERT_EQ(0, Zanfm("playlist add 1 " + Id("A/a.mid") + " " + Id("A/b.mid"))) << out_;
  }

  int Zanfm(const std::string& args) { return RunZanfm(image_, args, &out_); }
  bool Said(const std::string& text) const { return out_.find(text) != std::string::npos; }
  std::string Db() const { return root_ + ".zansong.db"; }
  int Int(const std::string& sql) { return IntOn(Db(), sql); }
  std::string Id(const std::string& midiPath) {
    return std::to_string(Int("SELECT song_id FROM song WHERE midi_path='" + midiPath + "'"));
  }
  std::string AlbumId(const std::string& path) {
    return std::to_string(Int("SELECT album_id FROM album WHERE album_path='" + path + "'"));
  }
  int SongsIn(const std::string& albumPath) {
    return Int("SELECT COUNT(*) FROM song JOIN album USING(album_id) WHERE album_path='" +
               albumPath + "'");
  }

  std::string root_;
  std::string out_;
};

TEST_F(ZanfmTargetListTest, DeleteTargetsOfFourKindsInOneRequest) {
  ASSERT_EQ(0, Zanfm("playlist new Morning")) << out_;
  const std::string gamma = Id("A/c.mid");
  ASSERT_EQ(0,
            Zanfm("song delete song:" + gamma + " album:" + AlbumId("B") + " psong:1 playlist:2"))
      << out_;
  EXPECT_TRUE(Said("Deleted 4 target(s)")) << out_;
  EXPECT_FALSE(PathExists(root_ + "A/c.mid"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM song WHERE song_id=" + gamma));
  EXPECT_FALSE(PathExists(root_ + "B"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM album WHERE album_path='B'"));
  EXPECT_EQ((std::vector<std::string>{"2"}),
            QueryRows(Db(), "SELECT psong_id FROM psong ORDER BY psong_id"));
  EXPECT_EQ((std::vector<std::string>{"Evening"}),
            QueryRows(Db(), "SELECT playlist_title FROM playlist"));
  EXPECT_TRUE(PathExists(root_ + "A/a.mid"));
}

TEST_F(ZanfmTargetListTest, CopySongsAlbumsAndPlaylistsInOneRequest) {
  ASSERT_EQ(0, Zanfm("copy song:" + Id("A/a.mid") + " album:" + AlbumId("B") + " playlist:1 --to " +
                     AlbumId("B")))
      << out_;
  EXPECT_TRUE(Said("Copy: Complete.")) << out_;
  EXPECT_TRUE(PathExists(root_ + "B/a.mid"));
  EXPECT_EQ(2, SongsIn("B"));
  // The album, copied after the song, as a new album.
  EXPECT_EQ(2, SongsIn("B_002"));
  EXPECT_TRUE(PathExists(root_ + "B_002/d.mid"));
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM playlist WHERE playlist_title='Evening'"));
  EXPECT_EQ(4, Int("SELECT COUNT(*) FROM psong"));
}

TEST_F(ZanfmTargetListTest, PlaylistAddTakesSongsAndAlbums) {
  ASSERT_EQ(0, Zanfm("playlist add 1 song:" + Id("B/d.mid") + " album:" + AlbumId("A"))) << out_;
  EXPECT_TRUE(Said("Added 2 target(s) to playlist #1")) << out_;
  EXPECT_EQ(6, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=1"));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM psong WHERE song_id=" + Id("B/d.mid")));
}

TEST_F(ZanfmTargetListTest, AWrongTargetShowsTheMessageAndChangesNothing) {
  const std::string alpha = Id("A/a.mid");
  EXPECT_NE(0, Zanfm("song delete song:" + alpha + " song:999"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_TRUE(Said("no song:999")) << out_;
  EXPECT_TRUE(PathExists(root_ + "A/a.mid"));
  EXPECT_NE(0, Zanfm("song delete song:" + alpha + " tune:3"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_NE(0, Zanfm("copy psong:1 --to " + AlbumId("B")));  // entries are not copied
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_NE(0, Zanfm("playlist add 1 playlist:1"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM song WHERE song_id=" + alpha));
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM psong"));
}

TEST_F(ZanfmTargetListTest, AFailingTargetShowsItsMessage) {
  // The destination album does not exist: the first song's copy fails.
  EXPECT_NE(0, Zanfm("copy song:" + Id("A/a.mid") + " song:" + Id("A/b.mid") + " --to 77"));
  EXPECT_TRUE(Said("Copy:")) << out_;
  EXPECT_FALSE(Said("Complete")) << out_;
  EXPECT_EQ(3, SongsIn("A"));
}

TEST_F(ZanfmTargetListTest, TwentyTargetsShowOneUpdatingProgressLine) {
  std::string targets;
  for (int i = 0; i < 20; ++i) targets += " song:" + Id("A/a.mid");
  ASSERT_EQ(0, Zanfm("copy" + targets + " --to " + AlbumId("B"))) << out_;
  EXPECT_EQ(21, SongsIn("B"));
  // At once and at the end (rewritten in place on a terminal).
  EXPECT_TRUE(Said("Copying...1/20")) << out_;
  EXPECT_TRUE(Said("Copy: Complete.")) << out_;
  // ... and the final report, after the first.
  EXPECT_NE(out_.find("Copying..."), out_.rfind("Copying...")) << out_;
}

TEST_F(ZanfmTargetListTest, CtrlCCancelsACopyAndKeepsWhatWasCopied) {
  // The third song's audio file is a FIFO that never ends; a writer sends
  // zanfm Ctrl-C (signal 2) as soon as the copy has begun to read it.
  WriteWavSong(root_ + "A/c.wav", 100);
  ASSERT_EQ(0, Zanfm("register")) << out_;
  const std::string fifo = root_ + "A/c.wav";
  ASSERT_EQ(0, unlink(fifo.c_str()));
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0666));
  const std::string command =
      "(" + ZanfmProgram() + " --root '" + image_.root() + "' copy song:" + Id("A/a.mid") +
      " song:" + Id("A/b.mid") + " song:" + Id("A/c.mid") + " song:" + Id("B/d.mid") + " --to " +
      AlbumId("B") + " & pid=$!; { head -c 4096 /dev/zero; kill -INT $pid; " +
      "cat /dev/zero; } > '" + fifo + "' 2>/dev/null; wait $pid)";
  EXPECT_NE(0, RunCommand(command, &out_));
  EXPECT_TRUE(Said("Copy: Copying was canceled.")) << out_;
  EXPECT_TRUE(Said("zanfm: cancelled")) << out_;
  EXPECT_TRUE(PathExists(root_ + "B/a.mid"));
  EXPECT_TRUE(PathExists(root_ + "B/b.mid"));
  EXPECT_FALSE(PathExists(root_ + "B/c.mid"));
  EXPECT_FALSE(PathExists(root_ + "B/c.wav"));
  EXPECT_EQ(3, SongsIn("B"));  // d, a and b
}

}  // namespace
}  // namespace zansong_test
