// Filing a recording: moving the recorder's files into the song storage
// under a date-based name and entering the song in the catalogue.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "common/device_path.h"
#include "common/process.h"
#include "db/usb_catalogue.h"
#include "fileman/catalogue_session.h"
#include "fileman/now_text.h"
#include "zansong/common/charset.h"
#include "zansong/common/path.h"
#include "zansong/db/dbman.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/recorded.h"
#include "zansong/formats/audio.h"
#include "zansong/formats/smf.h"
#include "zansong/formats/title_text.h"
#include "zansong/storage/files.h"
#include "zansong/storage/naming.h"

namespace {

const char kUsbRecFolder[] = "Recorded Songs";
const char kUsbRecAlbumPath[] = "Recorded Songs/Temporary Folder";
const char kUsbRecAlbumTitle[] = "Temporary Folder";
const char kInternalRecAlbum[] = "rec";
// Where a new internal recording waits, inside the song root, until the
// previous one is deleted.
const char kStagingDir[] = ".rec_staging/";
const char kStagingBase[] = "take";

constexpr int kMoveFailed = -3;
constexpr int kCatalogueFailed = -1;
constexpr int kExtensionLength = 4;

// The recorder's spellings of each extension and the one the stored file
// gets, in the order they are moved.
struct ExtensionMove {
  const char* from;
  const char* to;
};
constexpr ExtensionMove kExtensionMoves[] = {{".mid", ".mid"}, {".MID", ".mid"}, {".wav", ".wav"},
                                             {".WAV", ".wav"}, {".mp3", ".mp3"}, {".MP3", ".mp3"}};

// path without its last four characters, when it is longer than that.
TSString WithoutExtension(const TSString& path) {
  return path.Length() > kExtensionLength ? path.SubString(1, path.Length() - kExtensionLength)
                                          : path;
}

TSString LowerCase(TSString text) {
  for (int i = 0; i < text.Length(); ++i) {
    if (text[i] >= 'A' && text[i] <= 'Z') text[i] = static_cast<char>(text[i] - 'A' + 'a');
  }
  return text;
}

bool IsDirectory(const char* path) {
  struct stat st;
  return ::stat(path, &st) == 0 && S_ISDIR(st.st_mode);
}

// One file moved: from where, to where.
struct Moved {
  TSString from;
  TSString to;
};

// Moves each existing srcBase + spelling to dstBase + stored extension with
// mv.  A failing mv prints "error!" and ends the run: false.  moved lists
// the files moved.
bool MoveRecordingFiles(const TSString& srcBase, const TSString& dstBase,
                        std::vector<Moved>* moved) {
  for (const ExtensionMove& extension : kExtensionMoves) {
    const TSString from = srcBase + extension.from;
    if (!FileExists(from.c_str())) continue;
    const TSString to = dstBase + extension.to;
    if (zansong::RunProgram({"mv", from.c_str(), to.c_str()}) != 0) {
      // A copy that mv left behind while the source stayed is no loss.
      if (FileExists(from.c_str())) DeleteFile(to.c_str());
      std::puts("error!");
      std::fflush(stdout);
      return false;
    }
    moved->push_back({from, to});
  }
  return true;
}

// Puts staged files back where the recorder left them.
void PutBack(const std::vector<Moved>& moved) {
  for (const Moved& file : moved) zansong::RunProgram({"mv", file.to.c_str(), file.from.c_str()});
}

// Where a recording goes, and under which prefix.
struct Destination {
  TSString root;
  TSString path;  // full path of the recording, with its stored extension
  const char* prefix;
  bool usb;
};

// A stick recording: straight into the stick's temporary folder.
int MoveToStick(const TSString& dir, const TSString& recPath, const TSString& ext,
                Destination* dest) {
  dest->root = dir;
  dest->prefix = "r";
  dest->usb = true;
  ::mkdir((dir + kUsbRecFolder).c_str(), 0777);
  ::mkdir((dir + kUsbRecAlbumPath).c_str(), 0777);
  dest->path = GetRecDateString(dir + kUsbRecAlbumPath + "/", ext);
  std::vector<Moved> moved;
  return MoveRecordingFiles(WithoutExtension(recPath), WithoutExtension(dest->path), &moved)
             ? 0
             : kMoveFailed;
}

// The internal recording: staged inside the song root first, so that the
// previous recording is deleted only once the new one is safely there.
int MoveToInternal(const TSString& recPath, const TSString& ext, Destination* dest) {
  dest->root = zansong::DevicePathFor(zansong::DevicePath::kSongRoot).c_str();
  dest->prefix = "i";
  dest->usb = false;
  const TSString staging = dest->root + kStagingDir;
  ::mkdir(staging.c_str(), 0777);
  std::vector<Moved> staged;
  if (!MoveRecordingFiles(WithoutExtension(recPath), staging + kStagingBase, &staged)) {
    PutBack(staged);
    ::rmdir(staging.c_str());
    return kMoveFailed;
  }

  FM_Delete_InternalRecord();
  const TSString albumDir = dest->root + kInternalRecAlbum;
  zansong::RunProgram({"mkdir", "-p", albumDir.c_str()});
  dest->path = GetRecDateString(albumDir + "/", ext);
  DeleteFile(dest->path.c_str());
  const TSString base = WithoutExtension(dest->path);
  for (const Moved& file : staged) {
    const TSString to = base + ExtractFileExtSX(file.to);
    if (std::rename(file.to.c_str(), to.c_str()) != 0) {
      // The files stay in the staging directory.
      std::puts("error!");
      std::fflush(stdout);
      return kMoveFailed;
    }
  }
  ::rmdir(staging.c_str());
  zansong::SyncFileSystems();
  return 0;
}

// The song row of the recording at dest.
void FillSongInfo(const Destination& dest, const TSString& ext, SongInfo* info) {
  info->mtime = GetModifyTime(dest.path.c_str());
  info->length = 0;
  const TSString relative = dest.path.SubString(dest.root.Length() + 1);
  TSString upperExt = ext;
  upperExt.UpperCase();
  const bool audio = upperExt == ".WAV" || upperExt == ".MP3";
  if (audio) {
    info->midiPath = "";
    info->audioPath = relative;
    info->format = upperExt.SubString(2);
    info->title = WithoutExtension(ExtractFileNameSX(relative));
    info->syncId = "";
    info->length = static_cast<int>(GetAudioTime(dest.path.c_str()));
  } else {
    info->audioPath = "";
    info->format = "SMF";
  }
  if (MidFileExists(dest.path.c_str()).Length() == 0) return;

  if (audio) info->format = "SMF," + upperExt.SubString(2);
  info->midiPath = WithoutExtension(relative) + ".mid";
  // For an audio recording this reads the audio file and fails, leaving the
  // fields taken from the audio file.
  TSongPara para;
  if (!GetSMFInfo(dest.path.c_str(), &para, false, nullptr)) return;
  if (para.title[0] == '\0') {
    info->title = WithoutExtension(ExtractFileNameSX(info->midiPath));
  } else {
    std::vector<char> slim(sizeof para.title);
    GetSlimText(slim.data(), para.title);
    info->title = StringConv(slim.data(), "SHIFT-JIS", "UTF-8");
  }
  info->syncId = para.songId;
  info->length = static_cast<int>(para.totalTimeMs);
  if (info->format.AnsiPos("WAV") == 0 && info->format.AnsiPos("MP3") == 0) {
    if (para.partMode == 1) info->format = "SMFSOLO";
    if (para.partMode == 2) info->format = "SMFKW";
  }
}

// Enters the recording in the catalogue of dest.root: AddSong's result, or
// kCatalogueFailed when the catalogue cannot be opened or a row cannot be
// written.
int AddRecordingRow(const Destination& dest, const TSString& ext) {
  zansong::CatalogueSession session(dest.root.c_str(),
                                    zansong::CatalogueSession::FailureLine::kOpen);
  if (!session.ok()) return kCatalogueFailed;
  TDBSongMan& man = session.man();
  SongInfo info;
  const int album = dest.usb
                        ? man.CreateAlbum(kUsbRecAlbumTitle, kUsbRecAlbumPath, "", dest.prefix)
                        : man.CreateAlbum(kInternalRecAlbum, kInternalRecAlbum, "", dest.prefix);
  if (album < 1) return kCatalogueFailed;
  info.albumPath = dest.usb ? kUsbRecAlbumPath : kInternalRecAlbum;
  FillSongInfo(dest, ext, &info);
  if (!dest.usb && !man.DeleteSongByPath(info.midiPath, info.audioPath)) return kCatalogueFailed;
  TSString now = zansong::NowText();
  const int id = session.Insert([&] { return man.AddSong(&info, now, dest.prefix); });
  return session.Finish(id > 0 ? id : kCatalogueFailed, kCatalogueFailed);
}

}  // namespace

int FM_Add_RecSong(const char* dir, const char* recPath, char* pfixOut) {
  const TSString rec(recPath);
  // The stored file takes the lower-case spelling of the extension.
  const TSString ext = LowerCase(ExtractFileExtSX(rec));
  TSString dirText(dir);
  if (dirText.Length() != 0 && dirText[dirText.Length() - 1] != '/') dirText += "/";
  Destination dest;
  const bool usb = IsDirectory(dir) && !zansong::IsInternalSongRoot(dirText.c_str());
  int moved = usb ? MoveToStick(dirText, rec, ext, &dest) : MoveToInternal(rec, ext, &dest);
  if (moved != 0) return moved;

  if (dest.usb) usbdb_copy(dest.root);
  const int result = AddRecordingRow(dest, ExtractFileExtSX(rec));
  pfixOut[0] = dest.prefix[0];
  // A stick that keeps its old catalogue does not hold the recording's row.
  if (dest.usb && !zansong::BackupUsbCatalogue(dest.root.c_str())) return kCatalogueFailed;
  return result;
}
