// Running one library operation on a storage as the instrument's file
// manager does: the cancel flag cleared, a stick's catalogue bracketed by
// usbdb_copy and usbdb_backup, the library's lines shown to a person, and
// the result shown as the message the user would see.
#ifndef ZANFM_STORAGE_CALL_H_
#define ZANFM_STORAGE_CALL_H_

#include <functional>
#include <string>

namespace zanfm {

// Runs fn(root) on the storage root of usb ("" for the internal storage),
// bracketed with usbdb_copy / usbdb_backup when bracket is set and usb is
// not "".  A result of 0 shows the "complete" message under label, a result
// code of the message table that message; any other result is returned
// as it is, for the caller to describe.  Prints a line to standard error
// and returns 1 when the storage does not exist.
int RunOnStorage(bool xml, const std::string& usb, int label, bool bracket,
                 const std::function<int(const std::string& root)>& fn, int* result);

// 0 for kResultOk, else 1: a program's exit status.
int ExitStatus(int result);

}  // namespace zanfm

#endif  // ZANFM_STORAGE_CALL_H_
