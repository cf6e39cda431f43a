// Registering songs from storage: bringing the catalogue of a storage root
// in step with the album directories and song files that lie on it.
//
// FM_Add_AllSongs_ByCache(root, folder, notifyRemote, keepOrder,
//                         progressTarget)
//   root ends in "/": the internal song root or a USB stick root; folder is
//   a category folder below it ("Recorded Songs", "Downloaded Songs",
//   "FromToPC", "preset") or "" for the general song area.  Scans
//   root + folder (GetDirFileList4), compares the song cache lines of the
//   scan with those of the catalogue (prefix getprefix(folder)) and writes
//   only the differences: vanished albums and songs are deleted (with
//   their playlist entries), new ones are added with ids and display orders
//   after the current largest.  Loose songs in the scanned directory make
//   that directory an album, except on the bare internal root without loose
//   songs and in "Recorded Songs" and "Downloaded Songs", which never
//   register loose songs.  With keepOrder 0 the albums and songs of the
//   prefix are renumbered by path at the end.  notifyRemote non-zero prints
//   the remote-control notice 11 after the albums; progressTarget is passed
//   as the second argument of the registering/unregistering progress lines,
//   printed every 200 songs.
//   Returns kScanOk (0); the scan's non-zero result (kScanUnreadableDir -1,
//   kScanStopped -2 for too many albums or songs, kScanTooManyLooseSongs -3);
//   or kScanStopped when the cancel flag was raised before the catalogue
//   was opened, when kAlbumLimit (499) or more album directories leave the
//   loose songs out, or when the catalogue's album list cannot be read.  Prints "DB Create Error" / "DB Open Error" when
//   the catalogue cannot be made or opened.
//   When the scan returns -1 the scan is incomplete: nothing is deleted and
//   a song already registered under the same paths is left as it is; new
//   albums and songs that the scan delivered are still added.
//   A stop (cancel, failed write, album limit) keeps every row written
//   before it.  Writes are grouped into short transactions; the write lock
//   is never held long enough to starve another process that waits on its
//   1000 ms busy timeout.
//
// FM_Add_AllSongs(root, folder)
//   The older full scan.  Its directory lister lists nothing, so it opens
//   (creating when missing) the catalogue, adds nothing, closes it and
//   returns 0.
//
// FM_Add_Songs(path, n)
//   Does nothing; its result carries no meaning.
#ifndef ZANSONG_FILEMAN_REGISTER_H_
#define ZANSONG_FILEMAN_REGISTER_H_

#include "zansong/export.h"

extern "C" {
ZANSONG_EXPORT int FM_Add_AllSongs_ByCache(const char* root, const char* folder, int notifyRemote,
                                           int keepOrder, int progressTarget);
ZANSONG_EXPORT int FM_Add_AllSongs(const char* root, const char* folder);
ZANSONG_EXPORT int FM_Add_Songs(const char* path, int n);
}

#endif  // ZANSONG_FILEMAN_REGISTER_H_
