#include "async/copy_space.h"

#include <sqlite3.h>

#include <string>

#include "db/sql.h"
#include "zansong/db/simpledb.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"

namespace zansong {
namespace {

// Runs format (with the target's id) on db for every target of type, and
// calls onRow with each row.
template <typename OnRow>
void ForEachTargetRow(SimpleDB& db, const std::vector<TargetInfo>& targets, int type,
                      const char* format, OnRow onRow) {
  for (const TargetInfo& target : targets) {
    if (target.type != type) continue;
    SqlText sql(FormatSql(format, target.id));
    db.read(sql.get(), [&onRow](sqlite3_stmt* row) {
      onRow(row);
      return 0;
    });
  }
}

}  // namespace

long long AlbumCopySpaceNeeded(const char* path, const std::vector<TargetInfo>& targets) {
  SimpleDB db;
  if (db.open(path, nullptr) != 0) return -1;
  long long size = 0;
  ForEachTargetRow(
      db, targets, kTargetAlbum, "select album_path from album where album_id=%d;",
      [&](sqlite3_stmt* row) { size = FH2_get_dir_size((path + ColumnString(row, 0)).c_str()); });
  return size;
}

long long SongCopySpaceNeeded(const char* path, const std::vector<TargetInfo>& targets) {
  SimpleDB db;
  if (db.open(path, nullptr) != 0) return -1;
  long long total = 0;
  ForEachTargetRow(db, targets, kTargetSong,
                   "select midi_path,audio_path from song where song_id=%d;",
                   [&](sqlite3_stmt* row) {
                     for (int col = 0; col < sqlite3_column_count(row); ++col) {
                       std::string file = ColumnString(row, col);
                       if (!file.empty()) total += FH2_get_file_size((path + file).c_str());
                     }
                   });
  return total;
}

int CheckCopySpace(const char* path, long long needed) {
  if (needed < 0) return kResultOk;
  return CheckDiskFree(path, needed + kCopySpaceMargin) ? kResultOk : kResultNoSpace;
}

}  // namespace zansong
