// No path through FH2_async leaves a descriptor, a child process or a
// zombie behind: success, a failing child, a cancel, a failed fork, a
// failed timer.
#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "support/process_census.h"
#include "ush.h"
#include "ush_faults.h"
#include "zansong/async/cancel.h"
#include "zansong/async/runner.h"

namespace {

using zansong_test::Faults;
using zansong_test::HasChildProcesses;
using zansong_test::OpenDescriptorCount;

class RunnerLeaksTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(HasChildProcesses());
    fds_before_ = OpenDescriptorCount();
  }
  void TearDown() override {
    EXPECT_EQ(OpenDescriptorCount(), fds_before_);
    EXPECT_FALSE(HasChildProcesses());
    ClearCancelFlag();
  }

  int Run(int n, std::function<int(ush_st_io*)> work, std::function<void(int)> progress = {}) {
    std::vector<TargetInfo> targets(n, TargetInfo{});
    return FH2_async(targets, std::move(work), std::move(progress));
  }

  zansong_test::UshFaultsScope faults_;
  int fds_before_ = 0;
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

}  // namespace
