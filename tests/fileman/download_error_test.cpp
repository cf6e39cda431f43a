// GetDownloadError: the message line of every result code.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "fileman/download_test_helpers.h"

namespace zansong_test {
namespace {

std::string LineOf(int code) {
  char out[2048];
  std::memset(out, 'X', sizeof out);
  GetDownloadError(code, out);
  return out;
}

TEST(GetDownloadErrorTest, EveryCodeFromZeroToMinus42GivesItsLine) {
  for (int code = 0; code >= -42; --code) {
    EXPECT_EQ(ExpectedDownloadLine(code), LineOf(code)) << code;
  }
}

TEST(GetDownloadErrorTest, SuccessAndPositiveCodesClearTheBox) {
  EXPECT_EQ(kClearLine, LineOf(0));
  EXPECT_EQ(kClearLine, LineOf(5));
  EXPECT_EQ(kClearLine, LineOf(1));
  EXPECT_EQ(kClearLine, LineOf(-42));
}

TEST(GetDownloadErrorTest, LimitsAndWriteProtectionShowTheErrorLabel) {
  const std::string ok = msg_getXmlMsg("MSG_COMMON_OK");
  EXPECT_EQ("<set_msgbox type=\"exclusive\" label=\"" +
                std::string(msg_getXmlMsg("MSG_COMMON_ERROR")) + "\" msg=\"" +
                msg_getXmlMsg("MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_999") + "\" button1=\"" + ok +
                "\" />\n",
            LineOf(kResultAlbumFull));
  EXPECT_EQ("<set_msgbox type=\"exclusive\" label=\"" +
                std::string(msg_getXmlMsg("MSG_COMMON_DOWNLOAD")) + "\" msg=\"" +
                msg_getXmlMsg("MSG_FILEMAN_INSUFFICIENT_USB_AVAILABLE") + "\" button1=\"" + ok +
                "\" />\n",
            LineOf(kResultNoSpace));
  // Rows 40 and 41 have no text: the box still comes, with an empty message.
  EXPECT_EQ("<set_msgbox type=\"exclusive\" label=\"" +
                std::string(msg_getXmlMsg("MSG_COMMON_DOWNLOAD")) + "\" msg=\"\" button1=\"" + ok +
                "\" />\n",
            LineOf(-41));
}

TEST(GetDownloadErrorTest, NullBufferIsIgnored) { GetDownloadError(-26, nullptr); }

}  // namespace
}  // namespace zansong_test
