#include "installer/checks.h"

#include <gtest/gtest.h>

#include "messages/app_vars.h"
#include "sequence/stand_in.h"
#include "support/registry_guard.h"

namespace {

constexpr char kMaker[] = "Software\\Quorvale";

class ChecksTest : public AppVarsTest {
 protected:
  ChecksTest() : mGuard(HKEY_LOCAL_MACHINE, kMaker) {}
  RegistryGuard mGuard;
};

TEST_F(ChecksTest, MessageIsTheRegisteredOne) {
  EXPECT_EQ(QuitIfNotBusyMessage(), RegisterWindowMessageA("WM_QLI_QuitIfNotBusy"));
}

TEST_F(ChecksTest, NoCopyRuns) { EXPECT_FALSE(ProductStaysOpen()); }

TEST_F(ChecksTest, EveryQuittingCopyIsAsked) {
  const StandInWindow first("MainVTWin1", 100);
  const StandInWindow second("MainVTWin2", 100);
  EXPECT_FALSE(ProductStaysOpen());
  EXPECT_EQ(first.Asked(), 1);
  EXPECT_EQ(second.Asked(), 1);
}

TEST_F(ChecksTest, OneStayingCopyIsEnough) {
  const StandInWindow first("MainVTWin1", 100);
  const StandInWindow second("MainVTWin2", 99);
  EXPECT_TRUE(ProductStaysOpen());
}

TEST_F(ChecksTest, StayingCopyDoesNotSpareTheOthersTheQuestion) {
  // Whatever the order of the windows, one that stays comes before another.
  const StandInWindow first("MainVTWin1", 0);
  const StandInWindow second("MainVTWin2", 0);
  const StandInWindow third("MainVTWin3", 100);
  EXPECT_TRUE(ProductStaysOpen());
  EXPECT_EQ(first.Asked(), 1);
  EXPECT_EQ(second.Asked(), 1);
  EXPECT_EQ(third.Asked(), 1);
}

TEST_F(ChecksTest, NewerVersionNeedsAVersionOfOurOwn) {
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kMaker) + "\\KVRX7", "", "");
  EXPECT_EQ(FindNewerVersion(), 0);
  for (const char* version : {"", "six", "6.1", "99999999999"}) {
    AppSetVariable("MajVersion", version);
    EXPECT_EQ(FindNewerVersion(), 0) << version;
  }
  AppSetVariable("MajVersion", "6");
  EXPECT_EQ(FindNewerVersion(), 7);
}

TEST_F(ChecksTest, FirstBlockingVersionStopsTheSearch) {
  AppSetVariable("MajVersion", "6");
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kMaker) + "\\KVRX7", "KVRX6", "1");
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kMaker) + "\\KVRX8", "KVRX6", "2");
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kMaker) + "\\KVRX9", "KVRX6", "");
  EXPECT_EQ(FindNewerVersion(), 8);
}

TEST_F(ChecksTest, OfficeByItsWindows) {
  EXPECT_FALSE(IsOfficeOpen());
  const StandInWindow word("OpusApp");
  EXPECT_TRUE(IsOfficeOpen());
}

TEST_F(ChecksTest, TriedRightLeavesTheKeyWithoutTheValue) {
  EXPECT_TRUE(CanWriteMachineKey());
  EXPECT_TRUE(RegistryKeyExists(HKEY_LOCAL_MACHINE, kMaker));
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kMaker, "TestKey"), std::nullopt);
}

TEST_F(ChecksTest, MissingRight) {
  const DeniedKey denied(HKEY_LOCAL_MACHINE, kMaker);
  EXPECT_FALSE(CanWriteMachineKey());
}

}  // namespace
