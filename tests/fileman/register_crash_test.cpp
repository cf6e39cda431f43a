// Registration killed part-way (SIGKILL, as a power loss or a crashed host
// would end it) at 20 points spread over its catalogue writes (each time at
// the first write, flush or truncation after one of its row changes, so
// that the points fall at the same places in every run), on a storage
// of a few thousand songs: after each, the catalogue opens and is sound,
// and the next registration gives the same albums and songs as one that
// was never interrupted.  Once for a first registration and once for a
// registration after changes.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/child_process.h"
#include "support/device_image.h"
#include "support/fault_injection.h"
#include "support/fault_runs.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/register.h"

namespace zansong_test {
namespace {

constexpr int kAlbums = 40;
constexpr int kSongsPerAlbum = 50;
constexpr int kKillPoints = 20;

// What a registration must give, whatever ids and orders it chose.
const char kAlbumRows[] = "SELECT album_path,album_title,pfix FROM album ORDER BY album_path";
const char kSongRows[] =
    "SELECT song.midi_path,song.audio_path,song.song_title,song.length,song.format,"
    "song.mtime,album.album_path FROM song LEFT JOIN album ON song.album_id=album.album_id "
    "ORDER BY song.midi_path,song.audio_path";

int Register(const std::string& root) {
  StdoutCapture quiet;
  const int result = FM_Add_AllSongs_ByCache(root.c_str(), "", 0, 0, 0);
  quiet.Finish();
  return result;
}

// A registration in a child process, killed at the first catalogue call
// after row change killAt.  The child's result (its exit status), or -1
// when a signal ended it.
int RegisterInChild(const std::string& root, int killAt) {
  return RunInChild([&] {
    FaultArm arm(FaultTarget::kCatalogue, killAt, FaultAction::kKillAfterStatement);
    return Register(root);
  });
}

class RegisterCrashTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InstallCatalogueShim(); }
  void SetUp() override { ClearCancelFlag(); }

  std::string Db() const { return image_.SongRoot() + ".zansong.db"; }
  std::vector<std::string> Rows(const char* sql) const { return QueryRows(Db(), sql); }

  void WriteStorage() {
    const std::string root = image_.SongRoot();
    for (int a = 0; a < kAlbums; ++a) {
      const std::string dir = root + "Album " + std::to_string(a);
      MakeDirs(dir);
      for (int s = 0; s < kSongsPerAlbum; ++s) {
        WriteSongFile(dir + "/" + std::to_string(s) + ".mid",
                      s % 3 == 0 ? "" : "Title " + std::to_string(a * 100 + s), 1 + s % 4);
      }
    }
  }

  // Changes for a registration after changes: an album gone, songs gone,
  // songs new, a song changed.
  void ChangeStorage() {
    const std::string root = image_.SongRoot();
    std::filesystem::remove_all(root + "Album 3");
    for (int s = 0; s < 10; ++s)
      std::filesystem::remove(root + "Album 7/" + std::to_string(s) + ".mid");
    MakeDirs(root + "New album");
    for (int s = 0; s < 30; ++s)
      WriteSongFile(root + "New album/n" + std::to_string(s) + ".mid", "");
    WriteSongFile(root + "Album 9/1.mid", "Changed", 6);
    SetModifyTime(root + "Album 9/1.mid", 1000000000);
  }

  // Kills registrations from the catalogue state saved in before (none
  // when empty) at kKillPoints points, and checks each as described above.
  void KillAtSpreadPoints(const std::string& before) {
    const std::string root = image_.SongRoot();
    const auto restore = [&] {
      for (const char* suffix : {"", "-journal"}) std::filesystem::remove(Db() + suffix);
      if (!before.empty()) WriteFile(Db(), before);
    };
    // The uninterrupted registration, and the number of its row changes.
    restore();
    StdoutCapture counted;
    ASSERT_EQ(0, RunInChild([&] {
                FaultArm arm(FaultTarget::kCatalogue, 0);
                const int result = Register(root);
                std::printf("%d\n", arm.statements());
                std::fflush(stdout);  // the child ends with _exit
                return result;
              }));
    const int changes = std::stoi(counted.Finish());
    ASSERT_GT(changes, kKillPoints);
    const std::vector<std::string> albums = Rows(kAlbumRows);
    const std::vector<std::string> songs = Rows(kSongRows);
    ASSERT_FALSE(songs.empty());

    for (int i = 1; i <= kKillPoints; ++i) {
      const int killAt = static_cast<int>(static_cast<long long>(changes) * i / kKillPoints);
      SCOPED_TRACE("killed after row change " + std::to_string(killAt) + " of " +
                   std::to_string(changes));
      restore();
      EXPECT_EQ(-1, RegisterInChild(root, killAt));  // ended by the signal
      EXPECT_EQ("ok", IntegrityOf(Db()));
      ASSERT_EQ(0, Register(root));
      EXPECT_EQ("ok", IntegrityOf(Db()));
      EXPECT_EQ(albums, Rows(kAlbumRows));
      EXPECT_EQ(songs, Rows(kSongRows));
    }
  }

  DeviceImage image_;
};

TEST_F(RegisterCrashTest, AFirstRegistrationKilledAnywhereIsCompletedByTheNext) {
  WriteStorage();
  KillAtSpreadPoints("");
}

TEST_F(RegisterCrashTest, ARegistrationAfterChangesKilledAnywhereIsCompletedByTheNext) {
  WriteStorage();
  ASSERT_EQ(0, Register(image_.SongRoot()));
  ChangeStorage();
  KillAtSpreadPoints(ReadFile(Db()));
}

}  // namespace
}  // namespace zansong_test
