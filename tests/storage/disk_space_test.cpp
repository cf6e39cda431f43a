// Free-space tests and the free-space text.
#include <gtest/gtest.h>
#include <sys/statfs.h>

#include <climits>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "storage/disk_free_text.h"
#include "support/child_process.h"
#include "support/device_image.h"
#include "zansong/storage/files.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::WriteFile;

std::string Text(long long bytes) { return zansong::DiskFreeText(bytes).c_str(); }

TEST(DiskFreeTextTest, Thresholds) {
  EXPECT_EQ(Text(1048575), "1024.0 KB");
  EXPECT_EQ(Text(1048576), "1.0 MB");
  EXPECT_EQ(Text(1073741823), "1024.0 MB");
  EXPECT_EQ(Text(1073741824), "1.0 GB");
}

TEST(DiskFreeTextTest, TypicalValues) {
  EXPECT_EQ(Text(0), "0.0 KB");
  EXPECT_EQ(Text(512), "0.5 KB");
  EXPECT_EQ(Text(3 * 1048576 / 2), "1.5 MB");
  EXPECT_EQ(Text(300LL * 1048576), "300.0 MB");
  EXPECT_EQ(Text(15LL * 1073741824 / 2), "7.5 GB");
  EXPECT_EQ(Text(2000LL * 1073741824), "2000.0 GB");
}

TEST(DiskFreeTextTest, NegativeGigabytesShowAsZero) {
  EXPECT_EQ(Text(-1073741824), "0.0 GB");
  EXPECT_EQ(Text(LLONG_MIN), "0.0 GB");
}

class DiskSpaceTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.Path("/tmp/disk/");
    MakeDirs(dir_);
  }
  long long Free() {
    struct statfs fs;
    statfs(dir_.c_str(), &fs);
    return static_cast<long long>(fs.f_bavail) * static_cast<long long>(fs.f_bsize);
  }
  // A sparse file of the given size, taking no space.
  std::string Sparse(const std::string& name, long long size) {
    std::string path = dir_ + name;
    EXPECT_TRUE(zansong_test::MakeSparseFile(path, size));
    return path;
  }
  std::string dir_;
};

TEST_F(DiskSpaceTest, EmptyFirstFileAnswersYesWithoutLookingAtDisk) {
  EXPECT_EQ(CheckDiskFree("/no/such/dir/", "", ""), 1);
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), "", Sparse("huge", 1LL << 42).c_str()), 1);
}

TEST_F(DiskSpaceTest, UnreadableFirstFileAnswersYes) {
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), (dir_ + "none").c_str(), ""), 1);
}

TEST_F(DiskSpaceTest, FailedStatfsAnswersYes) {
  WriteFile(dir_ + "small", "x");
  EXPECT_EQ(CheckDiskFree("/no/such/dir/", (dir_ + "small").c_str(), ""), 1);
  EXPECT_EQ(CheckDiskFree("/no/such/dir/", LLONG_MAX), 1);
}

TEST_F(DiskSpaceTest, FilesThatFitAnswerYes) {
  WriteFile(dir_ + "small", "x");
  ASSERT_GT(Free(), 8 * 1048576);
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), (dir_ + "small").c_str(), ""), 1);
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), (dir_ + "small").c_str(), (dir_ + "none").c_str()), 1);
}

TEST_F(DiskSpaceTest, FilesLargerThanFreeSpaceAnswerNo) {
  long long big = Free() + 1;
  std::string huge = Sparse("huge", big);
  WriteFile(dir_ + "small", "x");
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), huge.c_str(), ""), 0);
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), (dir_ + "small").c_str(), huge.c_str()), 0);
}

TEST_F(DiskSpaceTest, MarginOfOneMebibyteCounts) {
  // Two files that leave less than the margin free.
  long long free = Free();
  std::string a = Sparse("a", free / 2);
  std::string b = Sparse("b", free - free / 2 - 1048576 + 524288);
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), a.c_str(), b.c_str()), 0);
}

TEST_F(DiskSpaceTest, NeedAgainstFreeSpace) {
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), 0LL), 1);
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), 4096LL), 1);
  EXPECT_EQ(CheckDiskFree(dir_.c_str(), LLONG_MAX), 0);
}

TEST_F(DiskSpaceTest, CheckAndGetStoresFreeSpace) {
  long long before = Free();
  long long free = -1;
  EXPECT_EQ(CheckAndGetDiskFree(dir_.c_str(), 0, free), 1);
  long long after = Free();
  // Other processes may write meanwhile; the value lies between readings
  // taken around the call, give or take their changes.
  EXPECT_GT(free, 0);
  EXPECT_NEAR(static_cast<double>(free), static_cast<double>(before), 1e9);
  EXPECT_NEAR(static_cast<double>(free), static_cast<double>(after), 1e9);
  EXPECT_EQ(CheckAndGetDiskFree(dir_.c_str(), LLONG_MAX, free), 0);
}

TEST_F(DiskSpaceTest, CheckAndGetOnFailedStatfs) {
  long long free = 12345;
  EXPECT_EQ(CheckAndGetDiskFree("/no/such/dir/", LLONG_MAX, free), 1);
  EXPECT_EQ(free, 0);
}

TEST_F(DiskSpaceTest, DiskSize) {
  struct statfs fs;
  ASSERT_EQ(statfs(dir_.c_str(), &fs), 0);
  EXPECT_EQ(GetDiskSize(dir_.c_str()),
            static_cast<long long>(fs.f_blocks) * static_cast<long long>(fs.f_bsize));
  EXPECT_EQ(GetDiskSize("/no/such/dir/"), 0);
}

// On a file system of exactly 8 GiB, free space and file sizes above 4 GiB
// (more than 32 bits hold) are counted in full.  The file system is a
// tmpfs that only a child process sees; sparse files take none of its
// space.  The child ends with the number of the first check that fails.
TEST_F(DiskSpaceTest, SizesAndFreeSpaceAboveFourGibibytes) {
  constexpr long long kGiB = 1LL << 30;
  constexpr long long kMiB = 1LL << 20;
  const std::string fs = dir_ + "eight/";
  MakeDirs(fs);
  auto sparse = [&fs](const char* name, long long size) {
    const std::string path = fs + name;
    return zansong_test::MakeSparseFile(path, size) ? path : std::string("/no/such/file");
  };
  const std::vector<std::pair<const char*, std::function<bool()>>> checks = {
      {"size of the file system", [&] { return GetDiskSize(fs.c_str()) == 8 * kGiB; }},
      {"free space stored",
       [&] {
         long long free = 0;
         return CheckAndGetDiskFree(fs.c_str(), 0, free) == 1 && free == 8 * kGiB;
       }},
      {"free-space text",
       [&] { return std::string(GetDiskFreeString(fs.c_str()).c_str()) == "8.0 GB"; }},
      {"need just below and at the free space",
       [&] {
         return CheckDiskFree(fs.c_str(), 8 * kGiB - 1) == 1 &&
                CheckDiskFree(fs.c_str(), 8 * kGiB) == 0;
       }},
      {"one file of 5 GiB fits",
       [&] { return CheckDiskFree(fs.c_str(), sparse("a", 5 * kGiB + 1).c_str(), "") == 1; }},
      {"5 GiB and 3 GiB less 2 MiB fit with the margin",
       [&] {
         return CheckDiskFree(fs.c_str(), (fs + "a").c_str(),
                              sparse("b", 3 * kGiB - 2 * kMiB).c_str()) == 1;
       }},
      {"5 GiB and 3 GiB do not fit",
       [&] {
         return CheckDiskFree(fs.c_str(), (fs + "a").c_str(), sparse("c", 3 * kGiB).c_str()) == 0;
       }},
  };
  const int failed = zansong_test::RunInChild([&] {
    if (!zansong_test::MountTmpfsForThisProcess(fs, "8g")) return zansong_test::kChildSetupFailed;
    for (size_t i = 0; i < checks.size(); ++i) {
      if (!checks[i].second()) return static_cast<int>(i) + 1;
    }
    return 0;
  });
  if (failed == zansong_test::kChildSetupFailed) {
    GTEST_SKIP() << "no tmpfs can be mounted here (needs root or user namespaces)";
  }
  ASSERT_GE(failed, 0) << "the child did not end normally";
  const bool known = failed >= 1 && static_cast<size_t>(failed) <= checks.size();
  EXPECT_EQ(failed, 0) << "failed: "
                       << (known ? checks[static_cast<size_t>(failed) - 1].first : "(unknown)");
}

TEST_F(DiskSpaceTest, FreeStringOfMissingDirectory) {
  EXPECT_EQ(std::string(GetDiskFreeString("/no/such/dir/").c_str()), "0.0 KB");
}

TEST_F(DiskSpaceTest, FreeStringHasAUnit) {
  std::string text = GetDiskFreeString(dir_.c_str()).c_str();
  std::string unit = Free() >= 1073741824 ? " GB" : Free() >= 1048576 ? " MB" : " KB";
  ASSERT_GE(text.size(), 3u);
  EXPECT_EQ(text.substr(text.size() - 3), unit);
}

}  // namespace
