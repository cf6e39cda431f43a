// Playlists: creating, copying, adding songs and albums, removing entries.
#include "zansong/fileman/playlists.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fileman/organise_test_helpers.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class PlaylistsTest : public OrganiseTest {
 protected:
  std::string TitleOf(int id) {
    return Text("SELECT playlist_title FROM playlist WHERE playlist_id=" + std::to_string(id));
  }
  // The entries of playlist id in display order: "ppfix|pfix|song_id|disp_order".
  std::vector<std::string> Entries(int id) {
    return Rows("SELECT ppfix,pfix,song_id,disp_order FROM psong WHERE playlist_id=" +
                std::to_string(id) + " ORDER BY disp_order");
  }
  // Album 1 with songs 1..3 in display order 3, 1, 2.
  void ThreeSongAlbum() {
    AddAlbum(1, "A");
    AddSong(1, 1, "", "", "s", 2);
    AddSong(2, 1, "", "", "s", 3);
    AddSong(3, 1, "", "", "s", 1);
  }
  std::string MissingRoot() const { return image_.root() + "/no/such/root/"; }
};

TEST_F(PlaylistsTest, EmptyTitleGivesMyPlaylistThenNumbered) {
  ASSERT_EQ(1, FM_Create_New_Playlist(root_.c_str(), ""));
  ASSERT_EQ(2, FM_Create_New_Playlist(root_.c_str(), nullptr));
  EXPECT_EQ("My Playlist", TitleOf(1));
  EXPECT_EQ("My Playlist_002", TitleOf(2));
  EXPECT_EQ("l", Text("SELECT ppfix FROM playlist WHERE playlist_id=2"));
  EXPECT_EQ(2, Int("SELECT disp_order FROM playlist WHERE playlist_id=2"));
}

TEST_F(PlaylistsTest, NumberingAsksTheCatalogueOnly) {
  MakeDirs(root_ + "T");
  AddPlaylist(1, "T");
  AddPlaylist(2, "T_005");
  ASSERT_EQ(3, FM_Create_New_Playlist(root_.c_str(), "T"));
  EXPECT_EQ("T_006", TitleOf(3));
  ASSERT_EQ(4, FM_Create_New_Playlist(root_.c_str(), "U"));
  EXPECT_EQ("U", TitleOf(4));
}

TEST_F(PlaylistsTest, AfterNumber099ComeUnpadded100And101) {
  AddPlaylist(1, "T");
  AddPlaylist(2, "T_099");
  ASSERT_EQ(3, FM_Create_New_Playlist(root_.c_str(), "T"));
  ASSERT_EQ(4, FM_Create_New_Playlist(root_.c_str(), "T"));
  EXPECT_EQ("T_100", TitleOf(3));
  EXPECT_EQ("T_101", TitleOf(4));
}

TEST_F(PlaylistsTest, AStickCatalogueMakesPlaylistsOfPrefixP) {
  const std::string stick = image_.UsbRoot("sda1");
  ASSERT_EQ(1, FM_Create_New_Playlist(stick.c_str(), "On the stick"));
  EXPECT_EQ("p|On the stick",
            TextOn(image_.WorkingDb(), "SELECT ppfix || '|' || playlist_title FROM playlist"));
}

TEST_F(PlaylistsTest, PlaylistLimitAtItsBoundary) {
  FillRows("playlist", 1, kAlbumLimit - 1, "'l', i, 'P' || i, i");
  ASSERT_EQ(kAlbumLimit, FM_Create_New_Playlist(root_.c_str(), "Last"));
  EXPECT_EQ(kResultPlaylistLimit, FM_Create_New_Playlist(root_.c_str(), "One Too Many"));
  EXPECT_EQ(kAlbumLimit, Int("SELECT COUNT(*) FROM playlist"));
}

TEST_F(PlaylistsTest, CreatePlaylistCodes) {
  EXPECT_EQ(kResultDbFail, FM_Create_New_Playlist(MissingRoot().c_str(), "T"));
  Exec("CREATE TRIGGER refuse BEFORE INSERT ON playlist BEGIN SELECT RAISE(ABORT, 'no'); END");
  EXPECT_EQ(kResultCannotExecute, FM_Create_New_Playlist(root_.c_str(), "T"));
}

TEST_F(PlaylistsTest, AddsSongsInListOrder) {
  ThreeSongAlbum();
  AddPlaylist(1, "L");
  std::list<int> ids = Ids({2, 1});
  ASSERT_EQ(kResultOk, FH_Add_To_Playlist(root_.c_str(), ids, "s", 1, "l", 0));
  EXPECT_EQ((std::vector<std::string>{"l|s|2|1", "l|s|1|2"}), Entries(1));
}

TEST_F(PlaylistsTest, AddsTheSongsOfAnAlbumInDisplayOrder) {
  ThreeSongAlbum();
  AddPlaylist(1, "L");
  AddEntry(1, 1, 2);
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_Add_To_Playlist(root_.c_str(), ids, "s", 1, "l", 1));
  EXPECT_EQ((std::vector<std::string>{"l|s|2|1", "l|s|3|2", "l|s|1|3", "l|s|2|4"}), Entries(1));
}

TEST_F(PlaylistsTest, PresetSongsComeFromTheInternalCatalogue) {
  // Album 1 of the internal catalogue holds preset songs; the playlist
  // lives on the stick.
  AddAlbum(1, "preset/A", "A", "d");
  AddSong(7, 1, "", "", "d");
  const std::string stick = image_.UsbRoot("sda1");
  ASSERT_EQ(1, FM_Create_New_Playlist(stick.c_str(), "Mine"));
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_Add_To_Playlist(stick.c_str(), ids, "d", 1, "p", 1));
  EXPECT_EQ("p|d|7",
            TextOn(image_.WorkingDb(), "SELECT ppfix || '|' || pfix || '|' || song_id FROM psong"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM psong"));
}

TEST_F(PlaylistsTest, DestinationPrefixLWritesTheInternalCatalogue) {
  const std::string stick = image_.UsbRoot("sda1");
  ASSERT_EQ(1, FM_Create_New_Playlist(stick.c_str(), "On the stick"));
  ASSERT_EQ(1, FM_Create_New_Playlist(root_.c_str(), "Internal"));
  std::list<int> ids = Ids({5});
  ASSERT_EQ(kResultOk, FH_Add_To_Playlist(stick.c_str(), ids, "u", 1, "l", 0));
  EXPECT_EQ((std::vector<std::string>{"l|u|5|1"}), Entries(1));
  EXPECT_EQ(0, IntOn(image_.WorkingDb(), "SELECT COUNT(*) FROM psong"));
}

TEST_F(PlaylistsTest, AFullPlaylistStopsAndKeepsTheEntriesBefore) {
  AddPlaylist(1, "Full");
  FillRows("psong", 1, kAlbumSongLimit - 2, "'l', i, 1, 's', i, i");
  std::list<int> ids = Ids({5001, 5002, 5003});
  EXPECT_EQ(kResultAlbumFull, FH_Add_To_Playlist(root_.c_str(), ids, "s", 1, "l", 0));
  EXPECT_EQ(kAlbumSongLimit, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=1"));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM psong WHERE song_id=5002"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM psong WHERE song_id=5003"));
}

TEST_F(PlaylistsTest, AllEntriesOfThePrefixAtTheirLimit) {
  AddPlaylist(1, "Big");
  AddPlaylist(2, "Small");
  FillRows("psong", 1, kPrefixSongLimit - 1, "'l', i, 1, 's', i, i");
  std::list<int> ids = Ids({9001, 9002});
  EXPECT_EQ(kResultPrefixFull, FH_Add_To_Playlist(root_.c_str(), ids, "s", 2, "l", 0));
  EXPECT_EQ(kPrefixSongLimit, Int("SELECT COUNT(*) FROM psong"));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM psong WHERE song_id=9001"));
}

TEST_F(PlaylistsTest, AddToPlaylistCodes) {
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultDbFail, FH_Add_To_Playlist(MissingRoot().c_str(), ids, "s", 1, "p", 0));
  AddPlaylist(1, "L");
  Exec("CREATE TRIGGER refuse BEFORE INSERT ON psong BEGIN SELECT RAISE(ABORT, 'no'); END");
  EXPECT_EQ(kResultCannotExecute, FH_Add_To_Playlist(root_.c_str(), ids, "s", 1, "l", 0));
}

TEST_F(PlaylistsTest, CopyingTwoPlaylistsIntoANewOneMergesThem) {
  AddPlaylist(1, "First");
  AddPlaylist(2, "Second");
  AddEntry(1, 1, 11, "s", "l", 2);
  AddEntry(2, 1, 12, "r", "l", 1);
  AddEntry(3, 2, 13, "y");
  std::list<int> ids = Ids({1, 2});
  ASSERT_EQ(kResultOk, FH_Copy_Playlist(root_.c_str(), ids, "l", 0));
  EXPECT_EQ(3, Int("SELECT COUNT(*) FROM playlist"));
  EXPECT_EQ("First", TitleOf(3));  // the source's title, not numbered
  EXPECT_EQ((std::vector<std::string>{"l|r|12|1", "l|s|11|2", "l|y|13|3"}), Entries(3));
}

TEST_F(PlaylistsTest, CopyingFromTheInternalCatalogueToAStick) {
  AddPlaylist(1, "Internal");
  AddEntry(1, 1, 11);
  const std::string stick = image_.UsbRoot("sda1");
  ASSERT_EQ(1, FM_Create_New_Playlist(stick.c_str(), "Stick"));
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_Copy_Playlist(stick.c_str(), ids, "l", 1));
  EXPECT_EQ("1|p|s|11", TextOn(image_.WorkingDb(),
                               "SELECT playlist_id || '|' || ppfix || '|' || pfix || '|' || "
                               "song_id FROM psong"));
}

TEST_F(PlaylistsTest, CopyingIntoANewPlaylistRespectsThePlaylistLimit) {
  FillRows("playlist", 1, kAlbumLimit, "'l', i, 'P' || i, i");
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultPlaylistLimit, FH_Copy_Playlist(root_.c_str(), ids, "l", 0));
  EXPECT_EQ(kAlbumLimit, Int("SELECT COUNT(*) FROM playlist"));
}

TEST_F(PlaylistsTest, CopyingStopsAtTheLimitsAndKeepsWhatWasAdded) {
  AddPlaylist(1, "Source");
  AddPlaylist(2, "Full");
  AddEntry(1, 1, 7);
  AddEntry(2, 1, 8);
  FillRows("psong", 10, kAlbumSongLimit - 1, "'l', i, 2, 's', i, i");
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultAlbumFull, FH_Copy_Playlist(root_.c_str(), ids, "l", 2));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=2 AND song_id=7"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=2 AND song_id=8"));

  Exec("DELETE FROM psong WHERE playlist_id=2");
  AddPlaylist(3, "Other");
  FillRows("psong", 10, kPrefixSongLimit - 3, "'l', i, 3, 's', i, i");
  EXPECT_EQ(kResultPrefixFull, FH_Copy_Playlist(root_.c_str(), ids, "l", 2));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=2"));
}

TEST_F(PlaylistsTest, CopyPlaylistCodes) {
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultDbFail, FH_Copy_Playlist(MissingRoot().c_str(), ids, "p", 0));
  AddPlaylist(1, "Source");
  AddEntry(1, 1, 7);
  Exec("CREATE TRIGGER refuse BEFORE INSERT ON psong BEGIN SELECT RAISE(ABORT, 'no'); END");
  EXPECT_EQ(kResultCannotExecute, FH_Copy_Playlist(root_.c_str(), ids, "l", 1));
}

TEST_F(PlaylistsTest, DeletingSeveralEntriesDeletesEachOfThem) {
  AddPlaylist(1, "L");
  AddEntry(1, 1, 7);
  AddEntry(2, 1, 8);
  AddEntry(3, 1, 9);
  std::list<int> ids = Ids({3, 1});
  ASSERT_EQ(kResultOk, FH_delete_plsong(root_.c_str(), ids));
  EXPECT_EQ((std::vector<std::string>{"l|s|8|2"}), Entries(1));
}

TEST_F(PlaylistsTest, DeletingEntriesOfAnUnopenableCatalogue) {
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultDbFail, FH_delete_plsong(MissingRoot().c_str(), ids));
}

TEST_F(PlaylistsTest, AddToULQPlaylistChangesNothing) {
  AddPlaylist(1, "L");
  const std::string before = ReadFile(Db());
  AddToULQPlaylist(1);
  EXPECT_EQ(before, ReadFile(Db()));
}

}  // namespace
}  // namespace zansong_test
