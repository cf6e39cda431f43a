// Private: the message catalogue keys behind the message rows and labels,
// for the operations that build a message line of their own (the line of
// a download, handed back to the host rather than printed).
//
// MessageKey(row) is the key of message row `row`, "" outside the table.
// LabelKey(label) is the key of label row `label`, "" outside the table.
// ShownAsError(row) tells whether row is one of the messages shown under
// the error label whatever label was asked for (14, 27, 30, 32 and 36).
#ifndef ZANSONG_SRC_FILEMAN_MESSAGE_TABLE_H_
#define ZANSONG_SRC_FILEMAN_MESSAGE_TABLE_H_

namespace zansong {

const char* MessageKey(int row);
const char* LabelKey(int label);
bool ShownAsError(int row);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_MESSAGE_TABLE_H_
