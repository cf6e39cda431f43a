// Readers and fixers of older disk and sequence formats.  The instrument no
// longer reads these; the entry points stay so that hosts linking them keep
// working, and each returns at once without touching anything.
#include "zansong/formats/psong.h"

int GetKTVInfo(const char*, TSongPara*, bool) { return 0; }
int GetPdiskInfo(const char*, char*) { return 0; }
int GetPsongInfo(const char*, std::list<std::string>&) { return 0; }
int GetPsongInfo(const char*, std::list<std::string>&, std::list<std::string>&, std::list<int>&,
                 std::list<std::string>&) {
  return 0;
}
int GetPianoDirInfo(const char*, char*, std::vector<TSongNameString>&) { return 0; }
int GetPianoDirInfo(const char*, char*, std::list<std::string>&, std::list<std::string>&) {
  return 0;
}
int GetPianoDirInfo(const char*, char*, std::list<std::string>&) { return 0; }
int GetPianoDirInfo(const char*, char*) { return 0; }
int GetTovikDirInfo(const char*, const char*, std::vector<TSongNameString>&) { return 0; }
int CreatePianodirFil(const char*, const char*, int) { return 0; }
int ChangeTitleMX(TSString, char*, int) { return 0; }
int FixKTVFile(const char*, const char*, const char*, char) { return 0; }
int FixSMFFile(const char*, const char*, const char*, int, int, char) { return 0; }
int FixSongFile(const char*, const char*, const char*, int, int, char) { return 0; }
