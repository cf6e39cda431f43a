// The working copy of a USB stick's catalogue, with a result.
//
// CopyUsbCatalogue(dir) and BackupUsbCatalogue(dir) do what the exported
// usbdb_copy and usbdb_backup do (which call them and drop the result), and
// return false when the catalogue file could not be copied ("DB copy error!"
// printed), true otherwise, also when there was nothing to copy.  Both
// replace their target atomically: the working copy, or the stick's
// catalogue, is either the old file or the whole new one, never a part.
// A failed JSON export is printed but does not change the result.
#ifndef ZANSONG_SRC_DB_USB_CATALOGUE_H_
#define ZANSONG_SRC_DB_USB_CATALOGUE_H_

namespace zansong {

bool CopyUsbCatalogue(const char* dir);
bool BackupUsbCatalogue(const char* dir);

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_USB_CATALOGUE_H_
