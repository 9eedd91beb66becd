#pragma once
// What the Office tests start from: no Office on the machine, macro files and startup folders of their own,
// tasks run by name in pass 1.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "office/powerpnt.h"
#include "office/word.h"
#include "support/registry_guard.h"
#include "tasks/infproc.h"
#include "ui/ui_fixture.h"

inline constexpr char kOffice[] = "Software\\Microsoft\\Office";

class OfficeTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    ResetWordMacros();
    ResetPowerPntAddIns();
  }
  void TearDown() override {
    ResetWordMacros();
    ResetPowerPntAddIns();
    UiTest::TearDown();
  }

  // Runs a task in a pass and returns what it logged.
  std::string Task(const std::string& name, const std::string& args, int32_t pass = 1) {
    EXPECT_EQ(TaskDispatch(("$" + name).c_str(), args.c_str(), &pass), 1);
    return Log();
  }
  // Makes Word of an Office version known, with its program folder below the test's own; the
  // startup folder is created.
  std::string AddWord(int version, const std::string& folder) {
    const std::string root = mDir.MakeFolder(folder);
    mDir.MakeFolder(folder + "\\Startup");
    SetRegistryString(HKEY_LOCAL_MACHINE, WordKey(version) + "\\InstallRoot", "PATH", root + "\\");
    return root + "\\Startup";
  }
  static std::string WordKey(int version) {
    return std::string(kOffice) + "\\" + std::to_string(version) + ".0\\Word";
  }
  static std::string PowerPntKey(int version, const std::string& name) {
    return std::string(kOffice) + "\\" + std::to_string(version) + ".0\\PowerPoint\\" + name;
  }
  // The arguments of set_word_macro for two files in the folder "macros".
  std::string WordArgs(int version) {
    mDir.Write("macros\\vt.dot", "first macro");
    mDir.Write("macros\\vt2.dot", "second macro");
    return std::to_string(version) + ",vt.dot," + mDir.Join("macros") + ",vt2.dot," + mDir.Join("macros");
  }

  RegistryGuard mMachineGuard{HKEY_LOCAL_MACHINE, kOffice};
  RegistryGuard mUserGuard{HKEY_CURRENT_USER, kOffice};
};
