// Registration of songs whose file names hold unusual bytes: a backslash
// (also as the second byte of a Shift-JIS character) registers under its
// real album, path and title; a tab, line end or other control byte keeps
// the file out, with one line for the storage.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fileman/register_test_helpers.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/register.h"

namespace zansong_test {
namespace {

const char kSongs[] =
    "SELECT song.song_title,song.midi_path,album.album_path FROM song LEFT JOIN album "
    "ON song.album_id=album.album_id ORDER BY song.midi_path";

class RegisterNamesTest : public DeviceTest {
 protected:
  void SetUp() override { ClearCancelFlag(); }

  int Register() {
    StdoutCapture capture;
    int result = FM_Add_AllSongs_ByCache(image_.SongRoot().c_str(), "", 0, 0, 0);
    printed_ = capture.Finish();
    return result;
  }
  std::vector<std::string> Songs() const {
    return QueryRows(image_.SongRoot() + ".zansong.db", kSongs);
  }

  std::string printed_;
};

TEST_F(RegisterNamesTest, ANameWithABackslashRegistersUnderItsAlbum) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "Album");
  WriteSongFile(root + "Album/x\\y.mid", "");
  WriteSongFile(root + "Album/plain.mid", "");
  ASSERT_EQ(0, Register());
  EXPECT_EQ(Songs(),
            (std::vector<std::string>{"plain|Album/plain.mid|Album", "x\\y|Album/x\\y.mid|Album"}));
}

TEST_F(RegisterNamesTest, AShiftJisNameWhoseSecondByteIsABackslashRegistersUnderItsAlbum) {
  const std::string root = image_.SongRoot();
  // "ソ" in Shift-JIS is 0x83 0x5C; the album folder has one too.
  const std::string so = "\x83\x5c";
  MakeDirs(root + so + "Album");
  WriteSongFile(root + so + "Album/" + so + "ng.mid", "");
  ASSERT_EQ(0, Register());
  EXPECT_EQ(Songs(),
            (std::vector<std::string>{so + "ng|" + so + "Album/" + so + "ng.mid|" + so + "Album"}));
}

TEST_F(RegisterNamesTest, ANameWithAColonRegistersUnderItsAlbum) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "Album");
  WriteSongFile(root + "Album/Part: one.mid", "");
  ASSERT_EQ(0, Register());
  EXPECT_EQ(Songs(), (std::vector<std::string>{"Part: one|Album/Part: one.mid|Album"}));
}

TEST_F(RegisterNamesTest, NamesWithControlBytesAreLeftOutAndSaidOnce) {
  const std::string root = image_.SongRoot();
  MakeDirs(root + "Album");
  MakeDirs(root + "Tab\tFolder");
  WriteSongFile(root + "Album/tab\there.mid", "");
  WriteSongFile(root + "Album/line\nend.mid", "");
  WriteSongFile(root + "Album/bell\x07.wav", "");
  WriteSongFile(root + "Album/del\x7f.mid", "");
  WriteSongFile(root + "Tab\tFolder/inside.mid", "");
  WriteSongFile(root + "Album/fine.mid", "");
  ASSERT_EQ(0, Register());
  // Every song row belongs to its album and carries a whole path.
  EXPECT_EQ(Songs(), (std::vector<std::string>{"fine|Album/fine.mid|Album"}));
  EXPECT_EQ(std::vector<std::string>{"Album"},
            QueryRows(image_.SongRoot() + ".zansong.db", "SELECT album_path FROM album"));
  const std::string line = "Names with control characters not registered: 5\n";
  EXPECT_NE(std::string::npos, printed_.find(line)) << printed_;
  EXPECT_EQ(printed_.find(line), printed_.rfind(line));
  // Once more: nothing changes, and it is said again.
  ASSERT_EQ(0, Register());
  EXPECT_EQ(Songs(), (std::vector<std::string>{"fine|Album/fine.mid|Album"}));
  EXPECT_NE(std::string::npos, printed_.find(line));
}

}  // namespace
}  // namespace zansong_test
