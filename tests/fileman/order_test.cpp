// FH_sort and FH_reorder: moves, renumbering, unsound orders and codes.
#include "zansong/fileman/order.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fileman/organise_test_helpers.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class OrderTest : public OrganiseTest {
 protected:
  // Album 1 with songs 1..n at positions 1..n.
  void Album(int n) {
    AddAlbum(1, "A");
    for (int i = 1; i <= n; ++i) AddSong(i, 1, "");
  }
  // "id:order" of the songs of album 1 by position.
  std::vector<std::string> SongOrder() {
    return Rows(
        "SELECT song_id || ':' || disp_order FROM song WHERE album_id=1 ORDER BY disp_order");
  }
  std::string MissingRoot() const { return image_.root() + "/no/such/root/"; }
};

TEST_F(OrderTest, MovingSongsToTheFrontRenumbersTheAlbum) {
  Album(4);
  std::list<int> ids = Ids({3, 4});
  ASSERT_EQ(kResultOk, FH_sort(root_.c_str(), ids, "s", 1, 0));
  EXPECT_EQ((std::vector<std::string>{"3:1", "4:2", "1:3", "2:4"}), SongOrder());
}

TEST_F(OrderTest, MovingAlbumsAtTopLevel) {
  AddAlbum(1, "A");
  AddAlbum(2, "B");
  AddAlbum(3, "C");
  AddAlbum(4, "R", "R", "r", 1);
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_sort(root_.c_str(), ids, "s", 3, 1));
  EXPECT_EQ((std::vector<std::string>{"2:1", "1:2", "3:3"}),
            Rows("SELECT album_id || ':' || disp_order FROM album WHERE pfix='s' ORDER BY "
                 "disp_order, album_id"));
  EXPECT_EQ(1, Int("SELECT disp_order FROM album WHERE album_id=4"));
}

TEST_F(OrderTest, MovingPlaylistEntriesAndPlaylists) {
  AddPlaylist(1, "L");
  AddPlaylist(2, "M");
  AddEntry(1, 2, 10);
  AddEntry(2, 2, 11);
  AddEntry(3, 2, 12);
  std::list<int> entries = Ids({3});
  ASSERT_EQ(kResultOk, FH_sort(root_.c_str(), entries, "l", 1, 0));
  EXPECT_EQ((std::vector<std::string>{"3:1", "1:2", "2:3"}),
            Rows("SELECT psong_id || ':' || disp_order FROM psong ORDER BY disp_order"));
  std::list<int> playlists = Ids({2});
  ASSERT_EQ(kResultOk, FH_sort(root_.c_str(), playlists, "l", 1, 1));
  EXPECT_EQ((std::vector<std::string>{"2:1", "1:2"}),
            Rows("SELECT playlist_id || ':' || disp_order FROM playlist ORDER BY disp_order"));
}

TEST_F(OrderTest, AnUnsoundOrderIsRebuiltInsteadOfTheMove) {
  AddAlbum(1, "A");
  AddSong(1, 1, "", "", "s", 2);
  AddSong(2, 1, "", "", "s", 5);
  AddSong(3, 1, "", "", "s", 5);
  std::list<int> ids = Ids({3});
  EXPECT_EQ(kResultRepairFailed, FH_sort(root_.c_str(), ids, "s", 1, 0));
  std::vector<std::string> order = SongOrder();
  ASSERT_EQ(3u, order.size());
  EXPECT_EQ("1:1", order[0]);
  EXPECT_EQ(":2", order[1].substr(order[1].find(':')));
  EXPECT_EQ(":3", order[2].substr(order[2].find(':')));
}

TEST_F(OrderTest, AZeroPositionIsRebuiltAndReported) {
  AddAlbum(1, "A");
  AddSong(1, 1, "", "", "s", 3);
  AddSong(2, 1, "", "", "s", 7);
  AddSong(3, 1, "", "", "s");
  Exec("UPDATE song SET disp_order = 0 WHERE song_id = 3");
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultRepairFailed, FH_sort(root_.c_str(), ids, "s", 1, 0));
  EXPECT_EQ((std::vector<std::string>{"3:1", "1:2", "2:3"}), SongOrder());
}

TEST_F(OrderTest, GapsAloneAreSoundSoTheMoveIsMadeAndClosesThem) {
  AddAlbum(1, "A");
  AddSong(1, 1, "", "", "s", 3);
  AddSong(2, 1, "", "", "s", 7);
  AddSong(3, 1, "", "", "s", 12);
  std::list<int> ids = Ids({3});
  EXPECT_EQ(kResultOk, FH_sort(root_.c_str(), ids, "s", 1, 0));
  EXPECT_EQ((std::vector<std::string>{"3:1", "1:2", "2:3"}), SongOrder());
}

TEST_F(OrderTest, AnEmptyListIsNothingToDo) {
  std::list<int> ids;
  EXPECT_EQ(kResultNoFile, FH_sort(root_.c_str(), ids, "s", 1, 0));
}

TEST_F(OrderTest, AFailedMoveGivesMinus24) {
  Album(3);
  Exec("CREATE TRIGGER refuse BEFORE UPDATE ON song BEGIN SELECT RAISE(ABORT, 'no'); END");
  std::list<int> ids = Ids({2});
  EXPECT_EQ(kResultNoFile, FH_sort(root_.c_str(), ids, "s", 1, 0));
}

TEST_F(OrderTest, SortOnAnUnopenableCatalogue) {
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultDbFail, FH_sort(MissingRoot().c_str(), ids, "s", 1, 0));
}

TEST_F(OrderTest, ReorderRenumbersInTheCurrentOrder) {
  AddAlbum(1, "A");
  AddSong(1, 1, "", "", "s", 30);
  AddSong(2, 1, "", "", "s", 10);
  AddSong(3, 1, "", "", "s", 20);
  ASSERT_EQ(kResultOk, FH_reorder(root_.c_str(), 1, "s"));
  EXPECT_EQ((std::vector<std::string>{"2:1", "3:2", "1:3"}), SongOrder());
}

TEST_F(OrderTest, ReorderOnAnUnreadableCatalogueGivesMinusOne) {
  EXPECT_EQ(kResultRenameDbFail, FH_reorder(MissingRoot().c_str(), 0, "s"));
}

}  // namespace
}  // namespace zansong_test
