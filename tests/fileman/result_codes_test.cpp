// The named numbers of result_codes.h against the message table: every
// result code shows the message that explains it, and every row, label and
// button constant names the key of its row.
#include "zansong/result_codes.h"

#include <gtest/gtest.h>

#include <string>

#include "support/stdout_capture.h"
#include "zanmsg.h"
#include "zansong/fileman/messages.h"

namespace {

using zansong_test::StdoutCapture;

std::string T(const char* key) { return msg_getXmlMsg(key); }

// The line of a message box without button type overrides: OK button, no
// wait mark (the rows of failures have none), no key attribute.
std::string ErrorBox(const std::string& label, const std::string& msg) {
  return "<set_msgbox type=\"exclusive\" label=\"" + label + "\" msg=\"" + msg + "\" button1=\"" +
         T("MSG_COMMON_OK") + "\" btn1_type=\"normal\" />\n";
}

std::string Printed(void (*print)(int, int), int a, int b) {
  StdoutCapture out;
  print(a, b);
  return out.Finish();
}

void PrintBox(int label, int message) { PrintXmlMessageBox(label, message, 0, 0); }

struct CodeCase {
  int code;
  const char* key;
  bool underErrorLabel;
};

TEST(ResultCodesTest, EveryFailureCodeShowsItsMessage) {
  const CodeCase cases[] = {
      {kResultWriteProtected, "MSG_FILEMAN_USB_WRITE_PROTECTED", true},
      {kResultNoFile, "MSG_FILEMAN_FILE_DOESNT_EXIST", false},
      {kResultNoData, "MSG_FILEMAN_CANNOT_EXECUTE_NO_DATA", false},
      {kResultDbFail, "MSG_FILEMAN_DB_CONNECTION_FAIL", false},
      {kResultAlbumFull, "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_999", true},
      {kResultNoSpace, "MSG_FILEMAN_INSUFFICIENT_USB_AVAILABLE", false},
      {kResultCannotExecute, "MSG_FILEMAN_CANNOT_EXECUTE_ERROR", false},
      {kResultAlbumLimit, "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_ALBUMS", true},
      {kResultCopyCancelled, "MSG_FILEMAN_FILE_COPY_CANCELED", false},
      {kResultPrefixFull, "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_4999", true},
      {kResultDeleteError, "MSG_FILEMAN_FILE_DELETE_ERROR", false},
      {kResultPlaylistLimit, "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_PLAYLISTS", true},
      {kResultRepairFailed, "", false},
  };
  for (const CodeCase& c : cases) {
    const std::string label = T(c.underErrorLabel ? "MSG_COMMON_ERROR" : "MSG_COMMON_COPY");
    EXPECT_EQ(ErrorBox(label, T(c.key)), Printed(PrintErrorMessage, kLabelCopy, c.code))
        << c.code << " " << c.key;
  }
}

TEST(ResultCodesTest, SuccessShowsNoMessage) {
  EXPECT_EQ("<set_msgbox type=\"clear\" />\n", Printed(PrintErrorMessage, kLabelCopy, kResultOk));
}

TEST(ResultCodesTest, ErrorCodesKeepTheNumbersTheHostKnows) {
  // The host maps the numbers back to messages itself: they never change.
  const int codes[] = {kResultWriteProtected, kResultNoFile,      kResultNoData,
                       kResultDbFail,         kResultAlbumFull,   kResultNoSpace,
                       kResultCannotExecute,  kResultAlbumLimit,  kResultCopyCancelled,
                       kResultPrefixFull,     kResultDeleteError, kResultPlaylistLimit,
                       kResultRepairFailed};
  const int numbers[] = {-14, -24, -25, -26, -27, -28, -29, -30, -31, -32, -34, -36, -40};
  for (size_t i = 0; i < sizeof codes / sizeof codes[0]; ++i) EXPECT_EQ(numbers[i], codes[i]);
}

struct RowCase {
  int row;
  const char* key;
};

TEST(ResultCodesTest, EveryMessageRowConstantNamesItsKey) {
  const RowCase rows[] = {
      {kMsgComplete, "MSG_COMMON_COMPLETE"},
      {kMsgCopying, "MSG_FILEMAN_COPYING"},
      {kMsgDeleting, "MSG_FILEMAN_DELETING"},
      {kMsgRefreshing, "MSG_FILEMAN_REFRESHING"},
      {kMsgRegistering, "MSG_FILEMAN_REGISTERING"},
      {kMsgUnregistering, "MSG_FILEMAN_UNREGISTERING"},
      {kMsgFormatting, "MSG_FILEMAN_FORMATTING"},
      {kMsgScanningUsb, "MSG_FILEMAN_SCANNING_USB"},
      {kMsgDbFixing, "MSG_FILEMAN_DB_FIXING"},
      {kMsgScanning1, "MSG_FILEMAN_SCANNING1"},
      {kMsgScanning2, "MSG_FILEMAN_SCANNING2"},
      {kMsgScanning3, "MSG_FILEMAN_SCANNING3"},
      {kMsgRestoreInProgress, "MSG_FILEMAN_RESTORE_IN_PROGRESS"},
      {kMsgInsufficientUsb, "MSG_FILEMAN_INSUFFICIENT_USB"},
      {kMsgUsbWriteProtected, "MSG_FILEMAN_USB_WRITE_PROTECTED"},
      {kMsgUsbSongsNotAdded, "MSG_FILEMAN_USB_SONGS_NOT_ADDED"},
      {kMsgSearching, "MSG_FILEMAN_SEARCHING"},
      {kMsgAddingPlaylist, "MSG_FILEMAN_ADDING_PLAYLIST"},
      {kMsgCreating, "MSG_FILEMAN_CREATING"},
      {kMsgRenaming, "MSG_FILEMAN_RENAMING"},
      {kMsgMoving, "MSG_FILEMAN_MOVING"},
      {kMsgChanging, "MSG_FILEMAN_CHANGING"},
      {kMsgCancel, "MSG_COMMON_CANCEL"},
      {kMsgCanceling, "MSG_FILEMAN_CANCELING"},
      {kMsgFileDoesntExist, "MSG_FILEMAN_FILE_DOESNT_EXIST"},
      {kMsgNoData, "MSG_FILEMAN_CANNOT_EXECUTE_NO_DATA"},
      {kMsgDbConnectionFail, "MSG_FILEMAN_DB_CONNECTION_FAIL"},
      {kMsgLimitSongs999, "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_999"},
      {kMsgInsufficientSpace, "MSG_FILEMAN_INSUFFICIENT_USB_AVAILABLE"},
      {kMsgCannotExecute, "MSG_FILEMAN_CANNOT_EXECUTE_ERROR"},
      {kMsgLimitAlbums, "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_ALBUMS"},
      {kMsgCopyCanceled, "MSG_FILEMAN_FILE_COPY_CANCELED"},
      {kMsgLimitSongs4999, "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_4999"},
      {kMsgNoAlbum, "MSG_FILEMAN_NO_ALBUM"},
      {kMsgFileDeleteError, "MSG_FILEMAN_FILE_DELETE_ERROR"},
      {kMsgNoDir, "MSG_FILEMAN_NO_DIR"},
      {kMsgLimitPlaylists, "MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_PLAYLISTS"},
      {kMsgUsbSongsNotAddedError, "MSG_FILEMAN_CANNOT_EXECUTE_USB_SONGS_NOT_ADDED"},
      {kMsgFailSort, "MSG_FILEMAN_FAIL_SORT"},
      {kMsgFailRename, "MSG_FILEMAN_FAIL_RENAME"},
      {kMsgEmpty, ""},
  };
  ASSERT_EQ(kMsgRowCount, static_cast<int>(sizeof rows / sizeof rows[0]));
  for (int i = 0; i < kMsgRowCount; ++i) {
    EXPECT_EQ(i, rows[i].row) << rows[i].key;
    const std::string line = Printed(PrintBox, kLabelNone, rows[i].row);
    EXPECT_NE(std::string::npos, line.find(" msg=\"" + T(rows[i].key) + "\"")) << line;
  }
}

TEST(ResultCodesTest, EveryLabelConstantNamesItsKey) {
  const RowCase labels[] = {
      {kLabelNone, ""},
      {kLabelCopy, "MSG_COMMON_COPY"},
      {kLabelDelete, "MSG_COMMON_DELETE"},
      {kLabelPlaylist, "MSG_COMMON_PLAYLIST"},
      {kLabelChangeOrder, "MSG_FILEMAN_CHANGE_ORDER"},
      {kLabelRename, "MSG_COMMON_RENAME"},
      {kLabelDownload, "MSG_COMMON_DOWNLOAD"},
      {kLabelStripXp, "MSG_FILEMAN_STRIP_XP"},
      {kLabelAlbum, "MSG_COMMON_ALBUM"},
      {kLabelRecord, "MSG_COMMON_RECORD"},
      {kLabelError, "MSG_COMMON_ERROR"},
  };
  for (const RowCase& c : labels) {
    const std::string line = Printed(PrintBox, c.row, kMsgComplete);
    EXPECT_EQ(0u, line.find("<set_msgbox type=\"exclusive\" label=\"" + T(c.key) + "\""))
        << c.key << ": " << line;
  }
}

TEST(ResultCodesTest, ButtonConstantsNameTheirKeys) {
  EXPECT_EQ(std::string::npos,
            Printed(PrintRemoconMessage, kMsgComplete, kButtonNone).find(" button1="));
  EXPECT_NE(std::string::npos, Printed(PrintRemoconMessage, kMsgComplete, kButtonOk)
                                   .find(" button1=\"" + T("MSG_COMMON_OK") + "\""));
  EXPECT_NE(std::string::npos, Printed(PrintRemoconMessage, kMsgScanning1, kButtonCancel)
                                   .find(" button1=\"" + T("MSG_COMMON_CANCEL") + "\""));
}

}  // namespace
