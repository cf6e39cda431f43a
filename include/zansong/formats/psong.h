// Song lists of older piano song disks, read from their text management
// file, and the readers of other old disk formats kept as empty operations.
//
// The management file is read as lines, each with its line end.  Line 1 must
// be exactly "PSONG   MNG   \r\n"; line 3 begins with "FILE" and its
// characters 5-7 hold the song count.  From line 4 on, header lines are
// counted until their lengths add up to at least 80; the song records (8
// lines each, of which the first four are read) follow.
//
// GetPsongInfo(path, songs) appends one TSongNameString per record, in file
// order (songs is not cleared first), and returns:
//   -1  the file cannot be loaded;
//    0  it has 3 lines or fewer, line 1 or line 3 is wrong, or the header
//       lines run out before 80 characters are counted;
//    the song count when every record was read;
//    the number of records read plus 1 when the file ends inside a record.
// CheckUpperLower(s): bit 0 when s has a letter A-Z, bit 1 when it has a-z;
//   3 as soon as a byte of 0x80 or above is met.
//
// The remaining functions do nothing and return 0.
#ifndef ZANSONG_FORMATS_PSONG_H_
#define ZANSONG_FORMATS_PSONG_H_

#include <list>
#include <string>
#include <vector>

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

struct TSongPara;

struct TSongNameString {
  int type = 1;       // 2 for the format word "SMF1", 3 for "KTVA", else 1
  TSString fileName;  // NAME.EXT, upper-cased ("NAME" without an extension)
  TSString title;     // 32 title characters with blanks collapsed
  TSString extra;     // the 7-character field, or ""
};

ZANSONG_EXPORT int GetPsongInfo(const char* path, std::vector<TSongNameString>& songs);
ZANSONG_EXPORT int CheckUpperLower(TSString& s);

ZANSONG_EXPORT int GetKTVInfo(const char* path, TSongPara* para, bool headOnly);
ZANSONG_EXPORT int GetPdiskInfo(const char* path, char* out);
ZANSONG_EXPORT int GetPsongInfo(const char* path, std::list<std::string>& names);
ZANSONG_EXPORT int GetPsongInfo(const char* path, std::list<std::string>& names,
                                std::list<std::string>& titles, std::list<int>& types,
                                std::list<std::string>& extras);
ZANSONG_EXPORT int GetPianoDirInfo(const char* path, char* out,
                                   std::vector<TSongNameString>& songs);
ZANSONG_EXPORT int GetPianoDirInfo(const char* path, char* out, std::list<std::string>& names,
                                   std::list<std::string>& titles);
ZANSONG_EXPORT int GetPianoDirInfo(const char* path, char* out, std::list<std::string>& names);
ZANSONG_EXPORT int GetPianoDirInfo(const char* path, char* out);
ZANSONG_EXPORT int GetTovikDirInfo(const char* path, const char* dir,
                                   std::vector<TSongNameString>& songs);
ZANSONG_EXPORT int CreatePianodirFil(const char* path, const char* dir, int count);
ZANSONG_EXPORT int ChangeTitleMX(TSString title, char* out, int size);
ZANSONG_EXPORT int FixKTVFile(const char* path, const char* dst, const char* title, char mode);
ZANSONG_EXPORT int FixSMFFile(const char* path, const char* dst, const char* title, int a, int b,
                              char mode);
ZANSONG_EXPORT int FixSongFile(const char* path, const char* dst, const char* title, int a, int b,
                               char mode);

#endif  // ZANSONG_FORMATS_PSONG_H_
