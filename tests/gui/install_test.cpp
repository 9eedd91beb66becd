// Whole installations with their windows: the main dialog, the finishing dialogs, the run modes.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/handle.h"
#include "gui/gui_run.h"
#include "resources/ids.h"
#include "support/files.h"
#include "support/registry_guard.h"
#include "support/setup_run.h"

namespace {

constexpr char kName[] = "Installation de Veltrane 6.0c";
constexpr char kStore[] = "Software\\Quorvale\\KVRX6";

class InstallTest : public testing::Test {
 protected:
  InstallTest() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.AddFile("sub\\b.txt", "beta");
    mSetup.WriteScript(mSetup.SimpleScript());
  }
  std::string To() const { return "-D " + Quoted(mSetup.Dest()); }
  void ExpectInstalled() const {
    EXPECT_EQ(ReadWholeFile(mSetup.Dest("a.txt")), "alpha");
    EXPECT_EQ(ReadWholeFile(mSetup.Dest("sub\\b.txt")), "beta");
    EXPECT_TRUE(PathExists(mSetup.ConfigPath()));
  }
  // Ends the run's main dialog by its quit button; nothing may have been done.
  RunOutcome Quit(GuiRun& run) {
    run.Dialog(IDC_MAIN_INSTALL).End(IDCANCEL);
    RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, 10u) << outcome.log;
    EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
    EXPECT_FALSE(PathExists(mSetup.ConfigPath()));
    return outcome;
  }
  // The last dialog of a run that installed: nothing is started.
  RunOutcome Finish(GuiRun& run) {
    const Driven dialog = run.Dialog(IDC_FINISH_LAUNCH);
    dialog.Click(IDC_FINISH_LAUNCH);
    dialog.End(IDOK);
    RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
    return outcome;
  }

  SetupRun mSetup;
};

// ---- the main dialog ----

TEST_F(InstallTest, NormalInstall) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_EQ(dialog.Caption(), kName);
  EXPECT_TRUE(dialog.Checked(IDC_MAIN_INSTALL));
  EXPECT_FALSE(dialog.Checked(IDC_MAIN_REMOVE));
  EXPECT_EQ(dialog.Text(IDC_MAIN_INSTALL), "I&nstaller");
  EXPECT_EQ(dialog.Text(IDC_MAIN_REMOVE), "&Supprimer");
  EXPECT_EQ(dialog.Text(IDC_MAIN_TEXT).find("Choisissez OK pour installer Veltrane, ses polices"), 0u);
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER_LABEL), "&Dossier de destination :");
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER), mSetup.Dest());
  EXPECT_TRUE(dialog.Enabled(IDC_MAIN_FOLDER));
  EXPECT_TRUE(dialog.Enabled(IDC_MAIN_BROWSE));
  EXPECT_FALSE(dialog.Visible(IDC_MAIN_OPTIONS_LABEL));
  EXPECT_FALSE(dialog.Visible(IDC_MAIN_OPTION_FIRST));
  EXPECT_FALSE(dialog.Visible(IDC_MAIN_WORKSTATION_NOTE));
  EXPECT_FALSE(PathExists(mSetup.Dest()));
  dialog.End(IDOK);
  const RunOutcome outcome = Finish(run);
  ExpectInstalled();
  EXPECT_TRUE(outcome.LoggedInOrder("Veltrane installation directory is " + mSetup.Dest() + "\n",
                                    "Ecriture des donn\xe9"
                                    "es de configuration dans " +
                                        mSetup.Dest()));
  EXPECT_TRUE(outcome.LoggedInOrder(
      "Installation : " + mSetup.Dest("a.txt"),
      "Installation does not require reboot.\nUser chose NOT to display the ReadMe.\n"));
  EXPECT_FALSE(outcome.Logged("Launch app"));
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupPercent"), "100");
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupMsg"),
            "Installation : " + mSetup.Dest("sub\\b.txt"));
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, std::string(kStore) + "\\Directories", "ProgDir"),
            mSetup.Dest());
}

TEST_F(InstallTest, DefaultFolderLiesBelowTheProgramFiles) {
  const auto folder =
      RegistryString(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir");
  ASSERT_TRUE(folder);
  GuiRun run(mSetup, "");
  EXPECT_EQ(run.Dialog(IDC_MAIN_INSTALL).Text(IDC_MAIN_FOLDER), *folder + "\\Veltrane");
  Quit(run);
}

TEST_F(InstallTest, QuitIs10AfterTheFontSettings) {
  GuiRun run(mSetup, To());
  const RunOutcome outcome = Quit(run);
  EXPECT_EQ(ProfileString("TrueType", "TTifCollisions"), "1");
  EXPECT_EQ(ProfileString("FontSubstitutes", "VT Symbol"), "Symbol");
  EXPECT_TRUE(outcome.Logged("Modifying [TrueType] section of Win.ini...\n +TTifCollisions = 1\n"));
  EXPECT_FALSE(PathExists(mSetup.Dest()));
}

TEST_F(InstallTest, ClosingTheMainDialogIsQuitting) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Close();
  dialog.WaitGone();
  EXPECT_EQ(run.End().exitCode, 10u);
}

TEST_F(InstallTest, EmptyFolderKeepsTheDialogOpen) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  for (const char* empty : {"", "   "}) {
    dialog.Set(IDC_MAIN_FOLDER, empty);
    dialog.Press(IDOK);
    const Driven box = run.Box("le nom du dossier dans lequel vous voulez installer Veltrane.");
    EXPECT_EQ(box.Caption(), "Erreur de Installation de Veltrane 6.0c");
    EXPECT_FALSE(IsWindowEnabled(dialog.Window()));
    box.End(IDOK);
    dialog.WaitFocus(IDC_MAIN_FOLDER);
  }
  // The same dialog takes the next answer.
  dialog.Set(IDC_MAIN_FOLDER, mSetup.Dest());
  dialog.End(IDOK);
  Finish(run);
  ExpectInstalled();
}

TEST_F(InstallTest, EmptyFolderOfARemovalHasItsOwnText) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Click(IDC_MAIN_REMOVE);
  dialog.Set(IDC_MAIN_FOLDER, "");
  dialog.Press(IDOK);
  run.Answer("partir duquel vous voulez supprimer Veltrane.", IDOK);
  Quit(run);
}

TEST_F(InstallTest, MissingFolderOfARemovalKeepsTheDialogOpen) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Click(IDC_MAIN_REMOVE);
  dialog.Press(IDOK);
  run.Answer("Le dossier " + mSetup.Dest() + " n'existe pas.", IDOK);
  // Nothing has been settled: the user may still install.
  dialog.Click(IDC_MAIN_INSTALL);
  dialog.End(IDOK);
  Finish(run);
  ExpectInstalled();
}

TEST_F(InstallTest, FolderThatCannotBeCreatedKeepsTheDialogOpen) {
  const std::string file = mSetup.Root().Write("file", "in the way");
  GuiRun run(mSetup, "-D " + Quoted(file + "\\below"));
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Press(IDOK);
  run.Answer("er le dossier " + file + "\\below.", IDOK);
  Quit(run);
}

TEST_F(InstallTest, RelativeFolderIsMadeFull) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  // The run's current folder is the test's own.
  dialog.Set(IDC_MAIN_FOLDER, "dest");
  dialog.End(IDOK);
  const RunOutcome outcome = Finish(run);
  EXPECT_TRUE(outcome.Logged("Veltrane installation directory is " + mSetup.Dest() + "\n"));
  ExpectInstalled();
}

TEST_F(InstallTest, LockedFolderCannotBeChanged) {
  GuiRun run(mSetup, "-DL " + Quoted(mSetup.Dest()));
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_FALSE(dialog.Enabled(IDC_MAIN_FOLDER));
  EXPECT_FALSE(dialog.Enabled(IDC_MAIN_BROWSE));
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER), mSetup.Dest());
  Quit(run);
}

TEST_F(InstallTest, ChoosingRemovalChangesTheDialogAndBack) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Click(IDC_MAIN_REMOVE);
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER_LABEL), "Supprimer Veltrane du &dossier :");
  EXPECT_FALSE(dialog.Enabled(IDC_MAIN_FOLDER));
  EXPECT_FALSE(dialog.Enabled(IDC_MAIN_BROWSE));
  EXPECT_FALSE(dialog.Visible(IDC_MAIN_TEXT));
  EXPECT_EQ(dialog.Text(IDC_MAIN_OPTIONS_LABEL).find("Tous les composants de Veltrane seront supprim\xe9s."),
            0u);
  EXPECT_FALSE(dialog.Visible(IDC_MAIN_OPTION_FIRST));
  dialog.Click(IDC_MAIN_INSTALL);
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER_LABEL), "&Dossier de destination :");
  EXPECT_TRUE(dialog.Enabled(IDC_MAIN_FOLDER));
  EXPECT_TRUE(dialog.Visible(IDC_MAIN_TEXT));
  EXPECT_FALSE(dialog.Visible(IDC_MAIN_OPTIONS_LABEL));
  Quit(run);
}

TEST_F(InstallTest, ReinstallationHasItsOwnText) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  DeleteFileA(mSetup.Dest("a.txt").c_str());
  GuiRun run(mSetup, "");
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER), mSetup.Dest());
  EXPECT_EQ(dialog.Text(IDC_MAIN_TEXT)
                .find("Une version ant\xe9rieure de Veltrane a \xe9t\xe9 trouv\xe9"
                      "e sur cet ordinateur."),
            0u);
  dialog.End(IDOK);
  Finish(run);
  ExpectInstalled();
}

// ---- choosing a folder ----

TEST_F(InstallTest, BrowsedAndCreatedFolderIsInstalledInto) {
  const std::string base = mSetup.Root().MakeFolder("base");
  GuiRun run(mSetup, "-D " + Quoted(base));
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Press(IDC_MAIN_BROWSE);
  const Driven browse = run.Dialog(IDC_BROWSE_CREATE);
  EXPECT_EQ(browse.Caption(), "Choix du dossier");
  browse.Press(IDC_BROWSE_CREATE);
  const Driven create = run.Dialog(IDC_NEWFOLDER_NAME);
  EXPECT_EQ(create.Caption(), "Nouveau dossier");
  create.Set(IDC_NEWFOLDER_NAME, "neu");
  create.End(IDOK);
  EXPECT_TRUE(IsFolder(base + "\\neu"));
  browse.End(IDOK);
  run.Until("the folder in the field", [&] { return dialog.Text(IDC_MAIN_FOLDER) == base + "\\neu"; });
  dialog.End(IDOK);
  Finish(run);
  EXPECT_EQ(ReadWholeFile(base + "\\neu\\a.txt"), "alpha");
}

TEST_F(InstallTest, CancelledBrowsingLeavesTheFolder) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  dialog.Press(IDC_MAIN_BROWSE);
  const Driven browse = run.Dialog(IDC_BROWSE_CREATE);
  browse.Press(IDC_BROWSE_CREATE);
  run.Dialog(IDC_NEWFOLDER_NAME).End(IDCANCEL);
  browse.End(IDCANCEL);
  run.Until("the main dialog", [&] { return IsWindowEnabled(dialog.Window()) != FALSE; });
  EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER), mSetup.Dest());
  Quit(run);
}

// ---- without the dialog, other modes ----

TEST_F(InstallTest, MainDialogConfirmsItself) {
  GuiRun run(mSetup, "-I " + To());
  // The next thing that wants an answer is the finishing dialog.
  const RunOutcome outcome = Finish(run);
  EXPECT_TRUE(outcome.Logged("Installation does not require reboot."));
  ExpectInstalled();
}

TEST_F(InstallTest, MainDialogThatCannotConfirmItselfStays) {
  const std::string file = mSetup.Root().Write("file", "in the way");
  GuiRun run(mSetup, "-I -D " + Quoted(file + "\\below"));
  run.Answer("er le dossier " + file + "\\below.", IDOK);
  Quit(run);
}

TEST_F(InstallTest, CommandLineWinsWithoutTheDialog) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "ini_ProgDir=" + mSetup.Root().Join("other") + "\r\n"));
  GuiRun run(mSetup, "-I " + To());
  Finish(run);
  ExpectInstalled();
}

TEST_F(InstallTest, ConversionManagerOnly) {
  GuiRun run(mSetup, "-OLEMGR " + To());
  run.Dialog(IDC_OLE_CONVERT_LIST).End(IDOK);
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_TRUE(outcome.Logged("Gestionnaire de conversion 6.0"));
  EXPECT_FALSE(PathExists(mSetup.Dest()));
  EXPECT_EQ(ProfileString("TrueType", "TTifCollisions"), "1");
}

constexpr char kMade[] = "Software\\Quorvale\\Made";
constexpr char kWorkstationSections[] =
    "[wkstation_install]\r\n"
    "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Workstation=yes\r\n"
    "[wkstation_remove]\r\n"
    "-HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Workstation\r\n";

TEST_F(InstallTest, WorkstationInstallAndRemoval) {
  mSetup.WriteScript(mSetup.SimpleScript() + kWorkstationSections);
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  mSetup.CopySetupToDest();
  const std::string config = ReadWholeFile(mSetup.ConfigPath());
  {
    GuiRun run(mSetup, mSetup.Dest(), "-W");
    const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
    EXPECT_EQ(dialog.Text(IDC_MAIN_INSTALL), "I&nstaller sur ce poste de travail");
    EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER_LABEL), "&Dossier o\xf9 Veltrane est install\xe9 :");
    EXPECT_TRUE(dialog.Visible(IDC_MAIN_WORKSTATION_NOTE));
    EXPECT_EQ(dialog.Text(IDC_MAIN_FOLDER), mSetup.Dest());
    dialog.End(IDOK);
    Finish(run);
  }
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMade, "Workstation"), "yes");
  EXPECT_EQ(ReadWholeFile(mSetup.ConfigPath()), config);
  {
    GuiRun run(mSetup, mSetup.Dest(), "-W -R");
    const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
    EXPECT_TRUE(dialog.Checked(IDC_MAIN_REMOVE));
    EXPECT_FALSE(dialog.Visible(IDC_MAIN_WORKSTATION_NOTE));
    dialog.End(IDOK);
    run.Answer("a supprim\xe9 Veltrane et tous ses composants.", IDOK);
    EXPECT_EQ(run.End().exitCode, 0u);
  }
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMade, "Workstation"), std::nullopt);
  // The server's copy stays, setup and script included.
  ExpectInstalled();
  EXPECT_TRUE(PathExists(mSetup.Dest("Setup.exe")));
  EXPECT_TRUE(PathExists(mSetup.Dest("setup.inf")));
}

// ---- the end ----

class FinishTest : public InstallTest {
 protected:
  FinishTest() {
    CopyFileA(HelperPath("note_run.exe").c_str(), mSetup.Source("readme.exe").c_str(), FALSE);
    mSetup.AddFile("Veltrane.exe", ReadWholeFile(HelperPath("note_run.exe")));
  }
  // A script whose release notes are a program that notes its start.
  void WriteReadMeScript(const std::string& more = "") {
    mSetup.WriteScript(
        mSetup.SimpleScript("", "",
                            "ViewReadMeDlg=1\r\nViewReadMePath=" + mSetup.Source("readme.exe") +
                                "\r\nReadMeArgs=page 2\r\n" + more));
  }
  std::string ProductNote() const { return mSetup.Dest("Veltrane.exe.ran"); }
  std::string ReadMeNote() const { return mSetup.Source("readme.exe.ran"); }
  // Waits until no copy of a program runs; only then can its file be opened for writing.
  static bool HasEnded(const std::string& program) {
    return WaitUntil(
        [&] {
          return !PathExists(program) ||
                 static_cast<bool>(FileHandle(
                     CreateFileA(program.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr)));
        },
        kPatience);
  }
  void TearDown() override {
    EXPECT_TRUE(HasEnded(mSetup.Dest("Veltrane.exe")));
    EXPECT_TRUE(HasEnded(mSetup.Source("readme.exe")));
  }
  // The note of a program that was started, which need not have come so far when the run ends.
  static std::string Noted(const std::string& path) {
    std::string note;
    WaitUntil([&] {
      if (PathExists(path)) note = ReadWholeFile(path);
      return note.find("\r\n") != std::string::npos;
    });
    return note;
  }
};

TEST_F(FinishTest, ProductIsStarted) {
  mSetup.WriteScript(mSetup.SimpleScript());
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_LAUNCH);
  EXPECT_EQ(dialog.Caption(),
            "Installation termin\xe9"
            "e");
  EXPECT_TRUE(dialog.Checked(IDC_FINISH_LAUNCH));
  EXPECT_EQ(dialog.Text(IDC_FINISH_LAUNCH), "&D\xe9marrer Veltrane maintenant");
  EXPECT_EQ(dialog.Control(IDC_FINISH_README), nullptr);
  EXPECT_EQ(dialog.Text(IDC_FINISH_NOTICE)
                .find("Selon ses r\xe9glages de s\xe9"
                      "curit\xe9, Microsoft Office peut signaler"),
            0u);
  dialog.End(IDOK);
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.LoggedInOrder("Installation does not require reboot.\nLaunch app = Success\n",
                                    "User chose NOT to display the ReadMe.\n"));
  EXPECT_NE(Noted(ProductNote()), "");
}

TEST_F(FinishTest, ProductAndThenTheReleaseNotes) {
  WriteReadMeScript();
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  EXPECT_TRUE(dialog.Checked(IDC_FINISH_README));
  EXPECT_TRUE(dialog.Checked(IDC_FINISH_LAUNCH));
  // The hint names the first button without its mark.
  EXPECT_NE(GuiRun::BoxText(dialog.Window()).find("Choisissez \"OK\" pour visualiser"), std::string::npos);
  dialog.End(IDOK);
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.LoggedInOrder("Launch app = Success\n",
                                    "Opening ReadMe: " + mSetup.Source("readme.exe") + " page 2\n"));
  EXPECT_FALSE(outcome.Logged("NOT to display"));
  const std::string readMe = Noted(ReadMeNote());
  EXPECT_NE(readMe.find(" page 2\r\n"), std::string::npos) << readMe;
  EXPECT_NE(Noted(ProductNote()), "");
}

TEST_F(FinishTest, ASecondLiesBetweenProductAndReleaseNotes) {
  WriteReadMeScript();
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  const DWORD pressed = GetTickCount();
  dialog.End(IDOK);
  EXPECT_EQ(run.End().exitCode, 0u);
  const std::string readMe = Noted(ReadMeNote());
  EXPECT_GE(strtoul(readMe.c_str(), nullptr, 10) - pressed, 1000u) << readMe;
}

TEST_F(FinishTest, OnlyTheReleaseNotes) {
  WriteReadMeScript();
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  dialog.Click(IDC_FINISH_LAUNCH);
  dialog.End(IDOK);
  const RunOutcome outcome = run.End();
  EXPECT_FALSE(outcome.Logged("Launch app"));
  EXPECT_TRUE(outcome.Logged("Opening ReadMe: "));
  EXPECT_NE(Noted(ReadMeNote()), "");
  EXPECT_FALSE(PathExists(ProductNote()));
}

TEST_F(FinishTest, OnlyTheProduct) {
  WriteReadMeScript();
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  dialog.Click(IDC_FINISH_README);
  dialog.End(IDOK);
  const RunOutcome outcome = run.End();
  EXPECT_TRUE(outcome.LoggedInOrder("Launch app = Success\n", "User chose NOT to display the ReadMe.\n"));
  EXPECT_FALSE(PathExists(ReadMeNote()));
}

TEST_F(FinishTest, ClosingTheDialogDeclinesBoth) {
  WriteReadMeScript();
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  dialog.Close();
  dialog.WaitGone();
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.Logged("Installation does not require reboot.\n"));
  EXPECT_FALSE(outcome.Logged("Launch app"));
  EXPECT_FALSE(outcome.Logged("Opening ReadMe"));
}

TEST_F(FinishTest, WithoutReleaseNotesTheOfferIsHidden) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "ViewReadMeDlg=1\r\n"));
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  EXPECT_FALSE(dialog.Visible(IDC_FINISH_README));
  EXPECT_FALSE(dialog.Visible(IDC_FINISH_README_HINT));
  dialog.Click(IDC_FINISH_LAUNCH);
  dialog.End(IDOK);
  EXPECT_TRUE(run.End().Logged("User chose NOT to display the ReadMe.\n"));
}

TEST_F(FinishTest, ReleaseNotesThatCannotBeOpenedAreReported) {
  WriteReadMeScript();
  DeleteFileA(mSetup.Source("readme.exe").c_str());
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  dialog.Click(IDC_FINISH_LAUNCH);
  dialog.End(IDOK);
  run.Answer("Une erreur est survenue. " + mSetup.Source("readme.exe") + " (2).", IDOK);
  EXPECT_EQ(run.End().exitCode, 0u);
}

TEST_F(FinishTest, ProductThatCannotBeStartedIsLogged) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "AppProgName=Missing\r\n"));
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  run.Dialog(IDC_FINISH_LAUNCH).End(IDOK);
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.Logged("##ERROR: Launch app = Fail\n"));
}

// ---- a restart is needed ----

class RestartTest : public FinishTest {
 protected:
  RestartTest() : mRunOnce(HKEY_CURRENT_USER, kRunOnceKey, "Setup") {
    mSetup.Root().MakeFolder("dest");
    WriteWholeFile(mSetup.Dest("a.txt"), "in use");
    mHeld.Reset(CreateFileA(mSetup.Dest("a.txt").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                            OPEN_EXISTING, 0, nullptr));
  }
  static constexpr char kRunOnceKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
  RegistryValueGuard mRunOnce;
  FileHandle mHeld;
};

TEST_F(RestartTest, LaterOpensTheReleaseNotesNow) {
  WriteReadMeScript();
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  EXPECT_EQ(dialog.Control(IDC_FINISH_LAUNCH), nullptr);
  EXPECT_EQ(dialog.Text(IDOK), "&Red\xe9marrer maintenant");
  EXPECT_EQ(dialog.Text(IDCANCEL), "&Ne pas red\xe9marrer");
  EXPECT_NE(GuiRun::BoxText(dialog.Window()).find("Choisissez \"Red\xe9marrer maintenant\" pour"),
            std::string::npos);
  dialog.End(IDCANCEL);
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_TRUE(
      outcome.Logged("  The file " + mSetup.Dest("a.txt") + " is in use. Installing this file on restart."));
  EXPECT_TRUE(
      outcome.LoggedInOrder("Installation requires reboot: user chose to NOT reboot.\n", "Opening ReadMe: "));
  EXPECT_NE(Noted(ReadMeNote()), "");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kRunOnceKey, "Setup"), std::nullopt);
  // Not before the restart.
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("a.txt")), "in use");
}

TEST_F(RestartTest, ClosingTheDialogIsLaterToo) {
  mSetup.WriteScript(mSetup.SimpleScript());
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  const Driven dialog = run.Dialog(IDC_FINISH_README);
  EXPECT_FALSE(dialog.Visible(IDC_FINISH_README));
  dialog.Close();
  dialog.WaitGone();
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.Logged("user chose to NOT reboot.\nUser chose NOT to display the ReadMe.\n"));
}

// Without the privilege the restart itself does not happen, so that all before it can be looked at.
TEST_F(RestartTest, RestartWithoutThePrivilegeIsReported) {
  WriteReadMeScript();
  mSetup.SetLauncher(Quoted(HelperPath("without_privilege.exe")) + " SeShutdownPrivilege ");
  GuiRun run(mSetup, To());
  run.LookEverywhere();
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  run.Dialog(IDC_FINISH_README).End(IDOK);
  run.Answer(
      "marrer Windows faute des privil\xe8ges n\xe9"
      "cessaires.",
      IDOK);
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  const std::string data = mSetup.Source("readme.exe") + " page 2";
  EXPECT_TRUE(
      outcome.Logged("Installation requires reboot: user chose to allow reboot.\nOpenning ReadMe on restart. "
                     "RunOnce = Setup: " +
                     data + "\n"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kRunOnceKey, "Setup"), data);
  EXPECT_FALSE(PathExists(ReadMeNote()));
}

}  // namespace
