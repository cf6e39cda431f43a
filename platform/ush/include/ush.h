/* The instrument's event loop: child processes with an exit event, data
 * channels over file descriptors with a read event, periodic timers, and a
 * dispatch call that waits for events and runs their callbacks.  The stand-in
 * built here runs on libevent; the instrument's own library replaces it.
 *
 * Handles (ush_st_io, always used by pointer) are of three kinds:
 *  - a child handle, from ush_Exec_Fork: one forked child process, the
 *    standard output of the child as its readable data, and the child's end
 *    as its exit event;
 *  - a channel handle, from ush_Get_UshByFd: a read descriptor and a write
 *    descriptor, owned by the handle from then on;
 *  - a timer handle, from ush_Timer.
 * Every handle carries one user pointer (ush_Set_Par / ush_Get_Par) and a
 * type code (ush_Set_Type), which the stand-in stores and does not use.
 *
 * Callbacks run only from inside ush_Selects, one at a time, in the thread
 * that called it; their int result is ignored.  A callback may release its
 * own handle.  Functions that return int give 0 on success and -1 on a
 * failure (a null handle, a handle of the wrong kind, a failed system call)
 * unless stated otherwise.
 *
 * ush_Exec_Fork()  flushes standard output, forks, and returns a child
 *   handle in both processes; null (and no child) when the fork failed.  In
 *   the child, standard output becomes a pipe to the parent (read through
 *   the child handle's read event), SIGCHLD is back to its default action,
 *   and the loop of the parent is not usable: the child only writes to its
 *   channels (ush_Printf) and ends with _exit.
 * ush_Exec_Pid(h)  the child's process id in the parent; 0 in the child;
 *   -1 for a handle that is not a child handle.
 * ush_Exec_Set_WaitEvent(h, cb)  cb(h, status) runs once, from ush_Selects,
 *   after the child has ended; status is the wait status of waitpid.  The
 *   child is reaped by the loop, so no zombie remains.
 * ush_Exec_SendSignal(h, sig)  kill(pid, sig); -1 once the child is reaped.
 * ush_Exec_Release(h)  frees a child handle and its output pipe.  A child
 *   that still runs is left to end on its own; the loop reaps it at a later
 *   dispatch, and ush_Exec_Release reaps it at once when it has already
 *   ended.
 * ush_Get_UshByFd(rfd, wfd)  a channel handle owning both descriptors
 *   (either may be -1); null on a failure, with the descriptors untouched.
 * ush_Set_ReadEvent(h, cb)  cb(h) runs from ush_Selects while the handle's
 *   read descriptor (for a child handle: the child's output) has data, or
 *   has reached its end; a null cb removes the event.  Once ush_ReadData
 *   finds the end of the data (the writer closed it) or a read error, the
 *   handle's read event is removed.
 * ush_ReadData(h, buf)  reads what is waiting, at most USH_READ_MAX bytes,
 *   into buf and writes a NUL after them: buf must hold USH_READ_MAX + 1
 *   bytes.  Returns the byte count, 0 at the end of the data or when nothing
 *   waits, -1 on an error.  For a timer handle, reads the decimal number of
 *   expiries since the last read ("0" when none).  Never blocks.
 * ush_Printf(h, fmt, ...)  formats as printf and writes all of it to the
 *   handle's write descriptor; returns the byte count, or -1.
 * ush_Selects(timeout_ms)  one dispatch round: waits until at least one
 *   event is ready (forever when timeout_ms is negative, at most timeout_ms
 *   milliseconds otherwise), runs the callbacks of the ready events and
 *   returns 0.  Returns 1 at once when no event is registered (nothing
 *   could ever end the wait), -1 on an error.
 * ush_Release_Ush(h)  closes and frees a channel or timer handle (a child
 *   handle is released as by ush_Exec_Release).  Null is accepted.
 * ush_Timer()  a stopped timer handle; null on a failure.
 * ush_Timer_Set_ReadEvent(h, cb)  cb(h) runs at each expiry.
 * ush_Timer_Start(h, interval_ms)  starts (or restarts) the timer so that
 *   it expires every interval_ms milliseconds (at least 1).
 */
#ifndef USH_H_
#define USH_H_

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define USH_READ_MAX 255

#define USH_API __attribute__((visibility("default")))

typedef struct ush_st_io ush_st_io;
typedef int (*ush_read_callback)(ush_st_io* io);
typedef int (*ush_wait_callback)(ush_st_io* io, int status);

USH_API ush_st_io* ush_Exec_Fork(void);
USH_API int ush_Exec_Pid(ush_st_io* child);
USH_API int ush_Exec_Set_WaitEvent(ush_st_io* child, ush_wait_callback callback);
USH_API int ush_Exec_SendSignal(ush_st_io* child, int signal_number);
USH_API int ush_Exec_Release(ush_st_io* child);

USH_API ush_st_io* ush_Get_UshByFd(int read_fd, int write_fd);
USH_API int ush_Set_Par(ush_st_io* io, void* par);
USH_API void* ush_Get_Par(ush_st_io* io);
USH_API int ush_Set_Type(ush_st_io* io, int type);
USH_API int ush_Set_ReadEvent(ush_st_io* io, ush_read_callback callback);
USH_API int ush_ReadData(ush_st_io* io, char* buffer);
USH_API int ush_Printf(ush_st_io* io, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
USH_API int ush_Release_Ush(ush_st_io* io);

USH_API int ush_Selects(int timeout_ms);

USH_API ush_st_io* ush_Timer(void);
USH_API int ush_Timer_Set_ReadEvent(ush_st_io* timer, ush_read_callback callback);
USH_API int ush_Timer_Start(ush_st_io* timer, int64_t interval_ms);

#ifdef __cplusplus
}
#endif

#endif /* USH_H_ */
