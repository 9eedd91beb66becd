// Whole runs with dialogs, answered from here by the ids of their controls.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "sequence/driver.h"
#include "sequence/stand_in.h"
#include "support/files.h"
#include "support/setup_run.h"
#include "support/wait.h"

namespace {

constexpr char kMadeKey[] = "Software\\Quorvale\\Made";
constexpr char kSetupName[] = "Installation de Veltrane 6.0c";
constexpr char kErrorTitle[] = "Erreur de Installation de Veltrane 6.0c";

class Interactive : public testing::Test {
 protected:
  Interactive() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.AddFile("sub\\b.txt", "beta");
    mSetup.WriteScript(mSetup.SimpleScript());
  }
  std::string DestSwitch() const { return "-D " + Quoted(mSetup.Dest()); }
  // Ends the finishing dialog without starting anything.
  static void Finish(SetupDriver& driver) {
    const HWND dialog = driver.WaitFor(IDC_FINISH_NOTICE);
    if (dialog == nullptr) return;
    if (GetDlgItem(dialog, IDC_FINISH_LAUNCH) != nullptr) SetupDriver::Click(dialog, IDC_FINISH_LAUNCH);
    driver.PressAndWait(dialog, IDOK);
  }
  void AcceptMain(SetupDriver& driver) {
    const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
    if (dialog != nullptr) driver.PressAndWait(dialog, IDOK);
  }

  SetupRun mSetup;
};

// ---- install and remove ----

TEST_F(Interactive, InstallFromBeginningToEnd) {
  SetupDriver driver(mSetup, DestSwitch());
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Caption(dialog), kSetupName);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), mSetup.Dest());
  const HWND background = driver.FindClass("VT6InstallWin");
  ASSERT_NE(background, nullptr);
  EXPECT_TRUE(IsWindowVisible(background));
  EXPECT_TRUE(IsZoomed(background));
  EXPECT_EQ(SetupDriver::Caption(background), kSetupName);
  EXPECT_EQ(GetWindow(dialog, GW_OWNER), background);
  driver.PressAndWait(dialog, IDOK);
  Finish(driver);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("sub\\b.txt")), "beta");
  EXPECT_TRUE(outcome.LoggedInOrder("Installation does not require reboot.",
                                    "User chose NOT to display the ReadMe."));
  EXPECT_FALSE(outcome.Logged("Performing silent"));
}

TEST_F(Interactive, DefaultFolder) {
  SetupDriver driver(mSetup, "");
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), "C:\\Program Files\\Veltrane");
  driver.PressAndWait(dialog, IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
}

TEST_F(Interactive, DefaultFolderWithoutTheRegistryValue) {
  const char* key = "Software\\Microsoft\\Windows\\CurrentVersion";
  const RegistryValueGuard guard(HKEY_LOCAL_MACHINE, key, "ProgramFilesDir");
  {
    KeyHandle opened;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, key, 0, KEY_SET_VALUE, opened.Put()), ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteValueA(opened.Get(), "ProgramFilesDir"), ERROR_SUCCESS);
  }
  SetupDriver driver(mSetup, "");
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), "C:\\Program Files\\Veltrane");
  driver.PressAndWait(dialog, IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
}

TEST_F(Interactive, QuitIs10AndTheFontSettingsStand) {
  WriteProfileStringA("TrueType", "TTifCollisions", nullptr);
  WriteProfileStringA("FontSubstitutes", "VT Symbol", nullptr);
  SetupDriver driver(mSetup, DestSwitch());
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  driver.PressAndWait(dialog, IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
  EXPECT_EQ(ProfileString("TrueType", "TTifCollisions"), "1");
  EXPECT_EQ(ProfileString("FontSubstitutes", "VT Symbol"), "Symbol");
  EXPECT_FALSE(PathExists(mSetup.Dest()));
}

TEST_F(Interactive, OtherFolderTyped) {
  SetupDriver driver(mSetup, DestSwitch());
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  const std::string other = mSetup.Root().Join("another place");
  SetupDriver::SetText(dialog, IDC_MAIN_FOLDER, other);
  driver.PressAndWait(dialog, IDOK);
  Finish(driver);
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_TRUE(PathExists(other + "\\a.txt"));
  EXPECT_FALSE(PathExists(mSetup.Dest()));
}

TEST_F(Interactive, NoDialogSwitchGoesStraightOn) {
  SetupDriver driver(mSetup, "-I " + DestSwitch());
  Finish(driver);
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(Interactive, RecordedFolderWinsOverTheCommandLineUnlessLocked) {
  const std::string recorded = mSetup.Root().MakeFolder("recorded");
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX6\\Directories", "ProgDir", recorded);
  {
    SetupDriver driver(mSetup, DestSwitch());
    const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
    EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), recorded);
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, IDC_MAIN_FOLDER)));
    driver.PressAndWait(dialog, IDCANCEL);
    EXPECT_EQ(driver.End().exitCode, 10u);
  }
  SetupDriver driver(mSetup, "-DL " + Quoted(mSetup.Dest()));
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), mSetup.Dest());
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_MAIN_FOLDER)));
  driver.PressAndWait(dialog, IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
}

TEST_F(Interactive, RemovalEndsWithItsMessageAndDeletesItself) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  mSetup.CopySetupToDest();
  SetupDriver driver(mSetup, mSetup.Dest(), "-R");
  AcceptMain(driver);
  EXPECT_EQ(driver.AnswerBox("a supprim\xe9 Veltrane et tous ses composants."), kSetupName);
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_FALSE(PathExists(mSetup.Dest("setup.inf")));
  EXPECT_TRUE(WaitUntil([this] { return !PathExists(mSetup.Dest("Setup.exe")); }, 15000));
}

TEST_F(Interactive, RemovalChosenInTheDialogSparesTheDistribution) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  SetupDriver driver(mSetup, "");
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  SetupDriver::Click(dialog, IDC_MAIN_REMOVE);
  driver.PressAndWait(dialog, IDOK);
  driver.AnswerBox("tous ses composants.");
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
  EXPECT_FALSE(PathExists(mSetup.ConfigPath()));
  EXPECT_TRUE(PathExists(mSetup.Source("setup.inf")));
  EXPECT_TRUE(PathExists(mSetup.Source("Setup.exe")));
}

TEST_F(Interactive, RemovalChosenInTheDialogOfTheInstalledProgramDeletesItself) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  mSetup.CopySetupToDest();
  SetupDriver driver(mSetup, mSetup.Dest(), "");
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  SetupDriver::Click(dialog, IDC_MAIN_REMOVE);
  driver.PressAndWait(dialog, IDOK);
  driver.AnswerBox("tous ses composants.");
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_TRUE(WaitUntil([this] { return !PathExists(mSetup.Dest("Setup.exe")); }, 15000));
}

TEST_F(Interactive, RemovalChosenInTheDialogOfTheProgramStartedByItsShortPath) {
  SetupRun setup("dist", "installed product");
  setup.AddFile("a.txt", "text");
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  setup.CopySetupToDest();
  char shortFolder[MAX_PATH] = "";
  ASSERT_NE(GetShortPathNameA(setup.Dest().c_str(), shortFolder, MAX_PATH), 0u);
  ASSERT_STRNE(shortFolder, setup.Dest().c_str());
  SetupDriver driver(setup, shortFolder, "");
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), setup.Dest());
  SetupDriver::Click(dialog, IDC_MAIN_REMOVE);
  driver.PressAndWait(dialog, IDOK);
  driver.AnswerBox("tous ses composants.");
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_TRUE(WaitUntil([&setup] { return !PathExists(setup.Dest("Setup.exe")); }, 15000));
}

TEST_F(Interactive, RemovalChosenInTheDialogOfAFolderRecordedWithABackslashDeletesTheProgramToo) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  mSetup.CopySetupToDest();
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX6\\Directories", "ProgDir",
                    mSetup.Dest() + "\\");
  SetupDriver driver(mSetup, mSetup.Dest(), "");
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), mSetup.Dest() + "\\");
  SetupDriver::Click(dialog, IDC_MAIN_REMOVE);
  driver.PressAndWait(dialog, IDOK);
  driver.AnswerBox("tous ses composants.");
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_TRUE(WaitUntil([this] { return !PathExists(mSetup.Dest("Setup.exe")); }, 15000));
}

TEST_F(Interactive, UncheckedOptionOfARemoval) {
  mSetup.WriteScript(mSetup.SimpleScript("", "&remove_keep_prefs?\r\n&remove_keep_fonts?\r\n",
                                         "enable_remove_keep_prefs=1\r\nenable_remove_keep_fonts=1\r\n") +
                     "[remove_keep_prefs]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Prefs=kept\r\n"
                     "[remove_keep_fonts]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Fonts=kept\r\n");
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  SetupDriver driver(mSetup, "-RS");
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  SetupDriver::Click(dialog, IDC_MAIN_OPTION_FIRST);
  driver.PressAndWait(dialog, IDOK);
  driver.AnswerBox("tous ses composants.");
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMadeKey, "Prefs"), std::nullopt);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMadeKey, "Fonts"), "kept");
}

// ---- windows that a script or a switch turns off ----

TEST_F(Interactive, BackgroundTurnedOffByTheScript) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "no_background=1\r\n"));
  SetupDriver driver(mSetup, DestSwitch());
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  const HWND background = driver.FindClass("VT6InstallWin");
  ASSERT_NE(background, nullptr);
  EXPECT_FALSE(IsWindowVisible(background));
  driver.PressAndWait(dialog, IDCANCEL);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 10u);
  EXPECT_TRUE(outcome.Logged("The background window has been turned off.\n"));
}

// ---- messages before the sequence ----

TEST_F(Interactive, BadCommandLineIsSaidInTheChosenLanguage) {
  SetupDriver driver(mSetup, "what");
  EXPECT_EQ(driver.AnswerBox("Arguments de ligne de commande non valides."), kErrorTitle);
  EXPECT_EQ(driver.End().exitCode, 4u);
}

TEST_F(Interactive, BadCommandLineInEnglish) {
  ASSERT_TRUE(
      CopyFileA((TestFolder() + "\\VTsu6en.dll").c_str(), mSetup.Source("VTsu6en.dll").c_str(), TRUE));
  SetupDriver driver(mSetup, "what");
  const HWND box = driver.WaitFor(kBoxText);
  EXPECT_EQ(SetupDriver::Text(box, kBoxText).find("Arguments de ligne"), std::string::npos);
  driver.PressAndWait(box, IDOK);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 4u);
  EXPECT_TRUE(outcome.Logged("System language = 1033\n"));
  EXPECT_FALSE(outcome.Logged("System language failed"));
}

TEST_F(Interactive, MissingScriptIsSaidUnderThePlainTitle) {
  DeleteFileA(mSetup.Source("setup.inf").c_str());
  SetupDriver driver(mSetup, DestSwitch());
  EXPECT_EQ(driver.AnswerBox("ne peut pas ouvrir setup.inf."), "Setup");
  EXPECT_EQ(driver.End().exitCode, 1u);
}

TEST_F(Interactive, ConfigurationStepInAWorkstationRun) {
  SetupDriver driver(mSetup, "-W");
  const HWND box = driver.WaitFor(kBoxText);
  EXPECT_EQ(SetupDriver::Caption(box), "Setup");
  EXPECT_EQ(SetupDriver::Text(box, kBoxText).find('<'), std::string::npos);
  driver.PressAndWait(box, IDOK);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 2u);
  EXPECT_TRUE(outcome.Logged("##ERROR: Opening config file at " + mSetup.Source("VT6.qlc") + ": Failed\n"));
}

TEST_F(Interactive, MissingRights) {
  const DeniedKey denied(HKEY_LOCAL_MACHINE, "Software\\Quorvale");
  SetupDriver driver(mSetup, DestSwitch());
  const HWND box = driver.WaitFor(kBoxText);
  EXPECT_EQ(SetupDriver::Caption(box), "Setup");
  EXPECT_EQ(SetupDriver::Text(box, kBoxText).find('<'), std::string::npos);
  driver.PressAndWait(box, IDOK);
  EXPECT_EQ(driver.End().exitCode, 14u);
}

TEST_F(Interactive, RunningCopy) {
  const StandInWindow product("MainVTWin6", 0);
  SetupDriver driver(mSetup, DestSwitch());
  EXPECT_EQ(driver.AnswerBox("lorsque Veltrane ou l'Editeur d'\xe9quations sont ouverts."), kErrorTitle);
  EXPECT_EQ(driver.End().exitCode, 5u);
}

TEST_F(Interactive, NewerVersion) {
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX8", "", "");
  SetupDriver driver(mSetup, DestSwitch());
  EXPECT_EQ(driver.AnswerBox("Une version de Veltrane 8 a"), kErrorTitle);
  EXPECT_EQ(driver.End().exitCode, 7u);
}

TEST_F(Interactive, OfficeQuit) {
  const StandInWindow word("OpusApp");
  SetupDriver driver(mSetup, DestSwitch());
  HWND dialog = nullptr;
  ASSERT_TRUE(
      WaitUntil([&] { return (dialog = driver.FindClass("#32770")) != nullptr && IsWindowVisible(dialog); }));
  EXPECT_EQ(SetupDriver::Caption(dialog), kSetupName);
  EXPECT_EQ(driver.FindClass("VT6InstallWin"), nullptr);
  driver.PressAndWait(dialog, IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 6u);
}

TEST_F(Interactive, OfficeRetry) {
  StandInWindow word("OpusApp");
  SetupDriver driver(mSetup, DestSwitch());
  HWND dialog = nullptr;
  ASSERT_TRUE(
      WaitUntil([&] { return (dialog = driver.FindClass("#32770")) != nullptr && IsWindowVisible(dialog); }));
  word.Close();
  ASSERT_TRUE(WaitUntil([] { return FindWindowA("OpusApp", nullptr) == nullptr; }));
  driver.PressAndWait(dialog, IDOK);
  driver.PressAndWait(driver.WaitFor(IDC_MAIN_FOLDER), IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
}

// ---- the log that cannot be made ----

class WithoutLog : public Interactive {
 protected:
  WithoutLog() { CreateDirectoryA(mSetup.Temp("QLSetup.log").c_str(), nullptr); }
};

TEST_F(WithoutLog, NoEndsWith15) {
  SetupDriver driver(mSetup, DestSwitch());
  EXPECT_EQ(driver.AnswerBox("Setup ne peut pas cr\xe9"
                             "er de fichier journal.",
                             IDNO),
            "Veltrane");
  EXPECT_EQ(driver.End().exitCode, 15u);
  EXPECT_FALSE(PathExists(mSetup.Dest()));
}

TEST_F(WithoutLog, YesGoesOnWithoutAskingAgain) {
  SetupDriver driver(mSetup, DestSwitch());
  driver.AnswerBox(
      "Voulez-vous continuer sans cr\xe9"
      "er de journal ?",
      IDYES);
  AcceptMain(driver);
  Finish(driver);
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(WithoutLog, NoAndABadCommandLineEndsWith4) {
  SetupDriver driver(mSetup, "what");
  driver.AnswerBox(
      "Setup ne peut pas cr\xe9"
      "er de fichier journal.",
      IDNO);
  driver.AnswerBox("Arguments de ligne de commande non valides.");
  EXPECT_EQ(driver.End().exitCode, 4u);
}

TEST_F(WithoutLog, NoAndMissingRightsEndsWith14) {
  const DeniedKey denied(HKEY_LOCAL_MACHINE, "Software\\Quorvale");
  SetupDriver driver(mSetup, DestSwitch());
  driver.AnswerBox(
      "Setup ne peut pas cr\xe9"
      "er de fichier journal.",
      IDNO);
  driver.PressAndWait(driver.WaitFor(kBoxText), IDOK);
  EXPECT_EQ(driver.End().exitCode, 14u);
}

// ---- assertions ----

TEST_F(Interactive, AssertionYesGoesOn) {
  SetupDriver driver(mSetup, "-ASSERT " + DestSwitch());
  EXPECT_EQ(driver.AnswerBox("-assert on the command line", IDYES), "Echec d'assertion !");
  driver.PressAndWait(driver.WaitFor(IDC_MAIN_FOLDER), IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
}

TEST_F(Interactive, AssertionNoEndsWith9) {
  SetupDriver driver(mSetup, "-ASSERT " + DestSwitch());
  driver.AnswerBox("-assert on the command line", IDNO);
  EXPECT_EQ(driver.End().exitCode, 9u);
}

// ---- trouble while copying ----

TEST_F(Interactive, MissingSourceFile) {
  DeleteFileA(mSetup.Source("a.txt").c_str());
  SetupDriver driver(mSetup, DestSwitch());
  AcceptMain(driver);
  EXPECT_EQ(driver.AnswerBox("ne peut pas trouver le fichier d'origine " + mSetup.Source("a.txt")),
            kErrorTitle);
  EXPECT_EQ(driver.AnswerBox("L'application Veltrane n'a pas \xe9t\xe9 install\xe9"
                             "e correctement."),
            kErrorTitle);
  EXPECT_EQ(driver.End().exitCode, 12u);
}

TEST_F(Interactive, CancelWhileCopying) {
  SetupRun setup;
  for (int i = 0; i < 1500; ++i) setup.AddFile("f" + std::to_string(i) + ".dat", std::string(2000, 'x'));
  setup.WriteScript(setup.SimpleScript("+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Second=pass\r\n"));
  SetupDriver driver(setup, "-I -D " + Quoted(setup.Dest()));
  const HWND progress = driver.WaitFor(IDD_PROGMETER_GRAPH);
  ASSERT_NE(progress, nullptr);
  EXPECT_EQ(SetupDriver::Caption(progress), "Installation de Veltrane ...");
  SetupDriver::Press(progress, IDCANCEL);
  driver.AnswerBox(
      "L'application Veltrane n'a pas \xe9t\xe9 install\xe9"
      "e correctement.");
  EXPECT_FALSE(IsWindow(progress)) << "the progress window goes before the message";
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 12u);
  EXPECT_FALSE(PathExists(setup.Dest("f1499.dat")));
  EXPECT_TRUE(PathExists(setup.ConfigPath()));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMadeKey, "Second"), std::nullopt);
}

TEST_F(Interactive, SpaceQuestionCancelledIs13) {
  std::string script = SetupRun::Startup() + "[easy_install]\r\n";
  for (int i = 0; i < 3000; ++i) script += "f" + std::to_string(i) + "\r\n";
  script += "[files]\r\n";
  for (int i = 0; i < 3000; ++i)
    script += "f" + std::to_string(i) + "=1,a.txt,<ProgDir>\\f" + std::to_string(i) + ",2000000000\r\n";
  mSetup.WriteScript(script);
  SetupDriver driver(mSetup, DestSwitch());
  AcceptMain(driver);
  EXPECT_EQ(driver.AnswerBox("Espace insuffisant dans C:", IDCANCEL), kSetupName);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 13u);
  EXPECT_TRUE(outcome.Logged("[Cancel]"));
  EXPECT_EQ(NamesIn(mSetup.Dest()), std::vector<std::string>());
}

TEST_F(Interactive, FailedFirstPass) {
  mSetup.WriteScript(SetupRun::Startup());
  SetupDriver driver(mSetup, DestSwitch());
  AcceptMain(driver);
  EXPECT_EQ(driver.AnswerBox("L'application Veltrane n'a pas"), kErrorTitle);
  EXPECT_EQ(driver.End().exitCode, 8u);
}

TEST_F(Interactive, ConfigurationFileThatCannotBeWritten) {
  mSetup.Root().MakeFolder("dest\\VT6.tmp\\in the way");
  SetupDriver driver(mSetup, DestSwitch());
  AcceptMain(driver);
  const HWND box = driver.WaitForBox("le fichier de configuration dans " + mSetup.Dest() + ".");
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(driver.FindClass("#32770"), box);  // the progress window went before the message
  driver.PressAndWait(box, IDOK);
  EXPECT_EQ(driver.End().exitCode, 11u);
}

TEST_F(Interactive, OldWindows) {
  const RegistryGuard guard(HKEY_CURRENT_USER, "Software\\Wine\\AppDefaults\\Setup.exe");
  SetRegistryString(HKEY_CURRENT_USER, guard.Path(), "Version", "nt40");
  SetupDriver driver(mSetup, DestSwitch());
  EXPECT_EQ(driver.AnswerBox("Cette version de Veltrane n\xe9"
                             "cessite Windows 2000"),
            kErrorTitle);
  EXPECT_EQ(driver.End().exitCode, 8u);
}

// ---- an earlier version ----

class OldVersion : public Interactive {
 protected:
  OldVersion() : mOld(mSetup.Root().MakeFolder("old version")) {
    mSetup.WriteScript(
        mSetup.SimpleScript("$test_overwrite_old_app=over\r\n"
                            "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Over=<over>\r\n",
                            "", "OldAppDir=" + mOld + "\r\n"));
  }
  std::string mOld;
};

TEST_F(OldVersion, ReplaceTakesItsFolder) {
  SetupDriver driver(mSetup, DestSwitch());
  const HWND question = driver.WaitFor(IDC_OLD_REPLACE);
  EXPECT_TRUE(SetupDriver::IsChecked(question, IDC_OLD_REPLACE));
  driver.PressAndWait(question, IDOK);
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), mOld);
  driver.PressAndWait(dialog, IDOK);
  Finish(driver);
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_TRUE(PathExists(mOld + "\\a.txt"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMadeKey, "Over"), "1");
}

TEST_F(OldVersion, KeepInstallsBeside) {
  SetupDriver driver(mSetup, DestSwitch());
  const HWND question = driver.WaitFor(IDC_OLD_REPLACE);
  SetupDriver::Click(question, IDC_OLD_KEEP);
  driver.PressAndWait(question, IDOK);
  AcceptMain(driver);
  Finish(driver);
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_EQ(NamesIn(mOld), std::vector<std::string>());
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMadeKey, "Over"), "0");
}

TEST_F(OldVersion, QuitIs10) {
  SetupDriver driver(mSetup, DestSwitch());
  driver.PressAndWait(driver.WaitFor(IDC_OLD_REPLACE), IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
  EXPECT_FALSE(PathExists(mSetup.Dest()));
}

TEST_F(OldVersion, RecordedInstallationAsksNothing) {
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX6\\Directories", "ProgDir", mSetup.Dest());
  SetupDriver driver(mSetup, "");
  driver.PressAndWait(driver.WaitFor(IDC_MAIN_FOLDER), IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
}

TEST_F(OldVersion, DefaultFolderKeepsClearOfIt) {
  ASSERT_TRUE(CreateDirectoryA("C:\\Program Files\\Veltrane", nullptr));
  for (const char* old : {"C:\\PROGRAM FILES\\veltrane", "C:\\Program Files\\Veltrane\\"}) {
    SCOPED_TRACE(old);
    mSetup.WriteScript(mSetup.SimpleScript("", "", std::string("OldAppDir=") + old + "\r\n"));
    SetupDriver driver(mSetup, "");
    const HWND question = driver.WaitFor(IDC_OLD_REPLACE);
    SetupDriver::Click(question, IDC_OLD_KEEP);
    driver.PressAndWait(question, IDOK);
    const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
    EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), "C:\\Program Files\\Veltrane 6");
    driver.PressAndWait(dialog, IDCANCEL);
    EXPECT_EQ(driver.End().exitCode, 10u);
  }
  RemoveDirectoryA("C:\\Program Files\\Veltrane");
}

TEST_F(OldVersion, OtherOldFolderLeavesTheDefaultFolderAlone) {
  SetupDriver driver(mSetup, "");
  const HWND question = driver.WaitFor(IDC_OLD_REPLACE);
  SetupDriver::Click(question, IDC_OLD_KEEP);
  driver.PressAndWait(question, IDOK);
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), "C:\\Program Files\\Veltrane");
  driver.PressAndWait(dialog, IDCANCEL);
  EXPECT_EQ(driver.End().exitCode, 10u);
}

// An installation of version 5 is removed by its own setup and its folder taken over.
TEST_F(Interactive, UpgradeFromVersion5) {
  const std::string old = mSetup.Root().MakeFolder("version 5");
  ASSERT_TRUE(CopyFileA(HelperPath("old_setup.exe").c_str(), (old + "\\Setup.exe").c_str(), TRUE));
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX5\\Directories", "ProgDir", old);
  const std::string batch = mSetup.Root().Join("old.bat");
  SetEnvironmentVariableA("OLD_SETUP_BATCH", batch.c_str());
  SetEnvironmentVariableA("OLD_SETUP_WINDOW", "400");
  SetupDriver driver(mSetup, "");
  SetEnvironmentVariableA("OLD_SETUP_BATCH", nullptr);
  SetEnvironmentVariableA("OLD_SETUP_WINDOW", nullptr);
  const HWND dialog = driver.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER), old);
  driver.PressAndWait(dialog, IDOK);
  Finish(driver);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.LoggedInOrder("Removing old version by running " + old + "\\Setup.exe",
                                    "Suppression de Veltrane 5..."));
  EXPECT_TRUE(outcome.Logged("VTW5Setup returned 0\n"));
  EXPECT_TRUE(PathExists(old + "\\a.txt"));
  EXPECT_FALSE(PathExists(batch));
}

// ---- workstations ----

class Workstation : public Interactive {
 protected:
  // The product lies installed on a share (the distribution folder here), with its configuration file.
  Workstation() {
    mSetup.AddFile("ws.ini", "of the workstation");
    mSetup.WriteScript(SetupRun::Startup() +
                       "[easy_install]\r\nX=1\r\n[remove]\r\nX=1\r\n"
                       "[wkstation_install]\r\nfile3\r\n"
                       "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\From=<InstallFromDir>\r\n"
                       "[wkstation_remove]\r\nfile3\r\n-HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\\r\n" +
                       mSetup.FilesSection());
    WriteWholeFile(mSetup.Source("VT6.QLC"), EncodeConfig({{"QLCMajVersion", "6"}, {"AppName", "Veltrane"}}));
  }
};

TEST_F(Workstation, InstallCopiesWhatItsSectionListsAndWritesNoConfigurationFile) {
  SetupDriver driver(mSetup, "-W -D " + Quoted(mSetup.Dest()));
  // The destination has no configuration file: the first folder that is tried ends the search.
  driver.PressAndWait(driver.WaitFor(kBoxText), IDOK);
  EXPECT_EQ(driver.End().exitCode, 2u);

  SetupDriver second(mSetup, "-W");
  const HWND dialog = second.WaitFor(IDC_MAIN_FOLDER);
  EXPECT_EQ(SetupDriver::Text(dialog, IDC_MAIN_FOLDER_LABEL), "&Dossier o\xf9 Veltrane est install\xe9 :");
  SetupDriver::SetText(dialog, IDC_MAIN_FOLDER, mSetup.Dest());
  second.PressAndWait(dialog, IDOK);
  Finish(second);
  const RunOutcome outcome = second.End();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_TRUE(outcome.Logged("Opening config file at " + mSetup.Source("VT6.qlc") + ": Success\n"));
  EXPECT_EQ(NamesIn(mSetup.Dest()), std::vector<std::string>({"ws.ini"}));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMadeKey, "From"), mSetup.Source());
}

TEST_F(Workstation, RemovalKeepsConfigurationFileAndItself) {
  SetRegistryString(HKEY_CURRENT_USER, kMadeKey, "From", "x");
  SetupDriver driver(mSetup, "-W -R");
  AcceptMain(driver);
  driver.AnswerBox("tous ses composants.");
  EXPECT_EQ(driver.End().exitCode, 0u);
  EXPECT_FALSE(PathExists(mSetup.Source("ws.ini")));
  EXPECT_TRUE(PathExists(mSetup.Source("VT6.QLC")));
  EXPECT_TRUE(PathExists(mSetup.Source("Setup.exe")));
  EXPECT_TRUE(PathExists(mSetup.Source("setup.inf")));
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kMadeKey));
}

// ---- the conversion manager alone ----

TEST_F(Interactive, ConversionManagerAlone) {
  SetupDriver driver(mSetup, "-OLEMGR");
  const HWND dialog = driver.WaitFor(IDC_OLE_CONVERT_LIST);
  EXPECT_EQ(SetupDriver::Caption(dialog), "Gestionnaire de conversion");
  driver.PressAndWait(dialog, IDOK);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_FALSE(PathExists("C:\\Program Files\\Veltrane"));
}

// ---- finishing ----

TEST_F(Interactive, ReadMeIsOfferedWhenTheScriptAsks) {
  mSetup.WriteScript(
      mSetup.SimpleScript("do_readme=1\r\n$ask_view_readme=do_readme,<ProgDir>\\none.exe,/x\r\n"));
  SetupDriver driver(mSetup, DestSwitch());
  AcceptMain(driver);
  const HWND dialog = driver.WaitFor(IDC_FINISH_README);
  SetupDriver::Click(dialog, IDC_FINISH_LAUNCH);
  driver.PressAndWait(dialog, IDOK);
  driver.AnswerBox("Une erreur est survenue. " + mSetup.Dest("none.exe"));
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.Logged("Opening ReadMe: " + mSetup.Dest("none.exe") + " /x\n"));
}

TEST_F(Interactive, RestartDeclined) {
  CreateDirectoryA(mSetup.Dest().c_str(), nullptr);
  WriteWholeFile(mSetup.Dest("a.txt"), "old");
  const FileHandle held(
      CreateFileA(mSetup.Dest("a.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  SetupDriver driver(mSetup, DestSwitch());
  AcceptMain(driver);
  const HWND dialog = driver.WaitFor(IDC_FINISH_NOTICE);
  EXPECT_EQ(GetDlgItem(dialog, IDC_FINISH_LAUNCH), nullptr);
  driver.PressAndWait(dialog, IDCANCEL);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.Logged("Installation requires reboot: user chose to NOT reboot.\n"));
}

TEST_F(Interactive, RestartWithoutTheRight) {
  CreateDirectoryA(mSetup.Dest().c_str(), nullptr);
  WriteWholeFile(mSetup.Dest("a.txt"), "old");
  const FileHandle held(
      CreateFileA(mSetup.Dest("a.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  mSetup.SetLauncher(Quoted(HelperPath("without_privilege.exe")) + " SeShutdownPrivilege ");
  SetupDriver driver(mSetup, DestSwitch());
  driver.FollowWindow("VT6InstallWin");
  AcceptMain(driver);
  driver.PressAndWait(driver.WaitFor(IDC_FINISH_NOTICE), IDOK);
  EXPECT_EQ(driver.AnswerBox("ne peut pas red\xe9marrer Windows faute des privil\xe8ges n\xe9"
                             "cessaires."),
            kErrorTitle);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_TRUE(outcome.Logged("Installation requires reboot: user chose to allow reboot.\n"));
}

}  // namespace
