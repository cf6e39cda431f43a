// Private: the song cache line, shared by the cache functions and the scans.
#ifndef ZANSONG_STORAGE_SCAN_CACHE_H_
#define ZANSONG_STORAGE_SCAN_CACHE_H_

#include "zansong/common/tsstring.h"

namespace zansong {

// The line for a known pairing of full paths (midiPath "" for an
// audio-only song, audioPath "" for a MIDI-only one): relative MIDI path,
// tab, relative audio path, tab, kind, tab and, withTime, the modification
// time of the MIDI file (of the audio file when there is no MIDI file).
TSString SongCacheLine(const TSString& midiPath, const TSString& audioPath, int start,
                       bool withTime);

// Whether a song cache line can carry name as a part of a path: false for
// a name holding a tab, a line end or any other control byte (below 0x20,
// or 0x7F), which would split or end the line.
bool IsCacheableName(const char* name);

}  // namespace zansong

#endif  // ZANSONG_STORAGE_SCAN_CACHE_H_
