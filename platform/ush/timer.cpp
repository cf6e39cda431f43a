// Periodic timers.
#include <event2/event.h>

#include "handle.h"

namespace {

bool IsTimer(const ush_st_io* io) { return io != nullptr && io->kind == ush_st_io::Kind::kTimer; }

void OnExpiry(evutil_socket_t, short, void* arg) {
  ush_st_io* timer = static_cast<ush_st_io*>(arg);
  ++timer->expiries;
  if (timer->read_callback != nullptr) timer->read_callback(timer);  // may free timer
}

}  // namespace

extern "C" {

ush_st_io* ush_Timer(void) {
  if (ush::Base() == nullptr) return nullptr;
  ush_st_io* timer = ush::NewHandle(ush_st_io::Kind::kTimer);
  timer->timer_event = event_new(ush::Base(), -1, EV_PERSIST, OnExpiry, timer);
  if (timer->timer_event == nullptr) {
    ush::FreeHandle(timer);
    return nullptr;
  }
  return timer;
}

int ush_Timer_Set_ReadEvent(ush_st_io* timer, ush_read_callback callback) {
  if (!IsTimer(timer)) return -1;
  timer->read_callback = callback;
  return 0;
}

int ush_Timer_Start(ush_st_io* timer, int64_t interval_ms) {
  if (!IsTimer(timer)) return -1;
  if (interval_ms < 1) interval_ms = 1;
  timeval tv{static_cast<time_t>(interval_ms / 1000),
             static_cast<suseconds_t>((interval_ms % 1000) * 1000)};
  return event_add(timer->timer_event, &tv) == 0 ? 0 : -1;
}

}  // extern "C"
