// TDBSongMan: display-order maintenance of albums, songs of an album,
// playlists and playlist entries.
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "db/batched_order.h"
#include "db/prefix.h"
#include "db/song_rows.h"
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

constexpr int kUnknownOrder = zansong::SongRows::kUnknownOrder;

// Positions currently held: (key, position) pairs sorted by key, one per
// key; kUnknownOrder for a key whose rows do not all hold the same integer.
class CurrentOrders {
 public:
  void Add(int key, int order) { held_.emplace_back(key, order); }
  // Sorts the pairs and merges those of one key.
  void Finish() {
    if (!std::is_sorted(held_.begin(), held_.end(), ByKey)) {
      std::stable_sort(held_.begin(), held_.end(), ByKey);
    }
    size_t kept = 0;
    for (size_t i = 0; i < held_.size(); ++i) {
      if (kept > 0 && held_[kept - 1].first == held_[i].first) {
        if (held_[kept - 1].second != held_[i].second) held_[kept - 1].second = kUnknownOrder;
      } else {
        held_[kept++] = held_[i];
      }
    }
    held_.resize(kept);
  }
  // Whether key is known to hold order.
  bool Holds(int key, int order) const {
    auto found = std::lower_bound(held_.begin(), held_.end(), std::make_pair(key, 0), ByKey);
    return found != held_.end() && found->first == key && found->second == order;
  }
  void Reserve(size_t n) { held_.reserve(n); }

 private:
  static bool ByKey(const std::pair<int, int>& a, const std::pair<int, int>& b) {
    return a.first < b.first;
  }
  std::vector<std::pair<int, int>> held_;
};

// The disp_order of every row of table by key.  False (and orders
// incomplete) when the statement fails.
bool ReadCurrentOrders(TDBSongMan& man, const char* table, CurrentOrders& orders) {
  SqlText sql = FormatSql("SELECT %q_id,disp_order FROM %q", table, table);
  bool done = zansong::ForEachRow(man.db, sql.get(), [&orders](sqlite3_stmt* row) {
    // Only an integer is the value an update would write.
    orders.Add(sqlite3_column_int(row, 0), sqlite3_column_type(row, 1) == SQLITE_INTEGER
                                               ? sqlite3_column_int(row, 1)
                                               : kUnknownOrder);
  });
  orders.Finish();
  return done;
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
    if (current != nullptr && current->Holds(key, order)) continue;
    if (!BatchedWrite(batch, [&] { return man.SetOrder(table, key, order); })) return 0;
  }
  return 1;
}

// The key after the last tab of a path-list entry.
int KeyOfEntry(std::string_view entry) {
  std::string_view::size_type tab = entry.rfind('\t');
  return std::atoi(std::string(entry.substr(tab == std::string_view::npos ? 0 : tab + 1)).c_str());
}

// Renumbers the rows of table by their path-list entries in byte order
// (string_view compares as unsigned bytes), writing only the positions that
// current shows to change (every position without current).  1 or 0.
int RenumberSorted(TDBSongMan& man, const char* table, std::vector<std::string_view>& entries,
                   const CurrentOrders* current, WriteBatch* batch) {
  std::sort(entries.begin(), entries.end());
  std::vector<int> keys;
  keys.reserve(entries.size());
  for (std::string_view entry : entries) keys.push_back(KeyOfEntry(entry));
  return Renumber(man, table, keys, current, batch);
}

// The same with the current positions read from table.
int RenumberByPath(TDBSongMan& man, const char* table, std::list<std::string>& entries,
                   WriteBatch* batch) {
  std::vector<std::string_view> sorted(entries.begin(), entries.end());
  // When the positions cannot be read, every row is written.
  CurrentOrders current;
  bool known = ReadCurrentOrders(man, table, current);
  return RenumberSorted(man, table, sorted, known ? &current : nullptr, batch);
}

// Whether the songs of the prefix of rows already hold the positions that
// renumbering by path would give them: positions 1, 2, ..., n whose
// entries, taken in that order, rise in byte order.
bool InPathOrder(const zansong::SongRows& rows) {
  std::vector<const zansong::SongRows::Row*> ordered = rows.InPositionOrder();
  for (size_t i = 1; i < ordered.size(); ++i) {
    if (!(rows.Entry(*ordered[i - 1]) < rows.Entry(*ordered[i]))) return false;
  }
  // No song of the prefix, or every one in place.
  return !ordered.empty() ||
         std::none_of(rows.rows().begin(), rows.rows().end(),
                      [](const zansong::SongRows::Row& r) { return r.inPrefix; });
}

// Renumbers the songs of the prefix of rows by path, from the rows alone:
// their GetSongPathList2 entries and the positions of every song.
int RenumberSongs(TDBSongMan& man, const zansong::SongRows& rows, WriteBatch* batch) {
  // Nothing would be written: the sort is not needed to tell.
  if (InPathOrder(rows)) return 1;
  std::vector<std::string_view> entries;
  CurrentOrders current;
  current.Reserve(rows.rows().size());
  for (const zansong::SongRows::Row& row : rows.rows()) {
    if (row.inPrefix) entries.push_back(rows.Entry(row));
    current.Add(row.id, row.order);
  }
  current.Finish();
  return RenumberSorted(man, "song", entries, &current, batch);
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
  return SortSongByPath(man, pfix, batch, nullptr);
}

int SortSongByPath(TDBSongMan& man, char const* pfix, WriteBatch* batch, const SongRows* known) {
  // One read of the table serves both the paths and the positions; rows
  // read earlier serve while nothing has changed since.
  SongRows fresh;
  const SongRows* rows = nullptr;
  if (known != nullptr && known->prefix() == TextOrEmpty(pfix) && known->Current(man)) {
    rows = known;
  } else if (fresh.Read(man, pfix, false)) {
    rows = &fresh;
  }
  int ok;
  if (rows != nullptr) {
    ok = RenumberSongs(man, *rows, batch);
  } else {
    std::list<std::string> entries;
    ok = man.GetSongPathList2(entries, pfix);
    if (ok) ok = RenumberByPath(man, "song", entries, batch);
  }
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
  const bool shifted = BatchedWrite(batch, [&] { return man.Query(shift.get()); });
  const char* table = SequenceTable(id, prefix);
  int order = pos;
  // A failed single move leaves that row where the shift put it; the
  // following ReOrder still yields a sound sequence, but the change is
  // reported as failed.
  bool moved = true;
  for (int key : ids) {
    if (!BatchedWrite(batch, [&] { return man.SetOrder(table, key, order++); })) moved = false;
  }
  if (!shifted || !moved) PrintFunctionError("ChangeOrder");
  return shifted && moved ? 1 : 0;
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
