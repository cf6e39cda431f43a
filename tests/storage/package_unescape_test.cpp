// Packages delivered as escaped text strings, and the name helper.
#include <sys/stat.h>
#include <utime.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/storage/package.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::PathExists;
using zansong_test::ReadFile;
using zansong_test::StdoutCapture;
using zansong_test::WriteFile;

class UnescapeTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.root() + "/usr/local/songs/Downloaded Songs/";
    MakeDirs(dir_);
    package_ = dir_ + "package.xml";
  }
  int Run(const std::string& path) {
    StdoutCapture capture;
    int r = ChangeXmlToSelf(path.c_str());
    printed_ = capture.Finish();
    return r;
  }
  std::string dir_, package_, printed_;
};

TEST_F(UnescapeTest, QuotesAreDroppedAndEscapesResolved) {
  // The escaped string "<SELF>abc\n</SELF>" with its quotes.
  WriteFile(package_, "\"<SELF>abc\\n</SELF>\"");
  EXPECT_EQ(0, Run(package_));
  EXPECT_EQ("<SELF>abc\n</SELF>", ReadFile(package_));
  EXPECT_EQ("\"<SELF>abc\\n</SELF>\"", ReadFile(package_ + ".bak"));
  EXPECT_FALSE(PathExists(package_ + ".tmp"));
  EXPECT_EQ("", printed_);
}

TEST_F(UnescapeTest, QuotedTextWithAnEscapedLineEnd) {
  WriteFile(package_, "<SELF>\"abc\"\\n");
  EXPECT_EQ(0, Run(package_));
  EXPECT_EQ("<SELF>abc\n", ReadFile(package_));
}

TEST_F(UnescapeTest, EscapedQuoteAndBackslashStandForThemselves) {
  WriteFile(package_, "SELF \\\"abc\\\"\\n \\\\ \\t");
  EXPECT_EQ(0, Run(package_));
  EXPECT_EQ("SELF \"abc\"\n \\ t", ReadFile(package_));
}

TEST_F(UnescapeTest, EscapeAcrossTheBlockBoundary) {
  // A backslash as the 512th byte escapes the first byte of the next block.
  std::string text = "<?xml?>" + std::string(504, 'a') + "\\";
  ASSERT_EQ(512u, text.size());
  text += "n\\\\";
  text += std::string(509, 'b') + "\\" + "\"" + "end";
  ASSERT_EQ(1024u + 5, text.size());
  WriteFile(package_, text);
  EXPECT_EQ(0, Run(package_));
  EXPECT_EQ("<?xml?>" + std::string(504, 'a') + "\n\\" + std::string(509, 'b') + "\"end",
            ReadFile(package_));
}

TEST_F(UnescapeTest, WithoutXmlOrSelfInTheFirstBlockTheFileStays) {
  WriteFile(package_, "just text \\n\"quoted\"");
  EXPECT_EQ(-1, Run(package_));
  EXPECT_EQ("just text \\n\"quoted\"", ReadFile(package_));
  EXPECT_FALSE(PathExists(package_ + ".bak"));
  // "SELF" only after the first 512 bytes does not count.
  std::string late = std::string(512, 'x') + "<SELF>";
  WriteFile(package_, late);
  EXPECT_EQ(-1, Run(package_));
  EXPECT_EQ(late, ReadFile(package_));
  WriteFile(package_, "");
  EXPECT_EQ(-1, Run(package_));
}

TEST_F(UnescapeTest, MarkersAreFoundInAnyCase) {
  WriteFile(package_, "<self>x</self>");
  EXPECT_EQ(0, Run(package_));
  WriteFile(package_, "<?Xml?>");
  EXPECT_EQ(0, Run(package_));
}

TEST_F(UnescapeTest, ResultKeepsThePackagesTimes) {
  WriteFile(package_, "<SELF>\\n</SELF>");
  struct utimbuf times = {1000000000, 1200000000};
  ASSERT_EQ(0, utime(package_.c_str(), &times));
  EXPECT_EQ(0, Run(package_));
  struct stat st;
  ASSERT_EQ(0, stat(package_.c_str(), &st));
  EXPECT_EQ(1200000000, st.st_mtime);
  EXPECT_EQ(1000000000, st.st_atime);
}

TEST_F(UnescapeTest, MissingPackageOrUncreatableTemporaryFile) {
  EXPECT_EQ(-1, Run(dir_ + "missing.xml"));
  WriteFile(package_, "<SELF/>");
  MakeDirs(package_ + ".tmp");  // a directory cannot be opened for writing
  EXPECT_EQ(-3, Run(package_));
  EXPECT_EQ("<SELF/>", ReadFile(package_));
}

TEST_F(UnescapeTest, PackageNameWithShellTextIsJustAName) {
  std::string name = dir_ + "p $(touch PWNED) `touch PWNED2`; \"q\".xml";
  WriteFile(name, "\"<SELF>x</SELF>\"");
  char path[512];
  std::strcpy(path, name.c_str());
  StdoutCapture capture;
  EXPECT_EQ(0, FM_ChangeXmlToSelf(path));
  capture.Finish();
  EXPECT_EQ("<SELF>x</SELF>", ReadFile(name));
  EXPECT_TRUE(PathExists(name + ".bak"));
  EXPECT_FALSE(PathExists(dir_ + "PWNED"));
  EXPECT_FALSE(PathExists("PWNED"));
  EXPECT_FALSE(PathExists("PWNED2"));
}

TEST(ChangeNoDirAndSpaceNameFmTest, CopiesOnlyANonEmptyName) {
  char name[] = "/a b/c d.mid";
  char out[32] = "untouched";
  FM_ChangeNoDirAndSpaceName(name, out, sizeof(out));
  EXPECT_STREQ("cd.mid", out);
  char dirOnly[] = "/a b/";
  std::strcpy(out, "untouched");
  FM_ChangeNoDirAndSpaceName(dirOnly, out, sizeof(out));
  EXPECT_STREQ("untouched", out);
}

}  // namespace
