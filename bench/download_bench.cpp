// Filing speed of a downloaded song (FM_Copy_UlqSong): a MIDI file of about
// 20 KB with a 2 s WAV companion (32 kB), filed on the internal root of a
// device image whose catalogue already holds `songs` downloaded songs in
// albums of 500.
//
//   build/bench/download_bench [--benchmark_repetitions=3]
//
// BM_NewSong: a song not filed before goes into an album of 500 songs (its
//   row is removed again outside the timing, so the album stays at 500).
// BM_SameDownload: the same purchase filed again, which updates its row.
// Source files are written outside the timing; the copy, the catalogue
// work and the write-back are timed.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "samplefiles/midi_writer.h"
#include "samplefiles/wav_writer.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/download.h"

namespace {

using zansong_test::DeviceImage;

void WriteSources(const std::string& dir) {
  samplefiles::MidiTrack conductor;
  conductor.TrackName(0, "Bench Song");
  for (int i = 0; i < 60; ++i) conductor.Tempo(i == 0 ? 0 : 480, 500000 + i * 100);
  conductor.EndOfTrack();
  samplefiles::MidiTrack notes;
  for (int i = 0; i < 2000; ++i) notes.NoteOn(0, 0, 60 + i % 12, 64).NoteOff(60, 0, 60 + i % 12);
  notes.EndOfTrack();
  samplefiles::SaveBytes(dir + "song.mid",
                         samplefiles::BuildSmf(samplefiles::SmfOptions(), {conductor, notes}));
  samplefiles::WavSpec wav;
  wav.channels = 1;
  wav.sampleRate = 8000;
  wav.bitsPerSample = 16;
  wav.dataBytes = 32000;
  samplefiles::WriteWavFile(dir + "song.wav", wav);
}

void Fill(const DeviceImage& image, const std::string& db, int songs) {
  zansong_test::CreateCatalogue(image, db);
  const int albums = (songs + 499) / 500;
  zansong_test::ExecOn(db,
                       "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
                           std::to_string(albums) +
                           ") INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
                           "SELECT 'y',i,'A'||i,'Downloaded Songs/A'||i,i FROM n");
  zansong_test::ExecOn(
      db, "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
              std::to_string(songs) +
              ") INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,format,"
              "disp_order,album_id,mtime) SELECT 'y',i,'S'||i,'Downloaded Songs/A'||"
              "((i-1)/500+1)||'/S'||i||'.mid','','SMF',(i-1)%500+1,(i-1)/500+1,'x' FROM n");
}

DownloadRecord RecordFor(const std::string& dir, const std::string& albumDir) {
  DownloadRecord rec;
  std::memset(&rec, 0, sizeof rec);
  std::strcpy(rec.midiSource, (dir + "song.mid").c_str());
  std::strcpy(rec.audioSource, (dir + "song.wav").c_str());
  std::strcpy(rec.albumDir, albumDir.c_str());
  std::strcpy(rec.songTitle, "Bench Song");
  std::strcpy(rec.purchaseDate, "2026-11-22");
  std::strcpy(rec.mtime, "2026-11-22 12:00:00");
  return rec;
}

void FileSong(benchmark::State& state, bool sameDownload) {
  DeviceImage image;
  const std::string root = image.SongRoot();
  const std::string db = root + ".zansong.db";
  const std::string sources = image.Path("/tmp/");
  Fill(image, db, static_cast<int>(state.range(0)));
  zansong_test::MakeDirs(root + "Downloaded Songs/A1");
  // The song goes into album A1, which holds 500 songs.
  const DownloadRecord rec = RecordFor(sources, "A1");
  char msg[2048];
  if (sameDownload) {
    WriteSources(sources);
    zansong_test::StdoutCapture quiet;
    FM_Copy_UlqSong(root.c_str(), &rec, msg);
  }
  for (auto _ : state) {
    state.PauseTiming();
    WriteSources(sources);
    state.ResumeTiming();
    zansong_test::StdoutCapture quiet;
    int result = FM_Copy_UlqSong(root.c_str(), &rec, msg);
    quiet.Finish();
    if (result != 0) {
      state.SkipWithError("FM_Copy_UlqSong failed");
      break;
    }
    if (!sameDownload) {
      state.PauseTiming();
      zansong_test::ExecOn(db, "DELETE FROM song WHERE song_title='Bench Song'");
      state.ResumeTiming();
    }
  }
}

void BM_NewSong(benchmark::State& state) { FileSong(state, false); }
void BM_SameDownload(benchmark::State& state) { FileSong(state, true); }

BENCHMARK(BM_NewSong)->ArgName("songs")->Arg(500)->Arg(4500)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SameDownload)->ArgName("songs")->Arg(500)->Arg(4500)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
