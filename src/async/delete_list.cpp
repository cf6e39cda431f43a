// FH2_delete: songs, albums, playlists and playlist entries deleted one
// target at a time in a child process.
#include <list>
#include <string>

#include "async/target_list.h"
#include "zansong/async/list_operations.h"
#include "zansong/fileman/delete.h"
#include "zansong/fileman/messages.h"
#include "zansong/fileman/playlists.h"
#include "zansong/result_codes.h"

int FH2_delete(const char* path, std::vector<TargetInfo>& targets) {
  const int size = static_cast<int>(targets.size());
  auto deleteOne = [path](const TargetInfo& target) {
    std::list<int> ids{target.id};
    const std::string pfix(1, target.pfix);
    switch (target.type) {
      case kTargetSong:
        return FH_delete_song(path, ids, pfix.c_str());
      case kTargetAlbum:
      case kTargetPlaylist:
        // A playlist is an album of the playlist side: its prefix says so.
        return FH_delete_album(path, ids, pfix.c_str());
      case kTargetPlaylistSong:
        return FH_delete_plsong(path, ids);
      default:
        return kResultOk;
    }
  };
  return zansong::RunTargetList(targets, deleteOne, zansong::CancelCheck::kNone,
                                [size](int n) { PrintDeleteMessage(n, size); });
}
