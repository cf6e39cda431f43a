// WriteBatch: short transactions around a run of catalogue writes.
#include "db/write_batch.h"

#include <sqlite3.h>

#include <thread>

#include "db/sql.h"

namespace zansong {

namespace {

constexpr int kCommitTries = 5;

}  // namespace

bool WriteBatch::InTransaction() const {
  sqlite3* db = man_.db;
  return db != nullptr && sqlite3_get_autocommit(db) == 0;
}

void WriteBatch::BeforeWrite() {
  sqlite3* db = man_.db;
  if (db == nullptr || InTransaction()) return;
  // A failure leaves the connection in autocommit mode: the write that
  // follows then runs, and fails, exactly as it would on its own.
  if (sqlite3_exec(db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) == SQLITE_OK) {
    began_ = std::chrono::steady_clock::now();
  }
}

bool WriteBatch::AfterWrite() {
  if (!InTransaction() || HeldMs() < kHoldBudgetMs) return true;
  const bool committed = Commit();
  std::this_thread::sleep_for(std::chrono::milliseconds(kPauseMs));
  return committed;
}

bool WriteBatch::Commit() {
  sqlite3* db = man_.db;
  if (!InTransaction()) return true;
  int rc = SQLITE_BUSY;
  // Each try waits up to the busy timeout for readers to let go; any other
  // failure is final.
  for (int i = 0; i < kCommitTries && rc == SQLITE_BUSY && InTransaction(); ++i) {
    rc = sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr) & 0xff;
  }
  if (rc == SQLITE_OK && !InTransaction()) return true;
  PrintDbError(sqlite3_errmsg(db));
  if (InTransaction()) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  failed_ = true;
  return false;
}

int WriteBatch::HeldMs() const {
  if (!InTransaction()) return 0;
  return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(
                              std::chrono::steady_clock::now() - began_)
                              .count());
}

}  // namespace zansong
