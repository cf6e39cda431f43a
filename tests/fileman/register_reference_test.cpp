// Registration against a plain reference: the same storage registered by
// FM_Add_AllSongs_ByCache and by a loop written here, step by step from the
// catalogue manager's own calls (its text insert, its path lists) and a
// directory walk of its own, must leave the same rows, keys, display orders
// and printed lines.
#include <dirent.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <list>
#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/common/charset.h"
#include "zansong/common/path.h"
#include "zansong/db/dbsongman.h"
#include "zansong/fileman/messages.h"
#include "zansong/fileman/register.h"
#include "zansong/formats/audio.h"
#include "zansong/formats/smf.h"
#include "zansong/formats/title_text.h"
#include "zansong/storage/files.h"
#include "zansong/storage/scan.h"

namespace zansong_test {
namespace {

using Lines = std::list<std::string>;

constexpr int kProgressTarget = 3;
// The reference walks the general song area of the internal root.
const char kPrefix[] = "s";

// The modification time as the catalogue keeps it: asctime's text without
// the line end.
std::string TimeText(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return "";
  struct tm local;
  char text[64] = "";
  if (::localtime_r(&st.st_mtime, &local) == nullptr || ::asctime_r(&local, text) == nullptr) {
    return "";
  }
  std::string line = text;
  if (!line.empty() && line.back() == '\n') line.pop_back();
  return line;
}

std::string Upper(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

// The last four characters of name, upper-cased ("" when shorter).
std::string Extension(const std::string& name) {
  return name.size() < 4 ? "" : Upper(name.substr(name.size() - 4));
}

std::string WithoutExtension(const std::string& name) {
  std::string::size_type dot = name.rfind('.');
  return dot == std::string::npos ? name : name.substr(0, dot);
}

// A song's title from its file name, and its album: both split at "/"
// only, so that a backslash or a Shift-JIS byte 0x5C stays in the name.
TSString TitleOfName(const std::string& path) {
  return WithoutExtension(path.substr(path.rfind('/') + 1)).c_str();
}
TSString AlbumOf(const std::string& path) {
  const std::string::size_type slash = path.rfind('/');
  return slash == std::string::npos ? TSString() : TSString(path.substr(0, slash).c_str());
}

std::vector<std::string> Entries(const std::string& dir) {
  std::vector<std::string> names;
  if (DIR* d = ::opendir(dir.c_str())) {
    while (dirent* e = ::readdir(d)) {
      if (std::strcmp(e->d_name, ".") != 0 && std::strcmp(e->d_name, "..") != 0) {
        names.push_back(e->d_name);
      }
    }
    ::closedir(d);
  }
  return names;
}

bool IsDir(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The song lines of the files directly in root + rel (rel "" or ending in
// "/"): a MIDI file with the WAV or MP3 file of its name as companion (the
// storages here hold at most one), audio files without a MIDI file alone.
Lines SongLinesOf(const std::string& root, const std::string& rel) {
  std::vector<std::string> midis, audios;
  for (const std::string& name : Entries(root + rel)) {
    if (IsDir(root + rel + name)) continue;
    const std::string ext = Extension(name);
    if (ext == ".MID") midis.push_back(name);
    if (ext == ".WAV" || ext == ".MP3") audios.push_back(name);
  }
  Lines lines;
  for (const std::string& midi : midis) {
    std::string audio, kind = "SMF";
    for (auto a = audios.begin(); a != audios.end(); ++a) {
      if (WithoutExtension(*a) == WithoutExtension(midi)) {
        audio = rel + *a;
        kind = "SMF," + Extension(*a).substr(1);
        audios.erase(a);
        break;
      }
    }
    lines.push_back(rel + midi + "\t" + audio + "\t" + kind + "\t" + TimeText(root + rel + midi));
  }
  for (const std::string& a : audios) {
    lines.push_back("\t" + rel + a + "\t" + Extension(a).substr(1) + "\t" +
                    TimeText(root + rel + a));
  }
  return lines;
}

// The album directories and song lines below the internal song root: two
// directory levels, "rec" and "test" left out, hidden directories skipped;
// a directory is an album when it holds songs or nothing at all.
void WalkStorage(const std::string& root, const std::string& rel, int level, Lines* albums,
                 Lines* songs) {
  for (const std::string& name : Entries(root + rel)) {
    const std::string sub = rel + name + "/";
    if (!IsDir(root + sub) || name[0] == '.') continue;
    if (sub.rfind("rec/", 0) == 0 || sub.rfind("test/", 0) == 0) continue;
    Lines lines = SongLinesOf(root, sub);
    if (!lines.empty() || Entries(root + sub).empty()) {
      albums->push_back(rel + name);
      songs->splice(songs->end(), lines);
    }
    if (level < 2) WalkStorage(root, sub, level + 1, albums, songs);
  }
}

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields;
  std::string::size_type from = 0;
  for (;;) {
    std::string::size_type tab = line.find('\t', from);
    fields.push_back(line.substr(from, tab == std::string::npos ? std::string::npos : tab - from));
    if (tab == std::string::npos) return fields;
    from = tab + 1;
  }
}

std::string NowText() {
  std::time_t now = std::time(nullptr);
  char text[64] = "";
  ::ctime_r(&now, text);
  std::string line = text;
  if (!line.empty() && line.back() == '\n') line.pop_back();
  return line;
}

// Renumbers the rows of table by their path-list entries in byte order,
// writing every position.
void RenumberByPath(TDBSongMan& man, const char* table, Lines entries) {
  entries.sort();
  int order = 0;
  for (const std::string& entry : entries) {
    man.SetOrder(table, std::atoi(entry.substr(entry.rfind('\t') + 1).c_str()), ++order);
  }
}

// The registration of the general song area of the internal root,
// keepOrder 0, notifyRemote 0, as a plain loop, in one transaction (which
// changes no row: reads see the transaction's own writes).
void ReferenceRegister(const std::string& root) {
  PrintRemoconMessage(9, 2);
  Lines albums, songs;
  WalkStorage(root, "", 1, &albums, &songs);
  ASSERT_TRUE(SongLinesOf(root, "").empty()) << "loose songs would make the root an album";
  albums.sort();
  songs.sort();

  TDBSongMan man;
  ASSERT_TRUE(man.InitDB(root.c_str()));
  ASSERT_TRUE(man.Open());
  ASSERT_TRUE(man.Query(const_cast<char*>("BEGIN")));
  Lines known;
  ASSERT_TRUE(man.GetAlbumPathList(known, kPrefix));
  known.sort();
  GetDiffCacheList(albums, known);
  for (const std::string& path : known) {
    int id = man.GetAlbumIDByPath(path.c_str());
    man.DeleteData("song", "album_id", std::to_string(id).c_str());
    man.DeleteData("album", "album_path", path.c_str());
  }
  for (const std::string& d : albums) {
    const std::string titleFile = root + d + "/.zanalbum";
    std::string title = d;
    if (FileExists(titleFile.c_str())) title = GetAlbumTitle(titleFile.c_str()).c_str();
    man.CreateAlbum(title.c_str(), d.c_str(), "", kPrefix);
  }

  known.clear();
  ASSERT_TRUE(man.GetSongPathList(known, kPrefix));
  known.sort();
  GetDiffCacheList(songs, known);
  int count = 0;
  for (const std::string& line : known) {
    if (++count % 200 == 0) {
      PrintUnregisterMessage(count * 100 / static_cast<int>(known.size()), kProgressTarget, true);
    }
    std::vector<std::string> f = Fields(line);
    man.DeleteSongByPath(&f[0][0], &f[1][0]);
  }
  man.DeletePsongNotExist(kPrefix);

  int songId = man.GetMaxInt("song", "song_id") + 1;
  int order = man.GetMaxInt("song", "disp_order") + 1;
  count = 0;
  for (const std::string& line : songs) {
    if (++count % 200 == 0) {
      PrintRegisterMessage(count * 100 / static_cast<int>(songs.size()), kProgressTarget, true);
    }
    std::vector<std::string> f = Fields(line);
    SongInfo info;
    info.midiPath = f[0].c_str();
    info.audioPath = f[1].c_str();
    info.format = f[2].c_str();
    info.mtime = f[3].c_str();
    info.length = 0;
    if (f[2].find("SMF") == std::string::npos) {
      info.title = TitleOfName(f[1]);
      info.albumPath = AlbumOf(f[1]);
      info.length = static_cast<int>(GetAudioTime((root + f[1]).c_str()));
    } else {
      TSongPara para;
      if (!GetSMFInfo((root + f[0]).c_str(), &para, false, "")) continue;
      if (para.title[0] == '\0') {
        info.title = TitleOfName(f[0]);
      } else {
        std::vector<char> slim(std::strlen(para.title) + 1);
        GetSlimText(slim.data(), para.title);
        info.title = StringConv(slim.data(), "SHIFT-JIS", "UTF-8");
      }
      info.syncId = para.songId;
      info.length = static_cast<int>(para.totalTimeMs);
      if (f[2].find("WAV") == std::string::npos && f[2].find("MP3") == std::string::npos) {
        if (para.partMode == 1) info.format = "SMFSOLO";
        if (para.partMode == 2) info.format = "SMFKW";
      } else if (!f[1].empty()) {
        info.length = std::max(info.length, static_cast<int>(GetAudioTime((root + f[1]).c_str())));
      }
      info.albumPath = AlbumOf(f[0]);
    }
    int albumId = man.GetAlbumIDByPath(info.albumPath.c_str());
    std::string ctime = NowText();
    ASSERT_TRUE(man.AddSong2(albumId, songId++, order++, &info, &ctime[0], kPrefix));
  }

  Lines entries;
  ASSERT_TRUE(man.GetAlbumPathList2(entries, kPrefix));
  RenumberByPath(man, "album", entries);
  entries.clear();
  ASSERT_TRUE(man.GetSongPathList2(entries, kPrefix));
  RenumberByPath(man, "song", entries);
  ASSERT_TRUE(man.Query(const_cast<char*>("COMMIT")));
  man.Close();
}

// A MIDI song: title (none when empty), part channels (none when 0) and
// notes on the given 0-based channels.
void WriteMidi(const std::string& path, const std::string& title, int quarters,
               std::vector<int> channels = {0}, int partA = 0, int partB = 0) {
  MidiTrack conductor;
  if (!title.empty()) conductor.TrackName(0, title);
  if (partA != 0) conductor.PartChannels(0, partA, partB);
  conductor.Tempo(0, 500000).EndOfTrack(480u * static_cast<uint32_t>(quarters));
  MidiTrack notes;
  for (int i = 0; i < quarters; ++i) {
    int channel = channels[static_cast<size_t>(i) % channels.size()];
    notes.NoteOn(0, channel, 60 + i % 12, 64).NoteOff(480, channel, 60 + i % 12);
  }
  notes.EndOfTrack();
  SaveBytes(path, BuildSmf(SmfOptions(), std::vector<MidiTrack>{conductor, notes}));
}

// Expects the same rows and names the first that differ.
void ExpectSameRows(const std::vector<std::string>& actual,
                    const std::vector<std::string>& expected) {
  EXPECT_EQ(actual.size(), expected.size());
  int reported = 0;
  for (size_t i = 0; i < actual.size() && i < expected.size() && reported < 5; ++i) {
    if (actual[i] != expected[i]) {
      ++reported;
      ADD_FAILURE() << "row " << i << "\n  library:   " << actual[i]
                    << "\n  reference: " << expected[i];
    }
  }
}

class RegisterReferenceTest : public DeviceTest {
 protected:
  void SetUp() override {
    ClearCancelFlag();
    root_ = image_.SongRoot();
  }

  std::string Db() const { return root_ + ".zansong.db"; }
  void SaveDb(const std::string& as) const { WriteFile(as, ReadFile(Db())); }
  void LoadDb(const std::string& from) const {
    std::remove(Db().c_str());
    if (!from.empty()) WriteFile(Db(), ReadFile(from));
  }

  // Every column of every row of the catalogue but the songs' insertion
  // times, which tell when each registration ran; those are checked to be
  // there.
  std::vector<std::string> Catalogue() const {
    std::vector<std::string> rows;
    for (const char* sql :
         {"SELECT 'album',* FROM album ORDER BY album_id",
          "SELECT 'song',pfix,song_id,song_title,midi_path,audio_path,disp_order,format,length,"
          "ctime <> '',mtime,album_id,sync_id,performer,composer,tags,md5,genre,coverart_path,"
          "purchased_date,typeof(length),typeof(disp_order) FROM song ORDER BY song_id",
          "SELECT 'playlist',* FROM playlist ORDER BY playlist_id",
          "SELECT 'psong',* FROM psong ORDER BY psong_id"}) {
      std::vector<std::string> part = QueryRows(Db(), sql);
      rows.insert(rows.end(), part.begin(), part.end());
    }
    return rows;
  }

  // Registers the storage from the catalogue file start ("" for none) both
  // ways and expects the same catalogue and the same printed lines.
  // Returns the catalogue.
  std::vector<std::string> RegisterBothWays(const std::string& start) {
    LoadDb(start);
    StdoutCapture reference;
    ReferenceRegister(root_);
    const std::string referenceLines = reference.Finish();
    const std::vector<std::string> expected = Catalogue();

    LoadDb(start);
    StdoutCapture library;
    EXPECT_EQ(0, FM_Add_AllSongs_ByCache(root_.c_str(), "", 0, 0, kProgressTarget));
    EXPECT_EQ(library.Finish(), referenceLines);
    ExpectSameRows(Catalogue(), expected);
    return expected;
  }

  std::string root_;
};

TEST_F(RegisterReferenceTest, FirstRegistrationAndChangesLeaveTheReferenceRows) {
  const long kTime = 1700000000;
  // 12 albums of 25 songs (every fifth with a WAV companion), a few
  // audio-only songs, an album titled by its title file, Shift-JIS titles
  // and names, part channels, an unreadable MIDI file, an empty album, a
  // nested album and the folders the internal root leaves out.
  for (int a = 0; a < 12; ++a) {
    const std::string album = root_ + "Album" + std::to_string(100 + a) + "/";
    MakeDirs(album);
    for (int s = 0; s < 25; ++s) {
      const std::string song = album + "song" + std::to_string(s);
      WriteMidi(song + ".mid", s % 7 == 0 ? "" : "Song " + std::to_string(a * 25 + s), 4 + s % 5);
      SetModifyTime(song + ".mid", kTime + s);
      if (s % 5 == 0) {
        WriteWavSong(song + ".wav", 1000 * (s % 10));
        SetModifyTime(song + ".wav", kTime);
      }
    }
  }
  WriteWavSong(root_ + "Album100/alone.wav", 3000);
  WriteFile(root_ + "Album101/.zanalbum", "Nocturnes");
  MakeDirs(root_ + "\x83\x5c\x83\x69\x83\x5e");  // a Shift-JIS name with a 0x5C byte
  WriteMidi(root_ + "\x83\x5c\x83\x69\x83\x5e/\x83\x5c.mid", "", 4);
  WriteMidi(root_ + "\x83\x5c\x83\x69\x83\x5e/title.mid", "\x83\x5c\x83\x69\x83\x5e  No. 1 ", 6);
  MakeDirs(root_ + "Parts");
  WriteMidi(root_ + "Parts/solo.mid", "Solo", 4, {0, 1}, 1, 2);
  WriteMidi(root_ + "Parts/ensemble.mid", "Ensemble", 4, {0, 9}, 1, 2);
  WriteFile(root_ + "Parts/broken.mid", "not a midi file");
  MakeDirs(root_ + "Empty");
  MakeDirs(root_ + "Outer/Inner");
  WriteMidi(root_ + "Outer/Inner/deep.mid", "Deep", 4);
  MakeDirs(root_ + "rec");
  WriteMidi(root_ + "rec/take.mid", "Take", 4);
  MakeDirs(root_ + "test");
  WriteMidi(root_ + "test/probe.mid", "Probe", 4);
  MakeDirs(root_ + ".hidden");
  WriteMidi(root_ + ".hidden/secret.mid", "Secret", 4);

  const std::string first = image_.root() + "/first.db";
  std::vector<std::string> rows = RegisterBothWays("");
  ASSERT_GT(rows.size(), 300u);
  SaveDb(first);
  // A playlist holding songs that stay and songs that go.
  ASSERT_TRUE(Execute(first,
                      "INSERT INTO playlist VALUES('p',1,'List',1);"
                      "INSERT INTO psong SELECT 'p',song_id,1,pfix,song_id,song_id FROM song "
                      "WHERE song_id % 9 = 0;"));

  // Again with nothing changed: nothing is written.
  LoadDb(first);
  const std::vector<std::string> before = Catalogue();
  ExpectSameRows(RegisterBothWays(first), before);

  // Touched, added and removed songs, a removed album and a new one.
  for (int i = 0; i < 10; ++i) {
    const std::string album = root_ + "Album" + std::to_string(100 + i) + "/";
    SetModifyTime(album + "song" + std::to_string(i * 2) + ".mid", kTime + 1000 + i);
    WriteMidi(album + "new" + std::to_string(i) + ".mid", "New " + std::to_string(i), 5);
    SetModifyTime(album + "new" + std::to_string(i) + ".mid", kTime + 2000 + i);
    ASSERT_EQ(0, std::remove((album + "song" + std::to_string(i * 2 + 1) + ".mid").c_str()));
  }
  ASSERT_EQ(0, std::remove((root_ + "Album100/song10.wav").c_str()));
  ASSERT_EQ(0, std::system(("rm -r '" + root_ + "Album111'").c_str()));
  MakeDirs(root_ + "Later");
  WriteMidi(root_ + "Later/late.mid", "Late", 4);
  RegisterBothWays(first);
}

}  // namespace
}  // namespace zansong_test
