// The title and directory name of a new album.
//
// ChooseAlbumName(man, parent, title, prefix, &chosenTitle, &dirName): a
// title is free when no album of prefix carries it (GetIDByTitle) and no
// directory of its name lies in parent (DirExists of parent + name; parent
// ends in "/").  The directory name of title is GetExternalName2(title),
// that of a numbered title GetExternalName2(title) + the same suffix.  The
// suffix is chosen by UniqueTitleSuffix: none, "_002", ... one above the
// highest number in use, or from "_100" upward.  Nothing is created.
#ifndef ZANSONG_SRC_FILEMAN_ALBUM_TITLE_H_
#define ZANSONG_SRC_FILEMAN_ALBUM_TITLE_H_

#include <string>

#include "zansong/db/dbsongman.h"

namespace zansong {

void ChooseAlbumName(TDBSongMan& man, const std::string& parent, const std::string& title,
                     const char* prefix, std::string* chosenTitle, std::string* dirName);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_ALBUM_TITLE_H_
