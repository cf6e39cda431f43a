// SongInfo: one row of table "song" as passed between the file layer and
// the catalogue, and getprefix, the storage prefix of a category.
//
// Every text field starts empty; length starts at 0 and is set by the
// caller.  ctime is not a field: the insert and update operations take it
// separately.  albumPath names the album directory (album.album_path) that
// holds the song; AddSong looks the album id up by it.
//
// getprefix(category) maps a top-level folder name to the one-letter
// prefix stored with its albums and songs: "Recorded Songs" -> "r",
// "rec" -> "i", "Downloaded Songs" -> "y", "FromToPC" -> "f",
// "preset" -> "d", anything else -> "s".  The comparison is exact.
#ifndef ZANSONG_DB_SONGINFO_H_
#define ZANSONG_DB_SONGINFO_H_

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

struct ZANSONG_EXPORT SongInfo {
  SongInfo();

  TSString title;          // song_title
  TSString midiPath;       // midi_path ("" when the song has no MIDI file)
  TSString audioPath;      // audio_path ("" when the song has no audio file)
  TSString format;         // format label
  TSString mtime;          // file modification time text
  TSString albumPath;      // album_path of the album holding the song
  TSString syncId;         // sync_id
  TSString performer;      // read only: never written to the catalogue
  TSString composer;       // composer
  TSString tags;           // read only: never written to the catalogue
  TSString purchasedDate;  // purchased_date
  TSString genre;          // genre
  TSString coverartPath;   // coverart_path
  int length;              // playing time
};

ZANSONG_EXPORT TSString getprefix(TSString& category);

#endif  // ZANSONG_DB_SONGINFO_H_
