// SongInsert: the song insert of TDBSongMan::AddSong2 compiled once for a
// run of inserts on one connection.
//
// Run(albumId, songId, dispOrder, info, ctime, pfix) writes the same row as
// AddSong2's insert text would (the same columns, with a null text written
// as the empty string), but binds the values to a statement compiled at
// the first call instead of quoting them into a text compiled for every
// row.  Returns 1, or 0 after printing "DB: error %s\n" with SQLite's
// message, as TDBMan::Query does for the text.
//
// AddSong2(insert, albumId, songId, dispOrder, info, ctime, pfix) is
// TDBSongMan::AddSong2 through insert: the same row, result and lines
// (a failure also prints "Error! :AddSong2").
//
// A SongInsert refers to the manager; it compiles the statement again when
// the manager has since opened another connection.  Single-threaded, as the
// manager is.
#ifndef ZANSONG_SRC_DB_SONG_INSERT_H_
#define ZANSONG_SRC_DB_SONG_INSERT_H_

#include "db/sqlite_owner.h"
#include "zansong/db/dbman.h"
#include "zansong/db/songinfo.h"

namespace zansong {

class SongInsert {
 public:
  explicit SongInsert(TDBMan& man) : man_(man) {}
  SongInsert(const SongInsert&) = delete;
  SongInsert& operator=(const SongInsert&) = delete;

  int Run(int albumId, int songId, int dispOrder, const SongInfo& info, const char* ctime,
          const char* pfix);

 private:
  TDBMan& man_;
  SqliteStatement stmt_;
};

int AddSong2(SongInsert& insert, int albumId, int songId, int dispOrder, const SongInfo* info,
             const char* ctime, const char* pfix);

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_SONG_INSERT_H_
