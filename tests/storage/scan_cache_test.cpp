// Song cache lines and the difference of two line lists.
#include <gtest/gtest.h>

#include <list>
#include <string>

#include "support/device_image.h"
#include "support/utc_zone.h"
#include "zansong/storage/files.h"
#include "zansong/storage/scan.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::WriteFile;

class SongCacheTest : public DeviceTest {
 protected:
  void SetUp() override {
    root_ = image_.root() + "/store/";
    MakeDirs(root_ + "album");
    start_ = static_cast<int>(root_.size()) + 1;
  }
  std::string Touch(const std::string& rel) {
    WriteFile(root_ + rel, "x");
    return root_ + rel;
  }
  std::string Time(const std::string& rel) { return GetModifyTime((root_ + rel).c_str()).c_str(); }
  std::string Line(const TSString& s) { return s.c_str(); }
  std::string root_;
  int start_ = 0;
};

TEST_F(SongCacheTest, MidiAloneIsSmf) {
  std::string midi = Touch("album/a.mid");
  EXPECT_EQ("album/a.mid\t\tSMF\t" + Time("album/a.mid"), Line(GetSongCache(midi.c_str(), start_)));
}

TEST_F(SongCacheTest, TimeAfter2038IsTheFilesTime) {
  zansong_test::UtcZone utc;
  std::string midi = Touch("album/a.mid");
  // 2040-02-29 12:34:56 UTC, beyond a signed 32-bit time.
  ASSERT_TRUE(zansong_test::SetFileTimes(midi, 2214131696LL));
  EXPECT_EQ("album/a.mid\t\tSMF\tWed Feb 29 12:34:56 2040",
            Line(GetSongCache(midi.c_str(), start_)));
  EXPECT_EQ("album/a.mid\t\tSMF\tWed Feb 29 12:34:56 2040",
            Line(GetSongCache2(midi.c_str(), "", start_, 0)));
}

TEST_F(SongCacheTest, WavCompanionWinsOverMp3) {
  std::string midi = Touch("album/a.mid");
  Touch("album/a.MP3");
  EXPECT_EQ("album/a.mid\talbum/a.MP3\tSMF,MP3\t" + Time("album/a.mid"),
            Line(GetSongCache(midi.c_str(), start_)));
  Touch("album/a.wav");
  EXPECT_EQ("album/a.mid\talbum/a.wav\tSMF,WAV\t" + Time("album/a.mid"),
            Line(GetSongCache(midi.c_str(), start_)));
}

TEST_F(SongCacheTest, AudioFileWithAMidiFileHasNoLineOfItsOwn) {
  std::string wav = Touch("album/a.wav");
  EXPECT_EQ("\talbum/a.wav\tWAV\t" + Time("album/a.wav"), Line(GetSongCache(wav.c_str(), start_)));
  Touch("album/a.MID");
  EXPECT_EQ("", Line(GetSongCache(wav.c_str(), start_)));
  std::string mp3 = Touch("album/b.Mp3");
  EXPECT_EQ("\talbum/b.Mp3\tMP3\t" + Time("album/b.Mp3"), Line(GetSongCache(mp3.c_str(), start_)));
}

TEST_F(SongCacheTest, OtherFilesHaveNoLine) {
  EXPECT_EQ("", Line(GetSongCache(Touch("album/a.txt").c_str(), start_)));
  EXPECT_EQ("", Line(GetSongCache(Touch("album/mid").c_str(), start_)));
}

TEST_F(SongCacheTest, KnownPairingKinds) {
  std::string midi = Touch("album/a.mid");
  std::string wav = Touch("album/a.WAV");
  std::string mp3 = Touch("album/a.mp3");
  const std::string t = Time("album/a.mid");
  EXPECT_EQ("album/a.mid\t\tSMF\t" + t, Line(GetSongCache2(midi.c_str(), "", start_, 0)));
  EXPECT_EQ("album/a.mid\talbum/a.WAV\tSMF,WAV\t" + t,
            Line(GetSongCache2(midi.c_str(), wav.c_str(), start_, 1)));
  EXPECT_EQ("album/a.mid\talbum/a.mp3\tSMF,MP3\t" + t,
            Line(GetSongCache2(midi.c_str(), mp3.c_str(), start_, 2)));
  EXPECT_EQ("\talbum/a.mp3\tMP3\t" + Time("album/a.mp3"),
            Line(GetSongCache2("", mp3.c_str(), start_, 3)));
}

TEST_F(SongCacheTest, DownloadedStorageKindLeavesTheTimeOut) {
  std::string midi = Touch("album/a.mid");
  std::string wav = Touch("album/a.wav");
  EXPECT_EQ("album/a.mid\talbum/a.wav\tSMF,WAV\t",
            Line(GetSongCache2(midi.c_str(), wav.c_str(), start_, 4)));
  EXPECT_EQ("\talbum/a.wav\tWAV\t", Line(GetSongCache2("", wav.c_str(), start_, 4)));
}

TEST_F(SongCacheTest, CacheListKeepsTheLinesThatExist) {
  std::string midi = Touch("album/a.mid");
  std::string wav = Touch("album/a.wav");
  std::string text = Touch("album/x.txt");
  TSString root(root_.c_str());
  root.SetLength(root.Length() - 1);  // start = length of the root + 1
  std::list<std::string> paths = {midi, wav, text};
  std::list<std::string> lines = {"kept"};
  GetSongCacheList(root, paths, lines);
  ASSERT_EQ(2u, lines.size());
  EXPECT_EQ("kept", lines.front());
  EXPECT_EQ("/album/a.mid\t/album/a.wav\tSMF,WAV\t" + Time("album/a.mid"), lines.back());
}

TEST(DiffCacheListTest, IdenticalListsBecomeEmpty) {
  std::list<std::string> a = {"a", "b", "c"};
  std::list<std::string> b = a;
  GetDiffCacheList(a, b);
  EXPECT_TRUE(a.empty());
  EXPECT_TRUE(b.empty());
}

TEST(DiffCacheListTest, EachListKeepsWhatOnlyItHad) {
  std::list<std::string> a = {"a", "c", "d", "f"};
  std::list<std::string> b = {"b", "c", "e", "f", "g"};
  GetDiffCacheList(a, b);
  EXPECT_EQ((std::list<std::string>{"a", "d"}), a);
  EXPECT_EQ((std::list<std::string>{"b", "e", "g"}), b);
}

TEST(DiffCacheListTest, EmptyListsAndByteOrder) {
  std::list<std::string> a;
  std::list<std::string> b = {"x"};
  GetDiffCacheList(a, b);
  EXPECT_EQ(1u, b.size());
  // High bytes sort after ASCII, as in the catalogue's sorted lists.
  a = {"a\t", "\xE3\x81\x82"};
  b = {"\xE3\x81\x82"};
  GetDiffCacheList(a, b);
  EXPECT_EQ((std::list<std::string>{"a\t"}), a);
  EXPECT_TRUE(b.empty());
}

}  // namespace
