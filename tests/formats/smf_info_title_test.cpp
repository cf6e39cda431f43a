// Rewriting the title of a MIDI file: insert and replace, the character-set
// conversion, the times kept, and failures that leave the original alone.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <string>
#include <vector>

#include "formats/smf_test_util.h"
#include "support/child_process.h"

namespace zansong_test {
namespace {

class SmfTitleTest : public SmfTest {
 protected:
  // Puts bytes at song.mid with an old modification time and returns the
  // path.  (The access time is not checked: reading the file moves it on
  // some mounts.)
  std::string PutOld(const std::string& bytes) {
    std::string path = Put(bytes);
    struct timespec times[2] = {{1000000000, 123456789}, {1100000000, 987654321}};
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    return path;
  }

  void ExpectOldModifyTime(const std::string& path) {
    struct stat st;
    ASSERT_EQ(stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mtim.tv_sec, 1100000000);
    EXPECT_EQ(st.st_mtim.tv_nsec, 987654321);
  }

  void ExpectNoBackup() { EXPECT_FALSE(PathExists(image_.SongRoot() + "song.BAK")); }

  static MidiTrack Notes() {
    MidiTrack t;
    t.Tempo(0, 480000).NoteOn(0, 0, 60, 90).NoteOff(480, 0, 60).EndOfTrack(0);
    return t;
  }
};

TEST_F(SmfTitleTest, InsertsATitleIntoAFileWithoutOne) {
  std::string path = PutOld(Format0(Notes()));
  ASSERT_EQ(SetSMFTitle(path.c_str(), "New Title"), 1);
  MidiTrack expected;
  expected.TrackName(0, "New Title").Raw(Notes().bytes());
  EXPECT_EQ(ReadFile(path), Format0(expected));
  ExpectOldModifyTime(path);
  ExpectNoBackup();
  TSongPara p;
  ASSERT_EQ(GetSMFInfo(path.c_str(), &p, false, ""), 1);
  EXPECT_STREQ(p.title, "New Title");
  EXPECT_EQ(p.totalTimeMs, 480);
}

TEST_F(SmfTitleTest, InsertsIntoTheFirstTrackOfAFormatOneFile) {
  MidiTrack second = Notes();
  std::string path = PutOld(Format1({Notes(), second}));
  ASSERT_EQ(SetSMFTitle(path.c_str(), "T"), 1);
  MidiTrack first;
  first.TrackName(0, "T").Raw(Notes().bytes());
  EXPECT_EQ(ReadFile(path), Format1({first, second}));
  ExpectOldModifyTime(path);
}

TEST_F(SmfTitleTest, ReplacesTheTitleOfAFormatOneFile) {
  MidiTrack first;
  first.TrackName(0, "Old").Raw(Notes().bytes());
  MidiTrack second;
  second.TrackName(0, "Piano").Raw(Notes().bytes());
  std::string path = PutOld(Format1({first, second}));
  ASSERT_EQ(SetSMFTitle(path.c_str(), "A much longer new title"), 1);
  MidiTrack expected;
  expected.TrackName(0, "A much longer new title").Raw(Notes().bytes());
  EXPECT_EQ(ReadFile(path), Format1({expected, second}));
  ExpectOldModifyTime(path);
  ExpectNoBackup();
}

TEST_F(SmfTitleTest, ReplacementChangesTheLengthQuantity) {
  MidiTrack first;
  first.Text(0, "keep").TrackName(0, std::string(300, 'o')).Raw(Notes().bytes());
  std::string path = PutOld(Format0(first));
  ASSERT_EQ(SetSMFTitle(path.c_str(), "short"), 1);
  MidiTrack expected;
  expected.Text(0, "keep").TrackName(0, "short").Raw(Notes().bytes());
  EXPECT_EQ(ReadFile(path), Format0(expected));
}

TEST_F(SmfTitleTest, Utf8TitleIsStoredAsShiftJis) {
  MidiTrack first;
  first.TrackName(0, "x").Raw(Notes().bytes());
  std::string path = PutOld(Format0(first));
  ASSERT_EQ(SetSMFTitle(path.c_str(), "\xE3\x83\x94\xE3\x82\xA2\xE3\x83\x8E"),
            1);  // "piano" in kana
  MidiTrack expected;
  expected.TrackName(0, "\x83\x73\x83\x41\x83\x6D").Raw(Notes().bytes());
  EXPECT_EQ(ReadFile(path), Format0(expected));
}

TEST_F(SmfTitleTest, WrappedFileIsWrittenBackPlain) {
  MidiTrack first;
  first.TrackName(0, "Old").Raw(Notes().bytes());
  std::string path = PutOld(BuildSmf(SmfOptions{0, 480, true, -1}, std::vector<MidiTrack>{first}));
  ASSERT_EQ(SetSMFTitle(path.c_str(), "Plain"), 1);
  MidiTrack expected;
  expected.TrackName(0, "Plain").Raw(Notes().bytes());
  EXPECT_EQ(ReadFile(path), Format0(expected));
  ExpectOldModifyTime(path);
}

TEST_F(SmfTitleTest, ReplacesInALaterTrackWhenTheFirstHasNoTrackName) {
  // The title comes from the title message, so nothing is inserted; the
  // byte search then finds the track name of the second track.
  MidiTrack first;
  first.TitleSysEx(0, "Sys").Raw(Notes().bytes());
  MidiTrack second;
  second.TrackName(0, "Piano").EndOfTrack(0);
  std::string path = PutOld(Format1({first, second}));
  ASSERT_EQ(SetSMFTitle(path.c_str(), "New"), 1);
  MidiTrack expected;
  expected.TrackName(0, "New").EndOfTrack(0);
  EXPECT_EQ(ReadFile(path), Format1({first, expected}));
}

TEST_F(SmfTitleTest, TitleAfterTickZeroIsNotSeenSoOneIsInserted) {
  MidiTrack first;
  first.Raw(Notes().bytes().substr(0, Notes().bytes().size() - 4));  // without end of track
  first.TrackName(10, "Late").EndOfTrack(0);
  std::string path = PutOld(Format0(first));
  ASSERT_EQ(SetSMFTitle(path.c_str(), "Early"), 1);
  MidiTrack expected;
  expected.TrackName(0, "Early").Raw(first.bytes());
  EXPECT_EQ(ReadFile(path), Format0(expected));
}

TEST_F(SmfTitleTest, FileThatCannotBeLoadedIsLeftAlone) {
  std::string path = PutOld("not a MIDI file at all");
  EXPECT_EQ(SetSMFTitle(path.c_str(), "x"), 0);
  EXPECT_EQ(ReadFile(path), "not a MIDI file at all");
  ExpectOldModifyTime(path);
  ExpectNoBackup();
  EXPECT_EQ(SetSMFTitle((image_.SongRoot() + "missing.mid").c_str(), "x"), 0);
  EXPECT_EQ(SetSMFTitle(nullptr, "x"), 0);
}

TEST_F(SmfTitleTest, ReadOnlyDirectoryFailsAndLeavesTheFile) {
  MidiTrack first;
  first.TrackName(0, "Old").Raw(Notes().bytes());
  const std::string original = Format0(first);
  std::string path = PutOld(original);
  std::string dir = image_.SongRoot();
  dir.pop_back();
  int result = RunInChild([&] {
    if (!MakeDirReadOnlyForThisProcess(dir)) return kChildSetupFailed;
    return SetSMFTitle(path.c_str(), "New");
  });
  ASSERT_NE(result, kChildSetupFailed) << "no way to make a read-only directory here";
  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadFile(path), original);
  ExpectOldModifyTime(path);
  ExpectNoBackup();
}

TEST_F(SmfTitleTest, FailedWriteRestoresTheOriginal) {
  MidiTrack first;
  first.TrackName(0, "Old").Text(0, std::string(3000, 't')).Raw(Notes().bytes());
  const std::string original = Format0(first);
  std::string path = PutOld(original);
  int result = RunInChild([&] {
    // Writes beyond 1000 bytes fail (EFBIG) instead of killing the process.
    signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit = {1000, 1000};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return kChildSetupFailed;
    return SetSMFTitle(path.c_str(), "New title");
  });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadFile(path), original);
  ExpectOldModifyTime(path);
  ExpectNoBackup();
}

TEST_F(SmfTitleTest, BackupNameEqualToTheFileIsRefused) {
  MidiTrack t = Notes();
  std::string path = image_.SongRoot() + "song.bak";
  WriteFile(path, Format0(t));
  EXPECT_EQ(SetSMFTitle(path.c_str(), "x"), 0);
  EXPECT_EQ(ReadFile(path), Format0(t));
}

TEST_F(SmfTitleTest, ChangeTitleNeedsALoadedFile) {
  TSmfData smf;
  EXPECT_EQ(smf.ChangeTitle((image_.SongRoot() + "out.mid").c_str(), "x", true), 0);
  EXPECT_FALSE(PathExists(image_.SongRoot() + "out.mid"));
}

TEST_F(SmfTitleTest, ChangeTitleReplacesAtTheFirstBytePairEvenInsideOtherData) {
  // The search is a plain byte search: FF 03 inside a text event is taken
  // for the title event.
  MidiTrack t;
  t.Text(0, std::string("\xFF\x03\x02zz", 5)).EndOfTrack(0);
  std::string path = Put(Format0(t));
  TSmfData smf;
  ASSERT_EQ(smf.LoadFromFile(path.c_str(), false), 1);
  std::string out = image_.SongRoot() + "out.mid";
  ASSERT_EQ(smf.ChangeTitle(out.c_str(), "abc", false), 1);
  MidiTrack expected;
  expected
      .Raw(std::string("\x00\xFF\x01\x05\xFF\x03\x03"
                       "abc",
                       10))
      .EndOfTrack(0);
  EXPECT_EQ(ReadFile(out), Format0(expected));
}

}  // namespace
}  // namespace zansong_test
