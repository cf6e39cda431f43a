// The song insert compiled once: the same rows, results and messages as the
// insert text of AddSong2.
#include "db/song_insert.h"

#include <gtest/gtest.h>

#include <string>

#include "support/catalogue_fixture.h"
#include "support/stdout_capture.h"

namespace zansong_test {
namespace {

class SongInsertTest : public CatalogueTest {
 protected:
  // Every column of the song row with key id but the key itself, each
  // quoted by SQLite so that types show.
  std::string RowWithoutKey(int id) {
    return Text(
        "SELECT quote(pfix)||quote(song_title)||quote(midi_path)||quote(audio_path)||"
        "quote(disp_order)||quote(format)||quote(length)||quote(ctime)||quote(mtime)||"
        "quote(album_id)||quote(sync_id)||quote(performer)||quote(composer)||quote(tags)||"
        "quote(md5)||quote(genre)||quote(coverart_path)||quote(purchased_date) "
        "FROM song WHERE song_id = " +
        std::to_string(id));
  }
};

SongInfo FullInfo() {
  SongInfo info;
  info.title = "It's \x83\x73\x83\x41\x83\x6d";  // a quote and Shift-JIS bytes
  info.midiPath = "A/it's.mid";
  info.audioPath = "A/it's.wav";
  info.format = "SMF,WAV";
  info.mtime = "Sun Nov  2 18:49:23 2025";
  info.syncId = "0123456789ABCDEF0123456789ABCDEF";
  info.performer = "never written";
  info.composer = "123";  // digits stay text
  info.tags = "never written";
  info.purchasedDate = "2019/01/01";
  info.genre = "Jazz";
  info.coverartPath = "A/zanalbum.jpg";
  info.length = 98765;
  return info;
}

TEST_F(SongInsertTest, WritesTheRowOfTheInsertText) {
  SongInfo info = FullInfo();
  char ctime[] = "Mon Nov  3 01:02:03 2025";
  ASSERT_EQ(1, man_.AddSong2(7, 1, 5, &info, ctime, "s"));
  zansong::SongInsert compiled(man_);
  ASSERT_EQ(1, zansong::AddSong2(compiled, 7, 2, 5, &info, ctime, "s"));
  EXPECT_EQ(RowWithoutKey(1), RowWithoutKey(2));
  EXPECT_NE("", RowWithoutKey(1));
  // Null texts are written as empty texts, as the text form does.
  SongInfo empty;
  ASSERT_EQ(1, man_.AddSong2(0, 3, 0, &empty, nullptr, nullptr));
  ASSERT_EQ(1, zansong::AddSong2(compiled, 0, 4, 0, &empty, nullptr, nullptr));
  EXPECT_EQ(RowWithoutKey(3), RowWithoutKey(4));
  EXPECT_NE("", RowWithoutKey(3));
}

TEST_F(SongInsertTest, ReportsFailureAsTheTextDoesAndGoesOn) {
  SongInfo info = FullInfo();
  char ctime[] = "c";
  zansong::SongInsert compiled(man_);
  ASSERT_EQ(1, zansong::AddSong2(compiled, 4, 40, 9, &info, ctime, "f"));
  StdoutCapture out;
  EXPECT_EQ(0, zansong::AddSong2(compiled, 4, 40, 9, &info, ctime, "f"));  // the key is taken
  EXPECT_EQ("DB: error UNIQUE constraint failed: song.song_id\nError! :AddSong2", out.Finish());
  EXPECT_EQ(1, zansong::AddSong2(compiled, 4, 41, 10, &info, ctime, "f"));
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM song"));
}

TEST_F(SongInsertTest, ReportsAMissingTable) {
  Exec("DROP TABLE song");
  SongInfo info;
  zansong::SongInsert compiled(man_);
  StdoutCapture out;
  EXPECT_EQ(0, zansong::AddSong2(compiled, 1, 1, 1, &info, nullptr, "s"));
  EXPECT_EQ("DB: error no such table: song\nError! :AddSong2", out.Finish());
}

TEST_F(SongInsertTest, FollowsTheManagerToANewConnection) {
  SongInfo info;
  zansong::SongInsert compiled(man_);
  ASSERT_EQ(1, zansong::AddSong2(compiled, 1, 1, 1, &info, nullptr, "s"));
  man_.Close();
  ASSERT_EQ(1, man_.Open());
  ASSERT_EQ(1, zansong::AddSong2(compiled, 1, 2, 2, &info, nullptr, "s"));
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM song"));
}

}  // namespace
}  // namespace zansong_test
