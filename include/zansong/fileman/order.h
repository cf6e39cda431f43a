// Changing the display order of songs, albums, playlists and playlist
// entries.
//
// FH_sort(root, ids, prefix, position, topLevel): moves the listed items,
//   in list order, to positions position, position+1, ... and renumbers the
//   sequence 1, 2, 3, ...  With topLevel 0 the items are the songs of one
//   album (or the entries of one playlist for prefix "p" or "l"), found
//   from the first id; otherwise they are albums (or playlists).  Returns
//   0, or:
//     kResultNoFile (-24)       the list is empty, or the move failed;
//     kResultDbFail (-26)       the catalogue cannot be opened;
//     kResultRepairFailed (-40) the stored order was not sound: it has been
//                               renumbered instead and nothing moved.
// FH_reorder(root, containerId, prefix): renumbers the sequence of
//   containerId and prefix (0: the albums or playlists themselves) 1, 2,
//   3, ... in its current order.  0, or kResultRenameDbFail (-1) when the
//   catalogue cannot be opened.
// Long renumberings are written in short transactions.
#ifndef ZANSONG_FILEMAN_ORDER_H_
#define ZANSONG_FILEMAN_ORDER_H_

#include <list>

#include "zansong/export.h"

ZANSONG_EXPORT int FH_sort(const char* root, std::list<int>& ids, const char* prefix, int position,
                           int topLevel);
extern "C" {
ZANSONG_EXPORT int FH_reorder(const char* root, int containerId, const char* prefix);
}

#endif  // ZANSONG_FILEMAN_ORDER_H_
