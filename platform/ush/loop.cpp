// The event base, the registry of handles, the dispatch round and the
// calls common to every kind of handle.
#include <event2/event.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <vector>

#include "handle.h"

namespace ush {
namespace {

event_base* base = nullptr;
event* child_signal_event = nullptr;
std::vector<ush_st_io*> handles;
bool dispatching = false;

bool AnyChild() {
  return std::any_of(handles.begin(), handles.end(),
                     [](const ush_st_io* io) { return io->kind == ush_st_io::Kind::kChild; });
}

// SIGCHLD: any child may have ended.  Callbacks may free handles, so the
// list is copied and each handle looked up again before it is checked.
void OnChildSignal(evutil_socket_t, short, void*) {
  std::vector<ush_st_io*> children;
  for (ush_st_io* io : handles) {
    if (io->kind == ush_st_io::Kind::kChild) children.push_back(io);
  }
  for (ush_st_io* child : children) {
    if (IsLive(child)) CheckChild(child);
  }
}

void OnTimeout(evutil_socket_t, short, void*) {}

}  // namespace

event_base* Base() {
  if (base == nullptr) base = event_base_new();
  return base;
}

ush_st_io* NewHandle(ush_st_io::Kind kind) {
  ush_st_io* io = new ush_st_io(kind);
  handles.push_back(io);
  return io;
}

bool IsLive(const ush_st_io* io) {
  return io != nullptr && std::find(handles.begin(), handles.end(), io) != handles.end();
}

void FreeHandle(ush_st_io* io) {
  handles.erase(std::remove(handles.begin(), handles.end(), io), handles.end());
  for (event* ev : {io->read_event, io->check_event, io->timer_event}) {
    if (ev != nullptr) event_free(ev);
  }
  if (io->read_fd >= 0) close(io->read_fd);
  if (io->write_fd >= 0 && io->write_fd != io->read_fd) close(io->write_fd);
  delete io;
  GoIdleIfUnused();
}

bool WatchChildren() {
  if (child_signal_event != nullptr) return true;
  if (Base() == nullptr) return false;
  child_signal_event = evsignal_new(base, SIGCHLD, OnChildSignal, nullptr);
  if (child_signal_event == nullptr) return false;
  if (event_add(child_signal_event, nullptr) != 0) {
    event_free(child_signal_event);
    child_signal_event = nullptr;
    return false;
  }
  return true;
}

void GoIdleIfUnused() {
  if (child_signal_event != nullptr && !AnyChild()) {
    event_free(child_signal_event);  // gives SIGCHLD its former action back
    child_signal_event = nullptr;
  }
  if (base != nullptr && handles.empty() && !dispatching) {
    event_base_free(base);
    base = nullptr;
  }
}

void ForgetLoopInChild() {
  // The parent's base, events and handles are left as they are (and never
  // freed here): freeing them would change the parent's epoll set.
  base = nullptr;
  child_signal_event = nullptr;
  handles.clear();
  std::signal(SIGCHLD, SIG_DFL);
}

void StopReading(ush_st_io* io) {
  if (io->read_event != nullptr) event_del(io->read_event);
}

}  // namespace ush

using ush::Base;

extern "C" {

int ush_Selects(int timeout_ms) {
  if (Base() == nullptr) return -1;
  if (event_base_get_num_events(Base(), EVENT_BASE_COUNT_ADDED) == 0) {
    ush::GoIdleIfUnused();
    return 1;
  }
  event* timeout = nullptr;
  if (timeout_ms >= 0) {
    timeout = evtimer_new(Base(), ush::OnTimeout, nullptr);
    if (timeout == nullptr) return -1;
    timeval tv{timeout_ms / 1000, (timeout_ms % 1000) * 1000};
    evtimer_add(timeout, &tv);
  }
  ush::dispatching = true;
  int result = event_base_loop(Base(), EVLOOP_ONCE);
  ush::dispatching = false;
  if (timeout != nullptr) event_free(timeout);
  ush::GoIdleIfUnused();
  return result < 0 ? -1 : 0;
}

int ush_Set_Par(ush_st_io* io, void* par) {
  if (io == nullptr) return -1;
  io->par = par;
  return 0;
}

void* ush_Get_Par(ush_st_io* io) { return io == nullptr ? nullptr : io->par; }

int ush_Set_Type(ush_st_io* io, int type) {
  if (io == nullptr) return -1;
  io->type = type;
  return 0;
}

int ush_Release_Ush(ush_st_io* io) {
  if (io == nullptr) return 0;
  if (io->kind == ush_st_io::Kind::kChild) return ush_Exec_Release(io);
  ush::FreeHandle(io);
  return 0;
}

}  // extern "C"
