// Copying songs into an album, and moving recordings into the keep album.
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <list>
#include <string>
#include <vector>

#include "fileman/catalogue_session.h"
#include "fileman/now_text.h"
#include "storage/enterable_dir.h"
#include "zansong/common/path.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/copy.h"
#include "zansong/fileman/messages.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"
#include "zansong/storage/naming.h"

namespace {

const char kKeepAlbumPath[] = "Recorded Songs/Keep";
const char kKeepAlbumTitle[] = "Keep";
const char kKeepPrefix[] = "r";
constexpr int kProgressEvery = 20;

// The keep album's id; when the catalogue has none, its directory and row
// are made.  0 when that fails.
int KeepAlbumId(TDBSongMan& man, const TSString& root) {
  int id = man.GetAlbumIDByPath(kKeepAlbumPath);
  if (id > 0) return id;
  const TSString dir = root + "Recorded Songs";
  const TSString keepDir = root + kKeepAlbumPath;
  ::mkdir(dir.c_str(), 0777);
  if (!zansong::IsEnterableDir(keepDir.c_str()) && ::mkdir(keepDir.c_str(), 0777) != 0) return 0;
  id = man.CreateAlbum(kKeepAlbumTitle, kKeepAlbumPath, "", kKeepPrefix);
  return id > 0 ? id : 0;
}

// relative + its extension replaced: albumPath + "/" + base + extension of
// relative; "" when relative is "".
TSString NewPath(const TSString& albumPath, const TSString& base, const TSString& relative) {
  if (relative.Length() == 0) return TSString("");
  return albumPath + "/" + base + ExtractFileExtSX(relative);
}

// Full path root + relative, or "" for a song without that file.
TSString FullPath(const TSString& root, const TSString& relative) {
  return relative.Length() == 0 ? TSString("") : root + relative;
}

// Moves the song's files; on a failure of the second the first is put back.
bool MoveFiles(const TSString& srcMidi, const TSString& srcAudio, const TSString& dstMidi,
               const TSString& dstAudio) {
  if (srcMidi.Length() != 0 && std::rename(srcMidi.c_str(), dstMidi.c_str()) != 0) return false;
  if (srcAudio.Length() != 0 && std::rename(srcAudio.c_str(), dstAudio.c_str()) != 0) {
    if (srcMidi.Length() != 0) std::rename(dstMidi.c_str(), srcMidi.c_str());
    return false;
  }
  return true;
}

// One call: the open catalogue and the target album.
//
// The rows of copied songs are written in rounds: the files of the songs
// of about kRoundMs are copied with no lock held on the catalogue, then
// their rows are written in one short transaction (one synchronous commit
// instead of one per song).  Every stop writes the round first, so the
// catalogue holds exactly the songs whose files were copied.  A move
// writes its rows at once: it costs no copying, and its old rows go.
class SongCopy {
 public:
  SongCopy(const char* root, zansong::CatalogueSession& session, int targetId, bool move)
      : root_(root), session_(session), man_(session.man()), target_(targetId), move_(move) {
    prefix_ = man_.GetTextByID("album", "pfix", target_);
    albumPath_ = man_.GetTextByID("album", "album_path", target_);
  }

  // Whether the target album has a row.
  bool HasTarget() const { return albumPath_.Length() != 0; }

  // One song; kResultOk or the code that ends the list.  The song's row
  // may wait for the end of its round.
  int CopyOne(int songId);
  // Writes the rows of the round; kResultOk, or kResultCannotExecute when a
  // row or its commit failed: the copies whose rows are not in the
  // catalogue are then deleted again.
  int WriteRound();

 private:
  static constexpr int kRoundMs = 500;

  // A copied song whose row waits for the end of the round.
  struct PendingRow {
    SongInfo info;
    TSString ctime;
  };

  int CheckLimits();
  int AddRow(SongInfo* info, TSString* ctime);
  // Deletes the files of row when the catalogue holds no row for them.
  void RemoveUncatalogued(const SongInfo& row);
  int PlaceFiles(const TSString& srcMidi, const TSString& srcAudio, const TSString& dstMidi,
                 const TSString& dstAudio);

  TSString root_;
  zansong::CatalogueSession& session_;
  TDBSongMan& man_;
  int target_;
  bool move_;
  TSString prefix_;
  TSString albumPath_;
  std::vector<PendingRow> round_;
  std::chrono::steady_clock::time_point roundStart_;
};

int SongCopy::CheckLimits() {
  // The songs of the round count as written.
  const int waiting = static_cast<int>(round_.size());
  if (man_.GetSongCount(0, prefix_.c_str()) + waiting > kPrefixSongLimit - 1) {
    return kResultPrefixFull;
  }
  if (man_.GetSongCount(target_, prefix_.c_str()) + waiting > kAlbumSongLimit - 1) {
    return kResultAlbumFull;
  }
  return kResultOk;
}

int SongCopy::AddRow(SongInfo* info, TSString* ctime) {
  const int id = session_.Insert([&] { return man_.AddSong(info, *ctime, prefix_.c_str()); });
  return id < 1 ? kResultCannotExecute : kResultOk;
}

void SongCopy::RemoveUncatalogued(const SongInfo& row) {
  const bool hasMidi = row.midiPath.Length() != 0;
  const int id =
      hasMidi ? man_.GetSongIDByFieldname("midi_path", row.midiPath.c_str(), prefix_.c_str())
              : man_.GetSongIDByFieldname("audio_path", row.audioPath.c_str(), prefix_.c_str());
  if (id > 0) return;
  if (hasMidi) DeleteFile(FullPath(root_, row.midiPath).c_str());
  if (row.audioPath.Length() != 0) DeleteFile(FullPath(root_, row.audioPath).c_str());
}

int SongCopy::WriteRound() {
  int result = kResultOk;
  for (PendingRow& row : round_) {
    result = AddRow(&row.info, &row.ctime);
    if (result != kResultOk) break;
  }
  if (!session_.Commit()) result = kResultCannotExecute;
  // A failed write or commit may have taken rows of the round with it: no
  // copy stays that the catalogue does not know.
  if (result != kResultOk) {
    for (const PendingRow& row : round_) RemoveUncatalogued(row.info);
  }
  round_.clear();
  return result;
}

int SongCopy::PlaceFiles(const TSString& srcMidi, const TSString& srcAudio, const TSString& dstMidi,
                         const TSString& dstAudio) {
  if (move_)
    return MoveFiles(srcMidi, srcAudio, dstMidi, dstAudio) ? kResultOk : kResultWriteProtected;
  // The free-space test counts the first file the song has, and the other.
  const TSString& first = srcMidi.Length() != 0 ? srcMidi : srcAudio;
  const TSString& second = srcMidi.Length() != 0 ? srcAudio : TSString("");
  if (!CheckDiskFree((root_ + albumPath_).c_str(), first.c_str(), second.c_str())) {
    return kResultNoSpace;
  }
  int r = CopyFiles2(srcMidi, srcAudio, dstMidi, dstAudio);
  if (r == 0) return kResultOk;
  return r == -2 ? kResultCopyCancelled : kResultWriteProtected;
}

int SongCopy::CopyOne(int songId) {
  int limit = CheckLimits();
  if (limit != kResultOk) return limit;

  SongInfo info;
  if (!man_.GetSongData(songId, &info)) return kResultNoData;

  const TSString targetDir = root_ + albumPath_ + "/";
  const TSString& source = info.midiPath.Length() != 0 ? info.midiPath : info.audioPath;
  const TSString base = GetExternalCopyFileName3(targetDir, source);
  const TSString newMidi = NewPath(albumPath_, base, info.midiPath);
  const TSString newAudio = NewPath(albumPath_, base, info.audioPath);

  const TSString srcMidi = FullPath(root_, info.midiPath);
  const TSString srcAudio = FullPath(root_, info.audioPath);
  if (!(srcMidi.Length() != 0 && FileExists(srcMidi.c_str())) &&
      !(srcAudio.Length() != 0 && FileExists(srcAudio.c_str()))) {
    return kResultNoFile;
  }
  int placed = PlaceFiles(srcMidi, srcAudio, FullPath(root_, newMidi), FullPath(root_, newAudio));
  if (placed != kResultOk) return placed;

  info.albumPath = albumPath_;
  info.midiPath = newMidi;
  info.audioPath = newAudio;
  // The time of the new MIDI file, or of the audio file of a song without one.
  info.mtime = GetModifyTime(FullPath(root_, newMidi.Length() != 0 ? newMidi : newAudio).c_str());
  info.coverartPath = "";
  info.purchasedDate = "";
  TSString ctime = zansong::NowText();
  if (!move_) {
    if (round_.empty()) roundStart_ = std::chrono::steady_clock::now();
    round_.push_back({info, ctime});
    const auto elapsed = std::chrono::steady_clock::now() - roundStart_;
    return elapsed >= std::chrono::milliseconds(kRoundMs) ? WriteRound() : kResultOk;
  }

  int added = AddRow(&info, &ctime);
  if (added == kResultOk) added = session_.Commit() ? kResultOk : kResultCannotExecute;
  if (added != kResultOk) {
    // The old row still names the files: they go back to it.
    MoveFiles(FullPath(root_, newMidi), FullPath(root_, newAudio), srcMidi, srcAudio);
    return added;
  }
  const std::string id = std::to_string(songId);
  const bool oldRowGone = session_.Write([&] {
    return man_.DeleteData("song", "song_id", id.c_str());
  }) && session_.Write([&] { return man_.DeleteData("psong", "song_id", id.c_str()); });
  return oldRowGone ? kResultOk : kResultCannotExecute;
}

}  // namespace

int FH_copy_song_usb(const char* root, std::list<int>& songIds, int albumId) {
  zansong::CatalogueSession session(root);
  if (!session.ok()) return kResultDbFail;
  TDBSongMan& man = session.man();

  const bool move = albumId == 0;
  const int target = move ? KeepAlbumId(man, TSString(root)) : albumId;
  if (target < 1) return move ? kResultWriteProtected : kResultCannotExecute;

  SongCopy copy(root, session, target, move);
  if (!copy.HasTarget()) return kResultCannotExecute;
  const int total = static_cast<int>(songIds.size());
  int count = 0;
  for (int songId : songIds) {
    ++count;
    if (count % kProgressEvery == 0) PrintCopyMessage(-1, count, total, true);
    int result = copy.CopyOne(songId);
    if (result != kResultOk) {
      // The songs copied before the stop keep their rows.
      const int written = copy.WriteRound();
      return written != kResultOk ? written : result;
    }
  }
  return session.Finish(copy.WriteRound(), kResultCannotExecute);
}

int FH_copy_ulq_song(const char*, const char*, const char*, const char*, int, int) { return 0; }

int FH_db_copy(const char*, const char*) { return 0; }
