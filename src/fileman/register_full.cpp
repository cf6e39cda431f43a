// FM_Add_AllSongs, the older full scan, and the FM_Add_Songs stub.
#include <cstdio>
#include <list>
#include <string>

#include "common/upper_extension.h"
#include "fileman/catalogue_session.h"
#include "zansong/common/charset.h"
#include "zansong/common/path.h"
#include "zansong/common/sysroot.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/register.h"
#include "zansong/formats/smf.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"
#include "zansong/storage/scan.h"

namespace {

// Fills info for one listed file; false when the file is no song of its
// own (not a song file, or an audio file beside a MIDI file).
bool ClassifyFile(const TSString& root, const TSString& path, SongInfo* info) {
  const TSString ext = zansong::UpperExtension(path);
  const TSString rel = path.SubString(root.Length() + 1);
  if (ext == ".MID") {
    info->midiPath = rel;
    info->format = "SMF";
    TSString stem = ChangeFileExtSX(path, "");
    TSString mp3 = Mp3FileExists((stem + ".mp3").c_str());
    TSString wav = WavFileExists((stem + ".wav").c_str());
    if (mp3.Length() > 0) {
      info->format = "SMF,MP3";
      info->audioPath = mp3.SubString(root.Length() + 1);
    } else if (wav.Length() > 0) {
      info->format = "SMF,WAV";
      info->audioPath = wav.SubString(root.Length() + 1);
    }
    TSongPara para;
    if (GetSMFInfo(path.c_str(), &para, false, "")) {
      info->title = StringConv(para.title, "SHIFT-JIS", "UTF-8");
    }
  } else if (ext == ".WAV" || ext == ".MP3") {
    if (MidFileExists((ChangeFileExtSX(path, "") + ".mid").c_str()).Length() > 0) return false;
    info->audioPath = rel;
    info->format = ext.SubString(2);
    info->title = ExtractFileNameSX(path);
  } else {
    return false;
  }
  info->albumPath = ExtractFileDirSX(path).SubString(root.Length() + 1);
  info->mtime = GetModifyTime(path.c_str());
  return true;
}

}  // namespace

extern "C" int FM_Add_AllSongs(const char* root, const char* folder) {
  const TSString rootText(root);
  TSString folderText(folder);
  const TSString prefix = getprefix(folderText);
  TSString scanDir = rootText;
  if (folderText.Length() > 0) scanDir += folderText + "/";

  std::list<std::string> files, dirs;
  GetDirFileList2(scanDir.c_str(), files, dirs, 0, 0);  // lists nothing
  for (const std::string& f : files) {
    std::printf("%s  %s\n", f.c_str(), GetModifyTime(f.c_str()).c_str());
  }
  for (const std::string& d : dirs) std::printf("dir: %s  \n", d.c_str());
  std::fflush(stdout);

  // A catalogue that cannot be created or written is reported, as by the
  // registration that compares with the song cache.
  zansong::CatalogueSession session(rootText.c_str());
  if (!session.ok()) return kResultDbFail;
  TDBSongMan& man = session.man();
  for (const std::string& d : dirs) {
    TSString rel = TSString(d.c_str()).SubString(rootText.Length() + 1);
    TSString title = folderText.Length() == 0 ? rel : rel.SubString(folderText.Length() + 2);
    if (man.CreateAlbum(title.c_str(), rel.c_str(), "", prefix.c_str()) < 0) return kResultDbFail;
  }
  int songId = man.GetMaxInt("song", "song_id") + 1;
  int order = man.GetMaxInt("song", "disp_order") + 1;
  int albumId = 0;
  TSString albumPath;
  for (const std::string& f : files) {
    SongInfo info;
    if (!ClassifyFile(rootText, TSString(f.c_str()), &info)) continue;
    if (albumId == 0 || !(info.albumPath == albumPath)) {
      albumId = man.GetAlbumIDByPath(info.albumPath.c_str());
      albumPath = info.albumPath;
    }
    TSString ctime("");
    if (!session.Write(
            [&] { return man.AddSong2(albumId, songId, order, &info, ctime, prefix.c_str()); })) {
      return kResultDbFail;
    }
    ++songId;
    ++order;
  }
  return session.Finish(kResultOk, kResultDbFail);
}

extern "C" int FM_Add_Songs(const char* /*path*/, int /*n*/) { return 0; }
