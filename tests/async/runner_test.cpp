// FH2_async: the child's progress lines, the 500 ms timer, the exit code,
// the cancel by signal 2 and the result of a failed fork.
#include "zansong/async/runner.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "ush.h"
#include "ush_faults.h"
#include "zansong/async/cancel.h"

namespace {

using zansong_test::Faults;

std::vector<TargetInfo> Targets(int n) { return std::vector<TargetInfo>(n, TargetInfo{}); }

class RunnerTest : public ::testing::Test {
 protected:
  void TearDown() override { ClearCancelFlag(); }

  // FH2_async over n targets, recording every progress call.
  int Run(int n, std::function<int(ush_st_io*)> work) {
    std::vector<TargetInfo> targets = Targets(n);
    return FH2_async(targets, std::move(work), [this](int value) { calls_.push_back(value); });
  }

  zansong_test::UshFaultsScope faults_;
  std::vector<int> calls_;
};

// A child that reports one line and exits with code.
std::function<int(ush_st_io*)> Report(const char* line, int code = 0) {
  return [line, code](ush_st_io* channel) {
    ush_Printf(channel, "%s", line);
    return code;
  };
}

TEST_F(RunnerTest, NineteenTargetsEndingWithinAPeriodShowNoProgress) {
  Faults().timer_held = true;
  EXPECT_EQ(Run(19, Report("18\n")), 0);
  EXPECT_TRUE(calls_.empty());
}

TEST_F(RunnerTest, TwentyTargetsReportZeroAtOnceAndTwentyAtTheEnd) {
  Faults().timer_held = true;
  EXPECT_EQ(Run(20, Report("19\n")), 0);
  EXPECT_EQ(calls_, (std::vector<int>{0, 20}));
}

TEST_F(RunnerTest, FinalReportIsTheLastIndexPlusOne) {
  Faults().timer_held = true;
  EXPECT_EQ(Run(25, Report("4\n")), 0);
  EXPECT_EQ(calls_, (std::vector<int>{0, 5}));
}

TEST_F(RunnerTest, TwoLinesInOneReadCountOnlyTheFirst) {
  Faults().timer_held = true;
  EXPECT_EQ(Run(20, Report("3\n4\n")), 0);
  EXPECT_EQ(calls_, (std::vector<int>{0, 4}));
}

TEST_F(RunnerTest, ExitCodeIsReturnedNegatedWithoutAFinalReport) {
  Faults().timer_held = true;
  EXPECT_EQ(Run(20, Report("2\n", 3)), -3);
  EXPECT_EQ(calls_, (std::vector<int>{0}));
}

TEST_F(RunnerTest, NegativeWorkResultArrivesAsItsLowByte) {
  Faults().timer_held = true;
  EXPECT_EQ(Run(1, Report("0\n", -5)), -251);
}

TEST_F(RunnerTest, TimerRunsEveryFiveHundredMilliseconds) {
  Faults().timer_held = true;
  Run(1, Report("0\n"));
  EXPECT_EQ(Faults().intervals, (std::vector<int64_t>{500}));
}

TEST_F(RunnerTest, ShortListReportsOnlyWhatTheTimerShows) {
  // The child reports its first target and then waits until the parent has
  // shown progress once (a timer expiry), then finishes.
  int gate[2];
  ASSERT_EQ(pipe(gate), 0);
  std::vector<TargetInfo> targets = Targets(3);
  int result = FH2_async(
      targets,
      [&gate](ush_st_io* channel) {
        ush_Printf(channel, "0\n");
        char go;
        if (read(gate[0], &go, 1) != 1) return 9;
        ush_Printf(channel, "2\n");
        return 0;
      },
      [this, &gate](int value) {
        if (calls_.empty()) {
          EXPECT_EQ(write(gate[1], "g", 1), 1);
        }
        calls_.push_back(value);
      });
  close(gate[0]);
  close(gate[1]);
  EXPECT_EQ(result, 0);
  ASSERT_GE(calls_.size(), 2u);
  EXPECT_LE(calls_.front(), 0);  // the first tick: index 0 at most
  EXPECT_EQ(calls_.back(), 3);
}

TEST_F(RunnerTest, CancelSendsSignalTwoOnceAndReturnsZero) {
  // The child never ends by itself; the first progress report (a timer
  // expiry) raises the cancel flag, as the host's own handler would.
  std::vector<TargetInfo> targets = Targets(3);
  int result = FH2_async(
      targets,
      [](ush_st_io* channel) {
        ush_Printf(channel, "0\n");
        for (;;) pause();
        return 0;
      },
      [this](int value) {
        calls_.push_back(value);
        SetCancelFlag();
      });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(Faults().signals, (std::vector<int>{2}));
  EXPECT_EQ(calls_, (std::vector<int>{0}));  // no final report
  EXPECT_TRUE(GetCancelFlag());              // left for the host to clear
}

TEST_F(RunnerTest, FailedForkOfALongListLooksLikeSuccess) {
  Faults().fork_fails = true;
  EXPECT_EQ(Run(25, Report("0\n", 5)), 0);
  EXPECT_EQ(calls_, (std::vector<int>{0, 1}));
}

TEST_F(RunnerTest, FailedForkOfAShortListReportsNothing) {
  Faults().fork_fails = true;
  EXPECT_EQ(Run(3, Report("0\n", 5)), 0);
  EXPECT_TRUE(calls_.empty());
}

TEST_F(RunnerTest, WithoutATimerOnlyTheFirstAndFinalReportsOccur) {
  Faults().timer_fails = true;
  auto slow = [](ush_st_io* channel) {
    usleep(600 * 1000);  // longer than a timer period
    ush_Printf(channel, "19\n");
    return 0;
  };
  EXPECT_EQ(Run(20, slow), 0);
  EXPECT_EQ(calls_, (std::vector<int>{0, 20}));
  calls_.clear();
  EXPECT_EQ(Run(3, slow), 0);
  EXPECT_TRUE(calls_.empty());
  EXPECT_TRUE(Faults().intervals.empty());
}

TEST_F(RunnerTest, RunsWithoutAProgressFunction) {
  std::vector<TargetInfo> targets = Targets(25);
  EXPECT_EQ(FH2_async(targets, Report("24\n", 4), nullptr), -4);
}

}  // namespace
