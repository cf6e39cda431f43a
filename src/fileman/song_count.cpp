// Song counts and capacity limits, read with a light SimpleDB connection.
#include "zansong/fileman/song_count.h"

#include <sqlite3.h>

#include "zansong/db/simpledb.h"
#include "zansong/limits.h"

namespace {

constexpr int kStatementSize = 1024;

// A row callback that stores column 0 of the first non-NULL row in *value
// and stops the loop.
std::function<int(sqlite3_stmt*)> StoreValue(int* value) {
  return [value](sqlite3_stmt* row) {
    if (sqlite3_column_text(row, 0) == nullptr) return 0;
    *value = sqlite3_column_int(row, 0);
    return 1;
  };
}

// The same, storing whether the value is greater than limit - 1, that is,
// whether a count has reached limit.
std::function<int(sqlite3_stmt*)> StoreReached(int* full, int limit) {
  return [full, limit](sqlite3_stmt* row) {
    if (sqlite3_column_text(row, 0) == nullptr) return 0;
    *full = sqlite3_column_int(row, 0) > limit - 1 ? 1 : 0;
    return 1;
  };
}

}  // namespace

extern "C" int FM_GetSongCount(char const* dir, char const* pfix, char const* albumId) {
  int count = -1;
  SimpleDB db;
  if (dir == nullptr || db.open(dir, nullptr) != 0) return -1;
  char sql[kStatementSize];
  if (pfix != nullptr && albumId != nullptr) {
    sqlite3_snprintf(kStatementSize, sql,
                     "select count(*) from song where pfix='%q' and album_id='%q';", pfix, albumId);
  } else if (pfix != nullptr) {
    sqlite3_snprintf(kStatementSize, sql, "select count(*) from song where pfix='%q';", pfix);
  } else if (albumId != nullptr) {
    sqlite3_snprintf(kStatementSize, sql, "select count(*) from song where album_id='%q';",
                     albumId);
  } else {
    sqlite3_snprintf(kStatementSize, sql, "select count(*) from song;");
  }
  db.read(sql, StoreValue(&count));
  db.close();
  return count;
}

extern "C" int FM_IsRecSongFull(char const* dir) {
  int albumId = -1;
  int full = 0;
  SimpleDB db;
  if (dir == nullptr || db.open(dir, nullptr) != 0) return 0;
  db.read("select album_id from album where album_path='Recorded Songs/Temporary Folder';",
          StoreValue(&albumId));
  if (albumId < 0) {
    db.close();
    return 0;
  }
  char sql[kStatementSize];
  sqlite3_snprintf(kStatementSize, sql, "select count(*) from song where album_id='%d';", albumId);
  db.read(sql, StoreReached(&full, kRecordedSongLimit));
  db.close();
  return full;
}

extern "C" int FM_IsPfixSongFull(char const* dir, char const* pfix) {
  int full = 0;
  SimpleDB db;
  if (dir == nullptr || pfix == nullptr || db.open(dir, nullptr) != 0) return 0;
  char sql[kStatementSize];
  sqlite3_snprintf(kStatementSize, sql, "select count(*) from song where pfix='%q';", pfix);
  db.read(sql, StoreReached(&full, kPrefixSongLimit));
  db.close();
  return full;
}
