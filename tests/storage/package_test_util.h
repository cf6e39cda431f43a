// Helpers of the package decoder tests: base64 text, song bytes, packages
// of both forms and a fixture with a package in the downloaded songs.
#ifndef ZANSONG_TESTS_STORAGE_PACKAGE_TEST_UTIL_H_
#define ZANSONG_TESTS_STORAGE_PACKAGE_TEST_UTIL_H_

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "samplefiles/package_writer.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/storage/package.h"

namespace zansong_test {

using samplefiles::Base64;

// The text broken into lines of width characters.
inline std::string Lines(const std::string& text, size_t width, const std::string& indent) {
  std::string out;
  for (size_t i = 0; i < text.size(); i += width) out += indent + text.substr(i, width) + "\r\n";
  return out;
}

// Song bytes: every byte value, so that nothing is lost on the way.
inline std::string SongBytes() {
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

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_STORAGE_PACKAGE_TEST_UTIL_H_
