// usbdb_backup: the JSON export of a catalogue and the copy back to a stick.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "common/process.h"
#include "db/usb_catalogue.h"
#include "support/catalogue_fixture.h"
#include "support/child_process.h"
#include "support/stdout_capture.h"

namespace zansong_test {
namespace {

using nlohmann::json;

std::string ExportFile(const DeviceImage& image) {
  return image.Path("/usr/local/www/ctrl/song.json");
}

TEST_F(DeviceTest, BackupExportsTheWorkingCopyAndCopiesItToTheStick) {
  std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, stick + ".zansong.db");
  TDBSongMan man;
  ASSERT_EQ(1, man.InitDB(stick.c_str()));
  ASSERT_EQ(1, man.Open());
  ASSERT_EQ(1, man.CreateAlbum("On stick", "User/S", "", "s"));
  man.Close();
  StdoutCapture out;
  usbdb_backup(&stick[0]);
  EXPECT_EQ("", out.Finish());
  EXPECT_EQ("On stick", json::parse(ReadFile(ExportFile(image_)))["albums"][0]["title"]);
  EXPECT_EQ(ReadFile(image_.WorkingDb()), ReadFile(stick + ".zansong.db"));
}

TEST_F(DeviceTest, BackupAfterTheStickWasPulledOnlyExports) {
  std::string stick = image_.UsbRoot("sda1");
  TDBSongMan man;
  ASSERT_EQ(1, man.InitDB(stick.c_str()));
  ASSERT_EQ(1, man.Open());
  man.CreateAlbum("Pulled", "User/P", "", "s");
  man.Close();
  zansong::RunProgram({"rm", "-rf", stick});
  StdoutCapture out;
  usbdb_backup(&stick[0]);
  EXPECT_EQ("", out.Finish());
  EXPECT_EQ("Pulled", json::parse(ReadFile(ExportFile(image_)))["albums"][0]["title"]);
  EXPECT_FALSE(PathExists(stick));
}

TEST_F(DeviceTest, BackupWithoutWorkingCopyExportsTheStickCatalogue) {
  std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, stick + ".zansong.db");
  ExecOn(stick + ".zansong.db",
         "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
         "VALUES('s',1,'Stick','S',1)");
  usbdb_backup(&stick[0]);
  EXPECT_EQ("Stick", json::parse(ReadFile(ExportFile(image_)))["albums"][0]["title"]);
  EXPECT_FALSE(PathExists(image_.WorkingDb()));
}

TEST_F(DeviceTest, BackupWithNoCatalogueExportsTheInternalOne) {
  std::string internal = image_.SongRoot() + ".zansong.db";
  CreateCatalogue(image_, internal);
  ExecOn(internal,
         "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
         "VALUES('s',1,'Internal','I',1)");
  std::string stick = image_.UsbRoot("sda1");
  usbdb_backup(&stick[0]);
  EXPECT_EQ("Internal", json::parse(ReadFile(ExportFile(image_)))["albums"][0]["title"]);
}

TEST_F(DeviceTest, BackupReportsEachFailingExport) {
  std::string stick = image_.UsbRoot("sda1");
  {
    StdoutCapture out;  // no catalogue anywhere: the exporter fails
    usbdb_backup(&stick[0]);
    EXPECT_EQ("songdb2json error3!", out.Finish());
  }
  WriteFile(stick + ".zansong.db", std::string(4096, 'x'));
  {
    StdoutCapture out;
    usbdb_backup(&stick[0]);
    EXPECT_EQ("songdb2json error2!", out.Finish());
  }
  WriteFile(image_.WorkingDb(), std::string(4096, 'y'));
  {
    StdoutCapture out;
    usbdb_backup(&stick[0]);
    EXPECT_EQ("songdb2json error1!", out.Finish());
  }
}

// Adds albums album rows with long titles to the working copy, to make it grow.
void GrowWorkingCopy(const DeviceImage& image, int albums) {
  std::string sql = "BEGIN;";
  for (int i = 1; i <= albums; ++i) {
    sql += "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) VALUES('s'," +
           std::to_string(i) + ",'" + std::string(200, 'a') + "','A" + std::to_string(i) + "'," +
           std::to_string(i) + ");";
  }
  ExecOn(image.WorkingDb(), sql + "COMMIT;");
}

// Results of the nearly-full-stick child, one bit each.
enum : int {
  kBackupSucceeded = 1,
  kNoCopyErrorLine = 2,
  kStickCatalogueChanged = 4,
  kTemporaryFileLeft = 8,
};

TEST_F(DeviceTest, BackupToANearlyFullStickKeepsTheStickCatalogueAndSaysSo) {
  std::string stick = image_.UsbRoot("sda1");
  const int result = RunInChild([&] {
    if (!MountSmallFileSystemForThisProcess(stick, 1 << 20)) return kChildSetupFailed;
    const std::string stickDb = stick + ".zansong.db";
    CreateCatalogue(image_, stickDb);
    ExecOn(stickDb,
           "INSERT INTO playlist(ppfix,playlist_id,playlist_title,disp_order) "
           "VALUES('s',1,'Favourites',1)");
    if (!zansong::CopyUsbCatalogue(stick.c_str())) return kChildSetupFailed;
    GrowWorkingCopy(image_, 1000);
    const std::string before = ReadFile(stickDb);
    if (!FillFileSystemLeaving(stick, 16 * 1024)) return kChildSetupFailed;
    StdoutCapture out;
    int bits = 0;
    if (zansong::BackupUsbCatalogue(stick.c_str())) bits |= kBackupSucceeded;
    if (out.Finish().find("DB copy error!") == std::string::npos) bits |= kNoCopyErrorLine;
    if (ReadFile(stickDb) != before) bits |= kStickCatalogueChanged;
    int entries = 0;
    for (const auto& e : std::filesystem::directory_iterator(stick)) {
      (void)e;
      ++entries;
    }
    if (entries != 2) bits |= kTemporaryFileLeft;  // the catalogue and the filler
    return bits;
  });
  if (result == kChildSetupFailed) GTEST_SKIP() << "needs root for a small tmpfs";
  EXPECT_EQ(0, result);
}

TEST_F(DeviceTest, BackupReplacesTheStickCatalogueWithoutWritingIntoTheOldFile) {
  std::string stick = image_.UsbRoot("sda1");
  const std::string stickDb = stick + ".zansong.db";
  CreateCatalogue(image_, stickDb);
  ASSERT_TRUE(zansong::CopyUsbCatalogue(stick.c_str()));
  GrowWorkingCopy(image_, 10);
  // A second name for the old file: a copy written into it in place would
  // show through this link.
  ASSERT_EQ(0, ::link(stickDb.c_str(), (stick + "old-catalogue").c_str()));
  const std::string before = ReadFile(stickDb);
  ASSERT_TRUE(zansong::BackupUsbCatalogue(stick.c_str()));
  EXPECT_EQ(before, ReadFile(stick + "old-catalogue"));
  EXPECT_EQ(ReadFile(image_.WorkingDb()), ReadFile(stickDb));
}

TEST_F(DeviceTest, CopyToTheWorkingCopyFailsWithoutTouchingIt) {
  std::string stick = image_.UsbRoot("sda1");
  CreateCatalogue(image_, image_.WorkingDb());
  const std::string before = ReadFile(image_.WorkingDb());
  // A directory in place of the stick's catalogue cannot be read as a file.
  MakeDirs(stick + ".zansong.db");
  StdoutCapture out;
  EXPECT_FALSE(zansong::CopyUsbCatalogue(stick.c_str()));
  EXPECT_EQ("DB copy error!", out.Finish());
  EXPECT_EQ(before, ReadFile(image_.WorkingDb()));
}

TEST_F(DeviceTest, BackupOfAnOrdinaryDirectoryWritesNothing) {
  std::string root = image_.SongRoot();
  CreateCatalogue(image_, root + ".zansong.db");
  usbdb_backup(&root[0]);
  EXPECT_FALSE(PathExists(ExportFile(image_)));
}

}  // namespace
}  // namespace zansong_test
