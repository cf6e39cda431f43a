// The storage walk that builds album directories and song cache lines.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <list>
#include <string>

#include "support/device_image.h"
#include "zansong/storage/files.h"
#include "zansong/storage/scan.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::WriteFile;

class ScanTest : public DeviceTest {
 protected:
  void SetUp() override { UseRoot(image_.UsbRoot("sda1")); }
  void UseRoot(const std::string& root) {
    root_ = root;
    start_ = static_cast<int>(root_.size()) + 1;
  }
  void Touch(const std::string& rel) {
    std::string path = root_ + rel;
    MakeDirs(path.substr(0, path.rfind('/') + 1));
    WriteFile(path, "x");
  }
  std::string Time(const std::string& rel) { return GetModifyTime((root_ + rel).c_str()).c_str(); }
  int Scan(const std::string& rel, int kind) {
    albums_.clear();
    songs_.clear();
    return GetDirFileList4((root_ + rel).c_str(), start_, albums_, songs_, loose_, kind, 0, &flag_);
  }
  bool HasAlbum(const std::string& name) {
    return std::find(albums_.begin(), albums_.end(), name) != albums_.end();
  }
  std::string root_;
  int start_ = 0;
  std::list<std::string> albums_, songs_, loose_;
  bool flag_ = false;
};

TEST_F(ScanTest, MidiPairsWithTheFirstAudioFileAndDropsTheOther) {
  Touch("a.mid");
  Touch("a.wav");
  Touch("a.mp3");
  ASSERT_EQ(0, Scan("", 0));
  ASSERT_EQ(1u, loose_.size());
  const std::string t = Time("a.mid");
  const std::string& line = loose_.front();
  EXPECT_TRUE(line == "a.mid\ta.wav\tSMF,WAV\t" + t || line == "a.mid\ta.mp3\tSMF,MP3\t" + t)
      << line;
}

TEST_F(ScanTest, PairingIsCaseSensitiveInTheNameOnly) {
  Touch("B.MID");
  Touch("b.wav");
  Touch("Song.MID");
  Touch("Song.wav");
  ASSERT_EQ(0, Scan("", 0));
  loose_.sort();
  EXPECT_EQ(
      (std::list<std::string>{"\tb.wav\tWAV\t" + Time("b.wav"), "B.MID\t\tSMF\t" + Time("B.MID"),
                              "Song.MID\tSong.wav\tSMF,WAV\t" + Time("Song.MID")}),
      loose_);
}

TEST_F(ScanTest, PairingNeedsTheWholeName) {
  Touch("a.mid");
  Touch("ab.wav");
  ASSERT_EQ(0, Scan("", 0));
  EXPECT_EQ((std::list<std::string>{"a.mid\t\tSMF\t" + Time("a.mid"),
                                    "\tab.wav\tWAV\t" + Time("ab.wav")}),
            loose_);
}

TEST_F(ScanTest, AudioOnlyLinesFollowTheMidiLines) {
  Touch("a.wav");
  Touch("z.mid");
  Touch("notes.txt");
  ASSERT_EQ(0, Scan("", 0));
  EXPECT_EQ(
      (std::list<std::string>{"z.mid\t\tSMF\t" + Time("z.mid"), "\ta.wav\tWAV\t" + Time("a.wav")}),
      loose_);
}

TEST_F(ScanTest, AlbumsCollectTheirSongsAndLooseSongsStayApart) {
  Touch("loose.mid");
  Touch("Album/s1.mid");
  Touch("Album/Inner/s2.MP3");
  ASSERT_EQ(0, Scan("", 0));
  EXPECT_EQ((std::list<std::string>{"Album/Inner", "Album"}), albums_);
  songs_.sort();
  EXPECT_EQ((std::list<std::string>{"\tAlbum/Inner/s2.MP3\tMP3\t" + Time("Album/Inner/s2.MP3"),
                                    "Album/s1.mid\t\tSMF\t" + Time("Album/s1.mid")}),
            songs_);
  EXPECT_EQ((std::list<std::string>{"loose.mid\t\tSMF\t" + Time("loose.mid")}), loose_);
}

TEST_F(ScanTest, EmptyDirectoriesAreAlbumsButNotDirectoriesOfOtherFiles) {
  MakeDirs(root_ + "Empty");
  Touch("Texts/readme.txt");
  ASSERT_EQ(0, Scan("", 0));
  EXPECT_EQ((std::list<std::string>{"Empty"}), albums_);
  EXPECT_FALSE(flag_);
}

TEST_F(ScanTest, FlagIsSetOnlyForAnEmptyDirectory) {
  MakeDirs(root_ + "Empty");
  ASSERT_EQ(0, Scan("Empty/", 0));
  EXPECT_TRUE(flag_);
  EXPECT_TRUE(albums_.empty());
}

TEST_F(ScanTest, HiddenDirectoriesAreNotEntered) {
  Touch(".hidden/a.mid");
  Touch(".b.mid");
  ASSERT_EQ(0, Scan("", 0));
  EXPECT_TRUE(albums_.empty());
  EXPECT_EQ(1u, loose_.size());  // a hidden file is still a song
}

TEST_F(ScanTest, UsbStickKeepsCategoryFoldersOut) {
  Touch("Recorded Songs/Take/a.mid");
  Touch("Downloaded Songs/Shop/b.mid");
  Touch("FromToPC/PC/c.mid");
  Touch("Mine/d.mid");
  ASSERT_EQ(0, Scan("", 2));
  EXPECT_EQ((std::list<std::string>{"Mine"}), albums_);
  ASSERT_EQ(0, Scan("", 0));
  EXPECT_TRUE(HasAlbum("Recorded Songs/Take"));
  EXPECT_TRUE(HasAlbum("Downloaded Songs/Shop"));
  EXPECT_TRUE(HasAlbum("FromToPC/PC"));
}

TEST_F(ScanTest, InternalRootKeepsRecAndTestOut) {
  UseRoot(image_.SongRoot());
  Touch("rec/a.mid");
  Touch("test/b.mid");
  Touch("recordings/c.mid");
  ASSERT_EQ(0, Scan("", 1));
  EXPECT_EQ((std::list<std::string>{"recordings"}), albums_);
}

TEST_F(ScanTest, RecorderFoldersAreKeptWithoutSongs) {
  Touch("Recorded Songs/Keep/notes.txt");
  Touch("Recorded Songs/Temporary Folder/notes.txt");
  Touch("Recorded Songs/Other/notes.txt");
  ASSERT_EQ(0, Scan("", 0));
  EXPECT_TRUE(HasAlbum("Recorded Songs/Keep"));
  EXPECT_TRUE(HasAlbum("Recorded Songs/Temporary Folder"));
  EXPECT_FALSE(HasAlbum("Recorded Songs/Other"));
  EXPECT_FALSE(HasAlbum("Recorded Songs"));
}

TEST_F(ScanTest, SongsAreListedTwoLevelsBelowTheTop) {
  Touch("A/B/two.mid");
  Touch("A/B/C/three.mid");
  MakeDirs(root_ + "A/B/Empty");
  ASSERT_EQ(0, Scan("", 0));
  // "A" holds no songs of its own, so it is not an album itself.
  EXPECT_EQ((std::list<std::string>{"A/B"}), albums_);
  EXPECT_EQ((std::list<std::string>{"A/B/two.mid\t\tSMF\t" + Time("A/B/two.mid")}), songs_);
}

TEST_F(ScanTest, DownloadedAndRecorderAreasOfASticksAreOneLevelDeep) {
  Touch("Downloaded Songs/Shop/one.mid");
  Touch("Downloaded Songs/Shop/Deeper/two.mid");
  ASSERT_EQ(0, Scan("Downloaded Songs/", 4));
  EXPECT_EQ((std::list<std::string>{"Downloaded Songs/Shop"}), albums_);
  EXPECT_EQ((std::list<std::string>{"Downloaded Songs/Shop/one.mid\t\tSMF\t"}), songs_);
  Touch("Recorded Songs/Take/one.mid");
  Touch("Recorded Songs/Take/Deeper/two.mid");
  ASSERT_EQ(0, Scan("Recorded Songs/", 5));
  EXPECT_EQ((std::list<std::string>{"Recorded Songs/Take"}), albums_);
  EXPECT_EQ((std::list<std::string>{"Recorded Songs/Take/one.mid\t\tSMF\t" +
                                    Time("Recorded Songs/Take/one.mid")}),
            songs_);
}

TEST_F(ScanTest, DownloadedSongsOnTheInternalRootHaveNoTime) {
  UseRoot(image_.SongRoot());
  Touch("Downloaded Songs/Single Songs/a.mid");
  Touch("Downloaded Songs/Single Songs/a.wav");
  Touch("Downloaded Songs/b.mp3");
  ASSERT_EQ(0, Scan("Downloaded Songs/", 1));
  EXPECT_EQ((std::list<std::string>{"Downloaded Songs/Single Songs/a.mid\t"
                                    "Downloaded Songs/Single Songs/a.wav\tSMF,WAV\t"}),
            songs_);
  EXPECT_EQ((std::list<std::string>{"\tDownloaded Songs/b.mp3\tMP3\t"}), loose_);
}

TEST_F(ScanTest, OtherCategoriesOnTheInternalRootKeepTheTime) {
  UseRoot(image_.SongRoot());
  Touch("Recorded Songs/Take/a.mid");
  ASSERT_EQ(0, Scan("Recorded Songs/", 1));
  EXPECT_EQ((std::list<std::string>{"Recorded Songs/Take/a.mid\t\tSMF\t" +
                                    Time("Recorded Songs/Take/a.mid")}),
            songs_);
  // A scan of the whole root is the general area, whose lines carry the time.
  Touch("Downloaded Songs/Shop/b.mid");
  ASSERT_EQ(0, Scan("", 1));
  EXPECT_NE(songs_.end(), std::find(songs_.begin(), songs_.end(),
                                    "Downloaded Songs/Shop/b.mid\t\tSMF\t" +
                                        Time("Downloaded Songs/Shop/b.mid")));
}

TEST_F(ScanTest, DeeperCallsKnowTheirCategory) {
  UseRoot(image_.SongRoot());
  Touch("Downloaded Songs/Shop/b.mid");
  std::list<std::string> albums, songs, loose;
  bool flag = false;
  ASSERT_EQ(0, GetDirFileList4((root_ + "Downloaded Songs/Shop/").c_str(), start_, albums, songs,
                               loose, 1, 1, &flag));
  EXPECT_EQ((std::list<std::string>{"Downloaded Songs/Shop/b.mid\t\tSMF\t"}), loose);
}

TEST_F(ScanTest, MissingDirectoryIsMinusOne) { EXPECT_EQ(-1, Scan("missing/", 0)); }

TEST_F(ScanTest, LinksAreFollowedAndDanglingOnesSkipped) {
  Touch("Real/a.mid");
  Touch("elsewhere/b.mid");
  ASSERT_EQ(0, symlink((root_ + "Real").c_str(), (root_ + "Linked").c_str()));
  ASSERT_EQ(0, symlink((root_ + "elsewhere/b.mid").c_str(), (root_ + "Real/b.mid").c_str()));
  ASSERT_EQ(0, symlink((root_ + "nowhere.mid").c_str(), (root_ + "Real/gone.mid").c_str()));
  ASSERT_EQ(0, Scan("", 0));
  albums_.sort();
  EXPECT_EQ((std::list<std::string>{"Linked", "Real", "elsewhere"}), albums_);
  songs_.sort();
  // A linked file carries the time of the file it names.
  EXPECT_EQ((std::list<std::string>{"Linked/a.mid\t\tSMF\t" + Time("Real/a.mid"),
                                    "Linked/b.mid\t\tSMF\t" + Time("elsewhere/b.mid"),
                                    "Real/a.mid\t\tSMF\t" + Time("Real/a.mid"),
                                    "Real/b.mid\t\tSMF\t" + Time("elsewhere/b.mid"),
                                    "elsewhere/b.mid\t\tSMF\t" + Time("elsewhere/b.mid")}),
            songs_);
}

TEST_F(ScanTest, DirectoryNamedLikeASongIsAnAlbum) {
  Touch("Tunes.mid/a.mid");
  Touch("notes.txt");
  ASSERT_EQ(0, Scan("", 0));
  EXPECT_EQ((std::list<std::string>{"Tunes.mid"}), albums_);
  EXPECT_EQ((std::list<std::string>{"Tunes.mid/a.mid\t\tSMF\t" + Time("Tunes.mid/a.mid")}), songs_);
  EXPECT_TRUE(loose_.empty());
}

TEST_F(ScanTest, DiskVariantFindsCompanionsOnDisk) {
  Touch("Album/a.mid");
  Touch("Album/a.WAV");
  Touch("Album/B.WAV");  // no companion: the name differs in case
  Touch("Album/b.mp3");
  Touch("top.mid");
  ASSERT_EQ(0, GetDirFileList3(root_.c_str(), start_, albums_, songs_, loose_, 0, 0, &flag_));
  EXPECT_EQ((std::list<std::string>{"Album"}), albums_);
  songs_.sort();
  EXPECT_EQ((std::list<std::string>{"\tAlbum/B.WAV\tWAV\t" + Time("Album/B.WAV"),
                                    "\tAlbum/b.mp3\tMP3\t" + Time("Album/b.mp3"),
                                    "Album/a.mid\tAlbum/a.WAV\tSMF,WAV\t" + Time("Album/a.mid")}),
            songs_);
  EXPECT_EQ((std::list<std::string>{"top.mid\t\tSMF\t" + Time("top.mid")}), loose_);
}

}  // namespace
