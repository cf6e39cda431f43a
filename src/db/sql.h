// Private helpers of the catalogue code: statement texts made with
// sqlite3_mprintf, statements compiled and finalized inside one function,
// and the diagnostic lines.
#ifndef ZANSONG_SRC_DB_SQL_H_
#define ZANSONG_SRC_DB_SQL_H_

#include <sqlite3.h>

#include <functional>
#include <string>
#include <string_view>

#include "db/sqlite_owner.h"

namespace zansong {

// Owns a text made by sqlite3_mprintf and frees it with sqlite3_free.
class SqlText {
 public:
  explicit SqlText(char* text) : text_(text) {}
  ~SqlText() { sqlite3_free(text_); }
  SqlText(const SqlText&) = delete;
  SqlText& operator=(const SqlText&) = delete;

  // Null only when SQLite ran out of memory.
  char* get() const { return text_; }

 private:
  char* text_;
};

// sqlite3_mprintf: "%q" quotes text (doubling "'"), "%d" writes an int.
SqlText FormatSql(const char* format, ...);

// s, or "" when s is null, so that a missing text is written as ''.
inline const char* TextOrEmpty(const char* s) { return s == nullptr ? "" : s; }

// Opens path (created when missing) into db with a busy timeout of
// timeoutMs (none when 0).  The connection must be used by one thread at a
// time.  Returns SQLite's code; on failure db is null.
int OpenConnection(const char* path, int timeoutMs, SqliteConnection& db);

// Runs sql and calls onRow for each row.  True when the statement ran to
// its end; false when it failed to compile or a step failed.
bool ForEachRow(sqlite3* db, const char* sql, const std::function<void(sqlite3_stmt*)>& onRow);

// Column 0 of the first row as an int; fallback when there is no row or the
// statement fails.  An SQL NULL reads as 0.
int ReadFirstInt(sqlite3* db, const char* sql, int fallback);

// Column col of the current row as text; "" for an SQL NULL.
std::string ColumnString(sqlite3_stmt* stmt, int col);
// The same without a copy, valid until the statement steps on.
std::string_view ColumnView(sqlite3_stmt* stmt, int col);

// Prints "Error! :" + name (no line end) and flushes.
void PrintFunctionError(const char* name);
// Prints "DB: error %s\n" with message and flushes.
void PrintDbError(const char* message);
// Prints text as it is (no line end) and flushes.
void PrintLine(const char* text);

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_SQL_H_
