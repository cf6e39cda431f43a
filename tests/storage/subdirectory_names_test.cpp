// The directories of a folder read with one listing agree with DirExists.
#include "storage/subdirectory_names.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/device_image.h"
#include "zansong/storage/files.h"

namespace {

using zansong::SubdirectoryNamesUpper;
using zansong::UpperAsciiName;
using zansong_test::DeviceTest;
using zansong_test::MakeDirs;
using zansong_test::WriteFile;

class SubdirectoryNamesTest : public DeviceTest {
 protected:
  void SetUp() override {
    base_ = image_.Path("/tmp/Music/");
    MakeDirs(base_ + "Album One");
    MakeDirs(base_ + "jazz_002");
    MakeDirs(base_ + "Nested/Inner");
    WriteFile(base_ + "loose", "a file, not a directory");
    WriteFile(base_ + "Song.mid", "x");
  }
  std::string base_;
};

TEST_F(SubdirectoryNamesTest, MembershipAgreesWithDirExistsForEveryCandidate) {
  const std::set<std::string> names = SubdirectoryNamesUpper(base_);
  for (const char* candidate : {"Album One", "ALBUM ONE", "album one", "JAZZ_002", "jazz_003",
                                "Nested", "Inner", "loose", "Song.mid", "missing", ".", ".."}) {
    const bool listed = names.count(UpperAsciiName(candidate)) != 0;
    EXPECT_EQ(listed, DirExists((base_ + candidate).c_str()) == 1) << candidate;
  }
}

TEST_F(SubdirectoryNamesTest, ParentInAnotherCaseIsFound) {
  const std::set<std::string> names = SubdirectoryNamesUpper(image_.Path("/TMP/music/"));
  EXPECT_EQ(names.count("ALBUM ONE"), 1u);
  EXPECT_EQ(names.count("NESTED"), 1u);
}

TEST_F(SubdirectoryNamesTest, MissingParentGivesNoNames) {
  EXPECT_TRUE(SubdirectoryNamesUpper(base_ + "missing/").empty());
}

TEST_F(SubdirectoryNamesTest, OnlyAsciiLettersAreUpperCased) {
  EXPECT_EQ(UpperAsciiName("abc_xyz-09"), "ABC_XYZ-09");
  EXPECT_EQ(UpperAsciiName("\x82\xa0"
                           "a"),
            "\x82\xa0"
            "A");
}

}  // namespace
