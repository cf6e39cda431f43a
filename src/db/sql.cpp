#include "db/sql.h"

#include <cstdarg>
#include <cstdio>

namespace zansong {

void SqliteCloser::operator()(sqlite3* db) const { sqlite3_close_v2(db); }

void SqliteFinalizer::operator()(sqlite3_stmt* stmt) const { sqlite3_finalize(stmt); }

SqlText FormatSql(const char* format, ...) {
  va_list args;
  va_start(args, format);
  char* text = sqlite3_vmprintf(format, args);
  va_end(args);
  return SqlText(text);
}

int OpenConnection(const char* path, int timeoutMs, SqliteConnection& db) {
  db.reset();
  sqlite3* handle = nullptr;
  // A connection is used by one thread only (every operation opens its
  // own), so it goes without SQLite's per-call locking.
  int rc =
      sqlite3_open_v2(TextOrEmpty(path), &handle,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
  SqliteConnection opened(handle);  // closes a failed handle as well
  if (rc != SQLITE_OK) return rc;
  if (timeoutMs > 0) sqlite3_busy_timeout(handle, timeoutMs);
  db = std::move(opened);
  return SQLITE_OK;
}

bool ForEachRow(sqlite3* db, const char* sql, const std::function<void(sqlite3_stmt*)>& onRow) {
  if (db == nullptr || sql == nullptr) return false;
  sqlite3_stmt* raw = nullptr;
  int rc = sqlite3_prepare_v2(db, sql, -1, &raw, nullptr);
  SqliteStatement stmt(raw);
  if (rc != SQLITE_OK) return false;
  if (raw == nullptr) return true;  // only white space or comments
  while ((rc = sqlite3_step(raw)) == SQLITE_ROW) onRow(raw);
  return rc == SQLITE_DONE;
}

int ReadFirstInt(sqlite3* db, const char* sql, int fallback) {
  if (db == nullptr || sql == nullptr) return fallback;
  sqlite3_stmt* raw = nullptr;
  int rc = sqlite3_prepare_v2(db, sql, -1, &raw, nullptr);
  SqliteStatement stmt(raw);
  if (rc != SQLITE_OK || raw == nullptr) return fallback;
  return sqlite3_step(raw) == SQLITE_ROW ? sqlite3_column_int(raw, 0) : fallback;
}

std::string ColumnString(sqlite3_stmt* stmt, int col) { return std::string(ColumnView(stmt, col)); }

std::string_view ColumnView(sqlite3_stmt* stmt, int col) {
  const unsigned char* text = sqlite3_column_text(stmt, col);
  if (text == nullptr) return std::string_view();
  return std::string_view(reinterpret_cast<const char*>(text),
                          static_cast<size_t>(sqlite3_column_bytes(stmt, col)));
}

void PrintFunctionError(const char* name) {
  std::printf("Error! :%s", name);
  std::fflush(stdout);
}

void PrintDbError(const char* message) {
  std::printf("DB: error %s\n", TextOrEmpty(message));
  std::fflush(stdout);
}

void PrintLine(const char* text) {
  std::printf("%s", text);
  std::fflush(stdout);
}

}  // namespace zansong
