// FH2_delete: targets of mixed kinds deleted in a child process, the stop
// at the first failing target, and the progress boxes of short and long
// lists.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "async/list_test_helpers.h"
#include "async/ush_faults.h"
#include "fileman/organise_test_helpers.h"
#include "support/process_census.h"
#include "zansong/async/list_operations.h"
#include "zansong/fileman/messages.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class DeleteListTest : public OrganiseTest {
 protected:
  void SetUp() override {
    OrganiseTest::SetUp();
    AddAlbum(1, "A");
  }
  int Count(const std::string& table, const std::string& where = "1") {
    return Int("SELECT COUNT(*) FROM " + table + " WHERE " + where);
  }
  // Songs first..last in album A, file A/<id>.mid each.
  void AddSongs(int first, int last) {
    for (int id = first; id <= last; ++id) AddSong(id, 1, SongFile(id));
  }
  static std::string SongFile(int id) { return "A/" + std::to_string(id) + ".mid"; }
  bool SongIsThere(int id) {
    return PathExists(root_ + SongFile(id)) && Count("song", "song_id=" + std::to_string(id)) == 1;
  }
  bool SongIsGone(int id) {
    return !PathExists(root_ + SongFile(id)) && Count("song", "song_id=" + std::to_string(id)) == 0;
  }
  int Delete(std::vector<TargetInfo> targets) {
    StdoutCapture capture;
    int result = FH2_delete(root_.c_str(), targets);
    printed_ = LinesOf(capture.Finish());
    return result;
  }

  UshFaultsScope faults_;
  std::vector<std::string> printed_;
};

TEST_F(DeleteListTest, ASongAPlaylistAndAnUnknownTargetInOneRequest) {
  AddSongs(1, 2);
  AddPlaylist(5, "Evening");
  AddEntry(1, 5, 2);
  EXPECT_EQ(kResultOk, Delete({Target(kTargetSong, 1, 's'), Target(kTargetPlaylist, 5, 'l'),
                               Target(kTargetUnknown, 2, 's')}));
  EXPECT_TRUE(SongIsGone(1));
  EXPECT_EQ(0, Count("playlist"));
  EXPECT_EQ(0, Count("psong"));
  EXPECT_TRUE(SongIsThere(2));  // the unknown target is skipped
  EXPECT_FALSE(HasChildProcesses());
}

TEST_F(DeleteListTest, AnAlbumAndAPlaylistEntry) {
  AddAlbum(2, "B");
  AddSong(1, 2, "B/one.mid");
  AddSongs(3, 3);
  AddPlaylist(5, "Evening");
  AddEntry(7, 5, 3);
  AddEntry(8, 5, 3);
  EXPECT_EQ(kResultOk, Delete({Target(kTargetAlbum, 2, 's'), Target(kTargetPlaylistSong, 7, 'l')}));
  EXPECT_FALSE(PathExists(root_ + "B"));
  EXPECT_EQ(0, Count("album", "album_id=2"));
  EXPECT_EQ(0, Count("song", "album_id=2"));
  EXPECT_EQ((std::vector<std::string>{"8"}), Rows("SELECT psong_id FROM psong"));
  EXPECT_TRUE(SongIsThere(3));
}

TEST_F(DeleteListTest, TheSecondOfFourFailingLeavesTheLastTwoUntouched) {
  AddSongs(1, 4);
  // Song 9 has no row: its delete ends with -25.
  EXPECT_EQ(kResultNoData, Delete({Target(kTargetSong, 1), Target(kTargetSong, 9),
                                   Target(kTargetSong, 3), Target(kTargetSong, 4)}));
  EXPECT_TRUE(SongIsGone(1));
  EXPECT_TRUE(SongIsThere(3));
  EXPECT_TRUE(SongIsThere(4));
}

TEST_F(DeleteListTest, AChildFailingOnItsThirdTargetReturnsThatTargetsCode) {
  AddSongs(1, 5);
  AddAlbum(2, "B");
  EXPECT_EQ(kResultNoData,
            Delete({Target(kTargetSong, 1), Target(kTargetAlbum, 2), Target(kTargetAlbum, 9),
                    Target(kTargetSong, 4), Target(kTargetSong, 5)}));
  EXPECT_TRUE(SongIsGone(1));
  EXPECT_EQ(0, Count("album", "album_id=2"));
  EXPECT_TRUE(SongIsThere(4));
  EXPECT_TRUE(SongIsThere(5));
  EXPECT_FALSE(HasChildProcesses());
}

TEST_F(DeleteListTest, AnUnopenableCatalogueGivesItsCode) {
  std::vector<TargetInfo> targets = {Target(kTargetSong, 1)};
  const std::string missing = image_.root() + "/no/such/root/";
  StdoutCapture quiet;
  EXPECT_EQ(kResultDbFail, FH2_delete(missing.c_str(), targets));
}

TEST_F(DeleteListTest, TwentyFiveTargetsShowProgressAtOnceAndAtTheEnd) {
  Faults().timer_held = true;  // no tick: only the first and final reports
  AddSongs(1, 25);
  std::vector<TargetInfo> targets;
  for (int id = 1; id <= 25; ++id) targets.push_back(Target(kTargetSong, id));
  ASSERT_EQ(kResultOk, Delete(targets));
  for (int id = 1; id <= 25; ++id) EXPECT_TRUE(SongIsGone(id)) << id;
  ASSERT_EQ(2u, printed_.size());
  EXPECT_EQ(LineOf([] { PrintDeleteMessage(0, 25); }), printed_[0]);
  EXPECT_TRUE(IsLineOfOneOf(
      printed_[1], [](int n) { PrintDeleteMessage(n, 25); }, 1, 25))
      << printed_[1];
}

TEST_F(DeleteListTest, ThreeTargetsShowOnlyWhatTheTimerShows) {
  Faults().timer_held = true;
  AddSongs(1, 3);
  ASSERT_EQ(kResultOk,
            Delete({Target(kTargetSong, 1), Target(kTargetSong, 2), Target(kTargetSong, 3)}));
  EXPECT_TRUE(printed_.empty());
  EXPECT_EQ((std::vector<int64_t>{500}), Faults().intervals);
  EXPECT_TRUE(SongIsGone(3));
}

}  // namespace
}  // namespace zansong_test
