// SimpleDB: one read-only counting query over a row callback.
#include "zansong/db/simpledb.h"

#include <sqlite3.h>

#include <cstdio>

#include "db/sql.h"

namespace {

constexpr int kMaxPathBytes = 255;

}  // namespace

SimpleDB::~SimpleDB() { close(); }

int SimpleDB::open(char const* dir, char const* name) {
  close();
  if (dir == nullptr) return -1;
  char path[kMaxPathBytes + 1];
  int n = name != nullptr ? std::snprintf(path, sizeof path, "%s%s", dir, name)
                          : std::snprintf(path, sizeof path, "%s.zansong.db", dir);
  if (n < 0 || n > kMaxPathBytes) return -1;  // a cut path would name another file
  zansong::SqliteConnection opened;
  int rc = zansong::OpenConnection(path, 0, opened);
  db_ = opened.release();
  return rc == SQLITE_OK ? 0 : -1;
}

int SimpleDB::read(char const* sql, std::function<int(sqlite3_stmt*)> onRow) {
  if (db_ == nullptr) return 1;
  sqlite3_stmt* raw = nullptr;
  int rc = sqlite3_prepare_v2(db_, zansong::TextOrEmpty(sql), -1, &raw, nullptr);
  zansong::SqliteStatement stmt(raw);
  if (rc != SQLITE_OK) return rc;
  if (raw == nullptr) return SQLITE_DONE;  // nothing but white space
  sqlite3_reset(raw);
  while ((rc = sqlite3_step(raw)) == SQLITE_ROW) {
    if (onRow && onRow(raw) != 0) break;
  }
  return rc;
}

void SimpleDB::close() {
  sqlite3_close_v2(db_);  // a null connection is a no-op
  db_ = nullptr;
}
