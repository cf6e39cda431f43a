// TDBSongMan: reads, inserts, updates, deletes and lists of the catalogue
// tables.
#include <sqlite3.h>

#include <cstring>
#include <string>

#include "db/prefix.h"
#include "db/song_insert_sql.h"
#include "db/song_path_entry.h"
#include "db/sql.h"
#include "zansong/db/dbsongman.h"

using zansong::ColumnString;
using zansong::ForEachRow;
using zansong::FormatSql;
using zansong::IsPlaylistPrefix;
using zansong::PrintFunctionError;
using zansong::ReadFirstInt;
using zansong::SqlText;
using zansong::TextOrEmpty;

namespace {

// Runs a list statement; prints "Error! :" + name when it does not run to
// its end.  Returns 1 or 0.
int ReadList(sqlite3* db, const SqlText& sql, const char* name,
             const std::function<void(sqlite3_stmt*)>& onRow) {
  if (ForEachRow(db, sql.get(), onRow)) return 1;
  PrintFunctionError(name);
  return 0;
}

}  // namespace

// ---- Single values -------------------------------------------------------

int TDBSongMan::GetAlbumIDByPath(char const* path) {
  SqlText sql = FormatSql("SELECT album_id FROM album WHERE album_path='%q'", TextOrEmpty(path));
  return ReadFirstInt(db, sql.get(), 0);
}

int TDBSongMan::GetIDByTitle(char const* table, char const* title, char const* prefix) {
  const char* t = TextOrEmpty(table);
  const char* format = IsPlaylistPrefix(prefix)
                           ? "SELECT %q_id FROM %q WHERE %q_title='%q' AND ppfix='%q'"
                           : "SELECT %q_id FROM %q WHERE %q_title='%q' AND pfix='%q'";
  SqlText sql = FormatSql(format, t, t, t, TextOrEmpty(title), TextOrEmpty(prefix));
  return ReadFirstInt(db, sql.get(), 0);
}

int TDBSongMan::GetSongIDByFieldname(char const* field, char const* value, char const* pfix) {
  SqlText sql = FormatSql("SELECT song_id FROM song WHERE %q='%q' and pfix='%q'",
                          TextOrEmpty(field), TextOrEmpty(value), TextOrEmpty(pfix));
  return ReadFirstInt(db, sql.get(), 0);
}

int TDBSongMan::GetSongIDByFilenameAndMtime(char const* albumDir, char const* name,
                                            char const* mtime, char const* pfix, bool newer) {
  const char* n = TextOrEmpty(name);
  const char* m = TextOrEmpty(mtime);
  const char* p = TextOrEmpty(pfix);
  if (albumDir == nullptr || albumDir[0] == '\0') {
    const char* format =
        newer ? "SELECT song_id FROM song WHERE (midi_path LIKE '%%/Single Songs/%q.___' or "
                "audio_path LIKE '%%/Single Songs/%q.___')   and mtime > '%q' and pfix='%q'"
              : "SELECT song_id FROM song WHERE (midi_path LIKE '%%/Single Songs/%q.___' or "
                "audio_path LIKE '%%/Single Songs/%q.___')   and mtime='%q' and pfix='%q'";
    SqlText sql = FormatSql(format, n, n, m, p);
    return ReadFirstInt(db, sql.get(), 0);
  }
  const char* format =
      newer ? "SELECT song_id FROM song WHERE (midi_path LIKE '%%/%q/%q.___' or audio_path "
              "LIKE '%%/%q/%q.___')   and mtime > '%q' and pfix='%q'"
            : "SELECT song_id FROM song WHERE (midi_path LIKE '%%/%q/%q.___' or audio_path "
              "LIKE '%%/%q/%q.___')   and mtime='%q' and pfix='%q'";
  SqlText sql = FormatSql(format, albumDir, n, albumDir, n, m, p);
  return ReadFirstInt(db, sql.get(), 0);
}

TSString TDBSongMan::GetTextByID(char const* table, char const* field, int id) {
  const char* t = TextOrEmpty(table);
  SqlText sql = FormatSql("SELECT %q FROM %q WHERE %q_id = %d", TextOrEmpty(field), t, t, id);
  std::string text;
  bool first = true;
  ForEachRow(db, sql.get(), [&](sqlite3_stmt* row) {
    if (first) text = ColumnString(row, 0);
    first = false;
  });
  return TSString(text.c_str());
}

int TDBSongMan::GetIntByID(char const* table, char const* field, int id) {
  const char* t = TextOrEmpty(table);
  SqlText sql = FormatSql("SELECT %q FROM %q WHERE %q_id = %d", TextOrEmpty(field), t, t, id);
  return ReadFirstInt(db, sql.get(), 0);
}

int TDBSongMan::GetMaxInt(char const* table, char const* field) {
  SqlText sql = FormatSql("SELECT MAX(%q) FROM %q ", TextOrEmpty(field), TextOrEmpty(table));
  return ReadFirstInt(db, sql.get(), 0);
}

int TDBSongMan::GetAlbumCount(char const* prefix) {
  SqlText sql = IsPlaylistPrefix(prefix) ? FormatSql("SELECT COUNT(*) FROM playlist")
                                         : FormatSql("SELECT COUNT(*) FROM album WHERE pfix = '%q'",
                                                     TextOrEmpty(prefix));
  return ReadFirstInt(db, sql.get(), 0);
}

int TDBSongMan::GetSongCount(int id, char const* prefix) {
  SqlText sql = IsPlaylistPrefix(prefix)
                    ? (id != 0 ? FormatSql("SELECT COUNT(*) FROM psong WHERE playlist_id = %d", id)
                               : FormatSql("SELECT COUNT(*) FROM psong"))
                    : (id != 0 ? FormatSql("SELECT COUNT(*) FROM song WHERE album_id = %d", id)
                               : FormatSql("SELECT COUNT(*) FROM song WHERE pfix = '%q'",
                                           TextOrEmpty(prefix)));
  return ReadFirstInt(db, sql.get(), 0);
}

int TDBSongMan::GetSongData(int songId, SongInfo* info) {
  SqlText sql = FormatSql(
      "SELECT song_title,midi_path,audio_path,format,mtime,length,sync_id,performer,composer,tags,"
      "genre FROM song WHERE song_id = %d",
      songId);
  bool found = false;
  bool done = ForEachRow(db, sql.get(), [&](sqlite3_stmt* row) {
    if (found || info == nullptr) return;
    found = true;
    info->title = ColumnString(row, 0).c_str();
    info->midiPath = ColumnString(row, 1).c_str();
    info->audioPath = ColumnString(row, 2).c_str();
    info->format = ColumnString(row, 3).c_str();
    info->mtime = ColumnString(row, 4).c_str();
    info->length = sqlite3_column_int(row, 5);
    info->syncId = ColumnString(row, 6).c_str();
    info->performer = ColumnString(row, 7).c_str();
    info->composer = ColumnString(row, 8).c_str();
    info->tags = ColumnString(row, 9).c_str();
    info->genre = ColumnString(row, 10).c_str();
  });
  if (!done) PrintFunctionError("GetSongData");
  return found ? 1 : 0;
}

// ---- Inserts -------------------------------------------------------------

int TDBSongMan::CreateAlbum(char const* title, char const* path, char const* coverart,
                            char const* pfix) {
  int existing = GetAlbumIDByPath(path);
  if (existing != 0) return existing;
  int id = GetMaxInt("album", "album_id") + 1;
  int order = GetMaxOrder(0, pfix) + 1;
  SqlText sql = FormatSql(
      "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order,coverart_path) "
      "VALUES('%q',%d,'%q','%q',%d,'%q')",
      TextOrEmpty(pfix), id, TextOrEmpty(title), TextOrEmpty(path), order, TextOrEmpty(coverart));
  return Query(sql.get()) ? id : -1;
}

int TDBSongMan::CreatePlaylist(char const* title, char const* ppfix) {
  int id = GetMaxInt("playlist", "playlist_id") + 1;
  int order = GetMaxOrder(0, ppfix) + 1;
  SqlText sql = FormatSql(
      "INSERT INTO playlist(ppfix,playlist_id,playlist_title,disp_order) VALUES('%q',%d,'%q',%d)",
      TextOrEmpty(ppfix), id, TextOrEmpty(title), order);
  Query(sql.get());
  return id;
}

namespace {

// The song insert shared by AddSong and AddSong2.
SqlText SongInsert(int albumId, int songId, int dispOrder, const SongInfo& info, const char* ctime,
                   const char* pfix) {
  return FormatSql(zansong::kSongInsertText, TextOrEmpty(pfix), songId, info.title.c_str(),
                   info.midiPath.c_str(), info.audioPath.c_str(), dispOrder, info.format.c_str(),
                   info.length, TextOrEmpty(ctime), info.mtime.c_str(), albumId,
                   info.syncId.c_str(), info.composer.c_str(), info.genre.c_str(),
                   info.purchasedDate.c_str(), info.coverartPath.c_str());
}

}  // namespace

int TDBSongMan::AddSong(SongInfo* info, char* ctime, char const* pfix) {
  if (info == nullptr) return 0;
  int songId = GetMaxInt("song", "song_id") + 1;
  int albumId = GetAlbumIDByPath(info->albumPath.c_str());
  int order = GetMaxOrder(albumId, pfix) + 1;
  SqlText sql = SongInsert(albumId, songId, order, *info, ctime, pfix);
  Query(sql.get());
  return songId;
}

int TDBSongMan::AddSong2(int albumId, int songId, int dispOrder, SongInfo* info, char* ctime,
                         char const* pfix) {
  if (info != nullptr) {
    SqlText sql = SongInsert(albumId, songId, dispOrder, *info, ctime, pfix);
    if (Query(sql.get())) return 1;
  }
  PrintFunctionError("AddSong2");
  return 0;
}

int TDBSongMan::AddToPlaylist(int playlistId, int songId, char const* ppfix, char const* pfix) {
  int id = GetMaxInt("psong", "psong_id") + 1;
  int order = GetMaxOrder(playlistId, ppfix) + 1;
  SqlText sql = FormatSql(
      "INSERT INTO psong(ppfix ,psong_id,playlist_id,pfix,song_id,disp_order) "
      "VALUES('%q',%d,%d,'%q',%d,%d)",
      TextOrEmpty(ppfix), id, playlistId, TextOrEmpty(pfix), songId, order);
  Query(sql.get());
  return id;
}

// ---- Updates and deletes -------------------------------------------------

namespace {

// Runs sql through Query; prints "Error! :" + name when it fails.
int RunUpdate(TDBMan& man, const SqlText& sql, const char* name) {
  if (man.Query(sql.get())) return 1;
  PrintFunctionError(name);
  return 0;
}

}  // namespace

int TDBSongMan::SetSongData(int songId, SongInfo* info, char* ctime) {
  if (info == nullptr) {
    PrintFunctionError("SetSongData");
    return 0;
  }
  SqlText sql = FormatSql(
      "UPDATE song SET song_title ='%q',midi_path='%q',audio_path='%q',format='%q',length=%d,"
      "ctime='%q',mtime='%q',sync_id='%q',composer='%q', genre='%q',purchased_date ='%q',"
      "coverart_path ='%q' WHERE song_id = %d",
      info->title.c_str(), info->midiPath.c_str(), info->audioPath.c_str(), info->format.c_str(),
      info->length, TextOrEmpty(ctime), info->mtime.c_str(), info->syncId.c_str(),
      info->composer.c_str(), info->genre.c_str(), info->purchasedDate.c_str(),
      info->coverartPath.c_str(), songId);
  return RunUpdate(*this, sql, "SetSongData");
}

int TDBSongMan::SetTextByID(char const* table, char const* field, int id, char const* value) {
  const char* t = TextOrEmpty(table);
  SqlText sql = FormatSql("UPDATE %q SET %q = '%q' WHERE %q_id = %d", t, TextOrEmpty(field),
                          TextOrEmpty(value), t, id);
  return RunUpdate(*this, sql, "SetTextByID");
}

int TDBSongMan::SetSongPath(int songId, char const* midiPath, char const* audioPath) {
  SqlText sql = FormatSql("UPDATE song SET midi_path = '%q', audio_path = '%q' WHERE song_id = %d",
                          TextOrEmpty(midiPath), TextOrEmpty(audioPath), songId);
  return RunUpdate(*this, sql, "SetSongPath");
}

int TDBSongMan::DeleteSongByPath(char* midiPath, char* audioPath) {
  SqlText sql = FormatSql("DELETE FROM song WHERE midi_path='%q' AND audio_path='%q'",
                          TextOrEmpty(midiPath), TextOrEmpty(audioPath));
  return RunUpdate(*this, sql, "DeleteSongByPath");
}

int TDBSongMan::DeletePsongByAlbum(int albumId, char const* pfix) {
  SqlText sql = FormatSql(
      "DELETE FROM psong WHERE song_id in (SELECT song_id FROM song WHERE album_id=%d) AND pfix "
      "='%q'",
      albumId, TextOrEmpty(pfix));
  return RunUpdate(*this, sql, "DeletePsongByAlbum");
}

int TDBSongMan::DeletePsongNotExist(char const* pfix) {
  SqlText sql =
      FormatSql("DELETE FROM psong WHERE song_id not in (SELECT song_id FROM song) AND pfix ='%q'",
                TextOrEmpty(pfix));
  return RunUpdate(*this, sql, "DeletePsongNotExist");
}

int TDBSongMan::DeleteData(char const* table, char const* field, char const* value) {
  SqlText sql = FormatSql("DELETE FROM %q WHERE %q='%q'", TextOrEmpty(table), TextOrEmpty(field),
                          TextOrEmpty(value));
  return RunUpdate(*this, sql, "DeleteData");
}

int TDBSongMan::DeleteData2(char const* table, char const* field1, char const* value1,
                            char const* field2, char const* value2) {
  SqlText sql =
      FormatSql("DELETE FROM %q WHERE %q='%q' AND %q='%q'", TextOrEmpty(table), TextOrEmpty(field1),
                TextOrEmpty(value1), TextOrEmpty(field2), TextOrEmpty(value2));
  return RunUpdate(*this, sql, "DeleteData2");
}

// ---- Lists ---------------------------------------------------------------

int TDBSongMan::GetIDList(std::list<int>& ids, int id, char const* prefix) {
  SqlText sql =
      IsPlaylistPrefix(prefix)
          ? (id != 0
                 ? FormatSql(
                       "SELECT psong_id FROM psong WHERE playlist_id = %d order by disp_order", id)
                 : FormatSql("SELECT playlist_id FROM playlist order by disp_order"))
          : (id != 0
                 ? FormatSql("SELECT song_id FROM song WHERE album_id = %d order by disp_order", id)
                 : FormatSql("SELECT album_id FROM album  WHERE pfix = '%q' order by disp_order",
                             TextOrEmpty(prefix)));
  return ReadList(db, sql, "GetIDList",
                  [&ids](sqlite3_stmt* row) { ids.push_back(sqlite3_column_int(row, 0)); });
}

int TDBSongMan::GetSongIDList(std::list<int>& ids, int id, bool playlist) {
  SqlText sql =
      playlist
          ? FormatSql("SELECT song_id FROM psong WHERE playlist_id = %d order by disp_order", id)
          : FormatSql("SELECT song_id FROM song WHERE album_id = %d order by disp_order", id);
  return ReadList(db, sql, "GetSongIDList",
                  [&ids](sqlite3_stmt* row) { ids.push_back(sqlite3_column_int(row, 0)); });
}

int TDBSongMan::GetPSongIDPfixList(std::list<std::string>& pfixes, std::list<int>& songIds,
                                   int playlistId) {
  SqlText sql = FormatSql(
      "SELECT pfix,song_id FROM psong WHERE playlist_id = %d order by disp_order", playlistId);
  return ReadList(db, sql, "GetPSongIDPfixList", [&](sqlite3_stmt* row) {
    pfixes.push_back(ColumnString(row, 0));
    songIds.push_back(sqlite3_column_int(row, 1));
  });
}

int TDBSongMan::GetAlbumPathList(std::list<std::string>& paths, char const* pfix) {
  SqlText sql = FormatSql("SELECT album_path FROM album WHERE pfix = '%q'", TextOrEmpty(pfix));
  return ReadList(db, sql, "GetAlbumPathList",
                  [&paths](sqlite3_stmt* row) { paths.push_back(ColumnString(row, 0)); });
}

int TDBSongMan::GetAlbumPathList2(std::list<std::string>& entries, char const* pfix) {
  SqlText sql =
      FormatSql("SELECT album_path,album_id FROM album WHERE pfix = '%q'", TextOrEmpty(pfix));
  // Reported under the name of the song list, as the host has always seen it.
  return ReadList(db, sql, "GetSongPathList2", [&entries](sqlite3_stmt* row) {
    entries.push_back(ColumnString(row, 0) + "\t" + std::to_string(sqlite3_column_int(row, 1)));
  });
}

int TDBSongMan::GetSongPathList(std::list<std::string>& entries, char const* pfix) {
  SqlText sql = FormatSql("SELECT midi_path,audio_path,format,mtime FROM song WHERE pfix = '%q'",
                          TextOrEmpty(pfix));
  // Downloaded songs are compared without their modification time.
  bool withMtime = zansong::SongPathListHasTime(TextOrEmpty(pfix));
  return ReadList(db, sql, "GetSongPathList", [&](sqlite3_stmt* row) {
    std::string entry(zansong::ColumnView(row, 0));
    entry += '\t';
    entry += zansong::ColumnView(row, 1);
    entry += '\t';
    zansong::AppendSongPathTail(zansong::ColumnView(row, 2),
                                withMtime ? zansong::ColumnView(row, 3) : std::string_view(),
                                entry);
    entries.push_back(std::move(entry));
  });
}

namespace {

void AppendSongPathEntry(std::list<std::string>& entries, sqlite3_stmt* row) {
  entries.push_back(ColumnString(row, 0) + "\t" + ColumnString(row, 1) + "\t" +
                    std::to_string(sqlite3_column_int(row, 2)));
}

}  // namespace

int TDBSongMan::GetSongPathList2(std::list<std::string>& entries, char const* pfix) {
  SqlText sql = FormatSql("SELECT midi_path,audio_path,song_id FROM song WHERE pfix = '%q'",
                          TextOrEmpty(pfix));
  return ReadList(db, sql, "GetSongPathList2",
                  [&entries](sqlite3_stmt* row) { AppendSongPathEntry(entries, row); });
}

int TDBSongMan::GetSongPathList3(std::list<std::string>& entries, int albumId) {
  SqlText sql =
      FormatSql("SELECT midi_path,audio_path,song_id FROM song WHERE album_id = %d", albumId);
  return ReadList(db, sql, "GetSongPathList2",
                  [&entries](sqlite3_stmt* row) { AppendSongPathEntry(entries, row); });
}
