// The copy of a stick's working catalogue back to the stick, with each of
// its writes, flushes and renames failing in turn.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "db/usb_catalogue.h"
#include "support/catalogue_fixture.h"
#include "support/fault_runs.h"

namespace zansong_test {
namespace {

const char kAlbumInsert[] =
    "INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
    "VALUES('s',%d,'%s','%s',%d)";

std::string AlbumRow(int id, const std::string& title) {
  char sql[256];
  std::snprintf(sql, sizeof sql, kAlbumInsert, id, title.c_str(), ("A" + title).c_str(), id);
  return sql;
}

TEST(CatalogueFileFaults, BackupLeavesTheOldOrTheNewStickCatalogueAndReportsEachFault) {
  std::string oldBytes;
  std::string newBytes;
  FaultyOperation op;
  op.target = FaultTarget::kFiles;
  op.setUp = [&](DeviceImage& image) {
    const std::string stick = image.UsbRoot("sda1");
    CreateCatalogue(image, stick + ".zansong.db");
    ExecOn(stick + ".zansong.db", AlbumRow(1, "Old") +
                                      ";INSERT INTO playlist(ppfix,playlist_id,playlist_title,"
                                      "disp_order) VALUES('s',1,'Favourites',1)");
    ASSERT_TRUE(zansong::CopyUsbCatalogue(stick.c_str()));
    for (int i = 2; i < 200; ++i) ExecOn(image.WorkingDb(), AlbumRow(i, "New" + std::to_string(i)));
    oldBytes = ReadFile(stick + ".zansong.db");
    newBytes = ReadFile(image.WorkingDb());
  };
  op.run = [](DeviceImage& image) {
    return zansong::BackupUsbCatalogue(image.UsbRoot("sda1").c_str());
  };
  op.catalogues = [](DeviceImage& image) {
    return std::vector<std::string>{image.UsbRoot("sda1") + ".zansong.db", image.WorkingDb()};
  };
  op.check = [&](DeviceImage& image, int, bool succeeded) {
    const std::string stick = image.UsbRoot("sda1");
    const std::string now = ReadFile(stick + ".zansong.db");
    EXPECT_TRUE(now == oldBytes || now == newBytes);
    if (succeeded) {
      EXPECT_EQ(newBytes, now);
    }
    EXPECT_EQ(1, IntOn(stick + ".zansong.db", "SELECT COUNT(*) FROM playlist"));
    // Nothing but the catalogue is left on the stick.
    int entries = 0;
    for (const auto& e : std::filesystem::directory_iterator(stick)) {
      EXPECT_EQ(".zansong.db", e.path().filename().string());
      ++entries;
    }
    EXPECT_EQ(1, entries);
  };
  EXPECT_GE(RunUnderEveryFault(op), 3);  // at least a write, a flush and the rename
}

}  // namespace
}  // namespace zansong_test
