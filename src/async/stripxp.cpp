// FH2_stripxp: the expression-stripping program on one song's MIDI file.
#include <sqlite3.h>

#include <string>

#include "common/device_path.h"
#include "common/process.h"
#include "db/sql.h"
#include "zansong/async/targets.h"
#include "zansong/db/simpledb.h"
#include "zansong/fileman/messages.h"
#include "zansong/result_codes.h"

namespace {

// The song's midi_path in the catalogue of root; "" when there is none or
// the catalogue cannot be read.
std::string MidiPathOf(const char* root, int song_id) {
  SimpleDB db;
  if (db.open(root, nullptr) != 0) return "";
  zansong::SqlText sql(zansong::FormatSql("select midi_path from song where song_id=%d;", song_id));
  std::string midi;
  db.read(sql.get(), [&midi](sqlite3_stmt* row) {
    midi = zansong::ColumnString(row, 0);
    return 1;  // the first row is enough
  });
  return midi;
}

}  // namespace

int FH2_stripxp(const char* path, int song_id) {
  if (FH2_is_write_protect(path)) return kResultWriteProtected;
  std::string midi = MidiPathOf(path, song_id);
  int message = kMsgFileDoesntExist;
  if (!midi.empty()) {
    zansong::RunProgram({zansong::DevicePathFor(zansong::DevicePath::kStripxp), path + midi});
    message = kMsgComplete;
  }
  PrintRemoconMessage(message, kButtonOk);
  return kResultOk;
}
