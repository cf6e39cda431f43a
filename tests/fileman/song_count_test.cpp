// FM_GetSongCount, FM_IsRecSongFull and FM_IsPfixSongFull.
#include <gtest/gtest.h>

#include <string>

#include "support/catalogue_fixture.h"
#include "zansong/fileman/song_count.h"

namespace zansong_test {
namespace {

class SongCountTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.SongRoot();
    CreateCatalogue(image_, Db());
  }
  std::string Db() const { return dir_ + ".zansong.db"; }
  // Adds n songs of prefix pfix to album albumId, with fresh keys.
  void AddSongs(int n, const char* pfix, int albumId) {
    ExecOn(Db(), "WITH RECURSIVE k(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM k WHERE i<" +
                     std::to_string(n) +
                     ") INSERT INTO song(song_id,pfix,album_id) SELECT "
                     "(SELECT ifnull(MAX(song_id),0) FROM song)+i,'" +
                     pfix + "'," + std::to_string(albumId) + " FROM k");
  }
  void AddTemporaryFolder(int albumId) {
    ExecOn(Db(), "INSERT INTO album(pfix,album_id,album_path) VALUES('r'," +
                     std::to_string(albumId) + ",'Recorded Songs/Temporary Folder')");
  }
  std::string dir_;
};

TEST_F(SongCountTest, CountsWithEachFilter) {
  AddSongs(3, "s", 1);
  AddSongs(2, "s", 2);
  AddSongs(4, "y", 2);
  EXPECT_EQ(9, FM_GetSongCount(dir_.c_str(), nullptr, nullptr));
  EXPECT_EQ(5, FM_GetSongCount(dir_.c_str(), "s", nullptr));
  EXPECT_EQ(6, FM_GetSongCount(dir_.c_str(), nullptr, "2"));
  EXPECT_EQ(2, FM_GetSongCount(dir_.c_str(), "s", "2"));
  EXPECT_EQ(0, FM_GetSongCount(dir_.c_str(), "f", nullptr));
}

TEST_F(SongCountTest, AnEmptyCatalogueHasNoSongs) {
  EXPECT_EQ(0, FM_GetSongCount(dir_.c_str(), nullptr, nullptr));
}

TEST_F(SongCountTest, ADirectoryWithoutCatalogueGivesMinusOne) {
  std::string other = image_.Path("/tmp/empty/");
  MakeDirs(other);
  EXPECT_EQ(-1, FM_GetSongCount(other.c_str(), nullptr, nullptr));
  EXPECT_TRUE(PathExists(other + ".zansong.db"));  // SQLite made an empty file
  EXPECT_EQ(0, FM_IsRecSongFull(other.c_str()));
  EXPECT_EQ(0, FM_IsPfixSongFull(other.c_str(), "s"));
}

TEST_F(SongCountTest, ADirectoryWithoutFinalSlashNamesAFileInItsParent) {
  AddSongs(1, "s", 1);
  std::string noSlash = dir_.substr(0, dir_.size() - 1);
  EXPECT_EQ(-1, FM_GetSongCount(noSlash.c_str(), nullptr, nullptr));
  EXPECT_TRUE(PathExists(noSlash + ".zansong.db"));
}

TEST_F(SongCountTest, AnUnopenableCatalogueGivesTheInitialValues) {
  std::string missing = image_.Path("/no/such/dir/");
  EXPECT_EQ(-1, FM_GetSongCount(missing.c_str(), "s", "1"));
  EXPECT_EQ(0, FM_IsRecSongFull(missing.c_str()));
  EXPECT_EQ(0, FM_IsPfixSongFull(missing.c_str(), "s"));
  EXPECT_EQ(-1, FM_GetSongCount(nullptr, nullptr, nullptr));
}

TEST_F(SongCountTest, TheTemporaryFolderIsFullAt999Songs) {
  AddTemporaryFolder(4);
  AddSongs(998, "r", 4);
  AddSongs(5, "r", 5);
  EXPECT_EQ(0, FM_IsRecSongFull(dir_.c_str()));
  AddSongs(1, "r", 4);
  EXPECT_EQ(1, FM_IsRecSongFull(dir_.c_str()));
}

TEST_F(SongCountTest, WithoutATemporaryFolderRecordingsAreNeverFull) {
  AddSongs(1200, "r", 0);
  EXPECT_EQ(0, FM_IsRecSongFull(dir_.c_str()));
}

TEST_F(SongCountTest, APrefixIsFullAt4999Songs) {
  AddSongs(4998, "s", 1);
  AddSongs(10, "y", 1);
  EXPECT_EQ(0, FM_IsPfixSongFull(dir_.c_str(), "s"));
  AddSongs(1, "s", 2);
  EXPECT_EQ(1, FM_IsPfixSongFull(dir_.c_str(), "s"));
  EXPECT_EQ(0, FM_IsPfixSongFull(dir_.c_str(), "y"));
}

TEST_F(SongCountTest, AQuoteInAnArgumentIsPartOfTheValue) {
  AddSongs(3, "s", 1);
  EXPECT_EQ(0, FM_GetSongCount(dir_.c_str(), "x' OR 'a'='a", nullptr));
  EXPECT_EQ(0, FM_GetSongCount(dir_.c_str(), nullptr, "1' OR '1'='1"));
  EXPECT_EQ(0, FM_IsPfixSongFull(dir_.c_str(), "x' OR 'a'='a"));
  ExecOn(Db(), "INSERT INTO song(song_id,pfix,album_id) VALUES(100,'it''s',1)");
  EXPECT_EQ(1, FM_GetSongCount(dir_.c_str(), "it's", "1"));
}

TEST_F(SongCountTest, ALockedCatalogueGivesTheInitialValuesAtOnce) {
  AddTemporaryFolder(1);
  AddSongs(5000, "r", 1);
  LockHolder holder(image_, Db(), "BEGIN EXCLUSIVE;", 1000);
  ASSERT_TRUE(holder.WaitUntilHeld());
  EXPECT_EQ(-1, FM_GetSongCount(dir_.c_str(), "r", nullptr));
  EXPECT_EQ(0, FM_IsRecSongFull(dir_.c_str()));
  EXPECT_EQ(0, FM_IsPfixSongFull(dir_.c_str(), "r"));
  EXPECT_EQ(0, holder.Join());
  EXPECT_EQ(1, FM_IsPfixSongFull(dir_.c_str(), "r"));
}

}  // namespace
}  // namespace zansong_test
