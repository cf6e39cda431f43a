#include "async/simple_exec.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "common/handles.h"

namespace zansong {
namespace {

// The loop fills at most USH_READ_MAX bytes and a NUL.
constexpr size_t kChildOutputBuffer = 1028;
constexpr size_t kTimerBuffer = 1024;
static_assert(kChildOutputBuffer > USH_READ_MAX && kTimerBuffer > USH_READ_MAX,
              "read buffers hold what the loop reads");

// A pipe whose ends are owned; both invalid when pipe failed.
struct Pipe {
  FileDescriptor read_end;
  FileDescriptor write_end;
  bool Open() {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) return false;
    read_end = FileDescriptor(fds[0]);
    write_end = FileDescriptor(fds[1]);
    return true;
  }
};

// Wraps the two ends as one channel handle, which then owns them; null (and
// the ends still owned here) on a failure.
ush_st_io* MakeChannel(FileDescriptor& read_end, FileDescriptor& write_end) {
  ush_st_io* channel = ush_Get_UshByFd(read_end.get(), write_end.get());
  if (channel != nullptr) {
    read_end.Release();
    write_end.Release();
  }
  return channel;
}

}  // namespace

SimpleExec::SimpleExec() : creator_pid(static_cast<int32_t>(::getpid())) {}

SimpleExec::~SimpleExec() {
  while (child != nullptr) {
    if (ush_Selects(-1) != 0) {
      // The loop cannot wait any more: leave the child to be reaped by it.
      ush_Exec_Release(std::exchange(child, nullptr));
    }
  }
  if (channel != nullptr) ush_Release_Ush(std::exchange(channel, nullptr));
}

ush_st_io* SimpleExec::fork(std::function<int(ush_st_io*)> work) {
  Pipe to_parent;  // A: the child writes, the parent reads
  Pipe to_child;   // B: the parent writes, the child reads
  if (!to_parent.Open() || !to_child.Open()) return nullptr;

  child = ush_Exec_Fork();
  if (child == nullptr) return nullptr;

  if (ush_Exec_Pid(child) == 0) {
    to_parent.read_end.Close();
    to_child.write_end.Close();
    channel = MakeChannel(to_child.read_end, to_parent.write_end);
    ::_exit(work(channel));
  }

  ush_Set_Par(child, this);
  ush_Set_ReadEvent(child, on_read_dummy);
  ush_Exec_Set_WaitEvent(child, on_wait_event);

  to_parent.write_end.Close();
  to_child.read_end.Close();
  channel = MakeChannel(to_parent.read_end, to_child.write_end);
  if (channel == nullptr) return nullptr;
  spare = -1;
  ush_Set_Par(channel, this);
  ush_Set_Type(channel, -1);
  ush_Set_ReadEvent(channel, on_read_event);
  return child;
}

int SimpleExec::on_read_dummy(ush_st_io* io) {
  char discarded[kChildOutputBuffer];
  ush_ReadData(io, discarded);
  return 0;
}

int SimpleExec::on_read_event(ush_st_io* io) {
  SimpleExec* self = static_cast<SimpleExec*>(ush_Get_Par(io));
  if (self != nullptr && self->read_handler) self->read_handler(io);
  return 0;
}

int SimpleExec::on_wait_event(ush_st_io* io, int status) {
  SimpleExec* self = static_cast<SimpleExec*>(ush_Get_Par(io));
  ush_Exec_Release(io);
  if (self == nullptr) return 0;
  self->child = nullptr;
  if (self->exit_handler) self->exit_handler(status);
  return 0;
}

SimpleTimer::SimpleTimer() : timer(ush_Timer()) {
  if (timer != nullptr) {
    ush_Set_Par(timer, this);
    ush_Timer_Set_ReadEvent(timer, on_read_event);
  }
}

SimpleTimer::~SimpleTimer() {
  if (timer != nullptr) ush_Release_Ush(timer);
}

int SimpleTimer::on_read_event(ush_st_io* io) {
  char expiries[kTimerBuffer];
  std::memset(expiries, 0, sizeof(expiries));
  ush_ReadData(io, expiries);
  SimpleTimer* self = static_cast<SimpleTimer*>(ush_Get_Par(io));
  if (self != nullptr && self->tick_handler) self->tick_handler();
  return 0;
}

}  // namespace zansong
