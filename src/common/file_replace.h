// Replacing a file so that a failure part-way never leaves it damaged.
//
// ReplaceWithCopy(from, to) copies the file from into a new temporary file
// in to's directory (named to + ".XXXXXX"), flushes it to the device
// (fsync), renames it over to and flushes to's directory, so that to is at
// every moment either the old file or the whole new one, also across a
// power loss.  The new file gets from's permission bits.  Returns true on
// success.  On any failure (from cannot be read, the directory is full or
// read-only, a write, flush or rename fails) the temporary file is removed,
// to is left as it was, errno tells the cause, and false is returned.
// Nothing is printed.
#ifndef ZANSONG_SRC_COMMON_FILE_REPLACE_H_
#define ZANSONG_SRC_COMMON_FILE_REPLACE_H_

#include <string>

namespace zansong {

bool ReplaceWithCopy(const std::string& from, const std::string& to);

}  // namespace zansong

#endif  // ZANSONG_SRC_COMMON_FILE_REPLACE_H_
