// The title and directory name of a new album.
//
// ChooseAlbumName(man, parent, title, prefix, &chosenTitle, &dirName): a
// name is free when no album of prefix has it as title (GetIDByTitle) and
// parent + its directory name is no existing directory (DirExists).  The
// directory name of title is GetExternalName2(title); that of a numbered
// title is GetExternalName2(title) + "_" + the number.  The chosen title is
// title when it is free; otherwise the first taken number is searched from
// title_099 downward to title_002, and the number above it is used, three
// digits wide (title_002 when only the plain title is taken; gaps below
// the highest number are not reused).  When title_099 is taken, numbers
// run from 100 upward, unpadded, to the first free one.  parent ends in
// "/".  Nothing is created.
#ifndef ZANSONG_SRC_FILEMAN_ALBUM_TITLE_H_
#define ZANSONG_SRC_FILEMAN_ALBUM_TITLE_H_

#include "zansong/common/tsstring.h"
#include "zansong/db/dbsongman.h"

namespace zansong {

void ChooseAlbumName(TDBSongMan& man, const TSString& parent, const TSString& title,
                     const char* prefix, TSString* chosenTitle, TSString* dirName);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_ALBUM_TITLE_H_
