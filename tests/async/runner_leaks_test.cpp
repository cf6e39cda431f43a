// No path through FH2_async or the list operations leaves a descriptor, a
// child process or a zombie behind: success, a failing child, a cancel, a
// failed fork, a failed timer, a copy refused before its child.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include <string>
#include <vector>

#include "async/list_test_helpers.h"
#include "fileman/organise_test_helpers.h"
#include "support/process_census.h"
#include "ush.h"
#include "ush_faults.h"
#include "zansong/async/cancel.h"
#include "zansong/async/list_operations.h"
#include "zansong/async/runner.h"
#include "zansong/result_codes.h"

namespace {

using zansong_test::Faults;
using zansong_test::HasChildProcesses;
using zansong_test::OpenDescriptorCount;

// The descriptors and children of this process, counted before a test and
// compared after it.
class Census {
 public:
  void Take() {
    ASSERT_FALSE(HasChildProcesses());
    fds_before_ = OpenDescriptorCount();
  }
  void Compare() const {
    EXPECT_EQ(OpenDescriptorCount(), fds_before_);
    EXPECT_FALSE(HasChildProcesses());
    ClearCancelFlag();
  }

 private:
  int fds_before_ = 0;
};

class RunnerLeaksTest : public ::testing::Test {
 protected:
  void SetUp() override { census_.Take(); }
  void TearDown() override { census_.Compare(); }

  int Run(int n, std::function<int(ush_st_io*)> work, std::function<void(int)> progress = {}) {
    std::vector<TargetInfo> targets(n, TargetInfo{});
    return FH2_async(targets, std::move(work), std::move(progress));
  }

  zansong_test::UshFaultsScope faults_;
  Census census_;
};

int WorkThatReports(ush_st_io* channel) {
  for (int i = 0; i < 25; ++i) ush_Printf(channel, "%d\n", i);
  std::printf("a line of the child's own output\n");
  std::fflush(stdout);
  return 0;
}

TEST_F(RunnerLeaksTest, Success) { EXPECT_EQ(Run(25, WorkThatReports), 0); }

TEST_F(RunnerLeaksTest, FailingChild) {
  EXPECT_EQ(Run(25, [](ush_st_io*) { return 14; }), -14);
}

TEST_F(RunnerLeaksTest, Cancel) {
  int result = Run(
      3,
      [](ush_st_io*) {
        for (;;) pause();
        return 0;
      },
      [](int) { SetCancelFlag(); });
  EXPECT_EQ(result, 0);
}

TEST_F(RunnerLeaksTest, FailedFork) {
  Faults().fork_fails = true;
  EXPECT_EQ(Run(25, WorkThatReports), 0);
}

TEST_F(RunnerLeaksTest, FailedTimer) {
  Faults().timer_fails = true;
  EXPECT_EQ(Run(25, WorkThatReports), 0);
}

// The same census around the list operations, on a catalogue with an
// album of three songs and a playlist.
class ListLeaksTest : public zansong_test::OrganiseTest {
 protected:
  void SetUp() override {
    OrganiseTest::SetUp();
    AddAlbum(1, "A");
    AddAlbum(2, "B");
    for (int id = 1; id <= 3; ++id) AddSong(id, 1, "A/" + std::to_string(id) + ".mid");
    AddPlaylist(5, "Mine");
    census_.Take();
  }
  void TearDown() override { census_.Compare(); }

  zansong_test::StdoutCapture quiet_;
  zansong_test::UshFaultsScope faults_;
  Census census_;
};

using zansong_test::Target;

TEST_F(ListLeaksTest, DeleteOfMixedTargets) {
  std::vector<TargetInfo> targets = {Target(kTargetSong, 1), Target(kTargetPlaylist, 5, 'l'),
                                     Target(kTargetUnknown, 2)};
  EXPECT_EQ(FH2_delete(root_.c_str(), targets), kResultOk);
}

TEST_F(ListLeaksTest, DeleteEndedByAFailingTarget) {
  std::vector<TargetInfo> targets = {Target(kTargetSong, 1), Target(kTargetSong, 9)};
  EXPECT_EQ(FH2_delete(root_.c_str(), targets), kResultNoData);
}

TEST_F(ListLeaksTest, AddToPlaylistWithAQuery) {
  std::vector<TargetInfo> targets(1, Target(kTargetQuery, 0));
  std::strcpy(targets[0].sql, "select pfix, song_id from song");
  EXPECT_EQ(FH2_add_to_playlist(root_.c_str(), targets, 5, "l"), kResultOk);
}

TEST_F(ListLeaksTest, CopyAlbumOfTwentyTargets) {
  std::vector<TargetInfo> targets(20, Target(kTargetUnknown, 0));
  targets[0] = Target(kTargetAlbum, 1);
  EXPECT_EQ(FH2_copy_album(root_.c_str(), targets, ""), kResultOk);
}

TEST_F(ListLeaksTest, CopyRefusedBeforeItsChild) {
  // A song file far larger than the free space, taking none of it.
  if (!zansong_test::MakeSparseFile(root_ + "A/1.wav", 15LL << 40)) {
    GTEST_SKIP() << "no sparse file of 15 TiB here";
  }
  Exec("UPDATE song SET audio_path='A/1.wav' WHERE song_id=1");
  std::vector<TargetInfo> targets = {Target(kTargetSong, 1)};
  EXPECT_EQ(FH2_copy_song(root_.c_str(), targets, 2), kResultNoSpace);
  EXPECT_EQ(Faults().forks, 0);
}

TEST_F(ListLeaksTest, CopyCancelledInTheMiddle) {
  zansong_test::HostInterruptHandler ctrlC;
  const std::string fifo = root_ + "A/2.wav";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0666), 0);
  Exec("UPDATE song SET audio_path='A/2.wav' WHERE song_id=2");
  pid_t feeder = zansong_test::StartFifoFeeder(fifo);
  std::vector<TargetInfo> targets = {Target(kTargetSong, 1), Target(kTargetSong, 2),
                                     Target(kTargetSong, 3)};
  EXPECT_EQ(FH2_copy_song(root_.c_str(), targets, 2), kResultCopyCancelled);
  int status = 0;
  waitpid(feeder, &status, 0);
}

}  // namespace
