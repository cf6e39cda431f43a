// System root: every fixed absolute path of the device is composed as
// system root + path.  On the instrument the root is ""; tests and the
// command-line host point it at a device image (a directory that holds the
// same tree: usr/local/songs/, var/volatile/run/media/, tmp/, ...).
//
// FM_SetSystemRoot(prefix) sets the root; a null prefix means "".  A final
// "/" of the prefix is dropped, so "/x/" and "/x" are the same root.
// FM_GetSystemRoot() returns the current root ("" by default); the pointer
// stays valid until the next FM_SetSystemRoot.
#ifndef ZANSONG_COMMON_SYSROOT_H_
#define ZANSONG_COMMON_SYSROOT_H_

#include "zansong/export.h"

extern "C" {
ZANSONG_EXPORT void FM_SetSystemRoot(const char* prefix);
ZANSONG_EXPORT const char* FM_GetSystemRoot();
}

#endif  // ZANSONG_COMMON_SYSROOT_H_
