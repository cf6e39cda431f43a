// The programs zanfm runs beside the library, and how it runs them.
//
// They are found relative to the running zanfm (/proc/self/exe), so that an
// installed zanfm works from any prefix: the image script make-image.sh
// (with the schema script zansong.sql and stripxp.sh beside it) in
// <prefix>/share/zansong/, the catalogue exporter songdb2json beside zanfm
// in <prefix>/bin/.  A zanfm run from the build tree, where neither lies
// there, uses the locations of the build.
//
// RunCommand(argv) starts argv[0] (a path, or a name looked up in PATH)
// with the arguments argv[1..], without a shell, and waits for it.  Returns
// its exit status; 128 + n when signal n ended it; 127 when it could not be
// started; -1 for an empty argv.
#ifndef ZANFM_PROGRAMS_H_
#define ZANFM_PROGRAMS_H_

#include <string>
#include <vector>

namespace zanfm {

std::string MakeImageScript();
std::string Songdb2jsonProgram();
int RunCommand(const std::vector<std::string>& argv);

}  // namespace zanfm

#endif  // ZANFM_PROGRAMS_H_
