#include "db/song_insert.h"

#include <sqlite3.h>

#include "db/song_insert_sql.h"
#include "db/sql.h"

namespace zansong {

int SongInsert::Run(int albumId, int songId, int dispOrder, const SongInfo& info, const char* ctime,
                    const char* pfix) {
  sqlite3* db = man_.db;
  if (!stmt_ || sqlite3_db_handle(stmt_.get()) != db) {
    stmt_.reset();
    sqlite3_stmt* compiled = nullptr;
    int rc = sqlite3_prepare_v2(db, kSongInsertCompiled, -1, &compiled, nullptr);
    stmt_.reset(compiled);
    if (rc != SQLITE_OK) {
      // Without a connection SQLite leaves no message of its own.
      PrintDbError(db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(rc));
      stmt_.reset();
      return 0;
    }
  }
  sqlite3_stmt* s = stmt_.get();
  // The texts stay in place until the step below is done.
  auto text = [s](int column, const char* value) {
    sqlite3_bind_text(s, column, TextOrEmpty(value), -1, SQLITE_STATIC);
  };
  text(1, pfix);
  sqlite3_bind_int(s, 2, songId);
  text(3, info.title.c_str());
  text(4, info.midiPath.c_str());
  text(5, info.audioPath.c_str());
  sqlite3_bind_int(s, 6, dispOrder);
  text(7, info.format.c_str());
  sqlite3_bind_int(s, 8, info.length);
  text(9, ctime);
  text(10, info.mtime.c_str());
  sqlite3_bind_int(s, 11, albumId);
  text(12, info.syncId.c_str());
  text(13, info.composer.c_str());
  text(14, info.genre.c_str());
  text(15, info.purchasedDate.c_str());
  text(16, info.coverartPath.c_str());
  int rc = sqlite3_step(s);
  // A failed step leaves its message until the reset.
  if (rc != SQLITE_DONE) PrintDbError(sqlite3_errmsg(db));
  sqlite3_reset(s);
  sqlite3_clear_bindings(s);
  return rc == SQLITE_DONE ? 1 : 0;
}

int AddSong2(SongInsert& insert, int albumId, int songId, int dispOrder, const SongInfo* info,
             const char* ctime, const char* pfix) {
  if (info != nullptr && insert.Run(albumId, songId, dispOrder, *info, ctime, pfix)) return 1;
  PrintFunctionError("AddSong2");
  return 0;
}

}  // namespace zansong
