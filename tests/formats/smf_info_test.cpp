// Titles, texts, long titles, song identifiers and part channels read from
// generated MIDI files.
#include <cstring>
#include <string>
#include <vector>

#include "formats/smf_test_util.h"

namespace zansong_test {
namespace {

class SmfInfoTest : public SmfTest {};

TEST_F(SmfInfoTest, TitleNoticeAndTextOfTheFirstTrack) {
  MidiTrack t;
  t.Text(0, "some text").TrackName(0, "My Song").Notice(0, "(c) someone").EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_STREQ(p.title, "My Song");
  EXPECT_STREQ(p.notice, "(c) someone");
  EXPECT_STREQ(p.text, "some text");
  // Text event: 00 FF 01 09 + 9 bytes = 13 bytes; the title's 0xFF is at 14.
  EXPECT_EQ(p.titleStart, 14u);
  EXPECT_EQ(p.titleEnd, 14u + 3u + 7u);
}

TEST_F(SmfInfoTest, TrackNameInTheSecondTrackSetsNoTitle) {
  MidiTrack a;
  a.EndOfTrack(0);
  MidiTrack b;
  b.TrackName(0, "Piano").Text(0, "t2").Notice(0, "n2").EndOfTrack(0);
  TSongPara p = Info(Format1({a, b}));
  EXPECT_STREQ(p.title, "");
  EXPECT_STREQ(p.text, "");
  EXPECT_STREQ(p.notice, "");
}

TEST_F(SmfInfoTest, TitleOf2000BytesIsCutTo1023) {
  MidiTrack t;
  t.TrackName(0, std::string(2000, 'x')).Notice(0, std::string(1500, 'n')).EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(std::strlen(p.title), 1023u);
  EXPECT_EQ(std::strlen(p.notice), 1023u);
  EXPECT_EQ(p.titleEnd - p.titleStart, 2000u + 4u);  // FF 03, two length bytes
}

TEST_F(SmfInfoTest, LaterTrackNameReplacesEarlierOne) {
  MidiTrack t;
  t.TrackName(0, "First").TrackName(10, "Second").EndOfTrack(0);
  EXPECT_STREQ(Info(Format0(t)).title, "Second");
}

TEST_F(SmfInfoTest, LongTitleWithAttribute) {
  MidiTrack t;
  t.LongTitle(0, 1, std::string("\x05", 1) + "A Long Title").EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(p.attribute, 5u);
  EXPECT_STREQ(p.longTitle, "A Long Title");
  EXPECT_STREQ(p.title, "A Long Title");  // no track name: from the long title
}

TEST_F(SmfInfoTest, LongTitleWithHpFlagAndAttribute) {
  MidiTrack t;
  t.TrackName(0, "Short").LongTitle(0, 0, std::string("\x00\x07", 2) + "Long").EndOfTrack(0);
  std::string path = Put(Format0(t));
  TSmfData smf;
  ASSERT_EQ(smf.LoadFromFile(path.c_str(), false), 1);
  EXPECT_EQ(smf.GetHpFlag(), 1);
  TSongPara p{};
  smf.SetFirst(&p);
  smf.GetTotalTime(false);
  EXPECT_EQ(smf.GetHpFlag(), 0);
  EXPECT_EQ(p.attribute, 7u);
  EXPECT_STREQ(p.longTitle, "Long");
  EXPECT_STREQ(p.title, "Short");
}

TEST_F(SmfInfoTest, LongTitleWithoutAttribute) {
  MidiTrack t;
  t.LongTitle(0, 2, "  Spaced   out  title").EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(p.attribute, 0u);
  EXPECT_STREQ(p.longTitle, "  Spaced   out  title");
  // The title made from it drops leading blanks and collapses runs.
  EXPECT_STREQ(p.title, "Spaced out title");
}

TEST_F(SmfInfoTest, LongTitleIsCutTo32Bytes) {
  MidiTrack t;
  t.LongTitle(0, 2, std::string(40, 'L')).EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(std::string(p.longTitle), std::string(32, 'L'));
  EXPECT_EQ(std::string(p.title), std::string(32, 'L'));
}

TEST_F(SmfInfoTest, NoTitleAtAllLeavesBothEmpty) {
  MidiTrack t;
  t.NoteOn(0, 0, 60, 1).EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_STREQ(p.title, "");
  EXPECT_STREQ(p.longTitle, "");
}

TEST_F(SmfInfoTest, EventLocationsAreRecorded) {
  MidiTrack a;
  a.TrackName(0, "T").EndOfTrack(0);  // FF 03 at offset 1
  MidiTrack b;
  b.PartChannels(0, 1, 2).LongTitle(0, 9, "zz").EndOfTrack(0);
  std::string path = Put(Format1({a, b}));
  TSmfData smf;
  ASSERT_EQ(smf.LoadFromFile(path.c_str(), false), 1);
  TSongPara p{};
  smf.SetFirst(&p);
  smf.GetTotalTime(false);
  TSList* list = smf.GetConvPara();
  ASSERT_EQ(list->Count(), 3);
  auto* title = static_cast<TSmfEventLocation*>(list->GetItem(0));
  auto* channels = static_cast<TSmfEventLocation*>(list->GetItem(1));
  auto* longTitle = static_cast<TSmfEventLocation*>(list->GetItem(2));
  EXPECT_EQ(title->position, 22u + 1u);
  EXPECT_EQ(title->length, 4u);
  EXPECT_EQ(title->kind, 0u);
  // Locations in later tracks are still based on the first track's start.
  EXPECT_EQ(channels->position, 22u + 1u);
  EXPECT_EQ(channels->length, 8u);
  EXPECT_EQ(channels->kind, 1u);
  EXPECT_EQ(longTitle->position, 22u + 10u);
  EXPECT_EQ(longTitle->length, 3u + 7u);
  EXPECT_EQ(longTitle->kind, 2u);
  // A long-title form that is not known copies nothing.
  EXPECT_STREQ(p.longTitle, "");
}

TEST_F(SmfInfoTest, WrappedFileLocationsStartAt42) {
  MidiTrack t;
  t.TrackName(0, "T").EndOfTrack(0);
  std::string path = Put(BuildSmf(SmfOptions{0, 480, true, -1}, std::vector<MidiTrack>{t}));
  TSmfData smf;
  ASSERT_EQ(smf.LoadFromFile(path.c_str(), false), 1);
  EXPECT_EQ(smf.GetTrackStartPosition(), 42u);
  TSongPara p{};
  smf.SetFirst(&p);
  smf.GetTotalTime(false);
  ASSERT_EQ(smf.GetConvPara()->Count(), 1);
  EXPECT_EQ(static_cast<TSmfEventLocation*>(smf.GetConvPara()->GetItem(0))->position, 43u);
}

TEST_F(SmfInfoTest, SongIdentifier) {
  std::string id;
  for (int i = 0; i < 16; ++i) id += static_cast<char>(i * 17 + 10);
  MidiTrack t;
  t.SongId(0, id).EndOfTrack(0);
  EXPECT_STREQ(Info(Format0(t)).songId, "0A1B2C3D4E5F708192A3B4C5D6E7F809");
}

TEST_F(SmfInfoTest, SongIdentifierOfTheWrongLengthIsIgnored) {
  MidiTrack t;
  t.SysEx(0, std::string("\x43\x71\x7E\x15", 4) + std::string(15, '\x01') + "\xF7").EndOfTrack(0);
  EXPECT_STREQ(Info(Format0(t)).songId, "");
}

TEST_F(SmfInfoTest, SongIdentifierMustEndInF7) {
  MidiTrack t;
  t.SysEx(0, std::string("\x43\x71\x7E\x15", 4) + std::string(17, '\x01')).EndOfTrack(0);
  EXPECT_STREQ(Info(Format0(t)).songId, "");
}

TEST_F(SmfInfoTest, TitleSystemExclusive) {
  MidiTrack t;
  t.TitleSysEx(0, "Nocturne").EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_STREQ(p.title, "Nocturne");
  EXPECT_STREQ(p.longTitle, "Nocturne");
}

TEST_F(SmfInfoTest, TitleSystemExclusiveInTheEscapeForm) {
  MidiTrack t;
  t.SysExEscape(0, std::string("\xF0\x43\x71\x7E\x10\x03", 6) + "Etude\xF7").EndOfTrack(0);
  EXPECT_STREQ(Info(Format0(t)).title, "Etude");
}

TEST_F(SmfInfoTest, TitleSystemExclusiveEscapes) {
  // A leading 1F is skipped.  "A", then 1E 41 gives 0xC1 at position 1 and
  // leaves position 2 untouched (zero), so the title reads "A\xC1".
  MidiTrack t;
  t.TitleSysEx(0, std::string("\x1F"
                              "A\x1E\x41"
                              "B",
                              5))
      .EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(std::string(p.longTitle), "A\xC1");
  EXPECT_EQ(p.longTitle[3], 'B');
  // 1F takes the next byte as it is.
  MidiTrack u;
  u.TitleSysEx(0, std::string("\x1F\x1F\x33", 3)).EndOfTrack(0);
  EXPECT_EQ(std::string(Info(Format0(u)).title), "\x33");
}

TEST_F(SmfInfoTest, TitleSystemExclusiveStopsAtNulAnd32Bytes) {
  MidiTrack t;
  t.TitleSysEx(0, std::string("ab\0cd", 5)).EndOfTrack(0);
  EXPECT_STREQ(Info(Format0(t)).title, "ab");
  MidiTrack u;
  u.TitleSysEx(0, std::string(50, 'q')).EndOfTrack(0);
  EXPECT_EQ(std::string(Info(Format0(u)).longTitle), std::string(32, 'q'));
}

TEST_F(SmfInfoTest, TitleSystemExclusiveOfSevenBytesIsIgnored) {
  MidiTrack t;
  t.SysEx(0, std::string("\x43\x71\x7E\x10\x03\xF7", 6)).EndOfTrack(0);
  EXPECT_STREQ(Info(Format0(t)).title, "");
}

TEST_F(SmfInfoTest, PartChannelsWithANoteElsewhereGiveEnsemble) {
  MidiTrack t;
  t.PartChannels(0, 1, 2).NoteOn(0, 0, 60, 1).NoteOn(0, 1, 60, 1).NoteOn(0, 9, 36, 1).EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(p.channelA, 1u);
  EXPECT_EQ(p.channelB, 2u);
  EXPECT_EQ(p.channelNotes[9], 1u);
  EXPECT_EQ(p.partMode, 2);
}

TEST_F(SmfInfoTest, PartChannelsWithNotesOnlyThereGiveSolo) {
  MidiTrack t;
  t.PartChannels(0, 1, 2).NoteOn(0, 0, 60, 1).NoteOn(0, 1, 60, 0).Control(0, 9, 7, 100);
  t.EndOfTrack(0);
  EXPECT_EQ(Info(Format0(t)).partMode, 1);
}

TEST_F(SmfInfoTest, KeyPressureCountsAsNotes) {
  MidiTrack t;
  t.PartChannels(0, 1, 2).KeyPressure(0, 5, 60, 1).EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(p.channelNotes[5], 1u);
  EXPECT_EQ(p.partMode, 2);
}

TEST_F(SmfInfoTest, NoDeclarationGivesZeroWhateverTheNotes) {
  MidiTrack t;
  t.NoteOn(0, 0, 60, 1).NoteOn(0, 9, 60, 1).EndOfTrack(0);
  EXPECT_EQ(Info(Format0(t)).partMode, 0);
}

TEST_F(SmfInfoTest, OtherFiveByteSequencerEventsAreIgnored) {
  MidiTrack t;
  t.SequencerSpecific(0, std::string("\x43\x7B\x0D\x01\x02", 5)).NoteOn(0, 4, 1, 1);
  t.EndOfTrack(0);
  TSongPara p = Info(Format0(t));
  EXPECT_EQ(p.channelA, 0u);
  EXPECT_EQ(p.partMode, 0);
}

TEST_F(SmfInfoTest, PartChannelsInALaterTrackCount) {
  MidiTrack a;
  a.NoteOn(0, 3, 60, 1).EndOfTrack(0);
  MidiTrack b;
  b.PartChannels(10, 4, 0).EndOfTrack(0);
  TSongPara p = Info(Format1({a, b}));
  EXPECT_EQ(p.channelA, 4u);
  EXPECT_EQ(p.partMode, 1);
}

TEST_F(SmfInfoTest, FormatOneIsReported) {
  MidiTrack a;
  a.EndOfTrack(0);
  EXPECT_EQ(Info(Format1({a, a})).format, 1u);
}

TEST_F(SmfInfoTest, ParaIsZeroFilledFirst) {
  TSongPara p;
  std::memset(&p, 0x5A, sizeof p);
  MidiTrack t;
  t.EndOfTrack(0);
  ASSERT_EQ(GetSMFInfo(Put(Format0(t)).c_str(), &p, false, nullptr), 1);
  EXPECT_STREQ(p.notice, "");
  EXPECT_STREQ(p.songId, "");
  EXPECT_EQ(p.attribute, 0u);
  EXPECT_EQ(p.titleStart, 0u);
}

}  // namespace
}  // namespace zansong_test
