// Helpers of the download tests: a device image with a download folder,
// download records, source files, the expected message lines and catalogue
// reads.
#ifndef ZANSONG_TESTS_FILEMAN_DOWNLOAD_TEST_HELPERS_H_
#define ZANSONG_TESTS_FILEMAN_DOWNLOAD_TEST_HELPERS_H_

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "fileman/register_test_helpers.h"
#include "samplefiles/mp3_writer.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zanmsg.h"
#include "zansong/fileman/download.h"
#include "zansong/result_codes.h"

namespace zansong_test {

// Copies text into a record field, which must have room for it and its NUL.
template <size_t N>
void Put(char (&field)[N], const std::string& text) {
  ASSERT_LT(text.size(), N);
  std::memcpy(field, text.c_str(), text.size() + 1);
}

inline DownloadRecord EmptyRecord() {
  DownloadRecord rec;
  std::memset(&rec, 0, sizeof rec);
  return rec;
}

// The message catalogue keys of the message rows 0 to 40, written out here
// as the screen's message table has them.
inline const char* RowKey(int row) {
  static const char* const kKeys[] = {
      "MSG_COMMON_COMPLETE",
      "MSG_FILEMAN_COPYING",
      "MSG_FILEMAN_DELETING",
      "MSG_FILEMAN_REFRESHING",
      "MSG_FILEMAN_REGISTERING",
      "MSG_FILEMAN_UNREGISTERING",
      "MSG_FILEMAN_FORMATTING",
      "MSG_FILEMAN_SCANNING_USB",
      "MSG_FILEMAN_DB_FIXING",
      "MSG_FILEMAN_SCANNING1",
      "MSG_FILEMAN_SCANNING2",
      "MSG_FILEMAN_SCANNING3",
      "MSG_FILEMAN_RESTORE_IN_PROGRESS",
      "MSG_FILEMAN_INSUFFICIENT_USB",
      "MSG_FILEMAN_USB_WRITE_PROTECTED",
      "MSG_FILEMAN_USB_SONGS_NOT_ADDED",
      "MSG_FILEMAN_SEARCHING",
      "MSG_FILEMAN_ADDING_PLAYLIST",
      "MSG_FILEMAN_CREATING",
      "MSG_FILEMAN_RENAMING",
      "MSG_FILEMAN_MOVING",
      "MSG_FILEMAN_CHANGING",
      "MSG_COMMON_CANCEL",
      "MSG_FILEMAN_CANCELING",
      "MSG_FILEMAN_FILE_DOESNT_EXIST",
      "MSG_FILEMAN_CANNOT_EXECUTE_NO_DATA",
      "MSG_FILEMAN_DB_CONNECTION_FAIL",
      "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_999",
      "MSG_FILEMAN_INSUFFICIENT_USB_AVAILABLE",
      "MSG_FILEMAN_CANNOT_EXECUTE_ERROR",
      "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_ALBUMS",
      "MSG_FILEMAN_FILE_COPY_CANCELED",
      "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_4999",
      "MSG_FILEMAN_NO_ALBUM",
      "MSG_FILEMAN_FILE_DELETE_ERROR",
      "MSG_FILEMAN_NO_DIR",
      "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_PLAYLISTS",
      "MSG_FILEMAN_CANNOT_EXECUTE_USB_SONGS_NOT_ADDED",
      "MSG_FILEMAN_FAIL_SORT",
      "MSG_FILEMAN_FAIL_RENAME",
      "",
  };
  return row >= 0 && row <= 40 ? kKeys[row] : "";
}

const char kClearLine[] = "<set_msgbox type=\"clear\" />\n";

// The line the screen must get for a download's result.
inline std::string ExpectedDownloadLine(int code) {
  const int row = -code;
  if (row < 1 || row > 41) return kClearLine;
  const bool error = row == 14 || row == 27 || row == 30 || row == 32 || row == 36;
  return std::string("<set_msgbox type=\"exclusive\" label=\"") +
         msg_getXmlMsg(error ? "MSG_COMMON_ERROR" : "MSG_COMMON_DOWNLOAD") + "\" msg=\"" +
         msg_getXmlMsg(RowKey(row)) + "\" button1=\"" + msg_getXmlMsg("MSG_COMMON_OK") + "\" />\n";
}

// A device image, its internal song root and a folder for downloaded files.
class DownloadTest : public DeviceTest {
 protected:
  void SetUp() override {
    root_ = image_.SongRoot();
    downloads_ = image_.root() + "/tmp/downloads/";
    MakeDirs(downloads_);
  }

  std::string Db() const { return root_ + ".zansong.db"; }
  std::string Area() const { return root_ + "Downloaded Songs/"; }

  // Source files in the download folder; each returns its path.
  std::string Midi(const std::string& name, const std::string& title = "", int quarters = 8) {
    std::string path = downloads_ + name;
    WriteSongFile(path, title, quarters);
    return path;
  }
  std::string Wav(const std::string& name, int milliseconds = 3000) {
    std::string path = downloads_ + name;
    WriteWavSong(path, milliseconds);
    return path;
  }
  std::string Mp3(const std::string& name) {
    std::string path = downloads_ + name;
    samplefiles::WriteMp3File(path, samplefiles::Mp3Frame(), 16000, nullptr);
    return path;
  }
  std::string Cover(const std::string& name) {
    std::string path = downloads_ + name;
    WriteFile(path, "\xFF\xD8\xFF\xE0 cover " + name);
    return path;
  }

  // A record of a song with its texts; the sources are set by the caller.
  DownloadRecord Record(const std::string& albumDir, const std::string& title) {
    DownloadRecord rec = EmptyRecord();
    Put(rec.albumDir, albumDir);
    Put(rec.songTitle, title);
    Put(rec.composer, "F. Chopin");
    Put(rec.genre, "Classical");
    Put(rec.purchaseDate, "2026-11-20");
    Put(rec.mtime, "2026-11-20 10:00:00");
    return rec;
  }

  // FM_Copy_UlqSong on root; checks that the message line matches the
  // result.  What the library printed goes to *printed.
  int File(const DownloadRecord& rec, const std::string& root, std::string* printed = nullptr) {
    char msg[4096];
    std::memset(msg, 'X', sizeof msg);
    StdoutCapture capture;
    int result = FM_Copy_UlqSong(root.c_str(), &rec, msg);
    std::string out = capture.Finish();
    if (printed != nullptr) *printed = out;
    EXPECT_EQ(ExpectedDownloadLine(result), std::string(msg)) << result;
    return result;
  }
  int File(const DownloadRecord& rec) { return File(rec, root_); }

  int Int(const std::string& sql) { return IntOn(Db(), sql); }
  std::string Text(const std::string& sql) { return TextOn(Db(), sql); }
  int SongCount() { return Int("SELECT COUNT(*) FROM song"); }
  int AlbumId(const std::string& path) {
    return Int("SELECT album_id FROM album WHERE album_path='" + path + "'");
  }

  std::string root_;
  std::string downloads_;
};

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_FILEMAN_DOWNLOAD_TEST_HELPERS_H_
