// Speed of GetSMFInfo: a full walk (file reading included) over generated
// MIDI files of format 0 and 1, 1 to 16 tracks, with tempo maps, from about
// 10 KB to 1 MB.  Reports the MIDI bytes walked per second.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "samplefiles/midi_writer.h"
#include "zansong/formats/smf.h"

namespace {

using samplefiles::BuildSmf;
using samplefiles::MidiTrack;
using samplefiles::SaveBytes;
using samplefiles::SmfOptions;

// A track of notes on its own channel, about bytes long, with a tempo change
// every 500 events in the tracks that carry the tempo map.
MidiTrack NoteTrack(int index, size_t bytes, bool tempoMap, bool runningStatus) {
  MidiTrack t;
  t.SetRunningStatus(runningStatus);
  if (index == 0) t.TrackName(0, "Benchmark song").Tempo(0, 500000);
  unsigned seed = 12345u + static_cast<unsigned>(index) * 7919u;
  int events = 0;
  while (t.bytes().size() < bytes) {
    seed = seed * 1103515245u + 12345u;
    int key = 36 + static_cast<int>((seed >> 16) % 48);
    uint32_t delta = (seed >> 8) % 7 == 0 ? 0 : 30 + (seed >> 20) % 200;
    t.NoteOn(delta, index % 16, key, 80);
    t.NoteOn(60, index % 16, key, 0);
    if (++events % 200 == 0) t.Control(0, index % 16, 64, (seed >> 4) & 0x7F);
    if (tempoMap && events % 500 == 0) t.Tempo(0, 400000 + (seed >> 12) % 300000);
  }
  t.EndOfTrack(0);
  return t;
}

struct FileSet {
  std::string dir;
  std::vector<std::string> paths;
  size_t totalBytes = 0;

  FileSet() {
    char pattern[] = "/tmp/zansong-smf-bench-XXXXXX";
    dir = mkdtemp(pattern);
    struct Shape {
      int format;
      int tracks;
      size_t bytes;
    };
    const Shape shapes[] = {{0, 1, 10000},   {1, 2, 10000},   {1, 16, 10000},
                            {0, 1, 100000},  {1, 4, 100000},  {1, 16, 100000},
                            {0, 1, 1000000}, {1, 8, 1000000}, {1, 16, 1000000}};
    for (const Shape& shape : shapes) {
      std::vector<MidiTrack> tracks;
      for (int i = 0; i < shape.tracks; ++i) {
        tracks.push_back(NoteTrack(i, shape.bytes / static_cast<size_t>(shape.tracks),
                                   i == 0 || i == shape.tracks - 1, i % 2 == 0));
      }
      std::string bytes = BuildSmf(SmfOptions{shape.format, 480, false, -1}, tracks);
      std::string path = dir + "/f" + std::to_string(paths.size()) + ".mid";
      SaveBytes(path, bytes);
      paths.push_back(path);
      totalBytes += bytes.size();
    }
  }
  ~FileSet() {
    for (const std::string& path : paths) unlink(path.c_str());
    rmdir(dir.c_str());
  }
};

void BM_GetSMFInfoFullWalk(benchmark::State& state) {
  static FileSet files;
  TSongPara para;
  for (auto _ : state) {
    for (const std::string& path : files.paths) {
      if (GetSMFInfo(path.c_str(), &para, false, "") != 1) state.SkipWithError("not loaded");
      benchmark::DoNotOptimize(para.totalTimeMs);
    }
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(files.totalBytes));
  state.counters["files"] = static_cast<double>(files.paths.size());
}
BENCHMARK(BM_GetSMFInfoFullWalk)->Unit(benchmark::kMillisecond);

void BM_GetSMFInfoSmallFiles(benchmark::State& state) {
  static FileSet files;
  TSongPara para;
  // Only the 10 KB files: the per-file costs (open, read, allocation).
  for (auto _ : state) {
    for (size_t i = 0; i < 3; ++i) {
      GetSMFInfo(files.paths[i].c_str(), &para, false, "");
      benchmark::DoNotOptimize(para.totalTimeMs);
    }
  }
  int64_t bytes = 0;
  for (size_t i = 0; i < 3; ++i) {
    FILE* f = fopen(files.paths[i].c_str(), "rb");
    fseek(f, 0, SEEK_END);
    bytes += ftell(f);
    fclose(f);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes);
}
BENCHMARK(BM_GetSMFInfoSmallFiles)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
