// Registration when the catalogue's storage fails under it: a nearly full
// file system, and every write, flush and truncation of the catalogue
// failing in turn.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/child_process.h"
#include "support/device_image.h"
#include "support/fault_runs.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/register.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

int Register(const std::string& root, std::string* printed = nullptr) {
  StdoutCapture capture;
  const int result = FM_Add_AllSongs_ByCache(root.c_str(), "", 0, 0, 0);
  const std::string text = capture.Finish();
  if (printed != nullptr) *printed = text;
  return result;
}

// Albums count songs each, with long titles so that the rows take room.
void WriteAlbums(const std::string& root, int albums, int songs, const std::string& tag) {
  for (int a = 0; a < albums; ++a) {
    const std::string dir = root + tag + std::to_string(a);
    MakeDirs(dir);
    for (int s = 0; s < songs; ++s) {
      WriteSongFile(dir + "/song" + std::to_string(s) + ".mid",
                    std::string(150, static_cast<char>('a' + s % 26)), 1);
    }
  }
}

// Results of the nearly-full child, one bit each.
enum : int {
  kNotReportedAsFailure = 1,
  kNoDbErrorLine = 2,
  kNoFunctionLine = 4,
  kCatalogueDamaged = 8,
  kEarlierRowsLost = 16,
  kNothingWritten = 32,
};

TEST(RegisterFaults, ANearlyFullFileSystemEndsRegistrationWithTheCatalogueFailure) {
  DeviceImage image;
  const std::string root = image.SongRoot();
  ClearCancelFlag();
  const int result = RunInChild([&] {
    if (!MountSmallFileSystemForThisProcess(root, 4 << 20)) return kChildSetupFailed;
    WriteAlbums(root, 1, 5, "Earlier");
    if (Register(root) != 0) return kChildSetupFailed;
    WriteAlbums(root, 3, 100, "Album");
    const std::string db = root + ".zansong.db";
    if (!FillFileSystemLeaving(root, 64 * 1024)) return kChildSetupFailed;
    std::string printed;
    int bits = 0;
    if (Register(root, &printed) != kResultDbFail) bits |= kNotReportedAsFailure;
    if (printed.find("DB: error ") == std::string::npos) bits |= kNoDbErrorLine;
    if (printed.find("Error! :FM_Add_AllSongs_ByCache\n") == std::string::npos) {
      bits |= kNoFunctionLine;
    }
    if (IntegrityOf(db) != "ok") bits |= kCatalogueDamaged;
    if (QueryInt(db, "SELECT COUNT(*) FROM song WHERE midi_path LIKE 'Earlier0/%'") != 5) {
      bits |= kEarlierRowsLost;
    }
    if (QueryInt(db, "SELECT COUNT(*) FROM album") < 2) bits |= kNothingWritten;
    return bits;
  });
  if (result == kChildSetupFailed) GTEST_SKIP() << "needs root for a small tmpfs";
  EXPECT_EQ(0, result);
}

TEST(RegisterFaults, EveryCatalogueFaultIsReportedAndLosesNothingCommitted) {
  FaultyOperation op;
  op.target = FaultTarget::kCatalogue;
  op.setUp = [](DeviceImage& image) {
    ClearCancelFlag();
    const std::string root = image.SongRoot();
    WriteAlbums(root, 2, 3, "Kept");
    WriteAlbums(root, 1, 2, "Gone");
    ASSERT_EQ(0, Register(root));
    ASSERT_TRUE(
        Execute(root + ".zansong.db",
                "INSERT INTO playlist(ppfix,playlist_id,playlist_title,disp_order) "
                "VALUES('s',1,'Favourites',1);"
                "INSERT INTO psong(ppfix,psong_id,playlist_id,pfix,song_id,disp_order) "
                "SELECT 's',1,1,'s',song_id,1 FROM song WHERE midi_path='Kept0/song0.mid'"));
    // Changes for the run under faults: a new album, a vanished one, a new
    // song in a kept album.
    WriteAlbums(root, 1, 4, "New");
    std::filesystem::remove_all(root + "Gone0");
    WriteSongFile(root + "Kept1/late.mid", "Late", 1);
  };
  op.run = [](DeviceImage& image) { return Register(image.SongRoot()) == 0; };
  op.catalogues = [](DeviceImage& image) {
    return std::vector<std::string>{image.SongRoot() + ".zansong.db"};
  };
  op.check = [](DeviceImage& image, int, bool succeeded) {
    const std::string db = image.SongRoot() + ".zansong.db";
    // The songs of the kept albums, and the playlist, were committed
    // before and stay.
    EXPECT_EQ(6, QueryInt(db, "SELECT COUNT(*) FROM song WHERE midi_path LIKE 'Kept_/song%'"));
    EXPECT_EQ(1, QueryInt(db, "SELECT COUNT(*) FROM psong"));
    // No song belongs to an album that is not there.
    EXPECT_EQ(0, QueryInt(db,
                          "SELECT COUNT(*) FROM song WHERE album_id NOT IN "
                          "(SELECT album_id FROM album)"));
    if (succeeded) {
      EXPECT_EQ(11, QueryInt(db, "SELECT COUNT(*) FROM song"));
      EXPECT_EQ(0, QueryInt(db, "SELECT COUNT(*) FROM album WHERE album_path='Gone0'"));
    }
    // The next registration without faults completes the work.
    EXPECT_EQ(0, Register(image.SongRoot()));
    EXPECT_EQ(11, QueryInt(db, "SELECT COUNT(*) FROM song"));
    EXPECT_EQ(3, QueryInt(db, "SELECT COUNT(*) FROM album"));
  };
  EXPECT_GE(RunUnderEveryFault(op), 5);
}

}  // namespace
}  // namespace zansong_test
