// songdb2json: writes a song catalogue as one JSON document to standard
// output, for the instrument's browser page.
//
//   songdb2json [--root DIR] [-u CATALOGUE]
//
// -u names the catalogue file; without it the internal catalogue,
// system root + "/usr/local/songs/.zansong.db", is read.  --root sets the
// system root ("" by default, as on the instrument).  The document has
// three lists, each in display order: albums, songs and playlists (with
// their entries); the format is described in docs/songdb2json.md.  Text
// that is not valid UTF-8 is written with U+FFFD in place of the bad bytes.
// Exit status 0 on success; 1 with a message on standard error when the
// catalogue cannot be read or the output cannot be written; 2 for bad
// arguments.
#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

namespace {

using json = nlohmann::ordered_json;

constexpr int kBusyTimeoutMs = 1000;
// The internal catalogue of the instrument, below the system root.
constexpr char kInternalCatalogue[] = "/usr/local/songs/.zansong.db";

struct CloseConnection {
  void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
};
struct FinalizeStatement {
  void operator()(sqlite3_stmt* stmt) const { sqlite3_finalize(stmt); }
};
using Connection = std::unique_ptr<sqlite3, CloseConnection>;
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// A failed read of the catalogue: SQLite's message.
struct ReadError {
  std::string message;
};

class Catalogue {
 public:
  explicit Catalogue(const std::string& path) : path_(path) {}

  bool Open() {
    sqlite3* handle = nullptr;
    int rc = sqlite3_open_v2(path_.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr);
    db_.reset(handle);
    if (rc != SQLITE_OK) {
      error_ = handle != nullptr ? sqlite3_errmsg(handle) : sqlite3_errstr(rc);
      return false;
    }
    sqlite3_busy_timeout(handle, kBusyTimeoutMs);
    return true;
  }

  // The column's name when the table has it, else "NULL": older catalogues
  // lack the columns that were added later.
  std::string ColumnOrNull(const char* table, const char* column) {
    std::set<std::string>& names = columns_[table];
    if (names.empty()) {
      std::string sql = std::string("PRAGMA table_info(") + table + ")";
      ForEachRow(sql, [&names](sqlite3_stmt* row) { names.insert(Text(row, 1)); });
    }
    return names.count(column) != 0 ? column : "NULL";
  }

  // Runs sql, calling onRow per row; false (with error()) when it fails.
  template <typename F>
  bool ForEachRow(const std::string& sql, F onRow) {
    sqlite3_stmt* raw = nullptr;
    int rc = sqlite3_prepare_v2(db_.get(), sql.c_str(), -1, &raw, nullptr);
    Statement stmt(raw);
    if (rc == SQLITE_OK && raw != nullptr) {
      while ((rc = sqlite3_step(raw)) == SQLITE_ROW) onRow(raw);
    }
    if (rc == SQLITE_OK || rc == SQLITE_DONE) return true;
    if (error_.empty()) error_ = sqlite3_errmsg(db_.get());
    return false;
  }

  static std::string Text(sqlite3_stmt* row, int col) {
    const unsigned char* text = sqlite3_column_text(row, col);
    if (text == nullptr) return std::string();
    return std::string(reinterpret_cast<const char*>(text),
                       static_cast<size_t>(sqlite3_column_bytes(row, col)));
  }
  static long long Int(sqlite3_stmt* row, int col) { return sqlite3_column_int64(row, col); }

  const std::string& error() const { return error_; }

 private:
  std::string path_;
  Connection db_;
  std::string error_;
  std::map<std::string, std::set<std::string>> columns_;
};

bool ReadAlbums(Catalogue& c, json& albums) {
  std::string sql = "SELECT album_id,pfix,album_title,album_path,disp_order," +
                    c.ColumnOrNull("album", "coverart_path") +
                    " FROM album ORDER BY pfix,disp_order,album_id";
  return c.ForEachRow(sql, [&albums](sqlite3_stmt* row) {
    albums.push_back({{"id", Catalogue::Int(row, 0)},
                      {"prefix", Catalogue::Text(row, 1)},
                      {"title", Catalogue::Text(row, 2)},
                      {"path", Catalogue::Text(row, 3)},
                      {"order", Catalogue::Int(row, 4)},
                      {"cover", Catalogue::Text(row, 5)}});
  });
}

bool ReadSongs(Catalogue& c, json& songs) {
  std::string sql =
      "SELECT song_id,pfix,album_id,song_title,midi_path,audio_path,format,length,mtime,"
      "disp_order," +
      c.ColumnOrNull("song", "composer") + "," + c.ColumnOrNull("song", "genre") + "," +
      c.ColumnOrNull("song", "purchased_date") + " FROM song ORDER BY album_id,disp_order,song_id";
  return c.ForEachRow(sql, [&songs](sqlite3_stmt* row) {
    songs.push_back({{"id", Catalogue::Int(row, 0)},
                     {"prefix", Catalogue::Text(row, 1)},
                     {"album_id", Catalogue::Int(row, 2)},
                     {"title", Catalogue::Text(row, 3)},
                     {"midi_path", Catalogue::Text(row, 4)},
                     {"audio_path", Catalogue::Text(row, 5)},
                     {"format", Catalogue::Text(row, 6)},
                     {"length", Catalogue::Int(row, 7)},
                     {"mtime", Catalogue::Text(row, 8)},
                     {"order", Catalogue::Int(row, 9)},
                     {"composer", Catalogue::Text(row, 10)},
                     {"genre", Catalogue::Text(row, 11)},
                     {"purchased_date", Catalogue::Text(row, 12)}});
  });
}

bool ReadPlaylists(Catalogue& c, json& playlists) {
  std::map<long long, size_t> index;  // playlist_id -> position in playlists
  bool ok = c.ForEachRow(
      "SELECT playlist_id,ppfix,playlist_title,disp_order FROM playlist "
      "ORDER BY disp_order,playlist_id",
      [&](sqlite3_stmt* row) {
        index[Catalogue::Int(row, 0)] = playlists.size();
        playlists.push_back({{"id", Catalogue::Int(row, 0)},
                             {"prefix", Catalogue::Text(row, 1)},
                             {"title", Catalogue::Text(row, 2)},
                             {"order", Catalogue::Int(row, 3)},
                             {"entries", json::array()}});
      });
  if (!ok) return false;
  return c.ForEachRow(
      "SELECT psong_id,playlist_id,pfix,song_id,disp_order FROM psong "
      "ORDER BY playlist_id,disp_order,psong_id",
      [&](sqlite3_stmt* row) {
        auto found = index.find(Catalogue::Int(row, 1));
        if (found == index.end()) return;  // an entry of a playlist that is gone
        playlists[found->second]["entries"].push_back({{"id", Catalogue::Int(row, 0)},
                                                       {"prefix", Catalogue::Text(row, 2)},
                                                       {"song_id", Catalogue::Int(row, 3)},
                                                       {"order", Catalogue::Int(row, 4)}});
      });
}

int Usage() {
  std::fprintf(stderr, "usage: songdb2json [--root DIR] [-u CATALOGUE]\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  std::string path;
  std::string root;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "-u") == 0 && i + 1 < argc) {
      path = argv[++i];
    } else if (std::strcmp(argv[i], "--root") == 0 && i + 1 < argc) {
      root = argv[++i];
    } else {
      return Usage();
    }
  }
  while (!root.empty() && root.back() == '/') root.pop_back();
  if (path.empty()) path = root + kInternalCatalogue;

  Catalogue catalogue(path);
  json doc = {{"albums", json::array()}, {"songs", json::array()}, {"playlists", json::array()}};
  if (!catalogue.Open() || !ReadAlbums(catalogue, doc["albums"]) ||
      !ReadSongs(catalogue, doc["songs"]) || !ReadPlaylists(catalogue, doc["playlists"])) {
    std::fprintf(stderr, "songdb2json: cannot read %s: %s\n", path.c_str(),
                 catalogue.error().c_str());
    return 1;
  }
  std::cout << doc.dump(-1, ' ', false, json::error_handler_t::replace) << '\n';
  std::cout.flush();
  if (!std::cout) {
    std::fprintf(stderr, "songdb2json: cannot write the export\n");
    return 1;
  }
  return 0;
}
