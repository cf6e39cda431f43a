// FM_Copy_UlqSong on a USB stick: the purchase ends up in the stick's own
// catalogue, and no other stick's catalogue is written over it.
#include <gtest/gtest.h>

#include <string>

#include "fileman/download_test_helpers.h"
#include "zansong/limits.h"

namespace zansong_test {
namespace {

class DownloadStickTest : public DownloadTest {
 protected:
  std::string StickDb(const std::string& stick) { return stick + ".zansong.db"; }
  int StickSongs(const std::string& stick) {
    return IntOn(StickDb(stick), "SELECT COUNT(*) FROM song");
  }
  DownloadRecord SongFor(const std::string& albumDir, const std::string& name) {
    DownloadRecord rec = Record(albumDir, name);
    Put(rec.midiSource, Midi(name + ".mid"));
    return rec;
  }
};

TEST_F(DownloadStickTest, PurchaseOnAStickLandsInTheStickCatalogue) {
  const std::string stick = image_.UsbRoot("sda1");
  ASSERT_EQ(kResultOk, File(SongFor("Album", "bought"), stick));
  EXPECT_TRUE(PathExists(stick + "Downloaded Songs/Album/bought.mid"));
  EXPECT_EQ("bought", TextOn(StickDb(stick), "SELECT song_title FROM song"));
  EXPECT_NE(std::string::npos,
            ReadFile(image_.Path("/usr/local/www/ctrl/song.json")).find("bought"));
  // The stick root given without its final "/" is the same stick.
  const std::string bare = stick.substr(0, stick.size() - 1);
  ASSERT_EQ(kResultOk, File(SongFor("Album", "second"), bare));
  EXPECT_EQ(2, StickSongs(stick));
}

TEST_F(DownloadStickTest, WorkingCopyOfAnotherStickIsNotWrittenOverThisOne) {
  const std::string other = image_.UsbRoot("sdb1");
  ASSERT_EQ(kResultOk, File(SongFor("", "others"), other));
  const std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, StickDb(stick));
  ExecOn(StickDb(stick),
         "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,album_id) "
         "VALUES('s',7,'mine','Mine/mine.mid','',1,0)");
  ASSERT_EQ(kResultOk, File(SongFor("", "bought"), stick));
  EXPECT_EQ("bought,mine", TextOn(StickDb(stick),
                                  "SELECT group_concat(song_title,',') FROM "
                                  "(SELECT song_title FROM song ORDER BY 1)"));
  EXPECT_EQ("others", TextOn(StickDb(other), "SELECT group_concat(song_title,',') FROM song"));
}

TEST_F(DownloadStickTest, StickWithoutACatalogueGetsOneOfItsOwn) {
  const std::string other = image_.UsbRoot("sdb1");
  ASSERT_EQ(kResultOk, File(SongFor("", "others"), other));
  const std::string stick = image_.UsbRoot("sda1");
  ASSERT_EQ(kResultOk, File(SongFor("", "bought"), stick));
  EXPECT_EQ("bought", TextOn(StickDb(stick), "SELECT group_concat(song_title,',') FROM song"));
}

// A refused new album changes nothing, and the stick is not written to.
TEST_F(DownloadStickTest, AlbumLimitLeavesTheStickUntouched) {
  const std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, StickDb(stick));
  ExecOn(StickDb(stick), "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
                             std::to_string(kAlbumLimit) +
                             ") INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
                             "SELECT 'y',i,'A'||i,'Downloaded Songs/A'||i,i FROM n");
  const std::string before = ReadFile(StickDb(stick));
  EXPECT_EQ(kResultAlbumLimit, File(SongFor("Over", "over"), stick));
  EXPECT_EQ(before, ReadFile(StickDb(stick)));
  EXPECT_FALSE(PathExists(image_.Path("/usr/local/www/ctrl/song.json")));
}

}  // namespace
}  // namespace zansong_test
