// The helpers around a recording: free names, part-channel status, the
// time-zone line, XML escaping, and the test function.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "zansong/fileman/recorded.h"

namespace zansong_test {
namespace {

class RecordedHelpersTest : public DeviceTest {
 protected:
  std::string Dir() const { return image_.SongRoot() + "rec"; }
  void SetUp() override { MakeDirs(Dir()); }
};

TEST_F(RecordedHelpersTest, WavTmpNameAddsTheSlashAndAvoidsTakenNames) {
  WriteFile(Dir() + "/take.wav", "x");
  char out[256];
  FM_GetWavTmpName(Dir().c_str(), "take.wav", out, sizeof out);
  EXPECT_STREQ((Dir() + "/take_002.wav").c_str(), out);
  FM_GetWavTmpName((Dir() + "/").c_str(), "new.WAV", out, sizeof out);
  EXPECT_STREQ((Dir() + "/new.WAV").c_str(), out);
}

TEST_F(RecordedHelpersTest, WavTmpNameIntoAShortBufferWritesExactlyLenBytes) {
  const std::string full = Dir() + "/take.wav";
  std::vector<char> out(full.size() + 8, '#');
  const int len = static_cast<int>(full.size()) - 3;
  FM_GetWavTmpName(Dir().c_str(), "take.wav", out.data(), len);
  EXPECT_EQ(full.substr(0, static_cast<size_t>(len)),
            std::string(out.data(), static_cast<size_t>(len)));
  EXPECT_EQ('#', out[static_cast<size_t>(len)]);
}

TEST_F(RecordedHelpersTest, WavTmpNameZeroFillsTheRestOfALongerBuffer) {
  const std::string full = Dir() + "/take.wav";
  std::vector<char> out(full.size() + 4, '#');
  FM_GetWavTmpName(Dir().c_str(), "take.wav", out.data(), static_cast<int>(out.size()));
  EXPECT_EQ(full, std::string(out.data()));
  for (size_t i = full.size(); i < out.size(); ++i) EXPECT_EQ('\0', out[i]);
}

// A MIDI file declaring part channels a and b; notes only on channel 1.
void WritePartFile(const std::string& path, int a, int b) {
  MidiTrack track;
  track.PartChannels(0, a, b).NoteOn(0, 0, 60, 64).NoteOff(480, 0, 60).EndOfTrack();
  SaveBytes(path, BuildSmf(SmfOptions(), std::vector<MidiTrack>{track}));
}

TEST_F(RecordedHelpersTest, PartStatusNamesEachDeclaredChannel) {
  WritePartFile(Dir() + "/p.mid", 1, 2);
  char first[16] = "?";
  char second[16] = "?";
  EXPECT_EQ(1, FM_GetSMFLRStatus((Dir() + "/p.mid").c_str(), second, first));
  EXPECT_STREQ("exist", first);
  EXPECT_STREQ("none", second);
}

TEST_F(RecordedHelpersTest, PartStatusOfChannelAZeroIsDisabledInTheThirdArgument) {
  WritePartFile(Dir() + "/p.mid", 0, 1);
  char first[16] = "?";
  char second[16] = "?";
  EXPECT_EQ(1, FM_GetSMFLRStatus((Dir() + "/p.mid").c_str(), second, first));
  EXPECT_STREQ("disabled", first);
  EXPECT_STREQ("exist", second);
}

TEST_F(RecordedHelpersTest, PartStatusOfANonMidiFileIsZeroAndWritesNothing) {
  WriteFile(Dir() + "/x.mid", "not a song");
  char first[16] = "?";
  char second[16] = "?";
  EXPECT_EQ(0, FM_GetSMFLRStatus((Dir() + "/x.mid").c_str(), second, first));
  EXPECT_STREQ("?", first);
  EXPECT_STREQ("?", second);
}

TEST_F(RecordedHelpersTest, TimeZoneCopiesTheTrimmedLineWithoutTerminator) {
  WriteFile(Dir() + "/tz", "# zone\nUTC0\n<+09>-9  \n<+10>-10\n");
  char out[32];
  std::fill(out, out + sizeof out, '#');
  EXPECT_EQ(0, FM_GetTimeZone((Dir() + "/tz").c_str(), out));
  EXPECT_EQ("<+09>-9#", std::string(out, 8));
  EXPECT_EQ(0, FM_GetTimeZone((Dir() + "/tz").c_str(), nullptr));
}

TEST_F(RecordedHelpersTest, TimeZoneWithoutALineStartingWithLessThanIsMinusOne) {
  WriteFile(Dir() + "/tz", "UTC0\n <+09>-9\n");
  char out[8] = "keep";
  EXPECT_EQ(-1, FM_GetTimeZone((Dir() + "/tz").c_str(), out));
  EXPECT_STREQ("keep", out);
  EXPECT_EQ(-1, FM_GetTimeZone((Dir() + "/missing").c_str(), out));
  EXPECT_STREQ("keep", out);
}

TEST_F(RecordedHelpersTest, EscapeStringWritesExactlyTheEscapedBytes) {
  char out[64];
  std::fill(out, out + sizeof out, '#');
  EscapeString("Tom & \"Jerry\" <3", out);
  const std::string expected = "Tom &amp; &quot;Jerry&quot; &lt;3";
  EXPECT_EQ(expected, std::string(out, expected.size()));
  EXPECT_EQ('#', out[expected.size()]);
}

TEST_F(RecordedHelpersTest, TestFunctionAddsOne) {
  EXPECT_EQ(1, FM_Test(0));
  EXPECT_EQ(-4, FM_Test(-5));
}

}  // namespace
}  // namespace zansong_test
