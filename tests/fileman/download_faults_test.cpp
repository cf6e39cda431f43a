// Filing a downloaded song when the catalogue's storage fails under it.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "fileman/download_test_helpers.h"
#include "support/fault_runs.h"

namespace zansong_test {
namespace {

std::string Db(DeviceImage& image) { return image.SongRoot() + ".zansong.db"; }

int g_result = 0;  // of the last run

// Files the downloaded ballade on root, into album directory albumDir
// ("" for a single song); true on success.
bool FileBallade(DeviceImage& image, const std::string& root, const std::string& albumDir) {
  DownloadRecord rec = EmptyRecord();
  Put(rec.midiSource, image.Path("/tmp/downloads/ballade.mid"));
  Put(rec.albumDir, albumDir);
  Put(rec.albumTitle, albumDir);
  Put(rec.songTitle, "Ballade");
  Put(rec.mtime, "2026-11-20 10:00:00");
  char msg[4096];
  StdoutCapture quiet;
  g_result = FM_Copy_UlqSong(root.c_str(), &rec, msg);
  quiet.Finish();
  EXPECT_EQ(ExpectedDownloadLine(g_result), std::string(msg));
  return g_result == kResultOk;
}

TEST(DownloadFaults, EveryCatalogueFaultGivesARowFailureAndKeepsTheFiledFiles) {
  FaultyOperation op;
  op.target = FaultTarget::kCatalogue;
  op.setUp = [](DeviceImage& image) {
    MakeDirs(image.Path("/tmp/downloads"));
    WriteSongFile(image.Path("/tmp/downloads/ballade.mid"), "Ballade");
    CreateCatalogue(image, Db(image));
    MakeDirs(image.SongRoot() + "Downloaded Songs/Chopin");
    ExecOn(Db(image),
           "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
           "VALUES('y',1,'Chopin','Downloaded Songs/Chopin',1);"
           "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,album_id,"
           "mtime) VALUES('y',1,'Earlier','Downloaded Songs/Chopin/a.mid','',1,1,'m')");
  };
  op.run = [](DeviceImage& image) { return FileBallade(image, image.SongRoot(), "Chopin"); };
  op.catalogues = [](DeviceImage& image) { return std::vector<std::string>{Db(image)}; };
  op.check = [](DeviceImage& image, int, bool succeeded) {
    const std::string db = Db(image);
    EXPECT_EQ(1, IntOn(db, "SELECT COUNT(*) FROM song WHERE song_title='Earlier'"));
    // A failure after the copy leaves the filed file in place.
    const bool copied = PathExists(image.SongRoot() + "Downloaded Songs/Chopin/ballade.mid");
    if (succeeded) {
      EXPECT_TRUE(copied);
      EXPECT_EQ(1, IntOn(db, "SELECT COUNT(*) FROM song WHERE song_title='Ballade'"));
    } else {
      EXPECT_EQ(kResultCannotExecute, g_result);
      EXPECT_TRUE(copied || PathExists(image.Path("/tmp/downloads/ballade.mid")));
    }
  };
  EXPECT_GE(RunUnderEveryFault(op), 3);
}

TEST(DownloadFaults, EveryFailingFileStepOfADownloadToAStickIsReported) {
  FaultyOperation op;
  op.target = FaultTarget::kFiles;
  op.setUp = [](DeviceImage& image) {
    MakeDirs(image.Path("/tmp/downloads"));
    WriteSongFile(image.Path("/tmp/downloads/ballade.mid"), "Ballade");
    CreateCatalogue(image, image.UsbRoot() + ".zansong.db");
    ExecOn(image.UsbRoot() + ".zansong.db",
           "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
           "VALUES('s',1,'A','A',1)");
  };
  op.run = [](DeviceImage& image) { return FileBallade(image, image.UsbRoot(), ""); };
  op.catalogues = [](DeviceImage& image) {
    return std::vector<std::string>{image.UsbRoot() + ".zansong.db", image.WorkingDb()};
  };
  op.check = [](DeviceImage& image, int, bool succeeded) {
    const std::string stickDb = image.UsbRoot() + ".zansong.db";
    // The stick's catalogue is the old one or the new one.
    EXPECT_EQ(1, IntOn(stickDb, "SELECT COUNT(*) FROM album WHERE album_path='A'"));
    const int songs = IntOn(stickDb, "SELECT COUNT(*) FROM song");
    EXPECT_TRUE(songs == 0 || songs == 1) << songs;
    if (succeeded) {
      EXPECT_EQ(1, songs);
    } else {
      EXPECT_NE(kResultOk, g_result);
    }
  };
  EXPECT_GE(RunUnderEveryFault(op), 3);
}

}  // namespace
}  // namespace zansong_test
