// Filing a downloaded song: from the files decoded out of its packages
// into the area "Downloaded Songs" of a storage, its album and the
// catalogue; and the message line the screen shows afterwards.
//
// DownloadRecord is what the host hands over: NUL-terminated texts in
// fixed arrays, read only.  A source path is the full path of a file the
// package decoders wrote; an empty album directory files a single song.
//
// FM_Copy_UlqSong(dir, rec, msgOut)
//   dir is a storage root (a "/" is added when missing).  Files the song:
//   - into "Downloaded Songs/<albumDir>" when the record names an album
//     directory: the album is made when new (its directory, its row with
//     prefix "y", the album title or else the directory name as title),
//     its title ("album_title" and the title file ".zanalbum") and cover
//     ("zanalbum.jpg", moved from the cover source) updated when given,
//     and it is moved to the first place of the album order;
//   - else into "Downloaded Songs/Single Songs", whose directory and album
//     row are made when missing, with the cover moved beside the song as
//     <base>.jpg.
//   The purchase date goes to the album's "purchased_date".  The song files
//   are named after the MIDI source (else the audio source) with their own
//   extensions, copied and then their sources removed; the row carries the
//   record's title (else the MIDI title, else the file name), composer,
//   genre, purchase date and mtime, the format label ("SMF", "SMFSOLO",
//   "SMFKW", "SMF,WAV", "SMF,MP3", "WAV", "MP3") and the playing time.  A
//   row with the same MIDI path (and the same audio path, when there is
//   audio) is updated in place, keeping its id; otherwise a row is added.
//   Either way the song moves to the first place of its album.
//   On a USB stick the working copy of the stick's catalogue is refreshed
//   from the stick first and written back to it at the end (usbdb_backup),
//   except after kResultAlbumLimit.
//   Results, in the order they are checked:
//     kResultNoData         (-25) no record, or neither MIDI nor audio source;
//     kResultCannotExecute  (-29) a record text fills its array without a
//                           terminating NUL, the album directory is not one
//                           plain directory name (".", "..", a "/" or a
//                           byte below 0x20), or a source is no song file
//                           (MIDI not ".mid", audio not ".wav" or ".mp3",
//                           any case);
//     kResultNoFile         (-24) a named MIDI or audio source is missing;
//     kResultDbFail         (-26) the catalogue cannot be opened;
//     kResultAlbumLimit     (-30) a new album (or the "Single Songs" album)
//                           would be the 500th of prefix "y";
//     kResultWriteProtected (-14) the album directory cannot be made;
//     kResultCannotExecute  (-29) the album row cannot be made;
//     kResultPrefixFull     (-32) 4999 songs of prefix "y" already;
//     kResultAlbumFull      (-27) 999 songs in the album already;
//     kResultNoSpace        (-28) not enough free space for the files;
//     kResultWriteProtected (-14) a copy failed (nothing of it stays, the
//                           sources are kept);
//     kResultCannotExecute  (-29) the song row cannot be written;
//     kResultOk             (0).
//   Nothing is changed before the catalogue opens; a failure after the
//   album step leaves the album made or updated, one after the copy leaves
//   the files in place.  msgOut (when not null) receives, in every case,
//   the line of GetDownloadError(result).  A cover that cannot be moved
//   prints "error1!" (new album), "error2!" (existing album) or "error3!"
//   (single song) and does not change the result.
//
// GetDownloadError(code, out)
//   Writes (strcpy) into out the message line for a result code: for -1 to
//   -41, '<set_msgbox type="exclusive" label="L" msg="M" button1="B" />\n'
//   with L the text of the error label for the rows 14, 27, 30, 32 and 36
//   and of the download label for the others, M the text of row -code and
//   B the text of the OK button; for any other code (0, positive, below
//   -41) the clear line '<set_msgbox type="clear" />\n'.  out needs room
//   for the line (the texts come from the message catalogue).
//
// FM_FilenameAndMtimeExists(dir, fileName, rec)
//   1 when the download is already filed in the catalogue of dir: a song of
//   prefix "y" whose MIDI or audio file is <albumDir or "Single Songs">/
//   <fileName>.<3-letter extension> with the record's mtime; its title
//   (when the record's is not empty), genre and composer are then brought up
//   to date from the record, and so are the album's title and title file
//   when the record names an existing album and a new title.  Also 1,
//   without updates, for such a song with a later mtime.  0 otherwise,
//   also for a null or empty dir, no record, an empty mtime, an unterminated
//   record text or a catalogue that cannot be opened.  On a stick the working
//   copy is refreshed first and, after an update, written back.
#ifndef ZANSONG_FILEMAN_DOWNLOAD_H_
#define ZANSONG_FILEMAN_DOWNLOAD_H_

#include "zansong/export.h"

struct DownloadRecord {
  char midiSource[256];   // full path of the downloaded MIDI file, or ""
  char audioSource[256];  // full path of the downloaded audio file, or ""
  char coverSource[256];  // full path of the downloaded cover picture, or ""
  char albumDir[32];      // directory name of the song's album, "" for a single song
  char albumTitle[1024];  // title of the album
  char songTitle[1024];   // title of the song
  char composer[1024];    // composer
  char genre[256];        // genre
  char purchaseDate[32];  // purchase date of the song and its album
  char mtime[32];         // the host's modification time text of the song
};

extern "C" {
ZANSONG_EXPORT int FM_Copy_UlqSong(const char* dir, const DownloadRecord* rec, char* msgOut);
ZANSONG_EXPORT void GetDownloadError(int code, char* out);
ZANSONG_EXPORT int FM_FilenameAndMtimeExists(const char* dir, const char* fileName,
                                             const DownloadRecord* rec);
}

#endif  // ZANSONG_FILEMAN_DOWNLOAD_H_
