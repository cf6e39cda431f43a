// Display-order maintenance.
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <list>
#include <string>
#include <vector>

#include "db/batched_order.h"
#include "support/catalogue_fixture.h"
#include "support/stdout_capture.h"

namespace zansong_test {
namespace {

// Orders(table) gives "key:order" pairs of the rows in display order.
class SequenceTest : public CatalogueTest {
 protected:
  std::string Orders(const std::string& table, const std::string& where = "1") {
    return Text("SELECT group_concat(" + table +
                "_id || ':' || disp_order, ' ') FROM (SELECT * FROM " + table + " WHERE " + where +
                " ORDER BY disp_order, " + table + "_id)");
  }
  void ThreeAlbums() {
    for (const char* path : {"A", "B", "C"}) AddAlbum(path);
    AddAlbum("F", "f");
  }
  void ThreeSongs() {
    AddAlbum("A");
    for (const char* path : {"A/1.mid", "A/2.mid", "A/3.mid"}) AddSongTo("A", path);
  }
  void ThreePlaylists() {
    for (const char* title : {"P1", "P2", "P3"}) man_.CreatePlaylist(title, "p");
  }
  void ThreeEntries() {
    man_.CreatePlaylist("P", "p");
    for (int song = 1; song <= 3; ++song) man_.AddToPlaylist(1, song, "p", "s");
  }
};

TEST_F(SequenceTest, GetMaxOrderOfEachSequence) {
  StatementLog log(man_.db);
  EXPECT_EQ(0, man_.GetMaxOrder(1, "s"));  // an empty album: its first song gets 1
  EXPECT_EQ("SELECT MAX(disp_order) FROM song WHERE album_id = 1", log.last());
  EXPECT_EQ(0, man_.GetMaxOrder(0, "s"));
  EXPECT_EQ("SELECT MAX(disp_order) FROM album WHERE pfix = 's'", log.last());
  EXPECT_EQ(0, man_.GetMaxOrder(1, "p"));
  EXPECT_EQ("SELECT MAX(disp_order) FROM psong WHERE playlist_id = 1", log.last());
  EXPECT_EQ(0, man_.GetMaxOrder(0, "l"));
  EXPECT_EQ("SELECT MAX(disp_order) FROM playlist", log.last());
  ThreeSongs();
  EXPECT_EQ(3, man_.GetMaxOrder(1, "s"));
  EXPECT_EQ(1, man_.GetMaxOrder(0, "s"));
}

TEST_F(SequenceTest, SetOrderRunsItsStatementAndReportsFailure) {
  ThreeAlbums();
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.SetOrder("album", 2, 8));
  EXPECT_EQ("UPDATE album SET disp_order = 8 WHERE album_id =2", log.last());
  EXPECT_EQ(8, man_.GetIntByID("album", "disp_order", 2));
  StdoutCapture out;
  EXPECT_EQ(0, man_.SetOrder("missing", 1, 1));
  EXPECT_EQ("DB: error no such table: missing\nError! :SetOrder", out.Finish());
}

TEST_F(SequenceTest, CheckOrderAcceptsGapsButNotRepeatsOrZero) {
  ThreeSongs();
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.CheckOrder(1, "s"));
  EXPECT_EQ("SELECT disp_order FROM song WHERE album_id = 1 order by disp_order", log.last());
  man_.SetOrder("song", 2, 3);
  man_.SetOrder("song", 3, 7);
  EXPECT_EQ(1, man_.CheckOrder(1, "s"));  // 1, 3, 7
  man_.SetOrder("song", 2, 1);
  man_.SetOrder("song", 3, 2);
  EXPECT_EQ(0, man_.CheckOrder(1, "s"));  // 1, 1, 2
  Exec("DELETE FROM song WHERE song_id = 3");
  man_.SetOrder("song", 1, 0);
  EXPECT_EQ(0, man_.CheckOrder(1, "s"));  // 0, 1
  EXPECT_EQ(1, man_.CheckOrder(5, "s"));  // empty
}

TEST_F(SequenceTest, CheckOrderReadsEachSequence) {
  ThreeAlbums();
  ThreeEntries();
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.CheckOrder(0, "s"));
  EXPECT_EQ("SELECT disp_order FROM album  WHERE pfix = 's' order by disp_order", log.last());
  EXPECT_EQ(1, man_.CheckOrder(0, "p"));
  EXPECT_EQ("SELECT disp_order FROM playlist order by disp_order", log.last());
  EXPECT_EQ(1, man_.CheckOrder(1, "p"));
  EXPECT_EQ("SELECT disp_order FROM psong WHERE playlist_id = 1 order by disp_order", log.last());
  man_.SetOrder("psong", 3, 1);
  EXPECT_EQ(0, man_.CheckOrder(1, "l"));
  Exec("DROP TABLE album");
  EXPECT_EQ(0, man_.CheckOrder(0, "s"));  // a failed statement
}

TEST_F(SequenceTest, MovingASongToTheFrontLeavesAHoleThatReOrderCloses) {
  ThreeSongs();
  std::list<int> moved = {2};
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.ChangeOrder(moved, 1, "s", 1));
  EXPECT_EQ("UPDATE song SET disp_order = disp_order + 1 WHERE disp_order > 0 and album_id = 1",
            log.statements().front());
  EXPECT_EQ("UPDATE song SET disp_order = 1 WHERE song_id =2", log.last());
  EXPECT_EQ("2:1 1:2 3:4", Orders("song"));
  EXPECT_EQ(1, man_.ReOrder(1, "s"));
  EXPECT_EQ("2:1 1:2 3:3", Orders("song"));
  EXPECT_EQ(1, man_.CheckOrder(1, "s"));
}

TEST_F(SequenceTest, MovingSongsPastTheLastPosition) {
  ThreeSongs();
  std::list<int> moved = {2, 1};
  EXPECT_EQ(1, man_.ChangeOrder(moved, 1, "s", 4));
  EXPECT_EQ(1, man_.ReOrder(1, "s"));
  EXPECT_EQ("3:1 2:2 1:3", Orders("song"));
}

TEST_F(SequenceTest, ChangeOrderWithAnEmptyListShiftsNothing) {
  ThreeSongs();
  std::list<int> none;
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.ChangeOrder(none, 1, "s", 2));
  EXPECT_EQ(
      (std::vector<std::string>{
          "UPDATE song SET disp_order = disp_order + 0 WHERE disp_order > 1 and album_id = 1"}),
      log.statements());
  EXPECT_EQ("1:1 2:2 3:3", Orders("song"));
}

TEST_F(SequenceTest, MovingAlbumsOnlyTouchesTheirPrefix) {
  ThreeAlbums();
  std::list<int> moved = {3};
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.ChangeOrder(moved, 0, "s", 1));
  EXPECT_EQ("UPDATE album SET disp_order = disp_order + 1 WHERE disp_order > 0 and pfix = 's'",
            log.statements().front());
  EXPECT_EQ(1, man_.ReOrder(0, "s"));
  EXPECT_EQ("3:1 1:2 2:3", Orders("album", "pfix='s'"));
  EXPECT_EQ("4:1", Orders("album", "pfix='f'"));
}

TEST_F(SequenceTest, MovingPlaylists) {
  ThreePlaylists();
  std::list<int> moved = {1};
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.ChangeOrder(moved, 0, "p", 4));
  EXPECT_EQ("UPDATE playlist SET disp_order = disp_order + 1 WHERE disp_order > 3",
            log.statements().front());
  EXPECT_EQ("UPDATE playlist SET disp_order = 4 WHERE playlist_id =1", log.last());
  EXPECT_EQ(1, man_.ReOrder(0, "p"));
  EXPECT_EQ("2:1 3:2 1:3", Orders("playlist"));
}

TEST_F(SequenceTest, MovingPlaylistEntries) {
  ThreeEntries();
  std::list<int> moved = {3, 2};
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.ChangeOrder(moved, 1, "l", 1));
  EXPECT_EQ("UPDATE psong SET disp_order = disp_order + 2 WHERE disp_order > 0 and playlist_id = 1",
            log.statements().front());
  EXPECT_EQ(1, man_.ReOrder(1, "p"));
  EXPECT_EQ("3:1 2:2 1:3", Orders("psong"));
}

TEST_F(SequenceTest, AFailedShiftIsReported) {
  ThreeSongs();
  Exec(
      "CREATE TRIGGER frozen BEFORE UPDATE ON song WHEN NEW.disp_order > 3 "
      "BEGIN SELECT RAISE(ABORT, 'frozen'); END");
  std::list<int> moved = {3};
  StdoutCapture out;
  EXPECT_EQ(0, man_.ChangeOrder(moved, 1, "s", 1));
  EXPECT_EQ("DB: error frozen\nError! :ChangeOrder", out.Finish());
  EXPECT_EQ("1:1 3:1 2:2", Orders("song"));  // the single move still ran
}

TEST_F(SequenceTest, ReOrderStopsAtTheFirstFailedUpdate) {
  ThreeSongs();
  man_.SetOrder("song", 1, 10);
  man_.SetOrder("song", 2, 20);
  man_.SetOrder("song", 3, 30);
  Exec(
      "CREATE TRIGGER stuck BEFORE UPDATE ON song WHEN OLD.song_id = 2 "
      "BEGIN SELECT RAISE(ABORT, 'stuck'); END");
  StdoutCapture out;
  EXPECT_EQ(0, man_.ReOrder(1, "s"));
  EXPECT_EQ("DB: error stuck\nError! :SetOrderError! :ReOrder", out.Finish());
  EXPECT_EQ("1:1 2:20 3:30", Orders("song"));
}

TEST_F(SequenceTest, SortSongByPathNumbersThePrefixAsOneRun) {
  AddAlbum("B");
  AddAlbum("A");
  AddSongTo("B", "B/2.mid");
  AddSongTo("A", "A/9.mid");
  AddSongTo("B", "B/1.mid");
  AddSongTo("A", "A/10.mid");
  AddSongTo("A", "A/x.mid", "f");
  int before = man_.GetIntByID("song", "disp_order", 5);
  EXPECT_EQ(1, man_.SortSongByPath("s"));
  // A/10 < A/9 < B/1 < B/2 as byte strings.
  EXPECT_EQ("4:1 2:2 3:3 1:4", Orders("song", "pfix='s'"));
  EXPECT_EQ(before, man_.GetIntByID("song", "disp_order", 5));  // another prefix
}

TEST_F(SequenceTest, SortSongByPathSortsBytesUnsigned) {
  AddAlbum("A");
  AddSongTo("A", "A/\xE3\x81\x82.mid");
  AddSongTo("A", "A/z.mid");
  EXPECT_EQ(1, man_.SortSongByPath("s"));
  EXPECT_EQ("2:1 1:2", Orders("song"));
}

TEST_F(SequenceTest, ResetAlbumOrderAndPathSortsByPathAndKeepsPaths) {
  for (const char* path : {"User/C", "User/A", "User/B"}) AddAlbum(path);
  AddAlbum("User/0", "f");
  EXPECT_EQ(1, man_.ResetAlbumOrderAndPath(image_.SongRoot().c_str(), "s"));
  EXPECT_EQ("2:1 3:2 1:3", Orders("album", "pfix='s'"));
  EXPECT_EQ("User/C", std::string(man_.GetTextByID("album", "album_path", 1).c_str()));
  EXPECT_EQ(1, man_.GetIntByID("album", "disp_order", 4));
}

// The number of UPDATE statements in log.
int Updates(const StatementLog& log) {
  int n = 0;
  for (const std::string& sql : log.statements()) n += sql.compare(0, 7, "UPDATE ") == 0;
  return n;
}

TEST_F(SequenceTest, RenumberingASortedSequenceAgainWritesNothing) {
  for (const char* path : {"B", "A"}) AddAlbum(path);
  AddSongTo("B", "B/1.mid");
  AddSongTo("A", "A/1.mid");
  EXPECT_EQ(1, man_.ResetAlbumOrderAndPath("/", "s"));
  EXPECT_EQ(1, man_.SortSongByPath("s"));
  const int changes = sqlite3_total_changes(man_.db);
  StatementLog log(man_.db);
  StdoutCapture out;
  EXPECT_EQ(1, man_.ResetAlbumOrderAndPath("/", "s"));
  EXPECT_EQ(1, man_.SortSongByPath("s"));
  EXPECT_EQ("", out.Finish());
  EXPECT_EQ(changes, sqlite3_total_changes(man_.db));
  EXPECT_EQ(0, Updates(log));
  EXPECT_EQ("2:1 1:2", Orders("album"));
  EXPECT_EQ("2:1 1:2", Orders("song"));
}

TEST_F(SequenceTest, RenumberingWritesOnlyTheRowsThatMove) {
  AddAlbum("A");
  for (const char* path : {"A/1.mid", "A/2.mid", "A/4.mid"}) AddSongTo("A", path);
  AddSongTo("A", "A/3.mid");  // song 4, order 4, belongs third
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.SortSongByPath("s"));
  EXPECT_EQ((std::vector<std::string>{"UPDATE song SET disp_order = 3 WHERE song_id =4",
                                      "UPDATE song SET disp_order = 4 WHERE song_id =3"}),
            std::vector<std::string>(log.statements().end() - 2, log.statements().end()));
  EXPECT_EQ(2, Updates(log));
  EXPECT_EQ("1:1 2:2 4:3 3:4", Orders("song"));
}

TEST_F(SequenceTest, RenumberingRewritesAPositionThatIsNotAnInteger) {
  AddAlbum("A");
  AddSongTo("A", "A/1.mid");
  AddSongTo("A", "A/2.mid");
  Exec("UPDATE song SET disp_order = 2.5 WHERE song_id = 2");  // reads as 2 with column_int
  Exec("UPDATE song SET disp_order = NULL WHERE song_id = 1");
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.SortSongByPath("s"));
  EXPECT_EQ(2, Updates(log));
  EXPECT_EQ("integer integer", Text("SELECT group_concat(typeof(disp_order), ' ') FROM song"));
  EXPECT_EQ("1:1 2:2", Orders("song"));
}

TEST_F(SequenceTest, RenumberingInsideABatchCommitsWithTheBatch) {
  for (const char* path : {"C", "B", "A"}) AddAlbum(path);
  AddSongTo("C", "C/1.mid");
  AddSongTo("A", "A/1.mid");
  {
    zansong::WriteBatch batch(man_);
    EXPECT_EQ(1, zansong::ResetAlbumOrderAndPath(man_, "/", "s", &batch));
    EXPECT_EQ(1, zansong::SortSongByPath(man_, "s", &batch));
    // Still one open transaction: another connection sees the old orders.
    EXPECT_EQ(0, sqlite3_get_autocommit(man_.db));
    EXPECT_EQ(3, man_.GetIntByID("album", "disp_order", 1));
    EXPECT_EQ(1, Int("SELECT disp_order FROM album WHERE album_id = 1"));
    batch.Commit();
    EXPECT_NE(0, sqlite3_get_autocommit(man_.db));
  }
  EXPECT_EQ("3:1 2:2 1:3", Orders("album"));
  EXPECT_EQ("2:1 1:2", Orders("song"));
}

TEST_F(SequenceTest, RenumberingInsideABatchReportsAFailedUpdateAsAlone) {
  ThreeSongs();
  man_.SetOrder("song", 1, 30);
  man_.SetOrder("song", 2, 20);
  man_.SetOrder("song", 3, 10);
  Exec(
      "CREATE TRIGGER stuck BEFORE UPDATE ON song WHEN OLD.song_id = 2 "
      "BEGIN SELECT RAISE(ABORT, 'stuck'); END");
  zansong::WriteBatch batch(man_);
  StdoutCapture out;
  EXPECT_EQ(0, zansong::SortSongByPath(man_, "s", &batch));
  EXPECT_EQ("DB: error stuck\nError! :SetOrderError! :ReOrder", out.Finish());
  batch.Commit();
  EXPECT_EQ("1:1 3:10 2:20", Orders("song"));
}

TEST_F(SequenceTest, RenumberingReportsAFailedRead) {
  Exec("DROP TABLE song; DROP TABLE album");
  {
    StdoutCapture out;
    EXPECT_EQ(0, man_.ReOrder(1, "s"));
    EXPECT_EQ("Error! :GetIDListError! :ReOrder", out.Finish());
  }
  {
    StdoutCapture out;
    EXPECT_EQ(0, man_.SortSongByPath("s"));
    EXPECT_EQ("Error! :GetSongPathList2Error! :ReOrder", out.Finish());
  }
  {
    StdoutCapture out;
    EXPECT_EQ(0, man_.ResetAlbumOrderAndPath("/", "s"));
    EXPECT_EQ("Error! :GetSongPathList2Error! :ReOrder", out.Finish());
  }
}

}  // namespace
}  // namespace zansong_test
