#include "common/process.h"

#include <gtest/gtest.h>

#include <string>

#include "support/device_image.h"
#include "support/stdout_capture.h"

namespace {

using zansong::RunProgram;
using zansong_test::DeviceTest;
using zansong_test::PathExists;
using zansong_test::ReadFile;
using zansong_test::WriteFile;

TEST(RunProgramTest, ReturnsTheExitStatus) {
  EXPECT_EQ(0, RunProgram({"true"}));
  EXPECT_EQ(1, RunProgram({"false"}));
  EXPECT_EQ(3, RunProgram({"sh", "-c", "exit 3"}));
}

TEST(RunProgramTest, MissingProgramIsAFailure) {
  EXPECT_EQ(127, RunProgram({"/nonexistent/program"}));
  EXPECT_EQ(-1, RunProgram({}));
}

TEST(RunProgramTest, SignalEndIsAFailure) {
  EXPECT_EQ(128 + 9, RunProgram({"sh", "-c", "kill -9 $$"}));
}

TEST_F(DeviceTest, ArgumentsReachTheProgramUnchangedWithoutAShell) {
  std::string dir = image_.root() + "/tmp/";
  std::string name = dir + "a \"b\" $(touch PWNED) `touch PWNED2`; touch PWNED3";
  WriteFile(name, "x");
  ASSERT_EQ(0, RunProgram({"cp", name, dir + "copy"}));
  EXPECT_EQ("x", ReadFile(dir + "copy"));
  EXPECT_FALSE(PathExists("PWNED"));
  EXPECT_FALSE(PathExists(dir + "PWNED"));
  EXPECT_FALSE(PathExists("PWNED2"));
  EXPECT_FALSE(PathExists("PWNED3"));
}

TEST_F(DeviceTest, StandardInputAndOutputCanBeRedirectedToFiles) {
  std::string in = image_.root() + "/tmp/in.txt";
  std::string out = image_.root() + "/tmp/out.txt";
  WriteFile(in, "hello\n");
  ASSERT_EQ(0, RunProgram({"cat"}, in.c_str(), out.c_str()));
  EXPECT_EQ("hello\n", ReadFile(out));
}

TEST_F(DeviceTest, UnopenableRedirectionIsAFailure) {
  std::string missing = image_.root() + "/nowhere/in.txt";
  EXPECT_NE(0, RunProgram({"cat"}, missing.c_str(), nullptr));
  EXPECT_NE(0, RunProgram({"echo", "x"}, nullptr, missing.c_str()));
}

TEST(RunProgramTest, PendingOutputIsFlushedBeforeTheProgramRuns) {
  zansong_test::StdoutCapture capture;
  std::printf("first ");
  RunProgram({"echo", "second"});
  EXPECT_EQ("first second\n", capture.Finish());
}

}  // namespace
