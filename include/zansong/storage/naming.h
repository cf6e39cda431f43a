// Song file naming: every rule by which the library invents a file or
// directory name.  Titles become names the target file system accepts,
// new songs are numbered PIANO001 onward, copies are numbered (01_Title,
// Title_002), recordings are named by date and time, and new album
// directories get the first free three-digit number.
//
// These functions read directories but never create anything, and never
// change the working directory.  No function reports an error: a directory
// that cannot be read counts as empty (maximum 0, nothing exists), and
// exhausted numbering gives an empty name.  A directory argument that is
// joined with a name must end in "/".
//
// Forbidden characters:
//   lenient set  " \\/:*?\"<>|"                 (space and the nine others)
//   strict set   " \\/:*?\"<>|&+,.;=[]^`"       (for short names on USB)
// A forbidden character of a title becomes "_".
#ifndef ZANSONG_STORAGE_NAMING_H_
#define ZANSONG_STORAGE_NAMING_H_

#include <vector>

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

// ---- Titles to names ----

// Shift-JIS title to file name.  Writes exactly size bytes to out: the name,
// then zeros; returns the name's length (at most size, so the name is not
// terminated when it fills out).
// With keepDoubleByte, two-byte characters are copied as they are (when
// both bytes fit) and single bytes are tested against the lenient set.
// Without it, full-width katakana, punctuation and ASCII forms become their
// one-byte half-width forms, voiced katakana become a half-width kana and a
// voicing mark, any other two-byte character becomes "_", and single bytes
// are tested against the strict set.  Bytes 0x00, 0x80, 0xA0, 0xFD-0xFF and
// a lead byte at the very end are dropped.
ZANSONG_EXPORT int ChangeTitleToFilename(TSString title, char* out, int size, bool keepDoubleByte);
// UTF-8 title to file name: the first size bytes of the title, bytes below
// 0x80 in the forbidden set (lenient or strict) replaced by "_".  Writes
// exactly size bytes (zero-filled) and returns the name's length.  The cut
// may split a multi-byte character.
ZANSONG_EXPORT int ChangeTitleToFilenameUTF8(TSString title, char* out, int size, bool lenient);
// ChangeTitleToFilenameUTF8(title, buffer, 128, true) as a string.
ZANSONG_EXPORT TSString GetExternalName2(const TSString& title);
// index + "_" + title, the index zero-padded to width digits when it has
// no more; through ChangeTitleToFilenameUTF8 with 64 bytes and the lenient
// set when longName, else with 8 bytes and the strict set.
ZANSONG_EXPORT TSString GetExternalName(const TSString& title, int index, int width, bool longName);

// ---- Unique names ----

// The first GetExternalName(title, i, width, true), i = firstIndex, ...,
// that is not an enterable directory in dir.  The two are the same.
ZANSONG_EXPORT TSString GetExternalCopyDirName(const TSString& dir, const TSString& title,
                                               int firstIndex, int width);
ZANSONG_EXPORT TSString GetExternalCopyDirName2(const TSString& dir, const TSString& title,
                                                int firstIndex, int width);
// The first GetExternalName(title, i, width, true), i = firstIndex, ...,
// whose base name no file of dir uses (FileNameExists).
ZANSONG_EXPORT TSString GetExternalCopyFileName2(const TSString& dir, const TSString& title,
                                                 int firstIndex, int width);
// The base name (file name without extension) of srcPath, made unique among
// the base names of the files of dir, compared without regard to case, by
// "_002", "_003", ...  The result has no extension.
ZANSONG_EXPORT TSString GetExternalCopyFileName3(const TSString& dir, const TSString& srcPath);
// Kept for callers that still link it: does nothing and returns "".
ZANSONG_EXPORT TSString GetExternalCopyFileName(const TSString& dir, const TSString& title,
                                                int firstIndex, int width, const TSString& ext);

// ---- Numbers in names ----

// The largest leading number (two to four digits; the first two must be
// digits) among the entry names of dir; with dirsOnly only directories
// count.  0 when there is none or dir cannot be opened.
ZANSONG_EXPORT unsigned GetMaxFileIndex(const char* dir, bool dirsOnly);
// The largest number of a file named "PIANO" + number (+ extension), upper
// case not required: three characters count as they are, longer numbers
// only without a leading zero and from 1000 up.  0 when there is none.
ZANSONG_EXPORT int GetMaxPianoFileNo(const char* dir);
// The next free "PIANO" base name of dir (no extension): PIANO001 to
// PIANO999 after the largest number; after PIANO999 the first gap from
// PIANO001, then PIANO1000 when there is none; past 999 the largest number
// + 1, unpadded.  "" when the largest number is above 999999998.
ZANSONG_EXPORT TSString GetNewSongName2(const TSString& dir);
// The first PIANO001 ... PIANO999 base name that is free in dir: without
// anyExtension, no file of that name with the format's extension exists
// (".WAV" for "WAVE" and "CDDA", ".FIL" for "KTVA", ".PSPG" for "PSPG",
// ".MID" otherwise); with it, no file of that base name exists at all.
// "" when all 999 are taken.
ZANSONG_EXPORT TSString GetNewSongName(const TSString& dir, const TSString& format,
                                       bool anyExtension);
// dir + the local time as YYYYMMDD_hhmmss + ext, with "_01", "_02", ...
// before ext while that file exists.
ZANSONG_EXPORT TSString GetRecDateString(const TSString& dir, const TSString& ext);
// The first of "001" ... "999" that is not an enterable directory of
// parent; when all are, the first of "1", "2", ... that is not.
ZANSONG_EXPORT TSString GetNewDir(const TSString& parent);

// ---- Other names ----

// Display title of a mount or share path: "/mnt/" or "/home/samba/" taken
// off the front, then everything before the first remaining "/" dropped
// (the "/" kept), then a final "/" removed when two characters or more
// remain.  Any other path is returned unchanged.
ZANSONG_EXPORT TSString GetTitleFromMntDir(const TSString& path);
// Whether a non-directory entry of dir has the same base name as name
// (extensions ignored, compared without regard to case).
ZANSONG_EXPORT bool FileNameExists(const TSString& dir, const TSString& name);
// names := the base names of the non-directory entries of dir, in directory
// order (empty when dir cannot be opened).
ZANSONG_EXPORT void GetFileNameExistsList(const TSString& dir, std::vector<TSString>& names);
// Target names for copying the song srcName (with its audio companion
// srcAudio, may be "") from srcDir into dstDir in the given format.
// dstName gets the format's extension; on a clash of base names in dstDir a
// new PIANO name is taken (GetNewSongName2), and a companion then gets that
// name + ".WAV".  srcAudio becomes its ".wav" spelling when that file exists
// in srcDir.  Without a companion, dstAudio and srcAudio are emptied.
// 1 on success, 0 when no free name exists (dstName and dstAudio emptied).
ZANSONG_EXPORT int GetCopyFileNames(const TSString& srcDir, const TSString& dstDir,
                                    const TSString& srcName, TSString& srcAudio, TSString& dstName,
                                    TSString& dstAudio, const TSString& format);

#endif  // ZANSONG_STORAGE_NAMING_H_
