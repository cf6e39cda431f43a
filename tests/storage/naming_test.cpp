// Unique and numbered names over real directories.
#include "zansong/storage/naming.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <regex>
#include <string>
#include <vector>

#include "storage/enterable_dir.h"
#include "support/child_process.h"
#include "support/device_image.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::OpenPathToOthers;
using zansong_test::PathExists;
using zansong_test::RunAsNobody;
using zansong_test::WriteFile;

class NamingTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.root() + "/work/";
    MakeDirs(dir_);
  }
  void Touch(const std::string& name) { WriteFile(dir_ + name, "x"); }
  std::string Name(const TSString& s) { return s.c_str(); }
  std::string dir_;
};

std::string Piano(int n) {
  char name[32];
  snprintf(name, sizeof(name), "PIANO%03d", n);
  return name;
}

TEST_F(NamingTest, MaxPianoNumberIgnoresBadlyFormedNumbers) {
  Touch("PIANO01.MID");
  Touch("PIANO0999.MID");
  Touch("PIANO12a4.MID");
  EXPECT_EQ(0, GetMaxPianoFileNo(dir_.c_str()));
  Touch("piano005.mid");
  EXPECT_EQ(5, GetMaxPianoFileNo(dir_.c_str()));
  Touch("PIANO1000.MID");
  EXPECT_EQ(1000, GetMaxPianoFileNo(dir_.c_str()));
  MakeDirs(dir_ + "PIANO2000");  // directories do not count
  EXPECT_EQ(1000, GetMaxPianoFileNo(dir_.c_str()));
  EXPECT_EQ(0, GetMaxPianoFileNo((dir_ + "missing/").c_str()));
}

TEST_F(NamingTest, NewSongNameFollowsTheLargestNumber) {
  EXPECT_EQ("PIANO001", Name(GetNewSongName2(dir_.c_str())));
  Touch("PIANO997.MID");
  EXPECT_EQ("PIANO998", Name(GetNewSongName2(dir_.c_str())));
  Touch("PIANO998.WAV");
  EXPECT_EQ("PIANO999", Name(GetNewSongName2(dir_.c_str())));
}

TEST_F(NamingTest, NewSongNameAfter999FillsTheFirstGap) {
  Touch("PIANO999.MID");
  Touch("PIANO001.MID");
  Touch("piano002.wav");
  EXPECT_EQ("PIANO003", Name(GetNewSongName2(dir_.c_str())));
}

TEST_F(NamingTest, NewSongNameWhenAll999AreTakenIsPiano1000) {
  for (int n = 1; n <= 999; ++n) Touch(Piano(n) + ".MID");
  EXPECT_EQ("PIANO1000", Name(GetNewSongName2(dir_.c_str())));
  EXPECT_EQ("", Name(GetNewSongName(dir_.c_str(), "SMF", false)));
}

TEST_F(NamingTest, NewSongNamePast999IsUnpadded) {
  Touch("PIANO1000.MID");
  EXPECT_EQ("PIANO1001", Name(GetNewSongName2(dir_.c_str())));
}

TEST_F(NamingTest, NewSongNameAtTheUpperLimit) {
  Touch("PIANO999999998.MID");
  EXPECT_EQ("PIANO999999999", Name(GetNewSongName2(dir_.c_str())));
  Touch("PIANO999999999.MID");
  EXPECT_EQ("", Name(GetNewSongName2(dir_.c_str())));
}

TEST_F(NamingTest, NewSongNameWithNumbersBeyondIntIsEmpty) {
  Touch("PIANO99999999999999.MID");
  EXPECT_EQ("", Name(GetNewSongName2(dir_.c_str())));
}

TEST_F(NamingTest, NewSongNameByFormatExtension) {
  Touch("PIANO001.MID");
  Touch("PIANO002.WAV");
  EXPECT_EQ("PIANO002", Name(GetNewSongName(dir_.c_str(), "SMFSOLO", false)));
  EXPECT_EQ("PIANO001", Name(GetNewSongName(dir_.c_str(), "WAVE", false)));
  EXPECT_EQ("PIANO001", Name(GetNewSongName(dir_.c_str(), "CDDA", false)));
  EXPECT_EQ("PIANO001", Name(GetNewSongName(dir_.c_str(), "KTVA", false)));
  EXPECT_EQ("PIANO002", Name(GetNewSongName(dir_.c_str(), "OTHER", false)));
  Touch("PIANO001.FIL");
  EXPECT_EQ("PIANO002", Name(GetNewSongName(dir_.c_str(), "KTVA", false)));
  Touch("PIANO001.PSPG");
  EXPECT_EQ("PIANO002", Name(GetNewSongName(dir_.c_str(), "PSPG", false)));
  // With anyExtension every file of the base name counts.
  EXPECT_EQ("PIANO003", Name(GetNewSongName(dir_.c_str(), "WAVE", true)));
}

TEST_F(NamingTest, CopyFileName3NumbersFromTwo) {
  EXPECT_EQ("x", Name(GetExternalCopyFileName3(dir_.c_str(), "/a/b/x.mid")));
  Touch("X.MID");
  Touch("x_002.wav");
  Touch("x_003.mp3");
  EXPECT_EQ("x_004", Name(GetExternalCopyFileName3(dir_.c_str(), "/a/b/x.mid")));
  EXPECT_EQ("y", Name(GetExternalCopyFileName3(dir_.c_str(), "y.mid")));
  MakeDirs(dir_ + "y");  // a directory does not take a file name
  EXPECT_EQ("y", Name(GetExternalCopyFileName3(dir_.c_str(), "y.mid")));
}

TEST_F(NamingTest, CopyFileName2SkipsUsedBaseNames) {
  Touch("01_Song.mid");
  Touch("02_SONG.wav");
  EXPECT_EQ("03_Song", Name(GetExternalCopyFileName2(dir_.c_str(), "Song", 1, 2)));
  EXPECT_EQ("05_Song", Name(GetExternalCopyFileName2(dir_.c_str(), "Song", 5, 2)));
}

TEST_F(NamingTest, CopyDirNameSkipsNumberedDirectories) {
  MakeDirs(dir_ + "01_Album");
  MakeDirs(dir_ + "02_Album");
  Touch("03_Album");  // a file is not a directory
  char before[PATH_MAX];
  ASSERT_NE(nullptr, getcwd(before, sizeof(before)));
  EXPECT_EQ("03_Album", Name(GetExternalCopyDirName(dir_.c_str(), "Album", 1, 2)));
  EXPECT_EQ("03_Album", Name(GetExternalCopyDirName2(dir_.c_str(), "Album", 1, 2)));
  EXPECT_EQ("001_Album", Name(GetExternalCopyDirName(dir_.c_str(), "Album", 1, 3)));
  EXPECT_EQ("04_Album", Name(GetExternalCopyDirName(dir_.c_str(), "Album", 4, 2)));
  char after[PATH_MAX];
  ASSERT_NE(nullptr, getcwd(after, sizeof(after)));
  EXPECT_STREQ(before, after);  // the working directory never changes
}

TEST_F(NamingTest, NewDirIsTheFirstFreeThreeDigitName) {
  EXPECT_EQ("001", Name(GetNewDir(dir_.c_str())));
  MakeDirs(dir_ + "001");
  MakeDirs(dir_ + "002");
  Touch("003");
  EXPECT_EQ("003", Name(GetNewDir(dir_.c_str())));
}

TEST_F(NamingTest, NewDirAfter999CountsAgainUnpadded) {
  char name[8];
  for (int n = 1; n <= 999; ++n) {
    snprintf(name, sizeof(name), "%03d", n);
    ASSERT_EQ(0, mkdir((dir_ + name).c_str(), 0777));
  }
  EXPECT_EQ("1", Name(GetNewDir(dir_.c_str())));
  MakeDirs(dir_ + "1");
  EXPECT_EQ("2", Name(GetNewDir(dir_.c_str())));
}

TEST_F(NamingTest, EnterableDirIsAnExistingDirectory) {
  MakeDirs(dir_ + "d");
  Touch("f");
  EXPECT_EQ(1, zansong::IsEnterableDir((dir_ + "d").c_str()));
  EXPECT_EQ(1, zansong::IsEnterableDir((dir_ + "d/").c_str()));
  EXPECT_EQ(0, zansong::IsEnterableDir((dir_ + "f").c_str()));
  EXPECT_EQ(0, zansong::IsEnterableDir((dir_ + "missing").c_str()));
  EXPECT_EQ(0, zansong::IsEnterableDir(""));
  EXPECT_EQ(0, zansong::IsEnterableDir(nullptr));
}

// IsEnterableDir(path) as seen by the user nobody (so that permissions hold
// even when the tests run as root).
int EnterableAsNobody(const std::string& path) {
  return RunAsNobody([&path] { return zansong::IsEnterableDir(path.c_str()); });
}

TEST_F(NamingTest, DirectoryWithoutSearchPermissionCannotBeEntered) {
  std::string locked = dir_ + "locked";
  MakeDirs(locked);
  ASSERT_EQ(0, chmod(locked.c_str(), 0700));
  // The image is reachable for others; only "locked" is not.
  ASSERT_TRUE(OpenPathToOthers(dir_, image_.root()));
  EXPECT_EQ(0, EnterableAsNobody(locked));
  EXPECT_EQ(1, EnterableAsNobody(dir_));
}

TEST_F(NamingTest, MaxFileIndexReadsTwoToFourLeadingDigits) {
  EXPECT_EQ(0u, GetMaxFileIndex(dir_.c_str(), false));
  Touch("07abc");
  Touch("1x");
  Touch("x99");
  EXPECT_EQ(7u, GetMaxFileIndex(dir_.c_str(), false));
  Touch("123_a");
  EXPECT_EQ(123u, GetMaxFileIndex(dir_.c_str(), false));
  Touch("98765");
  EXPECT_EQ(9876u, GetMaxFileIndex(dir_.c_str(), false));
  EXPECT_EQ(0u, GetMaxFileIndex(dir_.c_str(), true));
  MakeDirs(dir_ + "42_album");
  EXPECT_EQ(42u, GetMaxFileIndex(dir_.c_str(), true));
  EXPECT_EQ(0u, GetMaxFileIndex((dir_ + "missing/").c_str(), false));
}

TEST_F(NamingTest, RecordingNamesAreDateAndTimeWithACounter) {
  TSString first = GetRecDateString(dir_.c_str(), ".MID");
  std::smatch m;
  std::string text = first.c_str();
  ASSERT_TRUE(std::regex_match(text, m, std::regex(dir_ + "(\\d{8}_\\d{6})\\.MID")));
  std::string base = m[1];
  WriteFile(text, "x");
  std::string second = GetRecDateString(dir_.c_str(), ".MID").c_str();
  EXPECT_NE(text, second);
  if (second.compare(dir_.size(), base.size(), base) == 0) {
    EXPECT_EQ(dir_ + base + "_01.MID", second);
    WriteFile(second, "x");
    std::string third = GetRecDateString(dir_.c_str(), ".MID").c_str();
    if (third.compare(dir_.size(), base.size(), base) == 0) {
      EXPECT_EQ(dir_ + base + "_02.MID", third);
    }
  }
}

TEST(GetTitleFromMntDirTest, MountAndShareNames) {
  EXPECT_STREQ("/Songs", GetTitleFromMntDir("/mnt/usb/Songs/").c_str());
  EXPECT_STREQ("/x/y", GetTitleFromMntDir("/home/samba/share/x/y").c_str());
  EXPECT_STREQ("usb", GetTitleFromMntDir("/mnt/usb").c_str());
  EXPECT_STREQ("/", GetTitleFromMntDir("/mnt/usb/").c_str());
  EXPECT_STREQ("/other/x/", GetTitleFromMntDir("/other/x/").c_str());
}

TEST_F(NamingTest, FileNameExistsComparesBaseNamesOfFiles) {
  Touch("Song.MID");
  MakeDirs(dir_ + "album");
  EXPECT_TRUE(FileNameExists(dir_.c_str(), "song.wav"));
  EXPECT_TRUE(FileNameExists(dir_.c_str(), "SONG"));
  EXPECT_FALSE(FileNameExists(dir_.c_str(), "album"));
  EXPECT_FALSE(FileNameExists(dir_.c_str(), "son"));
  EXPECT_FALSE(FileNameExists((dir_ + "missing/").c_str(), "song"));
}

TEST_F(NamingTest, FileNameListHoldsBaseNamesOfFilesOnly) {
  Touch("a.mid");
  Touch("b.c.wav");
  MakeDirs(dir_ + "d");
  std::vector<TSString> names = {"stale"};
  GetFileNameExistsList(dir_.c_str(), names);
  std::vector<std::string> got;
  for (const TSString& n : names) got.push_back(n.c_str());
  std::sort(got.begin(), got.end());
  EXPECT_EQ((std::vector<std::string>{"a", "b.c"}), got);
}

class CopyFileNamesTest : public NamingTest {
 protected:
  void SetUp() override {
    NamingTest::SetUp();
    src_ = dir_ + "src/";
    dst_ = dir_ + "dst/";
    MakeDirs(src_);
    MakeDirs(dst_);
  }
  int Names(const char* srcName, const char* srcAudio, const char* format) {
    srcAudio_ = srcAudio;
    dstName_ = "old";
    dstAudio_ = "old";
    return GetCopyFileNames(src_.c_str(), dst_.c_str(), srcName, srcAudio_, dstName_, dstAudio_,
                            format);
  }
  std::string src_, dst_;
  TSString srcAudio_, dstName_, dstAudio_;
};

TEST_F(CopyFileNamesTest, CompanionWithoutClashKeepsItsNames) {
  WriteFile(src_ + "x.mid", "m");
  WriteFile(src_ + "x.mp3", "a");
  EXPECT_EQ(1, Names("x.mid", "x.mp3", "SMF,MP3"));
  EXPECT_STREQ("x.mid", dstName_.c_str());
  EXPECT_STREQ("x.mp3", dstAudio_.c_str());
  EXPECT_STREQ("x.mp3", srcAudio_.c_str());
}

TEST_F(CopyFileNamesTest, CompanionWithClashGetsAPianoNameAndWavAudio) {
  WriteFile(src_ + "x.mid", "m");
  WriteFile(src_ + "x.mp3", "a");
  WriteFile(dst_ + "X.MID", "other");
  EXPECT_EQ(1, Names("x.mid", "x.mp3", "SMF,MP3"));
  EXPECT_STREQ("PIANO001.MID", dstName_.c_str());
  EXPECT_STREQ("PIANO001.WAV", dstAudio_.c_str());
  EXPECT_STREQ("x.mp3", srcAudio_.c_str());
}

TEST_F(CopyFileNamesTest, WavSpellingOfTheCompanionIsUsedWhenItExists) {
  WriteFile(src_ + "x.mid", "m");
  WriteFile(src_ + "x.wav", "a");
  EXPECT_EQ(1, Names("x.mid", "x.WAV", "SMF,WAV"));
  EXPECT_STREQ("x.wav", srcAudio_.c_str());
  EXPECT_STREQ("x.wav", dstAudio_.c_str());
}

TEST_F(CopyFileNamesTest, WithoutCompanionAudioNamesAreEmptied) {
  WriteFile(src_ + "x.mid", "m");
  EXPECT_EQ(1, Names("x.mid", "missing.mp3", "SMF"));
  EXPECT_STREQ("x.mid", dstName_.c_str());
  EXPECT_STREQ("", dstAudio_.c_str());
  EXPECT_STREQ("", srcAudio_.c_str());
  WriteFile(dst_ + "x.wav", "other");
  EXPECT_EQ(1, Names("x.mid", "", "SMF"));
  EXPECT_STREQ("PIANO001.MID", dstName_.c_str());
}

TEST_F(CopyFileNamesTest, ExtensionFollowsTheFormat) {
  WriteFile(src_ + "x.mid", "m");
  EXPECT_EQ(1, Names("x.mid", "", "WAVE"));
  EXPECT_STREQ("x.WAV", dstName_.c_str());
  EXPECT_EQ(1, Names("x.wav", "", "WAVE"));
  EXPECT_STREQ("x.wav", dstName_.c_str());
  EXPECT_EQ(1, Names("x.evt", "", "KTVA"));
  EXPECT_STREQ("x.evt", dstName_.c_str());
  EXPECT_EQ(1, Names("x.dat", "", "KTVA"));
  EXPECT_STREQ("x.FIL", dstName_.c_str());
}

TEST_F(CopyFileNamesTest, NoFreeNameGivesZeroAndEmptyNames) {
  WriteFile(src_ + "x.mid", "m");
  WriteFile(src_ + "x.wav", "a");
  WriteFile(dst_ + "x.mid", "other");
  WriteFile(dst_ + "PIANO999999999.MID", "other");
  EXPECT_EQ(0, Names("x.mid", "x.wav", "SMF,WAV"));
  EXPECT_STREQ("", dstName_.c_str());
  EXPECT_STREQ("", dstAudio_.c_str());
  EXPECT_EQ(0, Names("x.mid", "", "SMF"));
  EXPECT_STREQ("", dstName_.c_str());
}

TEST(GetExternalCopyFileNameTest, DoesNothing) {
  EXPECT_STREQ("", GetExternalCopyFileName("/x/", "t", 1, 2, ".mid").c_str());
}

}  // namespace
