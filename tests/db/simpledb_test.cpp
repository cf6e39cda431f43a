// SimpleDB: the light connection of the counting queries.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

#include "support/catalogue_fixture.h"

namespace zansong_test {
namespace {

using SimpleDbTest = CatalogueTest;

TEST_F(SimpleDbTest, SimpleDBReadsRowsUntilTheCallbackStops) {
  Exec("INSERT INTO album(album_id) VALUES(1),(2),(3)");
  SimpleDB db;
  ASSERT_EQ(0, db.open(image_.SongRoot().c_str(), nullptr));
  int rows = 0;
  EXPECT_EQ(SQLITE_DONE, db.read("SELECT album_id FROM album", [&rows](sqlite3_stmt*) {
    ++rows;
    return 0;
  }));
  EXPECT_EQ(3, rows);
  rows = 0;
  EXPECT_EQ(SQLITE_ROW, db.read("SELECT album_id FROM album", [&rows](sqlite3_stmt*) {
    ++rows;
    return 1;
  }));
  EXPECT_EQ(1, rows);
  EXPECT_EQ(SQLITE_ERROR, db.read("SELECT * FROM nowhere", [](sqlite3_stmt*) { return 0; }));
  db.close();
  EXPECT_EQ(1, db.read("SELECT 1", [](sqlite3_stmt*) { return 0; }));
}

TEST_F(SimpleDbTest, SimpleDBOpensDirPlusName) {
  std::string dir = image_.Path("/tmp/");
  ExecOn(dir + "other.db", "CREATE TABLE t(x); INSERT INTO t VALUES(42)");
  SimpleDB db;
  ASSERT_EQ(0, db.open(dir.c_str(), "other.db"));
  int value = 0;
  db.read("SELECT x FROM t", [&value](sqlite3_stmt* row) {
    value = sqlite3_column_int(row, 0);
    return 1;
  });
  EXPECT_EQ(42, value);
}

TEST_F(SimpleDbTest, SimpleDBRefusesOverlongPathsAndMissingDirectories) {
  SimpleDB db;
  std::string dir = image_.Path("/tmp/") + std::string(300, 'd') + "/";
  EXPECT_EQ(-1, db.open(dir.c_str(), nullptr));
  EXPECT_EQ(-1, db.open(nullptr, nullptr));
  EXPECT_EQ(-1, db.open(image_.Path("/no/such/dir/").c_str(), nullptr));
}

}  // namespace
}  // namespace zansong_test
