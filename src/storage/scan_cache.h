// Private: the song cache line, shared by the cache functions and the scans.
#ifndef ZANSONG_STORAGE_SCAN_CACHE_H_
#define ZANSONG_STORAGE_SCAN_CACHE_H_

#include <string>
#include <string_view>

namespace zansong {

// The line for a known pairing of full paths (midiPath "" for an
// audio-only song, audioPath "" for a MIDI-only one): relative MIDI path,
// tab, relative audio path, tab, kind, tab, time.  time is the modification
// time text of the MIDI file (of the audio file when there is no MIDI
// file), or "" for lines without it.  Relative paths are cut as
// SubString(path, start) cuts them.
std::string SongCacheLine(std::string_view midiPath, std::string_view audioPath, int start,
                          std::string_view time);

}  // namespace zansong

#endif  // ZANSONG_STORAGE_SCAN_CACHE_H_
