// SongRows: the rows of table song read once, for the two things that a
// registration does with the table: comparing the song cache lines of a
// prefix with the files on storage (the entries of GetSongPathList), and
// renumbering the songs of that prefix by path (SortSongByPath).
//
// Read(man, pfix, withLines) runs one statement over every row of the table
// ("SELECT song_id,disp_order,pfix = '<pfix>',midi_path,audio_path,format,
// mtime FROM song"; without the last two columns when withLines is false)
// and keeps, per row, the key, the position, whether the row belongs to
// pfix (decided by SQLite, as a WHERE clause would), the paths and, with
// withLines, the format and time.  It notes the catalogue's data version
// and the connection's change count.  Returns false, with no rows, when
// the statement fails; nothing is printed.
//
// PathList() gives what GetSongPathList(entries, pfix) would, sorted in
// byte order: midi_path TAB audio_path TAB format TAB mtime for the rows of
// pfix ("SMF" for a format containing "SOLO" or "KW"; for prefix "y" the
// entry ends with the tab after the format), as views into the SongRows.
// Only after a Read with withLines.  Rows that already hold positions 1,
// 2, ... in path order give their entries in order without a sort.
//
// InPositionOrder() lists the rows of pfix by position when their
// positions are exactly 1, 2, ..., n (n rows), else it is empty.
//
// Entry(row) is the row's GetSongPathList2 entry, midi_path TAB audio_path
// TAB song_id; it stays valid as long as the SongRows.
//
// Current(man) is true while the rows are still the table's: this
// connection has changed no row since Read and no other connection has
// committed a change to the catalogue (PRAGMA data_version).
//
// A SongRows holds plain copies and may outlive the connection.
#ifndef ZANSONG_SRC_DB_SONG_ROWS_H_
#define ZANSONG_SRC_DB_SONG_ROWS_H_

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

class TDBSongMan;

namespace zansong {

class SongRows {
 public:
  // The position of a row whose disp_order is not an integer.
  static constexpr int kUnknownOrder = std::numeric_limits<int>::min();

  struct Row {
    int id;
    int order;      // disp_order, or kUnknownOrder
    bool inPrefix;  // pfix = the prefix given to Read
    // Where the row's texts lie: its GetSongPathList2 entry in the
    // entries' text and, with withLines for rows of the prefix, its
    // GetSongPathList entry in the lines' text (size 0 for none).
    size_t entryAt;
    size_t entrySize;
    size_t lineAt;
    size_t lineSize;
  };

  bool Read(TDBSongMan& man, const char* pfix, bool withLines);
  std::vector<std::string_view> PathList() const;
  std::vector<const Row*> InPositionOrder() const;
  bool Current(TDBSongMan& man) const;

  std::string_view Entry(const Row& row) const {
    return std::string_view(entries_).substr(row.entryAt, row.entrySize);
  }
  const std::vector<Row>& rows() const { return rows_; }
  const std::string& prefix() const { return prefix_; }

 private:
  std::vector<Row> rows_;
  std::string entries_;
  std::string lines_;
  std::string prefix_;
  long long dataVersion_ = -1;
  long long changes_ = -1;
};

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_SONG_ROWS_H_
