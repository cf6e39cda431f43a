// The small queries before a multi-target request: type words, write
// protection, file and directory sizes.
#include "zansong/async/targets.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "support/child_process.h"
#include "support/device_image.h"
#include "zansong/storage/files.h"

namespace {

using zansong_test::MakeDirs;
using zansong_test::WriteFile;

TEST(TargetTypeTest, EachWordHasItsCode) {
  EXPECT_EQ(FH2_get_target_type("song"), kTargetSong);
  EXPECT_EQ(FH2_get_target_type("album"), kTargetAlbum);
  EXPECT_EQ(FH2_get_target_type("psong"), kTargetPlaylistSong);
  EXPECT_EQ(FH2_get_target_type("playlist"), kTargetPlaylist);
  EXPECT_EQ(FH2_get_target_type("sql"), 5);
}

TEST(TargetTypeTest, WordsAreComparedExactly) {
  EXPECT_EQ(FH2_get_target_type("Song"), 0);
  EXPECT_EQ(FH2_get_target_type("songs"), 0);
  EXPECT_EQ(FH2_get_target_type("son"), 0);
  EXPECT_EQ(FH2_get_target_type(""), 0);
  EXPECT_EQ(FH2_get_target_type(nullptr), kTargetUnknown);
}

class WriteProtectTest : public zansong_test::DeviceTest {};

TEST_F(WriteProtectTest, WritableStorageIsNotProtectedAndKeepsNoProbe) {
  std::string root = image_.UsbRoot();
  EXPECT_EQ(FH2_is_write_protect(root.c_str()), 0);
  EXPECT_EQ(AnyFileExists(root.c_str()), 0);  // the probe file is gone again
}

TEST_F(WriteProtectTest, ReadOnlyStorageIsProtected) {
  std::string root = image_.UsbRoot();
  int status = zansong_test::RunInChild([&root] {
    if (!zansong_test::MakeDirReadOnlyForThisProcess(root)) return zansong_test::kChildSetupFailed;
    return FH2_is_write_protect(root.c_str());
  });
  EXPECT_EQ(status, 1);
}

TEST_F(WriteProtectTest, MissingDirectoryIsProtected) {
  EXPECT_EQ(FH2_is_write_protect(image_.Path("/no/such/dir/").c_str()), 1);
}

TEST_F(WriteProtectTest, PathWithoutRoomForTheSuffixIsProtected) {
  std::string longDir = image_.root() + "/" + std::string(250, 'd') + "/";
  EXPECT_EQ(FH2_is_write_protect(longDir.c_str()), 1);
  EXPECT_EQ(FH2_is_write_protect(nullptr), 1);
}

class SizeTest : public zansong_test::DeviceTest {};

TEST_F(SizeTest, FileSizeOfARegularFile) {
  std::string file = image_.Path("/tmp/a.mid");
  WriteFile(file, std::string(1234, 'x'));
  EXPECT_EQ(FH2_get_file_size(file.c_str()), 1234);
}

TEST_F(SizeTest, FileSizeBeyondFourGigabytes) {
  std::string file = image_.Path("/tmp/big.wav");
  WriteFile(file, "");
  const long long size = 5LL * 1024 * 1024 * 1024 + 3;
  ASSERT_EQ(truncate64(file.c_str(), size), 0);  // sparse: takes no space
  EXPECT_EQ(FH2_get_file_size(file.c_str()), size);
}

TEST_F(SizeTest, FileSizeOfWhatIsNoRegularFileIsZero) {
  EXPECT_EQ(FH2_get_file_size(image_.Path("/tmp").c_str()), 0);
  EXPECT_EQ(FH2_get_file_size(image_.Path("/tmp/missing").c_str()), 0);
  EXPECT_EQ(FH2_get_file_size("/dev/null"), 0);
  EXPECT_EQ(FH2_get_file_size(nullptr), 0);
}

TEST_F(SizeTest, DirSizeAddsTheFilesDirectlyInIt) {
  std::string album = image_.SongRoot() + "Album/";
  MakeDirs(album + "Inner");
  WriteFile(album + "01.mid", std::string(10, 'a'));
  WriteFile(album + "01.wav", std::string(20, 'b'));
  WriteFile(album + "Inner/02.mid", std::string(400, 'c'));  // not counted
  EXPECT_EQ(FH2_get_dir_size(album.c_str()), 30);
  // An album path from the catalogue has no final "/".
  EXPECT_EQ(FH2_get_dir_size((image_.SongRoot() + "Album").c_str()), 30);
}

TEST_F(SizeTest, DirSizeOfWhatCannotBeOpenedIsZero) {
  EXPECT_EQ(FH2_get_dir_size(image_.Path("/no/such/").c_str()), 0);
  EXPECT_EQ(FH2_get_dir_size(nullptr), 0);
}

}  // namespace
