// usbdb_backup: the JSON export of a catalogue and the copy back to a stick.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "common/process.h"
#include "support/catalogue_fixture.h"
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

TEST_F(DeviceTest, BackupOfAnOrdinaryDirectoryWritesNothing) {
  std::string root = image_.SongRoot();
  CreateCatalogue(image_, root + ".zansong.db");
  usbdb_backup(&root[0]);
  EXPECT_FALSE(PathExists(ExportFile(image_)));
}

}  // namespace
}  // namespace zansong_test
