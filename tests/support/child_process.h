// Running a piece of test code in a forked child process, and taking
// privileges away from that child, so that permission failures can be
// provoked also when the tests run as root (for whom no mode bits count).
//
// RunInChild(fn) flushes stdout (so that nothing buffered is printed twice),
// forks, runs fn in the child and ends the child with _exit(fn() & 0xff):
// no exit handlers and no test-framework teardown run there.  It returns
// the child's exit status (0..255), or -1 when fork failed or the child did
// not exit normally (it was killed by a signal).  A negative result of fn
// therefore arrives as 256 + result.
//
// The other functions change the calling process and are meant for the
// child, from inside fn:
//  - DropToNobody() gives up root for the user nobody (getpwnam("nobody"),
//    else uid and gid 65534) with no supplementary groups.  A process that
//    does not run as root is already unprivileged and stays as it is.
//    Returns true on success.
//  - MakeDirReadOnlyForThisProcess(dir) makes dir read-only.  As root that
//    is a read-only bind mount of dir on itself in a private mount namespace,
//    seen by this process (and children it forks afterwards) only.  As an
//    ordinary user it is chmod 0555, which lasts beyond the process: the
//    test's temporary tree must be able to cope with it (DeviceImage does).
//    Returns true on success.
//  - MountTmpfsForThisProcess(dir, size) mounts a fresh tmpfs of the given
//    size (mount's size= text, such as "8g") on dir, seen by this process
//    (and children it forks afterwards) only: in a private mount namespace,
//    as root, or else in a user namespace of its own, where an ordinary user
//    may mount a tmpfs when the kernel allows such namespaces.  Returns true
//    on success.
//  - MountSmallFileSystemForThisProcess(dir, bytes) mounts an empty tmpfs
//    of the given size on dir in a private mount namespace (root only), so
//    that this process sees a nearly full device there once it fills it.
//    Returns false when it cannot (not root, no namespaces).
//  - FillFileSystemLeaving(dir, bytesFree) writes a filler file into dir
//    until at most about bytesFree bytes are left free.  True on success.
//
// RunAsNobody(fn) is RunInChild with DropToNobody() first; a child that
// cannot drop its privileges ends with kChildSetupFailed.  A child that
// cannot set itself up in some other way should end with kChildSetupFailed
// too, so that the test can tell that apart from fn's results.
//
// OpenPathToOthers(dir, top), in the test process, gives mode 0755 to dir
// and to every directory above it up to and including top, so that an
// unprivileged user can reach dir.  dir must lie inside top (or be top).
// Returns true when every chmod succeeded.
#ifndef ZANSONG_TESTS_SUPPORT_CHILD_PROCESS_H_
#define ZANSONG_TESTS_SUPPORT_CHILD_PROCESS_H_

#include <cstddef>
#include <functional>
#include <string>

namespace zansong_test {

constexpr int kChildSetupFailed = 77;

int RunInChild(const std::function<int()>& fn);
int RunAsNobody(const std::function<int()>& fn);

bool DropToNobody();
bool MakeDirReadOnlyForThisProcess(const std::string& dir);
bool MountTmpfsForThisProcess(const std::string& dir, const std::string& size);
bool MountSmallFileSystemForThisProcess(const std::string& dir, size_t bytes);
bool FillFileSystemLeaving(const std::string& dir, size_t bytesFree);

bool OpenPathToOthers(const std::string& dir, const std::string& top);

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_CHILD_PROCESS_H_
