#include "support/catalogue_fixture.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <thread>

#include "common/process.h"

namespace zansong_test {

namespace {

struct Connection {
  explicit Connection(const std::string& path) {
    if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) ADD_FAILURE() << "cannot open " << path;
    sqlite3_busy_timeout(db, 5000);
  }
  ~Connection() { sqlite3_close(db); }
  sqlite3* db = nullptr;
};

}  // namespace

void ExecOn(const std::string& path, const std::string& sql) {
  Connection c(path);
  char* message = nullptr;
  if (sqlite3_exec(c.db, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    ADD_FAILURE() << sql << ": " << (message ? message : "?");
  }
  sqlite3_free(message);
}

std::string TextOn(const std::string& path, const std::string& sql) {
  Connection c(path);
  sqlite3_stmt* stmt = nullptr;
  std::string text;
  if (sqlite3_prepare_v2(c.db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
    ADD_FAILURE() << sql << ": " << sqlite3_errmsg(c.db);
  } else if (sqlite3_step(stmt) == SQLITE_ROW && sqlite3_column_text(stmt, 0) != nullptr) {
    text.assign(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)),
                static_cast<size_t>(sqlite3_column_bytes(stmt, 0)));
  }
  sqlite3_finalize(stmt);
  return text;
}

int IntOn(const std::string& path, const std::string& sql) {
  return std::atoi(TextOn(path, sql).c_str());
}

void CreateCatalogue(const DeviceImage& image, const std::string& path) {
  std::string script = image.Path("/usr/local/etc/zansong.sql");
  ASSERT_EQ(0, zansong::RunProgram({"sqlite3", path}, script.c_str()));
}

PlaylistWriter::PlaylistWriter(const std::string& path, int inserts, int startDelayMs, int gapMs) {
  std::fflush(stdout);
  pid_ = fork();
  if (pid_ != 0) return;
  int failures = 0;
  usleep(static_cast<useconds_t>(startDelayMs) * 1000);
  for (int i = 0; i < inserts; ++i) {
    sqlite3* handle = nullptr;
    if (sqlite3_open(path.c_str(), &handle) != SQLITE_OK) ++failures;
    sqlite3_busy_timeout(handle, 1000);
    std::string sql = "INSERT INTO playlist VALUES('p'," + std::to_string(i + 1) + ",'L',1)";
    if (sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) ++failures;
    sqlite3_close(handle);
    usleep(static_cast<useconds_t>(gapMs) * 1000);
  }
  _exit(failures);
}

int PlaylistWriter::Join() {
  if (pid_ <= 0) return failures_;
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  failures_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return failures_;
}

StatementLog::StatementLog(sqlite3* db) : db_(db) {
  sqlite3_trace_v2(db_, SQLITE_TRACE_STMT, &StatementLog::Trace, this);
}

StatementLog::~StatementLog() { sqlite3_trace_v2(db_, 0, nullptr, nullptr); }

int StatementLog::Trace(unsigned type, void* self, void*, void* sql) {
  if (type == SQLITE_TRACE_STMT) {
    static_cast<StatementLog*>(self)->statements_.push_back(static_cast<const char*>(sql));
  }
  return 0;
}

LockHolder::LockHolder(const DeviceImage& image, const std::string& dbPath,
                       const std::string& begin, int holdMs) {
  static int serial = 0;
  std::string base = image.Path("/tmp/lock") + std::to_string(++serial);
  flag_ = base + ".held";
  std::string script = base + ".sql";
  WriteFile(script, ".timeout 10000\n" + begin + "\nSELECT COUNT(*) FROM sqlite_master;\n" +
                        ".system touch '" + flag_ + "'\n.system sleep " +
                        std::to_string(holdMs / 1000.0) + "\nCOMMIT;\n");
  std::fflush(stdout);
  pid_ = fork();
  if (pid_ == 0) {
    int in = open(script.c_str(), O_RDONLY);
    int out = open("/dev/null", O_WRONLY);
    dup2(in, 0);
    dup2(out, 1);
    execlp("sqlite3", "sqlite3", dbPath.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
}

LockHolder::~LockHolder() { Join(); }

bool LockHolder::WaitUntilHeld() {
  for (int i = 0; i < 1000; ++i) {
    if (PathExists(flag_)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

int LockHolder::Join() {
  if (pid_ > 0) {
    int status = 0;
    waitpid(pid_, &status, 0);
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    pid_ = -1;
  }
  return status_;
}

void CatalogueTest::SetUp() {
  ASSERT_EQ(1, man_.InitDB(image_.SongRoot().c_str()));
  ASSERT_EQ(1, man_.Open());
}

int CatalogueTest::AddAlbum(const char* path, const char* pfix) {
  return man_.CreateAlbum(path, path, "", pfix);
}

int CatalogueTest::AddSongTo(const char* albumPath, const char* midiPath, const char* pfix) {
  SongInfo info;
  info.title = midiPath;
  info.midiPath = midiPath;
  info.albumPath = albumPath;
  info.format = "SMF";
  info.mtime = "2020/01/01 00:00:00";
  char ctime[] = "2020/01/01 00:00:00";
  return man_.AddSong(&info, ctime, pfix);
}

}  // namespace zansong_test
