#include "db/song_rows.h"

#include <sqlite3.h>

#include <cstring>
#include <string>
#include <utility>

#include "db/song_path_entry.h"
#include "db/sql.h"
#include "zansong/db/dbsongman.h"

namespace zansong {

namespace {

// PRAGMA data_version of the connection, or -1.
long long DataVersion(sqlite3* db) {
  long long version = -1;
  ForEachRow(db, "PRAGMA data_version",
             [&version](sqlite3_stmt* row) { version = sqlite3_column_int64(row, 0); });
  return version;
}

}  // namespace

bool SongRows::Read(TDBSongMan& man, const char* pfix, bool withLines) {
  rows_.clear();
  prefix_ = TextOrEmpty(pfix);
  sqlite3* db = man.db;
  SqlText sql = FormatSql(withLines ? "SELECT song_id,disp_order,pfix = '%q',midi_path,audio_path,"
                                      "format,mtime FROM song"
                                    : "SELECT song_id,disp_order,pfix = '%q',midi_path,audio_path "
                                      "FROM song",
                          prefix_.c_str());
  dataVersion_ = DataVersion(db);
  changes_ = db != nullptr ? sqlite3_total_changes(db) : -1;
  const bool withMtime = SongPathListHasTime(prefix_.c_str());
  bool done = ForEachRow(db, sql.get(), [this, withLines, withMtime](sqlite3_stmt* row) {
    Row r;
    r.id = sqlite3_column_int(row, 0);
    // Only an integer is the value an update would write.
    r.order =
        sqlite3_column_type(row, 1) == SQLITE_INTEGER ? sqlite3_column_int(row, 1) : kUnknownOrder;
    r.inPrefix = sqlite3_column_type(row, 2) != SQLITE_NULL && sqlite3_column_int(row, 2) != 0;
    const std::string id = std::to_string(r.id);
    r.entry.reserve(static_cast<size_t>(sqlite3_column_bytes(row, 3)) +
                    static_cast<size_t>(sqlite3_column_bytes(row, 4)) + 2 + id.size());
    r.entry += ColumnView(row, 3);
    r.entry += '\t';
    r.entry += ColumnView(row, 4);
    r.entry += '\t';
    r.pathsLength = r.entry.size();
    r.entry += id;
    if (withLines && r.inPrefix) {
      AppendSongPathTail(ColumnView(row, 5), withMtime ? ColumnView(row, 6) : std::string_view(),
                         r.tail);
    }
    rows_.push_back(std::move(r));
  });
  if (!done || dataVersion_ < 0) rows_.clear();
  return done && dataVersion_ >= 0;
}

void SongRows::AppendPathList(std::list<std::string>& entries) const {
  for (const Row& r : rows_) {
    if (!r.inPrefix) continue;
    std::string entry;
    entry.reserve(r.pathsLength + r.tail.size());
    entry.append(r.entry, 0, r.pathsLength).append(r.tail);
    entries.push_back(std::move(entry));
  }
}

bool SongRows::Current(TDBSongMan& man) const {
  sqlite3* db = man.db;
  return db != nullptr && dataVersion_ >= 0 && sqlite3_total_changes(db) == changes_ &&
         DataVersion(db) == dataVersion_;
}

}  // namespace zansong
