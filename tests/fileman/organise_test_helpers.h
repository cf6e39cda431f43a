// Helpers of the tests of albums, playlists, deleting, renaming and
// ordering: a fixture with an empty catalogue in the internal song root,
// rows written with direct SQL, and song files.
#ifndef ZANSONG_TESTS_FILEMAN_ORGANISE_TEST_HELPERS_H_
#define ZANSONG_TESTS_FILEMAN_ORGANISE_TEST_HELPERS_H_

#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"

namespace zansong_test {

class OrganiseTest : public DeviceTest {
 protected:
  void SetUp() override {
    root_ = image_.SongRoot();
    CreateCatalogue(image_, Db());
  }

  std::string Db() const { return root_ + ".zansong.db"; }
  void Exec(const std::string& sql) { ExecOn(Db(), sql); }
  int Int(const std::string& sql) { return IntOn(Db(), sql); }
  std::string Text(const std::string& sql) { return TextOn(Db(), sql); }
  std::vector<std::string> Rows(const std::string& sql) { return QueryRows(Db(), sql); }

  // An album row (and its directory) at root + path.
  void AddAlbum(int id, const std::string& path, const std::string& title = "",
                const std::string& pfix = "s", int order = 0) {
    MakeDirs(root_ + path);
    Exec("INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) VALUES('" + pfix +
         "'," + std::to_string(id) + ",'" + (title.empty() ? path : title) + "','" + path + "'," +
         std::to_string(order != 0 ? order : id) + ")");
  }
  // A song row; its MIDI file (titled like the song) when midi is not "".
  void AddSong(int id, int albumId, const std::string& midi, const std::string& audio = "",
               const std::string& pfix = "s", int order = 0) {
    const std::string title = "Song" + std::to_string(id);
    if (!midi.empty()) WriteSongFile(root_ + midi, title);
    if (!audio.empty()) WriteWavSong(root_ + audio, 100);
    Exec(
        "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,album_id,"
        "mtime) VALUES('" +
        pfix + "'," + std::to_string(id) + ",'" + title + "','" + midi + "','" + audio + "'," +
        std::to_string(order != 0 ? order : id) + "," + std::to_string(albumId) + ",'m')");
  }
  void AddPlaylist(int id, const std::string& title, const std::string& ppfix = "l",
                   int order = 0) {
    Exec("INSERT INTO playlist VALUES('" + ppfix + "'," + std::to_string(id) + ",'" + title + "'," +
         std::to_string(order != 0 ? order : id) + ")");
  }
  void AddEntry(int id, int playlistId, int songId, const std::string& pfix = "s",
                const std::string& ppfix = "l", int order = 0) {
    Exec("INSERT INTO psong VALUES('" + ppfix + "'," + std::to_string(id) + "," +
         std::to_string(playlistId) + ",'" + pfix + "'," + std::to_string(songId) + "," +
         std::to_string(order != 0 ? order : id) + ")");
  }
  // count rows of table made by SQL alone: keys from first, the other
  // columns as given (a fast way to bring a catalogue near a limit).
  void FillRows(const std::string& table, int first, int count, const std::string& columns) {
    Exec("WITH RECURSIVE n(i) AS (SELECT " + std::to_string(first) +
         " UNION ALL SELECT i+1 FROM n WHERE i < " + std::to_string(first + count - 1) +
         ") INSERT INTO " + table + " SELECT " + columns + " FROM n");
  }

  std::string root_;
};

inline std::list<int> Ids(std::initializer_list<int> ids) { return std::list<int>(ids); }

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_FILEMAN_ORGANISE_TEST_HELPERS_H_
