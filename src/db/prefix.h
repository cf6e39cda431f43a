// Private: the prefix tests shared by the query and order code and the
// catalogue operations.
#ifndef ZANSONG_SRC_DB_PREFIX_H_
#define ZANSONG_SRC_DB_PREFIX_H_

#include <cstring>

namespace zansong {

// True when prefix (which may be null) is the prefix wanted.
inline bool PrefixIs(const char* prefix, const char* wanted) {
  return prefix != nullptr && std::strcmp(prefix, wanted) == 0;
}

// True for the prefixes "p" and "l", which select the playlist side.
inline bool IsPlaylistPrefix(const char* prefix) {
  return PrefixIs(prefix, "p") || PrefixIs(prefix, "l");
}

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_PREFIX_H_
