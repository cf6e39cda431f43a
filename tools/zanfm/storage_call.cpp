// One library operation on a storage, with the result shown as a message.
#include "zanfm/storage_call.h"

#include <unistd.h>

#include <iostream>

#include "zanfm/host_paths.h"
#include "zanfm/message_view.h"
#include "zansong/async/cancel.h"
#include "zansong/db/dbman.h"
#include "zansong/fileman/messages.h"
#include "zansong/result_codes.h"

namespace zanfm {

int RunOnStorage(bool xml, const std::string& usb, int label, bool bracket,
                 const std::function<int(const std::string& root)>& fn, int* result) {
  std::string root = StorageRoot(usb);
  if (::access(root.c_str(), F_OK) != 0) {
    std::cerr << "zanfm: no storage at " << root << "\n";
    *result = kResultNoFile;
    return 1;
  }
  ClearCancelFlag();
  *result = RunShowingMessages(xml, [&] {
    const bool stick = bracket && !usb.empty();
    if (stick) usbdb_copy(&root[0]);
    int r = fn(root);
    if (stick) usbdb_backup(&root[0]);
    if (r == kResultOk) {
      PrintXmlMessageBox(label, kMsgComplete, 0, 0);
    } else if (r < 0 && r > -kMsgRowCount) {
      PrintErrorMessage(label, r);
    }
    return r;
  });
  return ExitStatus(*result);
}

int ExitStatus(int result) { return result == kResultOk ? 0 : 1; }

}  // namespace zanfm
