// The query targets of an add-to-playlist list, expanded into song targets
// in the calling process, and the progress shown for the expanded list.
//
// QueryCatalogues: the two catalogues the queries run on, the internal one
// (system root + "/usr/local/songs/") and the one of the request's storage
// root; opened by ExpandQueryTargets and kept open (idle) until the object
// dies, after the child has ended.
//
// ExpandQueryTargets(path, targets, catalogues): walks targets by index;
//   for each query target (type 5) runs its sql text on the internal
//   catalogue and then on the catalogue of path, and appends for every row
//   a song target (type 1) whose pfix is the first character of the row's
//   "pfix" column and whose id is its "song_id" column (column names
//   matched without regard to case; a missing column leaves '\0' or 0).
//   The appended targets are not expanded again.  When path is the internal
//   root the query runs twice on it and every song is appended twice.
//   Returns the number of query targets, k.
//
// ShowAddToPlaylistProgress(n, k, size): the progress box for reported value
//   n of a list of size targets after expansion, k of them queries:
//   PrintAddToPlaylistMessage(n > k ? n - k : n, size - k).  The discount
//   assumes that the query targets stand first in the list.
#ifndef ZANSONG_SRC_ASYNC_QUERY_TARGETS_H_
#define ZANSONG_SRC_ASYNC_QUERY_TARGETS_H_

#include <vector>

#include "zansong/async/targets.h"
#include "zansong/db/simpledb.h"

namespace zansong {

struct QueryCatalogues {
  SimpleDB internal;
  SimpleDB local;
};

int ExpandQueryTargets(const char* path, std::vector<TargetInfo>& targets,
                       QueryCatalogues& catalogues);

void ShowAddToPlaylistProgress(int n, int k, int size);

}  // namespace zansong

#endif  // ZANSONG_SRC_ASYNC_QUERY_TARGETS_H_
