// The limits of a storage walk and its failures.
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <list>
#include <string>

#include "support/child_process.h"
#include "support/device_image.h"
#include "zansong/storage/scan.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::OpenPathToOthers;
using zansong_test::RunAsNobody;
using zansong_test::WriteFile;

class ScanLimitsTest : public DeviceTest {
 protected:
  void SetUp() override {
    root_ = image_.UsbRoot("sdb1");
    start_ = static_cast<int>(root_.size()) + 1;
  }
  // count empty song files name0.mid ... in root_ + rel.
  void Songs(const std::string& rel, int count, const char* ext = ".mid") {
    MakeDirs(root_ + rel);
    for (int i = 0; i < count; ++i) {
      WriteFile(root_ + rel + "s" + std::to_string(i) + ext, "");
    }
  }
  int Scan(int kind = 2) {
    albums_.clear();
    songs_.clear();
    return GetDirFileList4(root_.c_str(), start_, albums_, songs_, loose_, kind, 0, &flag_);
  }
  std::string root_;
  int start_ = 0;
  std::list<std::string> albums_, songs_, loose_;
  bool flag_ = false;
};

TEST_F(ScanLimitsTest, FourHundredNinetyNineAlbumsFitTheFiveHundredthDoesNot) {
  for (int i = 0; i < 499; ++i) MakeDirs(root_ + "album" + std::to_string(i));
  EXPECT_EQ(0, Scan());
  EXPECT_EQ(499u, albums_.size());
  MakeDirs(root_ + "one more");
  EXPECT_EQ(-2, Scan());
}

TEST_F(ScanLimitsTest, FourThousandNineHundredNinetyNineAlbumSongsFitOneMoreDoesNot) {
  for (int i = 0; i < 5; ++i) Songs("a" + std::to_string(i) + "/", 999, i % 2 ? ".mid" : ".wav");
  Songs("last/", 4, ".mp3");
  EXPECT_EQ(0, Scan());
  EXPECT_EQ(4999u, songs_.size());
  WriteFile(root_ + "last/one more.mid", "");
  EXPECT_EQ(-2, Scan());
}

TEST_F(ScanLimitsTest, ThousandSongsInASubdirectoryDropOnlyThatDirectory) {
  Songs("big/", 500, ".mid");
  Songs("big/", 500, ".MP3");  // same names: 500 pairs are 500 songs
  Songs("small/", 2);
  EXPECT_EQ(0, Scan());
  EXPECT_EQ(2u, albums_.size());
  EXPECT_EQ(502u, songs_.size());
  Songs("big/", 1000, ".wav");  // 500 pairs and 500 audio-only songs
  EXPECT_EQ(0, Scan());
  EXPECT_EQ((std::list<std::string>{"small"}), albums_);
  EXPECT_EQ(2u, songs_.size());
}

TEST_F(ScanLimitsTest, ThousandSongsInTheScanDirectoryIsMinusThree) {
  Songs("", 999);
  EXPECT_EQ(0, Scan());
  Songs("", 1000);
  EXPECT_EQ(-3, Scan());
  EXPECT_EQ(1000u, loose_.size());
}

TEST_F(ScanLimitsTest, DiskVariantStopsAfter999SongsInOneDirectory) {
  Songs("", 999);
  EXPECT_EQ(0, GetDirFileList3(root_.c_str(), start_, albums_, songs_, loose_, 2, 0, &flag_));
  EXPECT_EQ(999u, loose_.size());
  Songs("", 1000);
  EXPECT_EQ(-3, GetDirFileList3(root_.c_str(), start_, albums_, songs_, loose_, 2, 0, &flag_));
}

// The scan result, negated, as seen by a process running as nobody (the
// tests may run as root, for whom no directory is unreadable).
int ScanAsNobody(const std::string& root, int start) {
  return RunAsNobody([&root, start] {
    std::list<std::string> albums, songs, loose;
    bool flag = false;
    int r = GetDirFileList4(root.c_str(), start, albums, songs, loose, 2, 0, &flag);
    return r <= 0 ? -r : 99;
  });
}

TEST_F(ScanLimitsTest, UnreadableSubdirectoryStopsTheWholeScan) {
  Songs("readable/", 1);
  Songs("locked/", 1);
  ASSERT_EQ(0, chown((root_ + "locked").c_str(), 0, 0));
  ASSERT_EQ(0, chmod((root_ + "locked").c_str(), 0700));
  // Everything above the locked directory is open to others.
  OpenPathToOthers(root_, image_.root());
  EXPECT_EQ(1, ScanAsNobody(root_, start_));
  ASSERT_EQ(0, chmod((root_ + "locked").c_str(), 0755));
  EXPECT_EQ(0, ScanAsNobody(root_, start_));
  // Below the depth whose songs are listed, a directory is still opened.
  MakeDirs(root_ + "locked/b/c");
  ASSERT_EQ(0, chmod((root_ + "locked/b").c_str(), 0755));
  ASSERT_EQ(0, chmod((root_ + "locked/b/c").c_str(), 0700));
  EXPECT_EQ(1, ScanAsNobody(root_, start_));
}

}  // namespace
