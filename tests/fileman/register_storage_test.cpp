// Registration on each kind of storage, under a cancel, after an incomplete
// scan, and beside another process that writes to the catalogue.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/child_process.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/register.h"

namespace zansong_test {
namespace {

class RegisterStorageTest : public DeviceTest {
 protected:
  void SetUp() override { ClearCancelFlag(); }
  void TearDown() override { ClearCancelFlag(); }

  int Register(const std::string& root, const char* folder = "") {
    StdoutCapture capture;
    int result = FM_Add_AllSongs_ByCache(root.c_str(), folder, 0, 0, 0);
    capture.Finish();
    return result;
  }
  std::vector<std::string> AlbumsOf(const std::string& db) {
    return QueryRows(db, "SELECT pfix,album_title,album_path FROM album ORDER BY album_path");
  }
  std::vector<std::string> SongsOf(const std::string& db) {
    return QueryRows(db, "SELECT pfix,midi_path,audio_path FROM song ORDER BY midi_path");
  }
  std::string SongDb() const { return image_.SongRoot() + ".zansong.db"; }
};

TEST_F(RegisterStorageTest, InternalRootWithoutLooseSongsIsNoAlbum) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "A");
  MakeDirs(root + "rec/X");
  MakeDirs(root + "test/Y");
  WriteSongFile(root + "A/1.mid", "One");
  WriteSongFile(root + "rec/X/1.mid", "Hidden");
  WriteSongFile(root + "test/Y/1.mid", "Hidden");
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(AlbumsOf(SongDb()), (std::vector<std::string>{"s|A|A"}));
  WriteSongFile(root + "loose.mid", "Loose");
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(AlbumsOf(SongDb()), (std::vector<std::string>{"s||", "s|A|A"}));
  EXPECT_EQ(SongsOf(SongDb()), (std::vector<std::string>{"s|A/1.mid|", "s|loose.mid|"}));
}

TEST_F(RegisterStorageTest, StickRootIsAlwaysAnAlbumAndSkipsCategoryFolders) {
  const std::string root = image_.UsbRoot("sdb1");
  MakeDirs(root + "A");
  WriteSongFile(root + "A/1.mid", "One");
  for (const char* folder : {"Recorded Songs/R", "Downloaded Songs/D", "FromToPC/F"}) {
    MakeDirs(root + folder);
    WriteSongFile(root + folder + "/1.mid", "Hidden");
  }
  ASSERT_EQ(0, Register(root));
  // The stick's catalogue is worked on in the working copy.
  EXPECT_EQ(AlbumsOf(image_.WorkingDb()), (std::vector<std::string>{"s||", "s|A|A"}));
  EXPECT_EQ(SongsOf(image_.WorkingDb()), (std::vector<std::string>{"s|A/1.mid|"}));

  WriteSongFile(root + "FromToPC/loose.mid", "Loose");
  ASSERT_EQ(0, Register(root, "FromToPC"));
  EXPECT_EQ(
      QueryRows(image_.WorkingDb(),
                "SELECT album_title,album_path FROM album WHERE pfix='f' ORDER BY album_path"),
      (std::vector<std::string>{"|FromToPC", "F|FromToPC/F"}));
  EXPECT_EQ(2, QueryInt(image_.WorkingDb(), "SELECT COUNT(*) FROM song WHERE pfix='f'"));
}

TEST_F(RegisterStorageTest, RecordedAndDownloadedFoldersNeverRegisterLooseSongs) {
  for (const std::string& root : {image_.SongRoot(), image_.UsbRoot("sda1")}) {
    for (const char* folder : {"Recorded Songs", "Downloaded Songs"}) {
      MakeDirs(root + folder + "/Album");
      WriteSongFile(root + folder + "/loose.mid", "Loose");
      WriteSongFile(root + folder + "/Album/1.mid", "One");
      ASSERT_EQ(0, Register(root, folder));
    }
    std::string db = root == image_.SongRoot() ? SongDb() : image_.WorkingDb();
    EXPECT_EQ(AlbumsOf(db), (std::vector<std::string>{"y|Album|Downloaded Songs/Album",
                                                      "r|Album|Recorded Songs/Album"}))
        << root;
    EXPECT_EQ(SongsOf(db), (std::vector<std::string>{"y|Downloaded Songs/Album/1.mid|",
                                                     "r|Recorded Songs/Album/1.mid|"}))
        << root;
  }
}

TEST_F(RegisterStorageTest, AlbumLimitLeavesLooseSongsOutAndReturnsMinusTwo) {
  const std::string root = image_.UsbRoot("sda1");
  for (int i = 0; i < 499; ++i) MakeDirs(root + "d" + std::to_string(1000 + i));
  WriteSongFile(root + "loose.mid", "Loose");
  EXPECT_EQ(-2, Register(root));
  EXPECT_EQ(499, QueryInt(image_.WorkingDb(), "SELECT COUNT(*) FROM album"));
  EXPECT_EQ(0, QueryInt(image_.WorkingDb(), "SELECT COUNT(*) FROM song"));
}

TEST_F(RegisterStorageTest, ScanLimitIsPassedThroughAndDeliveredAlbumsSynced) {
  const std::string root = image_.UsbRoot("sda1");
  for (int i = 0; i < 500; ++i) MakeDirs(root + "d" + std::to_string(1000 + i));
  EXPECT_EQ(-2, Register(root));
  EXPECT_EQ(499, QueryInt(image_.WorkingDb(), "SELECT COUNT(*) FROM album"));
}

// Writes `albums` x `songs` small MIDI files under root.
void FillAlbums(const std::string& root, int albums, int songs) {
  for (int a = 0; a < albums; ++a) {
    std::string dir = root + "Album" + std::to_string(100 + a) + "/";
    MakeDirs(dir);
    for (int s = 0; s < songs; ++s) WriteSongFile(dir + std::to_string(1000 + s) + ".mid", "", 1);
  }
}

// Standard output through a cookie stream, so that a test sees each line
// the moment it is flushed.
struct LineHook {
  std::string pending;
  std::string trigger;
  bool fired = false;
};

ssize_t HookWrite(void* cookie, const char* data, size_t size) {
  LineHook* hook = static_cast<LineHook*>(cookie);
  hook->pending.append(data, size);
  if (!hook->fired && hook->pending.find(hook->trigger) != std::string::npos) {
    hook->fired = true;
    SetCancelFlag();
  }
  return static_cast<ssize_t>(size);
}

TEST_F(RegisterStorageTest, CancelAfterTwoHundredSongsKeepsExactlyTheRowsBeforeIt) {
  const std::string root = image_.SongRoot();
  FillAlbums(root, 3, 150);
  LineHook hook;
  hook.trigger = "Registering...";
  cookie_io_functions_t io = {nullptr, HookWrite, nullptr, nullptr};
  FILE* hooked = fopencookie(&hook, "w", io);
  ASSERT_NE(nullptr, hooked);
  FILE* saved = stdout;
  stdout = hooked;
  int result = FM_Add_AllSongs_ByCache(root.c_str(), "", 0, 0, 0);
  stdout = saved;
  std::fclose(hooked);
  // The progress line of the 200th song comes before its insert; the
  // cancel is seen right after it.
  EXPECT_EQ(0, result);
  ASSERT_TRUE(hook.fired);
  EXPECT_EQ(200, QueryInt(SongDb(), "SELECT COUNT(*) FROM song"));
  EXPECT_EQ(200, QueryInt(SongDb(), "SELECT MAX(song_id) FROM song"));
  EXPECT_EQ("Album101/1049.mid",
            QueryRows(SongDb(), "SELECT midi_path FROM song WHERE song_id=200").at(0));
  EXPECT_EQ(3, QueryInt(SongDb(), "SELECT COUNT(*) FROM album"));
  // Renumbered after the stop.
  EXPECT_EQ(1,
            QueryInt(SongDb(), "SELECT COUNT(*) FROM song WHERE song_id=200 AND disp_order=200"));
}

// The album directories of root in the order the scan meets them.
std::vector<std::string> DirectoryOrder(const std::string& root) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(root)) {
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  }
  return names;
}

TEST_F(RegisterStorageTest, IncompleteScanDeletesNothingButAddsWhatItDelivered) {
  const std::string root = image_.SongRoot();
  for (const char* name : {"A", "B", "Z"}) {
    MakeDirs(root + name);
    WriteSongFile(root + name + "/1.mid", "One");
    WriteSongFile(root + name + "/2.mid", "Two");
  }
  ASSERT_EQ(0, Register(root));
  // The scan stops at the unreadable directory: make it the last one met.
  const std::vector<std::string> order = DirectoryOrder(root);
  ASSERT_EQ(3u, order.size());
  const std::string seen = root + order.front() + "/";
  const std::string unreadable = root + order.back();
  const std::string psongs = "SELECT song_id FROM psong ORDER BY song_id";
  const int gone =
      QueryInt(SongDb(), "SELECT song_id FROM song WHERE midi_path='" + order.front() + "/2.mid'");
  ASSERT_TRUE(Execute(SongDb(),
                      "INSERT INTO playlist VALUES('p',1,'List',1);"
                      "INSERT INTO psong VALUES('p',1,1,'s'," +
                          std::to_string(gone) + ",1);"));
  const std::string all = "SELECT song_id,midi_path,mtime FROM song ORDER BY song_id";
  const std::vector<std::string> before = QueryRows(SongDb(), all);
  // A new song, a changed one and a removed one where the scan still sees.
  WriteSongFile(seen + "3.mid", "Three");
  SetModifyTime(seen + "1.mid", 1000000000);
  std::remove((seen + "2.mid").c_str());
  // Let the unprivileged child write the image (links are left alone: they
  // lead out of it).
  for (const auto& entry : std::filesystem::recursive_directory_iterator(image_.root())) {
    if (entry.is_symlink()) continue;
    chmod(entry.path().c_str(), entry.is_directory() ? 0777 : 0666);
  }
  chmod(image_.root().c_str(), 0777);
  chmod(unreadable.c_str(), 0);
  std::string rootCopy = root;
  int status =
      RunAsNobody([&rootCopy] { return FM_Add_AllSongs_ByCache(rootCopy.c_str(), "", 0, 0, 0); });
  chmod(unreadable.c_str(), 0777);
  EXPECT_EQ(255, status);  // -1
  std::vector<std::string> expected = before;
  expected.push_back("7|" + order.front() + "/3.mid|" +
                     QueryRows(SongDb(), "SELECT mtime FROM song WHERE song_id=7").at(0));
  EXPECT_EQ(QueryRows(SongDb(), all), expected);
  EXPECT_EQ(3, QueryInt(SongDb(), "SELECT COUNT(*) FROM album"));
  EXPECT_EQ(1, QueryInt(SongDb(), "SELECT COUNT(*) FROM psong"));
  // A complete scan then catches up.
  ASSERT_EQ(0, Register(root));
  EXPECT_EQ(6, QueryInt(SongDb(), "SELECT COUNT(*) FROM song"));
  EXPECT_EQ(0, QueryInt(SongDb(), "SELECT COUNT(*) FROM psong"));
  EXPECT_EQ(0, QueryInt(SongDb(), "SELECT COUNT(*) FROM song WHERE song_id<=6 AND midi_path='" +
                                      order.front() + "/1.mid'"));
}

TEST_F(RegisterStorageTest, DownloadedSongsTwiceKeepIdsAndPlaylistEntries) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "Downloaded Songs/Album");
  WriteSongFile(root + "Downloaded Songs/Album/1.mid", "One");
  WriteSongFile(root + "Downloaded Songs/Album/2.mid", "Two");
  WriteFile(root + "Downloaded Songs/Album/2.jpg", "jpeg");
  ASSERT_EQ(0, Register(root, "Downloaded Songs"));
  ASSERT_TRUE(Execute(SongDb(),
                      "INSERT INTO playlist VALUES('p',1,'List',1);"
                      "INSERT INTO psong VALUES('p',1,1,'y',2,1);"));
  const std::string all = "SELECT * FROM song ORDER BY song_id";
  std::vector<std::string> songs = QueryRows(SongDb(), all);
  EXPECT_EQ("Downloaded Songs/Album/2.jpg",
            QueryRows(SongDb(), "SELECT coverart_path FROM song WHERE song_id=2").at(0));
  ASSERT_EQ(0, Register(root, "Downloaded Songs"));
  EXPECT_EQ(songs, QueryRows(SongDb(), all));
  EXPECT_EQ(1, QueryInt(SongDb(), "SELECT COUNT(*) FROM psong WHERE song_id=2"));
}

TEST_F(RegisterStorageTest, AnotherProcessWritesDuringALongRegistration) {
  const std::string root = image_.SongRoot();
  ASSERT_EQ(0, Register(root));  // makes the catalogue
  FillAlbums(root, 6, 500);
  const std::string db = SongDb();
  const int kInserts = 40;
  PlaylistWriter writer(db, kInserts, 50, 20);
  EXPECT_EQ(0, Register(root));
  EXPECT_EQ(0, writer.Join()) << "inserts that timed out";
  EXPECT_EQ(kInserts, QueryInt(db, "SELECT COUNT(*) FROM playlist"));
  EXPECT_EQ(3000, QueryInt(db, "SELECT COUNT(*) FROM song"));
}

}  // namespace
}  // namespace zansong_test
