// FM_FilenameAndMtimeExists: finding a filed download by its file name and
// modification time, and bringing its texts up to date.
#include <gtest/gtest.h>

#include <string>

#include "fileman/download_test_helpers.h"

namespace zansong_test {
namespace {

class DownloadExistsTest : public DownloadTest {
 protected:
  void SetUp() override {
    DownloadTest::SetUp();
    DownloadRecord album = Record("Suites", "Prelude");
    Put(album.midiSource, Midi("prelude.mid"));
    Put(album.albumTitle, "Cello Suites");
    ASSERT_EQ(kResultOk, File(album));
    DownloadRecord single = Record("", "Rain");
    Put(single.audioSource, Wav("rain.wav"));
    ASSERT_EQ(kResultOk, File(single));
  }

  int Exists(const std::string& name, const DownloadRecord& rec) {
    StdoutCapture capture;
    int found = FM_FilenameAndMtimeExists(root_.c_str(), name.c_str(), &rec);
    capture.Finish();
    return found;
  }
  std::string Song(const std::string& name) {
    return Text("SELECT song_title||'|'||genre||'|'||composer FROM song WHERE midi_path LIKE '%/" +
                name + ".___' OR audio_path LIKE '%/" + name + ".___'");
  }
};

TEST_F(DownloadExistsTest, SameNameAndTimeIsFoundAndItsTextsUpdated) {
  DownloadRecord rec = Record("Suites", "Prelude in G");
  Put(rec.genre, "Baroque");
  Put(rec.composer, "");
  Put(rec.albumTitle, "Six Suites");
  EXPECT_EQ(1, Exists("prelude", rec));
  EXPECT_EQ("Prelude in G|Baroque|", Song("prelude"));
  EXPECT_EQ("Six Suites",
            Text("SELECT album_title FROM album WHERE album_path='Downloaded Songs/Suites'"));
  EXPECT_EQ("Six Suites", ReadFile(Area() + "Suites/.zanalbum"));
}

TEST_F(DownloadExistsTest, EmptyTitlesLeaveTheTitlesAlone) {
  DownloadRecord rec = Record("Suites", "");
  EXPECT_EQ(1, Exists("prelude", rec));
  EXPECT_EQ("Prelude|Classical|F. Chopin", Song("prelude"));
  EXPECT_EQ("Cello Suites",
            Text("SELECT album_title FROM album WHERE album_path='Downloaded Songs/Suites'"));
}

TEST_F(DownloadExistsTest, SingleSongIsFoundWithoutAnAlbumDirectory) {
  DownloadRecord rec = Record("", "Rain Drops");
  EXPECT_EQ(1, Exists("rain", rec));
  EXPECT_EQ("Rain Drops|Classical|F. Chopin", Song("rain"));
  EXPECT_EQ(0, Exists("prelude", rec));
}

TEST_F(DownloadExistsTest, LaterFiledCopyIsFoundWithoutUpdates) {
  DownloadRecord rec = Record("Suites", "Changed");
  Put(rec.mtime, "2026-01-01 00:00:00");
  EXPECT_EQ(1, Exists("prelude", rec));
  EXPECT_EQ("Prelude|Classical|F. Chopin", Song("prelude"));
  Put(rec.mtime, "2027-01-01 00:00:00");
  EXPECT_EQ(0, Exists("prelude", rec));
}

TEST_F(DownloadExistsTest, MissingArgumentsGiveZero) {
  DownloadRecord rec = Record("Suites", "Changed");
  EXPECT_EQ(0, FM_FilenameAndMtimeExists(nullptr, "prelude", &rec));
  EXPECT_EQ(0, FM_FilenameAndMtimeExists("", "prelude", &rec));
  EXPECT_EQ(0, FM_FilenameAndMtimeExists(root_.c_str(), "prelude", nullptr));
  Put(rec.mtime, "");
  EXPECT_EQ(0, Exists("prelude", rec));
  EXPECT_EQ(0, Exists("unknown", Record("Suites", "x")));
  EXPECT_EQ("Prelude|Classical|F. Chopin", Song("prelude"));
}

TEST_F(DownloadExistsTest, UpdateOnAStickIsWrittenBackToIt) {
  const std::string stick = image_.UsbRoot("sda1");
  DownloadRecord filed = Record("", "Old");
  Put(filed.midiSource, Midi("tune.mid"));
  ASSERT_EQ(kResultOk, File(filed, stick));
  DownloadRecord rec = Record("", "New");
  StdoutCapture capture;
  EXPECT_EQ(1, FM_FilenameAndMtimeExists(stick.c_str(), "tune", &rec));
  capture.Finish();
  EXPECT_EQ("New", TextOn(stick + ".zansong.db", "SELECT song_title FROM song"));
}

}  // namespace
}  // namespace zansong_test
