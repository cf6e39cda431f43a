// TDBSongMan reads, inserts, updates, deletes and lists.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <list>
#include <string>

#include "support/catalogue_fixture.h"
#include "support/stdout_capture.h"

namespace zansong_test {
namespace {

using QueryTest = CatalogueTest;

TEST_F(QueryTest, GetMaxIntOfAnEmptyTableIsZeroSoTheFirstKeyIsOne) {
  StatementLog log(man_.db);
  EXPECT_EQ(0, man_.GetMaxInt("song", "song_id"));
  EXPECT_EQ("SELECT MAX(song_id) FROM song ", log.last());
  EXPECT_EQ(1, AddSongTo("A", "A/x.mid"));
  EXPECT_EQ(1, AddAlbum("A"));
  EXPECT_EQ(1, man_.CreatePlaylist("P", "p"));
  EXPECT_EQ(1, man_.AddToPlaylist(1, 1, "p", "s"));
}

TEST_F(QueryTest, CreateAlbumRunsItsStatements) {
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.CreateAlbum("It's", "User/It's", "c.jpg", "s"));
  std::vector<std::string> expected = {
      "SELECT album_id FROM album WHERE album_path='User/It''s'",
      "SELECT MAX(album_id) FROM album ", "SELECT MAX(disp_order) FROM album WHERE pfix = 's'",
      "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order,coverart_path) "
      "VALUES('s',1,'It''s','User/It''s',1,'c.jpg')"};
  EXPECT_EQ(expected, log.statements());
}

TEST_F(QueryTest, CreateAlbumOfAKnownPathReturnsItsIdAndInsertsNothing) {
  int id = man_.CreateAlbum("Title", "User/A", "", "s");
  EXPECT_EQ(id, man_.CreateAlbum("Other title", "User/A", "cover.jpg", "f"));
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM album"));
  EXPECT_EQ("Title", Text("SELECT album_title FROM album"));
  EXPECT_EQ("s", Text("SELECT pfix FROM album"));
}

TEST_F(QueryTest, CreateAlbumReturnsMinusOneWhenTheInsertFails) {
  Exec(
      "DROP TABLE album; CREATE TABLE album (pfix TEXT, album_id INTEGER, album_path TEXT, "
      "disp_order INTEGER)");
  StdoutCapture out;
  EXPECT_EQ(-1, man_.CreateAlbum("T", "User/A", "", "s"));
  EXPECT_EQ(0u, out.Finish().find("DB: error table album has no column named album_title"));
}

TEST_F(QueryTest, NewAlbumsGoToTheEndOfTheirPrefix) {
  EXPECT_EQ(1, man_.CreateAlbum("A", "A", "", "s"));
  EXPECT_EQ(2, man_.CreateAlbum("B", "B", "", "f"));
  EXPECT_EQ(3, man_.CreateAlbum("C", "C", "", "s"));
  EXPECT_EQ(1, Int("SELECT disp_order FROM album WHERE album_id=1"));
  EXPECT_EQ(1, Int("SELECT disp_order FROM album WHERE album_id=2"));
  EXPECT_EQ(2, Int("SELECT disp_order FROM album WHERE album_id=3"));
}

TEST_F(QueryTest, AddSongRunsItsStatementsAndWritesEveryColumn) {
  AddAlbum("User/A");
  SongInfo info;
  info.title = "T";
  info.midiPath = "User/A/t.mid";
  info.audioPath = "User/A/t.mp3";
  info.format = "SMF,MP3";
  info.mtime = "2020/02/03 04:05:06";
  info.albumPath = "User/A";
  info.syncId = "sync";
  info.performer = "never written";
  info.composer = "Comp";
  info.tags = "never written";
  info.purchasedDate = "2019/01/01";
  info.genre = "Jazz";
  info.coverartPath = "cover.jpg";
  info.length = 321;
  char ctime[] = "2020/01/01 00:00:00";
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.AddSong(&info, ctime, "s"));
  std::vector<std::string> expected = {
      "SELECT MAX(song_id) FROM song ", "SELECT album_id FROM album WHERE album_path='User/A'",
      "SELECT MAX(disp_order) FROM song WHERE album_id = 1",
      "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,format,length,"
      "ctime,mtime,album_id,sync_id,composer,genre,purchased_date,coverart_path) "
      "VALUES('s',1,'T','User/A/t.mid','User/A/t.mp3',1,'SMF,MP3',321,'2020/01/01 00:00:00',"
      "'2020/02/03 04:05:06',1,'sync','Comp','Jazz','2019/01/01','cover.jpg')"};
  EXPECT_EQ(expected, log.statements());
  EXPECT_EQ("", Text("SELECT ifnull(performer,'') || ifnull(tags,'') FROM song"));
}

TEST_F(QueryTest, AddSongOutsideAnyAlbumTakesItsOrderFromTheAlbumsOfThePrefix) {
  man_.CreateAlbum("A", "A", "", "s");
  man_.CreateAlbum("B", "B", "", "s");
  man_.SetOrder("album", 2, 7);
  int id = AddSongTo("Unknown", "Unknown/x.mid");
  EXPECT_EQ(0, man_.GetIntByID("song", "album_id", id));
  EXPECT_EQ(8, man_.GetIntByID("song", "disp_order", id));
}

TEST_F(QueryTest, AddSongWithANullCtimeWritesAnEmptyText) {
  SongInfo info;
  info.length = 1;
  EXPECT_EQ(1, man_.AddSong(&info, nullptr, "s"));
  EXPECT_EQ("''", Text("SELECT quote(ctime) FROM song"));
}

TEST_F(QueryTest, AddSongReturnsTheNewKeyEvenWhenTheInsertFails) {
  AddSongTo("A", "A/1.mid");
  Exec("CREATE TRIGGER no_more BEFORE INSERT ON song BEGIN SELECT RAISE(ABORT, 'full'); END");
  StdoutCapture out;
  EXPECT_EQ(2, AddSongTo("A", "A/2.mid"));
  EXPECT_EQ("DB: error full\n", out.Finish());
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM song"));
}

TEST_F(QueryTest, AddSong2UsesTheGivenKeysAndReportsFailure) {
  SongInfo info;
  info.title = "X";
  info.length = 5;
  char ctime[] = "c";
  EXPECT_EQ(1, man_.AddSong2(4, 40, 9, &info, ctime, "f"));
  EXPECT_EQ("f|40|4|9",
            Text("SELECT pfix||'|'||song_id||'|'||album_id||'|'||disp_order FROM song"));
  StdoutCapture out;
  EXPECT_EQ(0, man_.AddSong2(4, 40, 9, &info, ctime, "f"));  // the key is taken
  EXPECT_EQ("DB: error UNIQUE constraint failed: song.song_id\nError! :AddSong2", out.Finish());
}

TEST_F(QueryTest, CreatePlaylistRunsItsStatements) {
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.CreatePlaylist("Mine", "p"));
  std::vector<std::string> expected = {
      "SELECT MAX(playlist_id) FROM playlist ", "SELECT MAX(disp_order) FROM playlist",
      "INSERT INTO playlist(ppfix,playlist_id,playlist_title,disp_order) VALUES('p',1,'Mine',1)"};
  EXPECT_EQ(expected, log.statements());
}

TEST_F(QueryTest, CreatePlaylistWithASongPrefixTakesItsOrderFromTheAlbums) {
  man_.CreateAlbum("A", "A", "", "s");
  man_.SetOrder("album", 1, 5);
  EXPECT_EQ(1, man_.CreatePlaylist("Odd", "s"));
  EXPECT_EQ(6, man_.GetIntByID("playlist", "disp_order", 1));
}

TEST_F(QueryTest, CreatePlaylistReturnsTheNewKeyEvenWhenTheInsertFails) {
  Exec("DROP TABLE playlist; CREATE TABLE playlist (playlist_id INTEGER, disp_order INTEGER)");
  StdoutCapture out;
  EXPECT_EQ(1, man_.CreatePlaylist("P", "p"));
  EXPECT_EQ(0u, out.Finish().find("DB: error "));
}

TEST_F(QueryTest, AddToPlaylistRunsItsStatements) {
  StatementLog log(man_.db);
  EXPECT_EQ(1, man_.AddToPlaylist(3, 8, "p", "s"));
  std::vector<std::string> expected = {
      "SELECT MAX(psong_id) FROM psong ", "SELECT MAX(disp_order) FROM psong WHERE playlist_id = 3",
      "INSERT INTO psong(ppfix ,psong_id,playlist_id,pfix,song_id,disp_order) "
      "VALUES('p',1,3,'s',8,1)"};
  EXPECT_EQ(expected, log.statements());
  EXPECT_EQ(2, man_.AddToPlaylist(3, 9, "p", "s"));
  EXPECT_EQ(2, man_.GetIntByID("psong", "disp_order", 2));
}

TEST_F(QueryTest, SingleValueReadsRunTheirStatements) {
  AddAlbum("User/A");
  AddSongTo("User/A", "User/A/a.mid");
  man_.CreatePlaylist("List", "p");
  StatementLog log(man_.db);

  EXPECT_EQ(1, man_.GetIDByTitle("album", "User/A", "s"));
  EXPECT_EQ("SELECT album_id FROM album WHERE album_title='User/A' AND pfix='s'", log.last());
  EXPECT_EQ(1, man_.GetIDByTitle("playlist", "List", "p"));
  EXPECT_EQ("SELECT playlist_id FROM playlist WHERE playlist_title='List' AND ppfix='p'",
            log.last());
  EXPECT_EQ(0, man_.GetIDByTitle("playlist", "List", "q"));

  EXPECT_EQ(1, man_.GetSongIDByFieldname("midi_path", "User/A/a.mid", "s"));
  EXPECT_EQ("SELECT song_id FROM song WHERE midi_path='User/A/a.mid' and pfix='s'", log.last());

  EXPECT_EQ("User/A/a.mid", std::string(man_.GetTextByID("song", "midi_path", 1).c_str()));
  EXPECT_EQ("SELECT midi_path FROM song WHERE song_id = 1", log.last());
  EXPECT_EQ(1, man_.GetIntByID("song", "album_id", 1));
  EXPECT_EQ("SELECT album_id FROM song WHERE song_id = 1", log.last());

  EXPECT_EQ(1, man_.GetAlbumCount("s"));
  EXPECT_EQ("SELECT COUNT(*) FROM album WHERE pfix = 's'", log.last());
  EXPECT_EQ(1, man_.GetAlbumCount("l"));
  EXPECT_EQ("SELECT COUNT(*) FROM playlist", log.last());

  EXPECT_EQ(1, man_.GetSongCount(1, "s"));
  EXPECT_EQ("SELECT COUNT(*) FROM song WHERE album_id = 1", log.last());
  EXPECT_EQ(1, man_.GetSongCount(0, "s"));
  EXPECT_EQ("SELECT COUNT(*) FROM song WHERE pfix = 's'", log.last());
  EXPECT_EQ(0, man_.GetSongCount(1, "p"));
  EXPECT_EQ("SELECT COUNT(*) FROM psong WHERE playlist_id = 1", log.last());
  EXPECT_EQ(0, man_.GetSongCount(0, "p"));
  EXPECT_EQ("SELECT COUNT(*) FROM psong", log.last());
}

TEST_F(QueryTest, GetTextByIDOfAMissingIdIsEmpty) {
  EXPECT_EQ(0, man_.GetTextByID("song", "song_title", 99).Length());
  EXPECT_EQ(0, man_.GetIntByID("song", "length", 99));
  EXPECT_EQ(0, man_.GetAlbumIDByPath("nowhere"));
}

TEST_F(QueryTest, GetSongIDByFilenameAndMtimeMatchesAnyExtension) {
  AddAlbum("User/Album");
  SongInfo info;
  info.audioPath = "User/Album/Song.mp3";
  info.albumPath = "User/Album";
  info.mtime = "2020/01/01 10:00:00";
  char ctime[] = "";
  int id = man_.AddSong(&info, ctime, "s");
  StatementLog log(man_.db);
  EXPECT_EQ(id,
            man_.GetSongIDByFilenameAndMtime("Album", "Song", "2020/01/01 10:00:00", "s", false));
  EXPECT_EQ(
      "SELECT song_id FROM song WHERE (midi_path LIKE '%/Album/Song.___' or audio_path LIKE "
      "'%/Album/Song.___')   and mtime='2020/01/01 10:00:00' and pfix='s'",
      log.last());
  EXPECT_EQ(0,
            man_.GetSongIDByFilenameAndMtime("Album", "Song", "2020/01/01 11:00:00", "s", false));
  EXPECT_EQ(id,
            man_.GetSongIDByFilenameAndMtime("Album", "Song", "2019/12/31 23:59:59", "s", true));
  EXPECT_EQ(
      "SELECT song_id FROM song WHERE (midi_path LIKE '%/Album/Song.___' or audio_path LIKE "
      "'%/Album/Song.___')   and mtime > '2019/12/31 23:59:59' and pfix='s'",
      log.last());
  EXPECT_EQ(0,
            man_.GetSongIDByFilenameAndMtime("Album", "Song", "2020/01/01 10:00:00", "y", false));
}

TEST_F(QueryTest, GetSongIDByFilenameAndMtimeWithoutAlbumLooksInSingleSongs) {
  SongInfo info;
  info.midiPath = "Downloaded Songs/Single Songs/It's.mid";
  info.mtime = "m";
  char ctime[] = "";
  int id = man_.AddSong(&info, ctime, "y");
  StatementLog log(man_.db);
  EXPECT_EQ(id, man_.GetSongIDByFilenameAndMtime("", "It's", "m", "y", false));
  EXPECT_EQ(
      "SELECT song_id FROM song WHERE (midi_path LIKE '%/Single Songs/It''s.___' or audio_path "
      "LIKE '%/Single Songs/It''s.___')   and mtime='m' and pfix='y'",
      log.last());
  EXPECT_EQ(id, man_.GetSongIDByFilenameAndMtime(nullptr, "It's", "a", "y", true));
  EXPECT_EQ(
      "SELECT song_id FROM song WHERE (midi_path LIKE '%/Single Songs/It''s.___' or audio_path "
      "LIKE '%/Single Songs/It''s.___')   and mtime > 'a' and pfix='y'",
      log.last());
}

TEST_F(QueryTest, AwkwardTitlesComeBackUnchanged) {
  const std::vector<std::string> titles = {
      "It's \"quoted\"",
      "back\\slash\\",
      "100% sure",
      "a_b_c",
      "'; DROP TABLE song; --",
      "\x83\x5c\x83\x74\x83\x67",               // Shift-JIS, with a trail byte of 0x5C
      "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E"};  // UTF-8
  AddAlbum("User/A");
  for (const std::string& title : titles) {
    SongInfo in;
    in.title = title.c_str();
    in.composer = title.c_str();
    in.albumPath = "User/A";
    char ctime[] = "";
    int id = man_.AddSong(&in, ctime, "s");
    SongInfo out;
    ASSERT_EQ(1, man_.GetSongData(id, &out));
    EXPECT_EQ(title, out.title.c_str());
    EXPECT_EQ(title, out.composer.c_str());

    EXPECT_EQ(1, man_.SetTextByID("song", "song_title", id, (title + "!").c_str()));
    EXPECT_EQ(title + "!", man_.GetTextByID("song", "song_title", id).c_str());
    EXPECT_EQ(id, man_.GetIDByTitle("song", (title + "!").c_str(), "s"));
  }
  EXPECT_EQ(static_cast<int>(titles.size()), Int("SELECT COUNT(*) FROM song"));
}

TEST_F(QueryTest, GetSongDataFillsItsFieldsOnly) {
  Exec(
      "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,format,mtime,length,"
      "sync_id,performer,composer,tags,genre,purchased_date,coverart_path) VALUES('s',3,'T',"
      "'m','a','F','t',42,'id','P','C','G','N','2020','cov')");
  SongInfo info;
  info.albumPath = "kept";
  info.purchasedDate = "kept";
  info.coverartPath = "kept";
  StatementLog log(man_.db);
  ASSERT_EQ(1, man_.GetSongData(3, &info));
  EXPECT_EQ(
      "SELECT song_title,midi_path,audio_path,format,mtime,length,sync_id,performer,composer,"
      "tags,genre FROM song WHERE song_id = 3",
      log.last());
  EXPECT_EQ("T|m|a|F|t|id|P|C|G|N", std::string(info.title.c_str()) + "|" + info.midiPath.c_str() +
                                        "|" + info.audioPath.c_str() + "|" + info.format.c_str() +
                                        "|" + info.mtime.c_str() + "|" + info.syncId.c_str() + "|" +
                                        info.performer.c_str() + "|" + info.composer.c_str() + "|" +
                                        info.tags.c_str() + "|" + info.genre.c_str());
  EXPECT_EQ(42, info.length);
  EXPECT_EQ("kept", std::string(info.albumPath.c_str()));
  EXPECT_EQ("kept", std::string(info.purchasedDate.c_str()));
  EXPECT_EQ("kept", std::string(info.coverartPath.c_str()));
  EXPECT_EQ(0, man_.GetSongData(4, &info));
}

TEST_F(QueryTest, GetSongDataReportsAFailedStatement) {
  Exec("DROP TABLE song");
  SongInfo info;
  StdoutCapture out;
  EXPECT_EQ(0, man_.GetSongData(1, &info));
  EXPECT_EQ("Error! :GetSongData", out.Finish());
}

TEST_F(QueryTest, UpdatesRunTheirStatements) {
  AddAlbum("A");
  AddSongTo("A", "A/1.mid");
  StatementLog log(man_.db);
  SongInfo info;
  info.title = "N";
  info.length = 7;
  char ctime[] = "c";
  EXPECT_EQ(1, man_.SetSongData(1, &info, ctime));
  EXPECT_EQ(
      "UPDATE song SET song_title ='N',midi_path='',audio_path='',format='',length=7,ctime='c',"
      "mtime='',sync_id='',composer='', genre='',purchased_date ='',coverart_path ='' WHERE "
      "song_id = 1",
      log.last());
  EXPECT_EQ(1, man_.SetTextByID("album", "album_title", 1, "New"));
  EXPECT_EQ("UPDATE album SET album_title = 'New' WHERE album_id = 1", log.last());
  EXPECT_EQ(1, man_.SetSongPath(1, "A/2.mid", "A/2.wav"));
  EXPECT_EQ("UPDATE song SET midi_path = 'A/2.mid', audio_path = 'A/2.wav' WHERE song_id = 1",
            log.last());
  EXPECT_EQ("A/2.wav", std::string(man_.GetTextByID("song", "audio_path", 1).c_str()));
}

TEST_F(QueryTest, FailedUpdatesAndDeletesNameThemselves) {
  Exec("DROP TABLE song; DROP TABLE psong");
  SongInfo info;
  char ctime[] = "";
  char m[] = "m";
  char a[] = "a";
  struct Case {
    std::function<int()> call;
    const char* name;
  };
  std::vector<Case> cases = {
      {[&] { return man_.SetSongData(1, &info, ctime); }, "SetSongData"},
      {[&] { return man_.SetTextByID("song", "song_title", 1, "x"); }, "SetTextByID"},
      {[&] { return man_.SetSongPath(1, "m", "a"); }, "SetSongPath"},
      {[&] { return man_.DeleteSongByPath(m, a); }, "DeleteSongByPath"},
      {[&] { return man_.DeletePsongByAlbum(1, "s"); }, "DeletePsongByAlbum"},
      {[&] { return man_.DeletePsongNotExist("s"); }, "DeletePsongNotExist"},
      {[&] { return man_.DeleteData("song", "pfix", "s"); }, "DeleteData"},
      {[&] { return man_.DeleteData2("song", "pfix", "s", "album_id", "1"); }, "DeleteData2"},
  };
  for (const Case& c : cases) {
    StdoutCapture out;
    EXPECT_EQ(0, c.call()) << c.name;
    std::string printed = out.Finish();
    EXPECT_EQ(0u, printed.find("DB: error no such table: ")) << printed;
    EXPECT_EQ(printed.size() - std::strlen(c.name) - 8,
              printed.rfind(std::string("Error! :") + c.name))
        << printed;
  }
}

TEST_F(QueryTest, DeletesRunTheirStatements) {
  AddAlbum("A");
  AddAlbum("B");
  AddSongTo("A", "A/1.mid");
  AddSongTo("A", "A/2.mid");
  AddSongTo("B", "B/3.mid");
  man_.CreatePlaylist("P", "p");
  for (int song = 1; song <= 3; ++song) man_.AddToPlaylist(1, song, "p", "s");
  man_.AddToPlaylist(1, 77, "p", "s");  // refers to no song
  StatementLog log(man_.db);

  EXPECT_EQ(1, man_.DeletePsongByAlbum(1, "s"));
  EXPECT_EQ(
      "DELETE FROM psong WHERE song_id in (SELECT song_id FROM song WHERE album_id=1) AND pfix "
      "='s'",
      log.last());
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM psong"));

  EXPECT_EQ(1, man_.DeletePsongNotExist("s"));
  EXPECT_EQ("DELETE FROM psong WHERE song_id not in (SELECT song_id FROM song) AND pfix ='s'",
            log.last());
  EXPECT_EQ(3, Int("SELECT song_id FROM psong"));

  char midi[] = "A/1.mid";
  char audio[] = "";
  EXPECT_EQ(1, man_.DeleteSongByPath(midi, audio));
  EXPECT_EQ("DELETE FROM song WHERE midi_path='A/1.mid' AND audio_path=''", log.last());
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM song"));

  EXPECT_EQ(1, man_.DeleteData2("song", "album_id", "1", "pfix", "s"));
  EXPECT_EQ("DELETE FROM song WHERE album_id='1' AND pfix='s'", log.last());
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM song"));

  EXPECT_EQ(1, man_.DeleteData("album", "album_path", "B"));
  EXPECT_EQ("DELETE FROM album WHERE album_path='B'", log.last());
  EXPECT_EQ(1, Int("SELECT COUNT(*) FROM album"));
}

TEST_F(QueryTest, IdListsFollowTheDisplayOrder) {
  AddAlbum("A");
  AddAlbum("B");
  AddAlbum("C", "f");
  man_.SetOrder("album", 1, 5);
  AddSongTo("A", "A/1.mid");
  AddSongTo("A", "A/2.mid");
  man_.SetOrder("song", 1, 3);
  man_.CreatePlaylist("P1", "p");
  man_.CreatePlaylist("P2", "l");
  man_.SetOrder("playlist", 1, 9);
  man_.AddToPlaylist(2, 2, "p", "s");
  man_.AddToPlaylist(2, 1, "p", "f");
  StatementLog log(man_.db);

  std::list<int> ids;
  EXPECT_EQ(1, man_.GetIDList(ids, 0, "s"));
  EXPECT_EQ("SELECT album_id FROM album  WHERE pfix = 's' order by disp_order", log.last());
  EXPECT_EQ((std::list<int>{2, 1}), ids);
  ids.clear();
  EXPECT_EQ(1, man_.GetIDList(ids, 1, "s"));
  EXPECT_EQ("SELECT song_id FROM song WHERE album_id = 1 order by disp_order", log.last());
  EXPECT_EQ((std::list<int>{2, 1}), ids);
  ids.clear();
  EXPECT_EQ(1, man_.GetIDList(ids, 0, "p"));
  EXPECT_EQ("SELECT playlist_id FROM playlist order by disp_order", log.last());
  EXPECT_EQ((std::list<int>{2, 1}), ids);
  ids.clear();
  EXPECT_EQ(1, man_.GetIDList(ids, 2, "l"));
  EXPECT_EQ("SELECT psong_id FROM psong WHERE playlist_id = 2 order by disp_order", log.last());
  EXPECT_EQ((std::list<int>{1, 2}), ids);

  ids = {99};  // lists append
  EXPECT_EQ(1, man_.GetSongIDList(ids, 2, true));
  EXPECT_EQ("SELECT song_id FROM psong WHERE playlist_id = 2 order by disp_order", log.last());
  EXPECT_EQ((std::list<int>{99, 2, 1}), ids);
  ids.clear();
  EXPECT_EQ(1, man_.GetSongIDList(ids, 1, false));
  EXPECT_EQ("SELECT song_id FROM song WHERE album_id = 1 order by disp_order", log.last());
  EXPECT_EQ((std::list<int>{2, 1}), ids);

  std::list<std::string> pfixes;
  std::list<int> songs;
  EXPECT_EQ(1, man_.GetPSongIDPfixList(pfixes, songs, 2));
  EXPECT_EQ("SELECT pfix,song_id FROM psong WHERE playlist_id = 2 order by disp_order", log.last());
  EXPECT_EQ((std::list<std::string>{"s", "f"}), pfixes);
  EXPECT_EQ((std::list<int>{2, 1}), songs);
}

TEST_F(QueryTest, PathListsJoinTheirFieldsWithTabs) {
  AddAlbum("User/A");
  AddAlbum("User/B", "y");
  SongInfo info;
  info.midiPath = "User/A/1.mid";
  info.audioPath = "User/A/1.wav";
  info.format = "SMFSOLO,WAV";
  info.mtime = "2020";
  info.albumPath = "User/A";
  char ctime[] = "";
  man_.AddSong(&info, ctime, "s");
  info.format = "SMFKW";
  info.audioPath = "";
  info.midiPath = "User/B/2.mid";
  info.albumPath = "User/B";
  man_.AddSong(&info, ctime, "y");
  info.format = "MP3";
  info.midiPath = "";
  info.audioPath = "User/B/3.mp3";
  man_.AddSong(&info, ctime, "y");
  StatementLog log(man_.db);

  std::list<std::string> list;
  EXPECT_EQ(1, man_.GetAlbumPathList(list, "s"));
  EXPECT_EQ("SELECT album_path FROM album WHERE pfix = 's'", log.last());
  EXPECT_EQ((std::list<std::string>{"User/A"}), list);
  list.clear();
  EXPECT_EQ(1, man_.GetAlbumPathList2(list, "y"));
  EXPECT_EQ("SELECT album_path,album_id FROM album WHERE pfix = 'y'", log.last());
  EXPECT_EQ((std::list<std::string>{"User/B\t2"}), list);
  list.clear();
  EXPECT_EQ(1, man_.GetSongPathList(list, "s"));
  EXPECT_EQ("SELECT midi_path,audio_path,format,mtime FROM song WHERE pfix = 's'", log.last());
  EXPECT_EQ((std::list<std::string>{"User/A/1.mid\tUser/A/1.wav\tSMF\t2020"}), list);
  list.clear();
  EXPECT_EQ(1, man_.GetSongPathList(list, "y"));
  EXPECT_EQ((std::list<std::string>{"User/B/2.mid\t\tSMF\t", "\tUser/B/3.mp3\tMP3\t"}), list);
  list.clear();
  EXPECT_EQ(1, man_.GetSongPathList2(list, "y"));
  EXPECT_EQ("SELECT midi_path,audio_path,song_id FROM song WHERE pfix = 'y'", log.last());
  EXPECT_EQ((std::list<std::string>{"User/B/2.mid\t\t2", "\tUser/B/3.mp3\t3"}), list);
  list.clear();
  EXPECT_EQ(1, man_.GetSongPathList3(list, 1));
  EXPECT_EQ("SELECT midi_path,audio_path,song_id FROM song WHERE album_id = 1", log.last());
  EXPECT_EQ((std::list<std::string>{"User/A/1.mid\tUser/A/1.wav\t1"}), list);
}

TEST_F(QueryTest, FailedListsNameThemselves) {
  Exec("DROP TABLE song; DROP TABLE album; DROP TABLE psong");
  std::list<int> ids;
  std::list<std::string> texts;
  std::list<int> more;
  struct Case {
    std::function<int()> call;
    const char* message;
  };
  std::vector<Case> cases = {
      {[&] { return man_.GetIDList(ids, 1, "s"); }, "Error! :GetIDList"},
      {[&] { return man_.GetSongIDList(ids, 1, true); }, "Error! :GetSongIDList"},
      {[&] { return man_.GetPSongIDPfixList(texts, more, 1); }, "Error! :GetPSongIDPfixList"},
      {[&] { return man_.GetAlbumPathList(texts, "s"); }, "Error! :GetAlbumPathList"},
      {[&] { return man_.GetAlbumPathList2(texts, "s"); }, "Error! :GetSongPathList2"},
      {[&] { return man_.GetSongPathList(texts, "s"); }, "Error! :GetSongPathList"},
      {[&] { return man_.GetSongPathList2(texts, "s"); }, "Error! :GetSongPathList2"},
      {[&] { return man_.GetSongPathList3(texts, 1); }, "Error! :GetSongPathList2"},
  };
  for (const Case& c : cases) {
    StdoutCapture out;
    EXPECT_EQ(0, c.call()) << c.message;
    EXPECT_EQ(c.message, out.Finish());
  }
}

}  // namespace
}  // namespace zansong_test
