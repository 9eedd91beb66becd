// PowerPoint: add-ins registered and removed below the key of each version.
#include "office/powerpnt.h"

#include "office_fixture.h"

namespace {

class PowerPoint : public OfficeTest {
 protected:
  void SetUp() override {
    OfficeTest::SetUp();
    BeSilent();
  }
  static void AddPowerPoint(int version) {
    SetRegistryString(HKEY_LOCAL_MACHINE, PowerPntKey(version, "InstallRoot"), "Path", "C:\\Office\\");
  }
};

TEST_F(PowerPoint, AnUnknownVersionIsLogged) {
  EXPECT_EQ(Task("set_ppt_macro", "13,tool.ppa,C:\\P"),
            "MS PowerPoint version 13 is not supported by this version of Installation de Veltrane 6.0c.\n");
}

TEST_F(PowerPoint, ActsInPassOneOnly) {
  AddPowerPoint(9);
  for (const char* task : {"set_ppt_macro", "run_ppt_macro", "remove_ppt_macro"})
    EXPECT_EQ(Task(task, "13,a,b", 0), "") << task;
}

TEST_F(PowerPoint, VersionNineRegistersForTheUser) {
  AddPowerPoint(9);
  EXPECT_EQ(Task("set_ppt_macro", "9,tool.ppa,C:\\P"), "");
  EXPECT_EQ(Task("run_ppt_macro", "False"), "  Task_run_ppt_macro(name: run_ppt_macro, args: False)\n");
  EXPECT_EQ(RegistryDword(HKEY_CURRENT_USER, PowerPntKey(9, "AddIns\\tool"), "AutoLoad"), 0xFFFFFFFFu);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, PowerPntKey(9, "AddIns\\tool"), "Path"), "C:\\P\\tool.ppa");
}

TEST_F(PowerPoint, EachVersionHasItsRoot) {
  for (const int version : {9, 10, 11, 12}) {
    AddPowerPoint(version);
    Task("set_ppt_macro", std::to_string(version) + ",tool.ppam,C:\\P");
  }
  Task("run_ppt_macro", "False");
  for (const int version : {9, 10, 11, 12}) {
    const HKEY root = version <= 10 ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    const HKEY other = version <= 10 ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    EXPECT_TRUE(RegistryKeyExists(root, PowerPntKey(version, "AddIns\\tool"))) << version;
    EXPECT_FALSE(RegistryKeyExists(other, PowerPntKey(version, "AddIns\\tool"))) << version;
  }
}

TEST_F(PowerPoint, AVersionThatIsNotInstalledGetsNone) {
  Task("set_ppt_macro", "9,tool.ppa,C:\\P");
  Task("run_ppt_macro", "False");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, PowerPntKey(9, "AddIns")));
}

TEST_F(PowerPoint, ASilentRunAnswersYes) {
  AddPowerPoint(12);
  Task("set_ppt_macro", "12,tool.ppam,C:\\P");
  const std::string log = Task("run_ppt_macro", "");
  EXPECT_NE(log.find("Microsoft PowerPoint ?: [Yes]\n"), std::string::npos) << log;
  EXPECT_TRUE(RegistryKeyExists(HKEY_LOCAL_MACHINE, PowerPntKey(12, "AddIns\\tool")));
}

TEST_F(PowerPoint, AnotherWordIsAnUnknownArgument) {
  AddPowerPoint(12);
  Task("set_ppt_macro", "12,tool.ppam,C:\\P");
  EXPECT_EQ(Task("run_ppt_macro", "maybe"),
            "  Task_run_ppt_macro(name: run_ppt_macro, args: maybe)\n"
            "The arguments for the task run_ppt_macro in Setup.inf are unknown.\n");
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, PowerPntKey(12, "AddIns\\tool")));
}

TEST_F(PowerPoint, AnAddInWithoutAFileAsserts) {
  AddPowerPoint(11);
  Task("set_ppt_macro", "11");
  AssertRecorder recorder;
  Task("run_ppt_macro", "False");
  EXPECT_EQ(recorder.Only(), "Str::Length(InstallPowerPt[i].filename)");
}

TEST_F(PowerPoint, RemovalDeletesTheAddInsKeyOnly) {
  AddPowerPoint(9);
  Task("set_ppt_macro", "9,tool.ppa,C:\\P");
  Task("run_ppt_macro", "False");
  SetRegistryString(HKEY_CURRENT_USER, PowerPntKey(9, "AddIns\\other"), "Path", "C:\\o.ppa");
  EXPECT_EQ(Task("remove_ppt_macro", "Veltrane"),
            "  Task_remove_ppt_macro(name: remove_ppt_macro, args: Veltrane)\n");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, PowerPntKey(9, "AddIns\\tool")));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, PowerPntKey(9, "AddIns\\other")));
}

TEST_F(PowerPoint, RemovalWithoutRecordedFilesTouchesNothing) {
  SetRegistryString(HKEY_CURRENT_USER, PowerPntKey(9, "AddIns\\other"), "Path", "C:\\o.ppa");
  Task("remove_ppt_macro", "Veltrane");
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, PowerPntKey(9, "AddIns\\other")));
}

}  // namespace
