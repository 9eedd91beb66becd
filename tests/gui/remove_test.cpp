// Removals with their windows: what the user keeps, what is deleted, the program's own end.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "gui/gui_run.h"
#include "resources/ids.h"
#include "support/files.h"
#include "support/registry_guard.h"
#include "support/setup_run.h"

namespace {

constexpr char kStore[] = "Software\\Quorvale\\KVRX6";
constexpr char kMade[] = "Software\\Quorvale\\Made";
constexpr char kRemoved[] = "a supprim\xe9 Veltrane et tous ses composants.";

// An installed product with both options, whose sections note in the registry that they ran.
class RemoveTest : public testing::Test {
 protected:
  RemoveTest() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.AddFile("b.txt", "beta");
    WriteScript("enable_remove_keep_prefs=1\r\nenable_remove_keep_fonts=1\r\n");
    EXPECT_EQ(mSetup.SilentInstall().exitCode, 0u);
    mSetup.CopySetupToDest();
  }
  void WriteScript(const std::string& startup) {
    mSetup.WriteScript(mSetup.SimpleScript("", "&remove_keep_prefs?\r\n&remove_keep_fonts?\r\n", startup) +
                       "[remove_keep_prefs]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Prefs=kept\r\n"
                       "[remove_keep_fonts]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Fonts=kept\r\n");
  }
  void ExpectRemoved() const {
    EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
    EXPECT_FALSE(PathExists(mSetup.Dest("b.txt")));
    EXPECT_FALSE(PathExists(mSetup.ConfigPath()));
  }
  void ExpectPresent() const {
    EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
    EXPECT_TRUE(PathExists(mSetup.ConfigPath()));
    EXPECT_TRUE(PathExists(mSetup.Dest("Setup.exe")));
    EXPECT_TRUE(PathExists(mSetup.Dest("setup.inf")));
  }
  bool Kept(const char* what) const { return RegistryString(HKEY_CURRENT_USER, kMade, what) == "kept"; }
  // Confirms the closing message and waits for the end.
  RunOutcome Finish(GuiRun& run) {
    const Driven box = run.Box(kRemoved);
    EXPECT_EQ(box.Caption(), "Installation de Veltrane 6.0c");
    box.End(IDOK);
    RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
    return outcome;
  }
  // The program deletes itself after its end.
  void ExpectSelfDeleted() const {
    EXPECT_TRUE(WaitUntil([this] { return !PathExists(mSetup.Dest("Setup.exe")); }));
    EXPECT_FALSE(PathExists(mSetup.Dest("setup.inf")));
    char folder[MAX_PATH] = "";
    GetWindowsDirectoryA(folder, MAX_PATH);
    EXPECT_TRUE(WaitUntil([&] { return !PathExists(std::string(folder) + "\\QLDELSU.BAT"); }));
  }

  SetupRun mSetup;
};

TEST_F(RemoveTest, BothOptionsAreOfferedCheckedAndKept) {
  GuiRun run(mSetup, mSetup.Dest(), "-R");
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_TRUE(dialog.Checked(IDC_MAIN_REMOVE));
  EXPECT_FALSE(dialog.Enabled(IDC_MAIN_INSTALL));
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER), mSetup.Dest());
  EXPECT_FALSE(dialog.Enabled(IDC_MAIN_FOLDER));
  EXPECT_EQ(dialog.Text(IDC_MAIN_OPTIONS_LABEL), "Supprimer tous les composants de Veltrane sauf :");
  EXPECT_EQ(dialog.Text(IDC_MAIN_OPTION_FIRST)
                .find("Conserver vos &pr\xe9"
                      "f\xe9rences"),
            0u);
  EXPECT_EQ(dialog.Text(IDC_MAIN_OPTION_FIRST + 1).find("Conserver les p&olices"), 0u);
  for (int id : {IDC_MAIN_OPTION_FIRST, IDC_MAIN_OPTION_FIRST + 1}) {
    EXPECT_TRUE(dialog.Visible(id));
    EXPECT_TRUE(dialog.Enabled(id));
    EXPECT_TRUE(dialog.Checked(id));
  }
  dialog.End(IDOK);
  const RunOutcome outcome = Finish(run);
  EXPECT_TRUE(Kept("Prefs"));
  EXPECT_TRUE(Kept("Fonts"));
  EXPECT_TRUE(outcome.Logged("Deleting " + mSetup.Dest("a.txt") + ", result = success"));
  ExpectRemoved();
  ExpectSelfDeleted();
}

TEST_F(RemoveTest, UncheckedOptionIsNotKept) {
  GuiRun run(mSetup, mSetup.Dest(), "-R");
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Click(IDC_MAIN_OPTION_FIRST);
  EXPECT_FALSE(dialog.Checked(IDC_MAIN_OPTION_FIRST));
  dialog.End(IDOK);
  Finish(run);
  EXPECT_FALSE(Kept("Prefs"));
  EXPECT_TRUE(Kept("Fonts"));
  ExpectRemoved();
  ExpectSelfDeleted();
}

TEST_F(RemoveTest, UncheckedOptionOverridesTheScript) {
  WriteScript("enable_remove_keep_prefs=1\r\nenable_remove_keep_fonts=1\r\ndo_remove_keep_fonts=1\r\n");
  mSetup.CopySetupToDest();
  GuiRun run(mSetup, mSetup.Dest(), "-RS");
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Click(IDC_MAIN_OPTION_FIRST + 1);
  dialog.End(IDOK);
  Finish(run);
  EXPECT_TRUE(Kept("Prefs"));
  EXPECT_FALSE(Kept("Fonts"));
}

TEST_F(RemoveTest, OnlyTheEnabledOptionIsOffered) {
  WriteScript("enable_remove_keep_fonts=1\r\n");
  mSetup.CopySetupToDest();
  GuiRun run(mSetup, mSetup.Dest(), "-RS");
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_FALSE(dialog.Enabled(IDC_MAIN_OPTION_FIRST));
  EXPECT_FALSE(dialog.Checked(IDC_MAIN_OPTION_FIRST));
  EXPECT_TRUE(dialog.Enabled(IDC_MAIN_OPTION_FIRST + 1));
  EXPECT_TRUE(dialog.Checked(IDC_MAIN_OPTION_FIRST + 1));
  dialog.End(IDOK);
  Finish(run);
  EXPECT_FALSE(Kept("Prefs"));
  EXPECT_TRUE(Kept("Fonts"));
}

TEST_F(RemoveTest, WithoutOptionsEverythingIsAnnounced) {
  WriteScript("");
  mSetup.CopySetupToDest();
  GuiRun run(mSetup, mSetup.Dest(), "-RS");
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_EQ(dialog.Text(IDC_MAIN_OPTIONS_LABEL).find("Tous les composants de Veltrane seront supprim\xe9s."),
            0u);
  EXPECT_FALSE(dialog.Visible(IDC_MAIN_OPTION_FIRST));
  EXPECT_FALSE(dialog.Visible(IDC_MAIN_OPTION_FIRST + 1));
  dialog.End(IDOK);
  Finish(run);
  EXPECT_FALSE(Kept("Prefs"));
  EXPECT_FALSE(Kept("Fonts"));
  ExpectRemoved();
}

TEST_F(RemoveTest, KeepingSetupLeavesProgramAndScript) {
  GuiRun run(mSetup, mSetup.Dest(), "-RS");
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  Finish(run);
  ExpectRemoved();
  EXPECT_TRUE(PathExists(mSetup.Dest("Setup.exe")));
  EXPECT_TRUE(PathExists(mSetup.Dest("setup.inf")));
}

TEST_F(RemoveTest, QuitLeavesEverything) {
  GuiRun run(mSetup, mSetup.Dest(), "-R");
  run.Dialog(IDC_MAIN_INSTALL).End(IDCANCEL);
  EXPECT_EQ(run.End().exitCode, 10u);
  ExpectPresent();
}

TEST_F(RemoveTest, NoProgressIsRecordedDuringARemoval) {
  DeleteRegistryTree(HKEY_LOCAL_MACHINE, kStore);
  GuiRun run(mSetup, mSetup.Dest(), "-RS");
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  Finish(run);
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupMsg"), std::nullopt);
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupPercent"), std::nullopt);
}

// Started from the distribution without -R: the distribution survives.
TEST_F(RemoveTest, RemovalChosenInTheMainDialog) {
  GuiRun run(mSetup, "");
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_TRUE(dialog.Checked(IDC_MAIN_INSTALL));
  dialog.Click(IDC_MAIN_REMOVE);
  EXPECT_TRUE(dialog.Visible(IDC_MAIN_OPTION_FIRST));
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER), mSetup.Dest());
  EXPECT_FALSE(dialog.Enabled(IDC_MAIN_FOLDER));
  dialog.End(IDOK);
  Finish(run);
  ExpectRemoved();
  EXPECT_TRUE(Kept("Prefs"));
  EXPECT_TRUE(PathExists(mSetup.Source("Setup.exe")));
  EXPECT_TRUE(PathExists(mSetup.Source("setup.inf")));
  EXPECT_TRUE(PathExists(mSetup.Source("a.txt")));
}

TEST_F(RemoveTest, InstalledCopyChosenToRemoveDeletesItself) {
  GuiRun run(mSetup, mSetup.Dest(), "");
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Click(IDC_MAIN_REMOVE);
  dialog.End(IDOK);
  Finish(run);
  ExpectRemoved();
  ExpectSelfDeleted();
}

TEST_F(RemoveTest, FailedScriptKeepsSetup) {
  mSetup.WriteScript(SetupRun::Startup());
  mSetup.CopySetupToDest();
  GuiRun run(mSetup, mSetup.Dest(), "-R");
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  run.Answer("L'application Veltrane n'a pas", IDOK);
  EXPECT_EQ(run.End().exitCode, 8u);
  ExpectPresent();
}

TEST_F(RemoveTest, DialogConfirmsItself) {
  GuiRun run(mSetup, mSetup.Dest(), "-I -RS");
  Finish(run);
  EXPECT_TRUE(Kept("Prefs"));
  EXPECT_TRUE(Kept("Fonts"));
  ExpectRemoved();
}

}  // namespace
