// Appending one playlist entry within the limits; the playlist prefix of a
// storage root.
#include "fileman/playlist_entries.h"

#include <sqlite3.h>

#include "common/device_path.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

namespace zansong {

const char* PlaylistPrefixFor(const char* root) {
  return root != nullptr && IsInternalSongRoot(root) ? "l" : "p";
}

int AddPlaylistEntry(TDBSongMan& man, WriteBatch& batch, int playlistId, int songId,
                     const char* playlistPrefix, const char* songPrefix) {
  if (man.GetSongCount(0, playlistPrefix) > kPrefixSongLimit - 1) return kResultPrefixFull;
  if (man.GetSongCount(playlistId, playlistPrefix) > kAlbumSongLimit - 1) return kResultAlbumFull;
  batch.BeforeWrite();
  // AddToPlaylist returns the new key whether or not the insert worked;
  // the connection's change count tells.
  int changesBefore = sqlite3_total_changes(man.db);
  man.AddToPlaylist(playlistId, songId, playlistPrefix, songPrefix);
  bool written = sqlite3_total_changes(man.db) != changesBefore;
  batch.AfterWrite();
  return written ? kResultOk : kResultCannotExecute;
}

}  // namespace zansong
