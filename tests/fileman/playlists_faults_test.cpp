// Filling a playlist when the catalogue's storage fails under it.
#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

#include "fileman/organise_test_helpers.h"
#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "support/fault_runs.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/playlists.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

std::string Db(DeviceImage& image) { return image.SongRoot() + ".zansong.db"; }

int g_result = 0;  // of the last run

TEST(PlaylistsFaults, EveryCatalogueFaultWhileAddingSongsGivesCannotExecuteAndKeepsEarlierEntries) {
  FaultyOperation op;
  op.target = FaultTarget::kCatalogue;
  op.setUp = [](DeviceImage& image) {
    CreateCatalogue(image, Db(image));
    ExecOn(Db(image),
           "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
           "VALUES('s',1,'A','A',1);"
           "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<5) "
           "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,album_id,"
           "mtime) SELECT 's',i,'S'||i,'A/'||i||'.mid','',i,1,'m' FROM n;"
           "INSERT INTO playlist VALUES('l',1,'Favourites',1);"
           "INSERT INTO psong VALUES('l',1,1,'s',1,1)");
  };
  op.run = [](DeviceImage& image) {
    std::list<int> ids{2, 3, 4, 5};
    g_result = FH_Add_To_Playlist(image.SongRoot().c_str(), ids, "s", 1, "l", 0);
    return g_result == kResultOk;
  };
  op.catalogues = [](DeviceImage& image) { return std::vector<std::string>{Db(image)}; };
  op.check = [](DeviceImage& image, int, bool succeeded) {
    const std::string db = Db(image);
    // The entry that was there before stays; the entries are those of the
    // songs added before the fault, in order.
    EXPECT_EQ(1, IntOn(db, "SELECT COUNT(*) FROM psong WHERE song_id=1"));
    const int entries = IntOn(db, "SELECT COUNT(*) FROM psong");
    EXPECT_EQ(entries, IntOn(db, "SELECT MAX(song_id) FROM psong"));
    if (succeeded) {
      EXPECT_EQ(5, entries);
    } else {
      // The code of an entry that could not be written.
      EXPECT_EQ(kResultCannotExecute, g_result);
    }
  };
  EXPECT_GE(RunUnderEveryFault(op), 3);
}

class PlaylistsFaultTest : public OrganiseTest {
 protected:
  void SetUp() override {
    OrganiseTest::SetUp();
    InstallCatalogueShim();
    AddAlbum(1, "A");
    for (int id = 1; id <= 3; ++id) AddSong(id, 1, "A/" + std::to_string(id) + ".mid");
    AddPlaylist(1, "Favourites");
    AddEntry(1, 1, 1);
  }
};

TEST_F(PlaylistsFaultTest, APlaylistCopyWhoseRowsCannotBeWrittenGivesCannotExecute) {
  std::list<int> ids{1};
  StdoutCapture quiet;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(kResultCannotExecute, FH_Copy_Playlist(root_.c_str(), ids, "l", 0));
  quiet.Finish();
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM playlist"));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM psong"));
}

TEST_F(PlaylistsFaultTest, AnEntryDeletionThatCannotBeWrittenGivesTheCatalogueFailure) {
  std::list<int> ids{1};
  StdoutCapture quiet;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(kResultDbFail, FH_delete_plsong(root_.c_str(), ids));
  quiet.Finish();
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM psong"));
}

}  // namespace
}  // namespace zansong_test
