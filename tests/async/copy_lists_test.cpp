// FH2_copy_song, FH2_copy_album and FH2_copy_playlist: copies over a list
// of targets in a child process, the free-space check before any child
// starts, a cancel during a long copy, and the progress boxes.
#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "async/list_test_helpers.h"
#include "async/ush_faults.h"
#include "fileman/copy_test_helpers.h"
#include "fileman/organise_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/child_process.h"
#include "support/process_census.h"
#include "zansong/async/list_operations.h"
#include "zansong/fileman/messages.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class CopyListTest : public CopyTest {
 protected:
  void SetUp() override {
    CopyTest::SetUp();
    MakeDirs(Root() + "Jazz");
    MakeDirs(Root() + "Best");
    for (const char* name : {"a", "b", "c", "d"}) {
      WriteSongFile(Root() + "Jazz/" + name + ".mid", std::string(1, name[0] - 32));
    }
    WriteWavSong(Root() + "Jazz/c.wav", 100);
    Register();
  }
  std::vector<TargetInfo> Songs(std::initializer_list<const char*> names) {
    std::vector<TargetInfo> targets;
    for (const char* name : names) {
      targets.push_back(Target(kTargetSong, SongId(std::string("Jazz/") + name + ".mid")));
    }
    return targets;
  }
  std::vector<std::string> Titles(int albumId) {
    return QueryRows(Db(), "SELECT song_title FROM song WHERE album_id=" + std::to_string(albumId) +
                               " ORDER BY song_id");
  }

  UshFaultsScope faults_;
};

TEST_F(CopyListTest, SongTargetsAreCopiedAndOtherTargetsSkipped) {
  std::vector<TargetInfo> targets = Songs({"a", "b"});
  targets.insert(targets.begin() + 1, Target(kTargetAlbum, AlbumId("Jazz")));
  StdoutCapture capture;
  ASSERT_EQ(kResultOk, FH2_copy_song(Root().c_str(), targets, AlbumId("Best")));
  EXPECT_EQ("", capture.Finish());
  EXPECT_EQ((std::vector<std::string>{"A", "B"}), Titles(AlbumId("Best")));
  EXPECT_EQ(ReadFile(Root() + "Jazz/a.mid"), ReadFile(Root() + "Best/a.mid"));
  EXPECT_TRUE(PathExists(Root() + "Best/b.mid"));
  EXPECT_EQ(4u, Titles(AlbumId("Jazz")).size());  // the album target copied nothing
}

TEST_F(CopyListTest, AlbumTargetsBecomeNewAlbums) {
  MakeDirs(Root() + "Solo");
  WriteSongFile(Root() + "Solo/s.mid", "S");
  Register();
  std::vector<TargetInfo> targets = {Target(kTargetAlbum, AlbumId("Jazz")),
                                     Target(kTargetSong, SongId("Solo/s.mid")),
                                     Target(kTargetAlbum, AlbumId("Solo"))};
  StdoutCapture quiet;
  ASSERT_EQ(kResultOk, FH2_copy_album(Root().c_str(), targets, ""));
  EXPECT_EQ((std::vector<std::string>{"A", "B", "C", "D"}), Titles(AlbumId("Jazz_002")));
  EXPECT_EQ((std::vector<std::string>{"S"}), Titles(AlbumId("Solo_002")));
  EXPECT_TRUE(PathExists(Root() + "Jazz_002/c.wav"));
}

TEST_F(CopyListTest, AFailingTargetEndsTheListWithItsCode) {
  std::vector<TargetInfo> targets = Songs({"a", "b"});
  targets.insert(targets.begin() + 1, Target(kTargetSong, 999));  // no such row
  StdoutCapture quiet;
  EXPECT_EQ(kResultNoData, FH2_copy_song(Root().c_str(), targets, AlbumId("Best")));
  EXPECT_EQ((std::vector<std::string>{"A"}), Titles(AlbumId("Best")));
  EXPECT_FALSE(PathExists(Root() + "Best/b.mid"));
}

TEST_F(CopyListTest, TwentyTargetsShowCancellableProgress) {
  Faults().timer_held = true;
  std::vector<TargetInfo> targets;
  for (int i = 0; i < 20; ++i) targets.push_back(Songs({"a"})[0]);
  StdoutCapture capture;
  ASSERT_EQ(kResultOk, FH2_copy_song(Root().c_str(), targets, AlbumId("Best")));
  std::vector<std::string> printed = LinesOf(capture.Finish());
  EXPECT_EQ(20u, Titles(AlbumId("Best")).size());
  ASSERT_EQ(2u, printed.size());
  EXPECT_EQ(LineOf([] { PrintCopyMessage(-1, 0, 20, true); }), printed[0]);
  EXPECT_TRUE(IsLineOfOneOf(
      printed[1], [](int n) { PrintCopyMessage(-1, n, 20, true); }, 1, 20))
      << printed[1];
}

TEST_F(CopyListTest, ACancelDuringALongCopyKeepsWhatWasCopiedBefore) {
  HostInterruptHandler ctrlC;
  // The third song's audio file never ends: only the cancel stops its copy.
  const std::string fifo = Root() + "Jazz/c.wav";
  ASSERT_EQ(0, unlink(fifo.c_str()));
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0666));
  pid_t feeder = StartFifoFeeder(fifo);
  ASSERT_GT(feeder, 0);

  std::vector<TargetInfo> targets = Songs({"a", "b", "c", "d"});
  StdoutCapture capture;
  int result = FH2_copy_song(Root().c_str(), targets, AlbumId("Best"));
  std::vector<std::string> printed = LinesOf(capture.Finish());
  int status = -1;
  waitpid(feeder, &status, 0);

  EXPECT_EQ(kResultCopyCancelled, result);
  EXPECT_TRUE(GetCancelFlag());
  EXPECT_EQ((std::vector<int>{2}), Faults().signals);
  EXPECT_EQ((std::vector<std::string>{"A", "B"}), Titles(AlbumId("Best")));
  EXPECT_TRUE(PathExists(Root() + "Best/a.mid"));
  EXPECT_TRUE(PathExists(Root() + "Best/b.mid"));
  EXPECT_FALSE(PathExists(Root() + "Best/c.mid"));
  EXPECT_FALSE(PathExists(Root() + "Best/c.wav"));
  EXPECT_FALSE(PathExists(Root() + "Best/d.mid"));
  // No final report after a cancel: what the timer showed before it, at most.
  for (const std::string& line : printed) {
    EXPECT_TRUE(line == LineOf([] { PrintCopyMessage(-1, 0, 4, true); }) ||
                line == LineOf([] { PrintCopyMessage(-1, 1, 4, true); }))
        << line;
  }
  EXPECT_FALSE(HasChildProcesses());
}

// A storage root on a 4 MiB file system of a child process of its own,
// with album "Large" (a 5 MB audio file that takes no room) and album
// "Small" (a 1000-byte MIDI file).  Runs check on it and ends the child
// with check's result, or kChildSetupFailed.
int OnSmallFileSystem(const DeviceImage& image,
                      const std::function<int(const std::string&)>& check) {
  const std::string root = image.Path("/mnt/small/");
  MakeDirs(root);
  return RunInChild([&] {
    if (unshare(CLONE_NEWNS) != 0 ||
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tmpfs", root.c_str(), "tmpfs", 0, "size=4m") != 0) {
      return kChildSetupFailed;
    }
    CreateCatalogue(image, root + ".zansong.db");
    ExecOn(root + ".zansong.db",
           "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) VALUES"
           "('s',1,'Large','Large',1),('s',2,'Small','Small',2);"
           "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,album_id,"
           "mtime,format) VALUES('s',10,'L','Large/l.mid','Large/l.wav',1,1,'m','SMF,WAV'),"
           "('s',20,'S','Small/s.mid','',2,2,'m','SMF')");
    MakeDirs(root + "Large");
    MakeDirs(root + "Small");
    WriteSongFile(root + "Large/l.mid", "L");
    if (!MakeSparseFile(root + "Large/l.wav", 5000000)) return kChildSetupFailed;
    WriteFile(root + "Small/s.mid", std::string(1000, 's'));
    return check(root);
  });
}

TEST_F(CopyListTest, TooLittleSpaceForTheSongsRefusesBeforeAnyChild) {
  int status = OnSmallFileSystem(image_, [](const std::string& root) {
    std::vector<TargetInfo> targets = {Target(kTargetSong, 20), Target(kTargetSong, 10)};
    StdoutCapture capture;
    int result = FH2_copy_song(root.c_str(), targets, 2);
    if (!capture.Finish().empty() || Faults().forks != 0) return 1;
    if (PathExists(root + "Small/s_002.mid")) return 2;
    return -result;
  });
  EXPECT_EQ(-kResultNoSpace, status);
}

TEST_F(CopyListTest, TheAlbumCheckCountsTheLastAlbumOnly) {
  // Small last: the check passes and the child's copy of the large album
  // finds too little room.
  int status = OnSmallFileSystem(image_, [](const std::string& root) {
    std::vector<TargetInfo> targets = {Target(kTargetAlbum, 1), Target(kTargetAlbum, 2)};
    StdoutCapture quiet;
    int result = FH2_copy_album(root.c_str(), targets, "");
    return Faults().forks == 1 ? -result : 1;
  });
  EXPECT_EQ(-kResultNoSpace, status);
  // Large last: refused before any child starts.
  status = OnSmallFileSystem(image_, [](const std::string& root) {
    std::vector<TargetInfo> targets = {Target(kTargetAlbum, 2), Target(kTargetAlbum, 1)};
    StdoutCapture capture;
    int result = FH2_copy_album(root.c_str(), targets, "");
    if (!capture.Finish().empty() || Faults().forks != 0) return 1;
    if (PathExists(root + "Small_002")) return 2;
    return -result;
  });
  EXPECT_EQ(-kResultNoSpace, status);
}

class CopyPlaylistListTest : public OrganiseTest {
 protected:
  UshFaultsScope faults_;
};

TEST_F(CopyPlaylistListTest, EachPlaylistTargetBecomesANewPlaylist) {
  AddAlbum(1, "A");
  AddSong(1, 1, "A/one.mid");
  AddSong(2, 1, "A/two.mid");
  AddPlaylist(5, "Evening");
  AddPlaylist(6, "Morning");
  AddEntry(1, 5, 1);
  AddEntry(2, 5, 2);
  AddEntry(3, 6, 2);
  Faults().timer_held = true;
  // Twenty targets, so that the progress box shows at once.
  std::vector<TargetInfo> targets = {Target(kTargetPlaylist, 5, 'l'), Target(kTargetSong, 1),
                                     Target(kTargetPlaylist, 6, 'l')};
  targets.resize(20, Target(kTargetUnknown, 0));
  StdoutCapture capture;
  ASSERT_EQ(kResultOk, FH2_copy_playlist(root_.c_str(), targets));
  std::vector<std::string> printed = LinesOf(capture.Finish());
  EXPECT_EQ((std::vector<std::string>{"5|Evening", "6|Morning", "7|Evening", "8|Morning"}),
            Rows("SELECT playlist_id, playlist_title FROM playlist ORDER BY playlist_id"));
  EXPECT_EQ((std::vector<std::string>{"1", "2"}),
            Rows("SELECT song_id FROM psong WHERE playlist_id=7 ORDER BY disp_order"));
  EXPECT_EQ((std::vector<std::string>{"2"}), Rows("SELECT song_id FROM psong WHERE playlist_id=8"));
  ASSERT_FALSE(printed.empty());
  EXPECT_EQ(LineOf([] { PrintCopyMessage(-1, 0, 20, false); }), printed[0]);
}

TEST_F(CopyPlaylistListTest, AnUnopenableCatalogueGivesItsCode) {
  std::vector<TargetInfo> targets = {Target(kTargetPlaylist, 5, 'l')};
  const std::string missing = image_.root() + "/no/such/root/";
  StdoutCapture quiet;
  EXPECT_EQ(kResultDbFail, FH2_copy_playlist(missing.c_str(), targets));
}

}  // namespace
}  // namespace zansong_test
