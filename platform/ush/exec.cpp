// Child processes: fork with the child's output as readable data, the exit
// event, signals, release.
#include <errno.h>
#include <event2/event.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "handle.h"

namespace {

bool IsChild(const ush_st_io* io) { return io != nullptr && io->kind == ush_st_io::Kind::kChild; }

void OnCheck(evutil_socket_t, short, void* arg) { ush::CheckChild(static_cast<ush_st_io*>(arg)); }

}  // namespace

namespace ush {

void CheckChild(ush_st_io* child) {
  if (!child->reaped && child->pid > 0) {
    int status = 0;
    pid_t r;
    do {
      r = waitpid(child->pid, &status, WNOHANG);
    } while (r < 0 && errno == EINTR);
    if (r == child->pid) {
      child->reaped = true;
      child->status = status;
    } else if (r < 0) {
      child->reaped = true;  // reaped by someone else: its status is lost
    }
  }
  if (!child->reaped) return;
  if (child->released) {
    FreeHandle(child);
  } else if (child->wait_callback != nullptr && !child->exit_reported) {
    child->exit_reported = true;
    child->wait_callback(child, child->status);  // may free child
  }
}

}  // namespace ush

extern "C" {

ush_st_io* ush_Exec_Fork(void) {
  if (!ush::WatchChildren()) return nullptr;
  int output[2];
  if (pipe2(output, O_CLOEXEC) != 0) {
    ush::GoIdleIfUnused();
    return nullptr;
  }
  std::fflush(stdout);  // nothing buffered is printed twice
  pid_t pid = fork();
  if (pid < 0) {
    close(output[0]);
    close(output[1]);
    ush::GoIdleIfUnused();
    return nullptr;
  }
  if (pid == 0) {
    ush::ForgetLoopInChild();
    dup2(output[1], STDOUT_FILENO);
    close(output[0]);
    close(output[1]);
    return ush::NewHandle(ush_st_io::Kind::kChild);  // pid 0
  }
  close(output[1]);
  ush_st_io* child = ush::NewHandle(ush_st_io::Kind::kChild);
  child->pid = pid;
  child->read_fd = output[0];
  child->check_event = event_new(ush::Base(), -1, 0, OnCheck, child);
  return child;
}

int ush_Exec_Pid(ush_st_io* child) { return IsChild(child) ? static_cast<int>(child->pid) : -1; }

int ush_Exec_Set_WaitEvent(ush_st_io* child, ush_wait_callback callback) {
  if (!IsChild(child) || child->pid == 0) return -1;
  child->wait_callback = callback;
  // The child may have ended (and been reaped) before the callback was set:
  // look again at the next round.
  if (callback != nullptr && child->check_event != nullptr) event_active(child->check_event, 0, 0);
  return 0;
}

int ush_Exec_SendSignal(ush_st_io* child, int signal_number) {
  if (!IsChild(child) || child->pid <= 0 || child->reaped) return -1;
  return kill(child->pid, signal_number) == 0 ? 0 : -1;
}

int ush_Exec_Release(ush_st_io* child) {
  if (!IsChild(child)) return -1;
  if (child->pid > 0 && !child->reaped) {
    // Still running, or ended and not yet reaped: close what the owner used
    // and let the loop reap it.
    if (child->read_event != nullptr) event_free(child->read_event);
    child->read_event = nullptr;
    if (child->read_fd >= 0) close(child->read_fd);
    child->read_fd = -1;
    child->released = true;
    child->par = nullptr;
    ush::CheckChild(child);  // frees it at once when it has ended
    return 0;
  }
  ush::FreeHandle(child);
  return 0;
}

}  // extern "C"
