// Speed of organising a large catalogue on a disk-backed file system:
//   delete_album        FH_delete_album of an album of 998 MIDI songs (the
//                       files, the song rows and their 998 playlist
//                       entries, the album row);
//   add_album           FH_Add_To_Playlist of that album (998 songs) to an
//                       empty playlist;
//   sort_ten            FH_sort moving 10 songs of that album to the front;
//   reorder_albums      FH_reorder of the albums of a prefix holding 499
//                       albums and 4999 songs, every position changing;
//   reorder_album       FH_reorder of the album of 998 songs, every
//                       position changing.
//
//   build/bench/organise_bench [--benchmark_repetitions=3]
//
// Each case runs with the writes grouped into short transactions
// (per_row:0) and with every statement committing on its own (per_row:1,
// see commit_mode.h).  The device image lives under /tmp; a tmpfs there is
// refused.
#include <sys/stat.h>

#include <list>
#include <string>

#include "commit_mode.h"
#include "samplefiles/midi_writer.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/delete.h"
#include "zansong/fileman/order.h"
#include "zansong/fileman/playlists.h"

namespace {

using bench_commits::CommitMode;
using bench_commits::Commits;
using bench_commits::kGrouped;
using bench_commits::kPerRow;

constexpr int kAlbumSongs = 998;
constexpr int kAlbums = 499;
constexpr int kPrefixSongs = 4999;
constexpr int kBigAlbum = 1;
constexpr int kPlaylist = 1;

std::string SongBytes(int n) {
  samplefiles::MidiTrack conductor;
  conductor.TrackName(0, "Song " + std::to_string(n)).Tempo(0, 500000).EndOfTrack();
  samplefiles::MidiTrack piano;
  for (int i = 0; i < 200; ++i) piano.NoteOn(0, 0, 48 + i % 36, 80).NoteOff(48, 0, 48 + i % 36);
  piano.EndOfTrack();
  return samplefiles::BuildSmf(samplefiles::SmfOptions(),
                               std::vector<samplefiles::MidiTrack>{conductor, piano});
}

// One image for the whole process: album 1 ("Big", 998 songs with files)
// and albums 2..499 holding the rest of 4999 songs (rows only), one
// playlist.
struct Catalogue {
  zansong_test::DeviceImage image;
  std::string root, db;

  Catalogue() : root(image.SongRoot()), db(root + ".zansong.db") {
    zansong_test::CreateCatalogue(image, db);
    Exec("WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i+1 FROM n WHERE i < " +
         std::to_string(kAlbums) +
         ") INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
         "SELECT 's', i, 'Album' || i, 'Album' || i, i FROM n");
    Exec("WITH RECURSIVE n(i) AS (SELECT " + std::to_string(kAlbumSongs + 1) +
         " UNION ALL SELECT i+1 FROM n WHERE i < " + std::to_string(kPrefixSongs) +
         ") INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,album_id) "
         "SELECT 's', i, 'S' || i, 'Album' || (2 + i % 498) || '/' || i || '.mid', '', i, "
         "2 + i % 498 FROM n");
    Exec("INSERT INTO playlist VALUES('l'," + std::to_string(kPlaylist) + ",'Evening',1)");
    MakeBigAlbum();
  }
  void Exec(const std::string& sql) { zansong_test::ExecOn(db, sql); }

  // Album 1 with 998 song files and rows, each song also in the playlist.
  void MakeBigAlbum() {
    ::mkdir((root + "Big").c_str(), 0777);
    for (int n = 1; n <= kAlbumSongs; ++n) {
      samplefiles::SaveBytes(root + "Big/" + std::to_string(n) + ".mid", SongBytes(n));
    }
    Exec("INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) VALUES('s'," +
         std::to_string(kBigAlbum) + ",'Big','Big',1)");
    Exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i < " +
         std::to_string(kAlbumSongs) +
         ") INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,album_id) "
         "SELECT 's', i, 'S' || i, 'Big/' || i || '.mid', '', i, 1 FROM n");
    Exec("DELETE FROM psong");
    Exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i < " +
         std::to_string(kAlbumSongs) + ") INSERT INTO psong SELECT 'l', i, " +
         std::to_string(kPlaylist) + ", 's', i, i FROM n");
  }
  // Album 1 as made above, unless it is there.
  void EnsureBigAlbum() {
    if (zansong_test::IntOn(db, "SELECT COUNT(*) FROM album WHERE album_id = 1") == 0) {
      MakeBigAlbum();
    }
  }
  void EmptyPlaylist() { Exec("DELETE FROM psong"); }
  // Every position of the sequence changes on the next renumbering.
  void ScrambleAlbums() { Exec("UPDATE album SET disp_order = 10000 - 3 * album_id"); }
  void ScrambleBigAlbum() {
    Exec("UPDATE song SET disp_order = 10000 - 3 * song_id WHERE album_id = 1");
  }
};

Catalogue& TheCatalogue() {
  static Catalogue* catalogue = new Catalogue();
  return *catalogue;
}

// Runs op timed in the case's commit mode, with prepare untimed before
// each iteration.
template <typename Prepare, typename Op>
void Measure(benchmark::State& state, Prepare prepare, Op op) {
  Catalogue& c = TheCatalogue();
  if (!bench_commits::OnDisk(state, c.root)) return;
  CommitMode mode(state, static_cast<Commits>(state.range(0)));
  zansong_test::StdoutCapture quiet;
  for (auto _ : state) {
    state.PauseTiming();
    prepare(c);
    mode.Timed(true);
    state.ResumeTiming();
    int result = op(c);
    state.PauseTiming();
    mode.Timed(false);
    if (result != 0) state.SkipWithError("the operation failed");
    state.ResumeTiming();
  }
}

void BM_DeleteAlbum998(benchmark::State& state) {
  Measure(
      state, [](Catalogue& c) { c.EnsureBigAlbum(); },
      [](Catalogue& c) {
        std::list<int> ids{kBigAlbum};
        return FH_delete_album(c.root.c_str(), ids, "s");
      });
}

void BM_AddAlbumToPlaylist998(benchmark::State& state) {
  Measure(
      state,
      [](Catalogue& c) {
        c.EnsureBigAlbum();
        c.EmptyPlaylist();
      },
      [](Catalogue& c) {
        std::list<int> ids{kBigAlbum};
        return FH_Add_To_Playlist(c.root.c_str(), ids, "s", kPlaylist, "l", 1);
      });
}

void BM_SortTenInAlbum998(benchmark::State& state) {
  Measure(
      state, [](Catalogue& c) { c.EnsureBigAlbum(); },
      [](Catalogue& c) {
        std::list<int> ids;
        for (int i = 0; i < 10; ++i) ids.push_back(900 - 90 * i);
        return FH_sort(c.root.c_str(), ids, "s", 1, 0);
      });
}

void BM_ReorderAlbumsOfPrefix4999(benchmark::State& state) {
  Measure(
      state, [](Catalogue& c) { c.ScrambleAlbums(); },
      [](Catalogue& c) { return FH_reorder(c.root.c_str(), 0, "s"); });
}

void BM_ReorderAlbum998(benchmark::State& state) {
  Measure(
      state,
      [](Catalogue& c) {
        c.EnsureBigAlbum();
        c.ScrambleBigAlbum();
      },
      [](Catalogue& c) { return FH_reorder(c.root.c_str(), kBigAlbum, "s"); });
}

#define ORGANISE_CASE(name, grouped_iterations, per_row_iterations) \
  BENCHMARK(name)                                                   \
      ->ArgName("per_row")                                          \
      ->Arg(kGrouped)                                               \
      ->Unit(benchmark::kMillisecond)                               \
      ->Iterations(grouped_iterations);                             \
  BENCHMARK(name)                                                   \
      ->ArgName("per_row")                                          \
      ->Arg(kPerRow)                                                \
      ->Unit(benchmark::kMillisecond)                               \
      ->Iterations(per_row_iterations)

ORGANISE_CASE(BM_DeleteAlbum998, 5, 3);
ORGANISE_CASE(BM_AddAlbumToPlaylist998, 5, 1);
ORGANISE_CASE(BM_SortTenInAlbum998, 5, 1);
ORGANISE_CASE(BM_ReorderAlbumsOfPrefix4999, 5, 1);
ORGANISE_CASE(BM_ReorderAlbum998, 5, 1);

}  // namespace

BENCHMARK_MAIN();
