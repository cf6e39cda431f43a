// Running a benchmark case with the library's writes grouped or with one
// commit per statement, and refusing to measure a tmpfs.
//
// Included by exactly one source file of a benchmark program: it defines
// the program's own sqlite3_exec, put in front of SQLite's, which refuses
// "BEGIN IMMEDIATE" while a per-row case is timed.  The library then runs
// each write on its own, which is its path when the lock cannot be had.
// CommitMode counts the refused BEGINs over a case (begins_refused); a
// per-row case in which none was refused did not defeat the grouping and
// reports an error.
#ifndef ZANSONG_BENCH_COMMIT_MODE_H_
#define ZANSONG_BENCH_COMMIT_MODE_H_

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <linux/magic.h>
#include <sqlite3.h>
#include <sys/vfs.h>

#include <cstring>
#include <string>

namespace bench_commits {

// Set while a case runs with one commit per statement.
inline bool g_refuseBegin = false;
inline long g_refusedBegins = 0;

}  // namespace bench_commits

extern "C" int sqlite3_exec(sqlite3* db, const char* sql,
                            int (*callback)(void*, int, char**, char**), void* arg, char** error) {
  using Exec = int (*)(sqlite3*, const char*, int (*)(void*, int, char**, char**), void*, char**);
  static const Exec real = reinterpret_cast<Exec>(dlsym(RTLD_NEXT, "sqlite3_exec"));
  if (bench_commits::g_refuseBegin && sql != nullptr && std::strcmp(sql, "BEGIN IMMEDIATE") == 0) {
    ++bench_commits::g_refusedBegins;
    return SQLITE_BUSY;
  }
  return real(db, sql, callback, arg, error);
}

namespace bench_commits {

// Grouped (0) or one commit per statement (1), for the timed part only.
enum Commits { kGrouped = 0, kPerRow = 1 };

// Switches to the commit mode of the case for its lifetime and reports the
// refused BEGINs.
class CommitMode {
 public:
  CommitMode(benchmark::State& state, Commits commits) : state_(state), commits_(commits) {
    g_refusedBegins = 0;
  }
  void Timed(bool on) { g_refuseBegin = on && commits_ == kPerRow; }
  ~CommitMode() {
    g_refuseBegin = false;
    state_.counters["begins_refused"] = static_cast<double>(g_refusedBegins);
    if (commits_ == kPerRow && g_refusedBegins == 0) {
      state_.SkipWithError("no BEGIN was refused: the grouping was not defeated");
    }
  }
  CommitMode(const CommitMode&) = delete;
  CommitMode& operator=(const CommitMode&) = delete;

 private:
  benchmark::State& state_;
  Commits commits_;
};

// False, with the case skipped, when dir lies on a tmpfs: its figures would
// be those of memory, not of a disk.
inline bool OnDisk(benchmark::State& state, const std::string& dir) {
  struct statfs fs;
  if (::statfs(dir.c_str(), &fs) != 0 || fs.f_type != TMPFS_MAGIC) return true;
  state.SkipWithError("the device image is on tmpfs: figures would not be those of a disk");
  return false;
}

}  // namespace bench_commits

#endif  // ZANSONG_BENCH_COMMIT_MODE_H_
