// FM_Copy_UlqSong at the album and song limits, and when the storage is
// full or cannot be written.
#include <sys/mount.h>

#include <gtest/gtest.h>

#include <sched.h>

#include <functional>
#include <string>

#include "fileman/download_test_helpers.h"
#include "support/child_process.h"
#include "zansong/limits.h"

namespace zansong_test {
namespace {

class DownloadLimitsTest : public DownloadTest {
 protected:
  void SetUp() override {
    DownloadTest::SetUp();
    CreateCatalogue(image_, Db());
  }

  // count albums of prefix "y", ids from first on.
  void AddAlbums(int first, int count) {
    ExecOn(Db(), "WITH RECURSIVE n(i) AS (SELECT " + std::to_string(first) +
                     " UNION ALL SELECT i+1 FROM n WHERE i<" + std::to_string(first + count - 1) +
                     ") INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
                     "SELECT 'y',i,'A'||i,'Downloaded Songs/A'||i,i FROM n");
  }
  // count songs of prefix "y" in album albumId.
  void AddSongs(int albumId, int count) {
    ExecOn(Db(), "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
                     std::to_string(count) +
                     ") INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,"
                     "album_id) SELECT 'y',i+(SELECT IFNULL(MAX(song_id),0) FROM song),'S'||i,"
                     "'x/S'||i||'.mid','',i," +
                     std::to_string(albumId) + " FROM n");
  }

  DownloadRecord SongFor(const std::string& albumDir, const std::string& name) {
    DownloadRecord rec = Record(albumDir, name);
    Put(rec.midiSource, Midi(name + ".mid"));
    return rec;
  }
};

TEST_F(DownloadLimitsTest, The499thAlbumIsMadeAndThe500thRefused) {
  AddAlbums(1, kAlbumLimit - 1);
  ASSERT_EQ(kResultOk, File(SongFor("Last", "last")));
  EXPECT_EQ(kAlbumLimit, Int("SELECT COUNT(*) FROM album WHERE pfix='y'"));

  DownloadRecord over = SongFor("Over", "over");
  char msg[1024];
  StdoutCapture capture;
  EXPECT_EQ(kResultAlbumLimit, FM_Copy_UlqSong(root_.c_str(), &over, msg));
  capture.Finish();
  EXPECT_EQ(std::string("<set_msgbox type=\"exclusive\" label=\"") +
                msg_getXmlMsg("MSG_COMMON_ERROR") + "\" msg=\"" +
                msg_getXmlMsg("MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_ALBUMS") + "\" button1=\"" +
                msg_getXmlMsg("MSG_COMMON_OK") + "\" />\n",
            msg);
  EXPECT_EQ(0, AlbumId("Downloaded Songs/Over"));
  EXPECT_FALSE(PathExists(Area() + "Over"));
  EXPECT_TRUE(PathExists(downloads_ + "over.mid"));
  // An album that exists still takes songs.
  EXPECT_EQ(kResultOk, File(SongFor("Last", "more")));
  // So does "Single Songs" once it exists; while it does not, it would be
  // the 500th album.
  EXPECT_EQ(kResultAlbumLimit, File(SongFor("", "single")));
}

TEST_F(DownloadLimitsTest, The4999thSongIsFiledAndThe5000thRefused) {
  AddAlbums(1, 3);
  AddSongs(1, kAlbumSongLimit - 1);
  AddSongs(2, kAlbumSongLimit - 1);
  AddSongs(3, kPrefixSongLimit - 1 - 2 * (kAlbumSongLimit - 1));
  ASSERT_EQ(kPrefixSongLimit - 1, Int("SELECT COUNT(*) FROM song WHERE pfix='y'"));
  ASSERT_EQ(kResultOk, File(SongFor("", "last")));
  EXPECT_EQ(kResultPrefixFull, File(SongFor("", "over")));
  EXPECT_EQ(kPrefixSongLimit, Int("SELECT COUNT(*) FROM song WHERE pfix='y'"));
  EXPECT_TRUE(PathExists(downloads_ + "over.mid"));
  EXPECT_FALSE(PathExists(Area() + "Single Songs/over.mid"));
}

TEST_F(DownloadLimitsTest, The999thAlbumSongIsFiledAndThe1000thRefused) {
  DownloadRecord first = SongFor("Big", "first");
  ASSERT_EQ(kResultOk, File(first));
  AddSongs(AlbumId("Downloaded Songs/Big"), kAlbumSongLimit - 2);
  ASSERT_EQ(kResultOk, File(SongFor("Big", "last")));
  EXPECT_EQ(kResultAlbumFull, File(SongFor("Big", "over")));
  EXPECT_EQ(kAlbumSongLimit, Int("SELECT COUNT(*) FROM song WHERE album_id=" +
                                 std::to_string(AlbumId("Downloaded Songs/Big"))));
  EXPECT_TRUE(PathExists(downloads_ + "over.mid"));
}

// Runs FM_Copy_UlqSong for rec in a child process after setUp; the result,
// or kChildSetupFailed when the child could not set itself up.
int FileInChild(const std::string& root, const DownloadRecord& rec,
                const std::function<bool()>& setUp) {
  int status = RunInChild([&] {
    if (!setUp()) return kChildSetupFailed;
    char msg[1024];
    return FM_Copy_UlqSong(root.c_str(), &rec, msg);
  });
  if (status == kChildSetupFailed || status < 0) return status;
  return status > 127 ? status - 256 : status;
}

TEST_F(DownloadLimitsTest, StorageWithoutRoomGivesNoSpaceAndKeepsTheSources) {
  MakeDirs(Area());
  DownloadRecord rec = Record("Large", "Large");
  std::string wav = Wav("large.wav", 100000);  // 800 kB
  Put(rec.audioSource, wav);
  const std::string area = Area();
  int result = FileInChild(root_, rec, [&] {
    return unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", area.c_str(), "tmpfs", 0, "size=1m") == 0;
  });
  if (result == kChildSetupFailed) GTEST_SKIP() << "no private mount namespace here";
  EXPECT_EQ(kResultNoSpace, result);
  EXPECT_TRUE(PathExists(wav));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM song"));
}

TEST_F(DownloadLimitsTest, FailedCopyGivesWriteProtectedAndKeepsTheSources) {
  ASSERT_EQ(kResultOk, File(SongFor("", "first")));
  DownloadRecord rec = Record("", "Second");
  std::string midi = Midi("second.mid");
  std::string wav = Wav("second.wav");
  Put(rec.midiSource, midi);
  Put(rec.audioSource, wav);
  const std::string single = Area() + "Single Songs";
  int result = FileInChild(root_, rec, [&] { return MakeDirReadOnlyForThisProcess(single); });
  if (result == kChildSetupFailed) GTEST_SKIP() << "cannot make a directory read-only here";
  EXPECT_EQ(kResultWriteProtected, result);
  EXPECT_TRUE(PathExists(midi));
  EXPECT_TRUE(PathExists(wav));
  EXPECT_FALSE(PathExists(single + "/second.mid"));
  EXPECT_FALSE(PathExists(single + "/second.wav"));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM song"));
}

TEST_F(DownloadLimitsTest, AlbumDirectoryThatCannotBeMadeGivesWriteProtected) {
  MakeDirs(Area());
  DownloadRecord rec = SongFor("New", "new");
  const std::string area = Area();
  int result = FileInChild(root_, rec, [&] { return MakeDirReadOnlyForThisProcess(area); });
  if (result == kChildSetupFailed) GTEST_SKIP() << "cannot make a directory read-only here";
  EXPECT_EQ(kResultWriteProtected, result);
  EXPECT_EQ(0, AlbumId("Downloaded Songs/New"));
  EXPECT_TRUE(PathExists(downloads_ + "new.mid"));
}

}  // namespace
}  // namespace zansong_test
