// Private: the song cache line, shared by the cache functions and the scans,
// and the merge walk of GetDiffCacheList.
#ifndef ZANSONG_STORAGE_SCAN_CACHE_H_
#define ZANSONG_STORAGE_SCAN_CACHE_H_

#include <list>
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

// The merge walk of GetDiffCacheList over a and the lines [ib, endB), both
// sorted in byte order: removes from a every line that the other side has
// too, each matching one line there, which the walk passes over with
// passB(it) (returning the next position); calls onlyB(it) for each line
// of the other side that a does not have, up to where either side ends.
// Returns the other side's position there: from it on, nothing was
// compared.
template <typename ItB, typename PassB, typename OnlyB>
ItB RemoveCommonLines(std::list<std::string>& a, ItB ib, ItB endB, PassB passB, OnlyB onlyB) {
  auto ia = a.begin();
  while (ia != a.end() && ib != endB) {
    int order = std::string_view(*ia).compare(*ib);
    if (order < 0) {
      ++ia;
    } else if (order > 0) {
      onlyB(ib);
      ++ib;
    } else {
      ia = a.erase(ia);
      ib = passB(ib);
    }
  }
  return ib;
}

// Whether a song cache line can carry name as a part of a path: false for
// a name holding a tab, a line end or any other control byte (below 0x20,
// or 0x7F), which would split or end the line.
bool IsCacheableName(const char* name);

}  // namespace zansong

#endif  // ZANSONG_STORAGE_SCAN_CACHE_H_
