// File and directory primitives over the POSIX file interface: existence
// tests that tolerate any letter case of a song file's extension, copies
// with a size check and a cancel point, comparison, deletion of directories
// and song trees, free-space tests, the album title side file, an MD5
// digest, and file times.
//
// Paths are plain byte strings.  A directory argument that is joined with a
// name must end in "/"; paths are joined exactly as given.  Results are
// small integers as stated below; nothing here throws.  Files are created
// with mode 0666 (before the umask).  Comparisons and partial copies move
// data in 512-byte blocks, whole-file copies in blocks of 256 KiB.
#ifndef ZANSONG_STORAGE_FILES_H_
#define ZANSONG_STORAGE_FILES_H_

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

// ---- Existence and lookup ----

// 1 when the file can be opened for reading, else 0.
ZANSONG_EXPORT int FileExists(const char* path);
// FH2_is_dir_exists(path, nullptr, 0).
ZANSONG_EXPORT int DirExists(const char* path);
// 1 when every component of the absolute directory path exists, matched
// without regard to letter case; 0 otherwise (also for a null or empty
// path, or one without any "/").  "/" gives 1 and leaves out untouched.
// On success, when out is not null and outsize > 0, writes the path as
// spelled on disk, ending in "/", into out (cut to outsize - 1 bytes).
ZANSONG_EXPORT int FH2_is_dir_exists(const char* path, char* out, int outsize);
// 1 when the directory holds any entry other than "." and "..", 0 when it
// holds none or cannot be opened.
ZANSONG_EXPORT int AnyFileExists(const char* dir);
// The first non-directory entry of path's directory whose name equals
// path's file name without regard to case, as directory + "/" + the name
// on disk; "" when there is none or the directory cannot be opened.
ZANSONG_EXPORT TSString FileExists2(const char* path);
// The readable song file named like path (whose last four characters are
// the extension) with its extension spelled exactly as one of the forms
// below, the rest of the name matched without regard to case.  The form
// that comes first in the list wins.  The result is path's directory, "/"
// and the name as on disk; "" when there is none.  Forms with only the
// middle letter in upper case are not song files.
//   MidFileExists: .MID .mid .Mid .MId .MiD .mID .miD
//   Mp3FileExists: .MP3 .mp3 .Mp3 .mP3
//   WavFileExists: .WAV .wav .Wav .WAv .WaV .wAV .waV
ZANSONG_EXPORT TSString MidFileExists(const char* path);
ZANSONG_EXPORT TSString Mp3FileExists(const char* path);
ZANSONG_EXPORT TSString WavFileExists(const char* path);
// path with every space removed, reduced to its file-name part.
ZANSONG_EXPORT TSString ChangeNoDirAndSpaceName(const char* path);

// ---- Creation and deletion ----

// Creates (or truncates) the empty marker file and syncs; 1 on success, 0
// when it cannot be created.
ZANSONG_EXPORT int CreateOneTimeRestoreFile(const char* path);
// Creates (or truncates) the probe file path, then removes it and syncs; 1
// when it could be created, else 0.  The caller passes a file path inside
// the directory to be tested.
ZANSONG_EXPORT int is_Writable(const char* path);
// unlink: 1 on success, 0 on failure.
ZANSONG_EXPORT int DeleteFile(const char* path);
// Deletes every non-directory entry of dir (dir + name); failures are
// ignored.  With removeSelf it then removes dir itself: 1 on success, 0 on
// failure; without it, 1.  A directory that cannot be opened gives 0.
ZANSONG_EXPORT int RemoveDir(const char* dir, bool removeSelf);
// Deletes the song files (".MID", ".WAV", ".MP3" in any case) of dir (which
// ends in "/"), with withJpg also each song's ".jpg" companion, and with
// recurse the song subtrees below it.  Results:
//    0  done (and dir removed when removeSelf);
//   -1  dir cannot be opened;
//   -2  a song file could not be deleted but is gone;
//   -3  a song file (or, with removeSelf, dir) could not be deleted;
//   -4  dir still holds other files (or, without recurse, directories);
//       dir is then kept.
// The result of a subdirectory replaces that of any earlier entry.
ZANSONG_EXPORT int RemoveDirTree(char* dir, bool removeSelf, bool recurse, bool withJpg);

// ---- Album title file ----

// Creates or truncates path and writes the title's bytes (no line end),
// then syncs.  1 on success, 0 when it cannot be created or the write fails.
ZANSONG_EXPORT int CreateAlbumTitleFile(const char* path, const char* title);
// The first line of the file, at most 1023 bytes, line end included if
// present; "" when the file cannot be opened.
ZANSONG_EXPORT TSString GetAlbumTitle(const char* path);

// ---- Copying and comparing ----

// Copies src to dst, testing the cancel flag before each block of 256 KiB
// (so a raised flag stops the copy within one block, a few milliseconds of
// disk time), and gives dst the access and modification times of src.
//    0  success;
//   -1  src cannot be opened, a write failed, or the byte count differs
//       from the size of src;
//   -2  the cancel flag was seen (the partial dst stays);
//   -3  dst cannot be created.
ZANSONG_EXPORT int CopyFile(const char* src, const char* dst);
// Copies bytes [from, to) of srcFd to dstFd's current position; with to 0,
// everything from `from` to the end of the file.  0 on success (also when
// the first read gives nothing), -1 when fewer than to - from bytes could
// be read or a write failed.
ZANSONG_EXPORT int CopyPartFile(int srcFd, int dstFd, unsigned long from, unsigned long to);
// 1 when every byte of a equals the byte at the same place of b (b may be
// longer), 0 otherwise or when either cannot be opened or read.
ZANSONG_EXPORT int CompareFile(const char* a, const char* b);
// Copies srcDir + srcName1 to dstDir + dstName1 and, when dstName2 is not
// "", srcDir + srcName2 to dstDir + dstName2, as one step: on a failure the
// destinations written so far are deleted.  0 or the failing CopyFile result.
ZANSONG_EXPORT int CopyFiles(const TSString& srcDir, const TSString& dstDir,
                             const TSString& srcName1, const TSString& srcName2,
                             const TSString& dstName1, const TSString& dstName2);
// Copies src1 to dst1 (when src1 is not "") and src2 to dst2 (when src2 is
// not "").  A failed first copy deletes dst1; when src2 is "" its result is
// returned.  A failed second copy deletes dst2 and dst1 (when dst1 is not
// "") and returns its result; when the second succeeds the result is 0,
// whatever the first gave.
ZANSONG_EXPORT int CopyFiles2(const TSString& src1, const TSString& src2, const TSString& dst1,
                              const TSString& dst2);

// ---- Disk space (statfs; free = available blocks x block size) ----

// 1 when size(file1) + size(file2) + 1048576 < free space of dir, else 0.
// 1 without looking further when file1 is "" or cannot be stat'ed, or when
// statfs fails; a file2 that is "" or cannot be stat'ed counts 0 bytes.
ZANSONG_EXPORT int CheckDiskFree(const char* dir, const char* file1, const char* file2);
// 1 when need < free space of dir, else 0; 1 when statfs fails.
ZANSONG_EXPORT int CheckDiskFree(const char* dir, long long need);
// As CheckDiskFree(dir, need), and stores the free space in freeBytes (0,
// with the answer 1, when statfs fails).
ZANSONG_EXPORT int CheckAndGetDiskFree(const char* dir, long long need, long long& freeBytes);
// Total size of dir's file system in bytes; 0 when statfs fails.
ZANSONG_EXPORT long long GetDiskSize(const char* dir);
// The free space of dir as a text for the screen: DiskFreeText of it.
ZANSONG_EXPORT TSString GetDiskFreeString(const char* dir);

// ---- Digest and times ----

// The MD5 digest of the file's contents as 32 lower-case hex digits.  When
// the file cannot be opened, prints "<path> can't be opened.\n" and
// returns "".
ZANSONG_EXPORT TSString GetMD5(const char* path);
// The file's status-change (GetCreateTime) or modification (GetModifyTime)
// time as local asctime text without its line end, such as
// "Tue Mar  5 14:03:09 2024".  A failed stat is not detected.
ZANSONG_EXPORT TSString GetCreateTime(const char* path);
ZANSONG_EXPORT TSString GetModifyTime(const char* path);
// Sets the access and modification times of path.  With isEpoch, timeText
// is decimal seconds since the epoch (64-bit: dates after 2038 too; an
// overlong number saturates); otherwise it is local time in the
// form "%a %b  %d %H:%M:%S %Y" (two blanks after the month).  When the text
// does not parse, prints "\xC2\xA5nstrptime failed\xC2\xA5n" and uses what
// was parsed.  Always returns 0.
ZANSONG_EXPORT int SetModifyTime(const char* path, const char* timeText, bool isEpoch);

#endif  // ZANSONG_STORAGE_FILES_H_
