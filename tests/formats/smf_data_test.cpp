// Loading MIDI files: the accepted forms, every refusal, head-only reading,
// and truncated or corrupted files (which must give 0 or a time from what
// could be read, never a read outside the data).
#include <string>
#include <vector>

#include "formats/smf_test_util.h"

namespace zansong_test {
namespace {

class SmfLoadTest : public SmfTest {
 protected:
  int Load(const std::string& bytes, bool limit = false) {
    TSmfData smf;
    return smf.LoadFromFile(Put(bytes).c_str(), limit);
  }

  static std::string Header(int format, int tracks, int division) {
    return "MThd" + Be32(6) + Be16(format) + Be16(tracks) + Be16(division);
  }

  static MidiTrack Simple() {
    MidiTrack t;
    t.Tempo(0, 480000).TrackName(0, "Simple").NoteOn(0, 0, 60, 90).NoteOff(1000, 0, 60);
    t.EndOfTrack(0);
    return t;
  }
};

TEST_F(SmfLoadTest, MissingFileGivesZero) {
  TSongPara p;
  EXPECT_EQ(GetSMFInfo((image_.SongRoot() + "none.mid").c_str(), &p, false, ""), 0);
  TSmfData smf;
  EXPECT_EQ(smf.LoadFromFile(nullptr, false), 0);
}

// A file larger than a 32-bit address space is refused, not read as the
// few bytes its size comes to modulo 4 GiB.  Only a 32-bit build can test
// this without reading gigabytes.
TEST_F(SmfLoadTest, FileLargerThanTheAddressSpaceIsRefused) {
  if (sizeof(size_t) > 4) GTEST_SKIP() << "needs a 32-bit address space";
  const std::string path = Put(Format0(Simple()));
  const long long size = static_cast<long long>(ReadFile(path).size());
  ASSERT_TRUE(MakeSparseFile(path, (1LL << 32) + size));
  TSmfData smf;
  EXPECT_EQ(smf.LoadFromFile(path.c_str(), false), 0);
}

TEST_F(SmfLoadTest, NullParaGivesZero) {
  EXPECT_EQ(GetSMFInfo(Put(Format0(Simple())).c_str(), nullptr, false, ""), 0);
}

TEST_F(SmfLoadTest, PlainAndWrappedFormsLoad) {
  EXPECT_EQ(Load(Format0(Simple())), 1);
  EXPECT_EQ(Load(BuildSmf(SmfOptions{0, 480, true, -1}, std::vector<MidiTrack>{Simple()})), 1);
}

TEST_F(SmfLoadTest, WrapperBytesAreNotChecked) {
  std::string file = Format0(Simple());
  EXPECT_EQ(Load(std::string(20, 'z') + file), 1);
}

TEST_F(SmfLoadTest, MissingHeaderMagicIsRefused) {
  std::string file = Format0(Simple());
  file[1] = 'X';
  EXPECT_EQ(Load(file), 0);
  EXPECT_EQ(Load(std::string(20, 'z') + file), 0);
  EXPECT_EQ(Load(""), 0);
  EXPECT_EQ(Load("MTh"), 0);
}

TEST_F(SmfLoadTest, FormatAboveOneIsRefused) {
  EXPECT_EQ(Load(Header(2, 0, 480)), 0);
  EXPECT_EQ(Load(Header(0x100, 0, 480)), 0);
  EXPECT_EQ(Load(Header(1, 0, 480)), 1);
}

TEST_F(SmfLoadTest, SmpteDivisionIsRefused) {
  EXPECT_EQ(Load(Header(0, 0, 0xE728)), 0);
  EXPECT_EQ(Load(Header(0, 0, 0x8000)), 0);
  EXPECT_EQ(Load(Header(0, 0, 0x7FFF)), 1);
}

TEST_F(SmfLoadTest, HeaderLengthFieldIsNotUsed) {
  std::string file = Format0(Simple());
  file[7] = 9;  // header length 9: still six bytes are taken
  EXPECT_EQ(Load(file), 1);
}

TEST_F(SmfLoadTest, ShortHeaderIsRefused) { EXPECT_EQ(Load(Header(0, 0, 480).substr(0, 13)), 0); }

TEST_F(SmfLoadTest, MoreTracksDeclaredThanPresentIsRefused) {
  EXPECT_EQ(
      Load(BuildSmf(SmfOptions{1, 480, false, 3}, std::vector<MidiTrack>{Simple(), Simple()})), 0);
}

TEST_F(SmfLoadTest, TrackLengthPastTheEndIsRefused) {
  std::string file = Format0(Simple());
  EXPECT_EQ(Load(file.substr(0, file.size() - 1)), 0);
  file[21] = static_cast<char>(file[21] + 1);
  EXPECT_EQ(Load(file + ""), 0);
}

TEST_F(SmfLoadTest, OtherChunkBetweenTracksIsRefused) {
  std::string file = Header(1, 2, 480) + TrackChunk(Simple().bytes()) + "XFIH" + Be32(0) +
                     TrackChunk(Simple().bytes());
  EXPECT_EQ(Load(file), 0);
}

TEST_F(SmfLoadTest, BadTrackMagicIsRefused) {
  std::string file = Format0(Simple());
  file[17] = 'R';
  EXPECT_EQ(Load(file), 0);
}

TEST_F(SmfLoadTest, BytesAfterTheLastTrackAreIgnored) {
  EXPECT_EQ(Load(Format0(Simple()) + "trailing junk"), 1);
}

TEST_F(SmfLoadTest, HeadOnlyFailsWhenAnEarlierTrackIsLongerThan1024) {
  MidiTrack longTrack;
  longTrack.TrackName(0, "Long").Text(0, std::string(1100, 't')).EndOfTrack(0);
  MidiTrack shortTrack;
  shortTrack.NoteOn(0, 0, 60, 1).EndOfTrack(0);
  std::string file = Format1({longTrack, shortTrack});
  int r = -1;
  Info(file, true, &r);
  EXPECT_EQ(r, 0);
  Info(file, false, &r);
  EXPECT_EQ(r, 1);
}

TEST_F(SmfLoadTest, HeadOnlyAcceptsALongLastTrack) {
  MidiTrack first;
  first.TrackName(0, "Head title").EndOfTrack(0);
  MidiTrack longTrack;
  longTrack.Text(0, std::string(3000, 't')).EndOfTrack(0);
  int r = -1;
  TSongPara p = Info(Format1({first, longTrack}), true, &r);
  EXPECT_EQ(r, 1);
  EXPECT_STREQ(p.title, "Head title");
}

TEST_F(SmfLoadTest, HeadOnlyKeeps1024BytesOfATrack) {
  MidiTrack t;
  t.TrackName(0, "Cut").Text(0, std::string(3000, 't')).EndOfTrack(0);
  std::string path = Put(Format0(t));
  TSmfData smf;
  ASSERT_EQ(smf.LoadFromFile(path.c_str(), true), 1);
  EXPECT_EQ(smf.GetTrackDatas(0)->GetDataLength(), 1024u);
  // The cut text event runs past the kept data: the track just ends.
  TSongPara p{};
  smf.SetFirst(&p);
  EXPECT_EQ(smf.GetTotalTime(true), 0.0);
  EXPECT_STREQ(p.title, "Cut");
  EXPECT_STREQ(p.text, "");
}

TEST_F(SmfLoadTest, TrackLoadsFromAFileHandle) {
  MidiTrack t = Simple();
  std::string path = Put(TrackChunk(t.bytes()) + TrackChunk(std::string(2000, '\0')));
  zansong_test::WriteFile(path + ".x", "");
  FILE* f = std::fopen(path.c_str(), "rb");
  ASSERT_NE(f, nullptr);
  TSmfData owner;
  TTrackData first(&owner);
  TTrackData second(&owner);
  TTrackData third(&owner);
  EXPECT_EQ(first.LoadFromFileHandle(fileno(f), false), 1);
  EXPECT_EQ(first.GetDataLength(), t.bytes().size());
  EXPECT_EQ(second.LoadFromFileHandle(fileno(f), true), 1);
  EXPECT_EQ(second.GetDataLength(), 1024u);
  // The rest of the cut track is not a chunk header.
  EXPECT_EQ(third.LoadFromFileHandle(fileno(f), false), 0);
  std::fclose(f);
}

TEST_F(SmfLoadTest, TrackFromMemoryIsReadInPlace) {
  MidiTrack t = Simple();
  const std::string chunks = TrackChunk(t.bytes()) + TrackChunk(std::string(2000, '\x7F'));
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(chunks.data());
  TSmfData owner;
  TTrackData first(&owner);
  TTrackData second(&owner);
  size_t used = 0;
  ASSERT_EQ(first.LoadFromMemory(bytes, chunks.size(), false, &used), 1);
  EXPECT_EQ(used, 8 + t.bytes().size());
  // The track's data is the chunk's own bytes, not a copy.
  EXPECT_EQ(first.GetData(), bytes + 8);
  EXPECT_EQ(first.GetDataLength(), t.bytes().size());
  ASSERT_EQ(second.LoadFromMemory(bytes + used, chunks.size() - used, true, &used), 1);
  EXPECT_EQ(second.GetData(), bytes + 8 + t.bytes().size() + 8);
  EXPECT_EQ(second.GetDataLength(), 1024u);
  EXPECT_EQ(used, 8 + 1024u);
  // A length beyond the bytes given is refused.
  EXPECT_EQ(first.LoadFromMemory(bytes, 8 + t.bytes().size() - 1, false, &used), 0);
}

// A track whose length field matches its data but whose last event is cut
// short: the walk stops where the complete data ends.
TEST_F(SmfLoadTest, DeltaTimeRunningPastTheEndEndsTheTrack) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(300, 0, 60, 1).Raw("\x81\x80");
  int r = 0;
  TSongPara p = Info(Format0(t), false, &r);
  EXPECT_EQ(r, 1);
  EXPECT_EQ(p.totalTimeMs, 300);
}

TEST_F(SmfLoadTest, DeltaTimeWithoutAnEventEndsTheTrackAfterIt) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(300, 0, 60, 1).Raw(VarLen(200));
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 500);
}

TEST_F(SmfLoadTest, MetaLengthRunningPastTheEndEndsTheTrack) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(300, 0, 60, 1).Raw(std::string("\x10\xFF\x03\x20Title", 9));
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(p.totalTimeMs, 316);
  EXPECT_STREQ(p.title, "");
}

TEST_F(SmfLoadTest, MetaLengthQuantityRunningPastTheEndEndsTheTrack) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(300, 0, 60, 1).Raw(std::string("\x10\xFF\x01\x81", 4));
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 316);
}

TEST_F(SmfLoadTest, SysExLengthRunningPastTheEndEndsTheTrack) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(300, 0, 60, 1).Raw(std::string("\x10\xF0\x7F\x43", 4));
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 316);
  MidiTrack u;
  u.Tempo(0, 480000).Raw(std::string("\x10\xF7", 2));
  EXPECT_EQ(Info(Format0(u)).totalTimeMs, 16);
}

TEST_F(SmfLoadTest, ChannelMessageCutShortEndsTheTrack) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(300, 0, 60, 1).Raw(std::string("\x10\x95\x3C", 3));
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(p.totalTimeMs, 316);
  EXPECT_EQ(p.channelNotes[5], 0u);
  MidiTrack u;  // the same under running status
  u.Tempo(0, 480000).NoteOn(300, 0, 60, 1).Raw(std::string("\x10\x3C", 2));
  EXPECT_EQ(Info(Format0(u)).totalTimeMs, 316);
}

TEST_F(SmfLoadTest, SystemMessageCutShortEndsTheTrack) {
  MidiTrack t;
  t.Tempo(0, 480000).NoteOn(300, 0, 60, 1).Raw(std::string("\x10\xF2\xF2", 3));
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 316);
}

TEST_F(SmfLoadTest, ShortTempoEventIsIgnored) {
  MidiTrack t;
  t.Tempo(0, 480000).Meta(0, 0x51, std::string("\x01\x02", 2)).NoteOn(100, 0, 60, 1);
  t.EndOfTrack(0);
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 100);
}

TEST_F(SmfLoadTest, StrayDataByteBeforeAnyStatusIsSkipped) {
  MidiTrack t;
  t.Tempo(0, 480000).Raw(std::string("\x0A\x40", 2)).NoteOn(90, 0, 60, 1).EndOfTrack(0);
  EXPECT_EQ(Info(Format0(t)).totalTimeMs, 100);
}

TEST_F(SmfLoadTest, HugeDeltaTimesDoNotOverflow) {
  MidiTrack t;
  for (int i = 0; i < 40; ++i) t.Raw(std::string("\x8F\xFF\xFF\xFF\x7F\xFF\x06\x00", 8));
  t.EndOfTrack(0);
  int r = 0;
  TSongPara p = Info(Format0(t, 1), false, &r);
  EXPECT_EQ(r, 1);
  // 40 deltas of 2^32 - 1 ticks at 500000 us a tick.
  EXPECT_EQ(p.totalTimeMs, 40LL * 4294967295LL * 500);
}

TEST_F(SmfLoadTest, VariableLengthQuantities) {
  const unsigned char one[] = {0x7F};
  const unsigned char two[] = {0x81, 0x00};
  const unsigned char four[] = {0xFF, 0xFF, 0xFF, 0x7F};
  const unsigned char padded[] = {0x80, 0x80, 0x05};
  const unsigned char open[] = {0x81, 0x82};
  unsigned v = 0;
  EXPECT_EQ(TSmfData::GetValue2(one, &v), 1);
  EXPECT_EQ(v, 0x7Fu);
  EXPECT_EQ(TSmfData::GetValue2(two, &v), 2);
  EXPECT_EQ(v, 0x80u);
  EXPECT_EQ(TSmfData::GetValue2(four, &v), 4);
  EXPECT_EQ(v, 0x0FFFFFFFu);
  EXPECT_EQ(TSmfData::GetValue2(padded, &v), 3);
  EXPECT_EQ(v, 5u);
  EXPECT_EQ(TSmfData::GetValue2(open, sizeof open, &v), 0);
  EXPECT_EQ(TSmfData::GetValue2(two, 1, &v), 0);

  unsigned char out[5];
  EXPECT_EQ(TSmfData::ChangeValue(0, out), 1);
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(TSmfData::ChangeValue(0x3FFF, out), 2);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(out), 2), "\xFF\x7F");
  EXPECT_EQ(TSmfData::ChangeValue(0x200000, out), 4);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(out), 4), VarLen(0x200000));
  EXPECT_EQ(TSmfData::ChangeValue(0xFFFFFFFF, out), 5);
  EXPECT_EQ(TSmfData::GetValue2(out, &v), 5);
  EXPECT_EQ(v, 0xFFFFFFFFu);
  EXPECT_EQ(TSmfData::GetLengthValue(0x81, out), 2);
  EXPECT_EQ(out[0], 0x01);
  EXPECT_EQ(out[1], 0x81);
}

TEST_F(SmfLoadTest, TrackCursorReadsAndPeeksDeltaTimes) {
  MidiTrack t;
  t.NoteOn(200, 0, 60, 1);
  std::string path = Put(Format0(t));
  TSmfData smf;
  ASSERT_EQ(smf.LoadFromFile(path.c_str(), false), 1);
  TTrackData* track = smf.GetTrackDatas(0);
  ASSERT_NE(track, nullptr);
  EXPECT_EQ(smf.GetTrackDatas(1), nullptr);
  track->SetFirst();
  unsigned v = 0;
  EXPECT_EQ(track->QueryValue(&v), 2);
  EXPECT_EQ(v, 200u);
  EXPECT_EQ(track->GetPosition(), 0u);
  EXPECT_EQ(track->GetValue(&v), 2);
  EXPECT_EQ(track->GetPosition(), 2u);
}

// Every truncation of the track data (with the length field following it)
// and every single-byte corruption of a file must load or fail cleanly.
TEST_F(SmfLoadTest, EveryTruncationAndCorruptionIsHandled) {
  MidiTrack a;
  a.SetRunningStatus(true);
  a.TrackName(0, "Fuzz").Tempo(0, 480000).PartChannels(0, 1, 2).LongTitle(0, 1, "\x01LT");
  a.SongId(0, std::string(16, '\x22')).TitleSysEx(0, "\x1E\x41xyz").NoteOn(10, 0, 60, 1);
  a.NoteOn(10, 0, 62, 1).SysExEscape(5, "\x01\x02").Raw(std::string("\x00\xF2\xF1\x00", 4));
  a.Meta(3, 0x06, std::string(130, 'm')).EndOfTrack(0);
  MidiTrack b;
  b.Tempo(100, 240000).NoteOn(0, 9, 36, 1).EndOfTrack(20);
  const std::string bytes = a.bytes();
  for (size_t cut = 0; cut <= bytes.size(); ++cut) {
    MidiTrack partial;
    partial.Raw(bytes.substr(0, cut));
    int r = -1;
    TSongPara p = Info(Format1({partial, b}), false, &r);
    ASSERT_EQ(r, 1) << cut;
    EXPECT_GE(p.totalTimeMs, 0) << cut;
  }
  const std::string file = Format1({a, b});
  const unsigned char values[] = {0x00, 0x80, 0xF7, 0xFF};
  for (size_t i = 0; i < file.size(); ++i) {
    for (unsigned char v : values) {
      std::string corrupt = file;
      corrupt[i] = static_cast<char>(v);
      int r = -1;
      Info(corrupt, (i & 1) != 0, &r);
      EXPECT_TRUE(r == 0 || r == 1);
    }
  }
}

}  // namespace
}  // namespace zansong_test
