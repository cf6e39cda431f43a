// The line-oriented "<SELF>" package decoder: ChangeB64ToBin and
// FM_ChangeB64ToBin.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "storage/package_test_util.h"

namespace zansong_test {
namespace {

TEST_F(PackageTest, SelfPackageWithBase64BrokenOverLinesDecodes) {
  const std::string song = SongBytes();
  WriteFile(dir_ + "/song.mid", "OLD");
  WriteFile(package_, SelfPackage("song.mid", Lines(Base64(song), 64, "\t")));
  EXPECT_EQ(dir_ + "/song.mid", Decode1());
  EXPECT_EQ(song, ReadFile(dir_ + "/song.mid"));
  EXPECT_FALSE(PathExists(dir_ + "/song.mid.b64"));
  EXPECT_FALSE(PathExists(dir_ + "/song.mid.bak"));
}

TEST_F(PackageTest, SelfPackageTagAndDataOnOneLine) {
  WriteFile(package_, "<SELF><FILE FILENAME = \"a.mid\">" + Base64("song") + "</FILE></SELF>\n");
  EXPECT_EQ(dir_ + "/a.mid", Decode1());
  EXPECT_EQ("song", ReadFile(dir_ + "/a.mid"));
}

TEST_F(PackageTest, SelfPackageStartTagOverTwoLines) {
  WriteFile(package_, "<SELF>\n<file filename=\"a.mid\"\n   ackurl=\"x\">\n" +
                          Lines(Base64("song bytes"), 4, "") + "</file>\n");
  EXPECT_EQ(dir_ + "/a.mid", Decode1());
  EXPECT_EQ("song bytes", ReadFile(dir_ + "/a.mid"));
}

TEST_F(PackageTest, SelfPackageUsesOnlyTheFileNamePart) {
  MakeDirs(dir_ + "/a");
  WriteFile(package_, SelfPackage("a/b.mid", Base64("song")));
  EXPECT_EQ(dir_ + "/b.mid", Decode1());
  EXPECT_EQ("song", ReadFile(dir_ + "/b.mid"));
  EXPECT_FALSE(PathExists(dir_ + "/a/b.mid"));
}

TEST_F(PackageTest, SelfMustStandWithinTheFirstTenLines) {
  std::string nine(9, '\n');
  WriteFile(package_, nine + SelfPackage("a.mid", Base64("song")));  // line 10
  EXPECT_EQ(dir_ + "/a.mid", Decode1());
  std::string ten(10, '\n');
  WriteFile(package_, ten + SelfPackage("b.mid", Base64("song")));  // line 11
  EXPECT_EQ("", Decode1());
  EXPECT_FALSE(PathExists(dir_ + "/b.mid"));
}

TEST_F(PackageTest, SelfFileNameWithShellTextIsJustAName) {
  // Spaces are removed from the whole line, the name included.
  WriteFile(package_, SelfPackage("x$(touch PWNED)`touch PWNED2`;touch PWNED3.mid", Base64("s")));
  const std::string name = "x$(touchPWNED)`touchPWNED2`;touchPWNED3.mid";
  EXPECT_EQ(dir_ + "/" + name, Decode1());
  EXPECT_EQ("s", ReadFile(dir_ + "/" + name));
  ExpectNothingRan();
}

TEST_F(PackageTest, SelfFileNamesThatLeaveTheDirectoryAreRefused) {
  const std::string before = OutsideListing();
  for (std::string bad : {"../x.mid", "/tmp/x.mid", "", "..", ".", "a/", "../$(touch PWNED).mid"}) {
    WriteFile(package_, SelfPackage(bad, Base64("song")));
    EXPECT_EQ("", Decode1()) << bad;
  }
  EXPECT_EQ(before, OutsideListing());
  EXPECT_FALSE(PathExists(dir_ + "/x.mid"));
  ExpectNothingRan();
}

TEST_F(PackageTest, SelfOutputNeverFollowsALinkPlantedInTheFolder) {
  const std::string outside = image_.root() + "/outside";
  MakeDirs(outside);
  WriteFile(outside + "/victim", "KEEP");
  for (const char* link : {"/song.mid.b64", "/song.mid", "/song.mid.bak"}) {
    ASSERT_EQ(0, ::symlink((outside + "/victim").c_str(), (dir_ + link).c_str()));
    WriteFile(package_, SelfPackage("song.mid", Base64("song")));
    EXPECT_EQ("", Decode1()) << link;
    EXPECT_EQ("KEEP", ReadFile(outside + "/victim")) << link;
    ASSERT_EQ(0, ::unlink((dir_ + link).c_str()));
  }
}

TEST_F(PackageTest, SelfDecodeFailureRestoresTheEarlierFile) {
  WriteFile(dir_ + "/song.mid", "OLD");
  WriteFile(package_, SelfPackage("song.mid", "QUJ\n"));  // not a whole base64 group
  std::string printed;
  EXPECT_EQ("", Decode1(&printed));
  EXPECT_EQ("base64 error!\n", printed);
  EXPECT_EQ("OLD", ReadFile(dir_ + "/song.mid"));
  EXPECT_FALSE(PathExists(dir_ + "/song.mid.b64"));
  EXPECT_FALSE(PathExists(dir_ + "/song.mid.bak"));
}

TEST_F(PackageTest, SelfPackageCutBeforeTheEndOfItsDataIsRefused) {
  WriteFile(package_, "<SELF>\n<file filename=\"a.mid\">\n" + Base64("song") + "\n");
  EXPECT_EQ("", Decode1());
  EXPECT_FALSE(PathExists(dir_ + "/a.mid"));
  EXPECT_FALSE(PathExists(dir_ + "/a.mid.b64"));
  WriteFile(package_, "<SELF>\n<title>no file</title>\n</SELF>\n");
  EXPECT_EQ("", Decode1());
}

TEST_F(PackageTest, FmFormReportsSuccessAndLeavesTheBufferOnFailure) {
  WriteFile(package_, SelfPackage("a.mid", Base64("song")));
  char out[512] = "untouched";
  EXPECT_EQ(1, FM_ChangeB64ToBin(package_.c_str(), out, sizeof(out)));
  EXPECT_EQ(dir_ + "/a.mid", out);
  std::strcpy(out, "untouched");
  WriteFile(package_, "nothing here\n");
  EXPECT_EQ(0, FM_ChangeB64ToBin(package_.c_str(), out, sizeof(out)));
  EXPECT_STREQ("untouched", out);
}

}  // namespace
}  // namespace zansong_test
