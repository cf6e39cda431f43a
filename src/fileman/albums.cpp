// FM_Create_New_Album: an album directory and its row.
#include <sys/stat.h>

#include <string>

#include "fileman/album_title.h"
#include "fileman/catalogue_session.h"
#include "storage/enterable_dir.h"
#include "zansong/db/songinfo.h"
#include "zansong/fileman/albums.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"
#include "zansong/storage/naming.h"

namespace {

const char kDefaultAlbumTitle[] = "My Album";

std::string TextOf(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

int FM_Create_New_Album(const char* root, const char* folder, const char* title) {
  const std::string folderText = TextOf(folder);
  TSString category(folderText.c_str());
  const TSString prefix = getprefix(category);
  const std::string parent = TextOf(root) + (folderText.empty() ? "" : folderText + "/");

  zansong::CatalogueSession session(root);
  if (!session.ok()) return kResultDbFail;
  TDBSongMan& man = session.man();
  if (man.GetAlbumCount(prefix.c_str()) > kAlbumLimit - 1) return kResultAlbumLimit;

  const std::string wanted = TextOf(title).empty() ? kDefaultAlbumTitle : TextOf(title);
  std::string albumTitle, name;
  zansong::ChooseAlbumName(man, parent, wanted, prefix.c_str(), &albumTitle, &name);

  const std::string dir = parent + name;
  if (zansong::IsEnterableDir(dir.c_str())) return kResultCannotExecute;
  if (::mkdir(dir.c_str(), 0777) != 0) return kResultWriteProtected;
  const std::string albumPath = folderText.empty() ? name : folderText + "/" + name;
  int id = man.CreateAlbum(albumTitle.c_str(), albumPath.c_str(), "", prefix.c_str());
  // The directory stays when the row cannot be written.
  return id > 0 ? id : kResultCannotExecute;
}

int CreateStoreAlbum(const char*, const char*, const char*) { return 0; }
