#include "ush_faults.h"

#include <dlfcn.h>

#include "ush.h"

namespace zansong_test {

UshFaults& Faults() {
  static UshFaults faults;
  return faults;
}

namespace {

// The library's own definition of name.
template <typename Function>
Function Next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

}  // namespace zansong_test

using zansong_test::Faults;
using zansong_test::Next;

extern "C" {

ush_st_io* ush_Exec_Fork(void) {
  ++Faults().forks;
  if (Faults().fork_fails) return nullptr;
  return Next<ush_st_io* (*)()>("ush_Exec_Fork")();
}

int ush_Exec_SendSignal(ush_st_io* child, int signal_number) {
  Faults().signals.push_back(signal_number);
  return Next<int (*)(ush_st_io*, int)>("ush_Exec_SendSignal")(child, signal_number);
}

ush_st_io* ush_Timer(void) {
  if (Faults().timer_fails) return nullptr;
  return Next<ush_st_io* (*)()>("ush_Timer")();
}

int ush_Timer_Start(ush_st_io* timer, int64_t interval_ms) {
  Faults().intervals.push_back(interval_ms);
  if (Faults().timer_held) return 0;
  return Next<int (*)(ush_st_io*, int64_t)>("ush_Timer_Start")(timer, interval_ms);
}

}  // extern "C"
