// Copying whole albums, as new albums or into an existing one.
#include <sys/stat.h>

#include <list>
#include <string>

#include "fileman/album_title.h"
#include "fileman/catalogue_session.h"
#include "storage/enterable_dir.h"
#include "zansong/db/dbsongman.h"
#include "zansong/db/songinfo.h"
#include "zansong/fileman/copy.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

namespace {

// The album that receives one source album's songs.
struct Target {
  int id = 0;
  int result = kResultOk;
};

// A new album for the source album sourceId: a free title and directory
// under folder, the directory made, the row written.
Target NewAlbumFor(TDBSongMan& man, const TSString& root, const TSString& folder,
                   const TSString& prefix, int sourceId) {
  Target target;
  const std::string folderPart = folder.Length() != 0 ? std::string(folder.c_str()) + "/" : "";
  std::string title, dirName;
  zansong::ChooseAlbumName(man, std::string(root.c_str()) + folderPart,
                           man.GetTextByID("album", "album_title", sourceId).c_str(),
                           prefix.c_str(), &title, &dirName);
  const TSString relative = (folderPart + dirName).c_str();
  const TSString dir = root + relative;
  if (!zansong::IsEnterableDir(dir.c_str()) && ::mkdir(dir.c_str(), 0777) != 0) {
    target.result = kResultWriteProtected;
    return target;
  }
  // A failed insert (-1) is no album id: no song row may point at it.
  target.id = man.CreateAlbum(title.c_str(), relative.c_str(), "", prefix.c_str());
  if (target.id < 1) target.result = kResultCannotExecute;
  return target;
}

// The existing album destId; its directory made when it is missing.
Target ExistingAlbum(TDBSongMan& man, const TSString& root, int destId) {
  Target target;
  const TSString dir = root + man.GetTextByID("album", "album_path", destId);
  if (!zansong::IsEnterableDir(dir.c_str()) && ::mkdir(dir.c_str(), 0777) != 0) {
    target.result = kResultWriteProtected;
  }
  target.id = destId;
  return target;
}

}  // namespace

int FH_copy_album(const char* root, std::list<int>& albumIds, const char* folder, int destAlbumId) {
  TSString folderText(folder);
  const TSString prefix = getprefix(folderText);
  zansong::CatalogueSession session(root);
  if (!session.ok()) return kResultDbFail;
  TDBSongMan& man = session.man();
  const TSString rootText(root);

  std::list<int> songIds;
  for (int albumId : albumIds) {
    if (man.GetAlbumCount(prefix.c_str()) > kAlbumLimit - 1) return kResultAlbumLimit;
    Target target = destAlbumId != 0 ? ExistingAlbum(man, rootText, destAlbumId)
                                     : NewAlbumFor(man, rootText, folderText, prefix, albumId);
    if (target.result != kResultOk) return target.result;

    songIds.clear();
    man.GetSongIDList(songIds, albumId, false);
    int result = FH_copy_song_usb(root, songIds, target.id);
    if (result < 0) return result;
  }
  return kResultOk;
}
