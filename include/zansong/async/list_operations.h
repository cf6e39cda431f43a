// Delete, copy and add-to-playlist requests over a list of targets of
// mixed kinds, each run in a forked child process by FH2_async.
//
// path is a storage root with a final "/" (the catalogue the single-target
// operations work on); targets are TargetInfo records (zansong/async/
// targets.h), read in order.  In the child each target of a handled type is
// passed to the single-target operation with a one-element id list (and its
// pfix as a one-character string where named); a target of another type is
// skipped.  After each target its zero-based index is reported to this
// process; the first negative result ends the child, the later targets stay
// untouched and the call returns that result.  Work done before a failure
// or a cancel stays.
//
// FH2_delete(path, targets): song (1) FH_delete_song(path, {id}, pfix);
//   album (2) and playlist (4) FH_delete_album(path, {id}, pfix); playlist
//   entry (3) FH_delete_plsong(path, {id}).  Progress
//   PrintDeleteMessage(n, size).
// FH2_copy_playlist(path, targets): playlist (4) FH_Copy_Playlist(path,
//   {id}, "p", 0), each into a new playlist.  Progress
//   PrintCopyMessage(-1, n, size, false).
// FH2_copy_album(path, targets, dest): album (2) FH_copy_album(path, {id},
//   dest, 0).  Progress PrintCopyMessage(-1, n, size, true).
// FH2_copy_song(path, targets, album_id): song (1) FH_copy_song_usb(path,
//   {id}, album_id) (0: the keep album).  Progress as FH2_copy_album.
// FH2_add_to_playlist(path, targets, playlist_id, text): first expands
//   every query target (5) into song targets appended to its own copy of
//   the list, from the rows of its query on the internal catalogue and then
//   on the catalogue of path; then song (1) FH_Add_To_Playlist(path, {id},
//   pfix, playlist_id, text, 0) and album (2) the same with 1 (all songs of
//   the album).  Progress PrintAddToPlaylistMessage(n > k ? n - k : n,
//   size - k), k the number of query targets, size the expanded list's.
//
// Progress (n the reported value, size the number of targets) is shown as
// FH2_async shows it: at once for 20 or more targets, every 500 ms, and
// once more at the end of a successful run that showed it.
//
// The copy lists first check the free space of path's file system: for
// the song files of the song targets together, or for the directory of the
// last album target, plus 1,049,600 bytes; when it is short they return
// kResultNoSpace (-28) and start no child (no check when the catalogue of
// path cannot be opened).  Before reporting each target a copy child looks
// at its cancel flag and ends with kResultCopyCancelled (-31) when it is
// set.  The child inherits this process's signal handlers: when the host's
// handler of signal 2 raises the cancel flag, a cancel stops a copy at its
// next block (the partial files removed, the rows of finished copies
// written) and the call returns -31; when signal 2 ends the child, the call
// returns 0 and the caller tells the cancel by GetCancelFlag().
//
// Results: 0, the first negative result code of a target (those of the
// single-target operations), -31 or -28 as above.
#ifndef ZANSONG_ASYNC_LIST_OPERATIONS_H_
#define ZANSONG_ASYNC_LIST_OPERATIONS_H_

#include <vector>

#include "zansong/async/targets.h"
#include "zansong/export.h"

ZANSONG_EXPORT int FH2_delete(const char* path, std::vector<TargetInfo>& targets);
ZANSONG_EXPORT int FH2_copy_playlist(const char* path, std::vector<TargetInfo>& targets);
ZANSONG_EXPORT int FH2_copy_album(const char* path, std::vector<TargetInfo>& targets,
                                  const char* dest);
ZANSONG_EXPORT int FH2_copy_song(const char* path, std::vector<TargetInfo>& targets, int album_id);
ZANSONG_EXPORT int FH2_add_to_playlist(const char* path, std::vector<TargetInfo> targets,
                                       int playlist_id, const char* text);

#endif  // ZANSONG_ASYNC_LIST_OPERATIONS_H_
