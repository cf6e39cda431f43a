// Finding, creating, checking, upgrading, compacting and copying a
// catalogue file.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "common/process.h"
#include "support/catalogue_fixture.h"
#include "support/stdout_capture.h"

namespace zansong_test {
namespace {

// A catalogue of the oldest kind: none of the columns added later.
const char* kOldSchema =
    "CREATE TABLE album (pfix TEXT, album_id INTEGER, album_title TEXT, album_path TEXT, "
    "disp_order INTEGER);"
    "CREATE TABLE song (pfix TEXT, song_id INTEGER, song_title TEXT, midi_path TEXT, "
    "audio_path TEXT, disp_order INTEGER, format TEXT, length INTEGER, ctime TEXT, mtime TEXT, "
    "album_id INTEGER, sync_id TEXT, performer TEXT, composer TEXT, tags TEXT);"
    "CREATE TABLE playlist (ppfix TEXT, playlist_id INTEGER, playlist_title TEXT, "
    "disp_order INTEGER);"
    "CREATE TABLE psong (ppfix TEXT, psong_id INTEGER, playlist_id INTEGER, pfix TEXT, "
    "song_id INTEGER, disp_order INTEGER);";

std::string ColumnNames(const std::string& db, const std::string& table) {
  return TextOn(db, "SELECT group_concat(name, ',') FROM (SELECT name FROM pragma_table_info('" +
                        table + "') ORDER BY cid)");
}

bool HasTables(const std::string& db) {
  return IntOn(db,
               "SELECT COUNT(*) FROM sqlite_master WHERE type='table' AND name IN "
               "('album','song','playlist','psong')") == 4;
}

// Points the image's sqlite3 program at one that always fails.
void BreakSqliteProgram(const DeviceImage& image) {
  std::string program = image.Path("/usr/local/bin/sqlite3");
  unlink(program.c_str());
  ASSERT_EQ(0, symlink("/bin/false", program.c_str()));
}

TEST_F(DeviceTest, InitDBCreatesACatalogueFromTheSchemaScript) {
  TDBMan man;
  std::string root = image_.SongRoot();
  StdoutCapture out;
  EXPECT_EQ(1, man.InitDB(root.c_str()));
  EXPECT_EQ("", out.Finish());
  EXPECT_EQ(root + ".zansong.db", man.dbPath.c_str());
  EXPECT_EQ("", std::string(man.usbDbPath.c_str()));
  EXPECT_TRUE(HasTables(root + ".zansong.db"));
  EXPECT_EQ(nullptr, man.db) << "InitDB leaves the connection closed";
}

TEST_F(DeviceTest, InitDBAddsTheFinalSlashToAnOrdinaryDirectory) {
  std::string dir = image_.Path("/usr/local/songs/sub");
  MakeDirs(dir);
  TDBMan man;
  EXPECT_EQ(1, man.InitDB(dir.c_str()));
  EXPECT_EQ(dir + "/.zansong.db", man.dbPath.c_str());
}

TEST_F(DeviceTest, InitDBOfAStickRootWithOrWithoutSlashUsesTheWorkingCopy) {
  std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, stick + ".zansong.db");
  ExecOn(stick + ".zansong.db", "INSERT INTO album(pfix,album_id,album_path) VALUES('s',7,'A')");
  for (std::string dir : {stick, stick.substr(0, stick.size() - 1)}) {
    TDBMan man;
    EXPECT_EQ(1, man.InitDB(dir.c_str())) << dir;
    EXPECT_EQ(image_.WorkingDb(), man.dbPath.c_str());
    EXPECT_EQ(stick + ".zansong.db", man.usbDbPath.c_str());
    EXPECT_EQ(7, IntOn(image_.WorkingDb(), "SELECT album_id FROM album"));
  }
}

TEST_F(DeviceTest, InitDBKeepsAnExistingWorkingCopy) {
  std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, stick + ".zansong.db");
  CreateCatalogue(image_, image_.WorkingDb());
  ExecOn(image_.WorkingDb(), "INSERT INTO album(pfix,album_id,album_path) VALUES('s',3,'W')");
  TDBMan man;
  EXPECT_EQ(1, man.InitDB(stick.c_str()));
  EXPECT_EQ("W", TextOn(image_.WorkingDb(), "SELECT album_path FROM album"));
}

TEST_F(DeviceTest, InitDBOfAStickWithoutCatalogueCreatesTheWorkingCopy) {
  std::string stick = image_.UsbRoot("sda1");
  TDBMan man;
  EXPECT_EQ(1, man.InitDB(stick.c_str()));
  EXPECT_TRUE(HasTables(image_.WorkingDb()));
  EXPECT_FALSE(PathExists(stick + ".zansong.db"));
}

TEST_F(DeviceTest, InitDBOfTheShortStickNameAlsoUsesTheWorkingCopy) {
  std::string stick = image_.UsbRoot("sda");
  TDBMan man;
  EXPECT_EQ(1, man.InitDB(stick.c_str()));
  EXPECT_EQ(image_.WorkingDb(), man.dbPath.c_str());
}

TEST_F(DeviceTest, InitDBOfSda10IsAnOrdinaryDirectory) {
  std::string dir = image_.UsbRoot("sda10");
  TDBMan man;
  EXPECT_EQ(1, man.InitDB(dir.c_str()));
  EXPECT_EQ(dir + ".zansong.db", man.dbPath.c_str());
  EXPECT_EQ("", std::string(man.usbDbPath.c_str()));
  EXPECT_TRUE(HasTables(dir + ".zansong.db"));
  EXPECT_FALSE(PathExists(image_.WorkingDb()));
}

TEST_F(DeviceTest, UpgradeAddsTheMissingColumnsInOrderAndOnlyOnce) {
  std::string db = image_.SongRoot() + ".zansong.db";
  ExecOn(db, kOldSchema);
  {
    TDBMan man;
    StdoutCapture out;
    EXPECT_EQ(1, man.InitDB(image_.SongRoot().c_str()));
    EXPECT_EQ("", out.Finish());
  }
  EXPECT_EQ(
      "pfix,song_id,song_title,midi_path,audio_path,disp_order,format,length,ctime,mtime,"
      "album_id,sync_id,performer,composer,tags,md5,genre,coverart_path,purchased_date",
      ColumnNames(db, "song"));
  EXPECT_EQ("pfix,album_id,album_title,album_path,disp_order,coverart_path,purchased_date",
            ColumnNames(db, "album"));
  EXPECT_EQ("TEXT", TextOn(db, "SELECT type FROM pragma_table_info('song') WHERE name='genre'"));

  std::string schema = TextOn(db, "SELECT group_concat(sql, ';') FROM sqlite_master");
  TDBMan again;
  StdoutCapture out;
  EXPECT_EQ(1, again.InitDB(image_.SongRoot().c_str()));
  EXPECT_EQ("", out.Finish());
  EXPECT_EQ(schema, TextOn(db, "SELECT group_concat(sql, ';') FROM sqlite_master"));
}

TEST_F(DeviceTest, AColumnDeclaredWithAnotherTypeIsNotAddedAgain) {
  std::string db = image_.SongRoot() + ".zansong.db";
  CreateCatalogue(image_, db);
  // A song table whose genre is an INTEGER column.
  ExecOn(db,
         "DROP TABLE song; CREATE TABLE song (pfix TEXT, song_id INTEGER, song_title TEXT, "
         "midi_path TEXT, audio_path TEXT, disp_order INTEGER, format TEXT, length INTEGER, "
         "ctime TEXT, mtime TEXT, album_id INTEGER, sync_id TEXT, performer TEXT, composer "
         "TEXT, tags TEXT, md5 TEXT, genre INTEGER, coverart_path TEXT, purchased_date TEXT)");
  TDBMan man;
  StdoutCapture out;
  EXPECT_EQ(1, man.InitDB(image_.SongRoot().c_str()));
  EXPECT_EQ("DB: error duplicate column name: genre\n", out.Finish());
  EXPECT_EQ("INTEGER", TextOn(db, "SELECT type FROM pragma_table_info('song') WHERE name='genre'"));
}

TEST_F(DeviceTest, ACatalogueWithoutAlbumTableIsMovedAsideAndRecreated) {
  std::string db = image_.SongRoot() + ".zansong.db";
  ExecOn(db, "CREATE TABLE song (pfix TEXT, song_id INTEGER); INSERT INTO song VALUES('s', 5)");
  std::string before = ReadFile(db);
  TDBMan man;
  StdoutCapture out;
  EXPECT_EQ(1, man.InitDB(image_.SongRoot().c_str()));
  EXPECT_EQ("DB broken!\n", out.Finish());
  EXPECT_TRUE(HasTables(db));
  EXPECT_EQ(0, IntOn(db, "SELECT COUNT(*) FROM song"));
  EXPECT_EQ(before, ReadFile(db + ".broken"));
}

TEST_F(DeviceTest, ACatalogueOfRandomBytesIsMovedAsideAndRecreated) {
  std::string db = image_.SongRoot() + ".zansong.db";
  std::string garbage;
  unsigned state = 12345;
  for (int i = 0; i < 8192; ++i) {
    state = state * 1103515245u + 12345u;
    garbage.push_back(static_cast<char>(state >> 16));
  }
  WriteFile(db, garbage);
  WriteFile(db + ".broken", "an older broken file");
  TDBMan man;
  StdoutCapture out;
  EXPECT_EQ(1, man.InitDB(image_.SongRoot().c_str()));
  EXPECT_EQ("DB broken!\n", out.Finish());
  EXPECT_EQ(garbage, ReadFile(db + ".broken"));
  EXPECT_TRUE(HasTables(db));
  EXPECT_EQ(0, IntOn(db, "SELECT COUNT(*) FROM album"));
}

TEST_F(DeviceTest, ALockedCatalogueIsLeftUntouched) {
  std::string db = image_.SongRoot() + ".zansong.db";
  CreateCatalogue(image_, db);
  ExecOn(db, "INSERT INTO album(pfix,album_id,album_path) VALUES('s',1,'Kept')");
  std::string before = ReadFile(db);
  {
    LockHolder holder(image_, db, "BEGIN EXCLUSIVE;", 1500);
    ASSERT_TRUE(holder.WaitUntilHeld());
    TDBMan man;
    StdoutCapture out;
    EXPECT_EQ(0, man.InitDB(image_.SongRoot().c_str()));
    EXPECT_EQ("DB: error database is locked\n", out.Finish());
    EXPECT_EQ(before, ReadFile(db));
    EXPECT_FALSE(PathExists(db + ".broken"));
    EXPECT_EQ(0, holder.Join());
  }
  EXPECT_EQ(before, ReadFile(db));
  TDBSongMan man;
  EXPECT_EQ(1, man.InitDB(image_.SongRoot().c_str()));
  ASSERT_EQ(1, man.Open());
  EXPECT_EQ(1, man.GetAlbumIDByPath("Kept"));
}

TEST_F(DeviceTest, ACatalogueThatCannotBeOpenedIsLeftUntouched) {
  // A directory in the catalogue's place.
  std::string db = image_.SongRoot() + ".zansong.db";
  MakeDirs(db);
  TDBMan man;
  StdoutCapture out;
  EXPECT_EQ(0, man.InitDB(image_.SongRoot().c_str()));
  std::string printed = out.Finish();
  EXPECT_EQ(0u, printed.find("DB: error ")) << printed;
  EXPECT_FALSE(PathExists(db + ".broken"));
}

TEST_F(DeviceTest, CreateDBReportsAFailingSqliteProgram) {
  BreakSqliteProgram(image_);
  TDBMan man;
  StdoutCapture out;
  EXPECT_EQ(0, man.InitDB(image_.SongRoot().c_str()));
  EXPECT_EQ("Create DB error!", out.Finish());
}

TEST_F(DeviceTest, VacuumDBCompactsAndReportsFailure) {
  TDBSongMan man;
  ASSERT_EQ(1, man.InitDB(image_.SongRoot().c_str()));
  std::string db = man.dbPath.c_str();
  ExecOn(db,
         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<2000) "
         "INSERT INTO song(song_id, song_title) SELECT i, printf('%0500d', i) FROM n;"
         "DELETE FROM song;");
  size_t before = ReadFile(db).size();
  EXPECT_EQ(1, man.VacuumDB());
  EXPECT_LT(ReadFile(db).size(), before);
  BreakSqliteProgram(image_);
  StdoutCapture out;
  EXPECT_EQ(0, man.VacuumDB());
  EXPECT_EQ("Vacuum error!", out.Finish());
}

TEST_F(DeviceTest, DbVacuumCompactsAnExistingCatalogueOnly) {
  std::string root = image_.SongRoot();
  std::string dir = root.substr(0, root.size() - 1);  // without the final "/"
  {
    StdoutCapture out;
    db_vacuum(&dir[0]);
    EXPECT_EQ("", out.Finish());
    EXPECT_FALSE(PathExists(root + ".zansong.db"));
  }
  CreateCatalogue(image_, root + ".zansong.db");
  ExecOn(root + ".zansong.db",
         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<2000) "
         "INSERT INTO song(song_id, song_title) SELECT i, printf('%0500d', i) FROM n;"
         "DELETE FROM song;");
  size_t before = ReadFile(root + ".zansong.db").size();
  db_vacuum(&dir[0]);
  EXPECT_LT(ReadFile(root + ".zansong.db").size(), before);
  BreakSqliteProgram(image_);
  StdoutCapture out;
  db_vacuum(&dir[0]);
  EXPECT_EQ("Vacuum error!", out.Finish());
}

TEST_F(DeviceTest, UsbdbCopyReplacesTheWorkingCopy) {
  std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, stick + ".zansong.db");
  ExecOn(stick + ".zansong.db", "INSERT INTO album(pfix,album_id,album_path) VALUES('s',1,'S')");
  CreateCatalogue(image_, image_.WorkingDb());
  usbdb_copy(&stick[0]);
  EXPECT_EQ(ReadFile(stick + ".zansong.db"), ReadFile(image_.WorkingDb()));
}

TEST_F(DeviceTest, UsbdbCopyIgnoresOtherDirectories) {
  std::string root = image_.SongRoot();
  CreateCatalogue(image_, root + ".zansong.db");
  usbdb_copy(&root[0]);
  EXPECT_FALSE(PathExists(image_.WorkingDb()));
}

TEST_F(DeviceTest, UsbdbCopyReportsAFailedCopy) {
  std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, stick + ".zansong.db");
  zansong::RunProgram({"rm", "-rf", image_.Path("/tmp")});  // no place for the copy
  StdoutCapture out;
  usbdb_copy(&stick[0]);
  EXPECT_EQ("DB copy error!", out.Finish());
}

TEST_F(DeviceTest, InitDBReportsAFailedCopyOfTheStickCatalogue) {
  std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, stick + ".zansong.db");
  zansong::RunProgram({"rm", "-rf", image_.Path("/tmp")});
  TDBMan man;
  StdoutCapture out;
  EXPECT_EQ(0, man.InitDB(stick.c_str()));
  EXPECT_EQ("DB copy error!Create DB error!", out.Finish());
}

}  // namespace
}  // namespace zansong_test
