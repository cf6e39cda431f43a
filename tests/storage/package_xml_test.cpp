// The XML package decoder (Expat): FM_ChangeB64ToBin2.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "storage/package_test_util.h"

namespace zansong_test {
namespace {

TEST_F(PackageTest, XmlPackageWithBase64BrokenOverLinesDecodes) {
  const std::string song = SongBytes();
  WriteFile(package_, XmlPackage("song.mid", Lines(Base64(song), 76, "    ")));
  std::string ack;
  EXPECT_EQ(dir_ + "/song.mid", Decode2(&ack));
  EXPECT_EQ("https://shop.example/ack?id=7&k=1", ack);
  EXPECT_EQ(song, ReadFile(dir_ + "/song.mid"));
  EXPECT_EQ(Base64(song), ReadFile(dir_ + "/song.mid.b64"));  // left in place
}

TEST_F(PackageTest, XmlNamesAreComparedWithoutRegardToCase) {
  WriteFile(package_,
            "<self><FILE FileName=\"a.mid\" AckURL=\"x\">" + Base64("song") + "</FILE></self>");
  std::string ack;
  EXPECT_EQ(dir_ + "/a.mid", Decode2(&ack));
  EXPECT_EQ("x", ack);
  EXPECT_EQ("song", ReadFile(dir_ + "/a.mid"));
}

TEST_F(PackageTest, XmlFileNameWithADirectoryPartGoesBelowThePackage) {
  MakeDirs(dir_ + "/a");
  WriteFile(package_, XmlPackage("a/b.mid", Base64("song")));
  EXPECT_EQ(dir_ + "/a/b.mid", Decode2());
  EXPECT_EQ("song", ReadFile(dir_ + "/a/b.mid"));
}

TEST_F(PackageTest, XmlFileNameWithShellTextIsJustAName) {
  const std::string name = "x $(touch PWNED) `touch PWNED2`; touch PWNED3 'q'.mid";
  std::string attribute = "x $(touch PWNED) `touch PWNED2`; touch PWNED3 &apos;q&apos;.mid";
  WriteFile(package_, XmlPackage(attribute, Base64("first")));
  EXPECT_EQ(dir_ + "/" + name, Decode2());
  EXPECT_EQ("first", ReadFile(dir_ + "/" + name));
  // Once more over the existing file: it is moved aside, then replaced.
  WriteFile(package_, XmlPackage(attribute, Base64("second")));
  EXPECT_EQ(dir_ + "/" + name, Decode2());
  EXPECT_EQ("second", ReadFile(dir_ + "/" + name));
  EXPECT_EQ("first", ReadFile(dir_ + "/" + name + ".bak"));
  ExpectNothingRan();
}

TEST_F(PackageTest, XmlFileNameWithAQuoteIsJustAName) {
  WriteFile(package_, XmlPackage("say &quot;hi&quot;.mid", Base64("song")));
  EXPECT_EQ(dir_ + "/say \"hi\".mid", Decode2());
  EXPECT_EQ("song", ReadFile(dir_ + "/say \"hi\".mid"));
}

TEST_F(PackageTest, XmlFileNamesThatLeaveTheDirectoryAreRefused) {
  const std::string before = OutsideListing();
  for (std::string bad : {"../x.mid", "a/../../x.mid", "/tmp/x.mid", "", "a&#9;b.mid", "..", ".",
                          "a/", "./x.mid", "../$(touch PWNED).mid"}) {
    WriteFile(package_, XmlPackage(bad, Base64("song")));
    std::string printed;
    EXPECT_EQ("", Decode2(nullptr, &printed)) << bad;
    EXPECT_NE(std::string::npos, printed.find("base64 error!")) << bad;
  }
  EXPECT_EQ(before, OutsideListing());
  EXPECT_FALSE(PathExists("/tmp/x.mid.b64"));
  ExpectNothingRan();
}

TEST_F(PackageTest, XmlOutputNeverFollowsALinkPlantedInTheFolder) {
  const std::string outside = image_.root() + "/outside";
  MakeDirs(outside);
  WriteFile(outside + "/victim", "KEEP");
  // A link in place of the ".b64" file, of the song file, of its ".bak",
  // and a linked directory on the way.
  const std::string links[][2] = {{"/song.mid.b64", "/victim"},
                                  {"/song.mid", "/victim"},
                                  {"/song.mid.bak", "/victim"},
                                  {"/sub", ""}};
  for (const auto& link : links) {
    ASSERT_EQ(0, ::symlink((outside + link[1]).c_str(), (dir_ + link[0]).c_str()));
    const std::string name = link[0] == std::string("/sub") ? "sub/song.mid" : "song.mid";
    WriteFile(package_, XmlPackage(name, Base64("song")));
    std::string printed;
    EXPECT_EQ("", Decode2(nullptr, &printed)) << link[0];
    EXPECT_NE(std::string::npos, printed.find("base64 error!")) << link[0];
    EXPECT_EQ("KEEP", ReadFile(outside + "/victim")) << link[0];
    EXPECT_FALSE(PathExists(outside + "/song.mid.b64")) << link[0];
    EXPECT_FALSE(PathExists(outside + "/song.mid")) << link[0];
    ASSERT_EQ(0, ::unlink((dir_ + link[0]).c_str()));
  }
}

TEST_F(PackageTest, XmlDecodeFailureRestoresTheEarlierFile) {
  WriteFile(dir_ + "/song.mid", "OLD");
  WriteFile(package_, XmlPackage("song.mid", "QUJ"));  // not a whole base64 group
  std::string printed;
  EXPECT_EQ("", Decode2(nullptr, &printed));
  EXPECT_EQ("base64 error!\n", printed);
  EXPECT_EQ("OLD", ReadFile(dir_ + "/song.mid"));
  EXPECT_FALSE(PathExists(dir_ + "/song.mid.bak"));
}

TEST_F(PackageTest, XmlDecodeFailureWithoutAnEarlierFileLeavesNoSong) {
  WriteFile(package_, XmlPackage("song.mid", ""));
  EXPECT_EQ("", Decode2());
  EXPECT_FALSE(PathExists(dir_ + "/song.mid"));
  // A file name in a directory that does not exist cannot be written.
  WriteFile(package_, XmlPackage("nodir/song.mid", Base64("song")));
  EXPECT_EQ("", Decode2());
}

TEST_F(PackageTest, XmlPackageWithoutAFileElementGivesNoName) {
  WriteFile(package_, "<SELF><title>x</title></SELF>");
  std::string printed;
  EXPECT_EQ("", Decode2(nullptr, &printed));
  EXPECT_EQ("base64 error!\n", printed);
}

TEST_F(PackageTest, MalformedOrMissingXmlPackageWritesNothing) {
  WriteFile(package_, "<SELF><file filename=\"a.mid\">QUJD</SELF>");
  char name[16] = "untouched";
  char ack[16] = "untouched";
  EXPECT_EQ(0, FM_ChangeB64ToBin2(package_.c_str(), name, sizeof(name), ack, sizeof(ack)));
  EXPECT_STREQ("untouched", name);
  EXPECT_STREQ("untouched", ack);
  EXPECT_FALSE(PathExists(dir_ + "/a.mid"));
  EXPECT_EQ(
      0, FM_ChangeB64ToBin2((dir_ + "/missing.xml").c_str(), name, sizeof(name), ack, sizeof(ack)));
  EXPECT_STREQ("untouched", name);
  // Null buffers are allowed.
  WriteFile(package_, XmlPackage("n.mid", Base64("song")));
  EXPECT_EQ(0, FM_ChangeB64ToBin2(package_.c_str(), nullptr, 0, nullptr, 0));
  EXPECT_EQ("song", ReadFile(dir_ + "/n.mid"));
}

}  // namespace
}  // namespace zansong_test
