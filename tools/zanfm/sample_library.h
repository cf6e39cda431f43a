// The generated sample library of the demo: albums of MIDI songs with
// English and Japanese titles, a MIDI song with a WAV companion, WAV and
// MP3 songs, an album with a title file, and loose songs.
#ifndef ZANFM_SAMPLE_LIBRARY_H_
#define ZANFM_SAMPLE_LIBRARY_H_

#include <string>
#include <vector>

namespace zanfm {

// A two-track MIDI song: the title (UTF-8, stored in Shift-JIS as the
// instrument does), a tempo change halfway, `bars` bars of a scale.
bool WriteSampleMidi(const std::string& path, const std::string& title, int bars);
// A WAV song of the given length (8 kHz mono, 8 bits).
bool WriteSampleWav(const std::string& path, int seconds);
// Writes the sample songs under root (a storage root ending in "/"); a
// stick gets a smaller set.  False when a file cannot be written.
bool WriteSampleLibrary(const std::string& root, bool stick);
// Adds a song, touches one and removes one; returns what it did, one line
// each.
std::vector<std::string> ChangeSampleLibrary(const std::string& root);

}  // namespace zanfm

#endif  // ZANFM_SAMPLE_LIBRARY_H_
