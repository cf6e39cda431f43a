// FH2_stripxp: the expression-stripping program run on one song's MIDI
// file, with an argument vector.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "support/catalogue_fixture.h"
#include "support/child_process.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/async/targets.h"
#include "zansong/fileman/messages.h"
#include "zansong/result_codes.h"

namespace {

using zansong_test::ReadFile;
using zansong_test::StdoutCapture;
using zansong_test::WriteFile;

class StripxpTest : public zansong_test::DeviceTest {
 protected:
  void SetUp() override {
    // The image's program, replaced by one that records its arguments.
    std::string program = image_.Path("/usr/local/bin/stripxp.sh");
    std::remove(program.c_str());
    WriteFile(program, "#!/bin/sh\nprintf '%s|%s\\n' \"$#\" \"$1\" >> '" + Log() + "'\n");
    ASSERT_EQ(chmod(program.c_str(), 0755), 0);
    root_ = image_.UsbRoot();
    zansong_test::CreateCatalogue(image_, root_ + ".zansong.db");
    // A file name that a shell would take apart.
    zansong_test::ExecOn(root_ + ".zansong.db",
                         "INSERT INTO song(song_id,pfix,album_id,midi_path) "
                         "VALUES(7,'s',1,'My Album/it''s $(x) \"a\";b.mid')");
  }

  std::string Log() const { return image_.Path("/tmp/stripxp.log"); }

  static std::string RemoconBox(int message) {
    StdoutCapture out;
    PrintRemoconMessage(message, kButtonOk);
    return out.Finish();
  }

  std::string root_;
};

TEST_F(StripxpTest, RunsTheProgramOnTheWholePathOfTheMidiFile) {
  StdoutCapture out;
  EXPECT_EQ(FH2_stripxp(root_.c_str(), 7), kResultOk);
  EXPECT_EQ(out.Finish(), RemoconBox(kMsgComplete));
  EXPECT_EQ(ReadFile(Log()), "1|" + root_ + "My Album/it's $(x) \"a\";b.mid\n");
}

TEST_F(StripxpTest, UnknownSongShowsFileDoesNotExistAndRunsNothing) {
  StdoutCapture out;
  EXPECT_EQ(FH2_stripxp(root_.c_str(), 8), kResultOk);
  EXPECT_EQ(out.Finish(), RemoconBox(kMsgFileDoesntExist));
  EXPECT_FALSE(zansong_test::PathExists(Log()));
}

TEST_F(StripxpTest, WriteProtectedStorageReturnsMinusFourteenAndPrintsNothing) {
  std::string root = root_;
  std::string log = Log();
  int status = zansong_test::RunInChild([&root] {
    if (!zansong_test::MakeDirReadOnlyForThisProcess(root)) return zansong_test::kChildSetupFailed;
    StdoutCapture out;
    int result = FH2_stripxp(root.c_str(), 7);
    return (result == kResultWriteProtected && out.Finish().empty()) ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
  EXPECT_FALSE(zansong_test::PathExists(log));
}

}  // namespace
