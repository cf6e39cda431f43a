// FH2_async: runs work over a list of targets in a forked child process
// while this process waits in the event loop (ush_Selects), shows progress
// and reacts to the cancel flag.
//
// FH2_async(targets, work, progress)
//   Forks a child that runs work(channel) and ends with _exit(its result);
//   channel is the child's end of a pipe pair to this process.  The child
//   reports each finished target by writing its zero-based index as "%d\n"
//   to channel (ush_Printf); this process keeps the last index read, count.
//   Progress, always called in this process:
//     - progress(0) at once when targets holds 20 or more elements;
//     - progress(count) every 500 ms while the child runs, unless the cancel
//       flag is set;
//     - progress(count + 1) at the end, when progress was shown before, the
//       child exited with 0 and the cancel flag is not set.
//   A read that brings several lines counts only its first number.
//   When the cancel flag is set while the child runs, the child is sent
//   signal 2 once and then waited for.
//   Returns -(the child's exit code): 0 when the child exited with 0 or was
//   ended by a signal (the caller reads GetCancelFlag() to tell a cancel),
//   -n for exit code n.  When no child could be started (a failed pipe or
//   fork) it returns 0, and progress(1) follows progress(0) for a list of 20
//   or more: a success-looking result the host relies on.  Without a timer
//   (ush_Timer failed) only the first and final reports can occur.
//   Only the number of targets is used.  No descriptor, child process or
//   zombie outlives the call.
#ifndef ZANSONG_ASYNC_RUNNER_H_
#define ZANSONG_ASYNC_RUNNER_H_

#include <functional>
#include <vector>

#include "zansong/async/targets.h"
#include "zansong/export.h"

struct ush_st_io;

ZANSONG_EXPORT int FH2_async(std::vector<TargetInfo>& targets, std::function<int(ush_st_io*)> work,
                             std::function<void(int)> progress);

#endif  // ZANSONG_ASYNC_RUNNER_H_
