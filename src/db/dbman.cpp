// TDBMan: the connection and its single statement, and the schema checks.
#include "zansong/db/dbman.h"

#include <sqlite3.h>

#include <cstring>
#include <utility>

#include "db/sql.h"

using zansong::FormatSql;
using zansong::SqlText;

namespace {

constexpr int kBusyTimeoutMs = 1000;

}  // namespace

TDBMan::TDBMan() : db(nullptr), stmt(nullptr) {}

TDBMan::~TDBMan() { Close(); }

int TDBMan::Open() {
  Close();
  zansong::SqliteConnection opened;
  int rc = zansong::OpenConnection(dbPath.c_str(), kBusyTimeoutMs, opened);
  db = opened.release();
  return rc == SQLITE_OK ? 1 : 0;
}

void TDBMan::Close() {
  FinishStatement();
  sqlite3_close_v2(db);  // a null connection is a no-op
  db = nullptr;
}

void TDBMan::FinishStatement() {
  sqlite3_finalize(stmt);  // a null statement is a no-op
  stmt = nullptr;
}

int TDBMan::Query(char* sql) {
  if (sql == nullptr) {
    zansong::PrintDbError("out of memory");
    return 0;
  }
  char* message = nullptr;
  int rc = sqlite3_exec(db, sql, nullptr, nullptr, &message);
  if (rc == SQLITE_OK) return 1;
  // Without a connection sqlite3_exec leaves no message of its own.
  zansong::PrintDbError(message != nullptr ? message : sqlite3_errstr(rc));
  sqlite3_free(message);
  return 0;
}

int TDBMan::Prepare(char const* sql) {
  FinishStatement();
  const char* text = zansong::TextOrEmpty(sql);
  sqlite3_prepare(db, text, static_cast<int>(std::strlen(text)), &stmt, nullptr);
  return sqlite3_reset(stmt);
}

int TDBMan::Prepare_V2(char const* sql) {
  FinishStatement();
  return sqlite3_prepare_v2(db, zansong::TextOrEmpty(sql), -1, &stmt, nullptr);
}

int TDBMan::Step() { return sqlite3_step(stmt); }

int TDBMan::Column_Int(int col) { return sqlite3_column_int(stmt, col); }

const char* TDBMan::Column_Text(int col) {
  return reinterpret_cast<const char*>(sqlite3_column_text(stmt, col));
}

int TDBMan::Reset() { return sqlite3_reset(stmt); }

int TDBMan::Finalize() { return sqlite3_finalize(std::exchange(stmt, nullptr)); }

const char* TDBMan::ErrMsg() { return sqlite3_errmsg(db); }

int TDBMan::CheckTable(char const* table) {
  SqlText sql = FormatSql("SELECT COUNT(*) FROM sqlite_master WHERE type='table' and name='%q'",
                          zansong::TextOrEmpty(table));
  return zansong::ReadFirstInt(db, sql.get(), 0);
}

bool TDBMan::HasField(char const* table, char const* field, char const* type) {
  SqlText sql = FormatSql("SELECT sql FROM sqlite_master WHERE type='table' and name='%q'",
                          zansong::TextOrEmpty(table));
  TSString create;
  zansong::ForEachRow(db, sql.get(), [&create](sqlite3_stmt* row) {
    create = zansong::ColumnString(row, 0).c_str();  // the last row wins
  });
  if (create.Length() == 0) return false;
  create.Strip("`' \r\n\t");
  create.UpperCase();
  TSString declared = TSString(field) + TSString(type);
  declared.UpperCase();
  return create.AnsiPos(declared) > 0;
}

int TDBMan::AddField(char const* table, char const* field, char const* type) {
  SqlText sql = FormatSql("ALTER TABLE %q add column `%q` %q", zansong::TextOrEmpty(table),
                          zansong::TextOrEmpty(field), zansong::TextOrEmpty(type));
  return Query(sql.get());
}
