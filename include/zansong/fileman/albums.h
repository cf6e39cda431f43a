// Creating an album: a directory under a category folder of a storage root
// and its album row.
//
// FM_Create_New_Album(root, folder, title): root is the storage root
//   (ending in "/"), folder the category folder ("" for none, then the
//   album lies directly in the root), title the wanted title ("" gives
//   "My Album").  The title is made unique among the albums of the
//   folder's prefix and the directories of the folder: when the title or
//   its directory is taken, "_" and a number are appended, one above the
//   highest number in use from _099 down (_002 when only the plain title
//   is taken; gaps below the highest are not reused; past _099 the
//   numbers run _100, _101, ... to the first free one).  The directory,
//   named after the title by the file-name rule, is made with mode 0777;
//   no title file is written.  Returns the new album's id, or:
//     kResultDbFail (-26)        the catalogue cannot be opened;
//     kResultAlbumLimit (-30)    the prefix holds kAlbumLimit albums;
//     kResultCannotExecute (-29) the directory exists already, or the
//                                album row cannot be written (the new
//                                directory then stays);
//     kResultWriteProtected (-14) the directory cannot be made.
// CreateStoreAlbum: kept for callers that still link it; does nothing and
// returns 0, a result without meaning.
#ifndef ZANSONG_FILEMAN_ALBUMS_H_
#define ZANSONG_FILEMAN_ALBUMS_H_

#include "zansong/export.h"

extern "C" {
ZANSONG_EXPORT int FM_Create_New_Album(const char* root, const char* folder, const char* title);
ZANSONG_EXPORT int CreateStoreAlbum(const char* root, const char* folder, const char* title);
}

#endif  // ZANSONG_FILEMAN_ALBUMS_H_
