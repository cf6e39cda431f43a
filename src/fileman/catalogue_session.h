// CatalogueSession: the catalogue of one storage root, open for the length
// of one exported operation.  Every operation that works on a catalogue
// through TDBSongMan opens it with a session, so that InitDB, Open, the
// failure line, the grouped writes, the final commit and the close are
// written once:
//
//   int FM_Something(const char* root) {
//     zansong::CatalogueSession session(root);
//     if (!session.ok()) return kResultDbFail;
//     TDBSongMan& man = session.man();
//     if (!man.SetTextByID(...)) return kResultCannotExecute;  // closes
//     return kResultOk;                                        // closes
//   }
//
// The constructor runs InitDB(root) and, when that succeeded, Open().  ok()
// tells whether both did; failedStep() which one failed.  InitDB prints its
// own diagnostics ("DB: error ...", "DB broken!", ...); beyond them the
// session prints, with puts, the failure line its FailureLine asks for:
//   kNone          nothing (most operations, which return kResultDbFail);
//   kCreateOrOpen  "DB Create Error" when InitDB failed, "DB Open Error"
//                  when Open failed (registration);
//   kOpen          "DB Open Error" when either failed (recordings).
//
// batch() is a WriteBatch on the session's connection, made on first use:
// writes bracketed by its BeforeWrite()/AfterWrite() are grouped into short
// transactions.  Commit() commits what the batch holds.  Close() commits and
// closes the catalogue; an operation that must close early (such as inside
// a loop, before the work that follows) calls it, and calling it again does
// nothing more.  The destructor calls Close(), so every return, early or
// not, keeps the rows written before it.
//
// A commit can fail (disk full, I/O error, read-only storage): Commit() and
// Close() then return false, the batch has printed "DB: error %s\n", and
// writeFailed() stays true.  An operation that reports success therefore
// ends with Close() and returns its failure result when Close() is false,
// rather than leaving the last commit to the destructor:
//
//     return session.Finish(kResultOk, kResultDbFail);
//
// The writes of an operation go through Write() and Insert(), which run one
// statement inside the batch and tell whether it, and the commit the batch
// may make after it, succeeded; the operation stops at the first false and
// returns its failure code:
//
//   Write(write)    write() runs one statement and returns whether it
//                   succeeded (the manager's updates and deletes return 1
//                   or 0).  True when it did and no commit failed.
//   Insert(insert)  insert() adds one row and returns its key (the
//                   manager's inserts return the key even when the insert
//                   failed).  The key when the row was written and no
//                   commit failed, else 0.
//   Finish(result, failureCode)  Close(); result, or failureCode when a
//                   commit failed.
//
// A session is neither copied nor moved; it lives on the stack of the
// operation.
#ifndef ZANSONG_SRC_FILEMAN_CATALOGUE_SESSION_H_
#define ZANSONG_SRC_FILEMAN_CATALOGUE_SESSION_H_

#include <optional>

#include "db/write_batch.h"
#include "zansong/db/dbsongman.h"

namespace zansong {

class CatalogueSession {
 public:
  enum class FailureLine { kNone, kCreateOrOpen, kOpen };
  enum class Step { kNone, kInit, kOpen };

  explicit CatalogueSession(const char* root, FailureLine failureLine = FailureLine::kNone);
  ~CatalogueSession() { Close(); }
  CatalogueSession(const CatalogueSession&) = delete;
  CatalogueSession& operator=(const CatalogueSession&) = delete;

  bool ok() const { return failed_ == Step::kNone; }
  // The step that failed; kNone when the catalogue opened.
  Step failedStep() const { return failed_; }

  TDBSongMan& man() { return man_; }
  WriteBatch& batch();

  // Commits the batch's open transaction, if any.  False when a commit of
  // the batch has failed, now or before.
  bool Commit();
  // Commits, then closes the connection.  False as Commit().
  bool Close();
  // True once a commit of the batch has failed.
  bool writeFailed() const { return batch_ && batch_->failed(); }

  template <typename WriteFn>
  bool Write(WriteFn write) {
    return BatchedWrite(&batch(), write);
  }
  template <typename InsertFn>
  int Insert(InsertFn insert) {
    int key = 0;
    const bool wrote = Write([&] {
      const long long changesBefore = TotalChanges();
      key = insert();
      return TotalChanges() != changesBefore;
    });
    return wrote ? key : 0;
  }
  int Finish(int result, int failureCode) { return Close() ? result : failureCode; }

 private:
  // Rows changed by the connection's statements so far.
  long long TotalChanges() const;

  TDBSongMan man_;
  std::optional<WriteBatch> batch_;  // declared after man_: it refers to it
  Step failed_ = Step::kNone;
};

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_CATALOGUE_SESSION_H_
