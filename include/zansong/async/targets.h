// The targets of a multi-target request, and the small queries the host
// makes before such a request.
//
// TargetInfo: one target, built by the host: its type code (below), the
// storage prefix letter, the catalogue id (a song_id for a song, an
// album_id for an album or playlist, a psong id for a playlist entry) and,
// for a query target only, the text of an SQL query whose rows name songs
// by the columns "pfix" and "song_id" (NUL-terminated).
//
// FH2_get_target_type(word): the type code of "song" (1), "album" (2),
//   "psong" (3), "playlist" (4), "sql" (5), compared exactly (case
//   matters); 0 for any other word and for null.
// FH2_is_write_protect(path): 1 when no file can be created under the
//   prefix path (path + a unique suffix, made with mkstemp and removed at
//   once), else 0.  A path of more than 249 bytes cannot take the suffix
//   and gives 1.
// FH2_get_file_size(path): the size of a regular file; 0 when it cannot be
//   examined or is no regular file (a directory, a device).
// FH2_get_dir_size(dir): the sum of FH2_get_file_size over the entries
//   directly in dir (with or without a final "/"; not recursive); 0 when it
//   cannot be opened.
// FH2_stripxp(path, song_id): runs "/usr/local/bin/stripxp.sh" (below the
//   system root) with the whole path of the song's MIDI file (path + its
//   midi_path) as its one argument, never through a shell, then prints the
//   remote-control box with message 0 (done) or, when the catalogue of path
//   has no such song (or cannot be opened), message kMsgFileDoesntExist.
//   The script's own result is not examined.  Returns 0, or
//   kResultWriteProtected (printing nothing) when FH2_is_write_protect(path).
// FH2_is_dir_exists, the case-insensitive directory test, is declared with
// the file primitives (zansong/storage/files.h).
#ifndef ZANSONG_ASYNC_TARGETS_H_
#define ZANSONG_ASYNC_TARGETS_H_

#include <cstdint>

#include "zansong/export.h"

struct TargetInfo {
  int32_t type;
  char pfix;
  int32_t id;
  char sql[256];
};

// Target type codes.
constexpr int kTargetUnknown = 0;
constexpr int kTargetSong = 1;
constexpr int kTargetAlbum = 2;
constexpr int kTargetPlaylistSong = 3;
constexpr int kTargetPlaylist = 4;
constexpr int kTargetQuery = 5;

ZANSONG_EXPORT int FH2_get_target_type(const char* word);
ZANSONG_EXPORT int FH2_is_write_protect(const char* path);
ZANSONG_EXPORT long long FH2_get_file_size(const char* path);
ZANSONG_EXPORT long long FH2_get_dir_size(const char* dir);
ZANSONG_EXPORT int FH2_stripxp(const char* path, int song_id);

#endif  // ZANSONG_ASYNC_TARGETS_H_
