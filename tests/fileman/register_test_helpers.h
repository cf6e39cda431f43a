// Helpers of the registration tests: sample song files and catalogue reads.
#ifndef ZANSONG_TESTS_FILEMAN_REGISTER_TEST_HELPERS_H_
#define ZANSONG_TESTS_FILEMAN_REGISTER_TEST_HELPERS_H_

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "samplefiles/midi_writer.h"
#include "samplefiles/wav_writer.h"
#include "support/device_image.h"

namespace zansong_test {

using samplefiles::BuildSmf;
using samplefiles::MidiTrack;
using samplefiles::SaveBytes;
using samplefiles::SmfOptions;
using samplefiles::WavSpec;
using samplefiles::WriteWavFile;

// A two-track MIDI file whose first track carries title (none when empty)
// and a tempo change; `quarters` quarter notes long at 120 bpm.
inline void WriteSongFile(const std::string& path, const std::string& title, int quarters = 8) {
  MidiTrack conductor;
  if (!title.empty()) conductor.TrackName(0, title);
  conductor.Tempo(0, 500000).EndOfTrack(480u * static_cast<uint32_t>(quarters));
  MidiTrack notes;
  for (int i = 0; i < quarters; ++i)
    notes.NoteOn(0, 0, 60 + i % 12, 64).NoteOff(480, 0, 60 + i % 12);
  notes.EndOfTrack();
  SaveBytes(path, BuildSmf(SmfOptions(), std::vector<MidiTrack>{conductor, notes}));
}

// A WAV file of the given playing time (8 kHz mono, 8 bits).
inline void WriteWavSong(const std::string& path, int milliseconds) {
  WavSpec wav;
  wav.channels = 1;
  wav.sampleRate = 8000;
  wav.bitsPerSample = 8;
  wav.dataBytes = static_cast<uint32_t>(milliseconds * 8);
  WriteWavFile(path, wav);
}

inline void SetModifyTime(const std::string& path, long long seconds) {
  EXPECT_TRUE(SetFileTimes(path, seconds)) << path;
}

// Every row of sql on the catalogue file db, columns joined by "|".
inline std::vector<std::string> QueryRows(const std::string& db, const std::string& sql) {
  std::vector<std::string> rows;
  sqlite3* handle = nullptr;
  if (sqlite3_open_v2(db.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
    sqlite3_close(handle);
    return rows;
  }
  sqlite3_busy_timeout(handle, 1000);
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(handle, sql.c_str(), -1, &stmt, nullptr) == SQLITE_OK) {
    while (sqlite3_step(stmt) == SQLITE_ROW) {
      std::string row;
      for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
        if (c > 0) row += "|";
        const unsigned char* text = sqlite3_column_text(stmt, c);
        if (text != nullptr) row += reinterpret_cast<const char*>(text);
      }
      rows.push_back(row);
    }
  }
  sqlite3_finalize(stmt);
  sqlite3_close(handle);
  return rows;
}

inline int QueryInt(const std::string& db, const std::string& sql) {
  std::vector<std::string> rows = QueryRows(db, sql);
  return rows.empty() ? 0 : std::atoi(rows[0].c_str());
}

inline bool Execute(const std::string& db, const std::string& sql) {
  sqlite3* handle = nullptr;
  bool ok = sqlite3_open(db.c_str(), &handle) == SQLITE_OK;
  if (ok) {
    sqlite3_busy_timeout(handle, 1000);
    ok = sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  }
  sqlite3_close(handle);
  return ok;
}

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_FILEMAN_REGISTER_TEST_HELPERS_H_
