// Private: making the working copy of a stick's catalogue that of this
// stick before an operation opens it.
//
// The working copy ("/tmp/.zansong.db" below the system root) is shared by
// whichever stick was worked on last, and InitDB keeps an existing one as
// it is.  An operation that writes the working copy back to its stick at
// the end (usbdb_backup) must therefore start from this stick's catalogue,
// or it would write another stick's rows over it.
//
// RefreshWorkingCopy(root): for a USB stick root (root ends in "/"), copies
// the stick's catalogue over the working copy (usbdb_copy) or, when the
// stick has none yet, removes the working copy so that InitDB makes a new
// catalogue.  Does nothing for any other root.
#ifndef ZANSONG_SRC_FILEMAN_WORKING_COPY_H_
#define ZANSONG_SRC_FILEMAN_WORKING_COPY_H_

#include "zansong/common/tsstring.h"

namespace zansong {

void RefreshWorkingCopy(const TSString& root);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_WORKING_COPY_H_
