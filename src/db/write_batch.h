// WriteBatch: groups a run of catalogue writes into short transactions.
//
// On its own every catalogue statement is its own transaction and costs one
// synchronous journal write.  A caller that writes many rows in a run wraps
// each write in BeforeWrite() / AfterWrite():
//
//   BeforeWrite()  opens a transaction (BEGIN IMMEDIATE) when none is open;
//   AfterWrite()   commits it once it has held the write lock for
//                  kHoldBudgetMs, then leaves the lock free for kPauseMs so
//                  that another connection waiting on its 1000 ms busy
//                  timeout (the web page, a child process) gets in.
//
// Reads on the same connection see the transaction's own writes, so ids,
// display orders, printed lines and results are those of statements that
// commit on their own.  Commit() ends the open transaction without a pause;
// a caller commits before it stops, so that the rows written before the
// stop stay.  The destructor commits too.
//
// Nothing is printed by BEGIN.  When BEGIN cannot get the lock, the
// connection stays in autocommit mode and the next write runs, and fails
// or succeeds, exactly as it would on its own.  A COMMIT that finds the
// catalogue busy is retried a few times (each try waits the busy timeout).
// A COMMIT that still fails (busy, disk full, I/O error, read-only) is
// rolled back, prints "DB: error %s\n" with SQLite's message, and makes
// Commit() (and AfterWrite(), when it committed) return false: the writes
// of that transaction are lost, those of earlier commits stay.  failed()
// stays true from then on, so that the operation can still report it when
// the commit happened in the destructor of an owner.  After a failed write
// that made SQLite roll the transaction back there is nothing left to
// commit; the caller learns of that failure from the write itself.
//
// BatchedWrite(batch, write) runs write(), one statement that returns
// non-zero on success, inside batch (on its own when batch is null), and
// returns true when the statement succeeded and no commit made after it
// failed: the one check of a write in a run.
//
// A WriteBatch refers to the manager's connection and must not outlive it.
// Single-threaded, as the manager is.
#ifndef ZANSONG_SRC_DB_WRITE_BATCH_H_
#define ZANSONG_SRC_DB_WRITE_BATCH_H_

#include <chrono>

#include "zansong/db/dbman.h"

namespace zansong {

class WriteBatch {
 public:
  static constexpr int kHoldBudgetMs = 100;
  static constexpr int kPauseMs = 40;

  explicit WriteBatch(TDBMan& man) : man_(man) {}
  ~WriteBatch() { Commit(); }
  WriteBatch(const WriteBatch&) = delete;
  WriteBatch& operator=(const WriteBatch&) = delete;

  // Before a write: opens a transaction when none is open.
  void BeforeWrite();
  // After a write: commits and pauses once the budget is spent.  False
  // when that commit failed.
  bool AfterWrite();
  // Commits the open transaction, if any; no pause.  False when it failed.
  bool Commit();
  // True once a commit of this batch has failed.
  bool failed() const { return failed_; }
  // Milliseconds since the open transaction began; 0 when none is open.
  int HeldMs() const;

 private:
  bool InTransaction() const;

  TDBMan& man_;
  std::chrono::steady_clock::time_point began_;
  bool failed_ = false;
};

template <typename WriteFn>
bool BatchedWrite(WriteBatch* batch, WriteFn write) {
  if (batch != nullptr) batch->BeforeWrite();
  const bool wrote = write() != 0;
  return (batch == nullptr || batch->AfterWrite()) && wrote;
}

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_WRITE_BATCH_H_
