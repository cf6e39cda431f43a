// Owners of SQLite handles.
//
// SqliteConnection owns an open sqlite3 connection and closes it when it is
// reset or destroyed; SqliteStatement owns a compiled statement and
// finalizes it.  A connection outlives its statements as long as the
// statement owner is declared after the connection owner (members are
// destroyed in reverse order).  Closing uses sqlite3_close_v2, so a
// statement that is still alive never makes the close fail.
#ifndef ZANSONG_SRC_DB_SQLITE_OWNER_H_
#define ZANSONG_SRC_DB_SQLITE_OWNER_H_

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace zansong {

struct SqliteCloser {
  void operator()(sqlite3* db) const;
};
struct SqliteFinalizer {
  void operator()(sqlite3_stmt* stmt) const;
};

using SqliteConnection = std::unique_ptr<sqlite3, SqliteCloser>;
using SqliteStatement = std::unique_ptr<sqlite3_stmt, SqliteFinalizer>;

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_SQLITE_OWNER_H_
