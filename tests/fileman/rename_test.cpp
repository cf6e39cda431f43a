// FH_rename: albums, playlists and songs, with and without their files.
#include "zansong/fileman/rename.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "fileman/organise_test_helpers.h"
#include "zansong/formats/smf.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"

namespace zansong_test {
namespace {

constexpr int kAlbum = 1;
constexpr int kPlaylist = 2;
constexpr int kSong = 0;

class RenameTest : public OrganiseTest {
 protected:
  void SetUp() override {
    OrganiseTest::SetUp();
    AddAlbum(1, "A");
  }
  std::string SongField(const std::string& field, int id = 1) {
    return Text("SELECT " + field + " FROM song WHERE song_id=" + std::to_string(id));
  }
  std::string MidiTitle(const std::string& path) {
    TSongPara para;
    if (!GetSMFInfo(path.c_str(), &para, false, 0)) return "<unreadable>";
    return para.title;
  }
};

TEST_F(RenameTest, AnAlbumGetsItsTitleAndTitleFileButKeepsItsDirectory) {
  ASSERT_EQ(kResultOk, FH_rename(root_.c_str(), 1, "Nocturnes", kAlbum, 1));
  EXPECT_EQ("Nocturnes", Text("SELECT album_title FROM album WHERE album_id=1"));
  EXPECT_EQ("Nocturnes", ReadFile(root_ + "A/.zanalbum"));
  EXPECT_EQ("A", Text("SELECT album_path FROM album WHERE album_id=1"));
}

TEST_F(RenameTest, APlaylistGetsItsTitle) {
  AddPlaylist(4, "Old");
  ASSERT_EQ(kResultOk, FH_rename(root_.c_str(), 4, "New", kPlaylist, 0));
  EXPECT_EQ("New", Text("SELECT playlist_title FROM playlist WHERE playlist_id=4"));
}

TEST_F(RenameTest, RenamingASongToItsCurrentTitleChangesNothing) {
  AddSong(1, 1, "A/a.mid");
  const std::string before = ReadFile(root_ + "A/a.mid");
  ASSERT_EQ(kResultOk, FH_rename(root_.c_str(), 1, "Song1", kSong, 1));
  EXPECT_EQ(before, ReadFile(root_ + "A/a.mid"));
  EXPECT_EQ("A/a.mid", SongField("midi_path"));
  EXPECT_EQ("m", SongField("mtime"));
}

TEST_F(RenameTest, WithoutRenameFilesTheTitleGoesIntoFileAndRowOnly) {
  AddSong(1, 1, "A/a.mid");
  ASSERT_EQ(kResultOk, FH_rename(root_.c_str(), 1, "Berceuse", kSong, 0));
  EXPECT_EQ("Berceuse", SongField("song_title"));
  EXPECT_EQ("Berceuse", MidiTitle(root_ + "A/a.mid"));
  EXPECT_EQ(std::string(GetModifyTime((root_ + "A/a.mid").c_str()).c_str()), SongField("mtime"));
  EXPECT_EQ("A/a.mid", SongField("midi_path"));
}

TEST_F(RenameTest, WithRenameFilesMidiAndWavFollowTheTitle) {
  AddSong(1, 1, "A/a.mid", "A/a.WAV");
  ASSERT_EQ(kResultOk, FH_rename(root_.c_str(), 1, "b", kSong, 1));
  EXPECT_TRUE(PathExists(root_ + "A/b.mid"));
  EXPECT_TRUE(PathExists(root_ + "A/b.WAV"));
  EXPECT_FALSE(PathExists(root_ + "A/a.mid"));
  EXPECT_FALSE(PathExists(root_ + "A/a.WAV"));
  EXPECT_EQ("A/b.mid|A/b.WAV|b", SongField("midi_path || '|' || audio_path || '|' || song_title"));
  EXPECT_EQ("b", MidiTitle(root_ + "A/b.mid"));
}

TEST_F(RenameTest, ATakenFileNameGetsNumber002) {
  AddSong(1, 1, "A/a.mid", "A/a.wav");
  WriteFile(root_ + "A/b.mid", "someone else's");
  ASSERT_EQ(kResultOk, FH_rename(root_.c_str(), 1, "b", kSong, 1));
  EXPECT_EQ("A/b_002.mid|A/b_002.wav", SongField("midi_path || '|' || audio_path"));
  EXPECT_TRUE(PathExists(root_ + "A/b_002.mid"));
  EXPECT_TRUE(PathExists(root_ + "A/b_002.wav"));
  EXPECT_EQ("someone else's", ReadFile(root_ + "A/b.mid"));
}

TEST_F(RenameTest, ATitleWithForbiddenCharactersAndADotNamesTheFile) {
  AddSong(1, 1, "A/a.mid");
  ASSERT_EQ(kResultOk, FH_rename(root_.c_str(), 1, "Sonata No.2: Allegro", kSong, 1));
  EXPECT_EQ("A/Sonata_No.2__Allegro.mid", SongField("midi_path"));
  EXPECT_TRUE(PathExists(root_ + "A/Sonata_No.2__Allegro.mid"));
}

TEST_F(RenameTest, AnAudioOnlySongKeepsItsExtension) {
  AddSong(1, 1, "", "A/a.mp3");
  ASSERT_EQ(kResultOk, FH_rename(root_.c_str(), 1, "Tune", kSong, 1));
  EXPECT_EQ("|A/Tune.mp3|m", SongField("midi_path || '|' || audio_path || '|' || mtime"));
  EXPECT_TRUE(PathExists(root_ + "A/Tune.mp3"));
}

TEST_F(RenameTest, AMidiFileThatCannotBeRewrittenStillGetsTheRowTitle) {
  AddSong(1, 1, "");
  Exec("UPDATE song SET midi_path='A/bad.mid' WHERE song_id=1");
  WriteFile(root_ + "A/bad.mid", "not a MIDI file");
  EXPECT_EQ(kResultRenameDbFail, FH_rename(root_.c_str(), 1, "New", kSong, 0));
  EXPECT_EQ("New", SongField("song_title"));
  EXPECT_EQ("m", SongField("mtime"));
  EXPECT_EQ("not a MIDI file", ReadFile(root_ + "A/bad.mid"));
}

TEST_F(RenameTest, WithRenameFilesAFailedTitleRewriteKeepsTheStoredPaths) {
  AddSong(1, 1, "");
  Exec("UPDATE song SET midi_path='A/bad.mid' WHERE song_id=1");
  WriteFile(root_ + "A/bad.mid", "not a MIDI file");
  EXPECT_EQ(kResultRenameDbFail, FH_rename(root_.c_str(), 1, "New", kSong, 1));
  EXPECT_EQ("New", SongField("song_title"));
  // The file follows the title, the stored path stays.
  EXPECT_TRUE(PathExists(root_ + "A/New.mid"));
  EXPECT_EQ("A/bad.mid", SongField("midi_path"));
}

TEST_F(RenameTest, AFileThatCannotBeRenamedKeepsTheStoredPaths) {
  AddSong(1, 1, "A/a.mid", "A/a.wav");
  std::remove((root_ + "A/a.wav").c_str());
  EXPECT_EQ(kResultRenameDbFail, FH_rename(root_.c_str(), 1, "b", kSong, 1));
  EXPECT_EQ("A/a.mid|A/a.wav|b", SongField("midi_path || '|' || audio_path || '|' || song_title"));
  EXPECT_TRUE(PathExists(root_ + "A/b.mid"));
}

TEST_F(RenameTest, AnUnopenableCatalogueGivesMinusOne) {
  const std::string missing = image_.root() + "/no/such/root/";
  EXPECT_EQ(kResultRenameDbFail, FH_rename(missing.c_str(), 1, "b", kSong, 1));
}

}  // namespace
}  // namespace zansong_test
