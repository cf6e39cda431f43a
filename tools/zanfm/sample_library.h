// The generated sample library of the demo: albums of MIDI songs with
// English and Japanese titles, a MIDI song with a WAV companion, WAV and
// MP3 songs, an album with a title file, and loose songs.
#ifndef ZANFM_SAMPLE_LIBRARY_H_
#define ZANFM_SAMPLE_LIBRARY_H_

#include <string>
#include <vector>

namespace zanfm {

// Writes the sample songs under root (a storage root ending in "/"); a
// stick gets a smaller set.  False when a file cannot be written.
bool WriteSampleLibrary(const std::string& root, bool stick);
// Adds a song, touches one and removes one; returns what it did, one line
// each.
std::vector<std::string> ChangeSampleLibrary(const std::string& root);

}  // namespace zanfm

#endif  // ZANFM_SAMPLE_LIBRARY_H_
