// FH2_add_to_playlist: songs and whole albums added to a playlist one
// target at a time in a child process, after the query targets have been
// expanded into songs.
#include <list>
#include <string>

#include "async/query_targets.h"
#include "async/target_list.h"
#include "zansong/async/list_operations.h"
#include "zansong/fileman/playlists.h"
#include "zansong/result_codes.h"

int FH2_add_to_playlist(const char* path, std::vector<TargetInfo> targets, int playlist_id,
                        const char* text) {
  // Both catalogues stay open (idle) until the child has ended.
  zansong::QueryCatalogues catalogues;
  const int queries = zansong::ExpandQueryTargets(path, targets, catalogues);
  const int size = static_cast<int>(targets.size());
  auto addOne = [path, playlist_id, text](const TargetInfo& target) {
    if (target.type != kTargetSong && target.type != kTargetAlbum) return kResultOk;
    std::list<int> ids{target.id};
    const std::string pfix(1, target.pfix);
    const int byAlbum = target.type == kTargetAlbum ? 1 : 0;
    return FH_Add_To_Playlist(path, ids, pfix.c_str(), playlist_id, text, byAlbum);
  };
  return zansong::RunTargetList(
      targets, addOne, zansong::CancelCheck::kNone,
      [queries, size](int n) { zansong::ShowAddToPlaylistProgress(n, queries, size); });
}
