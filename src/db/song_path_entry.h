// Private: the entries of GetSongPathList, shared with SongRows.  An entry
// is midi_path TAB audio_path TAB format TAB mtime, where the format of a
// solo or two-part MIDI song is reported as "SMF" and the entries of
// downloaded songs (prefix "y") leave the time out.
#ifndef ZANSONG_SRC_DB_SONG_PATH_ENTRY_H_
#define ZANSONG_SRC_DB_SONG_PATH_ENTRY_H_

#include <cstring>
#include <string>
#include <string_view>

namespace zansong {

// Whether the entries of prefix pfix carry the time.
inline bool SongPathListHasTime(const char* pfix) {
  return pfix == nullptr || std::strcmp(pfix, "y") != 0;
}

// Appends to entry (which holds midi_path TAB audio_path TAB) the format as
// reported, a tab and mtime ("" to leave the time out).
inline void AppendSongPathTail(std::string_view format, std::string_view mtime,
                               std::string& entry) {
  if (format.find("SOLO") != std::string_view::npos ||
      format.find("KW") != std::string_view::npos) {
    entry += "SMF";
  } else {
    entry += format;
  }
  entry += '\t';
  entry += mtime;
}

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_SONG_PATH_ENTRY_H_
