// Shared steps of the playlist operations.
//
// PlaylistPrefixFor(root): "l" for the internal song root, "p" for any
//   other storage root.
// AddPlaylistEntry(session, playlistId, songId, playlistPrefix,
//   songPrefix): checks the limits, then appends one entry to the end of
//   the playlist inside the session's batch.  Returns kResultOk, or
//     kResultPrefixFull (-32)    the catalogue holds kPrefixSongLimit
//                                entries of the playlist prefix;
//     kResultAlbumFull (-27)     the playlist holds kAlbumSongLimit entries;
//     kResultCannotExecute (-29) the entry could not be written, or a
//                                commit of the batch failed.
#ifndef ZANSONG_SRC_FILEMAN_PLAYLIST_ENTRIES_H_
#define ZANSONG_SRC_FILEMAN_PLAYLIST_ENTRIES_H_

#include "fileman/catalogue_session.h"

namespace zansong {

const char* PlaylistPrefixFor(const char* root);

int AddPlaylistEntry(CatalogueSession& session, int playlistId, int songId,
                     const char* playlistPrefix, const char* songPrefix);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_PLAYLIST_ENTRIES_H_
