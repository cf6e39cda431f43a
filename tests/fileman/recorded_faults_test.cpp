// Filing a recording when the catalogue's storage fails under it.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "support/fault_runs.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/recorded.h"

namespace zansong_test {
namespace {

std::string Db(DeviceImage& image) { return image.SongRoot() + ".zansong.db"; }

int g_result = 0;  // of the last run

TEST(RecordedFaults, EveryCatalogueFaultGivesTheCatalogueFailureAndKeepsTheRecordingFile) {
  FaultyOperation op;
  op.target = FaultTarget::kCatalogue;
  op.setUp = [](DeviceImage& image) {
    MakeDirs(image.Path("/tmp/recorder"));
    WriteSongFile(image.Path("/tmp/recorder/take.mid"), "Take");
    // The catalogue exists before the run, with a song of its own.
    CreateCatalogue(image, Db(image));
    ExecOn(Db(image),
           "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
           "VALUES('s',1,'A','A',1);"
           "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,album_id,"
           "mtime) VALUES('s',1,'Earlier','A/a.mid','',1,1,'m')");
  };
  op.run = [](DeviceImage& image) {
    char prefix[2] = "?";
    g_result = FM_Add_RecSong(image.SongRoot().c_str(),
                              image.Path("/tmp/recorder/take.mid").c_str(), prefix);
    return g_result > 0;
  };
  op.catalogues = [](DeviceImage& image) { return std::vector<std::string>{Db(image)}; };
  op.check = [](DeviceImage& image, int, bool succeeded) {
    // The recording is in the recording album, catalogued or not.
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(image.SongRoot() + "rec")) {
      (void)entry;
      ++files;
    }
    EXPECT_EQ(1, files);
    EXPECT_EQ(1, QueryInt(Db(image), "SELECT COUNT(*) FROM song WHERE song_title='Earlier'"));
    if (succeeded) {
      EXPECT_EQ(1, QueryInt(Db(image), "SELECT COUNT(*) FROM song WHERE pfix='i'"));
    } else {
      EXPECT_EQ(-1, g_result);
    }
  };
  EXPECT_GE(RunUnderEveryFault(op), 3);
}

// The files below dir, counted through its subdirectories.
int FilesBelow(const std::string& dir) {
  int files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(dir)) {
    if (entry.is_regular_file()) ++files;
  }
  return files;
}

TEST(RecordedFaults, EveryFailingFileStepOfKeepingAStickRecordingIsReported) {
  FaultyOperation op;
  op.target = FaultTarget::kFiles;
  op.setUp = [](DeviceImage& image) {
    MakeDirs(image.Path("/tmp/recorder"));
    WriteSongFile(image.Path("/tmp/recorder/take.mid"), "Take");
    char prefix[2] = "?";
    StdoutCapture quiet;
    g_result = FM_Add_RecSong(image.UsbRoot().c_str(), image.Path("/tmp/recorder/take.mid").c_str(),
                              prefix);
    quiet.Finish();
    ASSERT_GT(g_result, 0);
  };
  op.run = [](DeviceImage& image) {
    StdoutCapture quiet;
    const int result = FM_MoveToKeep(image.UsbRoot().c_str(), 1, "Best Take");
    quiet.Finish();
    return result == 0;
  };
  op.catalogues = [](DeviceImage& image) {
    return std::vector<std::string>{image.UsbRoot() + ".zansong.db", image.WorkingDb()};
  };
  op.check = [](DeviceImage& image, int, bool succeeded) {
    // The recording is on the stick, in one place or the other.
    EXPECT_EQ(1, FilesBelow(image.UsbRoot() + "Recorded Songs"));
    const std::string stickDb = image.UsbRoot() + ".zansong.db";
    EXPECT_EQ(1, QueryInt(stickDb, "SELECT COUNT(*) FROM song"));
    if (succeeded) {
      EXPECT_EQ("Best Take", QueryRows(stickDb, "SELECT song_title FROM song").at(0));
    }
  };
  EXPECT_GE(RunUnderEveryFault(op), 3);
}

}  // namespace
}  // namespace zansong_test
