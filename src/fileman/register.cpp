// FM_Add_AllSongs_ByCache: brings the catalogue of one storage area in step
// with its files by comparing song cache lines, writing only differences.
#include <chrono>
#include <cstdio>
#include <deque>
#include <list>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/device_path.h"
#include "db/batched_order.h"
#include "db/song_insert.h"
#include "db/song_rows.h"
#include "fileman/catalogue_session.h"
#include "fileman/now_text.h"
#include "fileman/register_song.h"
#include "storage/scan_cache.h"
#include "zansong/async/cancel.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/messages.h"
#include "zansong/fileman/register.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"
#include "zansong/storage/scan.h"

using zansong::CatalogueSession;
using zansong::NewSong;
using zansong::WriteBatch;

namespace {

using Lines = std::list<std::string>;

constexpr int kProgressStep = 200;
// New songs are read from their files in rounds of about this long while
// the write lock is free, then written in one short transaction.
constexpr int kReadRoundMs = 100;

// The line that ends a registration whose catalogue write failed, after
// the catalogue's own "DB: error ..." line.
void PrintRegistrationFailure() {
  std::printf("Error! :FM_Add_AllSongs_ByCache\n");
  std::fflush(stdout);
}

// The storage kind handed to the scan.
int StorageKindOf(const char* root, const TSString& folder) {
  if (zansong::IsUsbStickRoot(root)) {
    if (folder == "Recorded Songs") return kStorageUsbRecorded;
    if (folder == "Downloaded Songs") return kStorageUsbDownloaded;
    if (folder == "FromToPC") return kStorageUsbFromToPC;
    return kStorageUsb;
  }
  return zansong::IsInternalSongRoot(root) ? kStorageInternal : kStorageOther;
}

// One call's state: the storage area and the open catalogue.
class Registration {
 public:
  Registration(const TSString& root, const TSString& prefix, CatalogueSession& session,
               int progressTarget)
      : root_(root),
        prefix_(prefix),
        man_(session.man()),
        batch_(session.batch()),
        progressTarget_(progressTarget) {}

  // Each step below stops at the first write or commit that fails (disk
  // full, I/O error, read-only storage) and notes it in writeFailed(); the
  // rows committed before it stay.

  // Deletes the albums in vanished (and their songs).  False when the
  // caller must stop: cancel, or a failed write.
  bool DeleteAlbums(const Lines& vanished);
  // Creates an album row for each directory of fresh.  False on a stop.
  bool CreateAlbums(const Lines& fresh, const TSString& folder);
  // Deletes the songs of the catalogue lines vanished, then the playlist
  // entries whose song is gone.  False after a failed write.
  bool DeleteSongs(const Lines& vanished);
  // Adds the songs of the scan lines fresh, until a cancel or a failed
  // insert.
  void AddSongs(const Lines& fresh);
  // Renumbers albums and songs of the prefix by path; songs from rows
  // while they are current.
  void Renumber(const TSString& folder, const zansong::SongRows& rows);
  bool Commit() { return Wrote(batch_.Commit()); }
  bool writeFailed() const { return writeFailed_; }

 private:
  // Writes the songs read from the files of one round; false on a stop.
  bool WriteSongs(std::deque<NewSong>& songs, size_t total, zansong::SongInsert& insert);
  // ok, noting a failed write or commit when it is false.
  bool Wrote(bool ok) {
    if (!ok) writeFailed_ = true;
    return ok;
  }
  // The end of one write: its own result and the batch's commit, if one
  // was due.
  bool Written(bool ok) { return Wrote(batch_.AfterWrite() && ok); }

  TSString root_;
  TSString prefix_;
  TDBSongMan& man_;
  WriteBatch& batch_;
  int progressTarget_;
  // Song insertion state.
  int nextSongId_ = 0;
  int nextOrder_ = 0;
  int albumId_ = 0;
  TSString albumPath_;
  size_t written_ = 0;  // lines of fresh handled so far (the count)
  bool writeFailed_ = false;
};

bool Registration::DeleteAlbums(const Lines& vanished) {
  for (const std::string& path : vanished) {
    int id = man_.GetAlbumIDByPath(path.c_str());
    batch_.BeforeWrite();
    bool ok = man_.DeleteData("song", "album_id", std::to_string(id).c_str()) &&
              man_.DeleteData("album", "album_path", path.c_str());
    if (!Written(ok) || GetCancelFlag()) return false;
  }
  return true;
}

bool Registration::CreateAlbums(const Lines& fresh, const TSString& folder) {
  const bool withCover = prefix_ == "y" || prefix_ == "d";
  for (const std::string& d : fresh) {
    TSString dir = root_ + TSString(d.c_str());
    TSString titleFile = dir + "/.zanalbum";
    TSString title;
    if (FileExists(titleFile.c_str())) {
      title = GetAlbumTitle(titleFile.c_str());
    } else if (folder.Length() == 0) {
      title = d.c_str();
    } else {
      title = TSString(d.c_str()).SubString(folder.Length() + 2);
    }
    TSString cover;
    if (withCover && FileExists((dir + "/zanalbum.jpg").c_str())) {
      cover = TSString(d.c_str()) + "/zanalbum.jpg";
    }
    batch_.BeforeWrite();
    int id = man_.CreateAlbum(title.c_str(), d.c_str(), cover.c_str(), prefix_.c_str());
    if (!Written(id >= 0) || GetCancelFlag()) return false;
  }
  return true;
}

bool Registration::DeleteSongs(const Lines& vanished) {
  int count = 0;
  const int total = static_cast<int>(vanished.size());
  for (const std::string& line : vanished) {
    ++count;
    if (count % kProgressStep == 0) {
      PrintUnregisterMessage(count * 100 / total, progressTarget_, true);
    }
    std::string paths[2];
    zansong::SplitCacheLine(line, 2, paths);
    // The second field ends at the next tab.
    paths[1] = paths[1].substr(0, paths[1].find('\t'));
    batch_.BeforeWrite();
    if (!Written(man_.DeleteSongByPath(&paths[0][0], &paths[1][0]) != 0)) return false;
    // A cancel does not stop the clean-up of vanished songs.
  }
  batch_.BeforeWrite();
  return Written(man_.DeletePsongNotExist(prefix_.c_str()) != 0);
}

bool Registration::WriteSongs(std::deque<NewSong>& songs, size_t total,
                              zansong::SongInsert& insert) {
  for (NewSong& song : songs) {
    const int count = static_cast<int>(++written_);
    if (count % kProgressStep == 0) {
      PrintRegisterMessage(static_cast<int>(count * 100LL / static_cast<long long>(total)),
                           progressTarget_, true);
    }
    if (!song.readable) continue;
    zansong::FinishTitle(&song);
    SongInfo& info = song.info;
    if (albumId_ == 0 || !(info.albumPath == albumPath_)) {
      albumId_ = man_.GetAlbumIDByPath(info.albumPath.c_str());
      albumPath_ = info.albumPath;
    }
    TSString ctime = zansong::NowText();
    batch_.BeforeWrite();
    int ok = zansong::AddSong2(insert, albumId_, nextSongId_, nextOrder_, &info, ctime.c_str(),
                               prefix_.c_str());
    if (!Written(ok != 0) || GetCancelFlag()) return false;
    ++nextSongId_;
    ++nextOrder_;
  }
  return true;
}

void Registration::AddSongs(const Lines& fresh) {
  if (fresh.empty()) return;
  nextSongId_ = man_.GetMaxInt("song", "song_id") + 1;
  nextOrder_ = man_.GetMaxInt("song", "disp_order") + 1;
  // The insert is compiled once for all the new songs.
  zansong::SongInsert insert(man_);
  const size_t total = fresh.size();
  auto next = fresh.begin();
  while (next != fresh.end()) {
    // Read a round of songs from their files with the write lock free...
    if (!Commit()) return;
    std::deque<NewSong> round;
    const auto started = std::chrono::steady_clock::now();
    while (next != fresh.end()) {
      round.emplace_back();
      zansong::ReadNewSong(root_, prefix_, *next++, &round.back());
      if (std::chrono::steady_clock::now() - started >= std::chrono::milliseconds(kReadRoundMs)) {
        break;
      }
    }
    // ...then write them in order, as if each had been written at once.
    if (!WriteSongs(round, total, insert)) break;
  }
  Commit();
}

void Registration::Renumber(const TSString& folder, const zansong::SongRows& rows) {
  Wrote(zansong::ResetAlbumOrderAndPath(man_, folder.c_str(), prefix_.c_str(), &batch_) != 0 &&
        zansong::SortSongByPath(man_, prefix_.c_str(), &batch_, &rows) != 0);
  Commit();
}

// The MIDI and audio paths of a song cache line.
std::pair<std::string, std::string> PathsOf(const std::string& line) {
  std::string fields[3];
  zansong::SplitCacheLine(line, 3, fields);
  return {fields[0], fields[1]};
}

// After an incomplete scan: leaves out of fresh every song that the
// catalogue already holds under the same paths (its file changed), so that
// it is neither deleted nor registered twice.
void DropChangedSongs(Lines& fresh, const Lines& catalogueOnly) {
  std::set<std::pair<std::string, std::string>> known;
  for (const std::string& line : catalogueOnly) known.insert(PathsOf(line));
  fresh.remove_if([&known](const std::string& line) { return known.count(PathsOf(line)) > 0; });
}

}  // namespace

extern "C" int FM_Add_AllSongs_ByCache(const char* root, const char* folder, int notifyRemote,
                                       int keepOrder, int progressTarget) {
  const TSString rootText(root);
  TSString folderText(folder);
  const TSString prefix = getprefix(folderText);
  const int kind = StorageKindOf(rootText.c_str(), folderText);
  TSString scanDir = rootText;
  if (folderText.Length() > 0) scanDir += folderText + "/";
  PrintRemoconMessage(kMsgScanning1, kButtonCancel);

  Lines albumDirs, songLines, looseSongLines;
  bool flag = false;
  int ret = GetDirFileList4(scanDir.c_str(), rootText.Length() + 1, albumDirs, songLines,
                            looseSongLines, kind, 0, &flag);
  // A scan that could not open a directory saw only part of the storage:
  // what it did not see must not be taken as gone.
  const bool completeScan = ret != kScanUnreadableDir;

  if (ret == kScanOk && !(looseSongLines.empty() && kind == kStorageInternal) &&
      folderText != "Recorded Songs" && folderText != "Downloaded Songs") {
    if (albumDirs.size() < static_cast<size_t>(kAlbumLimit)) {
      TSString self = scanDir.SubString(rootText.Length() + 1);
      if (self.Length() > 0) self.SetLength(self.Length() - 1);
      albumDirs.push_back(self.c_str());
      songLines.splice(songLines.end(), looseSongLines);
    } else {
      ret = kScanStopped;
    }
  }
  if (GetCancelFlag()) return kScanStopped;

  albumDirs.sort();
  songLines.sort();
  // Every return below commits what was written and closes the catalogue.
  CatalogueSession session(rootText.c_str(), CatalogueSession::FailureLine::kCreateOrOpen);
  if (!session.ok()) return ret;
  TDBSongMan& man = session.man();
  Registration work(rootText, prefix, session, progressTarget);

  // A write or commit that failed ends the work at once: what was
  // committed before it stays, and the result says the catalogue failed.
  const auto failed = [&session] {
    session.Close();
    PrintRegistrationFailure();
    return kResultDbFail;
  };

  Lines known;
  if (!man.GetAlbumPathList(known, prefix.c_str())) return kScanStopped;
  known.sort();
  GetDiffCacheList(albumDirs, known);
  if (completeScan && !work.DeleteAlbums(known)) return work.writeFailed() ? failed() : ret;
  if (!work.CreateAlbums(albumDirs, folderText)) return work.writeFailed() ? failed() : ret;
  if (!work.Commit()) return failed();
  if (notifyRemote != 0) PrintRemoconMessage(kMsgScanning3, kButtonCancel);

  // One read of the song table serves the comparison and, when nothing
  // is written in between, the renumbering at the end.
  known.clear();
  zansong::SongRows rows;
  if (rows.Read(man, prefix.c_str(), true)) {
    // GetDiffCacheList against the catalogue's lines as they were read:
    // only the lines that differ become strings of their own.
    std::vector<std::string_view> lines = rows.PathList();
    using Line = std::vector<std::string_view>::const_iterator;
    auto keep = [&known](Line line) { known.emplace_back(*line); };
    Line rest = zansong::RemoveCommonLines(
        songLines, lines.cbegin(), lines.cend(), [](Line line) { return ++line; }, keep);
    for (; rest != lines.cend(); ++rest) keep(rest);
  } else if (man.GetSongPathList(known, prefix.c_str())) {
    known.sort();
    GetDiffCacheList(songLines, known);
  } else {
    return ret;
  }
  if (completeScan) {
    if (!work.DeleteSongs(known)) return failed();
  } else {
    DropChangedSongs(songLines, known);
  }
  work.AddSongs(songLines);
  if (work.writeFailed()) return failed();
  if (keepOrder == 0) work.Renumber(folderText, rows);
  if (work.writeFailed() || !session.Close()) return failed();
  return ret;
}
