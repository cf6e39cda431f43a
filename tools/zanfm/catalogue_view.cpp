#include "zanfm/catalogue_view.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <nlohmann/json.hpp>

namespace zanfm {

namespace {

std::string Text(sqlite3_stmt* stmt, int col) {
  const unsigned char* t = sqlite3_column_text(stmt, col);
  return t == nullptr ? "" : reinterpret_cast<const char*>(t);
}

bool ForEachRow(const std::string& db, const std::string& sql,
                const std::function<void(sqlite3_stmt*)>& onRow) {
  sqlite3* handle = nullptr;
  if (sqlite3_open_v2(db.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
    sqlite3_close(handle);
    return false;
  }
  sqlite3_busy_timeout(handle, 1000);
  sqlite3_stmt* stmt = nullptr;
  bool ok = sqlite3_prepare_v2(handle, sql.c_str(), -1, &stmt, nullptr) == SQLITE_OK;
  int rc = SQLITE_DONE;
  while (ok && (rc = sqlite3_step(stmt)) == SQLITE_ROW) onRow(stmt);
  ok = ok && rc == SQLITE_DONE;
  sqlite3_finalize(stmt);
  sqlite3_close(handle);
  return ok;
}

// Display width of UTF-8 text, counting East Asian characters as two.
size_t Width(const std::string& s) {
  size_t width = 0;
  for (size_t i = 0; i < s.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if ((c & 0xC0) == 0x80) continue;
    width += c >= 0xE3 ? 2 : 1;
  }
  return width;
}

std::string Table(const std::vector<std::vector<std::string>>& rows) {
  std::vector<size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], Width(row[c]));
  }
  std::string out;
  for (const auto& row : rows) {
    std::string line;
    for (size_t c = 0; c < row.size(); ++c) {
      line += row[c];
      if (c + 1 < row.size()) line += std::string(widths[c] - Width(row[c]) + 2, ' ');
    }
    out += line + "\n";
  }
  return out;
}

}  // namespace

bool ReadAlbums(const std::string& db, std::vector<AlbumRow>* albums) {
  return ForEachRow(db,
                    "SELECT album_id,album_title,album_path,pfix,(SELECT COUNT(*) FROM song WHERE "
                    "song.album_id=album.album_id) FROM album ORDER BY pfix,disp_order",
                    [albums](sqlite3_stmt* s) {
                      albums->push_back(AlbumRow{sqlite3_column_int(s, 0), Text(s, 1), Text(s, 2),
                                                 Text(s, 3), sqlite3_column_int(s, 4)});
                    });
}

bool ReadSongs(const std::string& db, int albumId, std::vector<SongRow>* songs) {
  std::string sql =
      "SELECT song.song_id,song.album_id,song_title,format,"
      "CASE WHEN midi_path<>'' THEN midi_path ELSE audio_path END,length "
      "FROM song LEFT JOIN album ON song.album_id=album.album_id ";
  if (albumId != 0) sql += "WHERE song.album_id=" + std::to_string(albumId) + " ";
  sql += "ORDER BY album.pfix,album.disp_order,song.disp_order";
  return ForEachRow(db, sql, [songs](sqlite3_stmt* s) {
    SongRow row;
    row.id = sqlite3_column_int(s, 0);
    row.albumId = sqlite3_column_int(s, 1);
    row.title = Text(s, 2);
    row.format = Text(s, 3);
    row.path = Text(s, 4);
    row.lengthMs = sqlite3_column_int(s, 5);
    songs->push_back(row);
  });
}

bool ReadPlaylistSongs(const std::string& db, int playlistId, std::vector<SongRow>* songs) {
  std::string sql =
      "SELECT psong.song_id,song.album_id,song_title,format,"
      "CASE WHEN midi_path<>'' THEN midi_path ELSE audio_path END,length,psong_id "
      "FROM psong LEFT JOIN song ON psong.song_id=song.song_id WHERE playlist_id=" +
      std::to_string(playlistId) + " ORDER BY psong.disp_order";
  return ForEachRow(db, sql, [songs](sqlite3_stmt* s) {
    SongRow row;
    row.id = sqlite3_column_int(s, 0);
    row.albumId = sqlite3_column_int(s, 1);
    row.title = Text(s, 2);
    row.format = Text(s, 3);
    row.path = Text(s, 4);
    row.lengthMs = sqlite3_column_int(s, 5);
    row.entryId = sqlite3_column_int(s, 6);
    songs->push_back(row);
  });
}

bool ReadPlaylists(const std::string& db, std::vector<PlaylistRow>* playlists) {
  return ForEachRow(db,
                    "SELECT playlist_id,playlist_title,ppfix,(SELECT COUNT(*) FROM psong WHERE "
                    "psong.playlist_id=playlist.playlist_id) FROM playlist ORDER BY disp_order",
                    [playlists](sqlite3_stmt* s) {
                      playlists->push_back(PlaylistRow{sqlite3_column_int(s, 0), Text(s, 1),
                                                       Text(s, 2), sqlite3_column_int(s, 3)});
                    });
}

std::string PrefixOf(const std::string& db, const std::string& table, int id) {
  const std::string column = table == "playlist" ? "ppfix" : "pfix";
  std::string prefix;
  ForEachRow(
      db, "SELECT " + column + " FROM " + table + " WHERE " + table + "_id=" + std::to_string(id),
      [&prefix](sqlite3_stmt* s) { prefix = Text(s, 0); });
  return prefix;
}

std::string MinutesSeconds(int ms) {
  int seconds = (ms + 500) / 1000;
  char text[32];
  std::snprintf(text, sizeof text, "%d:%02d", seconds / 60, seconds % 60);
  return text;
}

std::string AlbumTable(const std::vector<AlbumRow>& albums) {
  std::vector<std::vector<std::string>> rows{{"ID", "TITLE", "SONGS", "PATH"}};
  for (const AlbumRow& a : albums) {
    rows.push_back({std::to_string(a.id), a.title.empty() ? "(storage root)" : a.title,
                    std::to_string(a.songs), a.path.empty() ? "/" : a.path});
  }
  return Table(rows);
}

std::string SongTable(const std::vector<SongRow>& songs) {
  bool entries =
      std::any_of(songs.begin(), songs.end(), [](const SongRow& s) { return s.entryId != 0; });
  std::vector<std::vector<std::string>> rows{{"ID", "TITLE", "FORMAT", "LENGTH", "PATH"}};
  if (entries) rows[0].insert(rows[0].begin(), "ENTRY");
  for (const SongRow& s : songs) {
    rows.push_back({std::to_string(s.id), s.title, s.format, MinutesSeconds(s.lengthMs), s.path});
    if (entries) rows.back().insert(rows.back().begin(), std::to_string(s.entryId));
  }
  return Table(rows);
}

std::string PlaylistTable(const std::vector<PlaylistRow>& playlists) {
  std::vector<std::vector<std::string>> rows{{"ID", "TITLE", "SONGS"}};
  for (const PlaylistRow& p : playlists) {
    rows.push_back({std::to_string(p.id), p.title, std::to_string(p.entries)});
  }
  return Table(rows);
}

std::string PlaylistJson(const std::vector<PlaylistRow>& playlists) {
  nlohmann::json out = nlohmann::json::array();
  for (const PlaylistRow& p : playlists) {
    out.push_back({{"id", p.id}, {"title", p.title}, {"prefix", p.prefix}, {"songs", p.entries}});
  }
  return out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::string AlbumJson(const std::vector<AlbumRow>& albums) {
  nlohmann::json out = nlohmann::json::array();
  for (const AlbumRow& a : albums) {
    out.push_back({{"id", a.id},
                   {"title", a.title},
                   {"path", a.path},
                   {"prefix", a.prefix},
                   {"songs", a.songs}});
  }
  return out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::string SongJson(const std::vector<SongRow>& songs) {
  nlohmann::json out = nlohmann::json::array();
  for (const SongRow& s : songs) {
    out.push_back({{"id", s.id},
                   {"album_id", s.albumId},
                   {"title", s.title},
                   {"format", s.format},
                   {"length_ms", s.lengthMs},
                   {"path", s.path}});
    if (s.entryId != 0) out.back()["entry_id"] = s.entryId;
  }
  return out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace zanfm
