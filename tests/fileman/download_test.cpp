// FM_Copy_UlqSong: filing a downloaded song into its album or "Single
// Songs", its files, names, labels, lengths and row.
#include "zansong/fileman/download.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fileman/download_test_helpers.h"
#include "zansong/common/charset.h"
#include "zansong/db/dbsongman.h"
#include "zansong/storage/files.h"

namespace zansong_test {
namespace {

using DownloadFilingTest = DownloadTest;

TEST_F(DownloadFilingTest, AlbumSongIsFiledWithItsAlbumTitleCoverAndPurchaseDate) {
  DownloadRecord rec = Record("Nocturnes", "Nocturne No. 2");
  std::string midi = Midi("op9-2.mid", "", 16);
  std::string wav = Wav("op9-2.wav", 12000);
  Put(rec.midiSource, midi);
  Put(rec.audioSource, wav);
  Put(rec.coverSource, Cover("cover.jpg"));
  Put(rec.albumTitle, "Night Pieces");
  ASSERT_EQ(kResultOk, File(rec));

  const std::string album = Area() + "Nocturnes/";
  EXPECT_TRUE(PathExists(album + "op9-2.mid"));
  EXPECT_TRUE(PathExists(album + "op9-2.wav"));
  EXPECT_EQ("\xFF\xD8\xFF\xE0 cover cover.jpg", ReadFile(album + "zanalbum.jpg"));
  EXPECT_EQ("Night Pieces", ReadFile(album + ".zanalbum"));
  EXPECT_FALSE(PathExists(midi));
  EXPECT_FALSE(PathExists(wav));
  EXPECT_FALSE(PathExists(downloads_ + "cover.jpg"));

  EXPECT_EQ("y|Night Pieces|Downloaded Songs/Nocturnes/zanalbum.jpg|2026-11-20",
            Text("SELECT pfix||'|'||album_title||'|'||coverart_path||'|'||purchased_date "
                 "FROM album WHERE album_path='Downloaded Songs/Nocturnes'"));
  const int albumId = AlbumId("Downloaded Songs/Nocturnes");
  EXPECT_EQ(
      "y|Nocturne No. 2|Downloaded Songs/Nocturnes/op9-2.mid|Downloaded Songs/Nocturnes/op9-2.wav|"
      "SMF,WAV|12000|2026-11-20 10:00:00|F. Chopin|Classical|2026-11-20||" +
          std::to_string(albumId) + "|1",
      Text("SELECT pfix||'|'||song_title||'|'||midi_path||'|'||audio_path||'|'||format||'|'||"
           "length||'|'||mtime||'|'||composer||'|'||genre||'|'||purchased_date||'|'||"
           "coverart_path||'|'||album_id||'|'||disp_order FROM song"));
}

TEST_F(DownloadFilingTest, AlbumTitleDefaultsToTheDirectoryNameWithoutATitleFile) {
  DownloadRecord rec = Record("Etudes", "Etude");
  Put(rec.midiSource, Midi("etude.mid"));
  ASSERT_EQ(kResultOk, File(rec));
  EXPECT_EQ("Etudes",
            Text("SELECT album_title FROM album WHERE album_path='Downloaded Songs/Etudes'"));
  EXPECT_FALSE(PathExists(Area() + "Etudes/.zanalbum"));
  EXPECT_EQ("", Text("SELECT coverart_path FROM album"));
}

TEST_F(DownloadFilingTest, NewAndUpdatedAlbumsMoveToTheFirstPlace) {
  for (const char* dir : {"A", "B", "C"}) {
    DownloadRecord rec = Record(dir, dir);
    Put(rec.midiSource, Midi(std::string(dir) + ".mid"));
    ASSERT_EQ(kResultOk, File(rec));
  }
  auto order = [this] {
    return Text(
        "SELECT group_concat(album_title,',') FROM (SELECT album_title FROM album "
        "WHERE pfix='y' ORDER BY disp_order)");
  };
  EXPECT_EQ("C,B,A", order());
  DownloadRecord again = Record("A", "A2");
  Put(again.midiSource, Midi("A2.mid"));
  ASSERT_EQ(kResultOk, File(again));
  EXPECT_EQ("A,C,B", order());
  TDBSongMan man;
  ASSERT_TRUE(man.InitDB(root_.c_str()) && man.Open());
  EXPECT_EQ(1, man.CheckOrder(0, "y"));
  EXPECT_EQ(1, man.CheckOrder(AlbumId("Downloaded Songs/A"), "y"));
}

TEST_F(DownloadFilingTest, NewSongMovesToTheFirstPlaceOfItsAlbum) {
  for (const char* name : {"one", "two", "three"}) {
    DownloadRecord rec = Record("Set", name);
    Put(rec.midiSource, Midi(std::string(name) + ".mid"));
    ASSERT_EQ(kResultOk, File(rec));
  }
  EXPECT_EQ("three,two,one",
            Text("SELECT group_concat(song_title,',') FROM (SELECT song_title FROM song "
                 "ORDER BY disp_order)"));
}

TEST_F(DownloadFilingTest, SingleSongGoesToSingleSongsWithItsCoverBesideIt) {
  DownloadRecord rec = Record("", "Gymnopedie");
  Put(rec.midiSource, Midi("gym1.mid"));
  Put(rec.coverSource, Cover("gym1-art.jpg"));
  ASSERT_EQ(kResultOk, File(rec));
  const std::string single = Area() + "Single Songs/";
  EXPECT_TRUE(PathExists(single + "gym1.mid"));
  EXPECT_EQ("\xFF\xD8\xFF\xE0 cover gym1-art.jpg", ReadFile(single + "gym1.jpg"));
  EXPECT_EQ("Downloaded Songs/Single Songs/gym1.jpg|Downloaded Songs/Single Songs/gym1.mid|SMF",
            Text("SELECT coverart_path||'|'||midi_path||'|'||format FROM song"));
  EXPECT_EQ(AlbumId("Downloaded Songs/Single Songs"), Int("SELECT album_id FROM song"));
  // Filed again without a cover, the song keeps the one beside it.
  DownloadRecord again = Record("", "Gymnopedie No. 1");
  Put(again.midiSource, Midi("gym1.mid"));
  ASSERT_EQ(kResultOk, File(again));
  EXPECT_EQ("Gymnopedie No. 1|Downloaded Songs/Single Songs/gym1.jpg",
            Text("SELECT song_title||'|'||coverart_path FROM song"));
}

// The first single song makes the "Single Songs" album: its song never
// lands in album 0, whose order is that of the albums themselves.
TEST_F(DownloadFilingTest, FirstSingleSongLeavesTheAlbumOrderAlone) {
  for (const char* dir : {"A", "B"}) {
    DownloadRecord rec = Record(dir, dir);
    Put(rec.midiSource, Midi(std::string(dir) + ".mid"));
    ASSERT_EQ(kResultOk, File(rec));
  }
  const std::string before = Text(
      "SELECT group_concat(album_id||':'||disp_order,',') FROM (SELECT * FROM album "
      "ORDER BY album_id)");
  DownloadRecord single = Record("", "Solo");
  Put(single.midiSource, Midi("solo.mid"));
  ASSERT_EQ(kResultOk, File(single));

  const int singleId = AlbumId("Downloaded Songs/Single Songs");
  ASSERT_NE(0, singleId);
  EXPECT_EQ("Single Songs|y", Text("SELECT album_title||'|'||pfix FROM album WHERE album_id=" +
                                   std::to_string(singleId)));
  EXPECT_EQ(before, Text("SELECT group_concat(album_id||':'||disp_order,',') FROM (SELECT * "
                         "FROM album WHERE album_id<>" +
                         std::to_string(singleId) + " ORDER BY album_id)"));
  EXPECT_EQ(std::to_string(singleId) + "|1",
            Text("SELECT album_id||'|'||disp_order FROM song WHERE song_title='Solo'"));
  EXPECT_EQ(0, Int("SELECT COUNT(*) FROM song WHERE album_id=0"));
}

TEST_F(DownloadFilingTest, FormatLabelsAndLengthsFollowTheFiles) {
  struct Case {
    std::string midi, audio, format;
  } cases[] = {
      {"m.mid", "", "SMF"},
      {"mw.mid", "mw.wav", "SMF,WAV"},
      {"mp.MID", "mp.mp3", "SMF,MP3"},
      {"", "w.WAV", "WAV"},
      {"", "p.mp3", "MP3"},
  };
  for (const Case& c : cases) {
    DownloadRecord rec = Record("Formats", c.midi + c.audio);
    if (!c.midi.empty()) Put(rec.midiSource, Midi(c.midi, "", 4));
    if (!c.audio.empty()) {
      Put(rec.audioSource,
          c.audio.find("mp3") != std::string::npos ? Mp3(c.audio) : Wav(c.audio, 5000));
    }
    ASSERT_EQ(kResultOk, File(rec)) << c.format;
    EXPECT_EQ(c.format,
              Text("SELECT format FROM song WHERE song_title='" + c.midi + c.audio + "'"));
  }
  // Four quarter notes at 120 bpm last 2 s; the 5 s WAV is longer.
  EXPECT_EQ(2000, Int("SELECT length FROM song WHERE format='SMF'"));
  EXPECT_EQ(5000, Int("SELECT length FROM song WHERE format='SMF,WAV'"));
  EXPECT_EQ(5000, Int("SELECT length FROM song WHERE format='WAV'"));
  EXPECT_EQ("Downloaded Songs/Formats/mp.MID|Downloaded Songs/Formats/mp.mp3",
            Text("SELECT midi_path||'|'||audio_path FROM song WHERE format='SMF,MP3'"));
  EXPECT_EQ("|Downloaded Songs/Formats/w.WAV",
            Text("SELECT midi_path||'|'||audio_path FROM song WHERE format='WAV'"));
}

TEST_F(DownloadFilingTest, EmptyTitleTakesTheMidiTitleOrElseTheFileName) {
  DownloadRecord titled = Record("T", "");
  Put(titled.midiSource,
      Midi("sakura.mid", StringConv("さくら  さくら", "UTF-8", "SHIFT-JIS").c_str()));
  ASSERT_EQ(kResultOk, File(titled));
  DownloadRecord untitled = Record("T", "");
  Put(untitled.midiSource, Midi("no-title.mid"));
  ASSERT_EQ(kResultOk, File(untitled));
  DownloadRecord audio = Record("T", "");
  Put(audio.audioSource, Wav("rain.wav"));
  ASSERT_EQ(kResultOk, File(audio));
  EXPECT_EQ("さくら さくら",
            Text("SELECT song_title FROM song WHERE midi_path LIKE '%sakura.mid'"));
  EXPECT_EQ("no-title", Text("SELECT song_title FROM song WHERE midi_path LIKE '%no-title.mid'"));
  EXPECT_EQ("rain", Text("SELECT song_title FROM song WHERE audio_path LIKE '%rain.wav'"));
}

TEST_F(DownloadFilingTest, SameDownloadTwiceUpdatesItsOneRow) {
  DownloadRecord rec = Record("Waltzes", "Waltz");
  Put(rec.midiSource, Midi("waltz.mid"));
  Put(rec.audioSource, Wav("waltz.wav"));
  ASSERT_EQ(kResultOk, File(rec));
  const int id = Int("SELECT song_id FROM song");

  DownloadRecord again = Record("Waltzes", "Minute Waltz");
  Put(again.midiSource, Midi("waltz.mid"));
  Put(again.audioSource, Wav("waltz.wav"));
  Put(again.composer, "Chopin");
  Put(again.mtime, "2026-11-21 09:00:00");
  ASSERT_EQ(kResultOk, File(again));
  EXPECT_EQ(1, SongCount());
  EXPECT_EQ(std::to_string(id) + "|Minute Waltz|Chopin|2026-11-21 09:00:00",
            Text("SELECT song_id||'|'||song_title||'|'||composer||'|'||mtime FROM song"));
}

TEST_F(DownloadFilingTest, AudioOnlyDownloadTwiceGivesTwoRows) {
  for (int i = 0; i < 2; ++i) {
    DownloadRecord rec = Record("", "Rain");
    Put(rec.audioSource, Wav("rain.wav"));
    ASSERT_EQ(kResultOk, File(rec));
  }
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM song WHERE format='WAV' AND "
                   "audio_path='Downloaded Songs/Single Songs/rain.wav'"));
  EXPECT_EQ(2, Int("SELECT COUNT(DISTINCT song_id) FROM song"));
}

// A download whose MIDI file is missing is refused as a whole: no row
// names a file that is not there, and the audio file stays for another try.
TEST_F(DownloadFilingTest, MissingMidiSourceIsRefusedAndTheAudioSourceKept) {
  DownloadRecord rec = Record("Broken", "Half");
  Put(rec.midiSource, downloads_ + "gone.mid");
  std::string wav = Wav("gone.wav");
  Put(rec.audioSource, wav);
  EXPECT_EQ(kResultNoFile, File(rec));
  EXPECT_FALSE(PathExists(Db()));
  EXPECT_TRUE(PathExists(wav));
  EXPECT_FALSE(PathExists(Area() + "Broken"));
}

TEST_F(DownloadFilingTest, MissingAudioSourceIsRefused) {
  DownloadRecord rec = Record("", "Half");
  std::string midi = Midi("half.mid");
  Put(rec.midiSource, midi);
  Put(rec.audioSource, downloads_ + "half.wav");
  EXPECT_EQ(kResultNoFile, File(rec));
  EXPECT_TRUE(PathExists(midi));
  EXPECT_FALSE(PathExists(Db()));
}

TEST_F(DownloadFilingTest, RecordWithoutSongFilesIsRefusedAsNoData) {
  DownloadRecord rec = Record("A", "Nothing");
  Put(rec.coverSource, Cover("c.jpg"));
  EXPECT_EQ(kResultNoData, File(rec));
  EXPECT_TRUE(PathExists(downloads_ + "c.jpg"));
  char msg[512];
  EXPECT_EQ(kResultNoData, FM_Copy_UlqSong(root_.c_str(), nullptr, msg));
  EXPECT_EQ(ExpectedDownloadLine(kResultNoData), msg);
}

// The album directory is one name inside "Downloaded Songs": a purchase is
// never written anywhere else.
TEST_F(DownloadFilingTest, AlbumDirectoryThatIsNoPlainNameIsRefused) {
  for (const char* dir : {"..", ".", "../../etc", "a/b", "/abs", "tab\there", "line\nend"}) {
    DownloadRecord rec = Record(dir, "Escape");
    std::string midi = Midi("escape.mid");
    Put(rec.midiSource, midi);
    EXPECT_EQ(kResultCannotExecute, File(rec)) << dir;
    EXPECT_TRUE(PathExists(midi));
  }
  EXPECT_FALSE(PathExists(Db()));
  EXPECT_FALSE(PathExists(root_ + "escape.mid"));
  EXPECT_FALSE(PathExists(Area()));
}

TEST_F(DownloadFilingTest, SourceThatIsNoSongFileIsRefused) {
  DownloadRecord rec = Record("A", "Text");
  std::string text = downloads_ + "notes.txt";
  WriteFile(text, "not a song");
  Put(rec.midiSource, text);
  EXPECT_EQ(kResultCannotExecute, File(rec));
  DownloadRecord ogg = Record("A", "Ogg");
  Put(ogg.audioSource, downloads_ + "tune.ogg");
  WriteFile(downloads_ + "tune.ogg", "OggS");
  EXPECT_EQ(kResultCannotExecute, File(ogg));
  EXPECT_FALSE(PathExists(Area()));
}

TEST_F(DownloadFilingTest, UnterminatedRecordTextIsRefused) {
  DownloadRecord rec = Record("A", "T");
  Put(rec.midiSource, Midi("t.mid"));
  std::memset(rec.albumDir, 'x', sizeof rec.albumDir);
  EXPECT_EQ(kResultCannotExecute, File(rec));
  DownloadRecord late = Record("A", "T");
  Put(late.midiSource, Midi("t.mid"));
  std::memset(late.mtime, '9', sizeof late.mtime);
  EXPECT_EQ(kResultCannotExecute, File(late));
  EXPECT_FALSE(PathExists(Area()));
}

// No file whose name begins with PWN (what the shell text in the names
// would create if a shell ran it) in the image or the working directory.
void ExpectNoCommandRan(const std::string& image) {
  namespace fs = std::filesystem;
  for (const std::string& dir : {image, fs::current_path().string()}) {
    for (const auto& e : fs::recursive_directory_iterator(dir)) {
      EXPECT_NE(0u, e.path().filename().string().rfind("PWN", 0)) << e.path();
    }
  }
}

TEST_F(DownloadFilingTest, QuotesDollarsAndBackquotesAreJustText) {
  const std::string dir = "\"$(touch PWN1)`touch PWN2`";
  const std::string title = "Song \"$(touch PWN3)\" `touch PWN4`";
  DownloadRecord rec = Record(dir, title);
  Put(rec.midiSource, Midi("a$(touch PWN5)`touch PWN6`.mid"));
  Put(rec.audioSource, Wav("a$(touch PWN5)`touch PWN6`.wav"));
  Put(rec.coverSource, Cover("c\"$(touch PWN7).jpg"));
  Put(rec.albumTitle, "Album '$(touch PWN8)' `touch PWN9`");
  ASSERT_EQ(kResultOk, File(rec));
  const std::string album = Area() + dir + "/";
  EXPECT_TRUE(PathExists(album + "a$(touch PWN5)`touch PWN6`.mid"));
  EXPECT_TRUE(PathExists(album + "a$(touch PWN5)`touch PWN6`.wav"));
  EXPECT_TRUE(PathExists(album + "zanalbum.jpg"));
  EXPECT_EQ("Album '$(touch PWN8)' `touch PWN9`", ReadFile(album + ".zanalbum"));
  EXPECT_EQ(title + "|Downloaded Songs/" + dir + "/a$(touch PWN5)`touch PWN6`.mid",
            Text("SELECT song_title||'|'||midi_path FROM song"));
  EXPECT_EQ("Album '$(touch PWN8)' `touch PWN9`", Text("SELECT album_title FROM album"));
  ExpectNoCommandRan(image_.root());
}

// The host may decode a package straight into "Single Songs": a source
// that already lies where it is to be filed is kept, not emptied or removed.
TEST_F(DownloadFilingTest, SourceAlreadyInItsPlaceIsFiledAndKept) {
  const std::string single = Area() + "Single Songs/";
  MakeDirs(single);
  WriteSongFile(single + "here.mid", "", 8);
  const std::string bytes = ReadFile(single + "here.mid");
  DownloadRecord rec = Record("", "Here");
  Put(rec.midiSource, single + "here.mid");
  ASSERT_EQ(kResultOk, File(rec));
  EXPECT_EQ(bytes, ReadFile(single + "here.mid"));
  EXPECT_EQ("Downloaded Songs/Single Songs/here.mid|4000",
            Text("SELECT midi_path||'|'||length FROM song"));
}

TEST_F(DownloadFilingTest, CatalogueThatCannotBeOpenedGivesDbFail) {
  DownloadRecord rec = Record("A", "T");
  std::string midi = Midi("t.mid");
  Put(rec.midiSource, midi);
  std::string printed;
  EXPECT_EQ(kResultDbFail, File(rec, image_.root() + "/no/such/storage/", &printed));
  EXPECT_TRUE(PathExists(midi));
}

TEST_F(DownloadFilingTest, RowThatCannotBeWrittenGivesCannotExecute) {
  DownloadRecord rec = Record("A", "T");
  Put(rec.midiSource, Midi("t.mid"));
  ASSERT_EQ(kResultOk, File(rec));
  ExecOn(Db(),
         "CREATE TRIGGER no_insert BEFORE INSERT ON song BEGIN SELECT RAISE(ABORT,'no'); END;"
         "CREATE TRIGGER no_update BEFORE UPDATE OF song_title ON song BEGIN "
         "SELECT RAISE(ABORT,'no'); END;");
  DownloadRecord fresh = Record("A", "New");
  Put(fresh.midiSource, Midi("new.mid"));
  EXPECT_EQ(kResultCannotExecute, File(fresh));
  DownloadRecord again = Record("A", "Renamed");
  Put(again.midiSource, Midi("t.mid"));
  EXPECT_EQ(kResultCannotExecute, File(again));
  EXPECT_EQ(1, SongCount());
  EXPECT_EQ("T", Text("SELECT song_title FROM song"));
}

TEST(DownloadRecordTest, FieldsLieInTheirOrderWithTheirSizes) {
  EXPECT_EQ(0u, offsetof(DownloadRecord, midiSource));
  EXPECT_EQ(256u, offsetof(DownloadRecord, audioSource));
  EXPECT_EQ(512u, offsetof(DownloadRecord, coverSource));
  EXPECT_EQ(768u, offsetof(DownloadRecord, albumDir));
  EXPECT_EQ(800u, offsetof(DownloadRecord, albumTitle));
  EXPECT_EQ(1824u, offsetof(DownloadRecord, songTitle));
  EXPECT_EQ(2848u, offsetof(DownloadRecord, composer));
  EXPECT_EQ(3872u, offsetof(DownloadRecord, genre));
  EXPECT_EQ(4128u, offsetof(DownloadRecord, purchaseDate));
  EXPECT_EQ(4160u, offsetof(DownloadRecord, mtime));
  EXPECT_EQ(4192u, sizeof(DownloadRecord));
  EXPECT_EQ(32u, sizeof(DownloadRecord::mtime));
}

}  // namespace
}  // namespace zansong_test
