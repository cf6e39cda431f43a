// The base64 decode step of the package decoders, and the file-name check
// that keeps a package's output inside its directory.
#include "storage/package_decode.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "common/handles.h"
#include "common/process.h"
#include "zansong/storage/files.h"
#include "zansong/storage/package.h"

namespace zansong {

bool IsSafePackageFileName(const TSString& name) {
  if (name.Length() == 0 || name[0] == '/' || name[name.Length() - 1] == '/') return false;
  int componentStart = 0;
  for (int i = 0; i <= name.Length(); ++i) {
    if (i == name.Length() || name[i] == '/') {
      const char* component = name.c_str() + componentStart;
      const int length = i - componentStart;
      if ((length == 1 && component[0] == '.') ||
          (length == 2 && component[0] == '.' && component[1] == '.')) {
        return false;
      }
      componentStart = i + 1;
      continue;
    }
    if (static_cast<unsigned char>(name[i]) < 0x20) return false;
  }
  return true;
}

namespace {

// True when name exists in the directory dirFd as a symbolic link.
bool IsLinkIn(int dirFd, const std::string& name) {
  struct stat st;
  return ::fstatat(dirFd, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(st.st_mode);
}

}  // namespace

ScopedFile CreateBase64File(const TSString& packageDir, const TSString& name, TSString* output) {
  *output = TSString();
  if (!IsSafePackageFileName(name)) return ScopedFile(nullptr);
  FileDescriptor dir(::open(packageDir.Length() > 0 ? packageDir.c_str() : "/",
                            O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Each directory below the package's own is entered without following a
  // link.
  std::string rest = name.c_str();
  for (size_t slash = rest.find('/'); dir.valid() && slash != std::string::npos;
       slash = rest.find('/')) {
    dir = FileDescriptor(::openat(dir.get(), rest.substr(0, slash).c_str(),
                                  O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    rest.erase(0, slash + 1);
  }
  if (!dir.valid()) return ScopedFile(nullptr);
  for (const char* suffix : {"", ".b64", ".bak"}) {
    if (IsLinkIn(dir.get(), rest + suffix)) return ScopedFile(nullptr);
  }
  FileDescriptor fd(::openat(dir.get(), (rest + ".b64").c_str(),
                             O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666));
  if (!fd.valid()) return ScopedFile(nullptr);
  ScopedFile stream(::fdopen(fd.get(), "wb"));
  if (!stream.valid()) return ScopedFile(nullptr);
  fd.release();
  *output = packageDir + "/" + name;
  return stream;
}

bool MoveWithProgram(const TSString& from, const TSString& to) {
  return RunProgram({"mv", "--", from.c_str(), to.c_str()}) == 0;
}

bool DecodeBase64File(const TSString& output) {
  const TSString backup = output + ".bak";
  const TSString base64 = output + ".b64";
  const bool existed = FileExists(output.c_str()) != 0;
  bool movedAside = false;
  if (existed) {
    movedAside = MoveWithProgram(output, backup);
    if (!movedAside) std::printf("error!\n");
  }
  // The base64 text is gathered without line ends, so openssl reads it as
  // one line (-A).  openssl also succeeds on text it cannot use, giving an
  // empty file: a song file is never empty, so that is a failure too.
  int status = RunProgram(
      {"openssl", "enc", "-d", "-A", "-base64", "-in", base64.c_str(), "-out", output.c_str()});
  struct stat st;
  if (status == 0 && ::stat(output.c_str(), &st) == 0 && st.st_size > 0) return true;

  if (movedAside) {
    if (!MoveWithProgram(backup, output)) std::printf("error!\n");
  } else if (!existed) {
    ::unlink(output.c_str());
  }
  std::printf("base64 error!\n");
  std::fflush(stdout);
  return false;
}

}  // namespace zansong

void FM_ChangeNoDirAndSpaceName(char* name, char* out, int len) {
  TSString result = ChangeNoDirAndSpaceName(name);
  if (result.Length() > 0 && out != nullptr && len > 0) std::strncpy(out, result.c_str(), len);
}
