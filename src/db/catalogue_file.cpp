// Where a storage root's catalogue file lives, and the work done on the
// file as a whole: creating, checking and upgrading it, compacting it, the
// working copy of a USB stick's catalogue and the JSON export.
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "common/device_path.h"
#include "common/file_replace.h"
#include "common/process.h"
#include "db/sql.h"
#include "db/usb_catalogue.h"
#include "zansong/db/dbman.h"

using zansong::DevicePath;
using zansong::DevicePathFor;

namespace {

constexpr const char* kCatalogueName = ".zansong.db";
constexpr int kBusyTimeoutMs = 1000;

// dir with a "/" appended unless it already ends in one.
std::string WithFinalSlash(const char* dir) {
  std::string d = zansong::TextOrEmpty(dir);
  if (d.empty() || d.back() != '/') d += '/';
  return d;
}

bool Exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

// Replaces the catalogue file to with a copy of from, atomically: a
// failure part-way leaves to as it was.  Prints "DB copy error!" and
// returns false on failure.
bool CopyCatalogue(const std::string& from, const std::string& to) {
  if (zansong::ReplaceWithCopy(from, to)) return true;
  zansong::PrintLine("DB copy error!");
  return false;
}

// The exporter's argument vector: the program, then the system root when
// there is one (the exporter is a separate process and cannot see ours).
std::vector<std::string> ExporterCommand() {
  std::vector<std::string> argv{DevicePathFor(DevicePath::kSongdb2json)};
  std::string root = FM_GetSystemRoot();
  if (!root.empty()) {
    argv.push_back("--root");
    argv.push_back(root);
  }
  return argv;
}

// Runs the exporter with the given extra arguments into the JSON export;
// prints failureMessage when it fails.
void ExportCatalogue(std::vector<std::string> extraArgs, const char* failureMessage) {
  std::vector<std::string> argv = ExporterCommand();
  argv.insert(argv.end(), extraArgs.begin(), extraArgs.end());
  std::string out = DevicePathFor(DevicePath::kJsonExport);
  if (zansong::RunProgram(argv, nullptr, out.c_str()) != 0) zansong::PrintLine(failureMessage);
}

enum class CatalogueState { kSound, kBroken, kUnusable };

// Opens path and checks that both tables are there.  A file that SQLite
// calls not a database or corrupt, or one without the album or song table,
// is broken.  Any other failure (busy, locked, I/O error, cannot open) is
// printed as "DB: error %s\n" and leaves the file alone.
CatalogueState InspectCatalogue(const char* path, zansong::SqliteConnection& db) {
  int rc = zansong::OpenConnection(path, kBusyTimeoutMs, db);
  if (rc != SQLITE_OK) {
    zansong::PrintDbError(sqlite3_errstr(rc));
    return CatalogueState::kUnusable;
  }
  for (const char* table : {"album", "song"}) {
    zansong::SqlText sql = zansong::FormatSql(
        "SELECT COUNT(*) FROM sqlite_master WHERE type='table' and name='%q'", table);
    sqlite3_stmt* raw = nullptr;
    rc = sqlite3_prepare_v2(db.get(), sql.get(), -1, &raw, nullptr);
    zansong::SqliteStatement stmt(raw);
    if (rc == SQLITE_OK) rc = sqlite3_step(raw);
    if (rc == SQLITE_ROW) {
      if (sqlite3_column_int(raw, 0) == 0) return CatalogueState::kBroken;
      continue;
    }
    int primary = sqlite3_extended_errcode(db.get()) & 0xff;
    if (primary == SQLITE_NOTADB || primary == SQLITE_CORRUPT) return CatalogueState::kBroken;
    zansong::PrintDbError(sqlite3_errmsg(db.get()));
    return CatalogueState::kUnusable;
  }
  return CatalogueState::kSound;
}

// Moves a broken catalogue and its journal files aside to name + ".broken"
// (replacing older ones), so that the new catalogue starts clean and the
// old bytes stay for inspection.  False when the file cannot be moved.
bool MoveAside(const std::string& path) {
  for (const char* suffix : {"-journal", "-wal", "-shm"}) {
    std::string side = path + suffix;
    if (Exists(side)) std::rename(side.c_str(), (path + ".broken" + suffix).c_str());
  }
  if (std::rename(path.c_str(), (path + ".broken").c_str()) == 0) return true;
  zansong::PrintDbError("cannot move the broken catalogue aside");
  return false;
}

}  // namespace

int TDBMan::InitDB(char const* dir) {
  Close();
  std::string d = WithFinalSlash(dir);
  if (zansong::IsUsbStickRoot(d.c_str())) {
    std::string stickFile = d + kCatalogueName;
    std::string working = DevicePathFor(DevicePath::kWorkingDb);
    usbDbPath = stickFile.c_str();
    dbPath = working.c_str();
    if (Exists(stickFile) && !Exists(working)) CopyCatalogue(stickFile, working);
  } else {
    dbPath = (d + kCatalogueName).c_str();
    usbDbPath = "";
  }

  std::string path = dbPath.c_str();
  if (Exists(path)) {
    zansong::SqliteConnection opened;
    CatalogueState state = InspectCatalogue(path.c_str(), opened);
    db = opened.release();  // the upgrade below runs on it; Close() ends it
    if (state == CatalogueState::kUnusable) {
      Close();
      return 0;
    }
    if (state == CatalogueState::kSound) {
      static const char* const kUpgrades[][2] = {{"song", "md5"},
                                                 {"song", "genre"},
                                                 {"song", "coverart_path"},
                                                 {"album", "coverart_path"},
                                                 {"song", "purchased_date"},
                                                 {"album", "purchased_date"}};
      for (const auto& column : kUpgrades) {
        if (!HasField(column[0], column[1], "TEXT")) AddField(column[0], column[1], "TEXT");
      }
      Close();
      return 1;
    }
    Close();
    zansong::PrintLine("DB broken!\n");
    if (!MoveAside(path)) return 0;
  }
  return CreateDB();
}

int TDBMan::CreateDB() {
  std::string script = DevicePathFor(DevicePath::kSchemaScript);
  int rc =
      zansong::RunProgram({DevicePathFor(DevicePath::kSqlite3), dbPath.c_str()}, script.c_str());
  if (rc == 0) return 1;
  zansong::PrintLine("Create DB error!");
  return 0;
}

int TDBMan::VacuumDB() {
  if (zansong::RunProgram({DevicePathFor(DevicePath::kSqlite3), dbPath.c_str(), "vacuum"}) == 0) {
    return 1;
  }
  zansong::PrintLine("Vacuum error!");
  return 0;
}

void db_vacuum(char* dir) {
  std::string file = WithFinalSlash(dir) + kCatalogueName;
  if (Exists(file) &&
      zansong::RunProgram({DevicePathFor(DevicePath::kSqlite3), file, "vacuum"}) != 0) {
    zansong::PrintLine("Vacuum error!");
  }
  zansong::SyncFileSystems();
}

namespace zansong {

bool CopyUsbCatalogue(const char* dir) {
  bool copied = true;
  std::string d = WithFinalSlash(dir);
  if (IsUsbStickRoot(d.c_str())) {
    std::string stickFile = d + kCatalogueName;
    if (Exists(stickFile)) copied = CopyCatalogue(stickFile, DevicePathFor(DevicePath::kWorkingDb));
  }
  SyncFileSystems();
  return copied;
}

bool BackupUsbCatalogue(const char* dir) {
  bool copied = true;
  std::string d = WithFinalSlash(dir);
  if (IsUsbStickRoot(d.c_str())) {
    std::string working = DevicePathFor(DevicePath::kWorkingDb);
    std::string stickFile = d + kCatalogueName;
    if (Exists(working)) {
      ExportCatalogue({"-u", working}, "songdb2json error1!");
      // The stick may have been pulled while the operation ran.  The copy
      // goes to the stick's catalogue file itself (dir + name), written
      // beside it and renamed over it.
      if (Exists(TextOrEmpty(dir))) copied = CopyCatalogue(working, stickFile);
    } else if (Exists(stickFile)) {
      ExportCatalogue({"-u", stickFile}, "songdb2json error2!");
    } else {
      ExportCatalogue({}, "songdb2json error3!");
    }
  }
  SyncFileSystems();
  return copied;
}

}  // namespace zansong

void usbdb_copy(char* dir) { zansong::CopyUsbCatalogue(dir); }

void usbdb_backup(char* dir) { zansong::BackupUsbCatalogue(dir); }
