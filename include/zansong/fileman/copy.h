// Copying songs and albums within one storage root (one catalogue), and
// moving recordings into the keep album.
//
// FH_copy_song_usb(root, songIds, albumId)
//   Copies each listed song, in order, into album albumId of the catalogue
//   at root; with albumId 0 moves them (rename) into the keep album
//   "Recorded Songs/Keep", made (directory and row, title "Keep", prefix
//   "r") when it is missing.  Each song gets a base name that is free in
//   the album directory (GetExternalCopyFileName3 of its MIDI path, or of
//   its audio path when it has no MIDI file) and a new song row with the
//   old title, format, length, composer, genre and sync id, the new paths,
//   the new file's modification time, no cover art or purchase date.  A
//   move then deletes the old row and its playlist entries.  Every 20th
//   song prints PrintCopyMessage(-1, count, total, true).  Before each song
//   the limits are checked, and before each copy the free space of the
//   album directory for both files plus 1 MiB.  The rows of copies are
//   written in rounds of about half a second, one commit each, with no
//   lock held while files are copied; every return has written them.
//   Returns kResultOk (0) when every song was done, or the first failure,
//   which ends the list; songs done before it keep their files and rows:
//     kResultDbFail (-26)         the catalogue cannot be opened;
//     kResultPrefixFull (-32)     the album's prefix holds kPrefixSongLimit
//                                 songs;
//     kResultAlbumFull (-27)      the album holds kAlbumSongLimit songs;
//     kResultNoData (-25)         the song row cannot be read;
//     kResultNoFile (-24)         neither of the song's files exists;
//     kResultNoSpace (-28)        not enough free space for the copy;
//     kResultCopyCancelled (-31)  the cancel flag stopped the file copy
//                                 (the partial files are deleted);
//     kResultWriteProtected (-14) a file could not be copied or moved (a
//                                 move whose second file fails puts the
//                                 first back), or the keep album's
//                                 directory cannot be made;
//     kResultCannotExecute (-29)  the new row cannot be written, or there
//                                 is no target album.
//
// FH_copy_album(root, albumIds, folder, destAlbumId)
//   Copies the songs of each listed album, in display order, with
//   FH_copy_song_usb: into a new album under the category folder (folder
//   may be ""; prefix getprefix(folder)) whose title and directory are
//   chosen as for a new album (the source title, or title_002, ...), or,
//   when destAlbumId is not 0, into that existing album.  Returns
//   kResultOk (0), kResultDbFail (-26), kResultAlbumLimit (-30) when the
//   prefix already holds kAlbumLimit albums, kResultWriteProtected (-14)
//   when the album directory cannot be made, kResultCannotExecute (-29)
//   when the album row cannot be written, or the first negative result of
//   FH_copy_song_usb.  There is no roll-back: an album copy that stops
//   half-way keeps the new album with the songs copied so far.
//
// FH_copy_ulq_song and FH_db_copy are kept for callers that still link
// them: they do nothing, and their result carries no meaning.
#ifndef ZANSONG_FILEMAN_COPY_H_
#define ZANSONG_FILEMAN_COPY_H_

#include <list>

#include "zansong/export.h"

ZANSONG_EXPORT int FH_copy_song_usb(const char* root, std::list<int>& songIds, int albumId);
ZANSONG_EXPORT int FH_copy_album(const char* root, std::list<int>& albumIds, const char* folder,
                                 int destAlbumId);
ZANSONG_EXPORT int FH_copy_ulq_song(const char*, const char*, const char*, const char*, int, int);
ZANSONG_EXPORT int FH_db_copy(const char*, const char*);

#endif  // ZANSONG_FILEMAN_COPY_H_
