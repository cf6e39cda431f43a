// FH2_copy_song, FH2_copy_album and FH2_copy_playlist: copies over a list
// of targets in a child process, the song and album copies after a check
// of the free space they need.
#include <functional>
#include <list>

#include "async/copy_space.h"
#include "async/target_list.h"
#include "zansong/async/list_operations.h"
#include "zansong/fileman/copy.h"
#include "zansong/fileman/messages.h"
#include "zansong/fileman/playlists.h"
#include "zansong/result_codes.h"

namespace {

// The progress of a copy list; cancellable adds the Cancel button.
std::function<void(int)> CopyProgress(const std::vector<TargetInfo>& targets, bool cancellable) {
  const int size = static_cast<int>(targets.size());
  return [size, cancellable](int n) { PrintCopyMessage(-1, n, size, cancellable); };
}

}  // namespace

int FH2_copy_song(const char* path, std::vector<TargetInfo>& targets, int album_id) {
  int space = zansong::CheckCopySpace(path, zansong::SongCopySpaceNeeded(path, targets));
  if (space != kResultOk) return space;
  auto copyOne = [path, album_id](const TargetInfo& target) {
    if (target.type != kTargetSong) return kResultOk;
    std::list<int> ids{target.id};
    return FH_copy_song_usb(path, ids, album_id);
  };
  return zansong::RunTargetList(targets, copyOne, zansong::CancelCheck::kBeforeEachReport,
                                CopyProgress(targets, true));
}

int FH2_copy_album(const char* path, std::vector<TargetInfo>& targets, const char* dest) {
  int space = zansong::CheckCopySpace(path, zansong::AlbumCopySpaceNeeded(path, targets));
  if (space != kResultOk) return space;
  auto copyOne = [path, dest](const TargetInfo& target) {
    if (target.type != kTargetAlbum) return kResultOk;
    std::list<int> ids{target.id};
    return FH_copy_album(path, ids, dest, 0);
  };
  return zansong::RunTargetList(targets, copyOne, zansong::CancelCheck::kBeforeEachReport,
                                CopyProgress(targets, true));
}

int FH2_copy_playlist(const char* path, std::vector<TargetInfo>& targets) {
  // Every source is read from path's own catalogue ("p"), whatever the
  // target's prefix, and becomes a new playlist there.
  auto copyOne = [path](const TargetInfo& target) {
    if (target.type != kTargetPlaylist) return kResultOk;
    std::list<int> ids{target.id};
    return FH_Copy_Playlist(path, ids, "p", 0);
  };
  return zansong::RunTargetList(targets, copyOne, zansong::CancelCheck::kNone,
                                CopyProgress(targets, false));
}
