// zanfm's album, playlist, song and reorder commands run as a program on an
// image, with the catalogue and the files checked afterwards.
#include <gtest/gtest.h>
#include <string>

#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "tools/zanfm/zanfm_run.h"

namespace zansong_test {
namespace {

const char kNoData[] = "Cannot execute. There is no data.";

class ZanfmOrganiseTest : public DeviceTest {
 protected:
  void SetUp() override {
    root_ = image_.SongRoot();
    MakeDirs(root_ + "A");
    WriteSongFile(root_ + "A/a.mid", "Alpha");
    WriteSongFile(root_ + "A/b.mid", "Beta");
    WriteSongFile(root_ + "A/c.mid", "Gamma");
    ASSERT_EQ(0, Zanfm("register")) << out_;
  }

  // Runs zanfm with args on the image; its exit status, output in out_.
  int Zanfm(const std::string& args) { return RunZanfm(image_, args, &out_); }
  bool Said(const std::string& text) const { return out_.find(text) != std::string::npos; }

  std::string Db() const { return root_ + ".zansong.db"; }
  std::string Text(const std::string& sql) { return TextOn(Db(), sql); }
  int Int(const std::string& sql) { return IntOn(Db(), sql); }

  std::string root_;
  std::string out_;
};

TEST_F(ZanfmOrganiseTest, AlbumNewRenameDelete) {
  ASSERT_EQ(0, Zanfm("album new 'Late Night'")) << out_;
  EXPECT_TRUE(Said("Created album #2")) << out_;
  EXPECT_TRUE(PathExists(root_ + "Late_Night"));
  ASSERT_EQ(0, Zanfm("album rename 2 'After Hours'")) << out_;
  EXPECT_EQ("After Hours", Text("SELECT album_title FROM album WHERE album_id=2"));
  EXPECT_EQ("After Hours", ReadFile(root_ + "Late_Night/.zanalbum"));
  ASSERT_EQ(0, Zanfm("album delete 2")) << out_;
  EXPECT_FALSE(PathExists(root_ + "Late_Night"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM album WHERE album_id=2"));

  EXPECT_NE(0, Zanfm("album delete 99"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_NE(0, Zanfm("album rename 99 X"));
  EXPECT_TRUE(Said(kNoData)) << out_;
}

TEST_F(ZanfmOrganiseTest, AlbumNewInAMissingFolderShowsTheLibrarysMessage) {
  EXPECT_NE(0, Zanfm("album new T --folder 'No Such Folder'"));
  EXPECT_TRUE(Said("Error")) << out_;
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM album"));
}

TEST_F(ZanfmOrganiseTest, PlaylistCommands) {
  ASSERT_EQ(0, Zanfm("playlist new Evening")) << out_;
  EXPECT_TRUE(Said("Created playlist #1")) << out_;
  ASSERT_EQ(0, Zanfm("playlist add 1 3 1")) << out_;
  ASSERT_EQ(0, Zanfm("playlist add 1 1 --album")) << out_;
  EXPECT_EQ("3,1,1,2,3", Text("SELECT group_concat(song_id) FROM (SELECT song_id FROM psong "
                              "WHERE playlist_id=1 ORDER BY disp_order)"));
  ASSERT_EQ(0, Zanfm("songs --playlist 1 --json")) << out_;
  EXPECT_TRUE(Said("\"entry_id\": 5")) << out_;
  EXPECT_TRUE(Said("\"title\": \"Gamma\"")) << out_;

  ASSERT_EQ(0, Zanfm("playlist copy 1")) << out_;
  EXPECT_EQ("Evening", Text("SELECT playlist_title FROM playlist WHERE playlist_id=2"));
  EXPECT_EQ(5, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=2"));
  ASSERT_EQ(0, Zanfm("playlist copy 1 --into 2")) << out_;
  EXPECT_EQ(10, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=2"));

  ASSERT_EQ(0, Zanfm("playlist remove 1 2")) << out_;
  EXPECT_EQ(3, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=1"));
  ASSERT_EQ(0, Zanfm("playlist rename 1 Night")) << out_;
  ASSERT_EQ(0, Zanfm("playlists --json")) << out_;
  EXPECT_TRUE(Said("\"title\": \"Night\"")) << out_;
  ASSERT_EQ(0, Zanfm("playlists")) << out_;
  EXPECT_TRUE(Said("Night")) << out_;
  ASSERT_EQ(0, Zanfm("playlist delete 2")) << out_;
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM playlist"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=2"));
  // The songs themselves stay.
  EXPECT_EQ(3, Int("SELECT COUNT(*) FROM song"));

  EXPECT_NE(0, Zanfm("playlist add 9 1"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_NE(0, Zanfm("playlist add 1 99"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_NE(0, Zanfm("playlist remove 99"));
  EXPECT_TRUE(Said(kNoData)) << out_;
}

TEST_F(ZanfmOrganiseTest, SongRenameMoveReorderDelete) {
  ASSERT_EQ(0, Zanfm("song rename 1 'Alpha Prime' --files")) << out_;
  EXPECT_TRUE(PathExists(root_ + "A/Alpha_Prime.mid"));
  EXPECT_FALSE(PathExists(root_ + "A/a.mid"));
  EXPECT_EQ("Alpha Prime|A/Alpha_Prime.mid",
            Text("SELECT song_title || '|' || midi_path FROM song WHERE song_id=1"));
  ASSERT_EQ(0, Zanfm("song rename 2 'Beta Prime'")) << out_;
  EXPECT_TRUE(PathExists(root_ + "A/b.mid"));

  ASSERT_EQ(0, Zanfm("song move 3 --to 1")) << out_;
  EXPECT_EQ("3,1,2", Text("SELECT group_concat(song_id) FROM (SELECT song_id FROM song ORDER "
                          "BY disp_order)"));
  ExecOn(Db(), "UPDATE song SET disp_order = disp_order * 10");
  ASSERT_EQ(0, Zanfm("reorder --album 1")) << out_;
  EXPECT_EQ("1,2,3", Text("SELECT group_concat(disp_order) FROM (SELECT disp_order FROM song "
                          "ORDER BY disp_order)"));
  ExecOn(Db(), "UPDATE album SET disp_order = 7");
  ASSERT_EQ(0, Zanfm("reorder")) << out_;
  EXPECT_EQ(1, Int("SELECT disp_order FROM album"));

  ASSERT_EQ(0, Zanfm("song delete 2")) << out_;
  EXPECT_FALSE(PathExists(root_ + "A/b.mid"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM song WHERE song_id=2"));

  EXPECT_NE(0, Zanfm("song rename 99 X"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_NE(0, Zanfm("song delete 99"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_NE(0, Zanfm("song move 99 --to 1"));
  EXPECT_TRUE(Said(kNoData)) << out_;
  EXPECT_NE(0, Zanfm("reorder --album 99"));
  EXPECT_TRUE(Said(kNoData)) << out_;
}

TEST_F(ZanfmOrganiseTest, AStickIsWorkedOnBetweenCopyAndBackup) {
  const std::string stick = image_.UsbRoot("sdb1");
  MakeDirs(stick + "S");
  WriteSongFile(stick + "S/s.mid", "Stick Song");
  ASSERT_EQ(0, Zanfm("register --usb sdb1")) << out_;
  ASSERT_EQ(0, Zanfm("playlist new OnStick --usb sdb1")) << out_;
  ASSERT_EQ(0, Zanfm("playlist add 1 1 --usb sdb1")) << out_;
  EXPECT_EQ("p|OnStick",
            TextOn(stick + ".zansong.db", "SELECT ppfix || '|' || playlist_title FROM playlist"));
  EXPECT_EQ(1, IntOn(stick + ".zansong.db", "SELECT COUNT(*) FROM psong"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM playlist"));
}

TEST_F(ZanfmOrganiseTest, HelpListsTheCommands) {
  ASSERT_EQ(0, Zanfm("--help")) << out_;
  for (const char* command : {"album", "playlist", "playlists", "song", "reorder"}) {
    EXPECT_TRUE(Said(command)) << command;
  }
  ASSERT_EQ(0, Zanfm("playlist --help")) << out_;
  EXPECT_TRUE(Said("copy")) << out_;
}

}  // namespace
}  // namespace zansong_test
