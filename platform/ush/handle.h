// The handle behind every ush_st_io, and the loop's bookkeeping shared by
// the files of the stand-in.
//
// One event base serves the process.  It is made by the first call that
// needs it and freed again when the last handle is gone (outside a dispatch
// round), so that an idle process holds no descriptor of the loop.  While
// child handles exist, a SIGCHLD signal event is added to the base; its
// callback reaps the children that have ended (waitpid with WNOHANG) and
// runs their exit callbacks.
#ifndef USH_HANDLE_H_
#define USH_HANDLE_H_

#include <sys/types.h>

#include <cstdint>

#include "ush.h"

struct event;
struct event_base;

struct ush_st_io {
  enum class Kind { kChild, kChannel, kTimer };

  explicit ush_st_io(Kind k) : kind(k) {}

  Kind kind;
  void* par = nullptr;
  int type = 0;
  // Channel: both descriptors; child: the read end of the child's output.
  int read_fd = -1;
  int write_fd = -1;
  ush_read_callback read_callback = nullptr;
  event* read_event = nullptr;

  // Child.
  pid_t pid = 0;  // 0 in the child itself
  bool reaped = false;
  int status = 0;
  bool released = false;  // released by its owner before it was reaped
  bool exit_reported = false;
  ush_wait_callback wait_callback = nullptr;
  event* check_event = nullptr;  // checks for the child's end at the next round

  // Timer.
  event* timer_event = nullptr;
  uint64_t expiries = 0;
};

namespace ush {

// The process's event base, made when missing; null when it cannot be made.
event_base* Base();

// A new handle of the kind, registered with the loop.
ush_st_io* NewHandle(ush_st_io::Kind kind);
// True while the handle is registered (not yet freed).
bool IsLive(const ush_st_io* io);
// Frees the handle's events, closes its descriptors, unregisters and
// deletes it, and lets the loop go idle when nothing is left.
void FreeHandle(ush_st_io* io);

// Adds the SIGCHLD event (when missing); false on a failure.
bool WatchChildren();
// Reaps the child when it has ended and then runs its exit callback once
// (or frees it, when its owner has released it already).
void CheckChild(ush_st_io* child);
// In a freshly forked child: forgets the parent's loop without touching it
// (its descriptors and signal handler belong to the parent) and gives
// SIGCHLD back its default action.
void ForgetLoopInChild();
// Removes the SIGCHLD event when no child handle is left, and frees the base
// when no handle is left and no dispatch round is running.
void GoIdleIfUnused();

// Removes the handle's read event (the data has ended).
void StopReading(ush_st_io* io);

}  // namespace ush

#endif  // USH_HANDLE_H_
