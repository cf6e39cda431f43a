// Helpers shared by the MIDI reader tests: a device image to write files
// into, and GetSMFInfo on bytes built in memory.
#ifndef ZANSONG_TESTS_FORMATS_SMF_TEST_UTIL_H_
#define ZANSONG_TESTS_FORMATS_SMF_TEST_UTIL_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "samplefiles/midi_writer.h"
#include "support/device_image.h"
#include "zansong/formats/smf.h"

namespace zansong_test {

using samplefiles::Be16;
using samplefiles::Be32;
using samplefiles::BuildSmf;
using samplefiles::MidiTrack;
using samplefiles::SmfOptions;
using samplefiles::TrackChunk;
using samplefiles::VarLen;

class SmfTest : public DeviceTest {
 protected:
  // Writes bytes to a file of the song root and returns its path.
  std::string Put(const std::string& bytes, const std::string& name = "song.mid") {
    std::string path = image_.SongRoot() + name;
    WriteFile(path, bytes);
    return path;
  }

  // GetSMFInfo of bytes; the result code goes to *result.
  TSongPara Info(const std::string& bytes, bool headOnly = false, int* result = nullptr) {
    TSongPara para;
    int r = GetSMFInfo(Put(bytes).c_str(), &para, headOnly, "");
    if (result != nullptr) *result = r;
    return para;
  }

  static std::string Format0(const MidiTrack& track, int division = 480) {
    return BuildSmf(SmfOptions{0, division, false, -1}, std::vector<MidiTrack>{track});
  }
  static std::string Format1(const std::vector<MidiTrack>& tracks, int division = 480) {
    return BuildSmf(SmfOptions{1, division, false, -1}, tracks);
  }
};

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_FORMATS_SMF_TEST_UTIL_H_
