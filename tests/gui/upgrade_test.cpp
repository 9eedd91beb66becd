// Earlier versions: dialog 2300, and the removal of versions 5 and 4 by stand-ins for their setup programs.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "gui/gui_run.h"
#include "resources/ids.h"
#include "support/files.h"
#include "support/registry_guard.h"
#include "support/setup_run.h"

namespace {

class UpgradeTest : public testing::Test {
 protected:
  UpgradeTest() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.WriteScript(mSetup.SimpleScript());
  }
  // Installs a stand-in for the setup program of a version in `folder` and records it as that version's.
  std::string MakeOld(int version, const std::string& name, const std::string& todo) {
    const std::string folder = mSetup.Root().MakeFolder("old");
    const std::string program = folder + "\\" + name;
    EXPECT_TRUE(CopyFileA(HelperPath("earlier_setup.exe").c_str(), program.c_str(), FALSE));
    WriteWholeFile(program + ".todo", todo);
    SetRegistryString(HKEY_LOCAL_MACHINE,
                      "Software\\Quorvale\\KVRX" + std::to_string(version) + "\\Directories", "ProgDir",
                      folder);
    return program;
  }
  // Leaves the main dialog, which the folder must stand in.
  RunOutcome QuitMain(GuiRun& run, const std::string& folder) {
    const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
    EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER), folder);
    dialog.End(IDCANCEL);
    RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, 10u) << outcome.log;
    return outcome;
  }
  RunOutcome Install(GuiRun& run) {
    run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
    run.Dialog(IDC_FINISH_LAUNCH).Close();
    RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
    return outcome;
  }
  static std::string DefaultFolder() {
    return RegistryString(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion",
                          "ProgramFilesDir")
               .value_or("") +
           "\\Veltrane";
  }

  SetupRun mSetup;
};

// ---- replace or keep ----

class OldVersionTest : public UpgradeTest {
 protected:
  OldVersionTest() {
    mOld = mSetup.Root().MakeFolder("earlier version");
    mSetup.WriteScript(
        mSetup.SimpleScript("$test_overwrite_old_app=do_replaced\r\n"
                            "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Replaced=<do_replaced>\r\n",
                            "", "OldAppDir=" + mOld + "\r\n"));
  }
  std::string mOld;
};

TEST_F(OldVersionTest, ReplacingTakesItsFolder) {
  GuiRun run(mSetup, "");
  const Driven dialog = run.Dialog(IDC_OLD_REPLACE);
  EXPECT_EQ(dialog.Caption(), "Installation de Veltrane 6.0c");
  EXPECT_TRUE(dialog.Checked(IDC_OLD_REPLACE));
  EXPECT_FALSE(dialog.Checked(IDC_OLD_KEEP));
  EXPECT_NE(GuiRun::BoxText(dialog.Window()).find(mOld), std::string::npos);
  dialog.End(IDOK);
  Install(run);
  EXPECT_EQ(ReadWholeFile(mOld + "\\a.txt"), "alpha");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Replaced"), "1");
}

TEST_F(OldVersionTest, KeepingInstallsElsewhere) {
  GuiRun run(mSetup, "");
  const Driven dialog = run.Dialog(IDC_OLD_REPLACE);
  dialog.Click(IDC_OLD_KEEP);
  dialog.End(IDOK);
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_EQ(main.Text(IDC_MAIN_FOLDER), DefaultFolder());
  main.Set(IDC_MAIN_FOLDER, mSetup.Dest());
  Install(run);
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("a.txt")), "alpha");
  EXPECT_FALSE(PathExists(mOld + "\\a.txt"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Replaced"), "0");
}

TEST_F(OldVersionTest, QuitIs10) {
  for (const bool byClosing : {false, true}) {
    GuiRun run(mSetup, "");
    const Driven dialog = run.Dialog(IDC_OLD_REPLACE);
    if (byClosing) {
      dialog.Close();
      dialog.WaitGone();
    } else {
      dialog.End(IDCANCEL);
    }
    EXPECT_EQ(run.End().exitCode, 10u);
  }
}

TEST_F(OldVersionTest, KeptVersionInTheDefaultFolderIsNotInstalledOver) {
  const std::string folder = DefaultFolder();
  ASSERT_FALSE(PathExists(folder));
  ASSERT_TRUE(CreateDirectoryA(folder.c_str(), nullptr));
  std::string upper = folder;
  for (char& ch : upper) ch = static_cast<char>(toupper(ch));
  mSetup.WriteScript(mSetup.SimpleScript("", "", "OldAppDir=" + upper + "\r\n"));
  GuiRun run(mSetup, "");
  const Driven dialog = run.Dialog(IDC_OLD_REPLACE);
  dialog.Click(IDC_OLD_KEEP);
  dialog.End(IDOK);
  QuitMain(run, folder + " 6");
  RemoveDirectoryA(folder.c_str());
}

TEST_F(OldVersionTest, FolderOfTheScriptAsksNothing) {
  mSetup.WriteScript(
      mSetup.SimpleScript("", "", "OldAppDir=" + mOld + "\r\nini_ProgDir=" + mSetup.Dest() + "\r\n"));
  GuiRun run(mSetup, "");
  QuitMain(run, mSetup.Dest());
}

TEST_F(OldVersionTest, MissingFolderAsksNothing) {
  RemoveDirectoryA(mOld.c_str());
  GuiRun run(mSetup, "");
  QuitMain(run, DefaultFolder());
}

// ---- version 5 ----

TEST_F(UpgradeTest, Version5IsRemovedAndItsFolderTaken) {
  const std::string go = mSetup.Root().Join("go");
  const std::string program = MakeOld(5, "Setup.exe", "window\nwait " + go + "\nunwindow\nself\nexit 7\n");
  GuiRun run(mSetup, "");
  const Driven status = run.Dialog(IDC_MESSAGE);
  EXPECT_EQ(status.Text(IDC_MESSAGE), "Suppression de Veltrane 5...");
  EXPECT_EQ(status.Caption(), "Installation de Veltrane 6.0c");
  const auto oldWindow = [] { return FindWindowA("VTInstallWin", nullptr) != nullptr; };
  EXPECT_TRUE(WaitUntil(oldWindow));
  // Above everything, so that nothing of the old setup shows; and alive meanwhile.
  const HWND background = run.OfClass("VT6InstallWin");
  EXPECT_NE(GetWindowLongA(background, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  DWORD_PTR result = 0;
  EXPECT_NE(SendMessageTimeoutA(background, WM_NULL, 0, 0, SMTO_NORMAL, 2000, &result), 0);
  WriteWholeFile(go, "");
  status.WaitGone();
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_EQ(GetWindowLongA(background, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  EXPECT_EQ(main.Text(IDC_MAIN_FOLDER), mSetup.Root().Join("old"));
  EXPECT_EQ(ReadWholeFile(program + ".ran"), "-Q -RS");
  EXPECT_FALSE(PathExists(program));
  const RunOutcome outcome = Install(run);
  EXPECT_TRUE(
      outcome.LoggedInOrder("Removing old version by running " + program + "\n", "VTW5Setup returned 7\n"));
  EXPECT_FALSE(outcome.Logged("did not delete itself"));
  EXPECT_EQ(ReadWholeFile(mSetup.Root().Join("old\\a.txt")), "alpha");
}

TEST_F(UpgradeTest, Version5ThatKeepsItsProgramIsWaitedForAndLogged) {
  const std::string program = MakeOld(5, "Setup.exe", "exit 0\n");
  const DWORD start = GetTickCount();
  GuiRun run(mSetup, "");
  const RunOutcome outcome = QuitMain(run, mSetup.Root().Join("old"));
  EXPECT_GE(GetTickCount() - start, 15000u);
  EXPECT_TRUE(
      outcome.LoggedInOrder("##ERROR: " + program + " did not delete itself.\n", "VTW5Setup returned 0\n"));
}

TEST_F(UpgradeTest, HiddenBackgroundPutsTheStatusWindowOnTop) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "no_background=1\r\n"));
  const std::string go = mSetup.Root().Join("go");
  MakeOld(5, "Setup.exe", "wait " + go + "\nself\n");
  GuiRun run(mSetup, "");
  const Driven status = run.Dialog(IDC_MESSAGE);
  EXPECT_TRUE(WaitUntil([&] { return (GetWindowLongA(status.Window(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }));
  WriteWholeFile(go, "");
  QuitMain(run, mSetup.Root().Join("old"));
}

TEST_F(UpgradeTest, Version5WithoutItsProgramIsIgnored) {
  DeleteFileA(MakeOld(5, "Setup.exe", "").c_str());
  GuiRun run(mSetup, "");
  EXPECT_FALSE(QuitMain(run, DefaultFolder()).Logged("Removing old version"));
}

TEST_F(UpgradeTest, NamedDestinationLeavesEarlierVersionsAlone) {
  const std::string program = MakeOld(5, "Setup.exe", "");
  GuiRun run(mSetup, "-D " + Quoted(mSetup.Dest()));
  QuitMain(run, mSetup.Dest());
  EXPECT_FALSE(PathExists(program + ".ran"));
}

TEST_F(UpgradeTest, ConversionManagerRemovesNothing) {
  const std::string program = MakeOld(5, "Setup.exe", "");
  GuiRun run(mSetup, "-OLEMGR");
  run.Dialog(IDC_OLE_CONVERT_LIST).End(IDOK);
  EXPECT_EQ(run.End().exitCode, 0u);
  EXPECT_FALSE(PathExists(program + ".ran"));
}

// ---- version 4 ----

class Version4Test : public UpgradeTest {
 protected:
  Version4Test() {
    char folder[MAX_PATH] = "";
    GetWindowsDirectoryA(folder, MAX_PATH);
    mHtml = std::string(folder) + "\\vthtml.ini";
    mSetup.Root().MakeFolder("old\\Fonts");
    WriteWholeFile(FontInfo(), "font info");
    WriteWholeFile(mHtml, "html");
    SetRegistryString(HKEY_CURRENT_USER, kKey, "Zoom", "200");
    SetRegistryString(HKEY_CURRENT_USER, std::string(kKey) + "\\Toolbars", "Small", "yes");
  }
  ~Version4Test() override { DeleteFileA(mHtml.c_str()); }
  std::string FontInfo() const { return mSetup.Root().Join("old\\Fonts\\FontInfo.ini"); }
  static constexpr char kKey[] = "Software\\Quorvale\\KVRX4";
  std::string mHtml;
};

TEST_F(Version4Test, SettingsSurviveTheRemoval) {
  const std::string go = mSetup.Root().Join("go");
  const std::string program = MakeOld(4, "QLSetup.exe",
                                      "window\nwait " + go + "\ndelete " + FontInfo() + "\ndelete " + mHtml +
                                          "\nforget " + kKey + "\nunwindow\nexit 3\n");
  GuiRun run(mSetup, "");
  const Driven status = run.Dialog(IDC_MESSAGE);
  EXPECT_EQ(status.Text(IDC_MESSAGE), "Suppression de Veltrane 4...");
  EXPECT_TRUE(WaitUntil([] { return FindWindowA("VTInstallWin", nullptr) != nullptr; }));
  // Out of the old setup's way.
  EXPECT_FALSE(PathExists(FontInfo()));
  EXPECT_FALSE(PathExists(mHtml));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX4Backup\\Toolbars", "Small"), "yes");
  WriteWholeFile(go, "");
  const RunOutcome outcome = QuitMain(run, DefaultFolder());
  EXPECT_EQ(ReadWholeFile(program + ".ran"), "-Q -RS");
  EXPECT_EQ(ReadWholeFile(FontInfo()), "font info");
  EXPECT_EQ(ReadWholeFile(mHtml), "html");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kKey, "Zoom"), "200");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, std::string(kKey) + "\\Toolbars", "Small"), "yes");
  EXPECT_TRUE(outcome.LoggedInOrder("Renaming " + FontInfo() + " to ", "Backing up VTW4 settings\n"));
  EXPECT_TRUE(
      outcome.LoggedInOrder("Backing up VTW4 settings\n", "Removing old version by running " + program));
  EXPECT_TRUE(outcome.LoggedInOrder("Removing old version by running " + program, "VTW4Setup returned 3\n"));
  EXPECT_TRUE(outcome.LoggedInOrder("VTW4Setup returned 3\n", "Restoring VTW4 settings\n"));
  EXPECT_TRUE(outcome.LoggedInOrder("Restoring VTW4 settings\n", " to " + FontInfo() + "\n"));
  // Its program may stay: nobody waits for that.
  EXPECT_FALSE(outcome.Logged("did not delete itself"));
}

TEST_F(Version4Test, WithoutSettingsNothingIsBackedUp) {
  DeleteRegistryTree(HKEY_CURRENT_USER, "Software\\Quorvale");
  DeleteFileA(FontInfo().c_str());
  DeleteFileA(mHtml.c_str());
  MakeOld(4, "QLSetup.exe", "exit 0\n");
  GuiRun run(mSetup, "");
  const RunOutcome outcome = QuitMain(run, DefaultFolder());
  EXPECT_FALSE(outcome.Logged("Backing up"));
  EXPECT_FALSE(outcome.Logged("Renaming"));
  EXPECT_TRUE(outcome.Logged("Couldn't restore VTW4 settings - couldn't open backup key\n"));
}

TEST_F(Version4Test, ProgramThatCannotBeStartedIs10AndLosesNothing) {
  WriteWholeFile(MakeOld(4, "QLSetup.exe", ""), "no program");
  GuiRun run(mSetup, "");
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 10u) << outcome.log;
  EXPECT_EQ(ReadWholeFile(FontInfo()), "font info");
  EXPECT_EQ(ReadWholeFile(mHtml), "html");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kKey, "Zoom"), "200");
}

TEST_F(Version4Test, BothVersionsAreRemovedOneAfterTheOther) {
  const std::string folder5 = mSetup.Root().MakeFolder("five");
  const std::string program4 = MakeOld(4, "QLSetup.exe", "exit 0\n");
  ASSERT_TRUE(CopyFileA(HelperPath("earlier_setup.exe").c_str(), (folder5 + "\\Setup.exe").c_str(), FALSE));
  WriteWholeFile(folder5 + "\\Setup.exe.todo", "self\n");
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX5\\Directories", "ProgDir", folder5);
  GuiRun run(mSetup, "");
  const RunOutcome outcome = QuitMain(run, folder5);
  EXPECT_TRUE(outcome.LoggedInOrder("VTW4Setup returned 0\n", "VTW5Setup returned 0\n"));
}

}  // namespace
