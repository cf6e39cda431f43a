// Test helpers for the catalogue: a fixture with an open catalogue in the
// internal song root of a fresh device image, direct SQL access to a
// catalogue file, a log of the statements a connection runs, and a second
// process that holds a lock on a catalogue for a while.
#ifndef ZANSONG_TESTS_SUPPORT_CATALOGUE_FIXTURE_H_
#define ZANSONG_TESTS_SUPPORT_CATALOGUE_FIXTURE_H_

#include <sqlite3.h>
#include <sys/types.h>

#include <string>
#include <vector>

#include "support/device_image.h"
#include "zansong/db.h"

namespace zansong_test {

// Runs sql on the catalogue file at path with a connection of its own;
// fails the test on an error.
void ExecOn(const std::string& path, const std::string& sql);
// Column 0 of the first row of sql on path, as text ("" for none).
std::string TextOn(const std::string& path, const std::string& sql);
int IntOn(const std::string& path, const std::string& sql);

// Creates a catalogue at path from the image's schema script.
void CreateCatalogue(const DeviceImage& image, const std::string& path);

// Records the text of every statement run on db while it lives.
class StatementLog {
 public:
  explicit StatementLog(sqlite3* db);
  ~StatementLog();
  StatementLog(const StatementLog&) = delete;
  StatementLog& operator=(const StatementLog&) = delete;

  const std::vector<std::string>& statements() const { return statements_; }
  std::string last() const { return statements_.empty() ? "" : statements_.back(); }

 private:
  static int Trace(unsigned type, void* self, void* stmt, void* sql);
  sqlite3* db_;
  std::vector<std::string> statements_;
};

// A separate sqlite3 process that runs begin (such as "BEGIN EXCLUSIVE;"),
// holds the lock for holdMs milliseconds and commits.
class LockHolder {
 public:
  LockHolder(const DeviceImage& image, const std::string& dbPath, const std::string& begin,
             int holdMs);
  ~LockHolder();
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

  // True once the other process holds the lock.
  bool WaitUntilHeld();
  // Waits for the process to end; its exit status.
  int Join();

 private:
  std::string flag_;
  pid_t pid_ = -1;
  int status_ = -1;
};

// A forked child that waits startDelayMs, then inserts `inserts` playlist
// rows (ids 1, 2, ...) into the catalogue file at path, each through a
// connection of its own with a 1000 ms busy timeout, gapMs apart: another
// process writing while the library works.  Join() waits for it and returns
// the number of inserts that failed, or -1 when the child did not exit
// normally; the destructor joins too.
class PlaylistWriter {
 public:
  PlaylistWriter(const std::string& path, int inserts, int startDelayMs, int gapMs);
  ~PlaylistWriter() { Join(); }
  PlaylistWriter(const PlaylistWriter&) = delete;
  PlaylistWriter& operator=(const PlaylistWriter&) = delete;

  int Join();

 private:
  pid_t pid_ = -1;
  int failures_ = -1;
};

// An open TDBSongMan on the internal song root of a fresh image.
class CatalogueTest : public DeviceTest {
 protected:
  void SetUp() override;

  // The catalogue file.
  std::string DbFile() const { return image_.SongRoot() + ".zansong.db"; }
  void Exec(const std::string& sql) { ExecOn(DbFile(), sql); }
  int Int(const std::string& sql) { return IntOn(DbFile(), sql); }
  std::string Text(const std::string& sql) { return TextOn(DbFile(), sql); }

  // Adds an album row and songs through the manager.
  int AddAlbum(const char* path, const char* pfix = "s");
  int AddSongTo(const char* albumPath, const char* midiPath, const char* pfix = "s");

  TDBSongMan man_;
};

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_CATALOGUE_FIXTURE_H_
