#include "support/child_process.h"

#include <grp.h>
#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace zansong_test {

namespace {

// path without its final slashes ("/a/b/" -> "/a/b"); "/" stays "/".
std::string WithoutFinalSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

// Moves this process into a mount namespace of its own that passes no new
// mounts back to the parent's.  nsFlags: the extra namespaces to unshare.
bool EnterPrivateMountNamespace(int nsFlags) {
  return unshare(CLONE_NEWNS | nsFlags) == 0 &&
         mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

int RunInChild(const std::function<int()>& fn) {
  std::fflush(stdout);
  pid_t pid = fork();
  if (pid < 0) return -1;
  if (pid == 0) _exit(fn() & 0xff);
  int status = 0;
  if (waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

int RunAsNobody(const std::function<int()>& fn) {
  return RunInChild([&fn] { return DropToNobody() ? fn() : kChildSetupFailed; });
}

bool DropToNobody() {
  if (geteuid() != 0) return true;
  uid_t uid = 65534;
  gid_t gid = 65534;
  if (const struct passwd* nobody = getpwnam("nobody")) {
    uid = nobody->pw_uid;
    gid = nobody->pw_gid;
  }
  // The groups first: once the user id is gone, they can no longer change.
  return setgroups(0, nullptr) == 0 && setgid(gid) == 0 && setuid(uid) == 0;
}

bool MakeDirReadOnlyForThisProcess(const std::string& dir) {
  if (geteuid() != 0) return chmod(dir.c_str(), 0555) == 0;
  return EnterPrivateMountNamespace(0) &&
         mount(dir.c_str(), dir.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
         mount(nullptr, dir.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

bool MountTmpfsForThisProcess(const std::string& dir, const std::string& size) {
  const int nsFlags = geteuid() == 0 ? 0 : CLONE_NEWUSER;
  const std::string options = "size=" + size + ",mode=0777";
  return EnterPrivateMountNamespace(nsFlags) &&
         mount("tmpfs", dir.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

bool MountSmallFileSystemForThisProcess(const std::string& dir, size_t bytes) {
  if (geteuid() != 0) return false;
  const std::string options = "size=" + std::to_string(bytes);
  return unshare(CLONE_NEWNS) == 0 &&
         mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("tmpfs", dir.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

bool FillFileSystemLeaving(const std::string& dir, size_t bytesFree) {
  struct statvfs fs;
  if (statvfs(dir.c_str(), &fs) != 0) return false;
  const unsigned long long available =
      static_cast<unsigned long long>(fs.f_bavail) * static_cast<unsigned long long>(fs.f_frsize);
  if (available <= bytesFree) return true;
  unsigned long long left = available - bytesFree;
  const std::string filler = dir + "/filler.bin";
  FILE* file = std::fopen(filler.c_str(), "wb");
  if (file == nullptr) return false;
  const std::string block(4096, 'f');
  bool ok = true;
  while (left > 0 && ok) {
    const size_t n = left < block.size() ? static_cast<size_t>(left) : block.size();
    ok = std::fwrite(block.data(), 1, n, file) == n;
    left -= n;
  }
  return std::fclose(file) == 0 && ok;
}

bool OpenPathToOthers(const std::string& dir, const std::string& top) {
  const std::string last = WithoutFinalSlashes(top);
  std::string path = WithoutFinalSlashes(dir);
  bool ok = true;
  // Each directory strictly inside top, from dir upwards.
  while (path.size() > last.size() && path.compare(0, last.size(), last) == 0 &&
         (last == "/" || path[last.size()] == '/')) {
    if (chmod(path.c_str(), 0755) != 0) ok = false;
    path.erase(path.rfind('/'));
    if (path.empty()) path = "/";
  }
  if (path != last) return false;  // dir does not lie inside top
  return chmod(last.c_str(), 0755) == 0 && ok;
}

}  // namespace zansong_test
