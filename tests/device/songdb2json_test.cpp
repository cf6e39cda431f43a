// songdb2json, the exporter of a catalogue as JSON for the browser page.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "common/process.h"
#include "support/catalogue_fixture.h"

namespace zansong_test {
namespace {

using nlohmann::json;

// Two albums, three songs and one playlist of two entries, with the
// display orders deliberately unlike the key order.
void FillSmallCatalogue(const std::string& db) {
  ExecOn(db,
         "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order,coverart_path) "
         "VALUES('s',1,'Second','User/B',2,'b.jpg'),('s',2,'First','User/A',1,'');"
         "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,format,"
         "length,mtime,album_id,composer,genre,purchased_date) VALUES"
         "('s',1,'Two','User/A/2.mid','',2,'SMF',120,'2021/01/02',2,'C2','G2',''),"
         "('s',2,'One','User/A/1.mid','User/A/1.mp3',1,'SMF,MP3',90,'2021/01/01',2,'C1','G1',"
         "'2020/05/05'),"
         "('s',3,'Three','User/B/3.mid','',1,'SMFSOLO',60,'2021/01/03',1,'','','');"
         "INSERT INTO playlist(ppfix,playlist_id,playlist_title,disp_order) VALUES('p',1,'Mix',1);"
         "INSERT INTO psong(ppfix,psong_id,playlist_id,pfix,song_id,disp_order) VALUES"
         "('p',1,1,'s',3,2),('p',2,1,'s',1,1);");
}

// Runs the image's exporter with args; its output in *out.
int Export(const DeviceImage& image, std::vector<std::string> args, std::string* out) {
  std::vector<std::string> argv{image.Path("/usr/local/bin/songdb2json")};
  argv.insert(argv.end(), args.begin(), args.end());
  std::string file = image.Path("/tmp/export.json");
  int rc = zansong::RunProgram(argv, nullptr, file.c_str());
  *out = ReadFile(file);
  return rc;
}

TEST_F(DeviceTest, ExportOfASmallCatalogueListsEverythingInDisplayOrder) {
  std::string db = image_.Path("/tmp/small.db");
  CreateCatalogue(image_, db);
  FillSmallCatalogue(db);
  std::string text;
  ASSERT_EQ(0, Export(image_, {"-u", db}, &text));
  json doc = json::parse(text);

  ASSERT_EQ(2u, doc["albums"].size());
  EXPECT_EQ(2, doc["albums"][0]["id"]);
  EXPECT_EQ("First", doc["albums"][0]["title"]);
  EXPECT_EQ("User/A", doc["albums"][0]["path"]);
  EXPECT_EQ("s", doc["albums"][0]["prefix"]);
  EXPECT_EQ(1, doc["albums"][0]["order"]);
  EXPECT_EQ("Second", doc["albums"][1]["title"]);
  EXPECT_EQ("b.jpg", doc["albums"][1]["cover"]);

  ASSERT_EQ(3u, doc["songs"].size());
  const json& three = doc["songs"][0];  // album 1 comes first
  EXPECT_EQ("Three", three["title"]);
  const json& one = doc["songs"][1];
  EXPECT_EQ(2, one["id"]);
  EXPECT_EQ("One", one["title"]);
  EXPECT_EQ(2, one["album_id"]);
  EXPECT_EQ("User/A/1.mid", one["midi_path"]);
  EXPECT_EQ("User/A/1.mp3", one["audio_path"]);
  EXPECT_EQ("SMF,MP3", one["format"]);
  EXPECT_EQ(90, one["length"]);
  EXPECT_EQ("2021/01/01", one["mtime"]);
  EXPECT_EQ(1, one["order"]);
  EXPECT_EQ("C1", one["composer"]);
  EXPECT_EQ("G1", one["genre"]);
  EXPECT_EQ("2020/05/05", one["purchased_date"]);
  EXPECT_EQ("Two", doc["songs"][2]["title"]);

  ASSERT_EQ(1u, doc["playlists"].size());
  const json& mix = doc["playlists"][0];
  EXPECT_EQ("Mix", mix["title"]);
  EXPECT_EQ("p", mix["prefix"]);
  ASSERT_EQ(2u, mix["entries"].size());
  EXPECT_EQ(1, mix["entries"][0]["song_id"]);
  EXPECT_EQ(3, mix["entries"][1]["song_id"]);
  EXPECT_EQ("s", mix["entries"][1]["prefix"]);
}

TEST_F(DeviceTest, ExportReplacesBytesThatAreNotUtf8) {
  std::string db = image_.Path("/tmp/bad.db");
  CreateCatalogue(image_, db);
  ExecOn(db,
         "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
         "VALUES('s',1,CAST(X'41FF8342' AS TEXT),'A',1)");
  std::string text;
  ASSERT_EQ(0, Export(image_, {"-u", db}, &text));
  json doc = json::parse(text);  // throws on invalid UTF-8
  std::string title = doc["albums"][0]["title"];
  EXPECT_EQ('A', title.front());
  EXPECT_EQ('B', title.back());
  EXPECT_NE(std::string::npos, title.find("\xEF\xBF\xBD"));
}

TEST_F(DeviceTest, ExportOfAnUnreadableCatalogueFails) {
  std::string text;
  EXPECT_NE(0, Export(image_, {"-u", image_.Path("/tmp/missing.db")}, &text));
  std::string garbage = image_.Path("/tmp/garbage.db");
  WriteFile(garbage, std::string(4096, '\x5a'));
  EXPECT_NE(0, Export(image_, {"-u", garbage}, &text));
  std::string empty = image_.Path("/tmp/empty.db");
  ExecOn(empty, "CREATE TABLE other(x)");
  EXPECT_NE(0, Export(image_, {"-u", empty}, &text));
}

TEST_F(DeviceTest, ExportWithoutCatalogueArgumentReadsTheInternalCatalogue) {
  CreateCatalogue(image_, image_.SongRoot() + ".zansong.db");
  FillSmallCatalogue(image_.SongRoot() + ".zansong.db");
  std::string text;
  ASSERT_EQ(0, Export(image_, {"--root", image_.root()}, &text));
  EXPECT_EQ(3u, json::parse(text)["songs"].size());
}

TEST_F(DeviceTest, ExportOfAnOldCatalogueWithoutLaterColumns) {
  std::string db = image_.Path("/tmp/old.db");
  ExecOn(db,
         "CREATE TABLE album (pfix TEXT, album_id INTEGER, album_title TEXT, album_path TEXT, "
         "disp_order INTEGER);"
         "CREATE TABLE song (pfix TEXT, song_id INTEGER, song_title TEXT, midi_path TEXT, "
         "audio_path TEXT, disp_order INTEGER, format TEXT, length INTEGER, ctime TEXT, mtime "
         "TEXT, album_id INTEGER, sync_id TEXT, performer TEXT, composer TEXT, tags TEXT);"
         "CREATE TABLE playlist (ppfix TEXT, playlist_id INTEGER, playlist_title TEXT, "
         "disp_order INTEGER);"
         "CREATE TABLE psong (ppfix TEXT, psong_id INTEGER, playlist_id INTEGER, pfix TEXT, "
         "song_id INTEGER, disp_order INTEGER);"
         "INSERT INTO song(pfix,song_id,song_title) VALUES('s',1,'Old');");
  std::string text;
  ASSERT_EQ(0, Export(image_, {"-u", db}, &text));
  json doc = json::parse(text);
  EXPECT_EQ("Old", doc["songs"][0]["title"]);
  EXPECT_EQ("", doc["songs"][0]["genre"]);
}

}  // namespace
}  // namespace zansong_test
