// TDBMan's connection and statement operations, and waiting for another
// process's lock.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

#include "support/catalogue_fixture.h"
#include "support/stdout_capture.h"

namespace zansong_test {
namespace {

using DbManTest = CatalogueTest;

TEST_F(DbManTest, OpenReplacesTheConnectionAndCloseClearsIt) {
  sqlite3* first = man_.db;
  ASSERT_NE(nullptr, first);
  EXPECT_EQ(1, man_.Open());
  EXPECT_NE(nullptr, man_.db);
  man_.Close();
  EXPECT_EQ(nullptr, man_.db);
  man_.Close();  // twice is harmless
}

TEST_F(DbManTest, OpenFailsForAPathThatCannotBeOpened) {
  man_.dbPath = image_.Path("/no/such/dir/x.db").c_str();
  EXPECT_EQ(0, man_.Open());
  EXPECT_EQ(nullptr, man_.db);
}

TEST_F(DbManTest, QueryReportsSqliteMessage) {
  char good[] = "CREATE TABLE extra(x); INSERT INTO extra VALUES(1)";
  EXPECT_EQ(1, man_.Query(good));
  EXPECT_EQ(1, Int("SELECT x FROM extra"));
  char bad[] = "INSERT INTO nowhere VALUES(1)";
  StdoutCapture out;
  EXPECT_EQ(0, man_.Query(bad));
  EXPECT_EQ("DB: error no such table: nowhere\n", out.Finish());
}

TEST_F(DbManTest, QueryWithoutConnectionFails) {
  man_.Close();
  char sql[] = "SELECT 1";
  StdoutCapture out;
  EXPECT_EQ(0, man_.Query(sql));
  EXPECT_EQ(0u, out.Finish().find("DB: error "));
}

TEST_F(DbManTest, PrepareStepAndReadColumns) {
  Exec(
      "INSERT INTO album(pfix,album_id,album_title,disp_order) VALUES('s',1,'One',1),"
      "('s',2,NULL,2)");
  EXPECT_EQ(SQLITE_OK, man_.Prepare("SELECT album_id, album_title FROM album ORDER BY album_id"));
  ASSERT_EQ(SQLITE_ROW, man_.Step());
  EXPECT_EQ(1, man_.Column_Int(0));
  EXPECT_STREQ("One", man_.Column_Text(1));
  ASSERT_EQ(SQLITE_ROW, man_.Step());
  EXPECT_EQ(nullptr, man_.Column_Text(1));
  EXPECT_EQ(SQLITE_DONE, man_.Step());
  EXPECT_EQ(SQLITE_OK, man_.Reset());
  EXPECT_EQ(SQLITE_ROW, man_.Step());
  EXPECT_EQ(SQLITE_OK, man_.Finalize());
  EXPECT_EQ(nullptr, man_.stmt);
}

TEST_F(DbManTest, PrepareDoesNotReportACompileFailureButPrepareV2Does) {
  EXPECT_EQ(SQLITE_OK, man_.Prepare("SELECT missing FROM nowhere"));
  EXPECT_EQ(nullptr, man_.stmt);
  EXPECT_EQ(SQLITE_ERROR, man_.Prepare_V2("SELECT missing FROM nowhere"));
  EXPECT_STREQ("no such table: nowhere", man_.ErrMsg());
  EXPECT_EQ(SQLITE_OK, man_.Prepare_V2("SELECT 7"));
  EXPECT_EQ(SQLITE_ROW, man_.Step());
  EXPECT_EQ(7, man_.Column_Int(0));
}

TEST_F(DbManTest, CloseFinalizesAPreparedStatement) {
  ASSERT_EQ(SQLITE_OK, man_.Prepare_V2("SELECT * FROM song"));
  man_.Close();
  EXPECT_EQ(nullptr, man_.stmt);
  EXPECT_EQ(nullptr, man_.db);
}

TEST_F(DbManTest, CheckTableHasFieldAndAddField) {
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.CheckTable("song"));
  EXPECT_EQ("SELECT COUNT(*) FROM sqlite_master WHERE type='table' and name='song'", log.last());
  EXPECT_EQ(0, man_.CheckTable("nothing"));
  EXPECT_TRUE(man_.HasField("song", "genre", "TEXT"));
  EXPECT_EQ("SELECT sql FROM sqlite_master WHERE type='table' and name='song'", log.last());
  EXPECT_TRUE(man_.HasField("song", "Genre", "text"));
  EXPECT_FALSE(man_.HasField("song", "genre", "INTEGER"));
  EXPECT_FALSE(man_.HasField("song", "rating", "TEXT"));
  EXPECT_FALSE(man_.HasField("nothing", "x", "TEXT"));
  EXPECT_EQ(1, man_.AddField("song", "rating", "TEXT"));
  EXPECT_EQ("ALTER TABLE song add column `rating` TEXT", log.last());
  EXPECT_TRUE(man_.HasField("song", "rating", "TEXT"));
  StdoutCapture out;
  EXPECT_EQ(0, man_.AddField("song", "rating", "TEXT"));
  EXPECT_EQ("DB: error duplicate column name: rating\n", out.Finish());
}

TEST_F(DbManTest, HasFieldIgnoresQuotesAndWhiteSpace) {
  Exec("CREATE TABLE odd (`a b`\tTEXT, 'quoted'\r\n  INTEGER)");
  EXPECT_TRUE(man_.HasField("odd", "ab", "TEXT"));
  EXPECT_TRUE(man_.HasField("odd", "quoted", "INTEGER"));
}

TEST_F(DbManTest, TheDestructorClosesTheConnection) {
  std::string db = DbFile();
  {
    TDBSongMan other;
    other.dbPath = db.c_str();
    ASSERT_EQ(1, other.Open());
    char begin[] = "BEGIN EXCLUSIVE";
    ASSERT_EQ(1, other.Query(begin));
  }
  // With the other connection gone, its lock is gone too.
  char insert[] = "INSERT INTO album(album_id) VALUES(5)";
  EXPECT_EQ(1, man_.Query(insert));
}

// Another process holds a write lock while an insert runs.
TEST_F(DbManTest, AnInsertWaitsForAShortLock) {
  LockHolder holder(image_, DbFile(), "BEGIN IMMEDIATE;", 500);
  ASSERT_TRUE(holder.WaitUntilHeld());
  SongInfo info;
  info.title = "waited";
  char ctime[] = "";
  StdoutCapture out;
  EXPECT_EQ(1, man_.AddSong2(1, 1, 1, &info, ctime, "s"));
  EXPECT_EQ("", out.Finish());
  EXPECT_EQ(0, holder.Join());
  EXPECT_EQ("waited", Text("SELECT song_title FROM song"));
}

TEST_F(DbManTest, AnInsertGivesUpOnALongLock) {
  LockHolder holder(image_, DbFile(), "BEGIN IMMEDIATE;", 1500);
  ASSERT_TRUE(holder.WaitUntilHeld());
  SongInfo info;
  info.title = "given up";
  char ctime[] = "";
  StdoutCapture out;
  EXPECT_EQ(0, man_.AddSong2(1, 1, 1, &info, ctime, "s"));
  EXPECT_EQ("DB: error database is locked\nError! :AddSong2", out.Finish());
  EXPECT_EQ(0, holder.Join());
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM song"));
}

}  // namespace
}  // namespace zansong_test
