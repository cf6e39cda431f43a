// TDBSongMan: display-order maintenance of albums, songs of an album,
// playlists and playlist entries.
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

#include "db/batched_order.h"
#include "db/prefix.h"
#include "db/sql.h"
#include "zansong/db/dbsongman.h"

using zansong::FormatSql;
using zansong::IsPlaylistPrefix;
using zansong::PrintFunctionError;
using zansong::SqlText;
using zansong::TextOrEmpty;
using zansong::WriteBatch;

namespace {

// The table that holds the sequence chosen by id and prefix.
const char* SequenceTable(int id, const char* prefix) {
  if (IsPlaylistPrefix(prefix)) return id != 0 ? "psong" : "playlist";
  return id != 0 ? "song" : "album";
}

// Positions currently held, by key; kUnknownOrder for a key whose rows do
// not all hold the same integer.
using CurrentOrders = std::unordered_map<int, int>;
constexpr int kUnknownOrder = std::numeric_limits<int>::min();

// The disp_order of every row of table by key.  False (and orders
// incomplete) when the statement fails.
bool ReadCurrentOrders(TDBSongMan& man, const char* table, CurrentOrders& orders) {
  SqlText sql = FormatSql("SELECT %q_id,disp_order FROM %q", table, table);
  return zansong::ForEachRow(man.db, sql.get(), [&orders](sqlite3_stmt* row) {
    int key = sqlite3_column_int(row, 0);
    // Only an integer is the value an update would write.
    int order =
        sqlite3_column_type(row, 1) == SQLITE_INTEGER ? sqlite3_column_int(row, 1) : kUnknownOrder;
    auto found = orders.emplace(key, order);
    if (!found.second && found.first->second != order) found.first->second = kUnknownOrder;
  });
}

// Gives the rows whose keys are listed, in list order, the positions 1, 2,
// 3, ... in table; stops at the first failed update.  A key that current
// shows already at its position is not written.  Each write goes through
// batch when there is one.  1 or 0.
int Renumber(TDBSongMan& man, const char* table, const std::vector<int>& keys,
             const CurrentOrders* current, WriteBatch* batch) {
  int order = 0;
  for (int key : keys) {
    ++order;
    if (current != nullptr) {
      auto held = current->find(key);
      if (held != current->end() && held->second == order) continue;
    }
    if (batch != nullptr) batch->BeforeWrite();
    int ok = man.SetOrder(table, key, order);
    if (batch != nullptr) batch->AfterWrite();
    if (!ok) return 0;
  }
  return 1;
}

// The key after the last tab of a path-list entry.
int KeyOfEntry(const std::string& entry) {
  std::string::size_type tab = entry.rfind('\t');
  return std::atoi(entry.c_str() + (tab == std::string::npos ? 0 : tab + 1));
}

// Sorts path-list entries as byte strings and renumbers the rows of table
// by them, writing only the positions that change.  1 or 0.
int RenumberByPath(TDBSongMan& man, const char* table, std::list<std::string>& entries,
                   WriteBatch* batch) {
  std::vector<std::string> sorted(entries.begin(), entries.end());
  std::sort(sorted.begin(), sorted.end());  // char_traits<char> compares as unsigned bytes
  std::vector<int> keys;
  keys.reserve(sorted.size());
  for (const std::string& entry : sorted) keys.push_back(KeyOfEntry(entry));
  // When the positions cannot be read, every row is written.
  CurrentOrders current;
  bool known = ReadCurrentOrders(man, table, current);
  return Renumber(man, table, keys, known ? &current : nullptr, batch);
}

}  // namespace

int TDBSongMan::GetMaxOrder(int id, char const* prefix) {
  SqlText sql =
      IsPlaylistPrefix(prefix)
          ? (id != 0 ? FormatSql("SELECT MAX(disp_order) FROM psong WHERE playlist_id = %d", id)
                     : FormatSql("SELECT MAX(disp_order) FROM playlist"))
          : (id != 0 ? FormatSql("SELECT MAX(disp_order) FROM song WHERE album_id = %d", id)
                     : FormatSql("SELECT MAX(disp_order) FROM album WHERE pfix = '%q'",
                                 TextOrEmpty(prefix)));
  return zansong::ReadFirstInt(db, sql.get(), 0);
}

int TDBSongMan::SetOrder(char const* table, int id, int order) {
  const char* t = TextOrEmpty(table);
  SqlText sql = FormatSql("UPDATE %q SET disp_order = %d WHERE %q_id =%d", t, order, t, id);
  if (Query(sql.get())) return 1;
  PrintFunctionError("SetOrder");
  return 0;
}

int TDBSongMan::CheckOrder(int id, char const* prefix) {
  SqlText sql =
      IsPlaylistPrefix(prefix)
          ? (id != 0
                 ? FormatSql(
                       "SELECT disp_order FROM psong WHERE playlist_id = %d order by disp_order",
                       id)
                 : FormatSql("SELECT disp_order FROM playlist order by disp_order"))
          : (id != 0
                 ? FormatSql("SELECT disp_order FROM song WHERE album_id = %d order by disp_order",
                             id)
                 : FormatSql("SELECT disp_order FROM album  WHERE pfix = '%q' order by disp_order",
                             TextOrEmpty(prefix)));
  int previous = 0;
  bool sound = true;
  bool done = zansong::ForEachRow(db, sql.get(), [&](sqlite3_stmt* row) {
    int order = sqlite3_column_int(row, 0);
    if (order <= previous) sound = false;
    previous = order;
  });
  return done && sound ? 1 : 0;
}

int TDBSongMan::ChangeOrder(std::list<int>& ids, int id, char const* prefix, int pos) {
  return zansong::ChangeOrder(*this, ids, id, prefix, pos, nullptr);
}

int TDBSongMan::ReOrder(int id, char const* prefix) {
  return zansong::ReOrder(*this, id, prefix, nullptr);
}

int TDBSongMan::SortSongByPath(char const* pfix) {
  return zansong::SortSongByPath(*this, pfix, nullptr);
}

int TDBSongMan::ResetAlbumOrderAndPath(char const* root, char const* pfix) {
  return zansong::ResetAlbumOrderAndPath(*this, root, pfix, nullptr);
}

namespace zansong {

int SortSongByPath(TDBSongMan& man, char const* pfix, WriteBatch* batch) {
  std::list<std::string> entries;
  int ok = man.GetSongPathList2(entries, pfix);
  if (ok) ok = RenumberByPath(man, "song", entries, batch);
  if (!ok) PrintFunctionError("ReOrder");
  return ok;
}

int ResetAlbumOrderAndPath(TDBSongMan& man, char const* /*root*/, char const* pfix,
                           WriteBatch* batch) {
  // Only the order is rewritten; the album paths stay as stored.
  std::list<std::string> entries;
  int ok = man.GetAlbumPathList2(entries, pfix);
  if (ok) ok = RenumberByPath(man, "album", entries, batch);
  if (!ok) PrintFunctionError("ReOrder");
  return ok;
}

int ChangeOrder(TDBSongMan& man, std::list<int>& ids, int id, char const* prefix, int pos,
                WriteBatch* batch) {
  int n = static_cast<int>(ids.size());
  SqlText shift =
      IsPlaylistPrefix(prefix)
          ? (id != 0 ? FormatSql("UPDATE psong SET disp_order = disp_order + %d WHERE disp_order "
                                 "> %d and playlist_id = %d",
                                 n, pos - 1, id)
                     : FormatSql("UPDATE playlist SET disp_order = disp_order + %d WHERE "
                                 "disp_order > %d",
                                 n, pos - 1))
          : (id != 0 ? FormatSql("UPDATE song SET disp_order = disp_order + %d WHERE disp_order "
                                 "> %d and album_id = %d",
                                 n, pos - 1, id)
                     : FormatSql("UPDATE album SET disp_order = disp_order + %d WHERE disp_order "
                                 "> %d and pfix = '%q'",
                                 n, pos - 1, TextOrEmpty(prefix)));
  if (batch != nullptr) batch->BeforeWrite();
  int shifted = man.Query(shift.get());
  if (batch != nullptr) batch->AfterWrite();
  const char* table = SequenceTable(id, prefix);
  int order = pos;
  // A failed single move leaves that row where the shift put it; the
  // following ReOrder still yields a sound sequence.
  for (int key : ids) {
    if (batch != nullptr) batch->BeforeWrite();
    man.SetOrder(table, key, order++);
    if (batch != nullptr) batch->AfterWrite();
  }
  if (!shifted) PrintFunctionError("ChangeOrder");
  return shifted;
}

int ReOrder(TDBSongMan& man, int id, char const* prefix, WriteBatch* batch) {
  std::list<int> ids;
  int ok = man.GetIDList(ids, id, prefix);
  if (ok) {
    const char* table = SequenceTable(id, prefix);
    // When the positions cannot be read, every row is written.
    CurrentOrders current;
    bool known = ReadCurrentOrders(man, table, current);
    ok = Renumber(man, table, std::vector<int>(ids.begin(), ids.end()), known ? &current : nullptr,
                  batch);
  }
  if (!ok) PrintFunctionError("ReOrder");
  return ok;
}

}  // namespace zansong
