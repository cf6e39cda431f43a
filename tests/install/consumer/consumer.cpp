// A program outside the project that uses the installed library.
#include <zanmsg.h>
#include <zansong/zansong.h>

#include <cstdio>
#include <cstring>

int main() {
  FM_SetSystemRoot("/image");
  std::string tool = zansong::DevicePathFor(zansong::DevicePath::kSqlite3);
  if (tool != "/image/usr/local/bin/sqlite3") {
    std::printf("unexpected path %s\n", tool.c_str());
    return 1;
  }
  TSString s("abc");
  s.Insert("X", 1);
  if (!(s == "Xabc")) return 1;
  if (std::strcmp(msg_getXmlMsg("MSG_COMMON_COPY"), "Copy") != 0) return 1;
  std::printf("consumer ok\n");
  return 0;
}
