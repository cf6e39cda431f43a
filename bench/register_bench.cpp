// Registration speed on a generated storage of 499 album directories and
// 4999 MIDI songs of about 20 KB (two tracks, a title, tempo changes), some
// with WAV companions, on a disk-backed file system.
//
//   build/bench/register_bench [--benchmark_repetitions=3]
//
// The image lives under the build tree (or /var/tmp): never on tmpfs.
#include <benchmark/benchmark.h>
#include <sys/stat.h>
#include <utime.h>

#include <cstdio>
#include <ctime>
#include <string>

#include "support/device_image.h"
#include "support/midi_writer.h"
#include "support/stdout_capture.h"
#include "support/wav_writer.h"
#include "zansong/fileman/register.h"

namespace {

using zansong_test::MidiTrack;

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
  return zansong_test::BuildSmf(zansong_test::SmfOptions(),
                                std::vector<MidiTrack>{conductor, piano});
}

std::string SongPath(const std::string& root, int n) {
  return root + "Album" + std::to_string(1000 + n % kAlbums) + "/Song" + std::to_string(10000 + n) +
         ".mid";
}

// One storage for the whole process.
struct Storage {
  zansong_test::DeviceImage image;
  std::string root;
  Storage() {
    root = image.SongRoot();
    for (int a = 0; a < kAlbums; ++a)
      ::mkdir((root + "Album" + std::to_string(1000 + a)).c_str(), 0777);
    for (int n = 0; n < kSongs; ++n) {
      zansong_test::SaveBytes(SongPath(root, n), SongBytes(n));
      if (n % 50 == 0) {
        zansong_test::WavSpec wav;
        wav.dataBytes = 4000;
        std::string p = SongPath(root, n);
        zansong_test::WriteWavFile(p.substr(0, p.size() - 4) + ".wav", wav);
      }
    }
  }
  void Register(int keepOrder) {
    zansong_test::StdoutCapture quiet;
    FM_Add_AllSongs_ByCache(root.c_str(), "", 0, keepOrder, 0);
  }
  void DropCatalogue() { std::remove((root + ".zansong.db").c_str()); }
};

Storage& TheStorage() {
  static Storage* storage = new Storage();
  return *storage;
}

void BM_FirstRegistration(benchmark::State& state) {
  Storage& s = TheStorage();
  for (auto _ : state) {
    state.PauseTiming();
    s.DropCatalogue();
    state.ResumeTiming();
    s.Register(static_cast<int>(state.range(0)));
  }
}
BENCHMARK(BM_FirstRegistration)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_RegistrationUnchanged(benchmark::State& state) {
  Storage& s = TheStorage();
  s.DropCatalogue();
  s.Register(0);
  for (auto _ : state) s.Register(static_cast<int>(state.range(0)));
}
BENCHMARK(BM_RegistrationUnchanged)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_RegistrationAfterThirtyChanges(benchmark::State& state) {
  Storage& s = TheStorage();
  s.DropCatalogue();
  s.Register(0);
  int round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    ++round;
    for (int i = 0; i < 10; ++i) {
      int n = (i * 499 + round * 7) % kSongs;
      struct utimbuf t;
      t.actime = t.modtime = std::time(nullptr) + round * 100 + i;
      ::utime(SongPath(s.root, n).c_str(), &t);
      std::string added = s.root + "Album" + std::to_string(1000 + (i * 37) % kAlbums) + "/New" +
                          std::to_string(round) + "_" + std::to_string(i) + ".mid";
      zansong_test::SaveBytes(added, SongBytes(i));
      if (round > 1) {
        std::remove((s.root + "Album" + std::to_string(1000 + (i * 37) % kAlbums) + "/New" +
                     std::to_string(round - 1) + "_" + std::to_string(i) + ".mid")
                        .c_str());
      }
    }
    state.ResumeTiming();
    s.Register(static_cast<int>(state.range(0)));
  }
}
BENCHMARK(BM_RegistrationAfterThirtyChanges)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
