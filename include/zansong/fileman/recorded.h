// Recorded songs: filing a recording the instrument has just made, keeping
// it, removing the internal recording, and the small helpers the recorder
// and the screen use around a recording.
//
// FM_Add_RecSong(dir, recPath, pfixOut)
//   recPath is the full path of the recorded file with its extension (a
//   MIDI file, or a WAV or MP3 file with possibly a MIDI file of the same
//   name beside it).  When dir is an existing directory other than the
//   internal song root, the recording goes to dir + "Recorded Songs/
//   Temporary Folder/" (made when missing; album "Temporary Folder",
//   prefix "r"), the stick's catalogue being worked on through its working
//   copy (usbdb_copy before, usbdb_backup after).  Otherwise it becomes the
//   one internal recording: album "rec" of the internal song root, prefix
//   "i", which then holds only it.  The files are named
//   YYYYMMDD_hhmmss (GetRecDateString) with lower-case extensions and moved
//   with mv; each of ".mid", ".MID", ".wav", ".WAV", ".mp3", ".MP3" next to
//   recPath's name that exists is moved.  A song row is added: title from
//   the MIDI file (or the file name), format SMF / SMFSOLO / SMFKW / WAV /
//   MP3 / SMF,WAV / SMF,MP3, length and sync id from the files.
//   On internal storage the new files are first moved into a staging
//   directory of the song root; only then is the previous recording's album
//   deleted and the new files renamed into "rec", so that a failing move
//   never costs the previous recording.
//   Returns AddSong's result (the new song id); -1 when the catalogue cannot
//   be opened ("DB Open Error" printed, the files stay in place); -3 when a
//   move fails ("error!" printed, nothing in the catalogue changes, the
//   files not moved stay where they were, pfixOut untouched).  pfixOut[0]
//   gets 'i' or 'r' whenever the catalogue step was reached.
//
// FM_MoveToKeep(dir, song_id, title)
//   Renames the song to title (FH_rename) and, when that succeeded, moves it
//   into "Recorded Songs/Keep" (FH_copy_song_usb with album 0); the
//   catalogue of a stick is worked on through its working copy.  Returns 0,
//   or the failing step's result.
//
// FM_Delete_InternalRecord()
//   Deletes the internal recording album "rec" (files and rows) when it is
//   catalogued.
//
// FM_GetWavTmpName(dir, fileName, out, len)
//   dir (a "/" added when missing) + a base name free in dir
//   (GetExternalCopyFileName3) + the last four characters of fileName,
//   copied into out as strncpy does: at most len bytes, zero-filled after a
//   shorter text, no terminator when the text fills len.
//
// FM_GetSMFLRStatus(path, second, first)
//   Reads the MIDI file; for its first declared part channel into first and
//   its second into second: "disabled" when no channel 1-16 is declared,
//   "exist" when that channel plays notes, else "none" (each with its
//   terminator; 9 bytes suffice).  Returns 1, or 0 when the file is no
//   readable MIDI file (nothing written).
//
// FM_GetTimeZone(path, out)
//   The first line of the text file that starts with "<", trimmed, copied
//   into out (when not null) with exactly its length and no terminator.
//   Returns 0, or -1 when the file cannot be read or has no such line (out
//   untouched).
//
// EscapeString(text, out)
//   text with & < > " ' as XML entities, copied into out with exactly its
//   length and no terminator.
//
// FM_Test(n) returns n + 1.
#ifndef ZANSONG_FILEMAN_RECORDED_H_
#define ZANSONG_FILEMAN_RECORDED_H_

#include "zansong/export.h"

extern "C" {
ZANSONG_EXPORT int FM_Add_RecSong(const char* dir, const char* recPath, char* pfixOut);
ZANSONG_EXPORT int FM_MoveToKeep(const char* dir, int song_id, const char* title);
ZANSONG_EXPORT void FM_Delete_InternalRecord();
ZANSONG_EXPORT void FM_GetWavTmpName(const char* dir, const char* fileName, char* out, int len);
ZANSONG_EXPORT int FM_GetSMFLRStatus(const char* path, char* second, char* first);
ZANSONG_EXPORT int FM_GetTimeZone(const char* path, char* out);
ZANSONG_EXPORT void EscapeString(const char* text, char* out);
ZANSONG_EXPORT int FM_Test(int n);
}

#endif  // ZANSONG_FILEMAN_RECORDED_H_
