#include "db/song_rows.h"

#include <sqlite3.h>

#include <algorithm>
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
  entries_.clear();
  lines_.clear();
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
    const std::string_view midi = ColumnView(row, 3);
    const std::string_view audio = ColumnView(row, 4);
    r.entryAt = entries_.size();
    entries_.append(midi).append(1, '\t').append(audio).append(1, '\t');
    entries_ += std::to_string(r.id);
    r.entrySize = entries_.size() - r.entryAt;
    r.lineAt = lines_.size();
    if (withLines && r.inPrefix) {
      lines_.append(midi).append(1, '\t').append(audio).append(1, '\t');
      AppendSongPathTail(ColumnView(row, 5), withMtime ? ColumnView(row, 6) : std::string_view(),
                         lines_);
    }
    r.lineSize = lines_.size() - r.lineAt;
    rows_.push_back(r);
  });
  if (!done || dataVersion_ < 0) {
    rows_.clear();
    entries_.clear();
    lines_.clear();
  }
  return done && dataVersion_ >= 0;
}

std::vector<std::string_view> SongRows::PathList() const {
  std::vector<std::string_view> lines;
  auto line = [this](const Row& r) {
    return std::string_view(lines_).substr(r.lineAt, r.lineSize);
  };
  std::vector<const Row*> ordered = InPositionOrder();
  if (!ordered.empty()) {
    lines.reserve(ordered.size());
    for (const Row* r : ordered) lines.push_back(line(*r));
  } else {
    for (const Row& r : rows_) {
      if (r.inPrefix) lines.push_back(line(r));
    }
  }
  if (!std::is_sorted(lines.begin(), lines.end())) std::sort(lines.begin(), lines.end());
  return lines;
}

std::vector<const SongRows::Row*> SongRows::InPositionOrder() const {
  size_t count = 0;
  for (const Row& r : rows_) count += r.inPrefix ? 1 : 0;
  std::vector<const Row*> ordered(count, nullptr);
  for (const Row& r : rows_) {
    if (!r.inPrefix) continue;
    // Positions 1 to count, each held once.
    if (r.order < 1 || static_cast<size_t>(r.order) > count || ordered[r.order - 1] != nullptr) {
      return std::vector<const Row*>();
    }
    ordered[static_cast<size_t>(r.order) - 1] = &r;
  }
  return ordered;
}

bool SongRows::Current(TDBSongMan& man) const {
  sqlite3* db = man.db;
  return db != nullptr && dataVersion_ >= 0 && sqlite3_total_changes(db) == changes_ &&
         DataVersion(db) == dataVersion_;
}

}  // namespace zansong
