// The event-loop stand-in on its own: child processes and their exit
// events, channels and their read events, timers, dispatch and release.
#include "ush.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "support/process_census.h"

namespace {

using zansong_test::HasChildProcesses;
using zansong_test::OpenDescriptorCount;

// What the callbacks saw; reached through the handle's user pointer.
struct Seen {
  int exits = 0;
  int status = -1;
  int reads = 0;
  std::string data;
  int ticks = 0;
};

int OnExit(ush_st_io* io, int status) {
  Seen* seen = static_cast<Seen*>(ush_Get_Par(io));
  ++seen->exits;
  seen->status = status;
  ush_Exec_Release(io);
  return 0;
}

int OnRead(ush_st_io* io) {
  Seen* seen = static_cast<Seen*>(ush_Get_Par(io));
  char buffer[USH_READ_MAX + 1];
  int n = ush_ReadData(io, buffer);
  ++seen->reads;
  if (n > 0) seen->data += buffer;
  return 0;
}

int OnTick(ush_st_io* io) {
  char buffer[USH_READ_MAX + 1];
  ush_ReadData(io, buffer);
  ++static_cast<Seen*>(ush_Get_Par(io))->ticks;
  return 0;
}

// Forks a child that runs body and exits with its result; in the parent,
// installs OnExit with seen and returns the handle.
template <typename Body>
ush_st_io* ForkChild(Seen* seen, Body body) {
  ush_st_io* child = ush_Exec_Fork();
  if (child == nullptr) return nullptr;
  if (ush_Exec_Pid(child) == 0) _exit(body());
  ush_Set_Par(child, seen);
  ush_Exec_Set_WaitEvent(child, OnExit);
  return child;
}

void DispatchUntilExit(const Seen& seen) {
  while (seen.exits == 0) ASSERT_EQ(ush_Selects(-1), 0);
}

class UshTest : public ::testing::Test {
 protected:
  void SetUp() override { fds_before_ = OpenDescriptorCount(); }
  // Every test leaves no descriptor, child or zombie behind.
  void TearDown() override {
    EXPECT_EQ(OpenDescriptorCount(), fds_before_);
    EXPECT_FALSE(HasChildProcesses());
  }
  int fds_before_ = 0;
};

TEST_F(UshTest, ExitEventCarriesTheChildsWaitStatus) {
  Seen seen;
  // The body runs only where ush_Exec_Pid gives 0: in the child.
  ush_st_io* child = ForkChild(&seen, [] { return 7; });
  ASSERT_NE(child, nullptr);
  EXPECT_GT(ush_Exec_Pid(child), 0);
  DispatchUntilExit(seen);
  EXPECT_EQ(seen.exits, 1);
  ASSERT_TRUE(WIFEXITED(seen.status));
  EXPECT_EQ(WEXITSTATUS(seen.status), 7);
}

TEST_F(UshTest, ExitEventRunsOnceEvenWhenSetAfterTheChildEnded) {
  Seen seen;
  ush_st_io* child = ush_Exec_Fork();
  ASSERT_NE(child, nullptr);
  if (ush_Exec_Pid(child) == 0) _exit(3);
  // Let it end, and dispatch its SIGCHLD before anyone waits for it.
  siginfo_t info{};
  ASSERT_EQ(waitid(P_PID, ush_Exec_Pid(child), &info, WEXITED | WNOWAIT), 0);
  ASSERT_EQ(ush_Selects(-1), 0);
  ush_Set_Par(child, &seen);
  ush_Exec_Set_WaitEvent(child, OnExit);
  DispatchUntilExit(seen);
  EXPECT_EQ(seen.exits, 1);
  EXPECT_EQ(WEXITSTATUS(seen.status), 3);
}

TEST_F(UshTest, SignalSentToAChildEndsIt) {
  Seen seen;
  ush_st_io* child = ForkChild(&seen, [] {
    pause();
    return 0;
  });
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(ush_Exec_SendSignal(child, SIGINT), 0);
  DispatchUntilExit(seen);
  ASSERT_TRUE(WIFSIGNALED(seen.status));
  EXPECT_EQ(WTERMSIG(seen.status), SIGINT);
}

TEST_F(UshTest, ChildsStandardOutputIsReadThroughItsHandle) {
  Seen seen;
  ush_st_io* child = ForkChild(&seen, [] {
    std::printf("from the child\n");
    std::fflush(stdout);
    return 0;
  });
  ASSERT_NE(child, nullptr);
  ush_Set_ReadEvent(child, OnRead);
  // Keep the handle past the exit event, so that output arriving after it
  // is read too.
  ush_Exec_Set_WaitEvent(child, [](ush_st_io* io, int) {
    ++static_cast<Seen*>(ush_Get_Par(io))->exits;
    return 0;
  });
  while (seen.exits == 0 || seen.data.size() < 15) ASSERT_EQ(ush_Selects(-1), 0);
  EXPECT_EQ(seen.data, "from the child\n");
  ush_Exec_Release(child);
}

TEST_F(UshTest, ChannelReadEventRunsWhenDataWaits) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  ush_st_io* channel = ush_Get_UshByFd(fds[0], -1);
  ASSERT_NE(channel, nullptr);
  Seen seen;
  ush_Set_Par(channel, &seen);
  ASSERT_EQ(ush_Set_ReadEvent(channel, OnRead), 0);
  ASSERT_EQ(write(fds[1], "12\n", 3), 3);
  EXPECT_EQ(ush_Selects(-1), 0);
  EXPECT_EQ(seen.reads, 1);
  EXPECT_EQ(seen.data, "12\n");
  close(fds[1]);
  ush_Release_Ush(channel);
}

TEST_F(UshTest, ReadDataTakesAtMostTheLimitAndEndsWithNul) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  ush_st_io* channel = ush_Get_UshByFd(fds[0], fds[1]);
  ASSERT_NE(channel, nullptr);
  std::string text(300, 'x');
  ASSERT_EQ(ush_Printf(channel, "%s", text.c_str()), 300);
  char buffer[USH_READ_MAX + 2];
  std::memset(buffer, '#', sizeof buffer);
  EXPECT_EQ(ush_ReadData(channel, buffer), USH_READ_MAX);
  EXPECT_EQ(buffer[USH_READ_MAX], '\0');
  EXPECT_EQ(buffer[USH_READ_MAX + 1], '#');  // nothing written past the NUL
  EXPECT_EQ(ush_ReadData(channel, buffer), 300 - USH_READ_MAX);
  EXPECT_EQ(ush_ReadData(channel, buffer), 0);  // nothing waits: no block
  EXPECT_STREQ(buffer, "");
  ush_Release_Ush(channel);
}

TEST_F(UshTest, PrintfFormatsLikePrintf) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  ush_st_io* writer = ush_Get_UshByFd(-1, fds[1]);
  ASSERT_NE(writer, nullptr);
  EXPECT_EQ(ush_Printf(writer, "%d\n%s", 17, "ab"), 5);
  char text[8] = {};
  EXPECT_EQ(read(fds[0], text, sizeof text - 1), 5);
  EXPECT_STREQ(text, "17\nab");
  ush_Release_Ush(writer);
  close(fds[0]);
}

TEST_F(UshTest, EndOfDataStopsTheReadEvent) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  ush_st_io* channel = ush_Get_UshByFd(fds[0], -1);
  Seen seen;
  ush_Set_Par(channel, &seen);
  ush_Set_ReadEvent(channel, OnRead);
  close(fds[1]);
  EXPECT_EQ(ush_Selects(-1), 0);
  EXPECT_EQ(seen.reads, 1);
  EXPECT_EQ(seen.data, "");
  // Nothing is left to wait for: the round returns at once.
  EXPECT_EQ(ush_Selects(-1), 1);
  EXPECT_EQ(seen.reads, 1);
  ush_Release_Ush(channel);
}

TEST_F(UshTest, PeriodicTimerExpiresAgainAndAgain) {
  ush_st_io* timer = ush_Timer();
  ASSERT_NE(timer, nullptr);
  Seen seen;
  ush_Set_Par(timer, &seen);
  ASSERT_EQ(ush_Timer_Set_ReadEvent(timer, OnTick), 0);
  ASSERT_EQ(ush_Timer_Start(timer, 10), 0);
  while (seen.ticks < 3) ASSERT_EQ(ush_Selects(-1), 0);
  EXPECT_EQ(seen.ticks, 3);
  ush_Release_Ush(timer);
}

TEST_F(UshTest, TimerReadGivesTheExpiriesSinceTheLastRead) {
  ush_st_io* timer = ush_Timer();
  ASSERT_NE(timer, nullptr);
  ush_Timer_Start(timer, 5);
  ASSERT_EQ(ush_Selects(-1), 0);  // one expiry, no callback
  char buffer[USH_READ_MAX + 1];
  EXPECT_GT(ush_ReadData(timer, buffer), 0);
  EXPECT_STREQ(buffer, "1");
  EXPECT_EQ(ush_ReadData(timer, buffer), 1);
  EXPECT_STREQ(buffer, "0");
  ush_Release_Ush(timer);
}

TEST_F(UshTest, SelectsWithATimeoutReturnsWhenNothingHappens) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  ush_st_io* channel = ush_Get_UshByFd(fds[0], fds[1]);
  Seen seen;
  ush_Set_Par(channel, &seen);
  ush_Set_ReadEvent(channel, OnRead);
  EXPECT_EQ(ush_Selects(1), 0);
  EXPECT_EQ(seen.reads, 0);
  ush_Release_Ush(channel);
}

TEST_F(UshTest, SelectsWithNothingRegisteredReturnsAtOnce) { EXPECT_EQ(ush_Selects(-1), 1); }

TEST_F(UshTest, ParAndTypeAreKeptPerHandle) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  ush_st_io* a = ush_Get_UshByFd(fds[0], -1);
  ush_st_io* b = ush_Get_UshByFd(-1, fds[1]);
  int x = 0, y = 0;
  EXPECT_EQ(ush_Get_Par(a), nullptr);
  EXPECT_EQ(ush_Set_Par(a, &x), 0);
  EXPECT_EQ(ush_Set_Par(b, &y), 0);
  EXPECT_EQ(ush_Set_Type(a, -1), 0);
  EXPECT_EQ(ush_Get_Par(a), &x);
  EXPECT_EQ(ush_Get_Par(b), &y);
  ush_Release_Ush(a);
  ush_Release_Ush(b);
}

TEST_F(UshTest, NullAndWrongHandlesAreRefused) {
  EXPECT_EQ(ush_Set_Par(nullptr, nullptr), -1);
  EXPECT_EQ(ush_Get_Par(nullptr), nullptr);
  EXPECT_EQ(ush_Set_Type(nullptr, 1), -1);
  EXPECT_EQ(ush_Set_ReadEvent(nullptr, OnRead), -1);
  char buffer[USH_READ_MAX + 1];
  EXPECT_EQ(ush_ReadData(nullptr, buffer), -1);
  EXPECT_EQ(ush_Printf(nullptr, "x"), -1);
  EXPECT_EQ(ush_Exec_Pid(nullptr), -1);
  EXPECT_EQ(ush_Exec_SendSignal(nullptr, SIGINT), -1);
  EXPECT_EQ(ush_Exec_Release(nullptr), -1);
  EXPECT_EQ(ush_Release_Ush(nullptr), 0);
  EXPECT_EQ(ush_Get_UshByFd(-1, -1), nullptr);
  ush_st_io* timer = ush_Timer();
  EXPECT_EQ(ush_Exec_Pid(timer), -1);
  EXPECT_EQ(ush_Printf(timer, "x"), -1);
  ush_Release_Ush(timer);
}

TEST_F(UshTest, SignalToAReapedChildIsRefused) {
  Seen seen;
  ush_st_io* child = ForkChild(&seen, [] { return 0; });
  ASSERT_NE(child, nullptr);
  ush_Exec_Set_WaitEvent(child, [](ush_st_io* io, int status) {
    Seen* s = static_cast<Seen*>(ush_Get_Par(io));
    ++s->exits;
    s->status = status;
    s->reads = ush_Exec_SendSignal(io, SIGINT);  // reaped: refused
    ush_Exec_Release(io);
    return 0;
  });
  DispatchUntilExit(seen);
  EXPECT_EQ(seen.reads, -1);
}

TEST_F(UshTest, ReleasingARunningChildLeavesNoZombieOnceItEnds) {
  int gate[2];
  ASSERT_EQ(pipe(gate), 0);
  ush_st_io* child = ush_Exec_Fork();
  ASSERT_NE(child, nullptr);
  if (ush_Exec_Pid(child) == 0) {
    char c;
    _exit(read(gate[0], &c, 1) == 1 ? 0 : 1);
  }
  EXPECT_EQ(ush_Exec_Release(child), 0);
  close(gate[0]);
  ASSERT_EQ(write(gate[1], "x", 1), 1);
  close(gate[1]);
  // The loop still watches the released child and reaps it.
  while (ush_Selects(-1) == 0) {
  }
  EXPECT_FALSE(HasChildProcesses());
}

TEST_F(UshTest, ReleaseClosesTheDescriptors) {
  int before = OpenDescriptorCount();
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  ush_st_io* channel = ush_Get_UshByFd(fds[0], fds[1]);
  ush_Set_ReadEvent(channel, OnRead);
  EXPECT_GT(OpenDescriptorCount(), before + 1);
  ush_Release_Ush(channel);
  EXPECT_EQ(OpenDescriptorCount(), before);
}

}  // namespace
