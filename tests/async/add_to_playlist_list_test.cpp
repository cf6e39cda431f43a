// FH2_add_to_playlist: songs, whole albums and the songs of query targets
// added to a playlist in a child process, with the progress discounted by
// the query targets.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "async/list_test_helpers.h"
#include "async/ush_faults.h"
#include "fileman/organise_test_helpers.h"
#include "zansong/async/list_operations.h"
#include "zansong/db/dbman.h"
#include "zansong/fileman/messages.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

TargetInfo Query(const char* sql) {
  TargetInfo t = Target(kTargetQuery, 0, '\0');
  std::strncpy(t.sql, sql, sizeof t.sql - 1);
  return t;
}

class AddToPlaylistListTest : public OrganiseTest {
 protected:
  // pfix|song_id of the entries of playlist 1 in the catalogue db.
  std::vector<std::string> Entries(const std::string& db) {
    return QueryRows(db, "SELECT pfix, song_id FROM psong WHERE playlist_id=1 ORDER BY disp_order");
  }
  UshFaultsScope faults_;
};

TEST_F(AddToPlaylistListTest, SongsAndWholeAlbumsInListOrder) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddSong(2, 1, "A/two.mid");
  AddAlbum(2, "B");
  AddSong(3, 2, "B/three.mid");
  AddPlaylist(1, "Mine");
  std::vector<TargetInfo> targets = {Target(kTargetSong, 3), Target(kTargetPlaylist, 9),
                                     Target(kTargetAlbum, 1)};
  StdoutCapture quiet;
  ASSERT_EQ(kResultOk, FH2_add_to_playlist(root_.c_str(), targets, 1, "l"));
  EXPECT_EQ((std::vector<std::string>{"s|3", "s|1", "s|2"}), Entries(Db()));
}

TEST_F(AddToPlaylistListTest, QueryTargetsOfBothCataloguesWithTheProgressDiscounted) {
  // Twelve preset songs inside, twelve songs on the stick: one query target
  // and the 24 songs it yields make a list of 25, shown as 24.
  AddAlbum(1, "preset/A", "A", "d");
  for (int id = 1; id <= 12; ++id) AddSong(id, 1, "", "", "d");
  const std::string stick = image_.UsbRoot();
  const std::string stickDb = stick + ".zansong.db";
  CreateCatalogue(image_, stickDb);
  ExecOn(stickDb, "INSERT INTO playlist VALUES('p',1,'Mine',1)");
  for (int id = 101; id <= 112; ++id) {
    ExecOn(stickDb,
           "INSERT INTO song(pfix,song_id,song_title) VALUES('s'," + std::to_string(id) + ",'T')");
  }
  usbdb_copy(const_cast<char*>(stick.c_str()));
  Faults().timer_held = true;
  std::vector<TargetInfo> targets = {Query("select pfix, song_id from song order by song_id")};
  StdoutCapture capture;
  ASSERT_EQ(kResultOk, FH2_add_to_playlist(stick.c_str(), targets, 1, "p"));
  std::vector<std::string> printed = LinesOf(capture.Finish());

  std::vector<std::string> expected;
  for (int id = 1; id <= 12; ++id) expected.push_back("d|" + std::to_string(id));
  for (int id = 101; id <= 112; ++id) expected.push_back("s|" + std::to_string(id));
  EXPECT_EQ(expected, Entries(image_.WorkingDb()));
  EXPECT_EQ(1u, targets.size());  // the caller's list is left as it was

  ASSERT_EQ(2u, printed.size());
  EXPECT_EQ(LineOf([] { PrintAddToPlaylistMessage(0, 24); }), printed[0]);
  EXPECT_TRUE(IsLineOfOneOf(
      printed[1], [](int n) { PrintAddToPlaylistMessage(n, 24); }, 1, 24))
      << printed[1];
}

TEST_F(AddToPlaylistListTest, AQueryOnTheInternalRootAddsEachSongTwice) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddSong(2, 1, "A/two.mid");
  AddPlaylist(1, "Mine");
  std::vector<TargetInfo> targets = {Query("select pfix, song_id from song order by song_id")};
  StdoutCapture quiet;
  ASSERT_EQ(kResultOk, FH2_add_to_playlist(root_.c_str(), targets, 1, "l"));
  EXPECT_EQ((std::vector<std::string>{"s|1", "s|2", "s|1", "s|2"}), Entries(Db()));
}

TEST_F(AddToPlaylistListTest, AFullPlaylistStopsTheListWithItsCode) {
  AddPlaylist(1, "Full");
  FillRows("psong", 1, kAlbumSongLimit - 1, "'l', i, 1, 's', i, i");
  std::vector<TargetInfo> targets = {Target(kTargetSong, 5001), Target(kTargetSong, 5002),
                                     Target(kTargetSong, 5003)};
  StdoutCapture quiet;
  EXPECT_EQ(kResultAlbumFull, FH2_add_to_playlist(root_.c_str(), targets, 1, "l"));
  EXPECT_EQ(kAlbumSongLimit, Int("SELECT COUNT(*) FROM psong WHERE playlist_id=1"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM psong WHERE song_id IN (5002, 5003)"));
}

TEST_F(AddToPlaylistListTest, AnUnopenableCatalogueGivesItsCode) {
  std::vector<TargetInfo> targets = {Target(kTargetSong, 1)};
  const std::string missing = image_.root() + "/no/such/root/";
  StdoutCapture quiet;
  EXPECT_EQ(kResultDbFail, FH2_add_to_playlist(missing.c_str(), targets, 1, "p"));
}

}  // namespace
}  // namespace zansong_test
