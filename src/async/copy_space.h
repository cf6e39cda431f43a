// The free-space check of the copy lists, made in the calling process
// before any child starts.
//
// AlbumCopySpaceNeeded(path, targets): for each album target (type 2), in
//   order, the size of its directory (path + the album's album_path in the
//   catalogue of path, FH2_get_dir_size); each album replaces the figure of
//   the one before, so the result is the size of the last album found (0
//   when none is).  -1 when the catalogue of path cannot be opened.
// SongCopySpaceNeeded(path, targets): the sum, over the song targets (type
//   1), of the sizes of path + midi_path and path + audio_path, leaving out
//   an empty path.  -1 when the catalogue cannot be opened.
// CheckCopySpace(path, needed): kResultOk when needed is -1 (no check) or
//   needed + kCopySpaceMargin bytes fit in the free space of path's file
//   system (CheckDiskFree); kResultNoSpace otherwise.
#ifndef ZANSONG_SRC_ASYNC_COPY_SPACE_H_
#define ZANSONG_SRC_ASYNC_COPY_SPACE_H_

#include <vector>

#include "zansong/async/targets.h"

namespace zansong {

// The room kept free beyond the files themselves: 1025 KiB.
constexpr long long kCopySpaceMargin = 1025LL * 1024;

long long AlbumCopySpaceNeeded(const char* path, const std::vector<TargetInfo>& targets);
long long SongCopySpaceNeeded(const char* path, const std::vector<TargetInfo>& targets);
int CheckCopySpace(const char* path, long long needed);

}  // namespace zansong

#endif  // ZANSONG_SRC_ASYNC_COPY_SPACE_H_
