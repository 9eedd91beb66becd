// Whole silent runs: install, removal, re-install, and what they leave.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/files.h"
#include "support/setup_run.h"
#include "support/wait.h"

namespace {

constexpr char kMachineKey[] = "Software\\Quorvale\\KVRX6";

std::string WindowsFolder() {
  char folder[MAX_PATH + 1] = "";
  GetWindowsDirectoryA(folder, sizeof folder);
  return folder;
}

DWORD AttributesOf(const std::string& path) { return GetFileAttributesA(path.c_str()); }

// Nothing was shown, and the run ended with `code`.
void ExpectSilent(const RunOutcome& outcome, DWORD code) {
  EXPECT_EQ(outcome.exitCode, code) << outcome.log;
  EXPECT_EQ(outcome.windows, std::vector<std::string>()) << outcome.log;
}

TEST(SilentInstall, CopiesTheListedFiles) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.AddFile("sub\\deep\\b.txt", std::string(70000, 'b'));
  setup.AddFile("empty.txt", "");
  setup.WriteScript(setup.SimpleScript());
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(ReadWholeFile(setup.Dest("a.txt")), "alpha");
  EXPECT_EQ(ReadWholeFile(setup.Dest("sub\\deep\\b.txt")), std::string(70000, 'b'));
  EXPECT_EQ(ReadWholeFile(setup.Dest("empty.txt")), "");
}

TEST(SilentInstall, LogSaysWhatHappenedInOrder) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  const RunOutcome outcome = setup.SilentInstall();
  ASSERT_EQ(outcome.exitCode, 0u);
  EXPECT_EQ(outcome.logName, "Veltrane6.log");
  const std::vector<std::string> lines = {
      "Logfile [Time: ",
      "Performing silent install to " + setup.Dest() + "\n",
      "Opening setup info file at " + setup.Source("setup.inf") + ": Success\n",
      "Opening config file at " + setup.Dest("VT6.qlc") + ": Failed\n",
      "Opening config file at " + setup.Source("VT6.qlc") + ": Failed\n",
      "AppLang from global string list = ",
      "System language failed, using built-in!\n",
      "Installation de Veltrane 6.0c 6.0 (200707050000) 200707050000 Logfile\n",
      "Windows OS: Windows NT, version: ",
      "The background window has been turned off.\n",
      "Modifying [TrueType] section of Win.ini...\n +TTifCollisions = 1\n",
      "Modifying [FontSubstitutes] section of Win.ini/registry...\n +VT Symbol\n",
      "Veltrane installation directory is " + setup.Dest() + "\n\n",
      "Ecriture des donn\xe9"
      "es de configuration dans " +
          setup.ConfigPath(),
      "Installation : " + setup.Dest("a.txt"),
      "a install\xe9 les \xe9l\xe9ments s\xe9lectionn\xe9s.",
  };
  size_t pos = 0;
  for (const std::string& line : lines) {
    const size_t found = outcome.log.find(line, pos);
    ASSERT_NE(found, std::string::npos) << "missing or out of order: " << line << "\n" << outcome.log;
    pos = found + line.size();
  }
  EXPECT_EQ(outcome.log.find("##ERROR"), std::string::npos) << outcome.log;
}

TEST(SilentInstall, EarlyLogNameIsGone) {
  SetupRun setup;
  setup.WriteScript(setup.SimpleScript());
  setup.SilentInstall();
  EXPECT_FALSE(PathExists(setup.Temp("QLSetup.log")));
  EXPECT_EQ(NamesIn(setup.Temp()), std::vector<std::string>({"Veltrane6.log"}));
}

TEST(SilentInstall, WritesTheConfigurationFile) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  const DecodedConfig config = DecodeConfig(ReadWholeFile(setup.ConfigPath()));
  ASSERT_TRUE(config.sound);
  EXPECT_EQ(config.Value("QLCMajVersion"), "6");
  EXPECT_EQ(config.Value("AppName"), "Veltrane");
  EXPECT_EQ(config.Value("MajVersion"), "6");
  EXPECT_EQ(config.Value("MinVersion"), "0");
  EXPECT_EQ(config.Value("ShortAppKey"), "VT");
  EXPECT_EQ(config.Value("BuildNum"), "200707050000");
  EXPECT_EQ(config.Value("Version"), "6.0 (200707050000)");
  EXPECT_EQ(config.Value("ProgDir"), setup.Dest());
  EXPECT_EQ(config.Value("InstallFromDir"), setup.Source());
  EXPECT_EQ(config.entries.size(), 9u);
  EXPECT_NE(AttributesOf(setup.ConfigPath()) & FILE_ATTRIBUTE_READONLY, 0u);
  EXPECT_NE(AttributesOf(setup.ConfigPath()) & FILE_ATTRIBUTE_HIDDEN, 0u);
  EXPECT_FALSE(PathExists(setup.Dest("VT6.tmp")));
}

TEST(SilentInstall, ConfigurationFileIsThereBeforeTheFirstProductFile) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  DeleteFileA(setup.Source("a.txt").c_str());
  ExpectSilent(setup.SilentInstall(), 12);
  EXPECT_TRUE(DecodeConfig(ReadWholeFile(setup.ConfigPath())).sound);
}

TEST(SilentInstall, SectionWithoutFilesWritesNoConfigurationFile) {
  SetupRun setup;
  setup.WriteScript(SetupRun::Startup() + "[easy_install]\r\nGreeting=hello\r\n");
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_EQ(NamesIn(setup.Dest()), std::vector<std::string>());
}

TEST(SilentInstall, RecordsTheInstallationInTheMachineStore) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  const std::string key = std::string(kMachineKey) + "\\Directories";
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, key, "ProgDir"), setup.Dest());
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, key, "InstallFromDir"), setup.Source());
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale", "TestKey"), std::nullopt);
}

TEST(SilentInstall, ReportsProgressInTheMachineStore) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kMachineKey, "SetupPercent"), "100");
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kMachineKey, "SetupMsg"),
            "Installation : " + setup.Dest("a.txt"));
}

TEST(SilentInstall, MakesTheFontSettings) {
  SetupRun setup;
  WriteProfileStringA("TrueType", "TTifCollisions", nullptr);
  WriteProfileStringA("FontSubstitutes", "VT Symbol", nullptr);
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  EXPECT_EQ(ProfileString("TrueType", "TTifCollisions"), "1");
  EXPECT_EQ(ProfileString("FontSubstitutes", "VT Symbol"), "Symbol");
}

TEST(SilentInstall, LinesOfTheSecondPass) {
  SetupRun setup;
  setup.WriteScript(SetupRun::Startup() +
                    "[easy_install]\r\n"
                    "Who=Ada\r\n"
                    "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\<Who>=value of <Who>\r\n"
                    "&Nested\r\n"
                    "&Skipped?\r\n"
                    "do_Wanted=1\r\n"
                    "&Wanted?\r\n"
                    "[Nested]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Nested=yes\r\n"
                    "[Skipped]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Skipped=no\r\n"
                    "[Wanted]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Wanted=yes\r\n");
  ExpectSilent(setup.SilentInstall(), 0);
  const std::string key = "Software\\Quorvale\\Made";
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, key, "Ada"), "value of Ada");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, key, "Nested"), "yes");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, key, "Wanted"), "yes");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, key, "Skipped"), std::nullopt);
}

TEST(SilentInstall, FailingSecondPassIsLoggedAndSucceeds) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  // Only the registry line of the second pass reaches the section that is missing.
  setup.WriteScript(setup.SimpleScript("$get_ini_var=x\r\n&<Which>\r\n"
                                       "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Late=yes\r\n"
                                       "Which=missing\r\n",
                                       "", "Which=present\r\n") +
                    "[present]\r\nX=1\r\n");
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("DoSection fail: section \"missing\" not found."));
  EXPECT_TRUE(outcome.Logged("##ERROR: The script's second pass stopped before its end."));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Late"), std::nullopt);
  EXPECT_TRUE(PathExists(setup.Dest("a.txt")));
}

TEST(SilentInstall, SectionShutdownRunsAtTheEnd) {
  SetupRun setup;
  setup.WriteScript(setup.SimpleScript() +
                    "[shutdown]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\End=<ProgDir>\r\n");
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "End"), setup.Dest());
}

TEST(SilentInstall, SectionShutdownRunsAfterAFailedSequenceToo) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript() +
                    "[shutdown]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\End=yes\r\n");
  DeleteFileA(setup.Source("a.txt").c_str());
  ExpectSilent(setup.SilentInstall(), 12);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "End"), "yes");
}

TEST(SilentInstall, KeepExistingAndHiddenFiles) {
  SetupRun setup;
  setup.AddFile("keep.ini", "new", "?");
  setup.AddFile("hidden.dat", "secret", "*");
  setup.WriteScript(setup.SimpleScript());
  CreateDirectoryA(setup.Dest().c_str(), nullptr);
  WriteWholeFile(setup.Dest("keep.ini"), "the user's");
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_EQ(ReadWholeFile(setup.Dest("keep.ini")), "the user's");
  EXPECT_TRUE(outcome.Logged("\"" + setup.Dest("keep.ini") + "\" already exists. File not copied."));
  constexpr DWORD kSetByTheRun = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_SYSTEM;
  EXPECT_EQ(AttributesOf(setup.Dest("hidden.dat")) & kSetByTheRun, static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN));
}

TEST(SilentInstall, SecondInstallOverTheFirst) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  WriteWholeFile(setup.Source("a.txt"), "beta!");
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Opening config file at " + setup.Dest("VT6.qlc") + ": Success\n"));
  EXPECT_EQ(ReadWholeFile(setup.Dest("a.txt")), "beta!");
  EXPECT_TRUE(DecodeConfig(ReadWholeFile(setup.ConfigPath())).sound);
}

TEST(SilentInstall, VisibleWritableConfigurationFileStaysSo) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  ASSERT_EQ(setup.SilentInstall().exitCode, 0u);
  SetFileAttributesA(setup.ConfigPath().c_str(), FILE_ATTRIBUTE_NORMAL);
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(AttributesOf(setup.ConfigPath()) & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN), 0u);
}

TEST(SilentInstall, EntriesOfTheFormerConfigurationFileSurvive) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  CreateDirectoryA(setup.Dest().c_str(), nullptr);
  WriteWholeFile(setup.ConfigPath(),
                 EncodeConfig({{"QLCMajVersion", "6"}, {"%Licence", "42"}, {"ProgDir", "C:\\old"}}));
  ExpectSilent(setup.SilentInstall(), 0);
  const DecodedConfig config = DecodeConfig(ReadWholeFile(setup.ConfigPath()));
  ASSERT_TRUE(config.sound);
  EXPECT_EQ(config.Value("Licence"), "42");
  EXPECT_EQ(config.Value("ProgDir"), setup.Dest());
  EXPECT_NE(std::find(config.entries.begin(), config.entries.end(),
                      std::make_pair(std::string("%Licence"), std::string("42"))),
            config.entries.end());
}

TEST(SilentInstall, TamperedConfigurationFileIsNoObstacle) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  CreateDirectoryA(setup.Dest().c_str(), nullptr);
  std::string bytes = EncodeConfig({{"QLCMajVersion", "6"}, {"Licence", "42"}});
  // A byte of the value 42: only the checksum tells that it was altered.
  const size_t place =
      sizeof "Quorvale Configuration File 1.0" + sizeof "QLCMajVersion" + sizeof "6" + sizeof "Licence";
  bytes[place] = static_cast<char>(bytes[place] ^ 1);
  WriteWholeFile(setup.ConfigPath(), bytes);
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Opening config file at " + setup.Dest("VT6.qlc") + ": Failed\n"));
  const DecodedConfig config = DecodeConfig(ReadWholeFile(setup.ConfigPath()));
  ASSERT_TRUE(config.sound);
  EXPECT_EQ(config.Value("Licence"), "");
}

TEST(SilentInstall, ConfigurationFileOfVersion5IsNotMerged) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  CreateDirectoryA(setup.Dest().c_str(), nullptr);
  WriteWholeFile(setup.ConfigPath(), EncodeConfig({{"QLCMajVersion", "5"}, {"Licence", "42"}}));
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Opening config file at " + setup.Dest("VT6.qlc") + ": Failed\n"));
  EXPECT_EQ(DecodeConfig(ReadWholeFile(setup.ConfigPath())).Value("Licence"), "");
}

TEST(SilentInstall, EmptyDestinationIsTheDefaultFolder) {
  SetupRun setup;
  setup.WriteScript(SetupRun::Startup("AppName=VeltraneTest<MajVersion>\r\n") + "[easy_install]\r\nX=1\r\n");
  const RunOutcome outcome = setup.Run("-Q -D \"\"");
  EXPECT_EQ(outcome.exitCode, 0u);
  const std::optional<std::string> programs =
      RegistryString(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir");
  ASSERT_TRUE(programs);
  EXPECT_TRUE(IsFolder(*programs + "\\VeltraneTest6"));
  DeleteTree(*programs + "\\VeltraneTest6");
}

TEST(SilentInstall, TrailingBackslashOfTheDestination) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  const RunOutcome outcome = setup.Run("-q -d " + setup.Dest() + "\\");
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Veltrane installation directory is " + setup.Dest() + "\n"));
  EXPECT_TRUE(PathExists(setup.Dest("a.txt")));
}

TEST(SilentInstall, RelativeDestinationIsBelowTheCurrentFolder) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  ExpectSilent(setup.Run("-Q -D dest"), 0);  // runs in the folder above the destination
  EXPECT_TRUE(PathExists(setup.Dest("a.txt")));
}

TEST(SilentInstall, OtherSourceFolder) {
  SetupRun setup;
  setup.AddFile("a.txt", "from the program's folder");
  setup.WriteScript(
      setup.SimpleScript("+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Lock=<lock_InstallFromDir>\r\n"));
  setup.Root().Write("elsewhere\\a.txt", "from elsewhere");
  const std::string elsewhere = setup.Root().Join("elsewhere");
  ExpectSilent(setup.Run("-Q -D " + Quoted(setup.Dest()) + " -S " + elsewhere + "\\"), 0);
  EXPECT_EQ(ReadWholeFile(setup.Dest("a.txt")), "from elsewhere");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Lock"), elsewhere);
}

TEST(SilentInstall, RecordedFolderDoesNotOverrideTheCommandLine) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  const std::string recorded = setup.Root().MakeFolder("recorded");
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kMachineKey) + "\\Directories", "ProgDir", recorded);
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_TRUE(PathExists(setup.Dest("a.txt")));
  EXPECT_EQ(NamesIn(recorded), std::vector<std::string>());
}

TEST(SilentInstall, AssertionOnTheCommandLineIsLoggedAndTheRunGoesOn) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  const RunOutcome outcome = setup.Run("-Q -ASSERT -D " + Quoted(setup.Dest()));
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("-assert on the command line"));
  EXPECT_EQ(NamesIn(setup.Temp(), "VTSetup_*.dmp"), std::vector<std::string>({"VTSetup_200707050000_0.dmp"}));
  EXPECT_EQ(ReadWholeFile(setup.Temp("VTSetup_200707050000_0.dmp")).substr(0, 4), "MDMP");
  EXPECT_TRUE(PathExists(setup.Dest("a.txt")));
}

TEST(SilentInstall, GoesOnWithoutALog) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  CreateDirectoryA(setup.Temp("QLSetup.log").c_str(), nullptr);  // no file can be made under that name
  const RunOutcome outcome = setup.SilentInstall();
  EXPECT_EQ(outcome.exitCode, 0u);
  EXPECT_EQ(outcome.windows, std::vector<std::string>());
  EXPECT_TRUE(PathExists(setup.Dest("a.txt")));
  RemoveDirectoryA(setup.Temp("QLSetup.log").c_str());
}

TEST(SilentInstall, LogFallsBackToTheWindowsFolder) {
  SetupRun setup;
  setup.WriteScript(setup.SimpleScript());
  ASSERT_TRUE(DeleteTree(setup.Temp()));
  const RunOutcome outcome = setup.SilentInstall();
  EXPECT_EQ(outcome.exitCode, 0u);
  const std::string log = WindowsFolder() + "\\Veltrane6.log";
  EXPECT_TRUE(PathExists(log));
  DeleteFileA(log.c_str());
}

TEST(SilentInstall, ScriptNamesTheProgram) {
  SetupRun setup;
  setup.WriteScript(setup.SimpleScript("", "", "SetupName=Mon installation\r\n"));
  const RunOutcome outcome = setup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Mon installation 6.0 (200707050000) 200707050000 Logfile\n"));
  EXPECT_TRUE(outcome.Logged("Mon installation a install\xe9 les \xe9l\xe9ments s\xe9lectionn\xe9s."));
}

TEST(SilentInstall, VariablesOfTheStart) {
  SetupRun setup;
  const std::vector<std::string> names = {"CurrDir",       "InfPath",        "ProgDir",       "cmd_ProgDir",
                                          "lock_ProgDir",  "InstallFromDir", "InstallNoDlg",  "NoROMacroErrs",
                                          "no_background", "ProgName",       "CopyrightYear", "BuildNum",
                                          "Version"};
  std::string lines;
  for (const std::string& name : names)
    lines += "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\" + name + "=[<" + name + ">]\r\n";
  setup.WriteScript(setup.SimpleScript(lines));
  ExpectSilent(setup.Run("/q /c -i -dl " + Quoted(setup.Dest())), 0);
  const auto value = [](const std::string& name) {
    return RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", name);
  };
  EXPECT_EQ(value("CurrDir"), "[" + setup.Source() + "]");
  EXPECT_EQ(value("InfPath"), "[" + setup.Source("setup.inf") + "]");
  EXPECT_EQ(value("ProgDir"), "[" + setup.Dest() + "]");
  EXPECT_EQ(value("cmd_ProgDir"), "[" + setup.Dest() + "]");
  EXPECT_EQ(value("lock_ProgDir"), "[1]");
  EXPECT_EQ(value("InstallFromDir"), "[" + setup.Source() + "]");
  EXPECT_EQ(value("InstallNoDlg"), "[1]");
  EXPECT_EQ(value("NoROMacroErrs"), "[1]");
  EXPECT_EQ(value("no_background"), "[1]");
  EXPECT_EQ(value("ProgName"), "[Setup]");
  EXPECT_EQ(value("CopyrightYear"), "[2007]");
  EXPECT_EQ(value("BuildNum"), "[200707050000]");
  EXPECT_EQ(value("Version"), "[6.0 (200707050000)]");
}

TEST(SilentInstall, SwitchVariablesAreMissingWithoutTheirSwitches) {
  SetupRun setup;
  setup.WriteScript(
      setup.SimpleScript("+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\All="
                         "<lock_ProgDir><InstallNoDlg><NoROMacroErrs><ASSERT><cmd_InstallFromDir>\r\n"));
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "All"),
            "<lock_ProgDir><InstallNoDlg><NoROMacroErrs><ASSERT><cmd_InstallFromDir>");
}

// A line of the script for each variable that writes its expanded value.
std::string WriteVariables(const std::vector<std::string>& names, const std::string& key) {
  std::string lines;
  for (const std::string& name : names)
    lines += "+HKEY_CURRENT_USER\\Software\\Quorvale\\" + key + "\\" + name + "=<" + name + ">\r\n";
  return lines;
}

std::optional<std::string> WrittenVariable(const std::string& key, const std::string& name) {
  return RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\" + key, name);
}

TEST(SilentInstall, NamesThatComeFromTheTexts) {
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"ServerName", "Serveur Veltrane"},
      {"ReadMeName", "Notes de mise \xe0 jour de Veltrane"},
      {"HelpName", "Aide de Veltrane"},
      {"RemoveName", "Supprimer Veltrane"},
      {"RemoveWkstnName", "Supprimer Veltrane (Poste de travail)"},
      {"AppLinkDesc",
       "Utilisez Veltrane pour cr\xe9"
       "er des \xe9quations"},
      {"ServerLinkDesc",
       "Utilisez Serveur Veltrane pour cr\xe9"
       "er des \xe9quations et acc\xe9l\xe9rer votre travail sous "
       "d'autres applications"},
      {"EqnConvMgrLinkDesc",
       "Utilisez Gestionnaire de conversion pour d\xe9"
       "finir les types d'\xe9quations dont l'\xe9"
       "dition "
       "sera associ\xe9"
       "e \xe0 Veltrane"},
      {"EqnConvMgr", "Gestionnaire de conversion"},
      {"SetupName", "Installation de Veltrane 6.0c"},
      {"BackgroundText", "Installation de Veltrane 6.0"},
  };
  std::vector<std::string> names;
  for (const auto& [name, value] : expected) names.push_back(name);
  SetupRun setup;
  setup.WriteScript(setup.SimpleScript(WriteVariables(names, "Main"), "", WriteVariables(names, "Startup")));
  ExpectSilent(setup.SilentInstall(), 0);
  for (const auto& [name, value] : expected) {
    EXPECT_EQ(WrittenVariable("Main", name), value);
    // The language is chosen after the script's first section.
    EXPECT_EQ(WrittenVariable("Startup", name), "<" + name + ">");
  }
}

TEST(SilentInstall, FoldersAreThereForTheFirstSection) {
  char windows[MAX_PATH] = "";
  char system[MAX_PATH] = "";
  GetWindowsDirectoryA(windows, sizeof windows);
  GetSystemDirectoryA(system, sizeof system);
  SetupRun setup;
  const std::string from = setup.Root().MakeFolder("from");
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"WinDir", windows},
      {"SystemDir", system},
      {"TempDir", setup.Temp()},
      {"CurrDir", setup.Source()},
      {"SetupHelpDir", setup.Source()},
      {"InfPath", setup.Source("setup.inf")},
      {"ProgDir", setup.Dest()},
      {"cmd_ProgDir", setup.Dest()},
      {"InstallFromDir", from},
      {"cmd_InstallFromDir", from},
      {"lock_InstallFromDir", from},
      {"lock_ProgDir", "<lock_ProgDir>"},
      {"ConfigPath", "<ConfigPath>"},
      {"DscFilePath", "<DscFilePath>"},
      {"BuildNum", "<BuildNum>"},
  };
  std::vector<std::string> names;
  for (const auto& [name, value] : expected) names.push_back(name);
  setup.WriteScript(setup.SimpleScript(WriteVariables({"HelpFile", "DscFilePath", "BuildNum"}, "Main"), "",
                                       WriteVariables(names, "Startup")));
  ExpectSilent(setup.Run("-Q -D " + Quoted(setup.Dest()) + " -S " + Quoted(from)), 0);
  for (const auto& [name, value] : expected) EXPECT_EQ(WrittenVariable("Startup", name), value);
  EXPECT_EQ(WrittenVariable("Main", "HelpFile"), setup.Source("setup.chm"));
  EXPECT_EQ(WrittenVariable("Main", "DscFilePath"), setup.ConfigPath());
  EXPECT_EQ(WrittenVariable("Main", "BuildNum"), "200707050000");
}

TEST(SilentInstall, VariablesOfTheScriptAreKeptButForThoseThatAreAlwaysSet) {
  SetupRun setup;
  const std::vector<std::string> names = {"ProgName",  "CopyrightYear", "HelpFile", "ReadMeName",
                                          "SetupName", "BuildNum",      "Version",  "SetupHelpDir"};
  std::string startup;
  for (const std::string& name : names) startup += name + "=mine\r\n";
  setup.WriteScript(setup.SimpleScript(WriteVariables(names, "Main"), "", startup));
  ExpectSilent(setup.SilentInstall(), 0);
  for (const char* name : {"ProgName", "CopyrightYear", "HelpFile", "ReadMeName", "SetupName"})
    EXPECT_EQ(WrittenVariable("Main", name), "mine") << name;
  EXPECT_EQ(WrittenVariable("Main", "BuildNum"), "200707050000");
  EXPECT_EQ(WrittenVariable("Main", "Version"), "6.0 (200707050000)");
  EXPECT_EQ(WrittenVariable("Main", "SetupHelpDir"), setup.Source());
}

TEST(SilentInstall, ConversionManagerAloneRenamesTheSetupWhateverTheScriptSays) {
  SetupRun setup;
  setup.WriteScript(setup.SimpleScript("", "", "SetupName=mine\r\nBackgroundText=mine\r\n") +
                    "[shutdown]\r\n" + WriteVariables({"SetupName", "BackgroundText"}, "End"));
  ExpectSilent(setup.Run("-OLEMGR -Q -D " + Quoted(setup.Dest())), 0);
  EXPECT_EQ(WrittenVariable("End", "SetupName"), "Gestionnaire de conversion");
  EXPECT_EQ(WrittenVariable("End", "BackgroundText"), "Gestionnaire de conversion");
}

TEST(SilentInstall, UsersSettingsWinOverTheMachinesAndThoseOverTheScript) {
  SetupRun setup;
  for (const char* name : {"OnlyMachine", "Both"})
    SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kMachineKey) + "\\Config", name, "machine");
  SetRegistryString(HKEY_CURRENT_USER, std::string(kMachineKey) + "\\Config", "Both", "user");
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kMachineKey) + "\\Config", "Empty", "");
  setup.WriteScript(setup.SimpleScript(WriteVariables({"OnlyMachine", "Both", "Empty"}, "Main"), "",
                                       "OnlyMachine=script\r\nBoth=script\r\nEmpty=script\r\n"));
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(WrittenVariable("Main", "OnlyMachine"), "machine");
  EXPECT_EQ(WrittenVariable("Main", "Both"), "user");
  EXPECT_EQ(WrittenVariable("Main", "Empty"), "script");
}

TEST(SilentInstall, ConfigurationFilesAreTriedInThreeFoldersAndTheFoundOneIsNamed) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript(WriteVariables({"ConfigPath"}, "Main")));
  const std::string from = setup.Root().MakeFolder("from");
  WriteWholeFile(from + "\\a.txt", "alpha");
  WriteWholeFile(setup.Source("VT6.QLC"), EncodeConfig({{"QLCMajVersion", "5"}, {"Old", "five"}}));
  WriteWholeFile(from + "\\VT6.QLC", EncodeConfig({{"QLCMajVersion", "6"}, {"Old", "six"}}));
  const RunOutcome outcome = setup.Run("-Q -D " + Quoted(setup.Dest()) + " -S " + Quoted(from));
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(outcome.Logged("Opening config file at " + setup.Dest("VT6.qlc") +
                             ": Failed\nOpening config file at " + setup.Source("VT6.qlc") +
                             ": Failed\nOpening config file at " + from + "\\VT6.qlc: Success\n"))
      << outcome.log;
  EXPECT_EQ(WrittenVariable("Main", "ConfigPath"), from + "\\VT6.qlc");
  EXPECT_EQ(DecodeConfig(ReadWholeFile(setup.ConfigPath())).Value("Old"), "six");
}

// Only a silent run without a destination looks for earlier versions.
TEST(SilentInstall, EarlierVersionsAreRemovedFirst) {
  SetupRun setup;
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  const std::string four = setup.Root().MakeFolder("version 4");
  const std::string five = setup.Root().MakeFolder("version 5");
  ASSERT_TRUE(CopyFileA(HelperPath("old_setup.exe").c_str(), (four + "\\QLSetup.exe").c_str(), TRUE));
  ASSERT_TRUE(CopyFileA(HelperPath("old_setup.exe").c_str(), (five + "\\Setup.exe").c_str(), TRUE));
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX4\\Directories", "ProgDir", four);
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX5\\Directories", "ProgDir", five);
  SetRegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX4", "Zoom", "150");
  const RunOutcome outcome = setup.Run("-Q -D \"\"");
  ExpectSilent(outcome, 0);
  const std::vector<std::string> lines = {
      "Backing up VTW4 settings\n",
      "Removing old version by running " + four + "\\QLSetup.exe\n",
      "VTW4Setup returned 0\n",
      "Restoring VTW4 settings\n",
      "Removing old version by running " + five + "\\Setup.exe\n",
      "##ERROR: " + five + "\\Setup.exe did not delete itself.\n",
      "VTW5Setup returned 0\n",
      "Veltrane installation directory is " + five + "\n",
  };
  size_t pos = 0;
  for (const std::string& line : lines) {
    const size_t found = outcome.log.find(line, pos);
    ASSERT_NE(found, std::string::npos) << "missing or out of order: " << line << "\n" << outcome.log;
    pos = found + line.size();
  }
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX4Backup", "Zoom"), "150");
  EXPECT_TRUE(PathExists(five + "\\a.txt"));
}

TEST(SilentInstall, UserSettingsReachTheScript) {
  SetupRun setup;
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kMachineKey) + "\\Config", "FromMachine", "m");
  SetRegistryString(HKEY_CURRENT_USER, std::string(kMachineKey) + "\\Config", "FromUser", "u");
  setup.WriteScript(
      setup.SimpleScript("+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Both=<FromMachine><FromUser>\r\n"));
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Both"), "mu");
}

TEST(SilentInstall, OldVersionElsewhereIsKept) {
  SetupRun setup;
  const std::string old = setup.Root().MakeFolder("old version");
  setup.WriteScript(
      setup.SimpleScript("$test_overwrite_old_app=over\r\n"
                         "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Over=<over>\r\n",
                         "", "OldAppDir=" + old + "\r\n"));
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Over"), "0");
  EXPECT_TRUE(IsFolder(setup.Dest()));
}

TEST(SilentInstall, OldVersionInTheDestinationIsReplaced) {
  SetupRun setup;
  CreateDirectoryA(setup.Dest().c_str(), nullptr);
  setup.WriteScript(
      setup.SimpleScript("$test_overwrite_old_app=over\r\n"
                         "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Over=<over>\r\n",
                         "", "OldAppDir=" + setup.Root().Path() + "\\DEST\r\n"));
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Over"), "1");
}

TEST(SilentInstall, OldVersionInTheDestinationMayBeNamedWithATrailingBackslash) {
  SetupRun setup;
  CreateDirectoryA(setup.Dest().c_str(), nullptr);
  setup.WriteScript(
      setup.SimpleScript("$test_overwrite_old_app=over\r\n"
                         "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Over=<over>\r\n",
                         "", "OldAppDir=" + setup.Dest() + "\\\r\n"));
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Over"), "1");
}

TEST(SilentInstall, MissingOldVersionFolderCountsAsNone) {
  SetupRun setup;
  setup.WriteScript(
      setup.SimpleScript("$test_overwrite_old_app=over\r\n"
                         "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Over=<over>\r\n",
                         "", "OldAppDir=C:\\does not exist\r\n"));
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Over"), "0");
}

// A held destination is replaced at the next start of Windows; the run itself succeeds.
TEST(SilentInstall, DestinationInUse) {
  SetupRun setup;
  setup.AddFile("a.txt", "new text");
  setup.WriteScript(setup.SimpleScript());
  CreateDirectoryA(setup.Dest().c_str(), nullptr);
  WriteWholeFile(setup.Dest("a.txt"), "old");
  RunOutcome outcome;
  {
    const FileHandle held(
        CreateFileA(setup.Dest("a.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    outcome = setup.SilentInstall();
  }
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(
      outcome.Logged("is in use. Installing this file on restart. TempPath = " + setup.Dest("~.txt")));
  EXPECT_TRUE(outcome.Logged("Windows must be restarted to complete the installation."));
  EXPECT_EQ(ReadWholeFile(setup.Dest("a.txt")), "old");
  EXPECT_EQ(ReadWholeFile(setup.Dest("~.txt")), "new text");
}

TEST(SilentInstall, OwnFilesOntoThemselves) {
  SetupRun setup("dist", "dist");
  setup.AddFile("setup.inf", "");
  setup.AddFile("a.txt", "alpha");
  setup.WriteScript(setup.SimpleScript());
  ExpectSilent(setup.SilentInstall(), 0);
  EXPECT_EQ(ReadWholeFile(setup.Dest("a.txt")), "alpha");
}

TEST(SilentInstall, ThreeThousandFileLines) {
  SetupRun setup;
  constexpr int kFiles = 3000;
  for (int i = 0; i < kFiles; ++i)
    setup.AddFile("f" + std::to_string(i % 30) + "\\file" + std::to_string(i) + ".dat",
                  "content " + std::to_string(i));
  setup.WriteScript(setup.SimpleScript("", "$dir_del=<ProgDir>\r\n"));
  const RunOutcome installed = setup.Run("-Q -D " + Quoted(setup.Dest()), 240000);
  ASSERT_EQ(installed.exitCode, 0u);
  for (int i = 0; i < kFiles; ++i) {
    const std::string name = "f" + std::to_string(i % 30) + "\\file" + std::to_string(i) + ".dat";
    ASSERT_EQ(ReadWholeFile(setup.Dest(name)), "content " + std::to_string(i)) << name;
  }
  const RunOutcome removed = setup.Run("-Q -RS", 240000);  // the recorded folder is the one to empty
  EXPECT_EQ(removed.exitCode, 0u) << removed.log.substr(0, 2000);
  EXPECT_FALSE(PathExists(setup.Dest()));
}

}  // namespace
