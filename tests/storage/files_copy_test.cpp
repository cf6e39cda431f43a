// Whole and partial copies, comparison, and paired copies.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <thread>

#include "support/device_image.h"
#include "support/test_bytes.h"
#include "zansong/async/cancel.h"
#include "zansong/storage/files.h"

namespace {

using zansong_test::BlockPattern;
using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::PathExists;
using zansong_test::ReadFile;
using zansong_test::WriteFile;

off_t SizeOf(const std::string& path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0 ? st.st_size : -1;
}

class CopyTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.Path("/tmp/copy/");
    MakeDirs(dir_);
  }
  void TearDown() override { ClearCancelFlag(); }
  std::string P(const std::string& name) { return dir_ + name; }
  std::string dir_;
};

TEST_F(CopyTest, CopiesAllBytes) {
  for (size_t size : {0u, 1u, 511u, 512u, 513u, 5000u}) {
    std::string data = BlockPattern(size);
    WriteFile(P("src"), data);
    ASSERT_EQ(CopyFile(P("src").c_str(), P("dst").c_str()), 0) << size;
    EXPECT_EQ(ReadFile(P("dst")), data) << size;
  }
}

TEST_F(CopyTest, KeepsAccessAndModificationTimes) {
  WriteFile(P("src"), BlockPattern(2000));
  struct timespec times[2];
  times[0].tv_sec = 1000000000;  // access
  times[0].tv_nsec = 250000000;
  times[1].tv_sec = 1200000000;  // modification
  times[1].tv_nsec = 0;
  ASSERT_EQ(utimensat(AT_FDCWD, P("src").c_str(), times, 0), 0);

  ASSERT_EQ(CopyFile(P("src").c_str(), P("dst").c_str()), 0);
  struct stat st;
  ASSERT_EQ(stat(P("dst").c_str(), &st), 0);
  EXPECT_EQ(st.st_atim.tv_sec, 1000000000);
  EXPECT_EQ(st.st_mtim.tv_sec, 1200000000);
}

TEST_F(CopyTest, CreatedWithMode0666BeforeUmask) {
  WriteFile(P("src"), "x");
  mode_t old = umask(0);
  int r = CopyFile(P("src").c_str(), P("dst").c_str());
  umask(old);
  ASSERT_EQ(r, 0);
  struct stat st;
  ASSERT_EQ(stat(P("dst").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0666u);
}

TEST_F(CopyTest, ReplacesLongerDestination) {
  WriteFile(P("src"), "short");
  WriteFile(P("dst"), BlockPattern(4000));
  ASSERT_EQ(CopyFile(P("src").c_str(), P("dst").c_str()), 0);
  EXPECT_EQ(ReadFile(P("dst")), "short");
}

TEST_F(CopyTest, MissingSourceGivesMinusOne) {
  EXPECT_EQ(CopyFile(P("none").c_str(), P("dst").c_str()), -1);
  EXPECT_FALSE(PathExists(P("dst")));
}

TEST_F(CopyTest, FullDeviceGivesMinusOne) {
  WriteFile(P("src"), BlockPattern(4096));
  EXPECT_EQ(CopyFile(P("src").c_str(), "/dev/full"), -1);
}

TEST_F(CopyTest, DestinationInMissingDirectoryGivesMinusThree) {
  std::string data = BlockPattern(3000);
  WriteFile(P("src"), data);
  EXPECT_EQ(CopyFile(P("src").c_str(), P("nodir/dst").c_str()), -3);
  EXPECT_EQ(ReadFile(P("src")), data);
  EXPECT_FALSE(PathExists(P("nodir")));
}

TEST_F(CopyTest, CopyOntoItselfKeepsTheFile) {
  std::string data = BlockPattern(3000);
  WriteFile(P("src"), data);
  ASSERT_EQ(link(P("src").c_str(), P("alias").c_str()), 0);
  EXPECT_EQ(CopyFile(P("src").c_str(), P("src").c_str()), -3);
  EXPECT_EQ(CopyFile(P("src").c_str(), P("alias").c_str()), -3);
  EXPECT_EQ(ReadFile(P("src")), data);
}

TEST_F(CopyTest, CancelFlagSetGivesMinusTwoAndLeavesPartialFile) {
  WriteFile(P("src"), BlockPattern(5000));
  SetCancelFlag();
  EXPECT_EQ(CopyFile(P("src").c_str(), P("dst").c_str()), -2);
  EXPECT_TRUE(PathExists(P("dst")));
  EXPECT_LT(SizeOf(P("dst")), 5000);
}

TEST_F(CopyTest, CancelFlagDoesNotStopEmptyFile) {
  // No block to copy, so there is no point at which to stop.
  WriteFile(P("src"), "");
  SetCancelFlag();
  EXPECT_EQ(CopyFile(P("src").c_str(), P("dst").c_str()), 0);
}

TEST_F(CopyTest, CancelStopsTheCopyBeforeTheNextBlock) {
  // The source is a FIFO fed by a thread: once the copy has written the
  // first bytes, the thread raises the flag and sends more.  Not one byte
  // sent after the flag may reach the destination.
  ASSERT_EQ(mkfifo(P("fifo").c_str(), 0666), 0);
  signal(SIGPIPE, SIG_IGN);
  const std::string dst = P("dst");
  const std::string first = BlockPattern(3000);
  std::thread feeder([&] {
    int fd = open(P("fifo").c_str(), O_WRONLY);
    if (fd < 0) return;
    if (write(fd, first.data(), first.size()) == static_cast<ssize_t>(first.size())) {
      for (int i = 0; i < 10000000 && SizeOf(dst) < static_cast<off_t>(first.size()); ++i) {
        std::this_thread::yield();
      }
    }
    SetCancelFlag();
    const std::string more = BlockPattern(3000);
    if (write(fd, more.data(), more.size()) < 0) {
      // The copy has stopped reading.
    }
    close(fd);
  });
  int r = CopyFile(P("fifo").c_str(), dst.c_str());
  feeder.join();
  EXPECT_EQ(r, -2);
  EXPECT_EQ(ReadFile(dst), first);
}

void RaiseCancelFlag(int) { SetCancelFlag(); }

TEST_F(CopyTest, SignalDuringLargeCopyStopsIt) {
  const off_t kSize = 50 * 1024 * 1024;
  {
    std::string block = BlockPattern(1 << 20);
    int fd = open(P("big").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    ASSERT_GE(fd, 0);
    for (int i = 0; i < 50; ++i) ASSERT_EQ(write(fd, block.data(), block.size()), 1 << 20);
    close(fd);
  }
  struct sigaction action = {};
  action.sa_handler = RaiseCancelFlag;
  action.sa_flags = SA_RESTART;
  struct sigaction previous;
  ASSERT_EQ(sigaction(SIGUSR1, &action, &previous), 0);

  // A watcher process signals this one as soon as the copy has written its
  // first megabyte; the copy then stops at its next block.
  const std::string dst = P("big.copy");
  const pid_t parent = getpid();
  pid_t watcher = fork();
  ASSERT_GE(watcher, 0);
  if (watcher == 0) {
    for (int i = 0; i < 3000000; ++i) {
      struct stat st;
      if (stat(dst.c_str(), &st) == 0 && st.st_size >= (1 << 20)) {
        kill(parent, SIGUSR1);
        _exit(0);
      }
      usleep(10);
    }
    _exit(1);
  }
  int r = CopyFile(P("big").c_str(), dst.c_str());
  int status = 0;
  waitpid(watcher, &status, 0);
  sigaction(SIGUSR1, &previous, nullptr);

  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_EQ(r, -2);
  EXPECT_TRUE(PathExists(dst));
  EXPECT_GE(SizeOf(dst), 1 << 20);
  EXPECT_LT(SizeOf(dst), kSize);
}

// ---- CopyPartFile ----

class CopyPartTest : public CopyTest {
 protected:
  void SetUp() override {
    CopyTest::SetUp();
    data_ = BlockPattern(3000);
    WriteFile(P("src"), data_);
    src_ = open(P("src").c_str(), O_RDONLY);
    dst_ = open(P("dst").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    ASSERT_GE(src_, 0);
    ASSERT_GE(dst_, 0);
  }
  void TearDown() override {
    close(src_);
    close(dst_);
    CopyTest::TearDown();
  }
  std::string data_;
  int src_ = -1;
  int dst_ = -1;
};

TEST_F(CopyPartTest, RangeIsCopied) {
  EXPECT_EQ(CopyPartFile(src_, dst_, 100, 1700), 0);
  EXPECT_EQ(ReadFile(P("dst")), data_.substr(100, 1600));
}

TEST_F(CopyPartTest, RangesAppendAtDestinationPosition) {
  EXPECT_EQ(CopyPartFile(src_, dst_, 0, 10), 0);
  EXPECT_EQ(CopyPartFile(src_, dst_, 2000, 2010), 0);
  EXPECT_EQ(ReadFile(P("dst")), data_.substr(0, 10) + data_.substr(2000, 10));
}

TEST_F(CopyPartTest, ToZeroCopiesTheRest) {
  EXPECT_EQ(CopyPartFile(src_, dst_, 1234, 0), 0);
  EXPECT_EQ(ReadFile(P("dst")), data_.substr(1234));
}

TEST_F(CopyPartTest, RangePastTheEndIsShort) {
  EXPECT_EQ(CopyPartFile(src_, dst_, 2900, 3100), -1);
  EXPECT_EQ(ReadFile(P("dst")), data_.substr(2900));
}

TEST_F(CopyPartTest, RangeStartingAtTheEndReadsNothing) {
  EXPECT_EQ(CopyPartFile(src_, dst_, 3000, 3100), 0);
  EXPECT_EQ(CopyPartFile(src_, dst_, 5000, 0), 0);
  EXPECT_EQ(ReadFile(P("dst")), "");
}

TEST_F(CopyPartTest, BackwardRangeIsRefused) {
  EXPECT_EQ(CopyPartFile(src_, dst_, 200, 100), -1);
  EXPECT_EQ(ReadFile(P("dst")), "");
}

TEST_F(CopyPartTest, FailedWriteGivesMinusOne) {
  int full = open("/dev/full", O_WRONLY);
  ASSERT_GE(full, 0);
  EXPECT_EQ(CopyPartFile(src_, full, 0, 100), -1);
  EXPECT_EQ(CopyPartFile(src_, full, 0, 0), -1);
  close(full);
}

// ---- CompareFile ----

TEST_F(CopyTest, CompareEqualFiles) {
  std::string data = BlockPattern(1500);
  WriteFile(P("a"), data);
  WriteFile(P("b"), data);
  EXPECT_EQ(CompareFile(P("a").c_str(), P("b").c_str()), 1);
}

TEST_F(CopyTest, CompareFindsDifferenceInLaterBlock) {
  std::string data = BlockPattern(1500);
  WriteFile(P("a"), data);
  data[1400] ^= 1;
  WriteFile(P("b"), data);
  EXPECT_EQ(CompareFile(P("a").c_str(), P("b").c_str()), 0);
}

TEST_F(CopyTest, CompareLongerSecondFileIsEqual) {
  std::string data = BlockPattern(700);
  WriteFile(P("a"), data);
  WriteFile(P("b"), data + "tail");
  EXPECT_EQ(CompareFile(P("a").c_str(), P("b").c_str()), 1);
  EXPECT_EQ(CompareFile(P("b").c_str(), P("a").c_str()), 0);
}

TEST_F(CopyTest, CompareMissingFileIsZero) {
  WriteFile(P("a"), "x");
  EXPECT_EQ(CompareFile(P("a").c_str(), P("none").c_str()), 0);
  EXPECT_EQ(CompareFile(P("none").c_str(), P("a").c_str()), 0);
}

// ---- CopyFiles and CopyFiles2 ----

TEST_F(CopyTest, CopyFilesCopiesBoth) {
  MakeDirs(P("out"));
  WriteFile(P("s.mid"), "midi");
  WriteFile(P("s.jpg"), "picture");
  EXPECT_EQ(CopyFiles(TSString(dir_.c_str()), TSString(P("out/").c_str()), "s.mid", "s.jpg",
                      "d.mid", "d.jpg"),
            0);
  EXPECT_EQ(ReadFile(P("out/d.mid")), "midi");
  EXPECT_EQ(ReadFile(P("out/d.jpg")), "picture");
}

TEST_F(CopyTest, CopyFilesWithoutSecondName) {
  MakeDirs(P("out"));
  WriteFile(P("s.mid"), "midi");
  EXPECT_EQ(
      CopyFiles(TSString(dir_.c_str()), TSString(P("out/").c_str()), "s.mid", "s.jpg", "d.mid", ""),
      0);
  EXPECT_TRUE(PathExists(P("out/d.mid")));
  EXPECT_FALSE(PathExists(P("out/s.jpg")));
}

TEST_F(CopyTest, CopyFilesFirstFailureDeletesFirstDestination) {
  MakeDirs(P("out"));
  WriteFile(P("s.mid"), "midi");
  WriteFile(P("s.jpg"), "picture");
  SetCancelFlag();
  EXPECT_EQ(CopyFiles(TSString(dir_.c_str()), TSString(P("out/").c_str()), "s.mid", "s.jpg",
                      "d.mid", "d.jpg"),
            -2);
  EXPECT_FALSE(PathExists(P("out/d.mid")));
  EXPECT_FALSE(PathExists(P("out/d.jpg")));
}

TEST_F(CopyTest, CopyFilesSecondFailureDeletesBoth) {
  MakeDirs(P("out"));
  WriteFile(P("s.mid"), "midi");
  EXPECT_EQ(CopyFiles(TSString(dir_.c_str()), TSString(P("out/").c_str()), "s.mid", "none.jpg",
                      "d.mid", "d.jpg"),
            -1);
  EXPECT_FALSE(PathExists(P("out/d.mid")));
  EXPECT_FALSE(PathExists(P("out/d.jpg")));
  EXPECT_TRUE(PathExists(P("s.mid")));
}

TEST_F(CopyTest, CopyFilesSecondDestinationUncreatable) {
  MakeDirs(P("out"));
  WriteFile(P("s.mid"), "midi");
  WriteFile(P("s.jpg"), "picture");
  EXPECT_EQ(CopyFiles(TSString(dir_.c_str()), TSString(P("out/").c_str()), "s.mid", "s.jpg",
                      "d.mid", "nodir/d.jpg"),
            -3);
  EXPECT_FALSE(PathExists(P("out/d.mid")));
}

TEST_F(CopyTest, CopyFiles2CopiesBoth) {
  WriteFile(P("a"), "one");
  WriteFile(P("b"), "two");
  EXPECT_EQ(CopyFiles2(P("a").c_str(), P("b").c_str(), P("a2").c_str(), P("b2").c_str()), 0);
  EXPECT_EQ(ReadFile(P("a2")), "one");
  EXPECT_EQ(ReadFile(P("b2")), "two");
}

TEST_F(CopyTest, CopyFiles2OnlySecond) {
  WriteFile(P("b"), "two");
  EXPECT_EQ(CopyFiles2("", P("b").c_str(), P("a2").c_str(), P("b2").c_str()), 0);
  EXPECT_FALSE(PathExists(P("a2")));
  EXPECT_EQ(ReadFile(P("b2")), "two");
}

TEST_F(CopyTest, CopyFiles2NothingToDo) {
  EXPECT_EQ(CopyFiles2("", "", P("a2").c_str(), P("b2").c_str()), 0);
}

TEST_F(CopyTest, CopyFiles2FirstFailureAloneIsReported) {
  WriteFile(P("a2"), "stale");
  EXPECT_EQ(CopyFiles2(P("none").c_str(), "", P("a2").c_str(), P("b2").c_str()), -1);
  EXPECT_FALSE(PathExists(P("a2")));
}

TEST_F(CopyTest, CopyFiles2FirstFailureHiddenBySecondSuccess) {
  WriteFile(P("b"), "two");
  EXPECT_EQ(CopyFiles2(P("a").c_str(), P("b").c_str(), P("nodir/a2").c_str(), P("b2").c_str()), 0);
  EXPECT_EQ(ReadFile(P("b2")), "two");
}

TEST_F(CopyTest, CopyFiles2SecondFailureDeletesBoth) {
  WriteFile(P("a"), "one");
  EXPECT_EQ(CopyFiles2(P("a").c_str(), P("none").c_str(), P("a2").c_str(), P("b2").c_str()), -1);
  EXPECT_FALSE(PathExists(P("a2")));
  EXPECT_FALSE(PathExists(P("b2")));
  EXPECT_TRUE(PathExists(P("a")));
}

TEST_F(CopyTest, CopyFiles2SecondFailureWithoutFirstDestination) {
  WriteFile(P("b"), "two");
  EXPECT_EQ(CopyFiles2("", P("b").c_str(), "", P("nodir/b2").c_str()), -3);
  EXPECT_TRUE(PathExists(P("b")));
}

}  // namespace
