// Private: the renumbering that ends a registration, writing only the
// display orders that change.
//
// RenumberSongsByPath gives the songs of pfix the orders 1, 2, 3, ... by
// (midi_path, audio_path, song_id) in byte order, and RenumberAlbumsByPath
// the albums of pfix by (album_path, album_id): the same orders as
// SortSongByPath and ResetAlbumOrderAndPath.  A row that already holds its
// order is not written, so a registration that changed nothing writes
// nothing.  Each write goes through SetOrder inside batch.  1, or 0 after
// the same diagnostics as those two functions ("Error! :ReOrder" last).
#ifndef ZANSONG_SRC_FILEMAN_REGISTER_ORDER_H_
#define ZANSONG_SRC_FILEMAN_REGISTER_ORDER_H_

#include "fileman/register_batch.h"
#include "zansong/db/dbsongman.h"

namespace zansong {

int RenumberSongsByPath(TDBSongMan& man, const char* pfix, WriteBatch& batch);
int RenumberAlbumsByPath(TDBSongMan& man, const char* pfix, WriteBatch& batch);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_REGISTER_ORDER_H_
