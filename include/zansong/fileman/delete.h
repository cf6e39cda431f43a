// Deleting songs and albums: their files and their catalogue rows.
//
// FH_delete_song(root, songIds, prefix): for each song in order, deletes
//   its MIDI and audio files (and, for prefix "y", the ".jpg" picture
//   beside the last of them), then, when neither file is left, its song
//   row and its playlist entries of that prefix.  Returns 0, or:
//     kResultDbFail (-26)      the catalogue cannot be opened;
//     kResultNoData (-25)      a song row cannot be read;
//     kResultDeleteError (-34) a song file is still there: that song's rows
//                              stay, and the songs after it are untouched.
// FH_delete_album(root, ids, prefix): ids are albums, or playlists when
//   prefix is "p" or "l".  An album's cover picture is deleted; an album
//   directory is removed with its song files and title file, except the
//   protected category folders (IsDeletePath false), which are emptied of
//   their song files and kept together with their album row.  Once a
//   protected folder was met, the album rows of the later ids of the same
//   call are kept too.  For each id one remote-control notice line is
//   printed; then the songs' rows and playlist entries (and the album row,
//   or the playlist row and its entries) are deleted.  Returns 0, or:
//     kResultDbFail (-26)          the catalogue cannot be opened;
//     kResultNoData (-25)          an album id without a row: ends before
//                                  anything of it is touched;
//     kResultWriteProtected (-14)  a song file or the directory could not
//                                  be deleted: ends at once, this id's rows
//                                  untouched;
//     kResultRepairFailed (-40)    the directory cannot be read: ends after
//                                  this id's rows are deleted.
// IsDeletePath(albumPath): false for the protected folders "Recorded
//   Songs", "Recorded Songs/Temporary Folder", "Recorded Songs/Keep",
//   "Downloaded Songs", "FromToPC" and "" (the storage root), true for any
//   other path.
// GetTodaysDateString(): today's local date as YYYY-MM-DD.
#ifndef ZANSONG_FILEMAN_DELETE_H_
#define ZANSONG_FILEMAN_DELETE_H_

#include <list>

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

ZANSONG_EXPORT int FH_delete_song(const char* root, std::list<int>& songIds, const char* prefix);
ZANSONG_EXPORT int FH_delete_album(const char* root, std::list<int>& ids, const char* prefix);
ZANSONG_EXPORT bool IsDeletePath(const char* albumPath);
ZANSONG_EXPORT TSString GetTodaysDateString();

#endif  // ZANSONG_FILEMAN_DELETE_H_
