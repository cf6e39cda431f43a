// The process-wide cancel flag.
#include "zansong/async/cancel.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

// Read while the program is being loaded, before any test has run.
const bool kFlagAtLoad = GetCancelFlag();

class CancelFlagTest : public ::testing::Test {
 protected:
  void TearDown() override { ClearCancelFlag(); }
};

TEST_F(CancelFlagTest, FalseAtLoad) { EXPECT_FALSE(kFlagAtLoad); }

TEST_F(CancelFlagTest, SetThenGet) {
  SetCancelFlag();
  EXPECT_TRUE(GetCancelFlag());
}

TEST_F(CancelFlagTest, StaysSetUntilCleared) {
  SetCancelFlag();
  EXPECT_TRUE(GetCancelFlag());
  EXPECT_TRUE(GetCancelFlag());
  ClearCancelFlag();
  EXPECT_FALSE(GetCancelFlag());
}

TEST_F(CancelFlagTest, SetTwiceClearOnceIsFalse) {
  SetCancelFlag();
  SetCancelFlag();
  ClearCancelFlag();
  EXPECT_FALSE(GetCancelFlag());
}

TEST_F(CancelFlagTest, ClearWhenClearStaysFalse) {
  ClearCancelFlag();
  EXPECT_FALSE(GetCancelFlag());
}

void RaiseFlag(int) { SetCancelFlag(); }

TEST_F(CancelFlagTest, SetFromSignalHandler) {
  struct sigaction action = {};
  action.sa_handler = RaiseFlag;
  struct sigaction previous;
  ASSERT_EQ(sigaction(SIGUSR1, &action, &previous), 0);
  std::raise(SIGUSR1);
  sigaction(SIGUSR1, &previous, nullptr);
  EXPECT_TRUE(GetCancelFlag());
}

}  // namespace
