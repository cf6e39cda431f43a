// Private: what a registration reads from the files of one new song.
//
// ReadNewSong(root, prefix, line, song) fills song->info from the song
// cache line (MIDI path, audio path, format, mtime; paths relative to root)
// and the files it names: title, format label, playing time, song
// identifier, album path and, for downloaded songs, the cover picture
// beside the song.  It touches no catalogue and prints nothing, so it can
// run while the catalogue's write lock is free.  The title of a MIDI file
// is left in Shift-JIS (song->titleFromFile set) for FinishTitle, which
// converts it when the row is written: the conversion may print a
// diagnostic, and that must come at the song's turn.  Returns false for a
// MIDI file that GetSMFInfo cannot read: such a song is not registered.
#ifndef ZANSONG_SRC_FILEMAN_REGISTER_SONG_H_
#define ZANSONG_SRC_FILEMAN_REGISTER_SONG_H_

#include <string>

#include "zansong/db/songinfo.h"

namespace zansong {

struct NewSong {
  bool readable = false;
  bool titleFromFile = false;
  SongInfo info;
};

bool ReadNewSong(const TSString& root, const TSString& prefix, const std::string& line,
                 NewSong* song);
// Converts a title read from a MIDI file to UTF-8.
void FinishTitle(NewSong* song);

// The first `count` tab-separated fields of line (missing ones "").
void SplitCacheLine(const std::string& line, int count, std::string* fields);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_REGISTER_SONG_H_
