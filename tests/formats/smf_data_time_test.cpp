// Playing times of generated MIDI files, checked against values worked out
// by hand.  Tempos are chosen so that microseconds per tick are whole
// numbers: 480000 us a quarter at division 480 is 1000 us a tick.
#include <algorithm>
#include <string>
#include <vector>

#include "formats/smf_test_util.h"

namespace zansong_test {
namespace {

class SmfTimeTest : public SmfTest {};

TEST_F(SmfTimeTest, FileWithoutTempoEventsIsTimedAt120Bpm) {
  MidiTrack t;
  t.NoteOn(0, 0, 60, 100).NoteOff(960, 0, 60).EndOfTrack(0);
  int r = 0;
  TSongPara p = Info(Format0(t), false, &r);
  ASSERT_EQ(r, 1);
  // 960 ticks = 2 quarters at 500000 us.
  EXPECT_EQ(p.totalTimeMs, 1000);
  EXPECT_EQ(p.format, 0u);
}

TEST_F(SmfTimeTest, TempoChangeAtTickZeroGivesTimeAtNewTempo) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(0, 0, 60, 100).NoteOff(1500, 0, 60).EndOfTrack(0);
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 1500);
}

TEST_F(SmfTimeTest, TempoChangesInDifferentTracks) {
  // Track 0: 1000 us/tick from 0.  Track 1: 500 us/tick from 1000.
  // Track 2: 2000 us/tick from 3000.  Track 3: last event at 4000.
  // Time: 1000*1000 + 2000*500 + 1000*2000 = 4,000,000 us.
  MidiTrack conductor;
  conductor.Tempo(0, 480000).EndOfTrack(10);
  MidiTrack second;
  second.Tempo(1000, 240000).EndOfTrack(0);
  MidiTrack third;
  third.NoteOn(0, 2, 60, 1).Tempo(3000, 960000).NoteOff(0, 2, 60).EndOfTrack(0);
  MidiTrack notes;
  notes.NoteOn(500, 1, 64, 90).NoteOff(3500, 1, 64).EndOfTrack(0);
  EXPECT_EQ(Info(Format1({conductor, second, third, notes})).totalTimeMs, 4000);
}

TEST_F(SmfTimeTest, TempoChangesAtTheSameTickInTwoTracksTakeTheLaterTrack) {
  MidiTrack a;
  a.Tempo(0, 480000).Tempo(100, 960000).EndOfTrack(0);
  MidiTrack b;
  b.Tempo(100, 240000).NoteOn(200, 0, 1, 1).EndOfTrack(0);
  // 100 ticks at 1000 us, then 200 ticks at 500 us (track 1's tempo wins).
  EXPECT_EQ(Info(Format1({a, b})).totalTimeMs, 200);
}

TEST_F(SmfTimeTest, RunningStatusEventsAreReadWithTheirDeltas) {
  MidiTrack t;
  t.SetRunningStatus(true);
  t.Tempo(0, 480000);
  for (int i = 0; i < 10; ++i) t.NoteOn(100, 3, 60 + i, 100);
  for (int i = 0; i < 10; ++i) t.NoteOn(50, 3, 60 + i, 0);
  t.Program(7, 4, 5).ChannelPressure(3, 4, 9).PitchBend(0, 4, 0, 64).EndOfTrack(0);
  std::string file = Format0(t);
  // The writer left out the repeated status bytes.
  EXPECT_EQ(std::count(file.begin(), file.end(), '\x93'), 1);
  TSongPara p = Info(file);
  EXPECT_EQ(p.totalTimeMs, 1510);
  EXPECT_EQ(p.channelNotes[3], 1u);
  EXPECT_EQ(p.channelNotes[4], 0u);
}

TEST_F(SmfTimeTest, ChannelMessagesAreReadAlikeInTheMiddleAndAtTheEndOfATrack) {
  // Tracks of 1 to 14 channel messages that end with their last message
  // (no end-of-track event), so that every message lies once within the
  // last few bytes of the data: one- and two-byte delta times, one and two
  // data bytes, with and without running status.
  for (bool running : {false, true}) {
    for (int count = 1; count <= 14; ++count) {
      MidiTrack t;
      t.SetRunningStatus(running);
      t.Tempo(0, 480000);
      int ticks = 0;
      for (int i = 0; i < count; ++i) {
        const uint32_t delta = i % 3 == 0 ? 200 : 7;  // 200 takes two bytes
        ticks += static_cast<int>(delta);
        if (i % 4 == 1) {
          t.Program(delta, 5, i);
        } else if (i % 4 == 3) {
          t.KeyPressure(delta, 6, 60, i);
        } else {
          t.NoteOn(delta, 2, 60 + i, i % 2 == 0 ? 90 : 0);
        }
      }
      TSongPara p = Info(Format0(t));
      SCOPED_TRACE(std::to_string(count) + (running ? " with running status" : ""));
      EXPECT_EQ(p.totalTimeMs, ticks);
      EXPECT_EQ(p.channelNotes[2], 1u);
      EXPECT_EQ(p.channelNotes[5], 0u);
      EXPECT_EQ(p.channelNotes[6], count >= 4 ? 1u : 0u);
    }
  }
}

TEST_F(SmfTimeTest, SystemExclusiveEventsOfBothKindsAreSkipped) {
  MidiTrack t;
  t.Tempo(0, 480000)
      .SysEx(10, std::string("\x41\x10\x42\x12\x40\x00\x7F\x00\x41\xF7", 10))
      .SysEx(20, std::string(300, '\x11') + "\xF7")
      .SysExEscape(30, std::string("\xF0\x7E\x7F\x09\x01\xF7", 6))
      .SysExEscape(40, std::string("\xF8", 1))
      .SysEx(0, std::string(5, '\x12'), 3)
      .NoteOn(400, 0, 60, 1)
      .EndOfTrack(0);
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 500);
}

TEST_F(SmfTimeTest, MetaEventsOfEveryLengthFormAreSkipped) {
  MidiTrack t;
  t.Tempo(0, 480000)
      .Meta(1, 0x06, "")                       // empty
      .Meta(2, 0x06, std::string(127, 'a'))    // one-byte length
      .Meta(3, 0x06, std::string(128, 'b'))    // two-byte length
      .Meta(4, 0x06, std::string(16384, 'c'))  // three-byte length
      .Meta(5, 0x06, "pad", 4)                 // padded four-byte length
      .Meta(6, 0x7F, std::string(2, '\x00'), 2)
      .NoteOn(979, 0, 60, 1)
      .EndOfTrack(0);
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 1000);
}

TEST_F(SmfTimeTest, SystemMessagesAreSkippedByTheByteAfterTheStatus) {
  // F2 followed by F2 skips three bytes: F2 F2 00, then delta 10.
  // F6 followed by a delta skips one byte.
  MidiTrack t;
  t.Tempo(0, 480000)
      .Raw(std::string("\x0A\xF2\xF2\x00", 4))
      .Raw(std::string("\x14\xF6", 2))
      .NoteOn(70, 0, 60, 1)
      .EndOfTrack(0);
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 100);
}

TEST_F(SmfTimeTest, WrappedFileIsTimedLikeThePlainOne) {
  MidiTrack t;
  t.Tempo(0, 480000).TrackName(0, "Wrapped").NoteOn(2500, 0, 60, 1).EndOfTrack(0);
  std::string plain = Format0(t);
  std::string wrapped = BuildSmf(SmfOptions{0, 480, true, -1}, std::vector<MidiTrack>{t});
  ASSERT_EQ(wrapped.size(), plain.size() + 20);
  int r = 0;
  TSongPara p = Info(wrapped, false, &r);
  ASSERT_EQ(r, 1);
  EXPECT_EQ(p.totalTimeMs, 2500);
  EXPECT_STREQ(p.title, "Wrapped");
}

TEST_F(SmfTimeTest, HeadOnlyReadsOnlyTickZero) {
  MidiTrack t;
  t.Tempo(0, 480000).TrackName(0, "Head").NoteOn(2500, 0, 60, 1).Text(0, "late").EndOfTrack(0);
  int r = 0;
  TSongPara p = Info(Format0(t), true, &r);
  ASSERT_EQ(r, 1);
  EXPECT_EQ(p.totalTimeMs, 0);
  EXPECT_STREQ(p.title, "Head");
  EXPECT_STREQ(p.text, "");
  EXPECT_EQ(p.channelNotes[0], 0u);
}

TEST_F(SmfTimeTest, TimeEndsAtTheLastEventOfTheLongestTrack) {
  MidiTrack a;
  a.NoteOn(0, 0, 60, 1).EndOfTrack(100);
  MidiTrack b;
  b.NoteOn(3000, 1, 60, 1).EndOfTrack(0);
  MidiTrack c;  // no end-of-track event: ends with its data
  c.NoteOn(200, 2, 60, 1);
  // 3000 ticks at 120 BPM, division 96: 3000 * 500000 / 96 us.
  EXPECT_EQ(Info(Format1({a, b, c}, 96)).totalTimeMs, 3000LL * 500000 / 96 / 1000);
}

TEST_F(SmfTimeTest, EventsAfterEndOfTrackAreIgnored) {
  MidiTrack t;
  t.NoteOn(0, 0, 60, 1).EndOfTrack(480).NoteOn(9600, 5, 60, 1).EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(p.totalTimeMs, 500);
  EXPECT_EQ(p.channelNotes[5], 0u);
}

TEST_F(SmfTimeTest, ZeroTracksLoadAndGiveZero) {
  int r = 0;
  TSongPara p =
      Info(BuildSmf(SmfOptions{1, 480, false, -1}, std::vector<std::string>{}), false, &r);
  EXPECT_EQ(r, 1);
  EXPECT_EQ(p.totalTimeMs, 0);
}

TEST_F(SmfTimeTest, EmptyTracksCountAsEnded) {
  MidiTrack t;
  t.NoteOn(960, 0, 60, 1);
  EXPECT_EQ(
      Info(BuildSmf(SmfOptions{1, 480, false, -1}, std::vector<std::string>{"", t.bytes(), ""}))
          .totalTimeMs,
      1000);
}

TEST_F(SmfTimeTest, DivisionZeroGivesZero) {
  MidiTrack t;
  t.NoteOn(960, 0, 60, 1).EndOfTrack(0);
  int r = 0;
  TSongPara p = Info(Format0(t, 0), false, &r);
  EXPECT_EQ(r, 1);
  EXPECT_EQ(p.totalTimeMs, 0);
}

TEST_F(SmfTimeTest, GetTotalTimeInMicroseconds) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(7, 0, 60, 1).EndOfTrack(0);
  std::string path = Put(Format0(t));
  TSmfData smf;
  ASSERT_EQ(smf.LoadFromFile(path.c_str(), false), 1);
  TSongPara para{};
  smf.SetFirst(&para);
  EXPECT_DOUBLE_EQ(smf.GetTotalTime(false), 7000.0);
  EXPECT_EQ(smf.GetTrack1DataSize(), static_cast<uint32_t>(t.bytes().size()));
  EXPECT_EQ(smf.GetActiveTrackCount(), 0);
}

}  // namespace
}  // namespace zansong_test
