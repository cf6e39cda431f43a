// Copying songs when the storage fails under the copy: every write of the
// song files, and every write, flush and truncation of the catalogue,
// failing in turn.
#include <gtest/gtest.h>

#include <filesystem>
#include <list>
#include <string>
#include <vector>

#include "fileman/organise_test_helpers.h"
#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "support/fault_runs.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/albums.h"
#include "zansong/fileman/copy.h"
#include "zansong/fileman/register.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

std::string Db(DeviceImage& image) { return image.SongRoot() + ".zansong.db"; }

int AlbumId(DeviceImage& image, const std::string& path) {
  return QueryInt(Db(image), "SELECT album_id FROM album WHERE album_path='" + path + "'");
}

// Album Source: three MIDI songs and one with a WAV file beside it; an
// empty album Copies.
void LayOut(DeviceImage& image) {
  ClearCancelFlag();
  const std::string root = image.SongRoot();
  MakeDirs(root + "Source");
  for (int s = 0; s < 3; ++s) {
    WriteSongFile(root + "Source/song" + std::to_string(s) + ".mid", "Song" + std::to_string(s));
  }
  WriteSongFile(root + "Source/duet.mid", "Duet");
  WriteWavSong(root + "Source/duet.wav", 400);
  StdoutCapture quiet;
  ASSERT_EQ(0, FM_Add_AllSongs_ByCache(root.c_str(), "", 0, 0, 0));
  ASSERT_GT(FM_Create_New_Album(root.c_str(), "", "Copies"), 0);
}

bool CopySource(DeviceImage& image) {
  std::list<int> ids;
  for (const std::string& id :
       QueryRows(Db(image), "SELECT song_id FROM song WHERE album_id=" +
                                std::to_string(AlbumId(image, "Source")) + " ORDER BY song_id")) {
    ids.push_back(std::stoi(id));
  }
  StdoutCapture quiet;
  return FH_copy_song_usb(image.SongRoot().c_str(), ids, AlbumId(image, "Copies")) == kResultOk;
}

// The files of album Copies: each is a whole copy of its source and has a
// row; each row of the album names files that are there.
void CheckCopies(DeviceImage& image, bool succeeded) {
  const std::string root = image.SongRoot();
  const std::string db = Db(image);
  const int copies = AlbumId(image, "Copies");
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(root + "Copies")) {
    const std::string name = entry.path().filename().string();
    const std::string relative = "Copies/" + name;
    ++files;
    EXPECT_EQ(1, QueryInt(db, "SELECT COUNT(*) FROM song WHERE midi_path='" + relative +
                                  "' OR audio_path='" + relative + "'"))
        << name << " is no catalogued song";
    EXPECT_EQ(ReadFile(root + "Source/" + name), ReadFile(entry.path().string())) << name;
  }
  for (const std::string& path :
       QueryRows(db, "SELECT midi_path FROM song WHERE album_id=" + std::to_string(copies) +
                         " UNION SELECT audio_path FROM song WHERE audio_path<>'' AND album_id=" +
                         std::to_string(copies))) {
    EXPECT_TRUE(PathExists(root + path)) << path;
  }
  // The source album is as it was.
  EXPECT_EQ(4, QueryInt(db, "SELECT COUNT(*) FROM song WHERE album_id=" +
                                std::to_string(AlbumId(image, "Source"))));
  EXPECT_TRUE(PathExists(root + "Source/duet.wav"));
  if (succeeded) {
    EXPECT_EQ(5, files);
    EXPECT_EQ(4,
              QueryInt(db, "SELECT COUNT(*) FROM song WHERE album_id=" + std::to_string(copies)));
  }
}

FaultyOperation SongCopyUnder(FaultTarget target) {
  FaultyOperation op;
  op.target = target;
  op.setUp = LayOut;
  op.run = CopySource;
  op.catalogues = [](DeviceImage& image) { return std::vector<std::string>{Db(image)}; };
  op.check = [](DeviceImage& image, int, bool succeeded) { CheckCopies(image, succeeded); };
  return op;
}

TEST(CopyFaults, EveryFailingFileWriteOfASongCopyIsReportedAndLeavesNoPartCopy) {
  EXPECT_GE(RunUnderEveryFault(SongCopyUnder(FaultTarget::kFiles)), 5);
}

TEST(CopyFaults, EveryCatalogueFaultOfASongCopyIsReportedAndLeavesNoUncataloguedCopy) {
  EXPECT_GE(RunUnderEveryFault(SongCopyUnder(FaultTarget::kCatalogue)), 1);
}

class MoveFaultTest : public OrganiseTest {
 protected:
  void SetUp() override {
    OrganiseTest::SetUp();
    InstallCatalogueShim();
    AddAlbum(1, "Recorded Songs/Temporary Folder", "Temporary Folder", "r");
    AddAlbum(2, "Recorded Songs/Keep", "Keep", "r");
    AddSong(1, 1, "Recorded Songs/Temporary Folder/take.mid", "", "r");
  }
};

TEST_F(MoveFaultTest, AMovedSongWhoseRowCannotBeWrittenGoesBackUnderItsOldRow) {
  std::list<int> ids{1};
  StdoutCapture quiet;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(kResultCannotExecute, FH_copy_song_usb(root_.c_str(), ids, 0));
  quiet.Finish();
  EXPECT_EQ("Recorded Songs/Temporary Folder/take.mid", Text("SELECT midi_path FROM song"));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM song"));
  EXPECT_TRUE(PathExists(root_ + "Recorded Songs/Temporary Folder/take.mid"));
  EXPECT_TRUE(std::filesystem::is_empty(root_ + "Recorded Songs/Keep"));
}

}  // namespace
}  // namespace zansong_test
