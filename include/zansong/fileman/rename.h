// Renaming an album, a playlist or a song.
//
// FH_rename(root, id, newTitle, kind, renameFiles):
//   kind 1, album: writes the title to the album row and to the album's
//     title file ".zanalbum"; the directory keeps its name.
//   kind 2, playlist: writes the title to the playlist row.
//   any other kind, song: a song already titled newTitle is left as it is.
//     Otherwise the title is written into the song's MIDI file (its new
//     modification time goes to the row's mtime) and to the row.  With
//     renameFiles non-zero the MIDI file and its audio companion (or an
//     audio-only song's file) are renamed after the title, keeping their
//     extensions and made unique in their directory by "_002", "_003", ...,
//     and the row's paths follow.
//   Returns 0, or kResultRenameDbFail (-1) when the catalogue cannot be
//   opened, the MIDI file cannot be rewritten (the title is still written
//   to the row) or a file cannot be renamed (the stored paths then stay as
//   they were, although a file may have been renamed).
#ifndef ZANSONG_FILEMAN_RENAME_H_
#define ZANSONG_FILEMAN_RENAME_H_

#include "zansong/export.h"

extern "C" {
ZANSONG_EXPORT int FH_rename(const char* root, int id, const char* newTitle, int kind,
                             int renameFiles);
}

#endif  // ZANSONG_FILEMAN_RENAME_H_
