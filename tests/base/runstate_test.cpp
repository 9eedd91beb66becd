#include "base/runstate.h"

#include <gtest/gtest.h>

namespace {

class RunStateTest : public testing::Test {
 protected:
  void TearDown() override { ::Run() = RunState{}; }
};

TEST_F(RunStateTest, StartsAsAnInteractiveInstallation) {
  const RunState& run = ::Run();
  EXPECT_EQ(run.setupFlags, 0);
  EXPECT_TRUE(run.install);
  EXPECT_EQ(run.platformFlags, 0u);
  EXPECT_FALSE(run.abort);
  EXPECT_FALSE(run.restartNeeded);
  EXPECT_FALSE(run.rebootRequested);
  EXPECT_FALSE(run.keepAllNewer);
  EXPECT_EQ(run.oldVersionChoice, kOldVersionNone);
}

TEST_F(RunStateTest, FlagsHaveTheirBits) {
  EXPECT_EQ(kWorkstation, 1);
  EXPECT_EQ(kOleMgrOnly, 2);
  EXPECT_EQ(kRemove, 4);
  EXPECT_EQ(kKeepSelf, 8);
  EXPECT_EQ(kQuiet, 16);
  EXPECT_EQ(kPlatformNT, 1);
  EXPECT_EQ(kPlatformWin9x, 2);
  EXPECT_EQ(kPlatformMajor4, 4);
}

TEST_F(RunStateTest, QuestionsReadTheirFlag) {
  ::Run().setupFlags = kQuiet;
  EXPECT_TRUE(::Run().IsQuiet());
  EXPECT_FALSE(::Run().IsWorkstation());
  ::Run().setupFlags = kWorkstation | kRemove;
  EXPECT_FALSE(::Run().IsQuiet());
  EXPECT_TRUE(::Run().IsWorkstation());
  ::Run().platformFlags = kPlatformWin9x | kPlatformMajor4;
  EXPECT_TRUE(::Run().IsWin9x());
  ::Run().platformFlags = kPlatformNT;
  EXPECT_FALSE(::Run().IsWin9x());
}

TEST_F(RunStateTest, IsOneForTheWholeProcess) {
  ::Run().abort = true;
  EXPECT_TRUE(::Run().abort);
  ::Run() = RunState{};
  EXPECT_FALSE(::Run().abort);
}

}  // namespace
