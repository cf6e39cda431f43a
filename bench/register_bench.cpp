// Registration speed on a generated storage of 499 album directories and
// 4999 MIDI songs of about 20 KB (two tracks, a title, tempo changes), some
// with WAV companions, on a disk-backed file system.
//
//   build/bench/register_bench [--benchmark_repetitions=3]
//   build/bench/register_bench --lay-out SONGROOT   (only lays out the storage)
//   build/bench/register_bench --change SONGROOT R  (only makes the changes of round R)
//
// Each case runs twice: with the registration's writes grouped into short
// transactions (per_row:0) and with every statement committing on its own
// (per_row:1).  For the second, this program puts its own sqlite3_exec in
// front of SQLite's and refuses "BEGIN IMMEDIATE": the library then runs
// each write on its own, which is its path when the lock cannot be had.
// The refused BEGINs are counted over a case's timed iterations
// (begins_refused); a per-row case in which none was refused did not defeat
// the grouping and reports an error.
//
// The device image lives under /tmp: a tmpfs there would measure memory,
// not a disk, so the cases refuse to run on one.
#include <sys/stat.h>
#include <utime.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "commit_mode.h"
#include "samplefiles/midi_writer.h"
#include "samplefiles/wav_writer.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/register.h"

namespace {

using samplefiles::MidiTrack;

constexpr int kAlbums = 499;
constexpr int kSongs = 4999;

std::string SongBytes(int n) {
  MidiTrack conductor;
  conductor.TrackName(0, "Song number " + std::to_string(n));
  for (int bar = 0; bar < 60; ++bar) conductor.Tempo(bar == 0 ? 0 : 1920, 500000 + bar * 1000);
  conductor.EndOfTrack();
  MidiTrack piano;
  for (int i = 0; i < 2400; ++i) piano.NoteOn(0, 0, 48 + i % 36, 80).NoteOff(48, 0, 48 + i % 36);
  piano.EndOfTrack();
  return samplefiles::BuildSmf(samplefiles::SmfOptions(), std::vector<MidiTrack>{conductor, piano});
}

std::string SongPath(const std::string& root, int n) {
  return root + "Album" + std::to_string(1000 + n % kAlbums) + "/Song" + std::to_string(10000 + n) +
         ".mid";
}

// Lays out the album directories and songs below root (ending in "/").
void LayOut(const std::string& root) {
  for (int a = 0; a < kAlbums; ++a)
    ::mkdir((root + "Album" + std::to_string(1000 + a)).c_str(), 0777);
  for (int n = 0; n < kSongs; ++n) {
    samplefiles::SaveBytes(SongPath(root, n), SongBytes(n));
    if (n % 50 == 0) {
      samplefiles::WavSpec wav;
      wav.dataBytes = 4000;
      std::string p = SongPath(root, n);
      samplefiles::WriteWavFile(p.substr(0, p.size() - 4) + ".wav", wav);
    }
  }
}

// Round r below root: touches 10 songs, adds 10 new ones and removes 10:
// in round 0 ten of the songs laid out, later the 10 that round r - 1
// added.  The storage keeps 4999 songs, the most a registration takes.
void ChangeThirty(const std::string& root, int round) {
  for (int i = 0; i < 10; ++i) {
    int n = (i * 499 + round * 7) % kSongs;
    struct utimbuf t;
    t.actime = t.modtime = std::time(nullptr) + round * 100 + i;
    ::utime(SongPath(root, n).c_str(), &t);
    std::string album = root + "Album" + std::to_string(1000 + (i * 37) % kAlbums) + "/New";
    samplefiles::SaveBytes(album + std::to_string(round) + "_" + std::to_string(i) + ".mid",
                           SongBytes(i));
    if (round > 0) {
      std::remove((album + std::to_string(round - 1) + "_" + std::to_string(i) + ".mid").c_str());
    } else {
      std::remove(SongPath(root, i * 499 + 275).c_str());  // none with a WAV companion
    }
  }
}

// One storage for the whole process.
struct Storage {
  zansong_test::DeviceImage image;
  std::string root;
  Storage() {
    root = image.SongRoot();
    LayOut(root);
  }
  int Register(int keepOrder) {
    zansong_test::StdoutCapture quiet;
    return FM_Add_AllSongs_ByCache(root.c_str(), "", 0, keepOrder, 0);
  }
  void DropCatalogue() { std::remove((root + ".zansong.db").c_str()); }
  void ChangeThirty(int round) { ::ChangeThirty(root, round); }
  int round = 0;
};

Storage& TheStorage() {
  static Storage* storage = new Storage();
  return *storage;
}

using bench_commits::CommitMode;
using bench_commits::Commits;
using bench_commits::kGrouped;
using bench_commits::kPerRow;

bool Usable(benchmark::State& state, Storage& s) { return bench_commits::OnDisk(state, s.root); }

// Every registration measured must take the whole storage: one that stops
// early (a limit) would measure less work.
void Registered(benchmark::State& state, int result) {
  if (result != 0) state.SkipWithError("a registration did not return 0");
}

// A registered catalogue of the whole storage, written grouped.
void RegisterAll(benchmark::State& state, Storage& s) {
  s.DropCatalogue();
  Registered(state, s.Register(0));
}

void BM_FirstRegistration(benchmark::State& state) {
  Storage& s = TheStorage();
  if (!Usable(state, s)) return;
  CommitMode mode(state, static_cast<Commits>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    s.DropCatalogue();
    mode.Timed(true);
    state.ResumeTiming();
    const int result = s.Register(0);
    state.PauseTiming();
    Registered(state, result);
    mode.Timed(false);
    state.ResumeTiming();
  }
}
BENCHMARK(BM_FirstRegistration)
    ->ArgName("per_row")
    ->Arg(kGrouped)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
// One synchronous commit per row: minutes on a slow disk, so only once.
BENCHMARK(BM_FirstRegistration)
    ->ArgName("per_row")
    ->Arg(kPerRow)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

void BM_RegistrationUnchanged(benchmark::State& state) {
  Storage& s = TheStorage();
  if (!Usable(state, s)) return;
  RegisterAll(state, s);
  CommitMode mode(state, static_cast<Commits>(state.range(0)));
  mode.Timed(true);
  int result = 0;
  for (auto _ : state) result |= s.Register(0);
  Registered(state, result);
  mode.Timed(false);
}
BENCHMARK(BM_RegistrationUnchanged)
    ->ArgName("per_row")
    ->DenseRange(kGrouped, kPerRow)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

// Every timed round changes 30 songs: 10 touched, 10 added, 10 removed.
void BM_RegistrationAfterThirtyChanges(benchmark::State& state) {
  Storage& s = TheStorage();
  if (!Usable(state, s)) return;
  RegisterAll(state, s);
  s.ChangeThirty(s.round++);  // the first round removes songs laid out: untimed
  Registered(state, s.Register(0));
  CommitMode mode(state, static_cast<Commits>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    s.ChangeThirty(s.round++);
    mode.Timed(true);
    state.ResumeTiming();
    const int result = s.Register(0);
    state.PauseTiming();
    Registered(state, result);
    mode.Timed(false);
    state.ResumeTiming();
  }
}
BENCHMARK(BM_RegistrationAfterThirtyChanges)
    ->ArgName("per_row")
    ->DenseRange(kGrouped, kPerRow)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

}  // namespace

// "--lay-out DIR" only lays out the storage below the song root DIR, and
// "--change DIR ROUND" only makes the changes of that round there (for
// measuring zanfm or a profiler on it); neither runs a benchmark.
int main(int argc, char** argv) {
  const bool layOut = argc == 3 && std::strcmp(argv[1], "--lay-out") == 0;
  const bool change = argc == 4 && std::strcmp(argv[1], "--change") == 0;
  if (layOut || change) {
    std::string root = argv[2];
    if (root.empty() || root.back() != '/') root += '/';
    if (layOut) {
      LayOut(root);
    } else {
      ChangeThirty(root, std::atoi(argv[3]));
    }
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
