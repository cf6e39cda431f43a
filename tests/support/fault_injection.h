// Making the N-th write of the library fail, to show that no fault loses
// data or passes for success.
//
// Two kinds of call are counted, each on its own:
//  - FaultTarget::kCatalogue: the writes, flushes and truncations SQLite
//    makes on any catalogue file or journal (xWrite, xSync, xTruncate),
//    through a VFS that wraps the system's default one.  InstallCatalogueShim()
//    registers it as the default VFS of the process (once; later calls do
//    nothing), so connections opened afterwards go through it.  A failed
//    xWrite returns SQLITE_FULL, a failed xSync SQLITE_IOERR_FSYNC, a failed
//    xTruncate SQLITE_IOERR_TRUNCATE.
//  - FaultTarget::kFiles: the library's own write(), copy_file_range(),
//    fsync() and rename() calls (file copies), which this test support
//    defines and forwards to the C library.  A failed write or
//    copy_file_range sets ENOSPC, fsync EIO, rename EIO.
//
// FaultArm arm(target, failAt) counts the target's calls from now on and
// makes call number failAt (from 1) fail, and every later one too, as a
// full or failing device does; failAt 0 only counts.  With the action
// FaultAction::kKill the process instead kills itself with SIGKILL at call
// failAt, before the call is made, as a power loss or a killed process
// would end it: the way to stop a child at a point of its work that is the
// same in every run.
//
// FaultAction::kKillAfterStatement counts, for FaultTarget::kCatalogue,
// the statements that change rows (INSERT, UPDATE, DELETE) run on any
// connection opened after InstallCatalogueShim(), and kills the process at
// the first catalogue call after statement number failAt: inside the
// commit or page write that follows it.  Statements are the same in every
// run, while the number of commits of a grouped write depends on time, so
// this is the way to spread kills over a long operation.  statements() is
// the number of such statements seen while armed.  Its destructor stops
// counting.  calls() is the number of calls seen while armed, fired()
// whether one was made to fail.  One arm at a time; single-threaded.  A
// forked child inherits the armed state.
#ifndef ZANSONG_TESTS_SUPPORT_FAULT_INJECTION_H_
#define ZANSONG_TESTS_SUPPORT_FAULT_INJECTION_H_

namespace zansong_test {

enum class FaultTarget { kCatalogue, kFiles };
enum class FaultAction { kFail, kKill, kKillAfterStatement };

void InstallCatalogueShim();

class FaultArm {
 public:
  FaultArm(FaultTarget target, int failAt, FaultAction action = FaultAction::kFail);
  ~FaultArm();
  FaultArm(const FaultArm&) = delete;
  FaultArm& operator=(const FaultArm&) = delete;

  int calls() const;
  bool fired() const;
  int statements() const;

 private:
  FaultTarget target_;
};

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_FAULT_INJECTION_H_
