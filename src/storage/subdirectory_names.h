// The directories of one folder, for many existence tests at once.
#ifndef ZANSONG_SRC_STORAGE_SUBDIRECTORY_NAMES_H_
#define ZANSONG_SRC_STORAGE_SUBDIRECTORY_NAMES_H_

#include <set>
#include <string>

namespace zansong {

// The names of the directories in the directory parent (ending in "/"),
// upper-cased (ASCII letters only), read with one listing: parent + name
// passes DirExists exactly when the set holds name upper-cased, as long as
// the folder does not change.  Empty when parent does not exist.
std::set<std::string> SubdirectoryNamesUpper(const std::string& parent);

// name with its ASCII letters upper-cased, the key of the set above.
std::string UpperAsciiName(const std::string& name);

}  // namespace zansong

#endif  // ZANSONG_SRC_STORAGE_SUBDIRECTORY_NAMES_H_
