// Feeds arbitrary bytes to the song package decoders as a downloaded
// package: the XML decoder, the line decoder and the unescaping step, each
// on its own copy in an empty folder.  Checks that an output name, when one
// is given, lies inside the package's folder, and that nothing appears
// outside it.
//
// The decoders start the base64 and move programs for their last step; a
// program started per input would measure process creation, not the
// decoders.  This target therefore stands in for them in process: "mv --
// FROM TO" renames, "openssl ... -in IN -out OUT" copies IN to OUT and fails
// on an empty or unaligned input, as a decoder that rejects it would.
#include <dirent.h>
#include <dlfcn.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_file.h"
#include "zansong/storage/package.h"

namespace {

constexpr pid_t kStandInPid = 0x7ffffff0;
int g_standInStatus = 0;

void Check(bool ok) {
  if (!ok) std::abort();
}

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The stand-in programs; the exit status.
int StandIn(const std::vector<std::string>& args) {
  if (args.size() == 4 && args[0] == "mv" && args[1] == "--") {
    return std::rename(args[2].c_str(), args[3].c_str()) == 0 ? 0 : 1;
  }
  if (!args.empty() && args[0] == "openssl") {
    std::string in, out;
    for (size_t i = 0; i + 1 < args.size(); ++i) {
      if (args[i] == "-in") in = args[i + 1];
      if (args[i] == "-out") out = args[i + 1];
    }
    const std::string text = ReadAll(in);
    if (text.empty() || text.size() % 4 != 0) return 1;
    std::ofstream(out, std::ios::binary) << text;
    return 0;
  }
  return 127;
}

// Removes every entry of dir (files only: the decoders make no folders).
void Empty(const std::string& dir) {
  DIR* d = opendir(dir.c_str());
  Check(d != nullptr);
  while (dirent* e = readdir(d)) {
    if (std::strcmp(e->d_name, ".") == 0 || std::strcmp(e->d_name, "..") == 0) continue;
    Check(unlink((dir + "/" + e->d_name).c_str()) == 0);
  }
  closedir(d);
}

// Entries of dir other than "." and "..".
int Entries(const std::string& dir) {
  DIR* d = opendir(dir.c_str());
  Check(d != nullptr);
  int n = 0;
  while (dirent* e = readdir(d)) {
    n += std::strcmp(e->d_name, ".") != 0 && std::strcmp(e->d_name, "..") != 0;
  }
  closedir(d);
  return n;
}

}  // namespace

extern "C" int posix_spawnp(pid_t* pid, const char*, const posix_spawn_file_actions_t*,
                            const posix_spawnattr_t*, char* const argv[], char* const[]) {
  std::vector<std::string> args;
  for (int i = 0; argv[i] != nullptr; ++i) args.push_back(argv[i]);
  g_standInStatus = StandIn(args);
  *pid = kStandInPid;
  return 0;
}

extern "C" pid_t waitpid(pid_t pid, int* status, int options) {
  if (pid == kStandInPid) {
    *status = g_standInStatus << 8;  // as an exit status
    return pid;
  }
  static auto real = reinterpret_cast<pid_t (*)(pid_t, int*, int)>(dlsym(RTLD_NEXT, "waitpid"));
  return real(pid, status, options);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string top = zansong_fuzz::ScratchDir();
  static const std::string dir = [] {
    std::string d = top + "/downloads";
    mkdir(d.c_str(), 0777);
    return d;
  }();
  const std::string package = dir + "/package.xml";
  const std::string input(reinterpret_cast<const char*>(data), size);

  for (int decoder = 0; decoder < 3; ++decoder) {
    Empty(dir);
    std::ofstream(package, std::ios::binary) << input;
    std::string output;
    if (decoder == 0) {
      // A package that does not parse leaves the buffers as they were.
      char name[512] = "";
      char ack[256] = "";
      FM_ChangeB64ToBin2(package.c_str(), name, sizeof name, ack, sizeof ack);
      output.assign(name, strnlen(name, sizeof name));
    } else if (decoder == 1) {
      output = ChangeB64ToBin(package.c_str()).c_str();
    } else {
      const int rc = ChangeXmlToSelf(package.c_str());
      Check(rc == 0 || rc == -1 || rc == -3);
    }
    if (!output.empty()) {
      Check(output.compare(0, dir.size() + 1, dir + "/") == 0);
      Check(output.find("/../") == std::string::npos);
    }
    Check(Entries(top) == 1);  // the folder itself, nothing beside it
  }
  std::fflush(stdout);
  return 0;
}
