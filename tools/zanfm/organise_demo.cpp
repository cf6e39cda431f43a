// The demo's playlist, rename and delete steps.
#include "zanfm/organise_demo.h"

#include <iostream>
#include <list>
#include <vector>

#include "zanfm/catalogue_view.h"
#include "zanfm/message_view.h"
#include "zansong/async/list_operations.h"
#include "zansong/fileman/messages.h"
#include "zansong/fileman/playlists.h"
#include "zansong/fileman/rename.h"

namespace zanfm {

namespace {

constexpr int kRenameSong = 0;

int AlbumIdByTitle(const std::string& db, const std::string& title) {
  std::vector<AlbumRow> albums;
  ReadAlbums(db, &albums);
  for (const AlbumRow& a : albums) {
    if (a.title == title) return a.id;
  }
  return 0;
}

const SongRow* SongByPath(const std::vector<SongRow>& songs, const std::string& path) {
  for (const SongRow& s : songs) {
    if (s.path == path) return &s;
  }
  return nullptr;
}

// A target of the catalogue of the internal storage (prefix "s").
TargetInfo Target(int type, int id) {
  TargetInfo target{};
  target.type = type;
  target.pfix = 's';
  target.id = id;
  return target;
}

bool Failed(const std::string& step, int result) {
  std::cerr << "zanfm: " << step << " returned " << result << "\n";
  return false;
}

}  // namespace

bool DemoOrganising(const std::string& root, bool raw) {
  const std::string db = root + ".zansong.db";
  std::cout << "\n== Making the playlist \"Evening\": the album Classics and one more song\n";
  const int classics = AlbumIdByTitle(db, "Classics");
  std::vector<SongRow> songs;
  ReadSongs(db, 0, &songs);
  const SongRow* jazz = SongByPath(songs, "With Audio/01 Jazz Trio.mid");
  if (classics == 0 || jazz == nullptr) return Failed("finding the sample songs", 0);
  const int jazzId = jazz->id;
  int playlist =
      RunShowingMessages(raw, [&] { return FM_Create_New_Playlist(root.c_str(), "Evening"); });
  if (playlist <= 0) return Failed("FM_Create_New_Playlist", playlist);
  std::list<int> albums{classics};
  std::list<int> single{jazzId};
  int added = RunShowingMessages(raw, [&] {
    int r = FH_Add_To_Playlist(root.c_str(), albums, "s", playlist, "l", 1);
    return r != 0 ? r : FH_Add_To_Playlist(root.c_str(), single, "s", playlist, "l", 0);
  });
  if (added != 0) return Failed("FH_Add_To_Playlist", added);
  std::vector<SongRow> entries;
  ReadPlaylistSongs(db, playlist, &entries);
  std::cout << SongTable(entries);

  std::cout << "\n== Renaming the song #" << jazzId
            << " to \"Jazz Trio (live)\", its MIDI and WAV files too\n";
  int renamed = RunShowingMessages(
      raw, [&] { return FH_rename(root.c_str(), jazzId, "Jazz Trio (live)", kRenameSong, 1); });
  if (renamed != 0) return Failed("FH_rename", renamed);
  songs.clear();
  ReadSongs(db, 0, &songs);
  for (const SongRow& s : songs) {
    if (s.id == jazzId) std::cout << "   #" << s.id << " " << s.title << ": " << s.path << "\n";
  }

  std::cout << "\n== Deleting the album \"Holiday Favourites\" and the song \"Loose Song\" "
               "in one request\n";
  const SongRow* loose = SongByPath(songs, "Loose Song.mid");
  const int holiday = AlbumIdByTitle(db, "Holiday Favourites");
  if (loose == nullptr || holiday == 0) return Failed("finding the songs to delete", 0);
  std::vector<TargetInfo> targets = {Target(kTargetAlbum, holiday), Target(kTargetSong, loose->id)};
  int deleted = RunShowingMessages(raw, [&] { return FH2_delete(root.c_str(), targets); });
  if (deleted != 0) return Failed("FH2_delete", deleted);
  songs.clear();
  ReadSongs(db, 0, &songs);
  std::cout << "   \"Loose Song.mid\" "
            << (SongByPath(songs, "Loose Song.mid") == nullptr ? "deleted" : "still there") << "\n";
  std::vector<AlbumRow> left;
  ReadAlbums(db, &left);
  std::cout << AlbumTable(left);
  return true;
}

}  // namespace zanfm
