#include "support/fault_runs.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "support/stdout_capture.h"

namespace zansong_test {

namespace {

// One run in a copy of the prepared image; the number of calls counted.
int RunOnce(const FaultyOperation& op, const DeviceImage& prepared, int failAt) {
  SCOPED_TRACE("fault at call " + std::to_string(failAt));
  DeviceImage image(prepared, true);
  bool succeeded = false;
  bool fired = false;
  int calls = 0;
  {
    StdoutCapture quiet;  // the failure lines are the operation's own tests' business
    FaultArm arm(op.target, failAt);
    succeeded = op.run(image);
    fired = arm.fired();
    calls = arm.calls();
    quiet.Finish();
  }
  EXPECT_EQ(!fired, succeeded);
  for (const std::string& path : op.catalogues(image)) {
    if (PathExists(path)) {
      EXPECT_EQ("ok", IntegrityOf(path)) << path;
    }
  }
  if (op.check) op.check(image, failAt, succeeded);
  return calls;
}

}  // namespace

std::string IntegrityOf(const std::string& path) {
  sqlite3* db = nullptr;
  std::string result = "cannot open";
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &stmt, nullptr) == SQLITE_OK) {
      result = sqlite3_step(stmt) == SQLITE_ROW
                   ? reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0))
                   : sqlite3_errmsg(db);
    } else {
      result = sqlite3_errmsg(db);
    }
    sqlite3_finalize(stmt);
  }
  sqlite3_close(db);
  return result;
}

int RunUnderEveryFault(const FaultyOperation& op) {
  InstallCatalogueShim();
  DeviceImage prepared;
  op.setUp(prepared);
  if (::testing::Test::HasFatalFailure()) return 0;
  const int calls = RunOnce(op, prepared, 0);
  for (int n = 1; n <= calls && !::testing::Test::HasFatalFailure(); ++n) {
    RunOnce(op, prepared, n);
  }
  return calls;
}

}  // namespace zansong_test
