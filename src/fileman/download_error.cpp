// GetDownloadError: the message line of a download's result, handed back
// to the host instead of printed.
#include <cstring>

#include "fileman/message_table.h"
#include "zanmsg.h"
#include "zansong/common/tsstring.h"
#include "zansong/fileman/download.h"
#include "zansong/result_codes.h"

void GetDownloadError(int code, char* out) {
  if (out == nullptr) return;
  const int row = -code;
  // -41, one past the last row, reads as the empty row.
  if (row < 1 || row > kMsgRowCount) {
    std::strcpy(out, "<set_msgbox type=\"clear\" />\n");
    return;
  }
  const int label = zansong::ShownAsError(row) ? kLabelError : kLabelDownload;
  TSString line("<set_msgbox type=\"exclusive\" label=\"");
  line += msg_getXmlMsg(zansong::LabelKey(label));
  line += "\" msg=\"";
  line += msg_getXmlMsg(zansong::MessageKey(row));
  line += "\" button1=\"";
  line += msg_getXmlMsg("MSG_COMMON_OK");
  line += "\" />\n";
  std::strcpy(out, line.c_str());
}
