// A program outside the project that uses the installed library.
#include <ush.h>
#include <zanmsg.h>
#include <zansong/zansong.h>

#include <cstdio>
#include <cstring>

// The named numbers come with the installed headers.
static_assert(kResultAlbumFull == -kMsgLimitSongs999 && kAlbumSongLimit == 999,
              "result codes and limits");

int main() {
  FM_SetSystemRoot("/image/");
  if (std::strcmp(FM_GetSystemRoot(), "/image") != 0) {
    std::printf("unexpected system root %s\n", FM_GetSystemRoot());
    return 1;
  }
  TSString s("abc");
  s.Insert("X", 1);
  if (!(s == "Xabc")) return 1;
  if (std::strcmp(msg_getXmlMsg("MSG_COMMON_COPY"), "Copy") != 0) return 1;
  // The event loop comes with the package: with nothing registered, a
  // dispatch round returns at once.
  if (ush_Selects(-1) != 1) return 1;
  std::printf("consumer ok\n");
  return 0;
}
