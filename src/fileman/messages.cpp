#include "zansong/fileman/messages.h"

#include <cstdio>

#include "fileman/message_table.h"
#include "zanmsg.h"
#include "zansong/common/tsstring.h"
#include "zansong/result_codes.h"

namespace {

// Box titles, by label index.
constexpr const char* kLabelKeys[] = {
    "",
    "MSG_COMMON_COPY",
    "MSG_COMMON_DELETE",
    "MSG_COMMON_PLAYLIST",
    "MSG_FILEMAN_CHANGE_ORDER",
    "MSG_COMMON_RENAME",
    "MSG_COMMON_DOWNLOAD",
    "MSG_FILEMAN_STRIP_XP",
    "MSG_COMMON_ALBUM",
    "MSG_COMMON_RECORD",
    "MSG_COMMON_ERROR",
};

// One row of the message table.  The row number is also the (negated)
// result code of the failure the message explains.  A waiting row is a
// progress box that stays up while work goes on.
struct MessageRow {
  const char* key;
  bool wait;
};

constexpr MessageRow kMessageRows[] = {
    {"MSG_COMMON_COMPLETE", false},
    {"MSG_FILEMAN_COPYING", true},
    {"MSG_FILEMAN_DELETING", true},
    {"MSG_FILEMAN_REFRESHING", true},
    {"MSG_FILEMAN_REGISTERING", true},
    {"MSG_FILEMAN_UNREGISTERING", true},
    {"MSG_FILEMAN_FORMATTING", true},
    {"MSG_FILEMAN_SCANNING_USB", true},
    {"MSG_FILEMAN_DB_FIXING", true},
    {"MSG_FILEMAN_SCANNING1", true},
    {"MSG_FILEMAN_SCANNING2", true},
    {"MSG_FILEMAN_SCANNING3", true},
    {"MSG_FILEMAN_RESTORE_IN_PROGRESS", true},
    {"MSG_FILEMAN_INSUFFICIENT_USB", false},
    {"MSG_FILEMAN_USB_WRITE_PROTECTED", false},
    {"MSG_FILEMAN_USB_SONGS_NOT_ADDED", true},
    {"MSG_FILEMAN_SEARCHING", true},
    {"MSG_FILEMAN_ADDING_PLAYLIST", false},
    {"MSG_FILEMAN_CREATING", true},
    {"MSG_FILEMAN_RENAMING", true},
    {"MSG_FILEMAN_MOVING", true},
    {"MSG_FILEMAN_CHANGING", true},
    {"MSG_COMMON_CANCEL", false},
    {"MSG_FILEMAN_CANCELING", true},
    {"MSG_FILEMAN_FILE_DOESNT_EXIST", false},
    {"MSG_FILEMAN_CANNOT_EXECUTE_NO_DATA", false},
    {"MSG_FILEMAN_DB_CONNECTION_FAIL", false},
    {"MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_999", false},
    {"MSG_FILEMAN_INSUFFICIENT_USB_AVAILABLE", false},
    {"MSG_FILEMAN_CANNOT_EXECUTE_ERROR", false},
    {"MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_ALBUMS", false},
    {"MSG_FILEMAN_FILE_COPY_CANCELED", false},
    {"MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_4999", false},
    {"MSG_FILEMAN_NO_ALBUM", false},
    {"MSG_FILEMAN_FILE_DELETE_ERROR", false},
    {"MSG_FILEMAN_NO_DIR", false},
    {"MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_PLAYLISTS", false},
    {"MSG_FILEMAN_CANNOT_EXECUTE_USB_SONGS_NOT_ADDED", false},
    {"MSG_FILEMAN_FAIL_SORT", false},
    {"MSG_FILEMAN_FAIL_RENAME", false},
    {"", false},
};
constexpr int kMessageRowCount = sizeof(kMessageRows) / sizeof(kMessageRows[0]);
static_assert(kMessageRowCount == kMsgRowCount, "one row for every message number");
static_assert(sizeof(kLabelKeys) / sizeof(kLabelKeys[0]) == kLabelError + 1, "one key per label");

// Buttons, by index: none, OK, Cancel.
constexpr const char* kButtonKeys[] = {"", "MSG_COMMON_OK", "MSG_COMMON_CANCEL"};

// Every row has the same button type; progress boxes use it too.
constexpr const char kButtonType[] = "normal";
// The wait argument that marks a progress box.
constexpr const char kWait[] = "wait";

template <int N>
const char* KeyAt(const char* const (&keys)[N], int index) {
  return index >= 0 && index < N ? keys[index] : "";
}

const char* ButtonKey(int button) { return KeyAt(kButtonKeys, button); }

// Rows outside the table read as the empty row.
const MessageRow& Row(int message) {
  if (message < 0 || message >= kMessageRowCount) return kMessageRows[kMessageRowCount - 1];
  return kMessageRows[message];
}

const char* Text(const char* key) { return msg_getXmlMsg(key); }

void PrintLine(const TSString& line) {
  std::printf("%s", line.c_str());
  std::fflush(stdout);
}

bool IsEmpty(const char* s) { return s == nullptr || s[0] == '\0'; }

// ' name="value"'
TSString Attribute(const char* name, const char* value) {
  TSString a(" ");
  a += name;
  a += "=\"";
  a += value;
  a += "\"";
  return a;
}

// The number of the item being worked on, never more than the total, then
// "/" and the total.
TSString Counter(int done, int total) {
  int current = done + 1 < total ? done + 1 : total;
  return TSString(current) + "/" + TSString(total);
}

// A progress box: no label, the given text and button, "normal" buttons,
// the wait mark.
void PrintProgressBox(const TSString& msg, const char* buttonKey, int key) {
  PrintXmlMessageBox(Text(""), msg.c_str(), Text(buttonKey), kButtonType, kWait, key);
}

// "<text>( count - percent% )"
TSString RegisterText(const char* messageKey, int percent, int count) {
  return TSString(Text(messageKey)) + "( " + TSString(count) + " - " + TSString(percent) + "% )";
}

}  // namespace

namespace zansong {

const char* MessageKey(int row) { return Row(row).key; }

const char* LabelKey(int label) { return KeyAt(kLabelKeys, label); }

bool ShownAsError(int row) {
  return row == kMsgUsbWriteProtected || row == kMsgLimitSongs999 || row == kMsgLimitAlbums ||
         row == kMsgLimitSongs4999 || row == kMsgLimitPlaylists;
}

}  // namespace zansong

using zansong::LabelKey;
using zansong::ShownAsError;

void PrintXmlMessageBox(const char* label, const char* msg, const char* button1,
                        const char* btn1_type, const char* wait, int key) {
  TSString line("<set_msgbox type=\"exclusive\"");
  line += Attribute("label", label == nullptr ? "" : label);
  line += Attribute("msg", msg == nullptr ? "" : msg);
  if (!IsEmpty(button1)) line += Attribute("button1", button1);
  if (!IsEmpty(btn1_type)) line += Attribute("btn1_type", btn1_type);
  if (!IsEmpty(wait)) line += " wait=\"yes\"";
  line += key ? " key=\"fileman\" />\n" : " />\n";
  PrintLine(line);
}

void PrintXmlMessageBox(int label, int message, int, int) {
  const MessageRow& row = Row(message);
  PrintXmlMessageBox(Text(LabelKey(label)), Text(row.key), Text("MSG_COMMON_OK"), kButtonType,
                     row.wait ? kWait : "", 0);
}

void PrintErrorMessage(int label, int code) {
  int message = -code;
  // -41, one past the last row, is accepted and shows the empty row.
  if (message < 1 || message > kMsgRowCount) {
    PrintClearMessage();
    return;
  }
  if (ShownAsError(message)) label = kLabelError;
  PrintXmlMessageBox(label, message, 0, 0);
}

void PrintRemoconMessage(int message, int button) {
  const MessageRow& row = Row(message);
  const char* label = ShownAsError(message) ? LabelKey(kLabelError) : "";
  PrintXmlMessageBox(Text(label), Text(row.key), Text(ButtonKey(button)), kButtonType,
                     row.wait ? kWait : "", 0);
}

void PrintDeleteMessage(int done, int total) {
  PrintProgressBox(TSString(Text("MSG_FILEMAN_DELETING")) + Counter(done, total), "", 0);
}

void PrintAddToPlaylistMessage(int done, int total) {
  PrintProgressBox(TSString(Text("MSG_FILEMAN_USB_SONGS_NOT_ADDED")) + Counter(done, total), "", 0);
}

void PrintCopyMessage(int albumNo, int done, int total, bool cancellable) {
  TSString msg(Text("MSG_FILEMAN_COPYING"));
  if (albumNo >= 0) msg += TSString("Album No.") + TSString(albumNo) + "  ";
  msg += Counter(done, total);
  PrintProgressBox(msg, cancellable ? "MSG_COMMON_CANCEL" : "", cancellable ? 1 : 0);
}

void PrintRegisterMessage(int percent, int count, bool cancellable) {
  PrintProgressBox(RegisterText("MSG_FILEMAN_REGISTERING", percent, count),
                   cancellable ? "MSG_COMMON_CANCEL" : "MSG_COMMON_OK", cancellable ? 1 : 0);
}

void PrintUnregisterMessage(int percent, int count, bool cancellable) {
  PrintProgressBox(RegisterText("MSG_FILEMAN_UNREGISTERING", percent, count),
                   cancellable ? "MSG_COMMON_CANCEL" : "", cancellable ? 1 : 0);
}

void PrintUpdateWindow() {
  std::printf("%s", "<set_apictrl update_window=\"song\" />\n");
  std::printf("%s", "<set_apictrl update_window=\"album\" />\n");
  std::fflush(stdout);
}

void PrintClearMessage() { PrintLine("<set_msgbox type=\"clear\" />\n"); }

void PrintFunctionEnd() { PrintLine("<filefunc function=\"end\" />\n"); }
