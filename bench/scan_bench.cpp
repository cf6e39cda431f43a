// Costs of the registration scan's two halves: walking a full USB storage
// (499 album directories, 4999 songs: MIDI alone, MIDI with a WAV
// companion, MP3 alone) into song cache lines, and taking the difference of
// two 4999-line cache lists that differ in 10 lines.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <list>
#include <string>

#include "support/device_image.h"
#include "zansong/storage/scan.h"

namespace {

constexpr int kAlbums = 499;
constexpr int kSongs = 4999;

// A stick whose albums hold kSongs songs in turn: i % 3 == 0 a MIDI file,
// 1 a MIDI file with its WAV companion, 2 an MP3 file.
struct FullStick {
  FullStick() {
    root = image.UsbRoot("sda1");
    for (int a = 0; a < kAlbums; ++a) {
      zansong_test::MakeDirs(root + "Album " + std::to_string(a) + "/");
    }
    for (int i = 0; i < kSongs; ++i) {
      std::string base =
          root + "Album " + std::to_string(i % kAlbums) + "/Song " + std::to_string(i);
      switch (i % 3) {
        case 0:
          zansong_test::WriteFile(base + ".mid", "MThd");
          break;
        case 1:
          zansong_test::WriteFile(base + ".MID", "MThd");
          zansong_test::WriteFile(base + ".wav", "RIFF");
          break;
        default:
          zansong_test::WriteFile(base + ".mp3", "ID3");
          break;
      }
    }
  }
  zansong_test::DeviceImage image;
  std::string root;
};

void BM_GetDirFileList4FullStick(benchmark::State& state) {
  FullStick stick;
  const int start = static_cast<int>(stick.root.size()) + 1;
  for (auto _ : state) {
    std::list<std::string> albums, songs, loose;
    bool flag = false;
    int r = GetDirFileList4(stick.root.c_str(), start, albums, songs, loose, 2, 0, &flag);
    if (r != 0 || albums.size() != kAlbums || songs.size() != kSongs) {
      state.SkipWithError("the scan did not list the whole stick");
      break;
    }
    benchmark::DoNotOptimize(songs);
  }
  state.SetItemsProcessed(state.iterations() * kSongs);
}
BENCHMARK(BM_GetDirFileList4FullStick)->Unit(benchmark::kMillisecond);

std::list<std::string> CacheLines(int changedEvery) {
  std::list<std::string> lines;
  char line[256];
  for (int i = 0; i < kSongs; ++i) {
    bool changed = changedEvery > 0 && i % changedEvery == 0;
    std::snprintf(line, sizeof(line),
                  "Album %03d/Song %04d.mid\tAlbum %03d/Song %04d.wav\tSMF,WAV\t"
                  "Sat Nov 21 15:%02d:%02d 2026",
                  i % kAlbums, i, i % kAlbums, i, changed ? 59 : 0, i % 60);
    lines.push_back(line);
  }
  lines.sort();
  return lines;
}

void BM_GetDiffCacheList4999Lines10Differ(benchmark::State& state) {
  const std::list<std::string> disk = CacheLines(0);
  const std::list<std::string> catalogue = CacheLines(500);  // lines 0, 500, ... 4500
  std::list<std::string> a, b;
  for (auto _ : state) {
    state.PauseTiming();  // copying the lists (and freeing the last ones) is not measured
    a = disk;
    b = catalogue;
    state.ResumeTiming();
    GetDiffCacheList(a, b);
    if (a.size() != 10 || b.size() != 10) {
      state.SkipWithError("the lists should keep 10 lines each");
      break;
    }
  }
}
BENCHMARK(BM_GetDiffCacheList4999Lines10Differ)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
