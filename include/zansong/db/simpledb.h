// SimpleDB: a minimal connection for one counting query with a row
// callback; no busy timeout, no creation or upgrade.
//
// open(dir, name) opens dir + name, or dir + ".zansong.db" when name is
// null (dir must then end in "/"); SQLite creates a missing file.  A path
// longer than 255 bytes, or a null dir, is refused.  Returns 0 when the
// connection is open, -1 otherwise.
// read(sql, onRow) compiles sql and steps it, calling onRow for each row;
// a non-zero return from onRow stops the loop.  Returns the last SQLite
// code: 101 (SQLITE_DONE) when all rows were read, 100 (SQLITE_ROW) when the
// callback stopped, an error code when compiling or stepping failed, and 1
// when the connection is not open.  The statement is always finalized.
// close() closes the connection; the destructor does too.
#ifndef ZANSONG_DB_SIMPLEDB_H_
#define ZANSONG_DB_SIMPLEDB_H_

#include <functional>

#include "zansong/export.h"

struct sqlite3;
struct sqlite3_stmt;

class ZANSONG_EXPORT SimpleDB {
 public:
  SimpleDB() = default;
  ~SimpleDB();
  SimpleDB(const SimpleDB&) = delete;
  SimpleDB& operator=(const SimpleDB&) = delete;

  int open(char const* dir, char const* name);
  int read(char const* sql, std::function<int(sqlite3_stmt*)> onRow);
  void close();

 private:
  sqlite3* db_ = nullptr;  // owned; null when closed
};

#endif  // ZANSONG_DB_SIMPLEDB_H_
