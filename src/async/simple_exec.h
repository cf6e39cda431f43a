// SimpleExec: one child process, forked through the event loop, and the
// channel (a pipe each way) to it.  SimpleTimer: one periodic timer of the
// event loop.  Both are registered with the loop by address (ush_Set_Par),
// so they must stay where they are while their handles live.
//
// SimpleExec::fork(work) makes the two pipes, forks, and in the child wraps
// its ends as the channel, runs work(channel) and ends at once with
// _exit(result) (no destructors, no exit handlers; an empty work throws the
// standard bad-call error there).  In the parent it installs the callbacks
// (the child's own output is read and discarded, read_handler runs when the
// channel has data, exit_handler gets the wait status when the child has
// ended) and returns the child handle.  Each process closes the pipe ends
// it does not use.  Returns null when a pipe or the fork failed (no child),
// and also when the parent's channel could not be made (the child then runs
// and is still waited for).
//
// The destructor dispatches events until the child has ended and then
// releases the channel.  The exit callback releases the child handle and
// sets child back to null.
//
// SimpleTimer's constructor makes the timer (timer stays null when that
// fails) and installs its callback, which drains the expiry count and runs
// tick_handler; the destructor releases it.
#ifndef ZANSONG_SRC_ASYNC_SIMPLE_EXEC_H_
#define ZANSONG_SRC_ASYNC_SIMPLE_EXEC_H_

#include <cstdint>
#include <functional>

#include "ush.h"

namespace zansong {

class SimpleExec {
 public:
  SimpleExec();
  ~SimpleExec();
  SimpleExec(const SimpleExec&) = delete;
  SimpleExec& operator=(const SimpleExec&) = delete;

  ush_st_io* fork(std::function<int(ush_st_io*)> work);

  static int on_read_dummy(ush_st_io* io);
  static int on_read_event(ush_st_io* io);
  static int on_wait_event(ush_st_io* io, int status);

  ush_st_io* child = nullptr;    // null while no child runs
  ush_st_io* channel = nullptr;  // the pipes to and from the child
  int32_t creator_pid;           // getpid() of the creating process
  int32_t spare = -1;            // kept -1; nothing reads it
  std::function<void(ush_st_io*)> read_handler;
  std::function<void(int)> exit_handler;
};

class SimpleTimer {
 public:
  SimpleTimer();
  ~SimpleTimer();
  SimpleTimer(const SimpleTimer&) = delete;
  SimpleTimer& operator=(const SimpleTimer&) = delete;

  static int on_read_event(ush_st_io* io);

  ush_st_io* timer = nullptr;  // null when the timer could not be made
  std::function<void()> tick_handler;
};

}  // namespace zansong

#endif  // ZANSONG_SRC_ASYNC_SIMPLE_EXEC_H_
