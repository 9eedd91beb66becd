// Silent removals: what goes, what stays, and the program that deletes itself.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "support/files.h"
#include "support/setup_run.h"
#include "support/wait.h"

namespace {

std::string BatchPath() {
  char folder[MAX_PATH + 1] = "";
  GetWindowsDirectoryA(folder, sizeof folder);
  return std::string(folder) + "\\QLDELSU.BAT";
}

bool WaitUntilGone(const std::string& path) {
  return WaitUntil([&path] { return !PathExists(path); }, 15000);
}

void ExpectSilent(const RunOutcome& outcome, DWORD code) {
  EXPECT_EQ(outcome.exitCode, code) << outcome.log;
  EXPECT_EQ(outcome.windows, std::vector<std::string>()) << outcome.log;
}

// An installation with two files and the program in its folder.
class SilentRemoval : public testing::Test {
 protected:
  SilentRemoval() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.AddFile("sub\\b.txt", "beta");
  }
  void Install(const std::string& remove = "", const std::string& startup = "") {
    mSetup.WriteScript(mSetup.SimpleScript("", remove, startup));
    ASSERT_EQ(mSetup.SilentInstall().exitCode, 0u);
    mSetup.CopySetupToDest();
  }
  SetupRun mSetup;
};

TEST_F(SilentRemoval, DeletesFilesAndConfigurationAndKeepsItself) {
  Install();
  const RunOutcome outcome = mSetup.SilentRemoval();
  ExpectSilent(outcome, 0);
  EXPECT_EQ(NamesIn(mSetup.Dest()), std::vector<std::string>({"Setup.exe", "setup.inf", "sub"}));
  EXPECT_EQ(NamesIn(mSetup.Dest("sub")), std::vector<std::string>());
  EXPECT_FALSE(PathExists(BatchPath()));
}

TEST_F(SilentRemoval, LogSaysWhatHappenedInOrder) {
  Install();
  const RunOutcome outcome = mSetup.SilentRemoval();
  const std::vector<std::string> lines = {
      "Performing silent remove\n",
      "Opening setup info file at " + mSetup.Dest("setup.inf") + ": Success\n",
      "Opening config file at " + mSetup.Dest("VT6.qlc") + ": Success\n",
      "The background window has been turned off.\n",
      "Veltrane installation directory is " + mSetup.Dest() + "\n",
      "Deleting " + mSetup.Dest("a.txt") + ", result = success\n",
      "Deleting " + mSetup.Dest("sub\\b.txt") + ", result = success\n",
      "a supprim\xe9 Veltrane et tous ses composants.",
  };
  size_t pos = 0;
  for (const std::string& line : lines) {
    const size_t found = outcome.log.find(line, pos);
    ASSERT_NE(found, std::string::npos) << "missing or out of order: " << line << "\n" << outcome.log;
    pos = found + line.size();
  }
}

TEST_F(SilentRemoval, WritesNoProgress) {
  Install();
  const std::string key = "Software\\Quorvale\\KVRX6";
  SetRegistryString(HKEY_LOCAL_MACHINE, key, "SetupMsg", "before");
  SetRegistryString(HKEY_LOCAL_MACHINE, key, "SetupPercent", "before");
  ASSERT_EQ(mSetup.SilentRemoval().exitCode, 0u);
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, key, "SetupMsg"), "before");
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, key, "SetupPercent"), "before");
}

TEST_F(SilentRemoval, DeletesItself) {
  Install();
  const RunOutcome outcome = mSetup.RunFrom(mSetup.Dest(), "-Q -R");
  ExpectSilent(outcome, 0);
  EXPECT_FALSE(PathExists(mSetup.Dest("setup.inf")));
  EXPECT_TRUE(WaitUntilGone(mSetup.Dest("Setup.exe")));
  EXPECT_TRUE(WaitUntilGone(BatchPath()));
  EXPECT_EQ(NamesIn(mSetup.Dest()), std::vector<std::string>({"sub"}));
}

TEST_F(SilentRemoval, DeletesAReadOnlyHiddenProgramAndReplacesAnOldBatch) {
  Install();
  WriteWholeFile(BatchPath(), "@echo old\r\n");
  SetFileAttributesA(mSetup.Dest("Setup.exe").c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  SetFileAttributesA(mSetup.Dest("setup.inf").c_str(), FILE_ATTRIBUTE_READONLY);
  ExpectSilent(mSetup.RunFrom(mSetup.Dest(), "-Q -R"), 0);
  EXPECT_FALSE(PathExists(mSetup.Dest("setup.inf")));
  EXPECT_TRUE(WaitUntilGone(mSetup.Dest("Setup.exe")));
  EXPECT_TRUE(WaitUntilGone(BatchPath()));
}

TEST_F(SilentRemoval, FailedRemovalKeepsProgramAndScript) {
  Install();
  mSetup.WriteScript(SetupRun::Startup() + "[remove]\r\nno such file line\r\n");
  mSetup.CopySetupToDest();
  const RunOutcome outcome = mSetup.RunFrom(mSetup.Dest(), "-Q -R");
  ExpectSilent(outcome, 8);
  EXPECT_TRUE(PathExists(mSetup.Dest("Setup.exe")));
  EXPECT_TRUE(PathExists(mSetup.Dest("setup.inf")));
  EXPECT_FALSE(PathExists(BatchPath()));
}

TEST_F(SilentRemoval, RecordedFolderWinsOverTheProgramsOwn) {
  Install();
  ExpectSilent(mSetup.Run("-Q -RS"), 0);  // run from the distribution
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
  EXPECT_TRUE(PathExists(mSetup.Source("a.txt")));
}

TEST_F(SilentRemoval, ProgramsOwnFolderWithoutARecordedOne) {
  Install();
  ASSERT_TRUE(DeleteRegistryTree(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX6"));
  const RunOutcome outcome = mSetup.RunFrom(mSetup.Dest(), "/q /rs");
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Veltrane installation directory is " + mSetup.Dest() + "\n"));
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(SilentRemoval, DestinationOfTheCommandLineWinsOverTheRecordedFolder) {
  Install();
  const std::string other = mSetup.Root().MakeFolder("other");
  WriteWholeFile(other + "\\a.txt", "a copy");
  ExpectSilent(mSetup.Run("-Q -RS -D " + Quoted(other)), 0);
  EXPECT_FALSE(PathExists(other + "\\a.txt"));
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(SilentRemoval, MissingProductIsNoFailure) {
  Install();
  ASSERT_EQ(mSetup.SilentRemoval().exitCode, 0u);
  const RunOutcome again = mSetup.SilentRemoval();
  ExpectSilent(again, 0);
  EXPECT_TRUE(again.Logged("##ERROR: Deleting " + mSetup.Dest("a.txt") + ", result = failure\n"));
}

TEST_F(SilentRemoval, MissingFolderIsLogged) {
  Install();
  const std::string gone = mSetup.Root().Join("gone");
  const RunOutcome outcome = mSetup.Run("-Q -RS -D " + Quoted(gone));
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Le dossier " + gone + " n'existe pas."));
}

TEST_F(SilentRemoval, SecondPassRunsTheTasks) {
  Install("-HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\\r\n$dir_del=<ProgDir>\\sub\r\n");
  SetRegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "x", "y");
  ExpectSilent(mSetup.SilentRemoval(), 0);
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, "Software\\Quorvale\\Made"));
  EXPECT_FALSE(PathExists(mSetup.Dest("sub")));
}

TEST_F(SilentRemoval, KeepExistingMarkDoesNotSaveAFile) {
  SetupRun setup;
  setup.AddFile("keep.ini", "text", "?");
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  setup.CopySetupToDest();
  ExpectSilent(setup.SilentRemoval(), 0);
  EXPECT_FALSE(PathExists(setup.Dest("keep.ini")));
}

TEST_F(SilentRemoval, OfferedOptionsCountAsChecked) {
  Install("do_remove_keep_prefs=0\r\n&remove_keep_fonts?\r\n", "enable_remove_keep_fonts=1\r\n");
  // The options are settled before the section runs, so a section may look at both.
  mSetup.WriteScript(mSetup.SimpleScript("", "&remove_keep_fonts?\r\n&remove_keep_prefs?\r\n",
                                         "enable_remove_keep_fonts=1\r\n") +
                     "[remove_keep_fonts]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Fonts=kept\r\n"
                     "[remove_keep_prefs]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Prefs=kept\r\n");
  mSetup.CopySetupToDest();
  ExpectSilent(mSetup.SilentRemoval(), 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Fonts"), "kept");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Prefs"), std::nullopt);
}

TEST_F(SilentRemoval, LeavesTheMachineStoreToTheScript) {
  Install();
  ExpectSilent(mSetup.SilentRemoval(), 0);
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX6\\Directories", "ProgDir"),
            mSetup.Dest());
}

TEST_F(SilentRemoval, LanguageLibraryInTheListGoesToo) {
  SetupRun setup;
  setup.AddFile("VTsu6en.dll", ReadWholeFile(TestFolder() + "\\VTsu6en.dll"));
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  setup.CopySetupToDest();
  const RunOutcome outcome = setup.SilentRemoval();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_FALSE(PathExists(setup.Dest("VTsu6en.dll")));
  // The run shows its texts from this library to the end: it goes last, and there is no trouble to report.
  EXPECT_TRUE(outcome.LoggedInOrder("System language = 1033\n",
                                    "Deleting " + setup.Dest("VTsu6en.dll") + ", result = success\n"));
  EXPECT_FALSE(outcome.Logged("##ERROR")) << outcome.log;
}

TEST_F(SilentRemoval, ProgramThatDeletesItselfLeavesNoLanguageLibrary) {
  SetupRun setup;
  setup.AddFile("VTsu6en.dll", ReadWholeFile(TestFolder() + "\\VTsu6en.dll"));
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  setup.CopySetupToDest();
  const RunOutcome outcome = setup.RunFrom(setup.Dest(), "-Q -R");
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_FALSE(outcome.Logged("##ERROR")) << outcome.log;
  EXPECT_TRUE(WaitUntilGone(setup.Dest("Setup.exe")));
  EXPECT_TRUE(WaitUntilGone(BatchPath()));
  EXPECT_EQ(NamesIn(setup.Dest()), std::vector<std::string>());
}

TEST_F(SilentRemoval, LanguageLibraryThatIsNotLoadedGoesInItsTurn) {
  SetupRun setup;
  for (const char* name : {"VTsu6en.dll", "VTsu6fr.dll"})
    setup.AddFile(name, ReadWholeFile(TestFolder() + "\\" + name));
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript("", "", "AppLang=0x0409,en\r\n"));
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  setup.CopySetupToDest();
  const RunOutcome outcome = setup.SilentRemoval();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_FALSE(outcome.Logged("##ERROR")) << outcome.log;
  EXPECT_TRUE(outcome.LoggedInOrder("Deleting " + setup.Dest("VTsu6fr.dll") +
                                        ", result = success\nDeleting " + setup.Dest("a.txt") +
                                        ", result = success\n",
                                    "Deleting " + setup.Dest("VTsu6en.dll") + ", result = success\n"));
  EXPECT_EQ(NamesIn(setup.Dest()), std::vector<std::string>({"Setup.exe", "setup.inf"}));
}

// ---- folder names ----

struct FolderNames {
  const char* distribution;
  const char* destination;
};

class SilentFolderNames : public testing::TestWithParam<FolderNames> {};

TEST_P(SilentFolderNames, InstallAndSelfDeletingRemoval) {
  SetupRun setup(GetParam().distribution, GetParam().destination);
  setup.AddFile("a.txt", "alpha");
  setup.AddFile("sub folder\\b.txt", "beta");
  setup.WriteScript(setup.SimpleScript("", "$dir_del=\"<ProgDir>\\sub folder\"\r\n"));
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(ReadWholeFile(setup.Dest("a.txt")), "alpha");
  EXPECT_EQ(ReadWholeFile(setup.Dest("sub folder\\b.txt")), "beta");
  EXPECT_EQ(DecodeConfig(ReadWholeFile(setup.ConfigPath())).Value("ProgDir"), setup.Dest());
  setup.CopySetupToDest();
  ExpectSilent(setup.RunFrom(setup.Dest(), "-Q -R"), 0);
  EXPECT_TRUE(WaitUntilGone(setup.Dest("Setup.exe")));
  EXPECT_TRUE(WaitUntilGone(BatchPath()));
  EXPECT_EQ(NamesIn(setup.Dest()), std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(Names, SilentFolderNames,
                         testing::Values(FolderNames{"with blanks", "with more  blanks"},
                                         FolderNames{"\xe9t\xe9", "\xc9quations \xe0 l'\x9cil"},
                                         FolderNames{"comma, here", "a,b, c"},
                                         FolderNames{"100% sure", "50%off%PATH%"},
                                         FolderNames{"a&b (c)", "x^y;z=1 [q]"}));

}  // namespace
