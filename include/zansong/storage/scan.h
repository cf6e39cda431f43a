// Directory scanning and the song cache.
//
// The catalogue is kept in step with a storage area by comparing two sets
// of song cache lines: one built here from the files on disk, one built by
// the catalogue from its rows.  A song cache line is four tab-separated
// fields, without a line end:
//   MIDI path \t audio path \t kind \t time
// The paths are relative to the storage root ("" when the song has no such
// file), kind is "SMF", "SMF,MP3", "SMF,WAV", "MP3" or "WAV", and time is
// the modification time (GetModifyTime) of the MIDI file, or of the audio
// file of an audio-only song.  Lines of downloaded songs leave the time out
// and end with kind and a tab, as the catalogue's own lines for them do:
// GetSongCache2 with kStorageUsbDownloaded, and the lines of a walk that began in
// a "Downloaded Songs" folder of any storage.
//
// Relative paths are cut from full paths with SubString(path, start), where
// start is the length of the root plus 1.
//
// Storage kinds (chosen by the caller from the root and folder): the
// kStorage* constants below.
//
// Scan results (zansong/result_codes.h):
//   kScanOk                 done;
//   kScanUnreadableDir      a directory cannot be opened (at any depth: the
//                           whole scan stops);
//   kScanStopped            more than kAlbumLimit (499) album directories
//                           or more than kPrefixSongLimit (4999) album songs;
//   kScanTooManyLooseSongs  kAlbumSongLimit + 1 (1000) or more songs
//                           directly in one directory (a subdirectory that
//                           gives it is only dropped; at the top it is the
//                           scan's result).
// Nothing is printed.
#ifndef ZANSONG_STORAGE_SCAN_H_
#define ZANSONG_STORAGE_SCAN_H_

#include <list>
#include <string>
#include <vector>

#include "zansong/common/tsstring.h"
#include "zansong/export.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

// Storage kinds.
constexpr int kStorageOther = 0;
constexpr int kStorageInternal = 1;       // the internal song root
constexpr int kStorageUsb = 2;            // a USB stick
constexpr int kStorageUsbFromToPC = 3;    // its "FromToPC" folder
constexpr int kStorageUsbDownloaded = 4;  // its "Downloaded Songs" folder
constexpr int kStorageUsbRecorded = 5;    // its "Recorded Songs" folder

// One entry of a plain directory listing.
struct TDirFileName {
  int value;           // 0 when listed
  TSString name;       // as on disk
  TSString nameUpper;  // upper-cased
};

// The line for one file found on disk, or "" when the file is not a song
// (extension other than .MID, .WAV, .MP3 in any case) or is an audio file
// with a MIDI file of the same name (the song is then that file's line).
// A MIDI file's companion is found on disk; a WAV companion wins over an
// MP3 one.
ZANSONG_EXPORT TSString GetSongCache(TSString path, int start);
// The line for a pairing already known: midiPath "" for an audio-only
// song, audioPath "" for a MIDI-only one (full paths).  With storageKind
// kStorageUsbDownloaded the time is left out.
ZANSONG_EXPORT TSString GetSongCache2(TSString midiPath, TSString audioPath, int start,
                                      int storageKind);
// Appends to lines the GetSongCache line of each path of paths that gives
// one, with start = length of root + 1.
ZANSONG_EXPORT void GetSongCacheList(TSString& root, std::list<std::string>& paths,
                                     std::list<std::string>& lines);
// Removes from both lists every line that is in both.  Both must be sorted
// ascending in byte order; afterwards a holds the lines only it had, and b
// those only it had.
ZANSONG_EXPORT void GetDiffCacheList(std::list<std::string>& a, std::list<std::string>& b);

// Scans the storage tree below dir (ending in "/"): songs are listed in dir
// and in directories up to two levels below it (one level for
// kStorageUsbDownloaded and kStorageUsbRecorded); deeper directories are opened but not listed.
// albumDirs receives the album directories (relative paths, no final "/"), songLines the lines of
// the songs inside them, and looseSongLines (cleared first) the lines of the
// songs directly in dir.  A MIDI file and a ".WAV" or ".MP3" file of the
// same name (case-sensitive) make one line.  Directories whose name begins
// with "." are not entered; on USB sticks "Recorded Songs", "Downloaded
// Songs" and "FromToPC" directly under the root are not entered, on the
// internal root "rec" and "test".  An album directory is listed when it
// holds songs, is empty, or is "Recorded Songs/Temporary Folder" or
// "Recorded Songs/Keep".  The top call passes level 0; *flag is set true
// only for an empty directory within the depth limit.  Results as above.
ZANSONG_EXPORT int GetDirFileList4(const char* dir, int start, std::list<std::string>& albumDirs,
                                   std::list<std::string>& songLines,
                                   std::list<std::string>& looseSongLines, int storageKind,
                                   int level, bool* flag);
// The same walk (always two levels below dir), each song file turned
// into a line at once with GetSongCache; kScanTooManyLooseSongs as soon as
// one directory gives more than kAlbumSongLimit lines.
ZANSONG_EXPORT int GetDirFileList3(const char* dir, int start, std::list<std::string>& albumDirs,
                                   std::list<std::string>& songLines,
                                   std::list<std::string>& looseSongLines, int storageKind,
                                   int level, bool* flag);
// Appends the full path of every file under dir (ending in "/"), at any
// depth.  Returns 1, or 0 when dir cannot be opened.
ZANSONG_EXPORT int GetDirFileList(const char* dir, std::list<std::string>& files);
// The files directly in dir (ending in "/"), sorted in byte order, pausing
// 10 ms after each so that a slow stick is not flooded.  Names beginning
// with "._" are deleted from dir and not listed; names that are not valid
// Shift-JIS are left out.  1, or 0 when dir cannot be opened.
ZANSONG_EXPORT int GetDirFileVector(char* dir, std::vector<TDirFileName>& names);

// Kept for callers that still link them: they do nothing.  GetDirFileList2
// lists nothing; GetZanId and GetZanVersion leave the buffer untouched.
// All three return 0.
ZANSONG_EXPORT int GetDirFileList2(const char* dir, std::list<std::string>& files,
                                   std::list<std::string>& dirs, int level, int flag);
ZANSONG_EXPORT int GetZanId(char* out, int len);
ZANSONG_EXPORT int GetZanVersion(char* out, int len);

#endif  // ZANSONG_STORAGE_SCAN_H_
