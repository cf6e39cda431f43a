// Private: groups the catalogue writes of one registration into short
// transactions.
//
// Committing every statement on its own costs one synchronous journal write
// per row.  A WriteBatch opens a transaction (BEGIN IMMEDIATE) before the
// first write and commits it once it has held the write lock for
// kHoldBudgetMs; then it leaves the lock free for kPauseMs, so that another
// process waiting on its 1000 ms busy timeout (the web page, a child
// process) gets in between two transactions.  Reads inside the transaction
// see its own writes, so ids, display orders and printed lines are those
// of per-statement commits.
//
// Commit() ends the open transaction (callers commit before every stop, so
// that the rows written before it stay); the destructor commits as well.
// BEGIN and COMMIT print nothing: when BEGIN cannot get the lock, the next
// write runs on its own and reports its failure as it always did.  A
// COMMIT that finds the catalogue busy is retried; when SQLite has already
// rolled the transaction back after a failed write, there is nothing left
// to commit.
#ifndef ZANSONG_SRC_FILEMAN_REGISTER_BATCH_H_
#define ZANSONG_SRC_FILEMAN_REGISTER_BATCH_H_

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
  // After a write: commits and pauses once the budget is spent.
  void AfterWrite();
  // Commits the open transaction, if any; no pause.
  void Commit();
  // Time since the transaction began, 0 when none is open.
  int HeldMs() const;

 private:
  bool InTransaction() const;

  TDBMan& man_;
  std::chrono::steady_clock::time_point began_;
};

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_REGISTER_BATCH_H_
