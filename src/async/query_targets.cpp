#include "async/query_targets.h"

#include <sqlite3.h>
#include <strings.h>

#include <cstring>
#include <string>

#include "common/device_path.h"
#include "zansong/fileman/messages.h"

namespace zansong {
namespace {

// The song target named by one row of a query.
TargetInfo SongOfRow(sqlite3_stmt* row) {
  TargetInfo song{};
  song.type = kTargetSong;
  for (int col = 0; col < sqlite3_column_count(row); ++col) {
    const char* name = sqlite3_column_name(row, col);
    if (name == nullptr) continue;
    if (strcasecmp(name, "pfix") == 0) {
      const unsigned char* text = sqlite3_column_text(row, col);
      song.pfix = text != nullptr ? static_cast<char>(text[0]) : '\0';
    } else if (strcasecmp(name, "song_id") == 0) {
      song.id = sqlite3_column_int(row, col);
    }
  }
  return song;
}

}  // namespace

int ExpandQueryTargets(const char* path, std::vector<TargetInfo>& targets,
                       QueryCatalogues& catalogues) {
  catalogues.internal.open(DevicePathFor(DevicePath::kSongRoot).c_str(), nullptr);
  catalogues.local.open(path, nullptr);
  int queries = 0;
  // By index: the vector grows while it is walked.
  for (size_t i = 0; i < targets.size(); ++i) {
    if (targets[i].type != kTargetQuery) continue;
    ++queries;
    std::string sql(targets[i].sql, ::strnlen(targets[i].sql, sizeof targets[i].sql));
    for (SimpleDB* db : {&catalogues.internal, &catalogues.local}) {
      db->read(sql.c_str(), [&targets](sqlite3_stmt* row) {
        targets.push_back(SongOfRow(row));
        return 0;
      });
    }
  }
  return queries;
}

void ShowAddToPlaylistProgress(int n, int k, int size) {
  PrintAddToPlaylistMessage(n > k ? n - k : n, size - k);
}

}  // namespace zansong
