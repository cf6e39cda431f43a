// The free-space check of the copy lists: the sizes it adds up, its
// margin, and a refusal on a small file system.
#include "async/copy_space.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/catalogue_fixture.h"
#include "support/child_process.h"
#include "support/device_image.h"
#include "zansong/result_codes.h"

namespace {

using zansong::AlbumCopySpaceNeeded;
using zansong::CheckCopySpace;
using zansong::kCopySpaceMargin;
using zansong::SongCopySpaceNeeded;
using zansong_test::ExecOn;
using zansong_test::MakeDirs;
using zansong_test::WriteFile;

TargetInfo Target(int type, int id) {
  TargetInfo t{};
  t.type = type;
  t.id = id;
  return t;
}

// A file of size bytes that takes no room (sparse).
void SparseFile(const std::string& path, long long size) {
  WriteFile(path, "");
  ASSERT_EQ(truncate(path.c_str(), size), 0);
}

class CopySpaceTest : public zansong_test::DeviceTest {
 protected:
  void SetUp() override {
    root_ = image_.UsbRoot();
    zansong_test::CreateCatalogue(image_, root_ + ".zansong.db");
    ExecOn(Db(),
           "INSERT INTO album(pfix,album_id,album_path) VALUES('s',1,'Large'),('s',2,'Small');"
           "INSERT INTO song(pfix,song_id,album_id,midi_path,audio_path) VALUES"
           "('s',10,1,'Large/a.mid','Large/a.wav'),('s',11,2,'Small/b.mid',''),"
           "('s',12,2,'Small/c.mid',NULL)");
    MakeDirs(root_ + "Large");
    MakeDirs(root_ + "Small");
    SparseFile(root_ + "Large/a.mid", 3000000);
    SparseFile(root_ + "Large/a.wav", 40000000);
    WriteFile(root_ + "Small/b.mid", std::string(700, 'b'));
    WriteFile(root_ + "Small/c.mid", std::string(50, 'c'));
  }
  std::string Db() const { return root_ + ".zansong.db"; }
  std::string root_;
};

TEST_F(CopySpaceTest, AlbumListCountsOnlyTheLastAlbum) {
  std::vector<TargetInfo> largeThenSmall = {Target(kTargetAlbum, 1), Target(kTargetAlbum, 2)};
  EXPECT_EQ(AlbumCopySpaceNeeded(root_.c_str(), largeThenSmall), 750);
  std::vector<TargetInfo> smallThenLarge = {Target(kTargetAlbum, 2), Target(kTargetAlbum, 1)};
  EXPECT_EQ(AlbumCopySpaceNeeded(root_.c_str(), smallThenLarge), 43000000);
}

TEST_F(CopySpaceTest, AlbumListIgnoresOtherTypesAndUnknownAlbums) {
  std::vector<TargetInfo> targets = {Target(kTargetAlbum, 2), Target(kTargetSong, 1),
                                     Target(kTargetAlbum, 99)};
  EXPECT_EQ(AlbumCopySpaceNeeded(root_.c_str(), targets), 750);
}

TEST_F(CopySpaceTest, SongListAddsMidiAndAudioFiles) {
  std::vector<TargetInfo> targets = {Target(kTargetSong, 10), Target(kTargetAlbum, 11),
                                     Target(kTargetSong, 11)};
  EXPECT_EQ(SongCopySpaceNeeded(root_.c_str(), targets), 43000700);
}

TEST_F(CopySpaceTest, SongWithoutAudioCountsOnlyItsMidiFile) {
  EXPECT_EQ(SongCopySpaceNeeded(root_.c_str(), {Target(kTargetSong, 11)}), 700);
  EXPECT_EQ(SongCopySpaceNeeded(root_.c_str(), {Target(kTargetSong, 12)}), 50);
}

TEST_F(CopySpaceTest, NoCatalogueMeansNoCheck) {
  std::string missing = image_.Path("/no/such/dir/");
  EXPECT_EQ(AlbumCopySpaceNeeded(missing.c_str(), {Target(kTargetAlbum, 1)}), -1);
  EXPECT_EQ(SongCopySpaceNeeded(missing.c_str(), {Target(kTargetSong, 10)}), -1);
  EXPECT_EQ(CheckCopySpace(root_.c_str(), -1), kResultOk);
}

TEST_F(CopySpaceTest, MarginIsTenTwentyFiveKibibytes) { EXPECT_EQ(kCopySpaceMargin, 1049600); }

TEST_F(CopySpaceTest, SmallFileSystemRefusesWithMinusTwentyEight) {
  // A 4 MiB file system of this child's own, on which the catalogue and the
  // albums lie: the small album fits with its margin, the large one not.
  std::string stick = image_.UsbRoot("sdb1");
  int status = zansong_test::RunInChild([&] {
    if (unshare(CLONE_NEWNS) != 0 ||
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tmpfs", stick.c_str(), "tmpfs", 0, "size=4m") != 0) {
      return zansong_test::kChildSetupFailed;
    }
    zansong_test::CreateCatalogue(image_, stick + ".zansong.db");
    ExecOn(stick + ".zansong.db",
           "INSERT INTO album(pfix,album_id,album_path) VALUES('s',1,'Large'),('s',2,'Small')");
    MakeDirs(stick + "Large");
    MakeDirs(stick + "Small");
    SparseFile(stick + "Large/a.wav", 5000000);
    WriteFile(stick + "Small/b.mid", std::string(1000, 'b'));
    std::vector<TargetInfo> small = {Target(kTargetAlbum, 1), Target(kTargetAlbum, 2)};
    std::vector<TargetInfo> large = {Target(kTargetAlbum, 2), Target(kTargetAlbum, 1)};
    int fits = CheckCopySpace(stick.c_str(), AlbumCopySpaceNeeded(stick.c_str(), small));
    int refused = CheckCopySpace(stick.c_str(), AlbumCopySpaceNeeded(stick.c_str(), large));
    return fits == kResultOk && refused == kResultNoSpace ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
}

}  // namespace
