// Choosing a free title and directory name for a new album.
#include "fileman/album_title.h"

#include "fileman/unique_title.h"
#include "zansong/storage/files.h"
#include "zansong/storage/naming.h"

namespace zansong {

void ChooseAlbumName(TDBSongMan& man, const std::string& parent, const std::string& title,
                     const char* prefix, std::string* chosenTitle, std::string* dirName) {
  const std::string baseName = GetExternalName2(title.c_str()).c_str();
  const std::string suffix = UniqueTitleSuffix([&](const std::string& s) {
    return man.GetIDByTitle("album", (title + s).c_str(), prefix) == 0 &&
           !DirExists((parent + baseName + s).c_str());
  });
  *chosenTitle = title + suffix;
  *dirName = baseName + suffix;
}

}  // namespace zansong
