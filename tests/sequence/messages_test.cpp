// Whole runs seen from what they say: the log's first and last lines, the boxes word by word, failed
// assertions and their dumps, and variables of the script that freeze or contain themselves.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "sequence/driver.h"
#include "support/files.h"
#include "support/setup_run.h"

namespace {

constexpr char kMadeKey[] = "Software\\Quorvale\\Made";

void ExpectSilent(const RunOutcome& outcome, DWORD code) {
  EXPECT_EQ(outcome.exitCode, code) << outcome.log;
  EXPECT_EQ(outcome.windows, std::vector<std::string>()) << outcome.log;
}

// A distribution of one file.
class MessageRun : public testing::Test {
 protected:
  MessageRun() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.WriteScript(mSetup.SimpleScript());
  }
  std::string DestSwitch() const { return "-D " + Quoted(mSetup.Dest()); }
  // A folder where the log should be: no file can be made under its name.
  void BlockTheLog() const { CreateDirectoryA(mSetup.Temp("QLSetup.log").c_str(), nullptr); }
  void ExpectUntouched() const { EXPECT_FALSE(PathExists(mSetup.Dest())); }
  std::optional<std::string> Made(const char* name) const {
    return RegistryString(HKEY_CURRENT_USER, kMadeKey, name);
  }
  // Lines that leave variables of the script in the registry.
  static std::string Note(const std::vector<std::string>& names) {
    std::string lines;
    for (const std::string& name : names)
      lines += "+HKEY_CURRENT_USER\\" + std::string(kMadeKey) + "\\" + name + "=[<" + name + ">]\r\n";
    return lines;
  }

  SetupRun mSetup;
};

// Makes a program's calls of one function of the system go to another one of the same library that takes as
// many arguments.
void RenameImport(const std::string& path, std::string name, std::string other) {
  std::string bytes = ReadWholeFile(path);
  name += '\0';
  other.resize(name.size(), '\0');
  const size_t at = bytes.find(name);
  ASSERT_NE(at, std::string::npos);
  ASSERT_EQ(bytes.find(name, at + 1), std::string::npos);
  WriteWholeFile(path, bytes.replace(at, name.size(), other));
}

// ---- the log ----

std::string LineOf(const std::string& log, size_t number) {
  size_t start = 0;
  while (number-- > 0) start = log.find('\n', start) + 1;
  return log.substr(start, log.find('\n', start) - start);
}

TEST_F(MessageRun, LogBeginsWithTheTimeInUtc) {
  SYSTEMTIME before = {};
  SYSTEMTIME after = {};
  GetSystemTime(&before);
  const RunOutcome outcome = mSetup.SilentInstall();
  GetSystemTime(&after);
  const auto header = [](const SYSTEMTIME& time) {
    char text[100];
    snprintf(text, sizeof text, "Logfile [Time: %02d:%02d] %04d-%02d-%02d (YYYY-MM-DD)", time.wHour,
             time.wMinute, time.wYear, time.wMonth, time.wDay);
    return std::string(text);
  };
  const std::string line = LineOf(outcome.log, 0);
  EXPECT_TRUE(header(before) <= line && line <= header(after)) << line;
}

TEST_F(MessageRun, LogTellsTheMachinesFacts) {
  const RunOutcome outcome = mSetup.SilentInstall();
  OSVERSIONINFOA version = {};
  version.dwOSVersionInfoSize = sizeof version;
  GetVersionExA(&version);
  const HDC screen = GetDC(nullptr);
  RASTERIZER_STATUS status = {};
  GetRasterizerCaps(&status, sizeof status);
  char facts[500];
  snprintf(facts, sizeof facts,
           "Installation de Veltrane 6.0c 6.0 (200707050000) 200707050000 Logfile\n"
           "Windows OS: Windows NT, version: %lu.%02lx\n"
           "Windows Enhanced Mode\n"
           "Pixels Per Inch: H(%d)xV(%d), Total Pixels: H(%d)xV(%d)\n"
           "%s%sThe background window has been turned off.\n",
           version.dwMajorVersion, version.dwMinorVersion, GetDeviceCaps(screen, LOGPIXELSX),
           GetDeviceCaps(screen, LOGPIXELSY), GetDeviceCaps(screen, HORZRES), GetDeviceCaps(screen, VERTRES),
           (status.wFlags & TT_AVAILABLE) != 0 ? "TrueType Available\n" : "",
           (status.wFlags & TT_ENABLED) != 0 ? "TrueType Enabled\n" : "");
  ReleaseDC(nullptr, screen);
  EXPECT_TRUE(outcome.Logged(facts)) << facts << outcome.log;
}

// Adobe Type Manager's stand-in in the system folder.
class TypeManagerRun : public MessageRun {
 protected:
  TypeManagerRun() {
    char folder[MAX_PATH] = "";
    GetSystemDirectoryA(folder, sizeof folder);
    mLibrary = std::string(folder) + "\\ATM32.dll";
    WriteWholeFile(mLibrary, ReadWholeFile(HelperPath("atm.dll")));
    SetEnvironmentVariableA("VT_ATM", mSetup.Root().Write("atm.ini", "[ATM]\r\n").c_str());
  }
  ~TypeManagerRun() override {
    SetEnvironmentVariableA("VT_ATM", nullptr);
    EXPECT_TRUE(DeleteTree(mLibrary));
  }
  void Answer(const char* key, const char* value) const {
    WritePrivateProfileStringA("ATM", key, value, mSetup.Root().Join("atm.ini").c_str());
  }

 private:
  std::string mLibrary;
};

TEST_F(TypeManagerRun, LogTellsItsVersionWhenItRuns) {
  Answer("version", "1025");  // minor 4 above major 1
  EXPECT_TRUE(mSetup.SilentInstall().Logged("\nATM Version 1. 4 Running\nThe background window"));
  Answer("version", "13060");
  EXPECT_TRUE(mSetup.SilentInstall().Logged("\nATM Version 4.51 Running\nThe background window"));
}

TEST_F(TypeManagerRun, LogTellsThatItDoesNotRun) {
  Answer("loaded", "0");
  EXPECT_TRUE(mSetup.SilentInstall().Logged(
      "\nATM appears to be installed, but not running\nThe background window has been turned off.\n"));
}

TEST_F(MessageRun, LogHoldsEachMessageWithAnEmptyLineBehindIt) {
  const RunOutcome outcome = mSetup.Run("-Q what");
  ExpectSilent(outcome, 4);
  EXPECT_TRUE(
      outcome.log.ends_with("Arguments de ligne de commande non valides. \nConsultez le \"Manuel de "
                            "l'Administrateur R\xe9seau\" de "
                            "Quorvale ou votre administrateur r\xe9seau.\n\n"))
      << outcome.log;
}

TEST_F(MessageRun, LogKeepsItsFirstNameWithoutAProductsName) {
  mSetup.WriteScript(
      "[startup]\r\nMajVersion=6\r\nShortAppKey=VT\r\n[easy_install]\r\na.txt\r\n[files]\r\n"
      "a.txt=1,a.txt,<ProgDir>\\a.txt,5\r\n");
  const RunOutcome outcome = mSetup.SilentInstall();
  EXPECT_EQ(outcome.logName, "QLSetup.log") << outcome.exitCode;
  EXPECT_EQ(NamesIn(mSetup.Temp()), std::vector<std::string>{"QLSetup.log"});
}

// ---- the log that cannot be made ----

TEST_F(MessageRun, QuestionAboutTheMissingLogWordByWord) {
  BlockTheLog();
  SetupDriver driver(mSetup, DestSwitch());
  const HWND box = driver.WaitFor(kBoxText);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(SetupDriver::Caption(box), "Veltrane");
  EXPECT_EQ(
      SetupDriver::Text(box, kBoxText),
      "Setup ne peut pas cr\xe9"
      "er de fichier journal. Le fichier journal est n\xe9"
      "cessaire si vous rencontrez des probl\xe8mes d'installation. Il est possible que vous ne disposiez "
      "pas des droits n\xe9"
      "cessaires \xe0 l'installation de programmes sur cet ordinateur. \n\nVoulez-vous continuer sans "
      "cr\xe9"
      "er de journal ?");
  EXPECT_NE(GetDlgItem(box, IDYES), nullptr);
  EXPECT_NE(GetDlgItem(box, IDNO), nullptr);
  driver.PressAndWait(box, IDNO);
  EXPECT_EQ(driver.End().exitCode, 15u);
  ExpectUntouched();
}

TEST_F(MessageRun, SilentRunWithoutALogSaysNothingAnywhere) {
  BlockTheLog();
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_EQ(NamesIn(mSetup.Temp()), std::vector<std::string>{"QLSetup.log"});
  EXPECT_TRUE(IsFolder(mSetup.Temp("QLSetup.log")));
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

// ---- boxes that the system refuses ----

class RefusedBoxes : public MessageRun {
 protected:
  // Every message box answers 0 at once and is never seen.
  RefusedBoxes() { RenameImport(mSetup.Source("Setup.exe"), "MessageBoxA", "DrawIcon"); }
};

TEST_F(RefusedBoxes, MissingLogEndsWith15) {
  BlockTheLog();
  ExpectSilent(mSetup.Run(DestSwitch()), 15);
  ExpectUntouched();
}

TEST_F(RefusedBoxes, MessagesAreLogged) {
  DeleteFileA(mSetup.Source("setup.inf").c_str());
  const RunOutcome outcome = mSetup.Run(DestSwitch());
  ExpectSilent(outcome, 1);
  EXPECT_TRUE(outcome.Logged("Echec... Le programme d'installation ne peut pas ouvrir setup.inf.\n\n"));
}

TEST_F(RefusedBoxes, SpaceQuestionCountsAsCancelled) {
  std::string script = SetupRun::Startup() + "[easy_install]\r\n";
  for (int i = 0; i < 3000; ++i) script += "f" + std::to_string(i) + "\r\n";
  script += "[files]\r\n";
  for (int i = 0; i < 3000; ++i)
    script += "f" + std::to_string(i) + "=1,a.txt,<ProgDir>\\f" + std::to_string(i) + ",2000000000\r\n";
  mSetup.WriteScript(script);
  const RunOutcome outcome = mSetup.Run("-I " + DestSwitch());
  EXPECT_EQ(outcome.exitCode, 13u) << outcome.log;
  EXPECT_TRUE(outcome.Logged(": [Cancel]\n\n")) << outcome.log;
}

TEST_F(RefusedBoxes, FailedAssertionGoesOn) {
  SetupDriver driver(mSetup, "-ASSERT " + DestSwitch());
  driver.PressAndWait(driver.WaitFor(IDC_MAIN_FOLDER), IDCANCEL);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 10u);
  EXPECT_TRUE(outcome.Logged("Assertion( -assert on the command line );"));
}

// ---- memory and the program's own path ----

TEST_F(MessageRun, WithoutTheReserveTheRunEndsWith8) {
  RenameImport(mSetup.Source("Setup.exe"), "GlobalAlloc",
               "lstrcatA");  // gives null for arguments that are no texts
  ExpectSilent(mSetup.SilentInstall(), 8);
  ExpectUntouched();
  SetupDriver driver(mSetup, DestSwitch());
  const HWND box = driver.WaitFor(kBoxText);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(SetupDriver::Caption(box), "Setup");
  EXPECT_EQ(SetupDriver::Text(box, kBoxText), "Setup");
  driver.PressAndWait(box, IDOK);
  EXPECT_EQ(driver.End().exitCode, 8u);
}

TEST_F(MessageRun, WithoutItsOwnPathTheRunEndsWith8) {
  // Gives 0 for a module that is null.
  RenameImport(mSetup.Source("Setup.exe"), "GetModuleFileNameA", "lstrcpynA");
  ExpectSilent(mSetup.SilentInstall(), 8);
  EXPECT_EQ(NamesIn(mSetup.Temp()), std::vector<std::string>{"VTSetup_NoBuildNum_0.dmp"});
  SetupDriver driver(mSetup, DestSwitch());
  EXPECT_EQ(driver.AnswerBox("Assertion( module.Length() );", IDYES), "Echec d'assertion !");
  EXPECT_EQ(driver.End().exitCode, 8u);
  ExpectUntouched();
}

// ---- failed assertions ----

// The message of -ASSERT up to the line number and behind it.
constexpr char kFrenchStart[] = "Fichier : app.cpp, ligne n\xb0 ";
constexpr char kFrenchEnd[] =
    "\nAssertion( -assert on the command line );\n\nVeuillez noter ces informations et les transmettre \xe0 "
    "l'assistance technique de Quorvale.\n\nVoulez-vous continuer?";

// `text` without the digits behind `start`.
std::string WithoutNumber(std::string text, const std::string& start) {
  const size_t at = text.find(start);
  if (at == std::string::npos) return text;
  const size_t end = text.find_first_not_of("0123456789", at + start.size());
  return text.erase(at + start.size(), end - at - start.size());
}

TEST_F(MessageRun, AssertionBoxWordByWord) {
  SetupDriver driver(mSetup, "-ASSERT " + DestSwitch());
  const HWND box = driver.WaitForBox("-assert on the command line");
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(SetupDriver::Caption(box), "Echec d'assertion !");
  EXPECT_EQ(GetWindow(box, GW_OWNER), nullptr);
  EXPECT_NE(GetWindowLongA(box, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  EXPECT_EQ(WithoutNumber(SetupDriver::Text(box, kBoxText), kFrenchStart),
            std::string(kFrenchStart) + kFrenchEnd + "\nMinidump created at '" +
                mSetup.Temp("VTSetup_200707050000_0.dmp") + "'.\n");
  driver.PressAndWait(box, IDNO);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 9u);
  // The process ended at once: the log has its first name and ends with the block.
  EXPECT_EQ(outcome.logName, "QLSetup.log");
  EXPECT_TRUE(WithoutNumber(outcome.log, kFrenchStart)
                  .ends_with("\n\n" + std::string(kFrenchStart) + kFrenchEnd + "\n\n"))
      << outcome.log;
  ExpectUntouched();
}

TEST_F(MessageRun, AssertionOfASilentRunIsLoggedAsABlock) {
  const RunOutcome outcome = mSetup.Run("-Q -ASSERT " + DestSwitch());
  ExpectSilent(outcome, 0);
  EXPECT_NE(
      WithoutNumber(outcome.log, kFrenchStart).find("\n\n" + std::string(kFrenchStart) + kFrenchEnd + "\n\n"),
      std::string::npos)
      << outcome.log;
  EXPECT_FALSE(outcome.Logged("Minidump"));
}

TEST_F(MessageRun, EachAssertionHasItsDump) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "ASSERT=anything\r\n"));
  ExpectSilent(mSetup.SilentInstall(), 0);
  ExpectSilent(mSetup.SilentInstall(), 0);
  EXPECT_EQ(NamesIn(mSetup.Temp(), "VTSetup_*.dmp"),
            (std::vector<std::string>{"VTSetup_200707050000_0.dmp", "VTSetup_200707050000_1.dmp"}));
}

TEST_F(MessageRun, AssertionBeforeTheVersionIsKnownHasNoBuildNumber) {
  mSetup.WriteScript("[startup]\r\nAppName=Veltrane\r\nMajVersion=6\r\n[easy_install]\r\nX=1\r\n");
  ExpectSilent(mSetup.SilentInstall(), 2);
  EXPECT_EQ(NamesIn(mSetup.Temp(), "*.dmp"), std::vector<std::string>{"VTSetup_NoBuildNum_0.dmp"});
}

TEST_F(MessageRun, AssertionInEnglish) {
  ASSERT_TRUE(
      CopyFileA((TestFolder() + "\\VTsu6en.dll").c_str(), mSetup.Source("VTsu6en.dll").c_str(), TRUE));
  SetupDriver driver(mSetup, "-ASSERT " + DestSwitch());
  const HWND box = driver.WaitForBox("Assertion( -assert on the command line );");
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(SetupDriver::Caption(box), "Assertion failed!");
  EXPECT_EQ(SetupDriver::Text(box, kBoxText).find("File: app.cpp, line "), 0u);
  driver.PressAndWait(box, IDNO);
  EXPECT_EQ(driver.End().exitCode, 9u);
}

TEST_F(MessageRun, WrongTruthValueOfTheScriptIsAFailedAssertion) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "no_progress=True\r\n"));
  SetupDriver driver(mSetup, "-I " + DestSwitch());
  driver.AnswerBox("Assertion( value == \"0\" || value == \"1\" );", IDNO);
  EXPECT_EQ(driver.End().exitCode, 9u);
}

// ---- boxes of the reporter ----

TEST_F(MessageRun, TitleIsCutToFiftyCharacters) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "SetupName=" + std::string(60, 'n') + "\r\n"));
  DeleteFileA(mSetup.Source("a.txt").c_str());
  SetupDriver driver(mSetup, "-I " + DestSwitch());
  EXPECT_EQ(driver.AnswerBox("ne peut pas trouver le fichier d'origine"),
            "Erreur de " + std::string(40, 'n'));
  EXPECT_EQ(driver.AnswerBox("correctement."), "Erreur de " + std::string(40, 'n'));
  EXPECT_EQ(driver.End().exitCode, 12u);
}

// ---- variables of the script ----

TEST_F(MessageRun, FrozenVariablesOfTheScriptStay) {
  mSetup.WriteScript(mSetup.SimpleScript("%A=1\r\nA=2\r\nB=1\r\n%B=2\r\nB=3\r\n" + Note({"A", "B"})));
  ExpectSilent(mSetup.SilentInstall(), 0);
  EXPECT_EQ(Made("A"), "[1]");
  EXPECT_EQ(Made("B"), "[2]");
}

TEST_F(MessageRun, VariablesOfTheScriptDifferByCase) {
  mSetup.WriteScript(
      mSetup.SimpleScript("Case=upper\r\ncase=lower\r\nAll=<Case> <case> <CASE>\r\n" + Note({"All"})));
  ExpectSilent(mSetup.SilentInstall(), 0);
  EXPECT_EQ(Made("All"), "[upper lower <CASE>]");
}

TEST_F(MessageRun, ValuesAreFilledWhateverTheOrderOfTheVariables) {
  const std::string chain = "A=<B>\r\nB=<C>\r\nC=<D>\r\nD=<E>\r\nE=<F>\r\nF=y\r\n";
  mSetup.WriteScript(
      mSetup.SimpleScript("Outer=<Inner>\r\nInner=x\r\nBack=<Outer>\r\nSpec=<Inner:4d> <Inner,x>\r\n" +
                          chain + Note({"Back", "Spec", "A"})));
  ExpectSilent(mSetup.SilentInstall(), 0);
  EXPECT_EQ(Made("Back"), "[x]");
  EXPECT_EQ(Made("A"), "[y]");
  EXPECT_EQ(Made("Spec"), "[<Inner:4d> <Inner,x>]");
}

TEST_F(MessageRun, VariableThatContainsItselfIsNamedInTheLog) {
  mSetup.WriteScript(mSetup.SimpleScript("A=<A>x\r\nA=<A>y\r\nB=<C>\r\nC=<B>\r\n" + Note({"A", "B"})));
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_TRUE(
      outcome.Logged("The variable \"A\" never comes to an end; its placeholders were left as they are.\n"))
      << outcome.log.substr(0, 3000);
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(MessageRun, NameGrownFromAVariableThatContainsItselfEnds) {
  mSetup.WriteScript(mSetup.SimpleScript("A=<A><A>\r\n<A>=1\r\nB=<A>\r\nC=<B>\r\n"));
  ExpectSilent(mSetup.SilentInstall(), 0);
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(MessageRun, NamesThatContainThemselvesEndTheRunAllTheSame) {
  mSetup.WriteScript(
      mSetup.SimpleScript("", "", "Self=<Self>\r\nAppName=<Self>\r\nSetupName=<SetupName>x\r\n"));
  const RunOutcome outcome = mSetup.SilentInstall();
  ExpectSilent(outcome, 0);
  EXPECT_EQ(outcome.logName, "QLSetup.log");
  EXPECT_TRUE(outcome.Logged("The variable \"Self\" never comes to an end;"));
  EXPECT_TRUE(outcome.Logged("The variable \"SetupName\" never comes to an end;"));
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

}  // namespace
