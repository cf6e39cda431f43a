// Copy speed: one album of 20 WAV files of 5 MB each copied within the same
// file system by FH_copy_album, side by side with "cp -r" of the same
// directory, and how soon a raised cancel flag stops a file copy.
//
//   build/bench/copy_bench --benchmark_repetitions=5
//       --benchmark_enable_random_interleaving=true   (one line)
//
// Interleaving runs the repetitions of the two copies in turns, so that on
// a shared machine both meet the same load.
// The device image lives under /tmp: a tmpfs there would measure memory,
// not a disk, so the cases refuse to run on one.  The copies of each
// iteration are removed (untimed) before the next.
#include <benchmark/benchmark.h>
#include <linux/magic.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <list>
#include <string>
#include <thread>

#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/copy.h"
#include "zansong/fileman/register.h"
#include "zansong/storage/files.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

constexpr int kSongs = 20;
constexpr uint32_t kSongBytes = 5 * 1000 * 1000;
const char kAlbum[] = "Concert";

// One storage for the whole process: the album, registered.
struct Storage {
  zansong_test::DeviceImage image;
  std::string root = image.SongRoot();
  std::string db = root + ".zansong.db";
  int albumId = 0;

  Storage() {
    fs::create_directories(root + kAlbum);
    samplefiles::WavSpec wav;
    wav.dataBytes = kSongBytes - 44;
    for (int i = 0; i < kSongs; ++i) {
      samplefiles::WriteWavFile(root + kAlbum + "/take" + std::to_string(100 + i) + ".wav", wav);
    }
    zansong_test::StdoutCapture quiet;
    FM_Add_AllSongs_ByCache(root.c_str(), "", 0, 1, 0);
    albumId = zansong_test::QueryInt(db, "SELECT album_id FROM album WHERE album_path='Concert'");
  }

  bool OnTmpfs() const {
    struct statfs info;
    return ::statfs(root.c_str(), &info) == 0 && info.f_type == TMPFS_MAGIC;
  }

  // Removes every album but the source, with its directory and songs.
  void RemoveCopies() {
    for (const auto& entry : fs::directory_iterator(root)) {
      if (entry.is_directory() && entry.path().filename() != kAlbum) fs::remove_all(entry.path());
    }
    zansong_test::Execute(db, "DELETE FROM song WHERE album_id<>" + std::to_string(albumId) +
                                  "; DELETE FROM album WHERE album_id<>" + std::to_string(albumId));
  }
};

Storage& TheStorage() {
  static Storage* storage = new Storage();
  return *storage;
}

int Run(const char* const argv[]) {
  pid_t pid;
  if (posix_spawnp(&pid, argv[0], nullptr, nullptr, const_cast<char* const*>(argv), environ) != 0) {
    return -1;
  }
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void SetBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kSongs * kSongBytes);
}

void BM_CopyAlbum(benchmark::State& state) {
  Storage& s = TheStorage();
  if (s.OnTmpfs()) return state.SkipWithError("the image is on tmpfs: no disk figures");
  for (auto _ : state) {
    std::list<int> ids{s.albumId};
    zansong_test::StdoutCapture quiet;
    int result = FH_copy_album(s.root.c_str(), ids, "", 0);
    state.PauseTiming();
    quiet.Finish();
    s.RemoveCopies();
    if (result != 0) {
      state.SkipWithError("FH_copy_album failed");
      break;
    }
    state.ResumeTiming();
  }
  SetBytes(state);
}
BENCHMARK(BM_CopyAlbum)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_CpR(benchmark::State& state) {
  Storage& s = TheStorage();
  if (s.OnTmpfs()) return state.SkipWithError("the image is on tmpfs: no disk figures");
  const std::string from = s.root + kAlbum;
  const std::string to = s.root + "Concert_copy";
  for (auto _ : state) {
    const char* argv[] = {"cp", "-r", from.c_str(), to.c_str(), nullptr};
    int status = Run(argv);
    state.PauseTiming();
    s.RemoveCopies();
    if (status != 0) {
      state.SkipWithError("cp -r failed");
      break;
    }
    state.ResumeTiming();
  }
  SetBytes(state);
}
BENCHMARK(BM_CpR)->Unit(benchmark::kMillisecond)->UseRealTime();

// A 100 MB copy whose cancel flag is raised once 20 MB are written: the
// time from raising the flag to CopyFile's return (-2).  A copy that ends
// before the flag could be raised is tried again (not timed).
void BM_CancelLatency(benchmark::State& state) {
  Storage& s = TheStorage();
  if (s.OnTmpfs()) return state.SkipWithError("the image is on tmpfs: no disk figures");
  const std::string big = s.root + "big.bin";
  const std::string copy = s.root + "big.copy";
  if (!fs::exists(big)) zansong_test::WriteFile(big, std::string(100u << 20, 'x'));
  double worstMs = 0;
  for (auto _ : state) {
    for (int attempt = 0; attempt < 20; ++attempt) {
      ClearCancelFlag();
      std::atomic<int> result{1};
      std::thread copier([&] { result = CopyFile(big.c_str(), copy.c_str()); });
      struct stat st;
      while (result == 1 && (::stat(copy.c_str(), &st) != 0 || st.st_size < (20 << 20))) {
        std::this_thread::yield();
      }
      const auto raised = std::chrono::steady_clock::now();
      SetCancelFlag();
      copier.join();
      const double ms =
          std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - raised)
              .count();
      ClearCancelFlag();
      ::unlink(copy.c_str());
      if (result != -2) continue;
      state.SetIterationTime(ms / 1000);
      if (ms > worstMs) worstMs = ms;
      break;
    }
  }
  state.counters["worst_ms"] = worstMs;
}
BENCHMARK(BM_CancelLatency)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(10);

}  // namespace

BENCHMARK_MAIN();
