// The process-wide cancel flag.
//
// The host raises the flag when the user asks a running operation to stop;
// the library only reads it, at fixed points of its work (before each
// 512-byte block of a file copy, between the steps of a registration scan,
// while it waits for a child process, before each target of a copy list).
// The library itself never sets or clears it.
//
// The flag is false when the library is loaded and stays as last set until
// the host changes it.  It may be set from a signal handler (the flag is a
// sig_atomic_t), so SetCancelFlag is async-signal-safe.  A forked child has
// its own copy, as it stood at the fork.
//
//   ClearCancelFlag()  sets the flag to false.
//   SetCancelFlag()    sets the flag to true.
//   GetCancelFlag()    returns the flag.
#ifndef ZANSONG_ASYNC_CANCEL_H_
#define ZANSONG_ASYNC_CANCEL_H_

#include "zansong/export.h"

ZANSONG_EXPORT void ClearCancelFlag();
ZANSONG_EXPORT void SetCancelFlag();
ZANSONG_EXPORT bool GetCancelFlag();

#endif  // ZANSONG_ASYNC_CANCEL_H_
