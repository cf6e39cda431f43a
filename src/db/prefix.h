// Private: the playlist-prefix rule shared by the query and order code.
#ifndef ZANSONG_SRC_DB_PREFIX_H_
#define ZANSONG_SRC_DB_PREFIX_H_

#include <cstring>

namespace zansong {

// True for the prefixes "p" and "l", which select the playlist side.
inline bool IsPlaylistPrefix(const char* prefix) {
  return prefix != nullptr && (std::strcmp(prefix, "p") == 0 || std::strcmp(prefix, "l") == 0);
}

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_PREFIX_H_
