// Registration of the songs of a storage area: rows, ids, orders, printed
// lines and results.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "support/utc_zone.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/messages.h"
#include "zansong/fileman/register.h"

namespace zansong_test {
namespace {

const char kSongs[] =
    "SELECT song_id,pfix,song_title,midi_path,audio_path,disp_order,format,length,album_id "
    "FROM song ORDER BY song_id";
const char kAlbums[] =
    "SELECT album_id,pfix,album_title,album_path,disp_order,coverart_path FROM album ORDER BY "
    "album_id";

class RegisterTest : public DeviceTest {
 protected:
  void SetUp() override { ClearCancelFlag(); }
  void TearDown() override { ClearCancelFlag(); }

  int Register(const std::string& root, const char* folder = "", int keepOrder = 0,
               int notify = 0) {
    StdoutCapture capture;
    int result = FM_Add_AllSongs_ByCache(root.c_str(), folder, notify, keepOrder, 7);
    printed_ = capture.Finish();
    return result;
  }
  std::string SongDb() const { return image_.SongRoot() + ".zansong.db"; }
  std::vector<std::string> Songs() const { return QueryRows(SongDb(), kSongs); }
  std::vector<std::string> Albums() const { return QueryRows(SongDb(), kAlbums); }

  std::string printed_;
};

std::string Printed(void (*print)()) {
  StdoutCapture capture;
  print();
  return capture.Finish();
}

TEST_F(RegisterTest, RegistersAlbumsAndSongsInPathOrder) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "Jazz");
  MakeDirs(root + "Classics");
  WriteSongFile(root + "Jazz/b.mid", "Blue");
  WriteSongFile(root + "Jazz/a.mid", "");
  WriteSongFile(root + "Classics/x.MID", "  Moon   light ");
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(Albums(), (std::vector<std::string>{"1|s|Classics|Classics|1|", "2|s|Jazz|Jazz|2|"}));
  // Lengths: 8 quarters at 120 bpm.
  EXPECT_EQ(Songs(), (std::vector<std::string>{"1|s|Moon light|Classics/x.MID||1|SMF|4000|1",
                                               "2|s|a|Jazz/a.mid||2|SMF|4000|2",
                                               "3|s|Blue|Jazz/b.mid||3|SMF|4000|2"}));
  std::string scanning = Printed([] { PrintRemoconMessage(9, 2); });
  EXPECT_EQ(printed_, scanning);
}

TEST_F(RegisterTest, RegisteringTwiceChangesNoRowIdOrOrder) {
  const std::string root = image_.SongRoot();
  for (int a = 0; a < 3; ++a) {
    MakeDirs(root + "Album" + std::to_string(a));
    for (int s = 0; s < 4; ++s) {
      WriteSongFile(root + "Album" + std::to_string(a) + "/s" + std::to_string(s) + ".mid",
                    "Song " + std::to_string(s));
    }
  }
  WriteWavSong(root + "Album1/s1.wav", 9000);
  ASSERT_EQ(0, Register(root));
  const std::string all = "SELECT * FROM song ORDER BY song_id";
  std::vector<std::string> songs = QueryRows(SongDb(), all);
  std::vector<std::string> albums = QueryRows(SongDb(), "SELECT * FROM album ORDER BY album_id");
  ASSERT_EQ(12u, songs.size());
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(songs, QueryRows(SongDb(), all));
  EXPECT_EQ(albums, QueryRows(SongDb(), "SELECT * FROM album ORDER BY album_id"));
}

TEST_F(RegisterTest, TouchedFileGetsNewIdAndOrder) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "A");
  WriteSongFile(root + "A/1.mid", "One");
  WriteSongFile(root + "A/2.mid", "Two");
  WriteSongFile(root + "A/3.mid", "Three");
  ASSERT_EQ(0, Register(root, "", 1));
  SetModifyTime(root + "A/1.mid", 1000000000);
  ASSERT_EQ(0, Register(root, "", 1));
  EXPECT_EQ(Songs(), (std::vector<std::string>{"2|s|Two|A/2.mid||2|SMF|4000|1",
                                               "3|s|Three|A/3.mid||3|SMF|4000|1",
                                               "4|s|One|A/1.mid||4|SMF|4000|1"}));
  // Renumbered by path when the order is not kept.
  ASSERT_EQ(0, Register(root, "", 0));
  EXPECT_EQ(QueryRows(SongDb(), "SELECT song_id,disp_order FROM song ORDER BY song_id"),
            (std::vector<std::string>{"2|2", "3|3", "4|1"}));
}

TEST_F(RegisterTest, FileDatedAfter2038KeepsItsRowUntilItChanges) {
  UtcZone utc;
  const std::string root = image_.SongRoot();
  const char kRow[] = "SELECT song_id,mtime FROM song WHERE midi_path='A/1.mid'";
  MakeDirs(root + "A");
  WriteSongFile(root + "A/1.mid", "One");
  WriteSongFile(root + "A/2.mid", "Two");
  // 2040-02-29 12:34:56 UTC, then one second later: both beyond a signed
  // 32-bit time.
  SetModifyTime(root + "A/1.mid", 2214131696LL);
  ASSERT_EQ(0, Register(root, "", 1));
  ASSERT_EQ(0, Register(root, "", 1));
  EXPECT_EQ(QueryRows(SongDb(), kRow), (std::vector<std::string>{"1|Wed Feb 29 12:34:56 2040"}));
  SetModifyTime(root + "A/1.mid", 2214131697LL);
  ASSERT_EQ(0, Register(root, "", 1));
  EXPECT_EQ(QueryRows(SongDb(), kRow), (std::vector<std::string>{"3|Wed Feb 29 12:34:57 2040"}));
}

TEST_F(RegisterTest, RemovedFileLosesRowAndPlaylistEntries) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "A");
  WriteSongFile(root + "A/1.mid", "One");
  WriteSongFile(root + "A/2.mid", "Two");
  ASSERT_EQ(0, Register(root));
  ASSERT_TRUE(Execute(SongDb(),
                      "INSERT INTO playlist VALUES('p',1,'List',1);"
                      "INSERT INTO psong VALUES('p',1,1,'s',1,1);"
                      "INSERT INTO psong VALUES('p',2,1,'s',2,2);"));
  ASSERT_EQ(0, std::remove((root + "A/1.mid").c_str()));
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(Songs(), (std::vector<std::string>{"2|s|Two|A/2.mid||1|SMF|4000|1"}));
  EXPECT_EQ(QueryRows(SongDb(), "SELECT psong_id,song_id FROM psong"),
            (std::vector<std::string>{"2|2"}));
}

TEST_F(RegisterTest, RemovedAlbumDirectoryLosesAlbumAndSongs) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "A");
  MakeDirs(root + "B");
  WriteSongFile(root + "A/1.mid", "One");
  WriteSongFile(root + "B/2.mid", "Two");
  WriteSongFile(root + "B/3.mid", "Three");
  ASSERT_EQ(0, Register(root));
  ASSERT_EQ(0, std::system(("rm -r '" + root + "B'").c_str()));
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(Albums(), (std::vector<std::string>{"1|s|A|A|1|"}));
  EXPECT_EQ(Songs(), (std::vector<std::string>{"1|s|One|A/1.mid||1|SMF|4000|1"}));
}

TEST_F(RegisterTest, AlbumTitleFileGivesTheTitle) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "dir1");
  MakeDirs(root + "dir2");
  WriteFile(root + "dir1/.zanalbum", "Nocturnes");
  WriteSongFile(root + "dir1/1.mid", "One");
  WriteSongFile(root + "dir2/1.mid", "One");
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(Albums(), (std::vector<std::string>{"1|s|Nocturnes|dir1|1|", "2|s|dir2|dir2|2|"}));
}

TEST_F(RegisterTest, MidiWithWavCompanionKeepsFormatAndLongerLength) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "A");
  WriteSongFile(root + "A/long.mid", "Long");
  WriteWavSong(root + "A/long.wav", 9000);
  WriteSongFile(root + "A/short.mid", "Short");
  WriteWavSong(root + "A/short.wav", 1000);
  WriteWavSong(root + "A/solo.wav", 2500);
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(Songs(),
            (std::vector<std::string>{"1|s|solo||A/solo.wav|1|WAV|2500|1",
                                      "2|s|Long|A/long.mid|A/long.wav|2|SMF,WAV|9000|1",
                                      "3|s|Short|A/short.mid|A/short.wav|3|SMF,WAV|4000|1"}));
}

TEST_F(RegisterTest, UnreadableMidiFileIsSkippedSilently) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "A");
  WriteFile(root + "A/broken.mid", "not a midi file");
  WriteSongFile(root + "A/good.mid", "Good");
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(Songs(), (std::vector<std::string>{"1|s|Good|A/good.mid||1|SMF|4000|1"}));
  EXPECT_EQ(printed_, Printed([] { PrintRemoconMessage(9, 2); }));
}

TEST_F(RegisterTest, NotifyRemotePrintsNoticeAfterTheAlbums) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "A");
  WriteSongFile(root + "A/1.mid", "One");
  ASSERT_EQ(0, Register(root, "", 0, 1));
  std::string expected = Printed([] {
    PrintRemoconMessage(9, 2);
    PrintRemoconMessage(11, 2);
  });
  EXPECT_EQ(printed_, expected);
}

TEST_F(RegisterTest, ProgressLinesEveryTwoHundredSongs) {
  const std::string root = image_.SongRoot();
  for (int a = 0; a < 3; ++a) {
    MakeDirs(root + "A" + std::to_string(a));
    for (int s = 0; s < 150; ++s) {
      WriteSongFile(root + "A" + std::to_string(a) + "/" + std::to_string(100 + s) + ".mid", "", 1);
    }
  }
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(450, QueryInt(SongDb(), "SELECT COUNT(*) FROM song"));
  std::string expected = Printed([] {
    PrintRemoconMessage(9, 2);
    PrintRegisterMessage(44, 7, true);
    PrintRegisterMessage(88, 7, true);
  });
  EXPECT_EQ(printed_, expected);
  for (int a = 0; a < 2; ++a) {
    for (int s = 0; s < 100; ++s) {
      std::remove(
          (root + "A" + std::to_string(a) + "/" + std::to_string(100 + s) + ".mid").c_str());
    }
  }
  ASSERT_EQ(0, Register(root));
  expected = Printed([] {
    PrintRemoconMessage(9, 2);
    PrintUnregisterMessage(100, 7, true);
  });
  EXPECT_EQ(printed_, expected);
  EXPECT_EQ(250, QueryInt(SongDb(), "SELECT COUNT(*) FROM song"));
}

TEST_F(RegisterTest, CancelBeforeTheCatalogueIsOpenedReturnsMinusTwo) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "A");
  WriteSongFile(root + "A/1.mid", "One");
  SetCancelFlag();
  EXPECT_EQ(-2, Register(root));
  EXPECT_FALSE(PathExists(SongDb()));
}

TEST_F(RegisterTest, CatalogueThatCannotBeCreatedIsReported) {
  std::string missing = image_.Path("/nowhere/");
  EXPECT_EQ(-1, Register(missing));
  EXPECT_NE(std::string::npos, printed_.find("DB Create Error\n"));
}

}  // namespace
}  // namespace zansong_test
