// FM_Copy_UlqSong: files a downloaded song into "Downloaded Songs", its
// album and the catalogue.
#include <sys/stat.h>

#include <cstdio>
#include <list>
#include <string>

#include "common/process.h"
#include "common/upper_extension.h"
#include "db/usb_catalogue.h"
#include "fileman/catalogue_session.h"
#include "fileman/download_record.h"
#include "fileman/now_text.h"
#include "fileman/register_song.h"
#include "fileman/working_copy.h"
#include "storage/enterable_dir.h"
#include "storage/package_decode.h"
#include "zansong/common/path.h"
#include "zansong/db/dbman.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/download.h"
#include "zansong/formats/audio.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"

namespace {

using zansong::DownloadTexts;

constexpr char kPrefix[] = "y";
constexpr char kDownloadFolder[] = "Downloaded Songs";
constexpr char kSingleSongsTitle[] = "Single Songs";
constexpr char kSingleSongsPath[] = "Downloaded Songs/Single Songs";
constexpr char kCoverName[] = "/zanalbum.jpg";
constexpr char kTitleFileName[] = "/.zanalbum";

// An album directory is one plain name inside "Downloaded Songs": no "/",
// not "." or "..", and no control byte (which would also break the
// tab-separated song cache lines of registration).
bool IsPlainDirName(const TSString& name) {
  if (name == "." || name == "..") return false;
  for (int i = 0; i < name.Length(); ++i) {
    unsigned char c = static_cast<unsigned char>(name[i]);
    if (c == '/' || c < 0x20) return false;
  }
  return true;
}

// The result of checking the record before anything is touched; kResultOk
// when it can be filed.
int CheckRecord(const DownloadTexts& r) {
  const bool midi = r.midiSource.Length() > 0;
  const bool audio = r.audioSource.Length() > 0;
  if (!midi && !audio) return kResultNoData;
  if (!IsPlainDirName(r.albumDir)) return kResultCannotExecute;
  if (midi && zansong::UpperExtension(r.midiSource) != ".MID") return kResultCannotExecute;
  if (audio) {
    TSString ext = zansong::UpperExtension(r.audioSource);
    if (ext != ".WAV" && ext != ".MP3") return kResultCannotExecute;
  }
  if (midi && !FileExists(r.midiSource.c_str())) return kResultNoFile;
  if (audio && !FileExists(r.audioSource.c_str())) return kResultNoFile;
  return kResultOk;
}

bool MakeDirectory(const TSString& path) {
  return zansong::RunProgram({"mkdir", "-p", "--", path.c_str()}) == 0;
}

// Whether a and b name the same existing file.
bool SameFile(const TSString& a, const TSString& b) {
  struct stat sa;
  struct stat sb;
  return ::stat(a.c_str(), &sa) == 0 && ::stat(b.c_str(), &sb) == 0 && sa.st_dev == sb.st_dev &&
         sa.st_ino == sb.st_ino;
}

// The files of the song below the storage root, and its format label.
struct SongFiles {
  TSString base;
  TSString midiPath;  // relative to the root, "" without MIDI
  TSString audioPath;
  TSString format;
};

SongFiles NameSongFiles(const DownloadTexts& r, const TSString& albumPath) {
  SongFiles f;
  const TSString& named = r.midiSource.Length() > 0 ? r.midiSource : r.audioSource;
  f.base = ChangeFileExtSX(ExtractFileNameSX(named), "");
  if (r.midiSource.Length() > 0) {
    f.midiPath = albumPath + "/" + f.base + ExtractFileExtSX(r.midiSource);
    f.format = "SMF";
  }
  if (r.audioSource.Length() > 0) {
    f.audioPath = albumPath + "/" + f.base + ExtractFileExtSX(r.audioSource);
    TSString ext = zansong::UpperExtension(r.audioSource).SubString(2);
    f.format = f.format.Length() == 0 ? ext : TSString("SMF,") + ext;
  }
  return f;
}

// The cover picture of a single song, beside its files.
TSString SingleSongCover(const SongFiles& f) {
  return TSString(kSingleSongsPath) + "/" + f.base + ".jpg";
}

// One call of FM_Copy_UlqSong on an open catalogue.
class Filing {
 public:
  Filing(const TSString& root, const DownloadTexts& r, zansong::CatalogueSession& session)
      : root_(root), r_(r), session_(session), man_(session.man()) {}

  // Finds or makes the album, brings its texts up to date and sets its
  // purchase date.
  int PrepareAlbum();
  // Limits, free space, the copy and the row.
  int FileSong();

 private:
  int FindAlbum();
  // Makes the album directory when it is missing.
  bool EnsureDirectory() {
    TSString dir = root_ + albumPath_;
    return zansong::IsEnterableDir(dir.c_str()) || MakeDirectory(dir);
  }
  // A new album of prefix "y" with the record's cover unless coverError is
  // null; or kResultAlbumLimit / a failure code.
  int CreateAlbum(const TSString& title, const char* coverError);
  // Moves the cover source to root + path; prints error when it fails.
  bool MoveCover(const TSString& path, const char* error);
  int CopyFiles(const SongFiles& f);
  void FillRow(const SongFiles& f, SongInfo* info);
  int WriteRow(const SongFiles& f, SongInfo* info);

  const TSString root_;
  const DownloadTexts& r_;
  zansong::CatalogueSession& session_;
  TDBSongMan& man_;
  TSString albumPath_;
  int albumId_ = 0;
};

bool Filing::MoveCover(const TSString& path, const char* error) {
  if (zansong::MoveWithProgram(r_.coverSource, root_ + path)) return true;
  std::printf("%s", error);
  std::fflush(stdout);
  return false;
}

int Filing::CreateAlbum(const TSString& title, const char* coverError) {
  if (man_.GetAlbumCount(kPrefix) > kAlbumLimit - 1) return kResultAlbumLimit;
  if (!EnsureDirectory()) return kResultWriteProtected;
  TSString cover;
  if (coverError != nullptr && r_.coverSource.Length() > 0 &&
      MoveCover(albumPath_ + kCoverName, coverError)) {
    cover = albumPath_ + kCoverName;
  }
  albumId_ = man_.CreateAlbum(title.c_str(), albumPath_.c_str(), cover.c_str(), kPrefix);
  return albumId_ > 0 ? kResultOk : kResultCannotExecute;
}

int Filing::PrepareAlbum() {
  int result = FindAlbum();
  if (result != kResultOk) return result;
  if (r_.purchaseDate.Length() > 0 &&
      !man_.SetTextByID("album", "purchased_date", albumId_, r_.purchaseDate.c_str())) {
    return kResultCannotExecute;
  }
  return kResultOk;
}

int Filing::FindAlbum() {
  if (r_.albumDir.Length() == 0) {
    albumPath_ = kSingleSongsPath;
    albumId_ = man_.GetAlbumIDByPath(albumPath_.c_str());
    // The cover of a single song goes beside the song, not to the album.
    if (albumId_ == 0) return CreateAlbum(kSingleSongsTitle, nullptr);
    return EnsureDirectory() ? kResultOk : kResultWriteProtected;
  }
  albumPath_ = TSString(kDownloadFolder) + "/" + r_.albumDir;
  albumId_ = man_.GetAlbumIDByPath(albumPath_.c_str());
  const bool titled = r_.albumTitle.Length() > 0;
  if (albumId_ == 0) {
    int made = CreateAlbum(titled ? r_.albumTitle : r_.albumDir, "error1!");
    if (made != kResultOk) return made;
  } else {
    if (!EnsureDirectory()) return kResultWriteProtected;
    if (r_.coverSource.Length() > 0 && MoveCover(albumPath_ + kCoverName, "error2!") &&
        !man_.SetTextByID("album", "coverart_path", albumId_, (albumPath_ + kCoverName).c_str())) {
      return kResultCannotExecute;
    }
    if (titled && !man_.SetTextByID("album", "album_title", albumId_, r_.albumTitle.c_str())) {
      return kResultCannotExecute;
    }
  }
  if (titled &&
      !CreateAlbumTitleFile((root_ + albumPath_ + kTitleFileName).c_str(), r_.albumTitle.c_str())) {
    return kResultWriteProtected;
  }
  std::list<int> ids{albumId_};
  return man_.ChangeOrder(ids, 0, kPrefix, 1) ? kResultOk : kResultCannotExecute;
}

int Filing::CopyFiles(const SongFiles& f) {
  TSString midiSource = r_.midiSource;
  TSString audioSource = r_.audioSource;
  const TSString midiTarget = f.midiPath.Length() > 0 ? root_ + f.midiPath : TSString();
  const TSString audioTarget = f.audioPath.Length() > 0 ? root_ + f.audioPath : TSString();
  // A source that already lies where it is to be filed stays as it is: a
  // copy onto itself would empty it, and removing the source would remove
  // the song.
  if (midiSource.Length() > 0 && SameFile(midiSource, midiTarget)) midiSource = "";
  if (audioSource.Length() > 0 && SameFile(audioSource, audioTarget)) audioSource = "";
  if (midiSource.Length() == 0 && audioSource.Length() == 0) return kResultOk;
  if (audioSource.Length() == 0) {
    // CopyFiles2 copies its first pair only when there is one; put the one
    // source first so that its failure is reported.
    if (CopyFiles2(midiSource, "", midiTarget, "") != 0) return kResultWriteProtected;
  } else if (CopyFiles2(midiSource, audioSource, midiSource.Length() > 0 ? midiTarget : "",
                        audioTarget) != 0) {
    return kResultWriteProtected;
  }
  // CopyFiles2 does not report a failed MIDI copy when the audio copy
  // succeeded: a song filed without its MIDI file would be a row naming no
  // file.
  if (midiSource.Length() > 0 && !FileExists(midiTarget.c_str())) {
    if (audioSource.Length() > 0) DeleteFile(audioTarget.c_str());
    return kResultWriteProtected;
  }
  if (midiSource.Length() > 0) DeleteFile(midiSource.c_str());
  if (audioSource.Length() > 0) DeleteFile(audioSource.c_str());
  return kResultOk;
}

void Filing::FillRow(const SongFiles& f, SongInfo* info) {
  zansong::NewSong song;
  const std::string line = std::string(f.midiPath.c_str()) + "\t" + f.audioPath.c_str() + "\t" +
                           f.format.c_str() + "\t" + r_.mtime.c_str();
  if (!zansong::ReadNewSong(root_, kPrefix, line, &song)) {
    // A MIDI file the reader refuses is filed all the same: the pianist
    // paid for it.  Its name stands for the title, the audio gives the time.
    song.info.title = ChangeFileExtSX(ExtractFileNameSX(f.midiPath), "");
    song.info.albumPath = albumPath_;
    if (f.audioPath.Length() > 0) {
      song.info.length = static_cast<int>(GetAudioTime((root_ + f.audioPath).c_str()));
    }
  }
  if (r_.songTitle.Length() > 0) {
    song.info.title = r_.songTitle;
    song.titleFromFile = false;
  }
  zansong::FinishTitle(&song);
  *info = song.info;
  info->mtime = r_.mtime;
  info->composer = r_.composer;
  info->genre = r_.genre;
  info->purchasedDate = r_.purchaseDate;
  // An album song shows its album's cover; a single song its own, beside it.
  info->coverartPath = "";
  if (r_.albumDir.Length() == 0) {
    TSString cover = SingleSongCover(f);
    if (FileExists((root_ + cover).c_str())) info->coverartPath = cover;
  }
}

int Filing::WriteRow(const SongFiles& f, SongInfo* info) {
  int id = 0;
  if (f.midiPath.Length() > 0) {
    id = man_.GetSongIDByFieldname("midi_path", f.midiPath.c_str(), kPrefix);
    if (id != 0 && f.audioPath.Length() > 0) {
      id = man_.GetSongIDByFieldname("audio_path", f.audioPath.c_str(), kPrefix);
    }
  }
  TSString now = zansong::NowText();
  if (id != 0) {
    if (!man_.SetSongData(id, info, now)) return kResultCannotExecute;
  } else {
    id = session_.Insert([&] { return man_.AddSong(info, now, kPrefix); });
    if (id <= 0) return kResultCannotExecute;
  }
  std::list<int> ids{id};
  if (!man_.ChangeOrder(ids, albumId_, kPrefix, 1)) return kResultCannotExecute;
  return session_.Finish(kResultOk, kResultCannotExecute);
}

int Filing::FileSong() {
  if (man_.GetSongCount(0, kPrefix) > kPrefixSongLimit - 1) return kResultPrefixFull;
  if (man_.GetSongCount(albumId_, "") > kAlbumSongLimit - 1) return kResultAlbumFull;
  const SongFiles f = NameSongFiles(r_, albumPath_);
  // The free-space test counts nothing when its first file is "": an
  // audio-only song passes its audio source first.
  const TSString& first = r_.midiSource.Length() > 0 ? r_.midiSource : r_.audioSource;
  const TSString second = r_.midiSource.Length() > 0 ? r_.audioSource : TSString();
  if (!CheckDiskFree((root_ + albumPath_ + "/").c_str(), first.c_str(), second.c_str())) {
    return kResultNoSpace;
  }
  int copied = CopyFiles(f);
  if (copied != kResultOk) return copied;
  if (r_.albumDir.Length() == 0 && r_.coverSource.Length() > 0) {
    MoveCover(SingleSongCover(f), "error3!");
  }
  SongInfo info;
  FillRow(f, &info);
  return WriteRow(f, &info);
}

// Everything but the message line.
int CopyUlqSong(const char* dir, const DownloadRecord* rec) {
  DownloadTexts texts;
  if (rec == nullptr || dir == nullptr) return kResultNoData;
  if (!zansong::ReadDownloadRecord(*rec, &texts)) return kResultCannotExecute;
  int checked = CheckRecord(texts);
  if (checked != kResultOk) return checked;

  TSString root = zansong::RootWithSlash(dir);
  zansong::RefreshWorkingCopy(root);
  int result;
  {
    zansong::CatalogueSession session(root.c_str());
    if (!session.ok()) {
      result = kResultDbFail;
    } else {
      Filing filing(root, texts, session);
      result = filing.PrepareAlbum();
      // A refused new album changed nothing: the stick keeps its catalogue.
      if (result == kResultAlbumLimit) return result;
      if (result == kResultOk) result = filing.FileSong();
    }
  }
  // A stick that keeps its old catalogue does not hold the song.
  if (!zansong::BackupUsbCatalogue(root.c_str()) && result == kResultOk) return kResultDbFail;
  return result;
}

}  // namespace

int FM_Copy_UlqSong(const char* dir, const DownloadRecord* rec, char* msgOut) {
  int result = CopyUlqSong(dir, rec);
  GetDownloadError(result, msgOut);
  return result;
}
