// The capacity limits of a catalogue, and of the directory scans that
// bound their memory and time on removable media.
//
// A category is full when its count has reached its limit: for albums,
// more than kAlbumLimit - 1 (498) of one prefix; for songs, more than
// kAlbumSongLimit - 1 (998) in one album or playlist and more than
// kPrefixSongLimit - 1 (4998) of one prefix; more than kRecordedSongLimit - 1
// (998) in "Recorded Songs/Temporary Folder".  An operation that meets a
// full category stops with the matching result code (result_codes.h).
#ifndef ZANSONG_LIMITS_H_
#define ZANSONG_LIMITS_H_

// Albums of one prefix, and playlists; album directories of one scan.
constexpr int kAlbumLimit = 499;
// Songs in one album or one playlist; songs directly in one directory of a
// scan.
constexpr int kAlbumSongLimit = 999;
// Songs of one prefix in a catalogue; album songs of one scan.
constexpr int kPrefixSongLimit = 4999;
// Songs in the temporary folder of recorded songs.
constexpr int kRecordedSongLimit = 999;

#endif  // ZANSONG_LIMITS_H_
