// Renumbering by path that skips the rows already in place.
#include "fileman/register_order.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>
#include <vector>

#include "db/sql.h"

namespace zansong {

namespace {

struct OrderedRow {
  std::string key;  // path fields and id, tab-separated, as the list entries
  int id;
  int order;
};

// Reads the rows of sql (path columns..., id, disp_order) into rows.
bool ReadRows(TDBSongMan& man, const SqlText& sql, int pathColumns, std::vector<OrderedRow>& rows) {
  return ForEachRow(man.db.get(), sql.get(), [&](sqlite3_stmt* row) {
    std::string key;
    for (int c = 0; c < pathColumns; ++c) key += ColumnString(row, c) + "\t";
    int id = sqlite3_column_int(row, pathColumns);
    key += std::to_string(id);
    rows.push_back(OrderedRow{key, id, sqlite3_column_int(row, pathColumns + 1)});
  });
}

int Renumber(TDBSongMan& man, const char* table, std::vector<OrderedRow>& rows, WriteBatch& batch) {
  std::sort(rows.begin(), rows.end(),
            [](const OrderedRow& a, const OrderedRow& b) { return a.key < b.key; });
  int order = 1;
  for (const OrderedRow& row : rows) {
    if (row.order != order) {
      batch.BeforeWrite();
      int ok = man.SetOrder(table, row.id, order);
      batch.AfterWrite();
      if (!ok) return 0;
    }
    ++order;
  }
  return 1;
}

}  // namespace

int RenumberSongsByPath(TDBSongMan& man, const char* pfix, WriteBatch& batch) {
  SqlText sql =
      FormatSql("SELECT midi_path,audio_path,song_id,disp_order FROM song WHERE pfix = '%q'",
                TextOrEmpty(pfix));
  std::vector<OrderedRow> rows;
  int ok = 1;
  if (!ReadRows(man, sql, 2, rows)) {
    PrintFunctionError("GetSongPathList2");
    ok = 0;
  }
  if (ok) ok = Renumber(man, "song", rows, batch);
  if (!ok) PrintFunctionError("ReOrder");
  return ok;
}

int RenumberAlbumsByPath(TDBSongMan& man, const char* pfix, WriteBatch& batch) {
  SqlText sql = FormatSql("SELECT album_path,album_id,disp_order FROM album WHERE pfix = '%q'",
                          TextOrEmpty(pfix));
  std::vector<OrderedRow> rows;
  int ok = 1;
  if (!ReadRows(man, sql, 1, rows)) {
    PrintFunctionError("GetSongPathList2");
    ok = 0;
  }
  if (ok) ok = Renumber(man, "album", rows, batch);
  if (!ok) PrintFunctionError("ReOrder");
  return ok;
}

}  // namespace zansong
