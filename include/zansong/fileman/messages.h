// The XML lines printed for the host's screen: message boxes, the request
// to refresh the song and album windows, the request to clear the box, and
// the end-of-function marker.
//
// Every line is assembled whole, written with one "%s" print and flushed at
// once, so that the host sees it complete and without delay.  The visible
// texts come from the message catalogue (msg_getXmlMsg) by key; attribute
// values are inserted as they are, without XML escaping.  Nothing here
// reports an error.
//
// Result codes and message rows share one numbering: an operation that
// fails returns -n, where n is the row of the message that explains the
// failure, and PrintErrorMessage(label, -n) shows that message.  The rows,
// the labels (box titles: none, copy, delete, playlist, change order,
// rename, download, strip expression, album, record, error) and the
// buttons (none, OK, Cancel) are named in zansong/result_codes.h (kMsg*,
// kLabel*, kButton*).
#ifndef ZANSONG_FILEMAN_MESSAGES_H_
#define ZANSONG_FILEMAN_MESSAGES_H_

#include "zansong/export.h"
#include "zansong/result_codes.h"

// One message-box line:
//   <set_msgbox type="exclusive" label="L" msg="M"[ button1="B"][ btn1_type="T"][ wait="yes"]
//   followed by ' key="fileman" />\n' when key is non-zero, else ' />\n'.
// button1, btn1_type and wait are left out when empty (or null); wait only
// says whether the attribute is present, its value is always "yes".  Null
// label or msg count as "".
ZANSONG_EXPORT void PrintXmlMessageBox(const char* label, const char* msg, const char* button1,
                                       const char* btn1_type, const char* wait, int key);

// The box of label row `label` and message row `message`: the catalogue
// texts of both keys, an OK button, the row's button type and wait mark, no
// key attribute.  The last two arguments have no effect.  Rows outside the
// tables count as empty keys.
ZANSONG_EXPORT void PrintXmlMessageBox(int label, int message, int, int);

// For code -1 to -41: the box of message row -code, under `label`, or under
// the error label for the messages 14, 27, 30, 32 and 36 (-41 shows the
// empty row 40).  Any other code (0, positive, below -41) prints the clear
// line.
ZANSONG_EXPORT void PrintErrorMessage(int label, int code);

// A box for a request from the remote control: label "Error" for messages
// 14, 27, 30, 32, 36, else the empty text; message row `message`; button
// `button` of the button table; the row's button type and wait mark.
ZANSONG_EXPORT void PrintRemoconMessage(int message, int button);

// Progress boxes.  The counter is min(total, done + 1) + "/" + total and
// follows the text directly.  Label and button texts are those of the empty
// key unless stated; button type "normal"; wait="yes".
//   PrintDeleteMessage:        "deleting" text + counter.
//   PrintAddToPlaylistMessage: "adding songs" text + counter.
//   PrintCopyMessage:          "copying" text, then "Album No." + albumNo +
//                              two spaces when albumNo >= 0, then the counter;
//                              cancellable adds the Cancel button and the
//                              key attribute.
//   PrintRegisterMessage:      "registering" text + "( count - percent% )";
//                              Cancel button and key attribute when
//                              cancellable, else the OK button.
//   PrintUnregisterMessage:    as PrintRegisterMessage with the
//                              "unregistering" text, and no button when not
//                              cancellable.
ZANSONG_EXPORT void PrintDeleteMessage(int done, int total);
ZANSONG_EXPORT void PrintAddToPlaylistMessage(int done, int total);
ZANSONG_EXPORT void PrintCopyMessage(int albumNo, int done, int total, bool cancellable);
ZANSONG_EXPORT void PrintRegisterMessage(int percent, int count, bool cancellable);
ZANSONG_EXPORT void PrintUnregisterMessage(int percent, int count, bool cancellable);

// '<set_apictrl update_window="song" />\n' then
// '<set_apictrl update_window="album" />\n', one flush.
ZANSONG_EXPORT void PrintUpdateWindow();
// '<set_msgbox type="clear" />\n'
ZANSONG_EXPORT void PrintClearMessage();
// '<filefunc function="end" />\n'
ZANSONG_EXPORT void PrintFunctionEnd();

#endif  // ZANSONG_FILEMAN_MESSAGES_H_
