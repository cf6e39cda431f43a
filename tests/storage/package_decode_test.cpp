// The two package decoders: XML (Expat) and line-oriented "<SELF>".
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
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

std::string Base64(const std::string& bytes) {
  static const char kAlphabet[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    unsigned v = static_cast<unsigned char>(bytes[i]) << 16;
    if (i + 1 < bytes.size()) v |= static_cast<unsigned char>(bytes[i + 1]) << 8;
    if (i + 2 < bytes.size()) v |= static_cast<unsigned char>(bytes[i + 2]);
    out += kAlphabet[(v >> 18) & 63];
    out += kAlphabet[(v >> 12) & 63];
    out += i + 1 < bytes.size() ? kAlphabet[(v >> 6) & 63] : '=';
    out += i + 2 < bytes.size() ? kAlphabet[v & 63] : '=';
  }
  return out;
}

// The text broken into lines of width characters.
std::string Lines(const std::string& text, size_t width, const std::string& indent) {
  std::string out;
  for (size_t i = 0; i < text.size(); i += width) out += indent + text.substr(i, width) + "\r\n";
  return out;
}

// Song bytes: every byte value, so that nothing is lost on the way.
std::string SongBytes() {
  std::string song = "MThd";
  for (int i = 0; i < 700; ++i) song += static_cast<char>(i * 7);
  return song;
}

class PackageTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.root() + "/usr/local/songs/Downloaded Songs/Single Songs";
    MakeDirs(dir_);
    package_ = dir_ + "/package.xml";
  }

  // No file whose name begins with PWNED (what the shell text in a name
  // would create if it ran) anywhere in the image or the working directory.
  void ExpectNothingRan() {
    namespace fs = std::filesystem;
    for (const auto& e : fs::recursive_directory_iterator(image_.root())) {
      EXPECT_NE(0u, e.path().filename().string().rfind("PWNED", 0)) << e.path();
    }
    for (const auto& e : fs::directory_iterator(fs::current_path())) {
      EXPECT_NE(0u, e.path().filename().string().rfind("PWNED", 0)) << e.path();
    }
  }

  // Every path in the image outside the package's directory, as a set of
  // names, so that a test can see that nothing appeared there.
  std::string OutsideListing() {
    namespace fs = std::filesystem;
    std::string listing;
    for (const auto& e : fs::recursive_directory_iterator(image_.root())) {
      std::string p = e.path().string();
      if (p.compare(0, dir_.size() + 1, dir_ + "/") != 0) listing += p + "\n";
    }
    return listing;
  }

  std::string XmlPackage(const std::string& nameAttribute, const std::string& base64Lines) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<SELF>\r\n"
           "  <file filename=\"" +
           nameAttribute + "\" ackurl=\"https://shop.example/ack?id=7&amp;k=1\">\r\n" +
           base64Lines + "  </file>\r\n</SELF>\r\n";
  }

  std::string SelfPackage(const std::string& name, const std::string& base64Lines) {
    return "<SELF>\n<title>Song</title>\n<file filename=\"" + name + "\">\n" + base64Lines +
           "</file>\n</SELF>\n";
  }

  // FM_ChangeB64ToBin2 with generous buffers; the printed text in printed.
  std::string Decode2(std::string* ack = nullptr, std::string* printed = nullptr) {
    char name[512];
    char ackurl[256];
    std::memset(name, 'N', sizeof(name));
    std::memset(ackurl, 'A', sizeof(ackurl));
    StdoutCapture capture;
    EXPECT_EQ(0, FM_ChangeB64ToBin2(package_.c_str(), name, sizeof(name), ackurl, sizeof(ackurl)));
    std::string out = capture.Finish();
    if (printed != nullptr) *printed = out;
    if (ack != nullptr) *ack = std::string(ackurl, strnlen(ackurl, sizeof(ackurl)));
    return std::string(name, strnlen(name, sizeof(name)));
  }

  std::string Decode1(std::string* printed = nullptr) {
    StdoutCapture capture;
    std::string out = ChangeB64ToBin(package_.c_str()).c_str();
    std::string text = capture.Finish();
    if (printed != nullptr) *printed = text;
    return out;
  }

  std::string dir_;
  std::string package_;
};

// ---- XML packages ----

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

// ---- "<SELF>" packages ----

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
