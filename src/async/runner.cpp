#include "zansong/async/runner.h"

#include <cstdlib>
#include <utility>

#include "async/simple_exec.h"
#include "zansong/async/cancel.h"

namespace {

// Lists of this many targets or more show progress from the start.
constexpr size_t kProgressAtOnceTargets = 20;
constexpr int64_t kTimerPeriodMs = 500;
constexpr int kCancelSignal = 2;
// The progress line read from the child: USH_READ_MAX bytes and a NUL.
constexpr size_t kProgressBuffer = 256;
static_assert(kProgressBuffer > USH_READ_MAX, "the progress buffer holds what the loop reads");

// The exit code in a wait status (bits 8 to 15).
int ExitCode(int status) { return (status >> 8) & 0xff; }

}  // namespace

int FH2_async(std::vector<TargetInfo>& targets, std::function<int(ush_st_io*)> work,
              std::function<void(int)> progress) {
  int result = 0;
  int count = 0;
  int shown = 0;
  auto report = [&progress](int n) {
    if (progress) progress(n);
  };

  zansong::SimpleExec exec;
  zansong::SimpleTimer timer;

  if (targets.size() >= kProgressAtOnceTargets) {
    shown = 1;
    report(count);
  }

  timer.tick_handler = [&] {
    if (GetCancelFlag()) return;
    shown = 1;
    report(count);
  };
  exec.read_handler = [&count](ush_st_io* io) {
    char text[kProgressBuffer] = {};
    if (ush_ReadData(io, text) > 0) count = std::atoi(text);
  };
  exec.exit_handler = [&result](int status) { result = ExitCode(status); };

  exec.fork(work);  // on a failure child stays null and the loops end at once

  if (timer.timer != nullptr) ush_Timer_Start(timer.timer, kTimerPeriodMs);

  while (exec.child != nullptr) {
    if (GetCancelFlag()) {
      ush_Exec_SendSignal(exec.child, kCancelSignal);
      break;
    }
    if (ush_Selects(-1) != 0) break;  // the destructor takes over the wait
  }
  while (exec.child != nullptr) {
    if (ush_Selects(-1) != 0) break;
  }

  if (result == 0 && shown == 1 && !GetCancelFlag()) report(count + 1);
  return -result;
}
