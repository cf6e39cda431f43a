// The instrument's paths as zanfm, the host, composes them: below the
// library's system root (FM_GetSystemRoot), as the instrument's file
// manager knows its own storage.  This is the one place of zanfm that
// spells them.
#ifndef ZANFM_HOST_PATHS_H_
#define ZANFM_HOST_PATHS_H_

#include <string>

namespace zanfm {

// The storage root: the internal song root when usb is "", else the root
// of the stick usb (such as "sda1").  Ends in "/".
std::string StorageRoot(const std::string& usb);
// The JSON export that usbdb_backup writes for the browser page.
std::string JsonExportPath();

}  // namespace zanfm

#endif  // ZANFM_HOST_PATHS_H_
