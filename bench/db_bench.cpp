// Costs of single catalogue operations on a disk-backed file: one song
// insert, one order update, one path list over 4999 songs, and one
// InitDB + Open + Close cycle.  Each write is its own transaction, as the
// library runs them.
#include <benchmark/benchmark.h>
#include <sys/vfs.h>

#include <cstdio>
#include <list>
#include <string>

#include "common/process.h"
#include "support/device_image.h"
#include "zansong/db.h"

namespace {

constexpr long kTmpfsMagic = 0x01021994;

// A device image whose internal catalogue holds songs songs of prefix "s"
// in album 1; the image lives as long as the object.
struct Catalogue {
  explicit Catalogue(int songs, benchmark::State& state) {
    struct statfs fs;
    if (statfs(image.root().c_str(), &fs) == 0 && fs.f_type == kTmpfsMagic) {
      state.SkipWithError("the device image is on tmpfs; set TMPDIR to a disk");
    }
    root = image.SongRoot();
    man.InitDB(root.c_str());
    man.Open();
    man.CreateAlbum("Album", "User/Album", "", "s");
    char sql[512];
    std::snprintf(sql, sizeof sql,
                  "WITH RECURSIVE k(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM k WHERE i<%d) "
                  "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,"
                  "format,mtime,album_id) SELECT 's',i,'Song '||i,'User/Album/'||i||'.mid',"
                  "'',i,'SMF','2020/01/01 00:00:00',1 FROM k",
                  songs);
    if (songs > 0) man.Query(sql);
  }
  zansong_test::DeviceImage image;
  std::string root;
  TDBSongMan man;
};

void BM_AddSong2(benchmark::State& state) {
  Catalogue c(0, state);
  SongInfo info;
  info.title = "Title";
  info.midiPath = "User/Album/x.mid";
  info.format = "SMF";
  info.mtime = "2020/01/01 00:00:00";
  char ctime[] = "2020/01/01 00:00:00";
  int id = 0;
  for (auto _ : state) {
    ++id;
    benchmark::DoNotOptimize(c.man.AddSong2(1, id, id, &info, ctime, "s"));
  }
}
BENCHMARK(BM_AddSong2)->Unit(benchmark::kMicrosecond);

void BM_SetOrder(benchmark::State& state) {
  Catalogue c(4999, state);
  int order = 0;
  for (auto _ : state) benchmark::DoNotOptimize(c.man.SetOrder("song", 2500, ++order));
}
BENCHMARK(BM_SetOrder)->Unit(benchmark::kMicrosecond);

void BM_GetSongPathList(benchmark::State& state) {
  Catalogue c(4999, state);
  for (auto _ : state) {
    std::list<std::string> entries;
    c.man.GetSongPathList(entries, "s");
    benchmark::DoNotOptimize(entries.size());
  }
}
BENCHMARK(BM_GetSongPathList)->Unit(benchmark::kMicrosecond);

void BM_InitOpenClose(benchmark::State& state) {
  Catalogue c(4999, state);
  c.man.Close();
  for (auto _ : state) {
    TDBSongMan man;
    man.InitDB(c.root.c_str());
    man.Open();
    man.Close();
  }
}
BENCHMARK(BM_InitOpenClose)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
