// FM_Create_New_Album: unique titles, directories, limits and codes.
#include "zansong/fileman/albums.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "fileman/organise_test_helpers.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class AlbumsTest : public OrganiseTest {
 protected:
  std::string TitleOf(int id) {
    return Text("SELECT album_title FROM album WHERE album_id=" + std::to_string(id));
  }
  std::string PathOf(int id) {
    return Text("SELECT album_path FROM album WHERE album_id=" + std::to_string(id));
  }
};

TEST_F(AlbumsTest, EmptyTitleGivesMyAlbumThenMyAlbum002) {
  int first = FM_Create_New_Album(root_.c_str(), "", "");
  int second = FM_Create_New_Album(root_.c_str(), "", "");
  ASSERT_EQ(1, first);
  ASSERT_EQ(2, second);
  EXPECT_EQ("My Album", TitleOf(1));
  EXPECT_EQ("My Album_002", TitleOf(2));
  EXPECT_EQ("My_Album", PathOf(1));
  EXPECT_EQ("My_Album_002", PathOf(2));
  EXPECT_TRUE(PathExists(root_ + "My_Album_002"));
  EXPECT_EQ("s", Text("SELECT pfix FROM album WHERE album_id=2"));
  EXPECT_EQ(2, Int("SELECT disp_order FROM album WHERE album_id=2"));
  // No title file is written.
  EXPECT_FALSE(PathExists(root_ + "My_Album/.zanalbum"));
}

TEST_F(AlbumsTest, GapsBelowTheHighestNumberAreNotReused) {
  AddAlbum(1, "T");
  AddAlbum(2, "T_005");
  ASSERT_EQ(3, FM_Create_New_Album(root_.c_str(), "", "T"));
  EXPECT_EQ("T_006", TitleOf(3));
  EXPECT_TRUE(PathExists(root_ + "T_006"));
}

TEST_F(AlbumsTest, AfterNumber099ComeUnpadded100And101) {
  AddAlbum(1, "T");
  AddAlbum(2, "T_099");
  ASSERT_EQ(3, FM_Create_New_Album(root_.c_str(), "", "T"));
  EXPECT_EQ("T_100", TitleOf(3));
  ASSERT_EQ(4, FM_Create_New_Album(root_.c_str(), "", "T"));
  EXPECT_EQ("T_101", TitleOf(4));
  EXPECT_EQ("T_101", PathOf(4));
}

TEST_F(AlbumsTest, ADirectoryWithoutARowCountsAsTaken) {
  MakeDirs(root_ + "T");
  ASSERT_EQ(1, FM_Create_New_Album(root_.c_str(), "", "T"));
  EXPECT_EQ("T_002", TitleOf(1));
  // A numbered directory counts too, in any letter case.
  MakeDirs(root_ + "t_007");
  ASSERT_EQ(2, FM_Create_New_Album(root_.c_str(), "", "T"));
  EXPECT_EQ("T_008", TitleOf(2));
}

TEST_F(AlbumsTest, ATitleOfAnotherPrefixIsFree) {
  AddAlbum(1, "Recorded Songs/Other", "T", "r");
  ASSERT_EQ(2, FM_Create_New_Album(root_.c_str(), "", "T"));
  EXPECT_EQ("T", TitleOf(2));
}

TEST_F(AlbumsTest, FolderGivesPrefixAndRelativePath) {
  MakeDirs(root_ + "Recorded Songs");
  ASSERT_EQ(1, FM_Create_New_Album(root_.c_str(), "Recorded Songs", "Live: Take 1"));
  EXPECT_EQ("Live: Take 1", TitleOf(1));
  EXPECT_EQ("Recorded Songs/Live__Take_1", PathOf(1));
  EXPECT_EQ("r", Text("SELECT pfix FROM album WHERE album_id=1"));
  EXPECT_TRUE(PathExists(root_ + "Recorded Songs/Live__Take_1"));
}

TEST_F(AlbumsTest, AlbumLimitAtItsBoundary) {
  FillRows("album", 1, kAlbumLimit - 1, "'s', i, 'A' || i, 'A' || i, i, '', ''");
  FillRows("album", 1000, 5, "'r', i, 'R' || i, 'R' || i, i, '', ''");
  ASSERT_LT(0, FM_Create_New_Album(root_.c_str(), "", "Last"));
  EXPECT_EQ(kResultAlbumLimit, FM_Create_New_Album(root_.c_str(), "", "One Too Many"));
  EXPECT_FALSE(PathExists(root_ + "One_Too_Many"));
  EXPECT_EQ(kAlbumLimit, Int("SELECT COUNT(*) FROM album WHERE pfix='s'"));
}

TEST_F(AlbumsTest, MissingFolderCannotHoldTheDirectory) {
  EXPECT_EQ(kResultWriteProtected, FM_Create_New_Album(root_.c_str(), "No Such Folder", "T"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM album"));
}

TEST_F(AlbumsTest, ANameTakenByALinkToADirectoryCannotBeUsed) {
  // The name test looks for directory entries only; the final check
  // enters the link.
  MakeDirs(root_ + "Elsewhere");
  ASSERT_EQ(0, symlink((root_ + "Elsewhere").c_str(), (root_ + "T").c_str()));
  EXPECT_EQ(kResultCannotExecute, FM_Create_New_Album(root_.c_str(), "", "T"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM album"));
}

TEST_F(AlbumsTest, ARowThatCannotBeWrittenLeavesTheDirectory) {
  Exec("CREATE TRIGGER refuse BEFORE INSERT ON album BEGIN SELECT RAISE(ABORT, 'refused'); END");
  EXPECT_EQ(kResultCannotExecute, FM_Create_New_Album(root_.c_str(), "", "T"));
  EXPECT_TRUE(PathExists(root_ + "T"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM album"));
}

TEST_F(AlbumsTest, UnopenableCatalogueGivesDbFail) {
  const std::string missing = image_.root() + "/no/such/root/";
  EXPECT_EQ(kResultDbFail, FM_Create_New_Album(missing.c_str(), "", "T"));
  EXPECT_FALSE(PathExists(missing));
}

TEST_F(AlbumsTest, CreateStoreAlbumChangesNothing) {
  CreateStoreAlbum(root_.c_str(), "", "T");
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM album"));
  EXPECT_FALSE(PathExists(root_ + "T"));
}

}  // namespace
}  // namespace zansong_test
