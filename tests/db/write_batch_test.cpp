// Grouping catalogue writes into short transactions.
#include "db/write_batch.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <thread>

#include "support/catalogue_fixture.h"
#include "support/fault_injection.h"
#include "support/stdout_capture.h"

namespace zansong_test {
namespace {

using zansong::WriteBatch;

class WriteBatchTest : public CatalogueTest {
 protected:
  bool InTransaction() { return sqlite3_get_autocommit(man_.db) == 0; }
  // Albums as another connection sees them.
  int AlbumsSeenOutside() { return Int("SELECT COUNT(*) FROM album"); }
};

TEST_F(WriteBatchTest, WritesStayInOneTransactionUntilCommit) {
  WriteBatch batch(man_);
  EXPECT_EQ(0, batch.HeldMs());
  for (const char* path : {"A", "B", "C"}) {
    batch.BeforeWrite();
    AddAlbum(path);
    batch.AfterWrite();
  }
  EXPECT_TRUE(InTransaction());
  EXPECT_EQ(3, man_.GetAlbumIDByPath("C"));  // own writes are read back
  EXPECT_EQ(3, man_.GetMaxOrder(0, "s"));
  EXPECT_EQ(0, AlbumsSeenOutside());
  batch.Commit();
  EXPECT_FALSE(InTransaction());
  EXPECT_EQ(0, batch.HeldMs());
  EXPECT_EQ(3, AlbumsSeenOutside());
}

TEST_F(WriteBatchTest, ATransactionIsCommittedOnceItsBudgetIsSpent) {
  WriteBatch batch(man_);
  batch.BeforeWrite();
  AddAlbum("A");
  batch.AfterWrite();
  EXPECT_TRUE(InTransaction());
  std::this_thread::sleep_for(std::chrono::milliseconds(WriteBatch::kHoldBudgetMs + 20));
  EXPECT_GE(batch.HeldMs(), WriteBatch::kHoldBudgetMs);
  batch.BeforeWrite();
  AddAlbum("B");
  const auto before = std::chrono::steady_clock::now();
  batch.AfterWrite();
  // Committed, and the lock was left free for the pause.
  EXPECT_FALSE(InTransaction());
  EXPECT_GE(std::chrono::steady_clock::now() - before,
            std::chrono::milliseconds(WriteBatch::kPauseMs));
  EXPECT_EQ(2, AlbumsSeenOutside());
}

TEST_F(WriteBatchTest, TheDestructorCommits) {
  {
    WriteBatch batch(man_);
    batch.BeforeWrite();
    AddAlbum("A");
    batch.AfterWrite();
  }
  EXPECT_FALSE(InTransaction());
  EXPECT_EQ(1, AlbumsSeenOutside());
}

TEST_F(WriteBatchTest, CommitWithoutATransactionDoesNothing) {
  WriteBatch batch(man_);
  StdoutCapture out;
  batch.Commit();
  AddAlbum("A");  // runs on its own
  EXPECT_FALSE(InTransaction());
  EXPECT_EQ("", out.Finish());
  EXPECT_EQ(1, AlbumsSeenOutside());
}

TEST_F(WriteBatchTest, WhenTheLockIsTakenTheWriteRunsOnItsOwn) {
  LockHolder holder(image_, DbFile(), "BEGIN EXCLUSIVE;", 1500);
  ASSERT_TRUE(holder.WaitUntilHeld());
  WriteBatch batch(man_);
  StdoutCapture out;
  batch.BeforeWrite();  // gives up after the busy timeout
  EXPECT_FALSE(InTransaction());
  EXPECT_EQ(0, batch.HeldMs());
  // The write waits for the other process and commits on its own.
  EXPECT_EQ(1, AddAlbum("A"));
  batch.AfterWrite();
  EXPECT_FALSE(InTransaction());
  EXPECT_EQ("", out.Finish());
  EXPECT_EQ(0, holder.Join());
  EXPECT_EQ(1, AlbumsSeenOutside());
}

TEST_F(WriteBatchTest, AFailedCommitIsReportedAndItsWritesAreGone) {
  InstallCatalogueShim();
  ASSERT_EQ(1, man_.Open());  // again, through the counting VFS
  WriteBatch batch(man_);
  batch.BeforeWrite();
  AddAlbum("Before");
  ASSERT_TRUE(batch.Commit());
  batch.BeforeWrite();
  AddAlbum("Lost");
  StdoutCapture out;
  {
    FaultArm full(FaultTarget::kCatalogue, 1);  // the device is full from now on
    EXPECT_FALSE(batch.Commit());
    EXPECT_TRUE(full.fired());
  }
  EXPECT_EQ(0u, out.Finish().rfind("DB: error ", 0));
  EXPECT_TRUE(batch.failed());
  EXPECT_FALSE(InTransaction());
  man_.Close();
  EXPECT_EQ(1, AlbumsSeenOutside());  // the row committed before stays
}

TEST_F(WriteBatchTest, AFailedCommitAfterTheBudgetIsReportedByAfterWrite) {
  InstallCatalogueShim();
  ASSERT_EQ(1, man_.Open());
  WriteBatch batch(man_);
  batch.BeforeWrite();
  AddAlbum("A");
  std::this_thread::sleep_for(std::chrono::milliseconds(WriteBatch::kHoldBudgetMs + 20));
  StdoutCapture out;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_FALSE(batch.AfterWrite());
  EXPECT_TRUE(batch.failed());
  out.Finish();
}

}  // namespace
}  // namespace zansong_test
