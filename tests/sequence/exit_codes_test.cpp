// Every exit code that a silent run can end with, its message in the log, and that
// nothing is shown or changed.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "sequence/stand_in.h"
#include "support/files.h"
#include "support/setup_run.h"

namespace {

constexpr char kMadeKey[] = "Software\\Quorvale\\Made";

void ExpectSilent(const RunOutcome& outcome, DWORD code) {
  EXPECT_EQ(outcome.exitCode, code) << outcome.log;
  EXPECT_EQ(outcome.windows, std::vector<std::string>()) << outcome.log;
}

// A distribution whose installation would leave a file.
class ExitCode : public testing::Test {
 protected:
  ExitCode() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.WriteScript(mSetup.SimpleScript());
  }
  void ExpectUntouched() { EXPECT_FALSE(PathExists(mSetup.Dest())); }
  SetupRun mSetup;
};

// ---- 1: the script ----

TEST_F(ExitCode, MissingScriptIs1) {
  DeleteFileA(mSetup.Source("setup.inf").c_str());
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 1);
  EXPECT_EQ(outcome.logName, "QLSetup.log");
  EXPECT_TRUE(outcome.Logged("Opening setup info file at " + mSetup.Source("setup.inf") + ": Failed\n"));
  EXPECT_TRUE(outcome.Logged("Echec... Le programme d'installation ne peut pas ouvrir setup.inf.\n"));
  EXPECT_FALSE(outcome.Logged("Opening config file"));
  ExpectUntouched();
}

TEST_F(ExitCode, StartupSectionThatStopsIs1) {
  mSetup.WriteScript(
      "[startup]\r\nAppName=Veltrane\r\nno such file line\r\nMajVersion=6\r\n[files]\r\nx=1,a,b,1\r\n");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 1);
  // The script itself was opened.
  EXPECT_TRUE(outcome.Logged("Opening setup info file at " + mSetup.Source("setup.inf") + ": Success\n"));
  EXPECT_TRUE(outcome.Logged("ne peut pas ouvrir setup.inf."));
  ExpectUntouched();
}

TEST_F(ExitCode, UnknownTaskInStartupIs1) {
  mSetup.WriteScript(SetupRun::Startup("$File_sys=delete,x\r\n") + "[easy_install]\r\nX=1\r\n");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 1);
  EXPECT_TRUE(outcome.Logged("taskProc"));
}

TEST_F(ExitCode, BinaryGarbageAsScript) {
  std::string garbage;
  for (int i = 0; i < 20000; ++i) garbage += static_cast<char>((i * 7919 + i / 251) % 256);
  mSetup.WriteScript(garbage);
  const RunOutcome outcome = mSetup.SilentInstall();
  EXPECT_EQ(outcome.windows, std::vector<std::string>());
  // No section at all: nothing gave the configuration file a name.
  EXPECT_EQ(outcome.exitCode, 2u) << outcome.log;
  ExpectUntouched();
}

TEST_F(ExitCode, EmptyScript) {
  mSetup.WriteScript("");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 2);
  EXPECT_TRUE(outcome.Logged("DoSection fail: section \"startup\" not found."));
  ExpectUntouched();
}

TEST_F(ExitCode, MissingScriptOfARemovalIs1) {
  CreateDirectoryA(mSetup.Dest().c_str(), nullptr);
  mSetup.CopySetupToDest();
  DeleteFileA(mSetup.Dest("setup.inf").c_str());
  ExpectSilent(mSetup.RunFrom(mSetup.Dest(), "-Q -R"), 1);
  EXPECT_TRUE(PathExists(mSetup.Dest("Setup.exe")));
}

// ---- 2: the configuration file ----

TEST_F(ExitCode, UnformableConfigurationNameIs2) {
  mSetup.WriteScript("[startup]\r\nAppName=Veltrane\r\nMajVersion=6\r\n[easy_install]\r\nX=1\r\n");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 2);
  EXPECT_TRUE(outcome.Logged("name.Find('<') < 0"));
  ExpectUntouched();
}

// ---- 3: the language ----

// Makes the only translation of a program's version resource two.
void ListTwoTranslations(const std::string& path) {
  std::string bytes = ReadWholeFile(path);
  std::string key;
  for (const char ch : std::string("Translation")) key += std::string{ch, '\0'};
  const size_t pos = bytes.find(key);
  ASSERT_NE(pos, std::string::npos);
  ASSERT_EQ(bytes.find(key, pos + 1), std::string::npos);
  ASSERT_EQ(bytes[pos - 4], 4);  // the value's length
  bytes[pos - 4] = 8;
  WriteWholeFile(path, bytes);
}

TEST_F(ExitCode, NoLanguageIs3) {
  ListTwoTranslations(mSetup.Source("Setup.exe"));
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 3);
  EXPECT_TRUE(outcome.Logged("Version resource contains more than one language."));
  EXPECT_TRUE(outcome.Logged(
      "An error occurred while loading the required language library.\n\nSetup cannot continue."));
  ExpectUntouched();
}

// ---- 4: the command line ----

class BadCommandLine : public ExitCode, public testing::WithParamInterface<const char*> {};

TEST_P(BadCommandLine, Is4) {
  const RunOutcome outcome = mSetup.Run(GetParam());
  ExpectSilent(outcome, 4);
  EXPECT_EQ(outcome.logName, "Veltrane6.log");
  EXPECT_TRUE(outcome.Logged(
      "Arguments de ligne de commande non valides. \nConsultez le \"Manuel de l'Administrateur "
      "R\xe9seau\" de Quorvale ou votre administrateur r\xe9seau.\n"));
  // The log and the script come first, the announcement of the run does not.
  EXPECT_TRUE(outcome.Logged("Opening setup info file at"));
  EXPECT_FALSE(outcome.Logged("Performing silent"));
  ExpectUntouched();
}

INSTANTIATE_TEST_SUITE_P(Lines, BadCommandLine,
                         testing::Values("-Q", "-Q -W -D C:\\X", "-Q C:\\X", "-Q -D", "-Q -R -S",
                                         "-Q -D A -DL B", "-Q -R -S A -S B", "-Q -DC:\\X", "/Q /", "-Q --R",
                                         "-Q -R \"\""));

TEST_F(ExitCode, BadCommandLineIs4WhateverElseIsWrong) {
  DeleteFileA(mSetup.Source("setup.inf").c_str());
  const RunOutcome outcome = mSetup.Run("-Q bad");
  ExpectSilent(outcome, 4);
  EXPECT_TRUE(
      outcome.LoggedInOrder("ne peut pas ouvrir setup.inf.", "Arguments de ligne de commande non valides."));
}

// ---- 5: a running copy ----

TEST_F(ExitCode, RunningCopyThatStaysIs5) {
  const StandInWindow product("MainVTWin6", 0);
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 5);
  EXPECT_EQ(product.Asked(), 1);
  EXPECT_TRUE(
      outcome.Logged("Impossible d'ex\xe9"
                     "cuter \"Installation de Veltrane 6.0c\" lorsque Veltrane ou l'Editeur d'\xe9quations "
                     "sont ouverts."));
  ExpectUntouched();
}

TEST_F(ExitCode, RunningCopyThatQuitsIsNoObstacle) {
  const StandInWindow product("MainVTWin", 100);
  ExpectSilent(mSetup.SilentInstall(), 0);
  EXPECT_EQ(product.Asked(), 1);
}

TEST_F(ExitCode, RunningCopyThatHangsIs5AfterTwoSeconds) {
  const StandInWindow product("MainVTWinHung", StandInWindow::kHangs);
  const DWORD start = GetTickCount();
  ExpectSilent(mSetup.SilentInstall(), 5);
  EXPECT_GE(GetTickCount() - start, 2000u);
}

TEST_F(ExitCode, AnotherAnswerCountsAsStaying) {
  const StandInWindow product("MainVTWinOther", 101);
  ExpectSilent(mSetup.SilentInstall(), 5);
}

TEST_F(ExitCode, WindowOfAnotherClassIsNotAsked) {
  const StandInWindow other("MainVTWi", 0);
  const StandInWindow lower("mainvtwin6", 0);
  ExpectSilent(mSetup.SilentInstall(), 0);
  EXPECT_EQ(other.Asked(), 0);
  EXPECT_EQ(lower.Asked(), 0);
}

TEST_F(ExitCode, RunningCopyStopsARemovalToo) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  const StandInWindow product("MainVTWin6", 0);
  ExpectSilent(mSetup.Run("-Q -RS"), 5);
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

// ---- 6: Office ----

class OpenOffice : public ExitCode, public testing::WithParamInterface<const char*> {};

TEST_P(OpenOffice, Is6) {
  const StandInWindow office(GetParam());
  ExpectSilent(mSetup.SilentInstall(), 6);
  ExpectUntouched();
}

INSTANTIATE_TEST_SUITE_P(Classes, OpenOffice,
                         testing::Values("OpusApp", "PP8FrameClass", "PP9FrameClass", "PP10FrameClass",
                                         "PP11FrameClass", "PP12FrameClass"));

TEST_F(ExitCode, OtherPowerPointClassIsNoObstacle) {
  const StandInWindow office("PP13FrameClass");
  ExpectSilent(mSetup.SilentInstall(), 0);
}

TEST_F(ExitCode, ConversionManagerRunsBesideOffice) {
  const StandInWindow office("PP11FrameClass");
  const RunOutcome outcome = mSetup.Run("-Q -OLEMGR -D " + Quoted(mSetup.Dest()));
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Gestionnaire de conversion 6.0 (200707050000) 200707050000 Logfile\n"));
  ExpectUntouched();
}

// ---- 7: newer versions ----

TEST_F(ExitCode, NewerVersionIs7) {
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7", "", "");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 7);
  EXPECT_TRUE(
      outcome.Logged("Installation de Veltrane 6.0c ne peut pas se poursuivre. Une version de Veltrane 7 a "
                     "\xe9t\xe9 d\xe9tect\xe9"
                     "e sur votre ordinateur. \nVous devez d\xe9sinstaller cette version avant de pouvoir "
                     "installer Veltrane 6."));
  ExpectUntouched();
}

TEST_F(ExitCode, TolerantNewerVersionIsNoObstacle) {
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7", "KVRX6", "1");
  ExpectSilent(mSetup.SilentInstall(), 0);
}

TEST_F(ExitCode, ToleranceMustBeExactlyOne) {
  for (const char* value : {"", "0", "11", " 1", "yes"}) {
    SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7", "KVRX6", value);
    ExpectSilent(mSetup.SilentInstall(), 7);
  }
  DeleteRegistryTree(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7");
  SetRegistryDword(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7", "KVRX6", 1);
  ExpectSilent(mSetup.SilentInstall(), 7);
}

TEST_F(ExitCode, ThirdNewerVersionBlocksBehindTolerantOnes) {
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7", "KVRX6", "1");
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX9", "KVRX5", "1");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 7);
  EXPECT_TRUE(outcome.Logged("Une version de Veltrane 9 a"));
}

TEST_F(ExitCode, FourthNewerVersionIsNotLookedAt) {
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX10", "", "");
  ExpectSilent(mSetup.SilentInstall(), 0);
}

TEST_F(ExitCode, NewerVersionStopsARemovalToo) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX8", "", "");
  ExpectSilent(mSetup.Run("-Q -RS"), 7);
}

TEST_F(ExitCode, VersionThatIsNoNumberSkipsTheCheck) {
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7", "", "");
  mSetup.WriteScript(mSetup.SimpleScript("", "", "MajVersion=6a\r\n"));
  EXPECT_EQ(mSetup.SilentInstall().exitCode, 0u);
}

TEST_F(ExitCode, RunningCopyIsCheckedBeforeNewerVersionsAndThoseBeforeOffice) {
  const StandInWindow office("OpusApp");
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7", "", "");
  {
    const StandInWindow product("MainVTWin6", 0);
    ExpectSilent(mSetup.SilentInstall(), 5);
  }
  ExpectSilent(mSetup.SilentInstall(), 7);
  DeleteRegistryTree(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX7");
  ExpectSilent(mSetup.SilentInstall(), 6);
}

// ---- 8: cannot start ----

class WindowsVersion {
 public:
  explicit WindowsVersion(const char* version)
      : mGuard(HKEY_CURRENT_USER, "Software\\Wine\\AppDefaults\\Setup.exe") {
    SetRegistryString(HKEY_CURRENT_USER, mGuard.Path(), "Version", version);
  }

 private:
  RegistryGuard mGuard;
};

TEST_F(ExitCode, WindowsNT4Is8) {
  const WindowsVersion version("nt40");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 8);
  EXPECT_TRUE(outcome.Logged("Windows OS: Windows NT, version: 4.00\n"));
  EXPECT_TRUE(
      outcome.Logged("Cette version de Veltrane n\xe9"
                     "cessite Windows 2000, XP, Vista ou une version plus r\xe9"
                     "cente."));
  ExpectUntouched();
}

TEST_F(ExitCode, Windows98Is8) {
  const WindowsVersion version("win98");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 8);
  EXPECT_TRUE(outcome.Logged("Windows OS: Windows 95, version: 4.0a\n"));
  ExpectUntouched();
}

TEST_F(ExitCode, Windows2000IsEnough) {
  const WindowsVersion version("win2k");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Windows OS: Windows NT, version: 5.00\n"));
}

TEST_F(ExitCode, MissingMainSectionIs8) {
  mSetup.WriteScript(SetupRun::Startup());
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 8);
  EXPECT_TRUE(outcome.LoggedInOrder("DoSection fail: section \"easy_install\" not found.",
                                    "L'application Veltrane n'a pas \xe9t\xe9 install\xe9"
                                    "e correctement. L'installation a \xe9"
                                    "chou\xe9 ou a \xe9t\xe9 interrompue."));
}

TEST_F(ExitCode, MissingFileRecordIs8) {
  mSetup.WriteScript(SetupRun::Startup() +
                     "[easy_install]\r\nnothing\r\n[files]\r\nother=1,a.txt,<ProgDir>\\a.txt,5\r\n");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 8);
  EXPECT_TRUE(outcome.Logged("L'application Veltrane n'a pas"));
  EXPECT_FALSE(PathExists(mSetup.ConfigPath()));
}

TEST_F(ExitCode, UnknownTaskIs8) {
  mSetup.WriteScript(mSetup.SimpleScript("$No_such_task=1\r\n"));
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 8);
  EXPECT_TRUE(outcome.Logged("taskProc"));
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(ExitCode, FailedFirstPassOfARemovalIs8WithTheSameText) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  mSetup.WriteScript(SetupRun::Startup());
  const RunOutcome outcome = mSetup.Run("-Q -RS");
  ExpectSilent(outcome, 8);
  EXPECT_TRUE(
      outcome.Logged("L'application Veltrane n'a pas \xe9t\xe9 install\xe9"
                     "e correctement."));
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

// ---- 10: abandoned ----

// Only without a destination does a silent run look for earlier versions at all.
TEST_F(ExitCode, EarlierVersionThatCannotBeRemovedIs10) {
  const std::string old = mSetup.Root().MakeFolder("old");
  WriteWholeFile(old + "\\QLSetup.exe", "no program");
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX4\\Directories", "ProgDir", old);
  const RunOutcome outcome = mSetup.Run("-Q -D \"\"");
  ExpectSilent(outcome, 10);
  EXPECT_TRUE(outcome.Logged("Removing old version by running " + old + "\\QLSetup.exe"));
  EXPECT_TRUE(outcome.Logged("could not be started"));
  ExpectUntouched();
}

// ---- 11: the configuration file cannot be written ----

TEST_F(ExitCode, ConfigurationFileThatCannotBeWrittenIs11) {
  mSetup.Root().MakeFolder("dest\\VT6.tmp\\in the way");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 11);
  EXPECT_TRUE(
      outcome.Logged("ne peut pas \xe9"
                     "crire le fichier de configuration dans " +
                     mSetup.Dest() + ". Installation de Veltrane 6.0c va se terminer."));
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(ExitCode, FolderOfTheUnwrittenConfigurationFileIsAVariable) {
  mSetup.WriteScript(mSetup.SimpleScript() +
                     "[shutdown]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Folder=<ConfigFolder>\r\n");
  mSetup.Root().MakeFolder("dest\\VT6.tmp\\in the way");
  ExpectSilent(mSetup.SilentInstall(), 11);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Folder"), mSetup.Dest());
}

TEST_F(ExitCode, FileInTheWayOfTheFolderIs11) {
  WriteWholeFile(mSetup.Dest(), "a file where the folder should be");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 11);
  EXPECT_TRUE(outcome.Logged(mSetup.Dest()));
}

TEST_F(ExitCode, FormerConfigurationFileSurvivesAFailure) {
  ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
  const std::string before = ReadWholeFile(mSetup.ConfigPath());
  mSetup.Root().MakeFolder("dest\\VT6.tmp\\in the way");
  ExpectSilent(mSetup.SilentInstall(), 11);
  EXPECT_EQ(ReadWholeFile(mSetup.ConfigPath()), before);
  EXPECT_NE(GetFileAttributesA(mSetup.ConfigPath().c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
}

// ---- 12: copying ----

TEST_F(ExitCode, MissingSourceFileIs12) {
  DeleteFileA(mSetup.Source("a.txt").c_str());
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 12);
  EXPECT_TRUE(outcome.LoggedInOrder("ne peut pas trouver le fichier d'origine " + mSetup.Source("a.txt"),
                                    "L'application Veltrane n'a pas \xe9t\xe9 install\xe9"
                                    "e correctement."));
}

TEST_F(ExitCode, MissingSecondDiskIs12AfterOneQuestion) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.AddFile("b.txt", "beta", "", 2);
  setup.WriteScript(setup.SimpleScript());
  DeleteFileA(setup.Source("b.txt").c_str());
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 12);
  EXPECT_TRUE(PathExists(setup.Dest("a.txt")));
  EXPECT_TRUE(outcome.Logged("[OK]"));
}

TEST_F(ExitCode, ReadOnlyFolderOfAFileIs12) {
  SetupRun setup;
  setup.AddFile("sub\\a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  CreateDirectoryA(setup.Dest().c_str(), nullptr);
  WriteWholeFile(setup.Dest("sub"), "a file where the folder should be");
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 12);
  EXPECT_TRUE(outcome.Logged("CopyFileByName: vcError 65536"));
}

TEST_F(ExitCode, FilesCopiedBeforeTheFailureStay) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.AddFile("b.txt", "beta");
  setup.AddFile("c.txt", "gamma");
  setup.WriteScript(setup.SimpleScript("+HKEY_CURRENT_USER\\" + std::string(kMadeKey) + "\\Second=pass\r\n"));
  DeleteFileA(setup.Source("b.txt").c_str());
  ExpectSilent(setup.SilentInstall(), 12);
  EXPECT_TRUE(PathExists(setup.Dest("a.txt")));
  EXPECT_FALSE(PathExists(setup.Dest("c.txt")));
  EXPECT_TRUE(PathExists(setup.ConfigPath()));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kMadeKey, "Second"), std::nullopt);
  // The same installation, run again with the source complete, succeeds.
  WriteWholeFile(setup.Source("b.txt"), "beta");
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_TRUE(PathExists(setup.Dest("c.txt")));
}

// ---- 14: rights ----

TEST_F(ExitCode, NoRightToWriteTheMakersKeyIs14) {
  const DeniedKey denied(HKEY_LOCAL_MACHINE, "Software\\Quorvale");
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 14);
  EXPECT_FALSE(outcome.Logged("<SetupName>"));
  // The language is not looked for.
  EXPECT_FALSE(outcome.Logged("AppLang from global string list"));
  ExpectUntouched();
}

// ---- which wins ----

TEST_F(ExitCode, EarlierTroubleHidesLaterTrouble) {
  const DeniedKey denied(HKEY_LOCAL_MACHINE, "Software\\Quorvale");
  DeleteFileA(mSetup.Source("setup.inf").c_str());
  ExpectSilent(mSetup.SilentInstall(), 1);
}

}  // namespace
