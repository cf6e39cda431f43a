// File primitives and message lines: copy and digest throughput, the
// case-insensitive directory walk, and one progress line.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "common/process.h"
#include "zansong/fileman/messages.h"
#include "zansong/storage/files.h"

namespace {

// A scratch directory with a 4 MiB file and a four-level directory tree,
// removed at exit.
class Scratch {
 public:
  Scratch() {
    char pattern[] = "/tmp/zansong-bench-XXXXXX";
    dir_ = mkdtemp(pattern);
    std::string data(kFileSize, 'x');
    for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<char>(i * 31);
    std::FILE* f = std::fopen(Source().c_str(), "wb");
    std::fwrite(data.data(), 1, data.size(), f);
    std::fclose(f);
    std::string path = dir_;
    for (const char* level : {"/Music", "/Album One", "/Disc.2", "/Extra"}) {
      path += level;
      mkdir(path.c_str(), 0777);
    }
  }
  ~Scratch() { zansong::RunProgram({"rm", "-rf", dir_}); }
  std::string Source() const { return dir_ + "/source.mid"; }
  std::string Copy() const { return dir_ + "/copy.mid"; }
  std::string Dir() const { return dir_; }
  static constexpr size_t kFileSize = 4 << 20;

 private:
  std::string dir_;
};

Scratch& S() {
  static Scratch scratch;
  return scratch;
}

void BM_CopyFile4MiB(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(CopyFile(S().Source().c_str(), S().Copy().c_str()));
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * Scratch::kFileSize);
}
BENCHMARK(BM_CopyFile4MiB);

void BM_GetMD5_4MiB(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(GetMD5(S().Source().c_str()));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * Scratch::kFileSize);
}
BENCHMARK(BM_GetMD5_4MiB);

void BM_DirExistsFourLevelsOtherCase(benchmark::State& state) {
  std::string path = S().Dir() + "/MUSIC/album one/DISC.2/extra/";
  char out[512];
  for (auto _ : state) benchmark::DoNotOptimize(FH2_is_dir_exists(path.c_str(), out, 512));
}
BENCHMARK(BM_DirExistsFourLevelsOtherCase);

void BM_PrintCopyMessage(benchmark::State& state) {
  // The line goes to /dev/null; the call still assembles, prints and
  // flushes it.
  std::fflush(stdout);
  int saved = dup(1);
  int null = open("/dev/null", O_WRONLY);
  dup2(null, 1);
  int i = 0;
  for (auto _ : state) PrintCopyMessage(3, i++ % 100, 100, true);
  std::fflush(stdout);
  dup2(saved, 1);
  close(saved);
  close(null);
}
BENCHMARK(BM_PrintCopyMessage);

}  // namespace

BENCHMARK_MAIN();
