// FH_sort and FH_reorder: moving items in the display order, and
// renumbering a sequence.
#include <list>

#include "db/batched_order.h"
#include "db/prefix.h"
#include "fileman/catalogue_session.h"
#include "zansong/fileman/order.h"
#include "zansong/result_codes.h"

using zansong::CatalogueSession;

int FH_sort(const char* root, std::list<int>& ids, const char* prefix, int position, int topLevel) {
  if (ids.empty()) return kResultNoFile;
  CatalogueSession session(root);
  if (!session.ok()) return kResultDbFail;
  TDBSongMan& man = session.man();
  int container = 0;
  if (topLevel == 0) {
    container = zansong::IsPlaylistPrefix(prefix)
                    ? man.GetIntByID("psong", "playlist_id", ids.front())
                    : man.GetIntByID("song", "album_id", ids.front());
  }
  zansong::WriteBatch& batch = session.batch();
  if (!man.CheckOrder(container, prefix)) {
    // An unsound order is rebuilt instead of the move.
    zansong::ReOrder(man, container, prefix, &batch);
    return kResultRepairFailed;
  }
  // A move that cannot be written is an order change that failed.
  if (!zansong::ChangeOrder(man, ids, container, prefix, position, &batch)) return kResultNoFile;
  if (!zansong::ReOrder(man, container, prefix, &batch)) return kResultNoFile;
  return session.Finish(kResultOk, kResultNoFile);
}

int FH_reorder(const char* root, int containerId, const char* prefix) {
  CatalogueSession session(root);
  if (!session.ok()) return kResultRenameDbFail;
  if (!zansong::ReOrder(session.man(), containerId, prefix, &session.batch())) {
    return kResultRenameDbFail;
  }
  return session.Finish(kResultOk, kResultRenameDbFail);
}
