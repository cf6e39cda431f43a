// FH_delete_song and FH_delete_album: files first, then rows; protected
// folders; the codes of every failure.
#include "zansong/fileman/delete.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "fileman/organise_test_helpers.h"
#include "support/child_process.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/messages.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class DeleteTest : public OrganiseTest {
 protected:
  int Count(const std::string& table, const std::string& where = "1") {
    return Int("SELECT COUNT(*) FROM " + table + " WHERE " + where);
  }
  // The one line FH_delete_album prints per id.
  static std::string NoticeLine() {
    StdoutCapture capture;
    PrintRemoconMessage(kMsgDeleting, kButtonNone);
    return capture.Finish();
  }
  std::string MissingRoot() const { return image_.root() + "/no/such/root/"; }
};

TEST_F(DeleteTest, DeletingASongRemovesItsFilesRowAndEntriesOfItsPrefix) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid", "A/one.wav");
  AddSong(2, 1, "A/two.mid");
  WriteFile(root_ + "A/one.jpg", "picture");
  AddPlaylist(1, "L");
  AddEntry(1, 1, 1, "s");
  AddEntry(2, 1, 1, "r");
  AddEntry(3, 1, 2, "s");
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_delete_song(root_.c_str(), ids, "s"));
  EXPECT_FALSE(PathExists(root_ + "A/one.mid"));
  EXPECT_FALSE(PathExists(root_ + "A/one.wav"));
  EXPECT_TRUE(PathExists(root_ + "A/one.jpg"));  // only downloaded songs lose it
  EXPECT_TRUE(PathExists(root_ + "A/two.mid"));
  EXPECT_EQ(0, Count("song", "song_id=1"));
  EXPECT_EQ(1, Count("song", "song_id=2"));
  EXPECT_EQ((std::vector<std::string>{"2|r", "3|s"}),
            Rows("SELECT psong_id, pfix FROM psong ORDER BY psong_id"));
}

TEST_F(DeleteTest, ADownloadedSongLosesItsPicture) {
  AddAlbum(1, "Downloaded Songs/A", "A", "y");
  AddSong(1, 1, "Downloaded Songs/A/one.mid", "Downloaded Songs/A/one.mp3", "y");
  WriteFile(root_ + "Downloaded Songs/A/one.jpg", "picture");
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_delete_song(root_.c_str(), ids, "y"));
  EXPECT_FALSE(PathExists(root_ + "Downloaded Songs/A/one.jpg"));
  EXPECT_FALSE(PathExists(root_ + "Downloaded Songs/A/one.mp3"));
  EXPECT_EQ(0, Count("song"));
}

TEST_F(DeleteTest, AMissingSongEndsTheListWithNoData) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddSong(3, 1, "A/three.mid");
  std::list<int> ids = Ids({1, 2, 3});
  EXPECT_EQ(kResultNoData, FH_delete_song(root_.c_str(), ids, "s"));
  EXPECT_EQ(0, Count("song", "song_id=1"));
  EXPECT_EQ(1, Count("song", "song_id=3"));
  EXPECT_TRUE(PathExists(root_ + "A/three.mid"));
}

TEST_F(DeleteTest, ASongFileThatCannotBeRemovedKeepsItsRows) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddSong(2, 1, "B/two.mid");
  AddPlaylist(1, "L");
  AddEntry(1, 1, 2);
  const std::string album = root_ + "A";
  const std::string root = root_;
  // The first song's directory is read-only for the child (a read-only
  // bind mount holds for root too); the second song sits elsewhere.
  int status = RunInChild([&] {
    if (!MakeDirReadOnlyForThisProcess(album)) return kChildSetupFailed;
    std::list<int> ids = Ids({2, 1});
    return FH_delete_song(root.c_str(), ids, "s");
  });
  ASSERT_NE(kChildSetupFailed, status);
  EXPECT_EQ(256 + kResultDeleteError, status);
  EXPECT_TRUE(PathExists(root_ + "A/one.mid"));
  EXPECT_EQ(1, Count("song", "song_id=1"));
  EXPECT_EQ(0, Count("song", "song_id=2"));
  EXPECT_EQ(0, Count("psong"));
}

TEST_F(DeleteTest, DeleteSongOfAnUnopenableCatalogue) {
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultDbFail, FH_delete_song(MissingRoot().c_str(), ids, "s"));
}

TEST_F(DeleteTest, DeletingAnAlbumRemovesItsDirectoryAndRows) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddSong(2, 1, "A/two.mid", "A/two.wav");
  WriteFile(root_ + "A/.zanalbum", "A");
  WriteFile(root_ + "A/zanalbum.jpg", "cover");
  AddAlbum(2, "B");
  AddSong(3, 2, "B/three.mid");
  AddPlaylist(1, "L");
  AddEntry(1, 1, 1);
  AddEntry(2, 1, 3);
  std::list<int> ids = Ids({1});
  StdoutCapture capture;
  int result = FH_delete_album(root_.c_str(), ids, "s");
  std::string printed = capture.Finish();
  ASSERT_EQ(kResultOk, result);
  EXPECT_EQ(NoticeLine(), printed);
  EXPECT_FALSE(PathExists(root_ + "A"));
  EXPECT_EQ((std::vector<std::string>{"2"}), Rows("SELECT album_id FROM album"));
  EXPECT_EQ((std::vector<std::string>{"3"}), Rows("SELECT song_id FROM song"));
  EXPECT_EQ((std::vector<std::string>{"3"}), Rows("SELECT song_id FROM psong"));
  EXPECT_TRUE(PathExists(root_ + "B/three.mid"));
}

TEST_F(DeleteTest, DeletingRecordedSongsEmptiesTheFolderAndKeepsItsRow) {
  AddAlbum(1, "Recorded Songs", "Recorded Songs", "r");
  AddSong(1, 1, "Recorded Songs/one.mid", "", "r");
  AddSong(2, 1, "Recorded Songs/two.mid", "", "r");
  MakeDirs(root_ + "Recorded Songs/Keep");
  AddPlaylist(1, "L");
  AddEntry(1, 1, 1, "r");
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_delete_album(root_.c_str(), ids, "r"));
  EXPECT_TRUE(PathExists(root_ + "Recorded Songs/Keep"));
  EXPECT_FALSE(PathExists(root_ + "Recorded Songs/one.mid"));
  EXPECT_EQ(1, Count("album"));
  EXPECT_EQ(0, Count("song"));
  EXPECT_EQ(0, Count("psong"));
}

TEST_F(DeleteTest, AProtectedFirstAlbumKeepsTheRowsOfTheLaterAlbumsToo) {
  AddAlbum(1, "FromToPC", "FromToPC", "f");
  AddAlbum(2, "FromToPC/B", "B", "f");
  AddSong(1, 1, "FromToPC/one.mid", "", "f");
  AddSong(2, 2, "FromToPC/B/two.mid", "", "f");
  std::list<int> ids = Ids({1, 2});
  ASSERT_EQ(kResultOk, FH_delete_album(root_.c_str(), ids, "f"));
  EXPECT_FALSE(PathExists(root_ + "FromToPC/B"));
  EXPECT_TRUE(PathExists(root_ + "FromToPC"));
  EXPECT_EQ(2, Count("album"));
  EXPECT_EQ(0, Count("song"));
}

TEST_F(DeleteTest, AnAlbumWithOtherFilesLosesItsSongsAndRowsButKeepsTheDirectory) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  WriteFile(root_ + "A/notes.txt", "mine");
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_delete_album(root_.c_str(), ids, "s"));
  EXPECT_TRUE(PathExists(root_ + "A/notes.txt"));
  EXPECT_FALSE(PathExists(root_ + "A/one.mid"));
  EXPECT_EQ(0, Count("album"));
  EXPECT_EQ(0, Count("song"));
}

TEST_F(DeleteTest, ASongFileThatCannotBeRemovedEndsBeforeAnyRow) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddAlbum(2, "B");
  AddSong(2, 2, "B/two.mid");
  const std::string album = root_ + "A";
  const std::string root = root_;
  int status = RunInChild([&] {
    if (!MakeDirReadOnlyForThisProcess(album)) return kChildSetupFailed;
    std::list<int> ids = Ids({1, 2});
    return FH_delete_album(root.c_str(), ids, "s");
  });
  ASSERT_NE(kChildSetupFailed, status);
  EXPECT_EQ(256 + kResultWriteProtected, status);
  EXPECT_EQ(2, Count("album"));
  EXPECT_EQ(2, Count("song"));
  EXPECT_TRUE(PathExists(root_ + "B/two.mid"));
}

TEST_F(DeleteTest, AMissingDirectoryDeletesThisAlbumsRowsThenStops) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddAlbum(2, "B");
  AddSong(2, 2, "B/two.mid");
  std::filesystem::remove_all(root_ + "A");
  std::list<int> ids = Ids({1, 2});
  StdoutCapture capture;
  int result = FH_delete_album(root_.c_str(), ids, "s");
  std::string printed = capture.Finish();
  EXPECT_EQ(kResultRepairFailed, result);
  EXPECT_EQ(NoticeLine(), printed);
  EXPECT_EQ((std::vector<std::string>{"2"}), Rows("SELECT album_id FROM album"));
  EXPECT_EQ((std::vector<std::string>{"2"}), Rows("SELECT song_id FROM song"));
  EXPECT_TRUE(PathExists(root_ + "B/two.mid"));
}

TEST_F(DeleteTest, AnUnknownAlbumIdTouchesNothing) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddSong(2, 0, "loose.mid");
  std::list<int> ids = Ids({1, 7});
  EXPECT_EQ(kResultNoData, FH_delete_album(root_.c_str(), ids, "s"));
  EXPECT_EQ(0, Count("album"));
  // The storage root keeps its songs.
  EXPECT_TRUE(PathExists(root_ + "loose.mid"));
  EXPECT_EQ(1, Count("song", "song_id=2"));
}

TEST_F(DeleteTest, DeletingPlaylistsDeletesTheirEntriesOnly) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddPlaylist(1, "L");
  AddPlaylist(2, "M");
  AddEntry(1, 1, 1);
  AddEntry(2, 2, 1);
  std::list<int> ids = Ids({1});
  StdoutCapture capture;
  int result = FH_delete_album(root_.c_str(), ids, "l");
  std::string printed = capture.Finish();
  ASSERT_EQ(kResultOk, result);
  EXPECT_EQ(NoticeLine(), printed);
  EXPECT_EQ((std::vector<std::string>{"2"}), Rows("SELECT playlist_id FROM playlist"));
  EXPECT_EQ((std::vector<std::string>{"2"}), Rows("SELECT psong_id FROM psong"));
  EXPECT_EQ(1, Count("song"));
  EXPECT_TRUE(PathExists(root_ + "A/one.mid"));
}

TEST_F(DeleteTest, DownloadedAlbumLosesPicturesWithItsSongs) {
  AddAlbum(1, "Downloaded Songs/A", "A", "y");
  AddSong(1, 1, "Downloaded Songs/A/one.mid", "", "y");
  WriteFile(root_ + "Downloaded Songs/A/one.jpg", "picture");
  WriteFile(root_ + "Downloaded Songs/A/zanalbum.jpg", "cover");
  std::list<int> ids = Ids({1});
  ASSERT_EQ(kResultOk, FH_delete_album(root_.c_str(), ids, "y"));
  EXPECT_FALSE(PathExists(root_ + "Downloaded Songs/A"));
  EXPECT_TRUE(PathExists(root_ + "Downloaded Songs"));
}

TEST_F(DeleteTest, DeleteAlbumOfAnUnopenableCatalogue) {
  std::list<int> ids = Ids({1});
  EXPECT_EQ(kResultDbFail, FH_delete_album(MissingRoot().c_str(), ids, "s"));
}

TEST_F(DeleteTest, AnotherProcessWritesDuringALargeGroupedDelete) {
  AddAlbum(1, "A");
  const int kSongs = 998;
  FillRows("song", 1, kSongs,
           "'s', i, 'S' || i, 'A/' || i || '.mid', '', i, 'SMF', 0, '', 'm', 1, '', '', '', '', "
           "'', '', '', ''");
  for (int i = 1; i <= kSongs; ++i) WriteFile(root_ + "A/" + std::to_string(i) + ".mid", "x");
  const std::string db = Db();
  const int kInserts = 20;
  std::fflush(stdout);
  pid_t writer = fork();
  if (writer == 0) {
    int failures = 0;
    usleep(30000);
    for (int i = 0; i < kInserts; ++i) {
      sqlite3* handle = nullptr;
      if (sqlite3_open(db.c_str(), &handle) != SQLITE_OK) ++failures;
      sqlite3_busy_timeout(handle, 1000);
      std::string sql = "INSERT INTO playlist VALUES('l'," + std::to_string(i + 1) + ",'L',1)";
      if (sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) ++failures;
      sqlite3_close(handle);
      usleep(10000);
    }
    _exit(failures);
  }
  std::list<int> ids;
  for (int i = 1; i <= kSongs; ++i) ids.push_back(i);
  EXPECT_EQ(kResultOk, FH_delete_song(root_.c_str(), ids, "s"));
  int status = 0;
  waitpid(writer, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(0, WEXITSTATUS(status)) << "inserts that timed out";
  EXPECT_EQ(kInserts, Count("playlist"));
  EXPECT_EQ(0, Count("song"));
}

TEST(IsDeletePathTest, OnlyTheCategoryFoldersAndTheRootAreProtected) {
  for (const char* path : {"Recorded Songs", "Recorded Songs/Temporary Folder",
                           "Recorded Songs/Keep", "Downloaded Songs", "FromToPC", ""}) {
    EXPECT_FALSE(IsDeletePath(path)) << path;
  }
  for (const char* path : {"Downloaded Songs/Single Songs", "Recorded Songs/Album",
                           "recorded songs", "FromToPC/", "A", "preset"}) {
    EXPECT_TRUE(IsDeletePath(path)) << path;
  }
}

TEST(TodaysDateTest, IsTodayAsYearMonthDay) {
  std::time_t before = std::time(nullptr);
  std::string text = GetTodaysDateString().c_str();
  std::time_t after = std::time(nullptr);
  ASSERT_TRUE(std::regex_match(text, std::regex("[0-9]{4}-[0-9]{2}-[0-9]{2}"))) << text;
  char expected[2][16];
  std::strftime(expected[0], 16, "%Y-%m-%d", std::localtime(&before));
  std::strftime(expected[1], 16, "%Y-%m-%d", std::localtime(&after));
  EXPECT_TRUE(text == expected[0] || text == expected[1]) << text;
}

}  // namespace
}  // namespace zansong_test
