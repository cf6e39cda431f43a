// The command-line host run as a program: the demo and register/songs.
#include <gtest/gtest.h>

#include <string>

#include "support/device_image.h"
#include "tools/zanfm/zanfm_runner.h"

namespace zansong_test {
namespace {

#define ZANFM_PROGRAM ZanfmProgram()

TEST(ZanfmTest, DemoShowsTheSampleAlbums) {
  DeviceImage image;
  std::string out;
  ASSERT_EQ(0, RunCommand(ZANFM_PROGRAM + " demo '" + image.root() + "/demo'", &out)) << out;
  for (const char* title : {"Classics", "Japanese Songs", "Holiday Favourites", "Party Mix",
                            "さくらさくら", "Jazz Trio"}) {
    EXPECT_NE(std::string::npos, out.find(title)) << title << "\n" << out;
  }
  EXPECT_NE(std::string::npos, out.find("registered   #12 Classics/04 Prelude.mid")) << out;
  EXPECT_NE(std::string::npos, out.find("unregistered #5 Classics/03 Nocturne.mid")) << out;
  // The recording step: a performance filed, then kept under a new title.
  EXPECT_NE(std::string::npos, out.find("Recorded as song #")) << out;
  EXPECT_NE(std::string::npos, out.find("Evening Practice (kept)  SMF")) << out;
}

TEST(ZanfmTest, RegisteredStickSongsListAsJson) {
  DeviceImage image;
  const std::string stick = image.UsbRoot("sdc1");
  MakeDirs(stick + "Album");
  WriteFile(stick + "Album/not-a-song.txt", "x");
  WriteFile(stick + "Album/tune.wav", std::string("RIFF\x24\0\0\0WAVE", 12));
  std::string zanfm = ZANFM_PROGRAM + " --root '" + image.root() + "' ";
  std::string out;
  ASSERT_EQ(0, RunCommand(zanfm + "register --usb sdc1", &out)) << out;
  ASSERT_EQ(0, RunCommand(zanfm + "songs --usb sdc1 --json", &out)) << out;
  EXPECT_NE(std::string::npos, out.find("\"path\": \"Album/tune.wav\"")) << out;
  EXPECT_NE(std::string::npos, out.find("\"format\": \"WAV\"")) << out;
  EXPECT_EQ(std::string::npos, out.find("not-a-song")) << out;
  // The internal storage holds nothing of it.
  ASSERT_EQ(0, RunCommand(zanfm + "register", &out)) << out;
  ASSERT_EQ(0, RunCommand(zanfm + "songs --json", &out)) << out;
  EXPECT_EQ("[]\n", out);
}

TEST(ZanfmTest, FailureExitsNonZeroWithTheMessage) {
  DeviceImage image;
  std::string out;
  EXPECT_NE(0,
            RunCommand(ZANFM_PROGRAM + " --root '" + image.root() + "' register --usb sdz1", &out));
  EXPECT_NE(std::string::npos, out.find("no storage")) << out;
  EXPECT_EQ(0, RunCommand(ZANFM_PROGRAM + " --help", &out));
  EXPECT_NE(std::string::npos, out.find("register")) << out;
}

}  // namespace
}  // namespace zansong_test
