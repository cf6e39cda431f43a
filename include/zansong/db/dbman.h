// TDBMan: the connection to the song catalogue of one storage root.
//
// Every storage root carries its catalogue in the file ".zansong.db".  A
// catalogue operation creates a manager, calls InitDB(root) once, then
// Open(), runs its statements, and Close()s; the destructor closes too.
//
// InitDB(dir) chooses dbPath: for a USB stick root (dir, with a "/" added
// when missing, is the stick's mount directory) dbPath is the working copy
// system root + "/tmp/.zansong.db" and usbDbPath the stick's own file; the
// stick's file is copied to the working copy when the copy does not exist
// yet ("DB copy error!" when the copy fails).  For any other dir dbPath is
// dir + ".zansong.db" and usbDbPath is empty.  InitDB then makes sure a
// sound catalogue is there and leaves the connection closed:
//   - a catalogue with tables album and song gains the columns that older
//     catalogues lack (song.md5, song.genre, song.coverart_path,
//     album.coverart_path, song.purchased_date, album.purchased_date, in
//     that order, as TEXT); result 1;
//   - a file that SQLite reports as not a database or corrupt, or that
//     lacks the album or song table, is broken: "DB broken!" is printed,
//     the file is moved aside to its name + ".broken" (replacing an older
//     one) and a new catalogue is made by the schema script;
//   - a file that is busy or locked (after the busy timeout), cannot be
//     opened or gives an I/O error is left untouched: "DB: error %s\n" with
//     SQLite's message is printed and the result is 0;
//   - with no file, the schema script makes one.
// Creating returns the result of CreateDB.
//
// The manager owns db and stmt: Close(), Open(), Prepare*, Finalize() and
// the destructor finalize and close what they replace or end.
//
// Open() closes any open connection, opens dbPath and sets a busy timeout
// of 1000 ms; 1 on success, 0 otherwise (the failed handle is closed).
// Query(sql) runs statements that return no rows: 1, or 0 after printing
// "DB: error %s\n".  Prepare/Prepare_V2/Step/Column_*/Reset/Finalize work on
// the one statement held in stmt and return SQLite's result codes; Prepare
// returns the code of the reset that follows the compile, so a compile
// failure alone is not reported by it.
// CheckTable(table) is the number of tables of that name (0 or 1).
// HasField(table, field, type) is true when the table's CREATE statement
// declares the column with exactly that type (quotes, backquotes and white
// space ignored, case ignored).  AddField adds the column ("ALTER TABLE").
// CreateDB() runs the sqlite3 program with the schema script as its input
// ("Create DB error!" on failure); VacuumDB() runs "sqlite3 FILE vacuum"
// ("Vacuum error!" on failure).  Both return 1 or 0.
//
// Free functions for the host:
//   db_vacuum(dir)   compacts dir's catalogue if it exists ("Vacuum error!").
//   usbdb_copy(dir)  for a stick root, copies the stick's catalogue over the
//                    working copy ("DB copy error!").
//   usbdb_backup(dir) writes the JSON export of the catalogue for the web
//                    page and, for a stick root, copies the working copy
//                    back into dir (which must end in "/"); skipped when dir
//                    no longer exists.  Messages "songdb2json error1!"
//                    (working copy), "songdb2json error2!" (stick file),
//                    "songdb2json error3!" (internal catalogue), "DB copy
//                    error!".
// All three flush the file systems before they return.  Printed texts carry
// no line end unless shown with "\n".
#ifndef ZANSONG_DB_DBMAN_H_
#define ZANSONG_DB_DBMAN_H_

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

struct sqlite3;
struct sqlite3_stmt;

class ZANSONG_EXPORT TDBMan {
 public:
  TDBMan();
  virtual ~TDBMan();
  TDBMan(const TDBMan&) = delete;
  TDBMan& operator=(const TDBMan&) = delete;

  int InitDB(char const* dir);
  int Open();
  void Close();

  int Query(char* sql);
  int Prepare(char const* sql);
  int Prepare_V2(char const* sql);
  int Step();
  int Column_Int(int col);
  const char* Column_Text(int col);  // null for an SQL NULL or no row
  int Reset();
  int Finalize();
  const char* ErrMsg();

  int CheckTable(char const* table);
  bool HasField(char const* table, char const* field, char const* type);
  int AddField(char const* table, char const* field, char const* type);
  int CreateDB();
  int VacuumDB();

  sqlite3* db;         // null when closed
  sqlite3_stmt* stmt;  // the statement of Prepare/Step, or null
  TSString dbPath;     // the file that Open opens
  TSString usbDbPath;  // stick file of the working copy, or ""

 private:
  // Finalizes stmt, if any, and clears it.
  ZANSONG_HIDDEN void FinishStatement();
};

ZANSONG_EXPORT void db_vacuum(char* dir);
ZANSONG_EXPORT void usbdb_copy(char* dir);
ZANSONG_EXPORT void usbdb_backup(char* dir);

#endif  // ZANSONG_DB_DBMAN_H_
