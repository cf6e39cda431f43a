// Filing recordings: names, rows, the one internal recording, stick
// recordings through the working copy, failures; keeping a recording and
// deleting the internal one.
#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/child_process.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/recorded.h"
#include "zansong/fileman/register.h"

namespace zansong_test {
namespace {

const char kRecSongs[] =
    "SELECT song_title,midi_path,audio_path,format,pfix,length FROM song ORDER BY song_id";

class RecordedTest : public DeviceTest {
 protected:
  std::string Root() const { return image_.SongRoot(); }
  std::string Db() const { return Root() + ".zansong.db"; }
  // The recorder's hand-over directory.
  std::string Recorder() const { return image_.Path("/tmp/recorder/"); }
  void SetUp() override { MakeDirs(Recorder()); }

  int Add(const std::string& dir, const std::string& recPath) {
    StdoutCapture capture;
    prefix_[0] = '?';
    int result = FM_Add_RecSong(dir.c_str(), recPath.c_str(), prefix_);
    printed_ = capture.Finish();
    return result;
  }
  // Records a MIDI take named name in the recorder's directory.
  std::string MidiTake(const std::string& name, const std::string& title = "") {
    WriteSongFile(Recorder() + name, title);
    return Recorder() + name;
  }
  std::vector<std::string> Files(const std::string& dir) {
    std::vector<std::string> names;
    DIR* d = opendir(dir.c_str());
    if (d == nullptr) return names;
    while (dirent* e = readdir(d)) {
      std::string n = e->d_name;
      if (n != "." && n != "..") names.push_back(n);
    }
    closedir(d);
    std::sort(names.begin(), names.end());
    return names;
  }

  char prefix_[2] = "?";
  std::string printed_;
};

const std::regex kDateName("\\d{8}_\\d{6}(_\\d{2})?\\.(mid|wav|mp3)");

TEST_F(RecordedTest, AMidRecordingOnInternalStorageArrivesInRecAsLowerCaseMid) {
  const int id = Add(Root(), MidiTake("take.MID", "Etude"));
  ASSERT_GT(id, 0);
  EXPECT_EQ('i', prefix_[0]);
  const std::vector<std::string> files = Files(Root() + "rec");
  ASSERT_EQ(1u, files.size());
  EXPECT_TRUE(std::regex_match(files[0], kDateName)) << files[0];
  EXPECT_FALSE(PathExists(Recorder() + "take.MID"));
  EXPECT_EQ(QueryRows(Db(), kRecSongs),
            (std::vector<std::string>{"Etude|rec/" + files[0] + "||SMF|i|4000"}));
  EXPECT_EQ("rec|rec|i", QueryRows(Db(), "SELECT album_title,album_path,pfix FROM album").at(0));
  EXPECT_FALSE(PathExists(Root() + ".rec_staging"));
}

TEST_F(RecordedTest, ANewInternalRecordingReplacesThePreviousOne) {
  ASSERT_GT(Add(Root(), MidiTake("one.mid", "One")), 0);
  const std::vector<std::string> before = Files(Root() + "rec");
  sleep(1);  // a new date-based name
  ASSERT_GT(Add(Root(), MidiTake("two.mid", "Two")), 0);
  const std::vector<std::string> after = Files(Root() + "rec");
  ASSERT_EQ(1u, after.size());
  EXPECT_NE(before, after);
  EXPECT_EQ(QueryRows(Db(), "SELECT song_title FROM song"), (std::vector<std::string>{"Two"}));
  EXPECT_EQ(1, QueryInt(Db(), "SELECT COUNT(*) FROM album"));
}

TEST_F(RecordedTest, AWavRecordingWithAMidiFileBesideItGetsBothPaths) {
  WriteWavSong(Recorder() + "take.wav", 1500);
  WriteSongFile(Recorder() + "take.mid", "Ignored");
  ASSERT_GT(Add(Root(), Recorder() + "take.wav"), 0);
  const std::vector<std::string> files = Files(Root() + "rec");
  ASSERT_EQ(2u, files.size());
  const std::string base = files[0].substr(0, files[0].size() - 4);
  // The MIDI reader is given the audio file and fails: title and length
  // stay those of the audio file.
  EXPECT_EQ(QueryRows(Db(), kRecSongs),
            (std::vector<std::string>{base + "|rec/" + base + ".mid|rec/" + base +
                                      ".wav|SMF,WAV|i|1500"}));
}

TEST_F(RecordedTest, AWavRecordingAloneIsWav) {
  WriteWavSong(Recorder() + "take.WAV", 1000);
  ASSERT_GT(Add(Root(), Recorder() + "take.WAV"), 0);
  const std::vector<std::string> files = Files(Root() + "rec");
  ASSERT_EQ(1u, files.size());
  EXPECT_EQ(".wav", files[0].substr(files[0].size() - 4));
  const std::string base = files[0].substr(0, files[0].size() - 4);
  EXPECT_EQ(QueryRows(Db(), kRecSongs),
            (std::vector<std::string>{base + "||rec/" + files[0] + "|WAV|i|1000"}));
}

// A MIDI file with part channels a and b and notes on channel `played`.
void WritePartTake(const std::string& path, int a, int b, int played) {
  MidiTrack track;
  track.TrackName(0, "Parts").PartChannels(0, a, b).NoteOn(0, played - 1, 60, 64);
  track.NoteOff(480, played - 1, 60).EndOfTrack();
  SaveBytes(path, BuildSmf(SmfOptions(), std::vector<MidiTrack>{track}));
}

TEST_F(RecordedTest, AMidiRecordingWithPartMode2IsSmfkw) {
  WritePartTake(Recorder() + "take.mid", 1, 2, 3);
  ASSERT_GT(Add(Root(), Recorder() + "take.mid"), 0);
  EXPECT_EQ("SMFKW", QueryRows(Db(), "SELECT format FROM song").at(0));
}

TEST_F(RecordedTest, AMidiRecordingWithPartMode1IsSmfsolo) {
  WritePartTake(Recorder() + "take.mid", 1, 2, 1);
  ASSERT_GT(Add(Root(), Recorder() + "take.mid"), 0);
  EXPECT_EQ("SMFSOLO", QueryRows(Db(), "SELECT format FROM song").at(0));
}

TEST_F(RecordedTest, AStickRecordingGoesThroughTheWorkingCopyIntoTheSticksCatalogue) {
  const std::string stick = image_.UsbRoot("sda1");
  // The root may be given without its final "/".
  ASSERT_GT(Add(stick.substr(0, stick.size() - 1), MidiTake("take.mid", "On Stick")), 0);
  EXPECT_EQ('r', prefix_[0]);
  const std::vector<std::string> files = Files(stick + "Recorded Songs/Temporary Folder");
  ASSERT_EQ(1u, files.size());
  const std::string stickDb = stick + ".zansong.db";
  EXPECT_EQ(QueryRows(stickDb, kRecSongs),
            (std::vector<std::string>{"On Stick|Recorded Songs/Temporary Folder/" + files[0] +
                                      "||SMF|r|4000"}));
  EXPECT_EQ("Temporary Folder|Recorded Songs/Temporary Folder|r",
            QueryRows(stickDb, "SELECT album_title,album_path,pfix FROM album").at(0));
  EXPECT_EQ(QueryRows(stickDb, kRecSongs), QueryRows(image_.WorkingDb(), kRecSongs));
  // The internal storage is left alone.
  EXPECT_TRUE(Files(Root() + "rec").empty());
}

TEST_F(RecordedTest, AFailingMoveOnInternalStorageKeepsThePreviousRecording) {
  ASSERT_GT(Add(Root(), MidiTake("one.mid", "One")), 0);
  const std::vector<std::string> before = Files(Root() + "rec");
  const std::vector<std::string> rows = QueryRows(Db(), kRecSongs);
  MidiTake("two.mid", "Two");
  // The recorder's directory is read-only for the child: mv can copy the
  // file but not remove it, and fails.
  const std::string recorder = Recorder();
  const std::string root = Root();
  int status = RunInChild([&] {
    if (!MakeDirReadOnlyForThisProcess(recorder)) return kChildSetupFailed;
    StdoutCapture capture;
    char prefix[2] = "?";
    int result = FM_Add_RecSong(root.c_str(), (recorder + "two.mid").c_str(), prefix);
    const std::string printed = capture.Finish();
    if (printed.find("error!\n") == std::string::npos) return 1;
    if (prefix[0] != '?') return 2;
    return -result;
  });
  if (status == kChildSetupFailed) GTEST_SKIP() << "no private mount namespace";
  EXPECT_EQ(3, status);
  EXPECT_EQ(before, Files(Root() + "rec"));
  EXPECT_EQ(rows, QueryRows(Db(), kRecSongs));
  EXPECT_TRUE(PathExists(Recorder() + "two.mid"));
  EXPECT_FALSE(PathExists(Root() + ".rec_staging"));
}

TEST_F(RecordedTest, AFailingMoveOnAStickChangesNoCatalogueAndLeavesThePrefix) {
  const std::string stick = image_.UsbRoot("sda1");
  MidiTake("take.mid");
  const std::string recorder = Recorder();
  int status = RunInChild([&] {
    if (!MakeDirReadOnlyForThisProcess(stick)) return kChildSetupFailed;
    StdoutCapture capture;
    char prefix[2] = "?";
    int result = FM_Add_RecSong(stick.c_str(), (recorder + "take.mid").c_str(), prefix);
    if (capture.Finish() != "error!\n") return 1;
    if (prefix[0] != '?') return 2;
    return -result;
  });
  if (status == kChildSetupFailed) GTEST_SKIP() << "no private mount namespace";
  EXPECT_EQ(3, status);
  EXPECT_FALSE(PathExists(stick + ".zansong.db"));
  EXPECT_TRUE(PathExists(Recorder() + "take.mid"));
}

TEST_F(RecordedTest, ACatalogueThatCannotBeOpenedGivesMinusOneAndKeepsTheFiles) {
  MakeDirs(Db());  // a directory where the catalogue file should be
  EXPECT_EQ(-1, Add(Root(), MidiTake("take.mid")));
  EXPECT_NE(std::string::npos, printed_.find("DB Open Error\n")) << printed_;
  EXPECT_EQ('i', prefix_[0]);
  EXPECT_EQ(1u, Files(Root() + "rec").size());
}

TEST_F(RecordedTest, DeleteInternalRecordRemovesTheRecAlbum) {
  ASSERT_GT(Add(Root(), MidiTake("take.mid")), 0);
  StdoutCapture quiet;
  FM_Delete_InternalRecord();
  quiet.Finish();
  EXPECT_EQ(0, QueryInt(Db(), "SELECT COUNT(*) FROM song"));
  EXPECT_EQ(0, QueryInt(Db(), "SELECT COUNT(*) FROM album WHERE album_path='rec'"));
  EXPECT_TRUE(Files(Root() + "rec").empty());
}

TEST_F(RecordedTest, DeleteInternalRecordWithoutRecordingChangesNothing) {
  MakeDirs(Root() + "Jazz");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  {
    StdoutCapture quiet;
    ASSERT_EQ(0, FM_Add_AllSongs_ByCache(Root().c_str(), "", 0, 1, 0));
    FM_Delete_InternalRecord();
  }
  EXPECT_EQ(1, QueryInt(Db(), "SELECT COUNT(*) FROM song"));
  EXPECT_TRUE(PathExists(Root() + "Jazz/a.mid"));
}

TEST_F(RecordedTest, MoveToKeepRenamesTheRecordingAndMovesItToTheKeepFolder) {
  const std::string stick = image_.UsbRoot("sda1");
  const int id = Add(stick, MidiTake("take.mid", "Take"));
  ASSERT_GT(id, 0);
  StdoutCapture quiet;
  const int result = FM_MoveToKeep(stick.substr(0, stick.size() - 1).c_str(), id, "Best Take");
  quiet.Finish();
  ASSERT_EQ(0, result);
  EXPECT_TRUE(Files(stick + "Recorded Songs/Temporary Folder").empty());
  const std::vector<std::string> kept = Files(stick + "Recorded Songs/Keep");
  ASSERT_EQ(1u, kept.size());
  const std::string stickDb = stick + ".zansong.db";
  EXPECT_EQ(QueryRows(stickDb,
                      "SELECT song_title,midi_path FROM song WHERE album_id=(SELECT album_id "
                      "FROM album WHERE album_path='Recorded Songs/Keep')"),
            (std::vector<std::string>{"Best Take|Recorded Songs/Keep/" + kept[0]}));
  EXPECT_EQ(1, QueryInt(stickDb, "SELECT COUNT(*) FROM song"));
}

TEST_F(RecordedTest, AFailingRenameSkipsTheMoveToKeep) {
  const std::string stick = image_.UsbRoot("sda1");
  const int id = Add(stick, MidiTake("take.mid", "Take"));
  ASSERT_GT(id, 0);
  // The recording's file is gone: its title cannot be rewritten.
  const std::vector<std::string> files = Files(stick + "Recorded Songs/Temporary Folder");
  ASSERT_EQ(1u, files.size());
  ::unlink((stick + "Recorded Songs/Temporary Folder/" + files[0]).c_str());
  StdoutCapture quiet;
  const int result = FM_MoveToKeep(stick.c_str(), id, "Best Take");
  quiet.Finish();
  EXPECT_EQ(-1, result);
  EXPECT_FALSE(PathExists(stick + "Recorded Songs/Keep"));
  EXPECT_EQ(0, QueryInt(stick + ".zansong.db",
                        "SELECT COUNT(*) FROM album WHERE album_path='Recorded Songs/Keep'"));
}

}  // namespace
}  // namespace zansong_test
