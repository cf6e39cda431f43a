// Helpers of the copy tests: a storage root whose albums and songs are
// written as files and registered, and reads of the rows of an album.
#ifndef ZANSONG_TESTS_FILEMAN_COPY_TEST_HELPERS_H_
#define ZANSONG_TESTS_FILEMAN_COPY_TEST_HELPERS_H_

#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/register.h"

namespace zansong_test {

class CopyTest : public DeviceTest {
 protected:
  void SetUp() override { ClearCancelFlag(); }
  void TearDown() override { ClearCancelFlag(); }

  std::string Root() const { return image_.SongRoot(); }
  std::string Db() const { return Root() + ".zansong.db"; }

  // Registers what lies under Root() + folder, keeping the order.
  void Register(const char* folder = "") {
    StdoutCapture quiet;
    ASSERT_EQ(0, FM_Add_AllSongs_ByCache(Root().c_str(), folder, 0, 1, 0));
  }
  int AlbumId(const std::string& path) {
    return QueryInt(Db(), "SELECT album_id FROM album WHERE album_path='" + path + "'");
  }
  int SongId(const std::string& midiOrAudioPath) {
    return QueryInt(Db(), "SELECT song_id FROM song WHERE midi_path='" + midiOrAudioPath +
                              "' OR audio_path='" + midiOrAudioPath + "'");
  }
  // title|midi_path|audio_path|format|pfix of the album's songs, by id.
  std::vector<std::string> SongsOf(int albumId) {
    return QueryRows(Db(),
                     "SELECT song_title,midi_path,audio_path,format,pfix FROM song WHERE "
                     "album_id=" +
                         std::to_string(albumId) + " ORDER BY song_id");
  }
};

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_FILEMAN_COPY_TEST_HELPERS_H_
