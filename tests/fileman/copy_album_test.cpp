// Copying whole albums: titles and directories of the new albums, copies
// into an existing album, limits and failures.
#include <sys/stat.h>

#include <list>
#include <string>
#include <vector>

#include "fileman/copy_test_helpers.h"
#include "zansong/fileman/copy.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class CopyAlbumTest : public CopyTest {
 protected:
  void SetUp() override {
    CopyTest::SetUp();
    MakeDirs(Root() + "Live");
    WriteSongFile(Root() + "Live/one.mid", "One");
    WriteSongFile(Root() + "Live/two.mid", "Two");
    Register();
  }
  int CopyAlbum(std::list<int> ids, const char* folder, int dest = 0) {
    StdoutCapture quiet;
    return FH_copy_album(Root().c_str(), ids, folder, dest);
  }
  std::vector<std::string> Albums() {
    return QueryRows(Db(), "SELECT album_title,album_path,pfix FROM album ORDER BY album_id");
  }
};

TEST_F(CopyAlbumTest, CopyingAnAlbumTwiceGivesLiveAndLive002WithDirectoriesToMatch) {
  // The source lies in another folder, so that its own title is still free
  // in the target folder.
  MakeDirs(Root() + "FromToPC");
  ASSERT_EQ(kResultOk, CopyAlbum({AlbumId("Live")}, "FromToPC"));
  ASSERT_EQ(kResultOk, CopyAlbum({AlbumId("Live")}, "FromToPC"));
  EXPECT_EQ(Albums(), (std::vector<std::string>{"Live|Live|s", "Live|FromToPC/Live|f",
                                                "Live_002|FromToPC/Live_002|f"}));
  EXPECT_EQ(SongsOf(AlbumId("FromToPC/Live_002")),
            (std::vector<std::string>{"One|FromToPC/Live_002/one.mid||SMF|f",
                                      "Two|FromToPC/Live_002/two.mid||SMF|f"}));
  EXPECT_EQ(ReadFile(Root() + "Live/two.mid"), ReadFile(Root() + "FromToPC/Live/two.mid"));
}

TEST_F(CopyAlbumTest, ACopyInTheSameFolderIsNumbered) {
  ASSERT_EQ(kResultOk, CopyAlbum({AlbumId("Live")}, ""));
  EXPECT_EQ(Albums(), (std::vector<std::string>{"Live|Live|s", "Live_002|Live_002|s"}));
  EXPECT_EQ(2u, SongsOf(AlbumId("Live_002")).size());
}

TEST_F(CopyAlbumTest, ADirectoryWithoutRowStillTakesItsName) {
  MakeDirs(Root() + "Live_002");
  ASSERT_EQ(kResultOk, CopyAlbum({AlbumId("Live")}, ""));
  EXPECT_EQ(Albums().back(), "Live_003|Live_003|s");
}

TEST_F(CopyAlbumTest, NumbersGoOnAbove099Unpadded) {
  ASSERT_TRUE(Execute(Db(), "INSERT INTO album VALUES('s',50,'Live_099','x99',9,'','')"));
  ASSERT_EQ(kResultOk, CopyAlbum({AlbumId("Live")}, ""));
  ASSERT_EQ(kResultOk, CopyAlbum({AlbumId("Live")}, ""));
  const std::vector<std::string> albums = Albums();
  EXPECT_EQ(albums[albums.size() - 2], "Live_100|Live_100|s");
  EXPECT_EQ(albums.back(), "Live_101|Live_101|s");
}

TEST_F(CopyAlbumTest, CopiesIntoAnExistingAlbumAfterItsSongs) {
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Best/one.mid", "Old");
  Register();
  ASSERT_EQ(kResultOk, CopyAlbum({AlbumId("Live")}, "", AlbumId("Best")));
  EXPECT_EQ(SongsOf(AlbumId("Best")),
            (std::vector<std::string>{"Old|Best/one.mid||SMF|s", "One|Best/one_002.mid||SMF|s",
                                      "Two|Best/two.mid||SMF|s"}));
  EXPECT_EQ(2u, Albums().size());
}

TEST_F(CopyAlbumTest, SeveralAlbumsAreCopiedInOrder) {
  MakeDirs(Root() + "Solo");
  WriteSongFile(Root() + "Solo/s.mid", "S");
  MakeDirs(Root() + "FromToPC");
  Register();
  ASSERT_EQ(kResultOk, CopyAlbum({AlbumId("Solo"), AlbumId("Live")}, "FromToPC"));
  EXPECT_EQ(1u, SongsOf(AlbumId("FromToPC/Solo")).size());
  EXPECT_EQ(2u, SongsOf(AlbumId("FromToPC/Live")).size());
}

TEST_F(CopyAlbumTest, TooManyAlbumsGive30) {
  ASSERT_TRUE(
      Execute(Db(), "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i+1 FROM n WHERE i<" +
                        std::to_string(100 + kAlbumLimit - 2) +
                        ") INSERT INTO album SELECT 's',i,'A'||i,'A'||i,i,'','' FROM n"));
  EXPECT_EQ(kResultAlbumLimit, CopyAlbum({AlbumId("Live")}, ""));
  EXPECT_FALSE(PathExists(Root() + "Live_002"));
}

TEST_F(CopyAlbumTest, AnAlbumDirectoryThatCannotBeMadeGives14) {
  // A file stands where the category folder should be.
  WriteFile(Root() + "FromToPC", "");
  EXPECT_EQ(kResultWriteProtected, CopyAlbum({AlbumId("Live")}, "FromToPC"));
  EXPECT_EQ(1u, Albums().size());
}

TEST_F(CopyAlbumTest, AFailedAlbumInsertGives29AndNoSongPointsAtIt) {
  // The album table refuses new rows: an insert fails, CreateAlbum gives -1.
  ASSERT_TRUE(Execute(Db(),
                      "CREATE TRIGGER no_albums BEFORE INSERT ON album BEGIN SELECT "
                      "RAISE(ABORT,'refused'); END"));
  EXPECT_EQ(kResultCannotExecute, CopyAlbum({AlbumId("Live")}, ""));
  EXPECT_EQ(0, QueryInt(Db(), "SELECT COUNT(*) FROM song WHERE album_id<1"));
  EXPECT_EQ(2, QueryInt(Db(), "SELECT COUNT(*) FROM song"));
}

TEST_F(CopyAlbumTest, ARootWithoutCatalogueGives26) {
  std::list<int> ids{1};
  StdoutCapture quiet;
  EXPECT_EQ(kResultDbFail, FH_copy_album(image_.Path("/nowhere/").c_str(), ids, "", 0));
}

TEST_F(CopyAlbumTest, AFailingSongEndsTheAlbumCopyWithItsCode) {
  ::unlink((Root() + "Live/one.mid").c_str());
  EXPECT_EQ(kResultNoFile, CopyAlbum({AlbumId("Live")}, ""));
  // The new album stays, empty, as the catalogue says.
  EXPECT_TRUE(SongsOf(AlbumId("Live_002")).empty());
  EXPECT_TRUE(PathExists(Root() + "Live_002"));
}

}  // namespace
}  // namespace zansong_test
