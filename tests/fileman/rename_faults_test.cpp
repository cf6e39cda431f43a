// Renaming a song with its files when the catalogue's storage fails under
// it: the row always names the files that are there.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fileman/organise_test_helpers.h"
#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "support/fault_runs.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/rename.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

std::string Db(DeviceImage& image) { return image.SongRoot() + ".zansong.db"; }

int g_result = 0;  // of the last run

TEST(RenameFaults, EveryCatalogueFaultGivesTheRenameFailureAndTheRowStillNamesItsFiles) {
  FaultyOperation op;
  op.target = FaultTarget::kCatalogue;
  op.setUp = [](DeviceImage& image) {
    const std::string root = image.SongRoot();
    CreateCatalogue(image, Db(image));
    MakeDirs(root + "A");
    WriteSongFile(root + "A/old.mid", "Old");
    WriteWavSong(root + "A/old.wav", 200);
    ExecOn(Db(image),
           "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
           "VALUES('s',1,'A','A',1);"
           "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,format,disp_order,"
           "album_id,mtime) VALUES('s',1,'Old','A/old.mid','A/old.wav','SMF,WAV',1,1,'m')");
  };
  op.run = [](DeviceImage& image) {
    g_result = FH_rename(image.SongRoot().c_str(), 1, "New", 0, 1);
    return g_result == kResultOk;
  };
  op.catalogues = [](DeviceImage& image) { return std::vector<std::string>{Db(image)}; };
  op.check = [](DeviceImage& image, int, bool succeeded) {
    const std::string root = image.SongRoot();
    const std::string db = Db(image);
    const std::string midi = TextOn(db, "SELECT midi_path FROM song WHERE song_id=1");
    const std::string audio = TextOn(db, "SELECT audio_path FROM song WHERE song_id=1");
    EXPECT_TRUE(PathExists(root + midi)) << midi;
    EXPECT_TRUE(PathExists(root + audio)) << audio;
    if (succeeded) {
      EXPECT_EQ("A/New.mid", midi);
      EXPECT_EQ("New", TextOn(db, "SELECT song_title FROM song WHERE song_id=1"));
    } else {
      EXPECT_EQ(kResultRenameDbFail, g_result);
    }
  };
  EXPECT_GE(RunUnderEveryFault(op), 3);
}

class RenameFaultTest : public OrganiseTest {
 protected:
  void SetUp() override {
    OrganiseTest::SetUp();
    InstallCatalogueShim();
  }
  int RenameUnderFault(int id, int kind) {
    StdoutCapture quiet;
    FaultArm full(FaultTarget::kCatalogue, 1);
    const int result = FH_rename(root_.c_str(), id, "New", kind, 0);
    quiet.Finish();
    return result;
  }
};

TEST_F(RenameFaultTest, APlaylistTitleThatCannotBeWrittenGivesTheRenameFailure) {
  AddPlaylist(1, "Old");
  EXPECT_EQ(kResultRenameDbFail, RenameUnderFault(1, 2));
  EXPECT_EQ("Old", Text("SELECT playlist_title FROM playlist"));
}

TEST_F(RenameFaultTest, AnAlbumTitleThatCannotBeWrittenGivesTheRenameFailure) {
  AddAlbum(1, "A", "Old");
  EXPECT_EQ(kResultRenameDbFail, RenameUnderFault(1, 1));
  EXPECT_EQ("Old", Text("SELECT album_title FROM album"));
}

TEST_F(RenameFaultTest, AnAlbumTitleFileThatCannotBeWrittenGivesTheRenameFailure) {
  AddAlbum(1, "A", "Old");
  // The title file's place is taken by a directory.
  MakeDirs(root_ + "A/.zanalbum");
  EXPECT_EQ(kResultRenameDbFail, FH_rename(root_.c_str(), 1, "New", 1, 0));
}

}  // namespace
}  // namespace zansong_test
