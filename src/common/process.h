// External programs.  Every program the library starts (sqlite3, cp, mv,
// openssl, songdb2json, stripxp.sh, ...) goes through RunProgram: the
// program gets its arguments as a vector, with no shell in between, so that
// a quote, "$", backquote or ";" in a file name is just a character.
//
// RunProgram(argv, stdinPath, stdoutPath)
//   argv[0] is the program: a path, or a bare name looked up in PATH.
//   stdinPath, when not null, is opened read-only as the program's standard
//   input (as "< file" would); stdoutPath, when not null, is created or
//   truncated (mode 0666 before umask) as its standard output ("> file").
//   Standard output of this process is flushed first, so that lines printed
//   before the program ran reach the host before the program's own.
//   Returns the program's exit status (0 = success); 128 + n when signal n
//   ended it; 127 when it could not be started (no such program, or a
//   redirection that could not be opened); -1 when argv is empty.  Every
//   non-zero result is a failure.
//
// SyncFileSystems() flushes the file systems (sync), as the library does
// after each change to a catalogue or song file.
#ifndef ZANSONG_SRC_COMMON_PROCESS_H_
#define ZANSONG_SRC_COMMON_PROCESS_H_

#include <string>
#include <vector>

namespace zansong {

int RunProgram(const std::vector<std::string>& argv, const char* stdinPath = nullptr,
               const char* stdoutPath = nullptr);

void SyncFileSystems();

}  // namespace zansong

#endif  // ZANSONG_SRC_COMMON_PROCESS_H_
