// The XML lines printed for the host, compared byte for byte with lines
// built from the message catalogue's texts.
#include "zansong/fileman/messages.h"

#include <gtest/gtest.h>

#include <string>

#include "support/stdout_capture.h"
#include "zanmsg.h"

namespace {

using zansong_test::StdoutCapture;

std::string T(const char* key) { return msg_getXmlMsg(key); }

// A message-box line built piece by piece, the empty pieces left out.
std::string Box(const std::string& label, const std::string& msg, const std::string& button1,
                const std::string& btnType, bool wait, bool key) {
  std::string line = "<set_msgbox type=\"exclusive\" label=\"" + label + "\" msg=\"" + msg + "\"";
  if (!button1.empty()) line += " button1=\"" + button1 + "\"";
  if (!btnType.empty()) line += " btn1_type=\"" + btnType + "\"";
  if (wait) line += " wait=\"yes\"";
  line += key ? " key=\"fileman\" />\n" : " />\n";
  return line;
}

const char kClearLine[] = "<set_msgbox type=\"clear\" />\n";

// The message rows with their wait marks, by number.
struct Row {
  const char* key;
  bool wait;
};
const Row kRows[] = {
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

const char* const kLabels[] = {
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

bool ShownAsError(int m) { return m == 14 || m == 27 || m == 30 || m == 32 || m == 36; }

TEST(MessageBoxTest, AllPiecesInOrder) {
  StdoutCapture out;
  PrintXmlMessageBox("L", "M", "B", "normal", "wait", 1);
  EXPECT_EQ(out.Finish(),
            "<set_msgbox type=\"exclusive\" label=\"L\" msg=\"M\" button1=\"B\" "
            "btn1_type=\"normal\" wait=\"yes\" key=\"fileman\" />\n");
}

TEST(MessageBoxTest, WithoutButtonTypeAndWaitEndsAfterMsg) {
  StdoutCapture out;
  PrintXmlMessageBox("L", "M", "", "", "", 0);
  EXPECT_EQ(out.Finish(), "<set_msgbox type=\"exclusive\" label=\"L\" msg=\"M\" />\n");
}

TEST(MessageBoxTest, EachOptionalPieceOnItsOwn) {
  {
    StdoutCapture out;
    PrintXmlMessageBox("", "", "B", "", "", 0);
    EXPECT_EQ(out.Finish(),
              "<set_msgbox type=\"exclusive\" label=\"\" msg=\"\" button1=\"B\" />\n");
  }
  {
    StdoutCapture out;
    PrintXmlMessageBox("", "", "", "T", "", 0);
    EXPECT_EQ(out.Finish(),
              "<set_msgbox type=\"exclusive\" label=\"\" msg=\"\" btn1_type=\"T\" />\n");
  }
  {
    StdoutCapture out;
    PrintXmlMessageBox("", "", "", "", "anything", 0);
    EXPECT_EQ(out.Finish(), "<set_msgbox type=\"exclusive\" label=\"\" msg=\"\" wait=\"yes\" />\n");
  }
  {
    StdoutCapture out;
    PrintXmlMessageBox("", "", "", "", "", 7);
    EXPECT_EQ(out.Finish(),
              "<set_msgbox type=\"exclusive\" label=\"\" msg=\"\" key=\"fileman\" />\n");
  }
}

TEST(MessageBoxTest, NullTextsCountAsEmpty) {
  StdoutCapture out;
  PrintXmlMessageBox(nullptr, nullptr, nullptr, nullptr, nullptr, 0);
  EXPECT_EQ(out.Finish(), "<set_msgbox type=\"exclusive\" label=\"\" msg=\"\" />\n");
}

TEST(MessageBoxTest, ValuesAreNotEscaped) {
  StdoutCapture out;
  PrintXmlMessageBox("a&b", "<\"x\">", "", "", "", 0);
  EXPECT_EQ(out.Finish(), "<set_msgbox type=\"exclusive\" label=\"a&b\" msg=\"<\"x\">\" />\n");
}

TEST(MessageBoxTest, LineIsOnStdoutAtOnce) {
  // The line is flushed by the call itself: what reaches the descriptor
  // before the capture flushes is already whole.
  StdoutCapture out;
  PrintClearMessage();
  EXPECT_EQ(out.Finish(), kClearLine);
}

TEST(MessageBoxTest, InternalFormUsesRowsAndOkButton) {
  StdoutCapture out;
  PrintXmlMessageBox(2, 2, 99, -5);
  EXPECT_EQ(out.Finish(), Box(T("MSG_COMMON_DELETE"), T("MSG_FILEMAN_DELETING"), T("MSG_COMMON_OK"),
                              "normal", true, false));
}

TEST(MessageBoxTest, InternalFormOutsideTablesIsEmpty) {
  StdoutCapture out;
  PrintXmlMessageBox(11, 41, 0, 0);
  PrintXmlMessageBox(-1, -1, 0, 0);
  std::string empty = Box("", "", T("MSG_COMMON_OK"), "normal", false, false);
  EXPECT_EQ(out.Finish(), empty + empty);
}

TEST(ErrorMessageTest, LimitErrorShownUnderErrorLabel) {
  StdoutCapture out;
  PrintErrorMessage(1, -27);
  EXPECT_EQ(out.Finish(),
            Box(T("MSG_COMMON_ERROR"), T("MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_999"),
                T("MSG_COMMON_OK"), "normal", false, false));
}

TEST(ErrorMessageTest, OtherErrorKeepsCallersLabel) {
  StdoutCapture out;
  PrintErrorMessage(1, -29);
  EXPECT_EQ(out.Finish(), Box(T("MSG_COMMON_COPY"), T("MSG_FILEMAN_CANNOT_EXECUTE_ERROR"),
                              T("MSG_COMMON_OK"), "normal", false, false));
}

TEST(ErrorMessageTest, ZeroPrintsClearLine) {
  StdoutCapture out;
  PrintErrorMessage(1, 0);
  EXPECT_EQ(out.Finish(), kClearLine);
}

TEST(ErrorMessageTest, EveryCodeFromMinus45To1) {
  for (int label = 0; label <= 10; ++label) {
    for (int code = -45; code <= 1; ++code) {
      SCOPED_TRACE("label " + std::to_string(label) + " code " + std::to_string(code));
      int m = -code;
      std::string expected;
      if (m < 1 || m > 41) {
        expected = kClearLine;
      } else {
        const Row& row = kRows[m == 41 ? 40 : m];
        const char* labelKey = ShownAsError(m) ? "MSG_COMMON_ERROR" : kLabels[label];
        expected = Box(T(labelKey), T(row.key), T("MSG_COMMON_OK"), "normal", row.wait, false);
      }
      StdoutCapture out;
      PrintErrorMessage(label, code);
      EXPECT_EQ(out.Finish(), expected);
    }
  }
}

TEST(ErrorMessageTest, ErrorLabelRowsAreExactlyTheLimitAndProtectionMessages) {
  for (int m : {14, 27, 30, 32, 36}) {
    StdoutCapture out;
    PrintErrorMessage(0, -m);
    EXPECT_NE(out.Finish().find("label=\"" + T("MSG_COMMON_ERROR") + "\""), std::string::npos) << m;
  }
}

TEST(RemoconMessageTest, ErrorRowGetsErrorLabelAndChosenButton) {
  StdoutCapture out;
  PrintRemoconMessage(32, 2);
  EXPECT_EQ(out.Finish(),
            Box(T("MSG_COMMON_ERROR"), T("MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_4999"),
                T("MSG_COMMON_CANCEL"), "normal", false, false));
}

TEST(RemoconMessageTest, OtherRowsHaveNoLabelAndKeepWait) {
  StdoutCapture out;
  PrintRemoconMessage(1, 1);
  PrintRemoconMessage(29, 0);
  EXPECT_EQ(out.Finish(),
            Box("", T("MSG_FILEMAN_COPYING"), T("MSG_COMMON_OK"), "normal", true, false) +
                Box("", T("MSG_FILEMAN_CANNOT_EXECUTE_ERROR"), "", "normal", false, false));
}

TEST(RemoconMessageTest, EveryRowAndButton) {
  const char* const buttons[] = {"", "MSG_COMMON_OK", "MSG_COMMON_CANCEL"};
  for (int m = 0; m <= 40; ++m) {
    for (int b = 0; b <= 2; ++b) {
      StdoutCapture out;
      PrintRemoconMessage(m, b);
      EXPECT_EQ(out.Finish(), Box(ShownAsError(m) ? T("MSG_COMMON_ERROR") : "", T(kRows[m].key),
                                  T(buttons[b]), "normal", kRows[m].wait, false))
          << m << " " << b;
    }
  }
}

std::string DeleteLine(const std::string& counter) {
  return Box("", T("MSG_FILEMAN_DELETING") + counter, "", "normal", true, false);
}

TEST(ProgressMessageTest, DeleteCounterShowsItemInProgress) {
  struct Case {
    int done, total;
    const char* counter;
  } cases[] = {{0, 5, "1/5"}, {4, 5, "5/5"}, {5, 5, "5/5"}, {0, 0, "0/0"}, {9, 5, "5/5"}};
  for (const Case& c : cases) {
    StdoutCapture out;
    PrintDeleteMessage(c.done, c.total);
    EXPECT_EQ(out.Finish(), DeleteLine(c.counter)) << c.done << "/" << c.total;
  }
}

TEST(ProgressMessageTest, AddToPlaylistUsesAddingSongsText) {
  StdoutCapture out;
  PrintAddToPlaylistMessage(0, 5);
  PrintAddToPlaylistMessage(4, 5);
  PrintAddToPlaylistMessage(5, 5);
  PrintAddToPlaylistMessage(0, 0);
  std::string text = T("MSG_FILEMAN_USB_SONGS_NOT_ADDED");
  EXPECT_EQ(out.Finish(), Box("", text + "1/5", "", "normal", true, false) +
                              Box("", text + "5/5", "", "normal", true, false) +
                              Box("", text + "5/5", "", "normal", true, false) +
                              Box("", text + "0/0", "", "normal", true, false));
}

TEST(ProgressMessageTest, CopyWithoutAlbumNumber) {
  StdoutCapture out;
  PrintCopyMessage(-1, 0, 3, false);
  EXPECT_EQ(out.Finish(), Box("", T("MSG_FILEMAN_COPYING") + "1/3", "", "normal", true, false));
}

TEST(ProgressMessageTest, CopyWithAlbumNumber) {
  StdoutCapture out;
  PrintCopyMessage(2, 0, 3, false);
  EXPECT_EQ(out.Finish(),
            Box("", T("MSG_FILEMAN_COPYING") + "Album No.2  1/3", "", "normal", true, false));
}

TEST(ProgressMessageTest, CopyAlbumZeroIsShown) {
  StdoutCapture out;
  PrintCopyMessage(0, 4, 5, false);
  EXPECT_EQ(out.Finish(),
            Box("", T("MSG_FILEMAN_COPYING") + "Album No.0  5/5", "", "normal", true, false));
}

TEST(ProgressMessageTest, CancellableCopyHasCancelButtonAndKey) {
  StdoutCapture out;
  PrintCopyMessage(-1, 5, 5, true);
  PrintCopyMessage(-1, 0, 0, true);
  EXPECT_EQ(
      out.Finish(),
      Box("", T("MSG_FILEMAN_COPYING") + "5/5", T("MSG_COMMON_CANCEL"), "normal", true, true) +
          Box("", T("MSG_FILEMAN_COPYING") + "0/0", T("MSG_COMMON_CANCEL"), "normal", true, true));
}

TEST(ProgressMessageTest, RegisterCancellableAndNot) {
  StdoutCapture out;
  PrintRegisterMessage(40, 12, true);
  PrintRegisterMessage(100, 0, false);
  EXPECT_EQ(out.Finish(), Box("", T("MSG_FILEMAN_REGISTERING") + "( 12 - 40% )",
                              T("MSG_COMMON_CANCEL"), "normal", true, true) +
                              Box("", T("MSG_FILEMAN_REGISTERING") + "( 0 - 100% )",
                                  T("MSG_COMMON_OK"), "normal", true, false));
}

TEST(ProgressMessageTest, UnregisterWithoutCancelHasNoButton) {
  StdoutCapture out;
  PrintUnregisterMessage(5, 3, true);
  PrintUnregisterMessage(50, 7, false);
  EXPECT_EQ(out.Finish(),
            Box("", T("MSG_FILEMAN_UNREGISTERING") + "( 3 - 5% )", T("MSG_COMMON_CANCEL"), "normal",
                true, true) +
                Box("", T("MSG_FILEMAN_UNREGISTERING") + "( 7 - 50% )", "", "normal", true, false));
}

TEST(ProgressMessageTest, LiteralLineWithStandInTexts) {
  StdoutCapture out;
  PrintCopyMessage(2, 0, 3, true);
  EXPECT_EQ(out.Finish(),
            "<set_msgbox type=\"exclusive\" label=\"\" msg=\"Copying...Album No.2  1/3\" "
            "button1=\"Cancel\" btn1_type=\"normal\" wait=\"yes\" key=\"fileman\" />\n");
}

TEST(ControlMessageTest, UpdateWindowPrintsSongThenAlbum) {
  StdoutCapture out;
  PrintUpdateWindow();
  EXPECT_EQ(out.Finish(),
            "<set_apictrl update_window=\"song\" />\n<set_apictrl update_window=\"album\" />\n");
}

TEST(ControlMessageTest, ClearAndFunctionEnd) {
  StdoutCapture out;
  PrintClearMessage();
  PrintFunctionEnd();
  EXPECT_EQ(out.Finish(), std::string(kClearLine) + "<filefunc function=\"end\" />\n");
}

}  // namespace
