// Playlists: creating one, copying playlists into one, adding songs or
// whole albums to one, and removing entries.
//
// A playlist lives in a catalogue only: a playlist row and psong rows that
// point at songs.  Its prefix is "l" in the internal catalogue (root is the
// internal song root) and "p" in any other.  Each operation opens the
// catalogue(s) it names, works through its list in order, commits and
// closes; a failure ends it and the rows written before it stay.  Nothing
// is printed.
//
// FM_Create_New_Playlist(root, title): "" gives "My Playlist"; the title
//   is made unique among the playlists of the catalogue (as album titles
//   are, asking the catalogue only).  The new playlist's id, or
//   kResultDbFail (-26), kResultPlaylistLimit (-36) when the catalogue
//   holds kAlbumLimit playlists, kResultCannotExecute (-29) when the row
//   cannot be written.
// FH_Copy_Playlist(root, playlistIds, srcPrefix, destPlaylistId): appends
//   the entries of each source playlist, in order, to the destination.
//   The sources are read from the internal catalogue when srcPrefix is
//   "l", else from root's.  With destPlaylistId 0 a playlist titled like
//   the first source (no numbering) is created, and the later sources are
//   merged into that same playlist.
// FH_Add_To_Playlist(root, ids, srcPrefix, playlistId, destPrefix,
//   byAlbum): ids are songs, or albums whose songs are added in display
//   order when byAlbum is 1; read from the internal catalogue when
//   srcPrefix is "d", else from root's; added to playlistId in the internal
//   catalogue when destPrefix is "l", else in root's.
// Both return 0, or: kResultDbFail (-26); kResultPlaylistLimit (-36) for a
//   new destination when the catalogue is full of playlists;
//   kResultPrefixFull (-32) when the catalogue holds kPrefixSongLimit
//   playlist entries; kResultAlbumFull (-27) when the playlist holds
//   kAlbumSongLimit entries; kResultCannotExecute (-29) when an entry
//   cannot be written.
// FH_delete_plsong(root, psongIds): deletes the listed playlist entries,
//   closing the catalogue after each deletion and opening it again for the
//   next.  0, or kResultDbFail (-26) when the catalogue cannot be opened.
// AddToULQPlaylist: kept for callers that still link it; does nothing and
// returns 0, a result without meaning.
#ifndef ZANSONG_FILEMAN_PLAYLISTS_H_
#define ZANSONG_FILEMAN_PLAYLISTS_H_

#include <list>

#include "zansong/export.h"

extern "C" {
ZANSONG_EXPORT int FM_Create_New_Playlist(const char* root, const char* title);
ZANSONG_EXPORT int AddToULQPlaylist(int id);
}

ZANSONG_EXPORT int FH_Copy_Playlist(const char* root, std::list<int>& playlistIds,
                                    const char* srcPrefix, int destPlaylistId);
ZANSONG_EXPORT int FH_Add_To_Playlist(const char* root, std::list<int>& ids, const char* srcPrefix,
                                      int playlistId, const char* destPrefix, int byAlbum);
ZANSONG_EXPORT int FH_delete_plsong(const char* root, std::list<int>& psongIds);

#endif  // ZANSONG_FILEMAN_PLAYLISTS_H_
