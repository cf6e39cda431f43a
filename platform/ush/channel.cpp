// Reading and writing handles: channels over descriptors, the child's
// output, and the expiry count of a timer.
#include <errno.h>
#include <event2/event.h>
#include <poll.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <string>

#include "handle.h"

namespace {

void OnReadable(evutil_socket_t, short, void* arg) {
  ush_st_io* io = static_cast<ush_st_io*>(arg);
  if (io->read_callback != nullptr) io->read_callback(io);  // may free io
}

// True when a read of fd would not block.
bool HasData(int fd) {
  pollfd p{fd, POLLIN, 0};
  int n;
  do {
    n = poll(&p, 1, 0);
  } while (n < 0 && errno == EINTR);
  return n > 0;
}

int ReadTimer(ush_st_io* io, char* buffer) {
  int n = std::snprintf(buffer, USH_READ_MAX + 1, "%llu",
                        static_cast<unsigned long long>(io->expiries));
  io->expiries = 0;
  return n;
}

}  // namespace

extern "C" {

ush_st_io* ush_Get_UshByFd(int read_fd, int write_fd) {
  if (read_fd < 0 && write_fd < 0) return nullptr;
  ush_st_io* io = ush::NewHandle(ush_st_io::Kind::kChannel);
  io->read_fd = read_fd;
  io->write_fd = write_fd;
  return io;
}

int ush_Set_ReadEvent(ush_st_io* io, ush_read_callback callback) {
  if (io == nullptr) return -1;
  if (io->kind == ush_st_io::Kind::kTimer) return ush_Timer_Set_ReadEvent(io, callback);
  io->read_callback = callback;
  if (callback == nullptr) {
    if (io->read_event != nullptr) event_free(io->read_event);
    io->read_event = nullptr;
    return 0;
  }
  if (io->read_fd < 0 || ush::Base() == nullptr) return -1;
  if (io->read_event == nullptr) {
    io->read_event = event_new(ush::Base(), io->read_fd, EV_READ | EV_PERSIST, OnReadable, io);
    if (io->read_event == nullptr) return -1;
  }
  return event_add(io->read_event, nullptr) == 0 ? 0 : -1;
}

int ush_ReadData(ush_st_io* io, char* buffer) {
  if (io == nullptr || buffer == nullptr) return -1;
  buffer[0] = '\0';
  if (io->kind == ush_st_io::Kind::kTimer) return ReadTimer(io, buffer);
  if (io->read_fd < 0) return -1;
  if (!HasData(io->read_fd)) return 0;
  ssize_t n;
  do {
    n = read(io->read_fd, buffer, USH_READ_MAX);
  } while (n < 0 && errno == EINTR);
  if (n <= 0) {
    ush::StopReading(io);  // the writer has closed it, or it failed
    return n == 0 ? 0 : -1;
  }
  buffer[n] = '\0';
  return static_cast<int>(n);
}

int ush_Printf(ush_st_io* io, const char* format, ...) {
  if (io == nullptr || format == nullptr || io->write_fd < 0) return -1;
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  if (length < 0) {
    va_end(args);
    return -1;
  }
  std::string text(static_cast<size_t>(length) + 1, '\0');
  std::vsnprintf(&text[0], text.size(), format, args);
  va_end(args);
  size_t done = 0;
  while (done < static_cast<size_t>(length)) {
    ssize_t n = write(io->write_fd, text.data() + done, length - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return -1;
    done += static_cast<size_t>(n);
  }
  return length;
}

}  // extern "C"
