// Appending one playlist entry within the limits; the playlist prefix of a
// storage root.
#include "fileman/playlist_entries.h"

#include "common/device_path.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

namespace zansong {

const char* PlaylistPrefixFor(const char* root) {
  return root != nullptr && IsInternalSongRoot(root) ? "l" : "p";
}

int AddPlaylistEntry(CatalogueSession& session, int playlistId, int songId,
                     const char* playlistPrefix, const char* songPrefix) {
  TDBSongMan& man = session.man();
  if (man.GetSongCount(0, playlistPrefix) > kPrefixSongLimit - 1) return kResultPrefixFull;
  if (man.GetSongCount(playlistId, playlistPrefix) > kAlbumSongLimit - 1) return kResultAlbumFull;
  const int key = session.Insert(
      [&] { return man.AddToPlaylist(playlistId, songId, playlistPrefix, songPrefix); });
  return key != 0 ? kResultOk : kResultCannotExecute;
}

}  // namespace zansong
