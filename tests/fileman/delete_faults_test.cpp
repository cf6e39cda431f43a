// Deleting albums when the catalogue's storage fails under it: every write,
// flush and truncation of the catalogue failing in turn.
#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

#include "fileman/organise_test_helpers.h"
#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "support/fault_runs.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/delete.h"
#include "zansong/fileman/register.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

std::string Db(DeviceImage& image) { return image.SongRoot() + ".zansong.db"; }

int AlbumId(DeviceImage& image, const std::string& path) {
  return QueryInt(Db(image), "SELECT album_id FROM album WHERE album_path='" + path + "'");
}

// The albums Gone0 and Gone1 are deleted; Kept stays.
std::list<int> GoneIds(DeviceImage& image) {
  std::list<int> ids;
  for (const char* path : {"Gone0", "Gone1"}) {
    const int id = AlbumId(image, path);
    if (id > 0) ids.push_back(id);
  }
  return ids;
}

int DeleteAlbums(DeviceImage& image, std::list<int> ids) {
  StdoutCapture quiet;
  const int result = FH_delete_album(image.SongRoot().c_str(), ids, "s");
  quiet.Finish();
  return result;
}

TEST(DeleteFaults, EveryCatalogueFaultInAnAlbumDeletionIsReportedAndLosesNothingCommitted) {
  FaultyOperation op;
  op.target = FaultTarget::kCatalogue;
  op.setUp = [](DeviceImage& image) {
    ClearCancelFlag();
    const std::string root = image.SongRoot();
    for (const char* album : {"Gone0", "Gone1", "Kept"}) {
      MakeDirs(root + album);
      for (int s = 0; s < 2; ++s) {
        WriteSongFile(root + album + "/song" + std::to_string(s) + ".mid",
                      std::string(album) + std::to_string(s));
      }
    }
    {
      StdoutCapture quiet;
      ASSERT_EQ(0, FM_Add_AllSongs_ByCache(root.c_str(), "", 0, 0, 0));
    }
    // A playlist with one song of each album.
    ASSERT_TRUE(Execute(Db(image),
                        "INSERT INTO playlist(ppfix,playlist_id,playlist_title,disp_order) "
                        "VALUES('l',1,'Favourites',1);"
                        "INSERT INTO psong(ppfix,psong_id,playlist_id,pfix,song_id,disp_order) "
                        "SELECT 'l',song_id,1,'s',song_id,song_id FROM song "
                        "WHERE midi_path LIKE '%/song0.mid'"));
  };
  op.run = [](DeviceImage& image) { return DeleteAlbums(image, GoneIds(image)) == kResultOk; };
  op.catalogues = [](DeviceImage& image) { return std::vector<std::string>{Db(image)}; };
  op.check = [](DeviceImage& image, int, bool succeeded) {
    const std::string db = Db(image);
    // The album that was not deleted keeps its row, songs, entry and files.
    const int kept = AlbumId(image, "Kept");
    EXPECT_GT(kept, 0);
    EXPECT_EQ(2, QueryInt(db, "SELECT COUNT(*) FROM song WHERE album_id=" + std::to_string(kept)));
    EXPECT_EQ(1, QueryInt(db,
                          "SELECT COUNT(*) FROM psong WHERE song_id IN (SELECT song_id FROM "
                          "song WHERE midi_path LIKE 'Kept/%')"));
    EXPECT_TRUE(PathExists(image.SongRoot() + "Kept/song1.mid"));
    EXPECT_EQ(1, QueryInt(db, "SELECT COUNT(*) FROM playlist"));
    // No song is left without its album.
    EXPECT_EQ(0, QueryInt(db,
                          "SELECT COUNT(*) FROM song WHERE album_id NOT IN "
                          "(SELECT album_id FROM album)"));
    if (succeeded) {
      EXPECT_TRUE(GoneIds(image).empty());
    }
    // Deleting again without faults finishes the work.  An album whose
    // directory went before its rows could not be deleted reads as a
    // directory that could not be removed, and ends the call after its rows.
    for (int round = 0; round < 2 && !GoneIds(image).empty(); ++round) {
      const int again = DeleteAlbums(image, GoneIds(image));
      EXPECT_TRUE(again == kResultOk || again == kResultRepairFailed) << again;
    }
    EXPECT_TRUE(GoneIds(image).empty());
    EXPECT_EQ(1, QueryInt(db, "SELECT COUNT(*) FROM album"));
    EXPECT_EQ(2, QueryInt(db, "SELECT COUNT(*) FROM song"));
    EXPECT_EQ(1, QueryInt(db, "SELECT COUNT(*) FROM psong"));
  };
  EXPECT_GE(RunUnderEveryFault(op), 3);
}

class DeleteFaultTest : public OrganiseTest {
 protected:
  void SetUp() override {
    OrganiseTest::SetUp();
    InstallCatalogueShim();
    AddAlbum(1, "A");
    AddSong(1, 1, "A/1.mid");
  }
};

TEST_F(DeleteFaultTest, ASongWhoseRowsCannotBeDeletedGivesTheCatalogueFailure) {
  std::list<int> ids{1};
  StdoutCapture quiet;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(kResultDbFail, FH_delete_song(root_.c_str(), ids, "s"));
  quiet.Finish();
  // The files are gone, the row stays: the next registration removes it.
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM song"));
}

TEST_F(DeleteFaultTest, AnAlbumWhoseRowsCannotBeDeletedGivesTheCatalogueFailure) {
  std::list<int> ids{1};
  StdoutCapture quiet;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(kResultDbFail, FH_delete_album(root_.c_str(), ids, "s"));
  quiet.Finish();
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM album"));
}

}  // namespace
}  // namespace zansong_test
