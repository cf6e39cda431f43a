// The common shape of the list operations, with fake per-target calls:
// targets in order, the "%d\n" reports, the stop at the first failure, the
// cancel check of copies, and the whole run in a child process.
#include "async/target_list.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/device_image.h"
#include "support/process_census.h"
#include "ush.h"
#include "zansong/async/cancel.h"
#include "zansong/result_codes.h"

namespace {

using zansong::CancelCheck;
using zansong::RunTargetList;
using zansong::WorkThroughTargets;
using zansong_test::PathExists;

TargetInfo Target(int type, int id, char pfix = 's') {
  TargetInfo t{};
  t.type = type;
  t.pfix = pfix;
  t.id = id;
  return t;
}

// Runs WorkThroughTargets in this process with a pipe as its channel;
// returns what was reported.
std::string ReportsOf(const std::vector<TargetInfo>& targets, const zansong::TargetCall& call,
                      CancelCheck cancel, int* result) {
  int fds[2];
  EXPECT_EQ(pipe(fds), 0);
  ush_st_io* channel = ush_Get_UshByFd(-1, fds[1]);
  *result = WorkThroughTargets(targets, call, cancel, channel);
  ush_Release_Ush(channel);
  std::string reports;
  char buffer[256];
  ssize_t n;
  while ((n = read(fds[0], buffer, sizeof buffer)) > 0) reports.append(buffer, n);
  close(fds[0]);
  return reports;
}

class TargetListTest : public zansong_test::DeviceTest {
 protected:
  void TearDown() override { ClearCancelFlag(); }
  // A file per finished target, made by the fake call in the child.
  std::string Done(int id) const { return image_.Path("/tmp/done-" + std::to_string(id)); }
  zansong::TargetCall MarkDone() const {
    return [this](const TargetInfo& t) {
      zansong_test::WriteFile(Done(t.id), "x");
      return kResultOk;
    };
  }
};

TEST_F(TargetListTest, EveryTargetIsWorkedInOrderAndReported) {
  std::vector<TargetInfo> targets = {Target(kTargetSong, 11, 's'), Target(kTargetPlaylist, 12, 'p'),
                                     Target(kTargetUnknown, 13)};
  std::vector<std::string> calls;
  int result = -1;
  // A delete list: songs to one call, albums and playlists to another,
  // other types skipped.
  std::string reports = ReportsOf(
      targets,
      [&calls](const TargetInfo& t) {
        if (t.type == kTargetSong) calls.push_back("song " + std::to_string(t.id) + t.pfix);
        if (t.type == kTargetPlaylist) calls.push_back("album " + std::to_string(t.id) + t.pfix);
        return kResultOk;
      },
      CancelCheck::kNone, &result);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(calls, (std::vector<std::string>{"song 11s", "album 12p"}));
  EXPECT_EQ(reports, "0\n1\n2\n");
}

TEST_F(TargetListTest, FailureStopsAfterReportingTheFailingTarget) {
  std::vector<TargetInfo> targets = {Target(1, 1), Target(1, 2), Target(1, 3), Target(1, 4)};
  std::vector<int> ids;
  int result = 0;
  std::string reports = ReportsOf(
      targets,
      [&ids](const TargetInfo& t) {
        ids.push_back(t.id);
        return t.id == 2 ? -5 : kResultOk;
      },
      CancelCheck::kNone, &result);
  EXPECT_EQ(result, 5);  // the exit code: the magnitude of the result
  EXPECT_EQ(reports, "0\n1\n");
  EXPECT_EQ(ids, (std::vector<int>{1, 2}));
}

TEST_F(TargetListTest, CopiesStopBeforeReportingOnceTheCancelFlagIsSet) {
  std::vector<TargetInfo> targets = {Target(1, 1), Target(1, 2)};
  SetCancelFlag();
  int calls = 0;
  auto call = [&calls](const TargetInfo&) {
    ++calls;
    return kResultOk;
  };
  int result = 0;
  EXPECT_EQ(ReportsOf(targets, call, CancelCheck::kBeforeEachReport, &result), "");
  EXPECT_EQ(result, -kResultCopyCancelled);
  EXPECT_EQ(calls, 1);
  // Other operations do not look at the flag.
  EXPECT_EQ(ReportsOf(targets, call, CancelCheck::kNone, &result), "0\n1\n");
  EXPECT_EQ(result, 0);
}

TEST_F(TargetListTest, LongListShowsProgressAtOnceAndAtTheEnd) {
  std::vector<TargetInfo> targets;
  for (int i = 0; i < 25; ++i) targets.push_back(Target(kTargetSong, i));
  std::vector<int> progress;
  int result = RunTargetList(targets, MarkDone(), CancelCheck::kNone,
                             [&progress](int n) { progress.push_back(n); });
  EXPECT_EQ(result, 0);
  ASSERT_GE(progress.size(), 2u);
  EXPECT_EQ(progress.front(), 0);
  // The final report is the last index read plus one: 25 unless the last
  // lines arrived in one read.
  EXPECT_GE(progress.back(), 1);
  EXPECT_LE(progress.back(), 25);
  for (int i = 0; i < 25; ++i) EXPECT_TRUE(PathExists(Done(i))) << i;
}

TEST_F(TargetListTest, ChildFailingOnItsThirdTargetLeavesTheRestUntouched) {
  std::vector<TargetInfo> targets;
  for (int i = 0; i < 6; ++i) targets.push_back(Target(kTargetSong, i));
  auto mark = MarkDone();
  int result = RunTargetList(
      targets,
      [&mark](const TargetInfo& t) {
        mark(t);
        return t.id == 2 ? kResultAlbumFull : kResultOk;
      },
      CancelCheck::kNone, nullptr);
  EXPECT_EQ(result, kResultAlbumFull);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(PathExists(Done(i))) << i;
  for (int i = 3; i < 6; ++i) EXPECT_FALSE(PathExists(Done(i))) << i;
  EXPECT_FALSE(zansong_test::HasChildProcesses());
}

// The host's Ctrl-C handler: raises the cancel flag.  The child inherits it,
// so signal 2 raises the child's own copy of the flag.
void RaiseCancelFlag(int) { SetCancelFlag(); }

TEST_F(TargetListTest, CancelDuringALongCopyKeepsWhatWasCopiedBefore) {
  struct sigaction host {
  }, saved{};
  host.sa_handler = RaiseCancelFlag;
  sigemptyset(&host.sa_mask);
  ASSERT_EQ(sigaction(SIGINT, &host, &saved), 0);

  std::vector<TargetInfo> targets;
  for (int i = 0; i < 5; ++i) targets.push_back(Target(kTargetSong, i));
  auto mark = MarkDone();
  std::string partial = image_.Path("/tmp/partial");
  // Targets 0 and 1 copy at once; target 2 copies block by block until the
  // flag is raised, and then removes its partial file as a cancelled copy
  // does.
  auto copy = [&mark, &partial](const TargetInfo& t) {
    if (t.id != 2) return mark(t);
    zansong_test::WriteFile(partial, "x");
    while (!GetCancelFlag()) usleep(1000);
    std::remove(partial.c_str());
    return kResultCopyCancelled;
  };
  std::vector<int> progress;
  int result = RunTargetList(targets, copy, CancelCheck::kBeforeEachReport, [&](int n) {
    progress.push_back(n);
    if (PathExists(partial)) SetCancelFlag();  // the user presses cancel
  });
  sigaction(SIGINT, &saved, nullptr);

  EXPECT_EQ(result, kResultCopyCancelled);
  EXPECT_FALSE(progress.empty());
  EXPECT_TRUE(PathExists(Done(0)));
  EXPECT_TRUE(PathExists(Done(1)));
  EXPECT_FALSE(PathExists(partial));
  for (int i = 3; i < 5; ++i) EXPECT_FALSE(PathExists(Done(i))) << i;
  EXPECT_FALSE(zansong_test::HasChildProcesses());
}

}  // namespace
