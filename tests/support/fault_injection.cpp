// The counting VFS of the catalogue and the counting write(), fsync() and
// rename() of file copies.
#include "support/fault_injection.h"

#include <dlfcn.h>
#include <sqlite3.h>
#include <unistd.h>

#include <csignal>

#include <strings.h>
#include <cerrno>
#include <cstdio>

namespace zansong_test {

namespace {

struct Counter {
  bool armed = false;
  int failAt = 0;
  int calls = 0;
  bool fired = false;
  bool kill = false;
  int killAfterStatement = 0;  // kKillAfterStatement: the statement number
  int statements = 0;
};

Counter g_catalogue;
Counter g_files;

Counter& CounterOf(FaultTarget target) {
  return target == FaultTarget::kCatalogue ? g_catalogue : g_files;
}

// Counts one call; true when it must fail.
bool NextCallFails(Counter& c) {
  if (!c.armed) return false;
  ++c.calls;
  if (c.failAt <= 0 || c.calls < c.failAt) return false;
  if (c.kill) ::kill(::getpid(), SIGKILL);
  c.fired = true;
  return true;
}

// Counts a statement that changes rows; after the chosen one, the next
// catalogue call kills the process.
int OnStatement(unsigned, void*, void*, void* sql) {
  Counter& c = g_catalogue;
  if (!c.armed) return 0;
  const char* text = static_cast<const char*>(sql);
  if (strncasecmp(text, "INSERT", 6) != 0 && strncasecmp(text, "UPDATE", 6) != 0 &&
      strncasecmp(text, "DELETE", 6) != 0) {
    return 0;
  }
  ++c.statements;
  if (c.killAfterStatement > 0 && c.statements == c.killAfterStatement) {
    c.failAt = c.calls + 1;
    c.kill = true;
  }
  return 0;
}

int TraceStatements(sqlite3* db, const char**, const sqlite3_api_routines*) {
  sqlite3_trace_v2(db, SQLITE_TRACE_STMT, OnStatement, nullptr);
  return SQLITE_OK;
}

// ---- The catalogue VFS ----

sqlite3_vfs* g_real = nullptr;
sqlite3_vfs g_shim;

struct ShimFile {
  sqlite3_file base;
  sqlite3_file* real;
};

sqlite3_file* Real(sqlite3_file* file) { return reinterpret_cast<ShimFile*>(file)->real; }

int ShimClose(sqlite3_file* f) { return Real(f)->pMethods->xClose(Real(f)); }
int ShimRead(sqlite3_file* f, void* buf, int n, sqlite3_int64 off) {
  return Real(f)->pMethods->xRead(Real(f), buf, n, off);
}
int ShimWrite(sqlite3_file* f, const void* buf, int n, sqlite3_int64 off) {
  if (NextCallFails(g_catalogue)) return SQLITE_FULL;
  return Real(f)->pMethods->xWrite(Real(f), buf, n, off);
}
int ShimTruncate(sqlite3_file* f, sqlite3_int64 size) {
  if (NextCallFails(g_catalogue)) return SQLITE_IOERR_TRUNCATE;
  return Real(f)->pMethods->xTruncate(Real(f), size);
}
int ShimSync(sqlite3_file* f, int flags) {
  if (NextCallFails(g_catalogue)) return SQLITE_IOERR_FSYNC;
  return Real(f)->pMethods->xSync(Real(f), flags);
}
int ShimFileSize(sqlite3_file* f, sqlite3_int64* size) {
  return Real(f)->pMethods->xFileSize(Real(f), size);
}
int ShimLock(sqlite3_file* f, int level) { return Real(f)->pMethods->xLock(Real(f), level); }
int ShimUnlock(sqlite3_file* f, int level) { return Real(f)->pMethods->xUnlock(Real(f), level); }
int ShimCheckReservedLock(sqlite3_file* f, int* out) {
  return Real(f)->pMethods->xCheckReservedLock(Real(f), out);
}
int ShimFileControl(sqlite3_file* f, int op, void* arg) {
  return Real(f)->pMethods->xFileControl(Real(f), op, arg);
}
int ShimSectorSize(sqlite3_file* f) { return Real(f)->pMethods->xSectorSize(Real(f)); }
int ShimDeviceCharacteristics(sqlite3_file* f) {
  return Real(f)->pMethods->xDeviceCharacteristics(Real(f));
}
int ShimShmMap(sqlite3_file* f, int page, int size, int extend, void volatile** out) {
  return Real(f)->pMethods->xShmMap(Real(f), page, size, extend, out);
}
int ShimShmLock(sqlite3_file* f, int offset, int n, int flags) {
  return Real(f)->pMethods->xShmLock(Real(f), offset, n, flags);
}
void ShimShmBarrier(sqlite3_file* f) { Real(f)->pMethods->xShmBarrier(Real(f)); }
int ShimShmUnmap(sqlite3_file* f, int deleteFlag) {
  return Real(f)->pMethods->xShmUnmap(Real(f), deleteFlag);
}
int ShimFetch(sqlite3_file* f, sqlite3_int64 off, int n, void** out) {
  return Real(f)->pMethods->xFetch(Real(f), off, n, out);
}
int ShimUnfetch(sqlite3_file* f, sqlite3_int64 off, void* p) {
  return Real(f)->pMethods->xUnfetch(Real(f), off, p);
}

const sqlite3_io_methods kShimMethods = {3,
                                         ShimClose,
                                         ShimRead,
                                         ShimWrite,
                                         ShimTruncate,
                                         ShimSync,
                                         ShimFileSize,
                                         ShimLock,
                                         ShimUnlock,
                                         ShimCheckReservedLock,
                                         ShimFileControl,
                                         ShimSectorSize,
                                         ShimDeviceCharacteristics,
                                         ShimShmMap,
                                         ShimShmLock,
                                         ShimShmBarrier,
                                         ShimShmUnmap,
                                         ShimFetch,
                                         ShimUnfetch};

int ShimOpen(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  ShimFile* shim = reinterpret_cast<ShimFile*>(file);
  shim->real = reinterpret_cast<sqlite3_file*>(shim + 1);
  int rc = g_real->xOpen(g_real, name, shim->real, flags, outFlags);
  file->pMethods = shim->real->pMethods != nullptr ? &kShimMethods : nullptr;
  return rc;
}
int ShimDelete(sqlite3_vfs*, const char* name, int syncDir) {
  return g_real->xDelete(g_real, name, syncDir);
}
int ShimAccess(sqlite3_vfs*, const char* name, int flags, int* out) {
  return g_real->xAccess(g_real, name, flags, out);
}
int ShimFullPathname(sqlite3_vfs*, const char* name, int n, char* out) {
  return g_real->xFullPathname(g_real, name, n, out);
}
void* ShimDlOpen(sqlite3_vfs*, const char* name) { return g_real->xDlOpen(g_real, name); }
void ShimDlError(sqlite3_vfs*, int n, char* out) { g_real->xDlError(g_real, n, out); }
void (*ShimDlSym(sqlite3_vfs*, void* handle, const char* name))(void) {
  return g_real->xDlSym(g_real, handle, name);
}
void ShimDlClose(sqlite3_vfs*, void* handle) { g_real->xDlClose(g_real, handle); }
int ShimRandomness(sqlite3_vfs*, int n, char* out) { return g_real->xRandomness(g_real, n, out); }
int ShimSleep(sqlite3_vfs*, int us) { return g_real->xSleep(g_real, us); }
int ShimCurrentTime(sqlite3_vfs*, double* out) { return g_real->xCurrentTime(g_real, out); }
int ShimGetLastError(sqlite3_vfs*, int n, char* out) {
  return g_real->xGetLastError(g_real, n, out);
}
int ShimCurrentTimeInt64(sqlite3_vfs*, sqlite3_int64* out) {
  return g_real->xCurrentTimeInt64(g_real, out);
}

// The C library's function of that name, the next one after ours.
template <typename F>
F Next(const char* name) {
  return reinterpret_cast<F>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void InstallCatalogueShim() {
  if (g_real != nullptr) return;
  g_real = sqlite3_vfs_find(nullptr);
  g_shim = sqlite3_vfs{};
  g_shim.iVersion = 2;
  g_shim.szOsFile = static_cast<int>(sizeof(ShimFile)) + g_real->szOsFile;
  g_shim.mxPathname = g_real->mxPathname;
  g_shim.zName = "zansong-test-faults";
  g_shim.xOpen = ShimOpen;
  g_shim.xDelete = ShimDelete;
  g_shim.xAccess = ShimAccess;
  g_shim.xFullPathname = ShimFullPathname;
  g_shim.xDlOpen = ShimDlOpen;
  g_shim.xDlError = ShimDlError;
  g_shim.xDlSym = ShimDlSym;
  g_shim.xDlClose = ShimDlClose;
  g_shim.xRandomness = ShimRandomness;
  g_shim.xSleep = ShimSleep;
  g_shim.xCurrentTime = ShimCurrentTime;
  g_shim.xGetLastError = ShimGetLastError;
  g_shim.xCurrentTimeInt64 = ShimCurrentTimeInt64;
  sqlite3_vfs_register(&g_shim, 1);
  sqlite3_auto_extension(reinterpret_cast<void (*)(void)>(TraceStatements));
}

FaultArm::FaultArm(FaultTarget target, int failAt, FaultAction action) : target_(target) {
  Counter& c = CounterOf(target);
  c = Counter{};
  if (action == FaultAction::kKillAfterStatement) {
    c.killAfterStatement = failAt;
  } else {
    c.failAt = failAt;
    c.kill = action == FaultAction::kKill;
  }
  c.armed = true;
}

FaultArm::~FaultArm() {
  g_catalogue.armed = false;
  g_files.armed = false;
}

int FaultArm::calls() const { return CounterOf(target_).calls; }

bool FaultArm::fired() const { return CounterOf(target_).fired; }

int FaultArm::statements() const { return CounterOf(target_).statements; }

}  // namespace zansong_test

// The library's file calls, counted while armed and otherwise passed on.
extern "C" ssize_t write(int fd, const void* buf, size_t n) {
  static auto real = zansong_test::Next<ssize_t (*)(int, const void*, size_t)>("write");
  if (zansong_test::NextCallFails(zansong_test::g_files)) {
    errno = ENOSPC;
    return -1;
  }
  return real(fd, buf, n);
}

extern "C" ssize_t copy_file_range(int in, off64_t* inOffset, int out, off64_t* outOffset, size_t n,
                                   unsigned int flags) {
  static auto real =
      zansong_test::Next<ssize_t (*)(int, off64_t*, int, off64_t*, size_t, unsigned int)>(
          "copy_file_range");
  if (zansong_test::NextCallFails(zansong_test::g_files)) {
    errno = ENOSPC;
    return -1;
  }
  return real(in, inOffset, out, outOffset, n, flags);
}

extern "C" int fsync(int fd) {
  static auto real = zansong_test::Next<int (*)(int)>("fsync");
  if (zansong_test::NextCallFails(zansong_test::g_files)) {
    errno = EIO;
    return -1;
  }
  return real(fd);
}

extern "C" int rename(const char* from, const char* to) noexcept {
  static auto real = zansong_test::Next<int (*)(const char*, const char*)>("rename");
  if (zansong_test::NextCallFails(zansong_test::g_files)) {
    errno = EIO;
    return -1;
  }
  return real(from, to);
}
