// Display-order renumbering with its updates grouped by a WriteBatch, for
// an operation that renumbers right after a run of writes of its own.
//
// SortSongByPath(man, pfix, batch) and ResetAlbumOrderAndPath(man, root,
// pfix, batch) write the same rows, print the same lines and return the
// same results as the TDBSongMan members of the same names, but run each
// update inside the batch's transaction (the caller commits).  With a null
// batch each update commits on its own, exactly as the members do.
//
// ChangeOrder(man, ids, id, prefix, pos, batch) and ReOrder(man, id,
// prefix, batch) likewise stand for the members of the same names; ReOrder
// does not write a row that already holds its new position.
#ifndef ZANSONG_SRC_DB_BATCHED_ORDER_H_
#define ZANSONG_SRC_DB_BATCHED_ORDER_H_

#include <list>

#include "db/write_batch.h"
#include "zansong/db/dbsongman.h"

namespace zansong {

int SortSongByPath(TDBSongMan& man, char const* pfix, WriteBatch* batch);
int ResetAlbumOrderAndPath(TDBSongMan& man, char const* root, char const* pfix, WriteBatch* batch);
int ChangeOrder(TDBSongMan& man, std::list<int>& ids, int id, char const* prefix, int pos,
                WriteBatch* batch);
int ReOrder(TDBSongMan& man, int id, char const* prefix, WriteBatch* batch);

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_BATCHED_ORDER_H_
