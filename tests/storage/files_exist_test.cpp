// Existence tests and case-tolerant lookups.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "support/device_image.h"
#include "zansong/storage/files.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::WriteFile;

class FilesExistTest : public DeviceTest {
 protected:
  // A scratch directory of the image, ending in "/".
  std::string Dir(const std::string& name) {
    std::string dir = image_.Path("/tmp/" + name + "/");
    MakeDirs(dir);
    return dir;
  }
};

TEST_F(FilesExistTest, FileExistsForReadableFileOnly) {
  std::string dir = Dir("a");
  WriteFile(dir + "x.mid", "x");
  EXPECT_EQ(FileExists((dir + "x.mid").c_str()), 1);
  EXPECT_EQ(FileExists((dir + "y.mid").c_str()), 0);
  EXPECT_EQ(FileExists((dir + "x.MID").c_str()), 0);
}

TEST_F(FilesExistTest, AnyFileExists) {
  std::string dir = Dir("a");
  EXPECT_EQ(AnyFileExists(dir.c_str()), 0);
  EXPECT_EQ(AnyFileExists((dir + "missing/").c_str()), 0);
  WriteFile(dir + ".hidden", "");
  EXPECT_EQ(AnyFileExists(dir.c_str()), 1);
  std::string other = Dir("b");
  MakeDirs(other + "sub");
  EXPECT_EQ(AnyFileExists(other.c_str()), 1);
}

TEST_F(FilesExistTest, FileExists2ReturnsNameAsOnDisk) {
  std::string dir = Dir("a");
  WriteFile(dir + "Song.Mid", "x");
  TSString found = FileExists2((dir + "SONG.mid").c_str());
  EXPECT_EQ(std::string(found.c_str()), dir + "Song.Mid");
}

TEST_F(FilesExistTest, FileExists2SkipsDirectories) {
  std::string dir = Dir("a");
  MakeDirs(dir + "song.mid");
  EXPECT_EQ(std::string(FileExists2((dir + "song.mid").c_str()).c_str()), "");
  WriteFile(dir + "SONG.MID", "x");
  EXPECT_EQ(std::string(FileExists2((dir + "song.mid").c_str()).c_str()), dir + "SONG.MID");
}

TEST_F(FilesExistTest, FileExists2MissingGivesEmpty) {
  std::string dir = Dir("a");
  EXPECT_EQ(FileExists2((dir + "none.mid").c_str()).Length(), 0);
  EXPECT_EQ(FileExists2((dir + "nodir/none.mid").c_str()).Length(), 0);
}

TEST_F(FilesExistTest, MidFileExistsFindsUpperCaseNameOnDisk) {
  std::string dir = Dir("a");
  WriteFile(dir + "Song.MID", "x");
  EXPECT_EQ(std::string(MidFileExists((dir + "song.mid").c_str()).c_str()), dir + "Song.MID");
}

TEST_F(FilesExistTest, MidFileExistsIgnoresMiddleLetterOnlyUpperCase) {
  std::string dir = Dir("a");
  WriteFile(dir + "song.mId", "x");
  EXPECT_EQ(MidFileExists((dir + "song.mid").c_str()).Length(), 0);
}

TEST_F(FilesExistTest, WavAndMp3IgnoreMiddleLetterOnlyUpperCase) {
  std::string dir = Dir("a");
  WriteFile(dir + "a.wAv", "x");
  WriteFile(dir + "b.mP3", "x");
  WriteFile(dir + "c.mp3", "x");
  EXPECT_EQ(WavFileExists((dir + "a.wav").c_str()).Length(), 0);
  EXPECT_EQ(std::string(Mp3FileExists((dir + "b.xyz").c_str()).c_str()), dir + "b.mP3");
  EXPECT_EQ(std::string(Mp3FileExists((dir + "C.MP3").c_str()).c_str()), dir + "c.mp3");
}

TEST_F(FilesExistTest, EverySpellingIsFound) {
  struct Case {
    TSString (*find)(const char*);
    const char* const* spellings;
    int count;
  };
  static const char* const mid[] = {".MID", ".mid", ".Mid", ".MId", ".MiD", ".mID", ".miD"};
  static const char* const mp3[] = {".MP3", ".mp3", ".Mp3", ".mP3"};
  static const char* const wav[] = {".WAV", ".wav", ".Wav", ".WAv", ".WaV", ".wAV", ".waV"};
  const Case cases[] = {{MidFileExists, mid, 7}, {Mp3FileExists, mp3, 4}, {WavFileExists, wav, 7}};
  int n = 0;
  for (const Case& c : cases) {
    for (int i = 0; i < c.count; ++i) {
      std::string dir = Dir("s" + std::to_string(n++));
      std::string name = std::string("t") + c.spellings[i];
      WriteFile(dir + name, "x");
      EXPECT_EQ(std::string(c.find((dir + "t.xxx").c_str()).c_str()), dir + name);
    }
  }
}

TEST_F(FilesExistTest, SpellingOrderDecidesBetweenTwoFiles) {
  std::string dir = Dir("a");
  WriteFile(dir + "x.mid", "lower");
  WriteFile(dir + "x.MID", "upper");
  WriteFile(dir + "y.Mid", "");
  WriteFile(dir + "y.mid", "");
  EXPECT_EQ(std::string(MidFileExists((dir + "x.mid").c_str()).c_str()), dir + "x.MID");
  EXPECT_EQ(std::string(MidFileExists((dir + "y.MID").c_str()).c_str()), dir + "y.mid");
}

TEST_F(FilesExistTest, SongLookupSkipsDirectoriesAndOtherNames) {
  std::string dir = Dir("a");
  MakeDirs(dir + "song.mid");
  WriteFile(dir + "song2.mid", "x");
  WriteFile(dir + "son.mid", "x");
  EXPECT_EQ(MidFileExists((dir + "song.mid").c_str()).Length(), 0);
}

TEST_F(FilesExistTest, SongLookupInMissingDirectory) {
  EXPECT_EQ(MidFileExists(image_.Path("/nowhere/song.mid").c_str()).Length(), 0);
  EXPECT_EQ(MidFileExists("").Length(), 0);
}

TEST_F(FilesExistTest, ChangeNoDirAndSpaceName) {
  EXPECT_EQ(std::string(ChangeNoDirAndSpaceName("/a b/My Song .mid").c_str()), "MySong.mid");
  EXPECT_EQ(std::string(ChangeNoDirAndSpaceName(" name ").c_str()), "name");
}

// ---- Case-insensitive directory paths ----

class DirExistsTest : public FilesExistTest {
 protected:
  void SetUp() override {
    base_ = image_.Path("/tmp/");
    MakeDirs(base_ + "Music/Album One/Disc.2");
    MakeDirs(base_ + "Music/lower/UPPER");
    // A file and a directory whose names differ only in case.
    WriteFile(base_ + "Music/deep", "not a directory");
    MakeDirs(base_ + "Music/DEEP/x");
  }
  int Exists(const std::string& path, std::string* out) {
    char buffer[512];
    std::memset(buffer, '#', sizeof(buffer));
    buffer[sizeof(buffer) - 1] = '\0';
    int r = FH2_is_dir_exists(path.c_str(), buffer, static_cast<int>(sizeof(buffer)));
    *out = buffer;
    return r;
  }
  std::string base_;
};

TEST_F(DirExistsTest, ExactSpellingAtSeveralDepths) {
  std::string out;
  EXPECT_EQ(Exists(base_ + "Music/", &out), 1);
  EXPECT_EQ(out, base_ + "Music/");
  EXPECT_EQ(Exists(base_ + "Music/Album One/Disc.2/", &out), 1);
  EXPECT_EQ(out, base_ + "Music/Album One/Disc.2/");
}

TEST_F(DirExistsTest, OtherCaseGivesSpellingOnDisk) {
  std::string out;
  EXPECT_EQ(Exists(base_ + "MUSIC/", &out), 1);
  EXPECT_EQ(out, base_ + "Music/");
  EXPECT_EQ(Exists(base_ + "music/ALBUM one/disc.2/", &out), 1);
  EXPECT_EQ(out, base_ + "Music/Album One/Disc.2/");
  EXPECT_EQ(Exists(base_ + "mUsIc/LOWER/upper", &out), 1);
  EXPECT_EQ(out, base_ + "Music/lower/UPPER/");
}

TEST_F(DirExistsTest, DirectoryWinsOverFileOfSameName) {
  std::string out;
  EXPECT_EQ(Exists(base_ + "music/Deep/", &out), 1);
  EXPECT_EQ(out, base_ + "Music/DEEP/");
  EXPECT_EQ(Exists(base_ + "music/Deep/X/", &out), 1);
  EXPECT_EQ(out, base_ + "Music/DEEP/x/");
}

TEST_F(DirExistsTest, UsrLocalInOtherCase) {
  std::string out;
  EXPECT_EQ(Exists(image_.Path("/USR/LOCAL/"), &out), 1);
  EXPECT_EQ(out, image_.Path("/usr/local/"));
  EXPECT_EQ(Exists(image_.Path("/usr/LOCAL/songs"), &out), 1);
  EXPECT_EQ(out, image_.Path("/usr/local/songs/"));
}

TEST_F(DirExistsTest, MissingComponentAnywhereGivesZero) {
  std::string out;
  EXPECT_EQ(Exists(base_ + "Musik/", &out), 0);
  EXPECT_EQ(Exists(base_ + "Music/Album Two/Disc.2/", &out), 0);
  EXPECT_EQ(Exists(base_ + "Music/Album One/Disc.3", &out), 0);
  EXPECT_EQ(out[0], '#');
}

TEST_F(DirExistsTest, FileIsNotADirectory) {
  WriteFile(base_ + "Music/plain.txt", "");
  std::string out;
  EXPECT_EQ(Exists(base_ + "Music/plain.txt/", &out), 0);
}

TEST_F(DirExistsTest, RootIsDirectoryAndOutUntouched) {
  std::string out;
  EXPECT_EQ(Exists("/", &out), 1);
  EXPECT_EQ(out[0], '#');
}

TEST_F(DirExistsTest, NoSlashEmptyAndNullGiveZero) {
  std::string out;
  EXPECT_EQ(Exists("usr", &out), 0);
  EXPECT_EQ(Exists("usr/local/", &out), 0);
  EXPECT_EQ(Exists("", &out), 0);
  EXPECT_EQ(FH2_is_dir_exists(nullptr, nullptr, 0), 0);
}

TEST_F(DirExistsTest, OutNullOrZeroSizeStillAnswers) {
  EXPECT_EQ(FH2_is_dir_exists((base_ + "MUSIC/").c_str(), nullptr, 100), 1);
  char buffer[4] = "abc";
  EXPECT_EQ(FH2_is_dir_exists((base_ + "MUSIC/").c_str(), buffer, 0), 1);
  EXPECT_STREQ(buffer, "abc");
}

TEST_F(DirExistsTest, SmallOutIsCutAndTerminated) {
  char buffer[5];
  EXPECT_EQ(FH2_is_dir_exists((base_ + "MUSIC/").c_str(), buffer, 5), 1);
  EXPECT_EQ(std::string(buffer), (base_ + "Music/").substr(0, 4));
}

TEST_F(DirExistsTest, DirExistsIsTheSameTest) {
  EXPECT_EQ(DirExists((base_ + "MUSIC/lower/").c_str()), 1);
  EXPECT_EQ(DirExists((base_ + "MUSIC/none/").c_str()), 0);
  EXPECT_EQ(DirExists("/"), 1);
}

TEST_F(DirExistsTest, LongPathsAreFollowedWhole) {
  std::string path = base_;
  while (path.size() < 400) path += "Level/";
  MakeDirs(path);
  std::string upper = base_;
  for (size_t i = base_.size(); i < path.size(); ++i) upper += static_cast<char>(toupper(path[i]));
  std::string out;
  EXPECT_EQ(Exists(upper, &out), 1);
  EXPECT_EQ(out, path);
  EXPECT_EQ(Exists(upper + "MISSING/", &out), 0);
}

}  // namespace
