// Choosing a free title and directory name for a new album.
#include "fileman/album_title.h"

#include "fileman/unique_title.h"
#include "storage/subdirectory_names.h"
#include "zansong/storage/naming.h"

namespace zansong {

void ChooseAlbumName(TDBSongMan& man, const std::string& parent, const std::string& title,
                     const char* prefix, std::string* chosenTitle, std::string* dirName) {
  const std::string baseName = GetExternalName2(title.c_str()).c_str();
  // Up to a hundred names are tried: the folder is listed once for all.
  const std::set<std::string> dirs = SubdirectoryNamesUpper(parent);
  const std::string suffix = UniqueTitleSuffix([&](const std::string& s) {
    return man.GetIDByTitle("album", (title + s).c_str(), prefix) == 0 &&
           dirs.count(UpperAsciiName(baseName + s)) == 0;
  });
  *chosenTitle = title + suffix;
  *dirName = baseName + suffix;
}

}  // namespace zansong
