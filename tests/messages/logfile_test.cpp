// The run's log: where it is made, what stands in it byte for byte, and its last move.
#include "messages/logfile.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "app_vars.h"
#include "base/box_driver.h"
#include "base/handle.h"
#include "base/runstate.h"
#include "messages/res.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/library_maker.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"

namespace {

class LogTest : public AppVarsTest {
 protected:
  bool Open() { return OpenLog(mDir.Path().c_str(), "a.log"); }
  std::string Bytes() const { return mDir.Read("a.log"); }
  // What was written behind the header line.
  std::string Body() const {
    const std::string bytes = Bytes();
    return bytes.substr(bytes.find("\r\n") + 2);
  }

  TempDir mDir;
};

// Opening

TEST_F(LogTest, IsClosedAtFirst) {
  EXPECT_FALSE(IsLogOpen());
  EXPECT_TRUE(Open());
  EXPECT_TRUE(IsLogOpen());
  CloseAndRenameLog();
  EXPECT_FALSE(IsLogOpen());
}

TEST_F(LogTest, HeaderGivesTheTimeInUtc) {
  SYSTEMTIME before;
  SYSTEMTIME after;
  std::string expected[2];
  const auto header = [](const SYSTEMTIME& time) {
    char text[100];
    snprintf(text, sizeof(text), "Logfile [Time: %02d:%02d] %4d-%02d-%02d (YYYY-MM-DD)\r\n", time.wHour,
             time.wMinute, time.wYear, time.wMonth, time.wDay);
    return std::string(text);
  };
  GetSystemTime(&before);
  ASSERT_TRUE(Open());
  GetSystemTime(&after);
  EXPECT_TRUE(Bytes() == header(before) || Bytes() == header(after)) << Bytes();
}

void WINAPI EarlyInMarch(LPSYSTEMTIME time) {
  *time = {};
  time->wYear = 2024;
  time->wMonth = 3;
  time->wDay = 7;
  time->wHour = 9;
  time->wMinute = 5;
}

TEST_F(LogTest, HeaderPadsItsNumbers) {
  const ImportDouble clock("GetSystemTime", reinterpret_cast<void*>(&EarlyInMarch));
  ASSERT_TRUE(Open());
  EXPECT_EQ(Bytes(), "Logfile [Time: 09:05] 2024-03-07 (YYYY-MM-DD)\r\n");
}

TEST_F(LogTest, HeaderIgnoresVariablesOfTheSameNames) {
  for (const char* name : {"Hour", "Hour:02d", "Year:4d"}) AppSetVariable(name, "variable");
  ASSERT_TRUE(Open());
  EXPECT_EQ(Bytes().find("variable"), std::string::npos);
}

TEST_F(LogTest, OldFileIsReplaced) {
  mDir.Write("a.log", std::string(5000, 'x'));
  ASSERT_TRUE(Open());
  EXPECT_EQ(Bytes().substr(0, 8), "Logfile ");
  EXPECT_EQ(Body(), "");
}

TEST_F(LogTest, SecondOpenIsRefusedAndTheFirstStaysInUse) {
  ASSERT_TRUE(Open());
  EXPECT_FALSE(OpenLog(mDir.Path().c_str(), "b.log"));
  LogLine("line");
  EXPECT_EQ(Body(), "line\r\n");
  EXPECT_FALSE(mDir.Has("b.log"));
}

TEST_F(LogTest, NullNamesAreReported) {
  AssertRecorder recorder;
  EXPECT_FALSE(OpenLog(nullptr, "a.log"));
  EXPECT_FALSE(OpenLog(mDir.Path().c_str(), nullptr));
  EXPECT_EQ(recorder.Texts(), (std::vector<std::string>{"dirName", "fileName"}));
  EXPECT_FALSE(IsLogOpen());
}

TEST_F(LogTest, MissingFolderFails) {
  EXPECT_FALSE(OpenLog(mDir.Join("missing").c_str(), "a.log"));
  EXPECT_FALSE(IsLogOpen());
}

TEST_F(LogTest, TooLongPathIsRefused) {
  EXPECT_FALSE(OpenLog(mDir.Path().c_str(), (std::string(260, 'x') + ".log").c_str()));
  EXPECT_FALSE(IsLogOpen());
  // Of 259 and 260 characters: only the first leaves room for the end of the text.
  const std::string name(259 - mDir.Path().size() - 1, 'x');
  EXPECT_FALSE(OpenLog(mDir.Path().c_str(), (name + 'x').c_str()));
  EXPECT_FALSE(IsLogOpen());
  EXPECT_TRUE(OpenLog(mDir.Path().c_str(), name.c_str()));
  EXPECT_TRUE(mDir.Has(name));
}

TEST_F(LogTest, FolderMayEndInABackslash) {
  EXPECT_TRUE(OpenLog((mDir.Path() + "\\").c_str(), "a.log"));
  EXPECT_TRUE(mDir.Has("a.log"));
}

TEST_F(LogTest, EmptyFolderIsTheCurrentOne) {
  char former[MAX_PATH];
  GetCurrentDirectoryA(sizeof(former), former);
  SetCurrentDirectoryA(mDir.Path().c_str());
  EXPECT_TRUE(OpenLog("", "a.log"));
  SetCurrentDirectoryA(former);
  EXPECT_TRUE(mDir.Has("a.log"));
}

decltype(&CreateFileA) gCreateFile = nullptr;
UINT gModeWhileOpening = 0;

HANDLE WINAPI CreateAndNoteTheMode(LPCSTR path, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES security,
                                   DWORD disposition, DWORD attributes, HANDLE pattern) {
  gModeWhileOpening = SetErrorMode(0);
  SetErrorMode(gModeWhileOpening);
  return gCreateFile(path, access, sharing, security, disposition, attributes, pattern);
}

TEST_F(LogTest, NoCriticalErrorBoxesWhileItIsOpenedAndTheModeAsBeforeAfterwards) {
  const UINT mode = SetErrorMode(SEM_NOOPENFILEERRORBOX);
  {
    const ImportDouble creating("CreateFileA", reinterpret_cast<void*>(&CreateAndNoteTheMode));
    gCreateFile = reinterpret_cast<decltype(gCreateFile)>(creating.Original());
    gModeWhileOpening = 0;
    ASSERT_TRUE(Open());
  }
  EXPECT_EQ(gModeWhileOpening & SEM_FAILCRITICALERRORS, static_cast<UINT>(SEM_FAILCRITICALERRORS));
  EXPECT_EQ(SetErrorMode(mode), static_cast<UINT>(SEM_NOOPENFILEERRORBOX));
}

TEST_F(LogTest, AccentedFolderHoldsItsLog) {
  const std::string folder = mDir.MakeFolder("d\xe9j\xe0 vu");
  AppSetVariable("AppName", "Veltrane");
  AppSetVariable("MajVersion", "6");
  ASSERT_TRUE(OpenLog(folder.c_str(), "QLSetup.log"));
  LogLine("line");
  EXPECT_TRUE(PathExists(folder + "\\QLSetup.log"));
  EXPECT_TRUE(CloseAndRenameLog());
  EXPECT_FALSE(PathExists(folder + "\\QLSetup.log"));
  EXPECT_NE(ReadWholeFile(folder + "\\Veltrane6.log").find("line\r\n"), std::string::npos);
}

DWORD WINAPI NoShortName(LPCSTR, LPSTR, DWORD) {
  SetLastError(ERROR_INVALID_PARAMETER);
  return 0;
}

TEST_F(LogTest, AccentedFolderWithoutShortNameHoldsItsLog) {
  const std::string folder = mDir.MakeFolder("d\xe9j\xe0 vu");
  AppSetVariable("AppName", "Veltrane");
  AppSetVariable("MajVersion", "6");
  const ImportDouble naming("GetShortPathNameA", reinterpret_cast<void*>(&NoShortName));
  ASSERT_TRUE(OpenLog(folder.c_str(), "QLSetup.log"));
  EXPECT_TRUE(CloseAndRenameLog());
  EXPECT_EQ(NamesIn(folder), std::vector<std::string>{"Veltrane6.log"});
}

TEST_F(LogTest, OthersMayReadWhileItIsOpen) {
  ASSERT_TRUE(Open());
  LogLine("first");
  EXPECT_EQ(Body(), "first\r\n");
  LogLine("second");
  EXPECT_EQ(Body(), "first\r\nsecond\r\n");
}

// Writing

TEST_F(LogTest, LineEndsInCarriageReturnAndLineFeed) {
  ASSERT_TRUE(Open());
  LogLine("a");
  LogLine("");
  LogLine("b\nc");
  EXPECT_EQ(Body(), "a\r\n\r\nb\r\nc\r\n");
}

TEST_F(LogTest, LinesAreWrittenAsGiven) {
  AppSetVariable("A", "1");
  ASSERT_TRUE(Open());
  LogLine("<A> %s %n \xe9");
  EXPECT_EQ(Body(), "<A> %s %n \xe9\r\n");
}

TEST_F(LogTest, LinesOfAnotherRunAreNotWrittenOver) {
  ASSERT_TRUE(Open());
  LogLine("one");
  constexpr DWORD kShareBoth = FILE_SHARE_READ | FILE_SHARE_WRITE;
  FileHandle other(CreateFileA(mDir.Join("a.log").c_str(), GENERIC_WRITE, kShareBoth, nullptr, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_TRUE(other);
  SetFilePointer(other.Get(), 0, nullptr, FILE_END);
  DWORD written = 0;
  ASSERT_TRUE(WriteFile(other.Get(), "from elsewhere\r\n", 16, &written, nullptr));
  LogLine("two");
  EXPECT_EQ(Body(), "one\r\nfrom elsewhere\r\ntwo\r\n");
}

TEST_F(LogTest, LongLinesStayWhole) {
  ASSERT_TRUE(Open());
  const std::string line(100000, 'x');
  LogLine(line.c_str());
  EXPECT_EQ(Body(), line + "\r\n");
}

TEST_F(LogTest, ErrorsGetTheirPrefix) {
  ASSERT_TRUE(Open());
  LogError("x");
  EXPECT_EQ(Body(), "##ERROR: x\r\n");
}

TEST_F(LogTest, BlocksAreFramedByEmptyLines) {
  ASSERT_TRUE(Open());
  LogBlock("block");
  LogLine("next");
  EXPECT_EQ(Body(), "\r\nblock\r\n\r\nnext\r\n");
}

TEST_F(LogTest, AssertIsReportedAndLogged) {
  ASSERT_TRUE(Open());
  AssertRecorder recorder;
  LogAssert("text");
  EXPECT_EQ(recorder.Only(), "text");
  EXPECT_EQ(Body(), "text\r\n");
}

TEST_F(LogTest, AssertIsReportedWithoutALog) {
  AssertRecorder recorder;
  LogAssert("text");
  EXPECT_EQ(recorder.Only(), "text");
}

TEST_F(LogTest, InternalErrorLeavesItsLineOpen) {
  ASSERT_TRUE(Open());
  LogInternalError(0x12);
  LogLine("next");
  EXPECT_EQ(Body(), "\r\nQuorvale internal error: #0x12  \r\n   next\r\n");
}

TEST_F(LogTest, InternalErrorNumbers) {
  ASSERT_TRUE(Open());
  LogInternalError(0);
  LogInternalError(0x1234);
  LogInternalError(0xFFFFFFFF);
  EXPECT_EQ(Body(),
            "\r\nQuorvale internal error: #0x0   \r\n   "
            "\r\nQuorvale internal error: #0x1234\r\n   "
            "\r\nQuorvale internal error: #0xffffffff\r\n   ");
}

TEST_F(LogTest, NothingHappensWithoutALog) {
  LogLine("a");
  LogError("a");
  LogBlock("a");
  LogInternalError(1);
  LogSystemInfo({});
  EXPECT_FALSE(CloseAndRenameLog());
  EXPECT_TRUE(NamesIn(mDir.Path()).empty());
}

TEST_F(LogTest, NullTextsWriteNothing) {
  ASSERT_TRUE(Open());
  LogLine(nullptr);
  LogError(nullptr);
  LogBlock(nullptr);
  EXPECT_EQ(Body(), "");
}

TEST_F(LogTest, LateLinesAreLost) {
  ASSERT_TRUE(Open());
  CloseAndRenameLog();
  LogLine("late");
  EXPECT_EQ(Body(), "");
}

// System information

TEST_F(LogTest, SystemInfoOfAnNtSystem) {
  AppSetVariable("SetupName", "Installation de Veltrane 6.0c");
  AppSetVariable("Version", "6.0 (200707050000)");
  AppSetVariable("BuildNum", "200707050000");
  ::Run().platformFlags = kPlatformNT | kPlatformMajor4;
  SystemFacts facts;
  facts.versionMajor = 5;
  facts.versionMinor = 1;
  facts.trueTypeAvailable = true;
  facts.trueTypeEnabled = true;
  facts.mode = 3;
  facts.horizRes = 1024;
  facts.vertRes = 768;
  facts.horizPPI = 96;
  facts.vertPPI = 97;
  facts.atmInstalled = true;
  facts.atmRunning = true;
  facts.atmMajor = 4;
  facts.atmMinor = 1;
  ASSERT_TRUE(Open());
  LogSystemInfo(facts);
  EXPECT_EQ(Body(),
            "Installation de Veltrane 6.0c 6.0 (200707050000) 200707050000 Logfile\r\n"
            "Windows OS: Windows NT, version: 5.01\r\n"
            "Windows Enhanced Mode\r\n"
            "Pixels Per Inch: H(96)xV(97), Total Pixels: H(1024)xV(768)\r\n"
            "TrueType Available\r\n"
            "TrueType Enabled\r\n"
            "ATM Version 4. 1 Running\r\n");
}

TEST_F(LogTest, SystemInfoOfAConsumerSystem) {
  ::Run().platformFlags = kPlatformNT | kPlatformWin9x;
  SystemFacts facts;
  facts.versionMajor = 4;
  facts.versionMinor = 10;
  facts.atmInstalled = true;
  ASSERT_TRUE(Open());
  LogSystemInfo(facts);
  EXPECT_EQ(Body(),
            "<SetupName> <Version> <BuildNum> Logfile\r\n"
            "Windows OS: Windows 95, version: 4.0a\r\n"
            "Windows Standard Mode\r\n"
            "Pixels Per Inch: H(0)xV(0), Total Pixels: H(0)xV(0)\r\n"
            "ATM appears to be installed, but not running\r\n");
}

TEST_F(LogTest, SystemInfoOfAnUnknownSystem) {
  SystemFacts facts;
  facts.trueTypeEnabled = true;
  facts.mode = 1;
  ASSERT_TRUE(Open());
  LogSystemInfo(facts);
  EXPECT_EQ(Body(),
            "<SetupName> <Version> <BuildNum> Logfile\r\n"
            "Windows OS: -can't tell-, version: 0.00\r\n"
            "Windows Standard Mode\r\n"
            "Pixels Per Inch: H(0)xV(0), Total Pixels: H(0)xV(0)\r\n"
            "TrueType Enabled\r\n");
}

TEST_F(LogTest, SystemInfoWithRunningAtmOnly) {
  SystemFacts facts;
  facts.atmRunning = true;
  facts.atmMajor = 2;
  facts.atmMinor = 51;
  facts.mode = 2;
  ASSERT_TRUE(Open());
  LogSystemInfo(facts);
  EXPECT_NE(Body().find("\r\nWindows Standard Mode\r\n"), std::string::npos) << Body();
  EXPECT_NE(Body().find("\r\nATM Version 2.51 Running\r\n"), std::string::npos) << Body();
}

// Closing

TEST_F(LogTest, IsMovedToTheProductsName) {
  AppSetVariable("AppName", "Veltrane");
  AppSetVariable("MajVersion", "6");
  ASSERT_TRUE(OpenLog(mDir.Path().c_str(), "QLSetup.log"));
  LogLine("line");
  const std::string whole = mDir.Read("QLSetup.log");
  EXPECT_TRUE(CloseAndRenameLog());
  EXPECT_FALSE(mDir.Has("QLSetup.log"));
  EXPECT_EQ(mDir.Read("Veltrane6.log"), whole);
}

TEST_F(LogTest, ReplacesTheLogOfAnEarlierRun) {
  AppSetVariable("AppName", "Veltrane");
  AppSetVariable("MajVersion", "6");
  mDir.Write("Veltrane6.log", "earlier");
  SetFileAttributesA(mDir.Join("Veltrane6.log").c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_TRUE(OpenLog(mDir.Path().c_str(), "QLSetup.log"));
  EXPECT_TRUE(CloseAndRenameLog());
  EXPECT_EQ(mDir.Read("Veltrane6.log").substr(0, 7), "Logfile");
}

TEST_F(LogTest, FinalNameIsExpanded) {
  AppSetVariable("Product", "Veltrane");
  AppSetVariable("AppName", "<Product>");
  AppSetVariable("MajVersion", "6");
  ASSERT_TRUE(Open());
  EXPECT_TRUE(CloseAndRenameLog());
  EXPECT_TRUE(mDir.Has("Veltrane6.log"));
}

TEST_F(LogTest, StaysWhereItIsWithoutAName) {
  AppSetVariable("AppName", "Veltrane");
  ASSERT_TRUE(Open());
  EXPECT_TRUE(CloseAndRenameLog());
  EXPECT_EQ(NamesIn(mDir.Path()), std::vector<std::string>{"a.log"});
}

TEST_F(LogTest, StaysWhenTheFinalNameIsItsOwn) {
  AppSetVariable("AppName", "A.");
  AppSetVariable("MajVersion", "");
  ASSERT_TRUE(OpenLog(mDir.Path().c_str(), "a..log"));
  EXPECT_TRUE(CloseAndRenameLog());
  EXPECT_TRUE(mDir.Has("a..log"));
}

decltype(&CloseHandle) gCloseHandle = nullptr;

BOOL WINAPI CloseWithAFailure(HANDLE handle) {
  gCloseHandle(handle);
  SetLastError(ERROR_WRITE_FAULT);
  return FALSE;
}

TEST_F(LogTest, StaysWhereItIsWhenItCannotBeClosed) {
  AppSetVariable("AppName", "Veltrane");
  AppSetVariable("MajVersion", "6");
  mDir.Write("Veltrane6.log", "earlier");
  ASSERT_TRUE(Open());
  {
    const ImportDouble closing("CloseHandle", reinterpret_cast<void*>(&CloseWithAFailure));
    gCloseHandle = reinterpret_cast<decltype(gCloseHandle)>(closing.Original());
    EXPECT_FALSE(CloseAndRenameLog());
  }
  EXPECT_FALSE(IsLogOpen());
  EXPECT_EQ(NamesIn(mDir.Path()), (std::vector<std::string>{"Veltrane6.log", "a.log"}));
  EXPECT_EQ(mDir.Read("Veltrane6.log"), "earlier");
}

TEST_F(LogTest, CanBeOpenedAgainAfterwards) {
  ASSERT_TRUE(Open());
  CloseAndRenameLog();
  EXPECT_TRUE(OpenLog(mDir.Path().c_str(), "b.log"));
}

// The run's log

HWND gOtherWindow = nullptr;

class SetupLogTest : public LogTest {
 protected:
  void TearDown() override {
    SetProgramModule(nullptr);
    LogTest::TearDown();
  }
  // Variables that leave no folder to make a log in.
  void LeaveNoFolder() {
    AppSetVariable("TempDir", mDir.Join("missing").c_str());
    AppSetVariable("WinDir", mDir.Join("missing too").c_str());
  }
};

TEST_F(SetupLogTest, IsMadeInTempDir) {
  AppSetVariable("Temp", mDir.Path().c_str());
  AppSetVariable("TempDir", "<Temp>");
  EXPECT_TRUE(OpenSetupLog());
  EXPECT_TRUE(mDir.Has("QLSetup.log"));
}

TEST_F(SetupLogTest, IsMadeInWinDirWhenTempDirIsMissing) {
  AppSetVariable("TempDir", mDir.Join("missing").c_str());
  AppSetVariable("WinDir", mDir.Path().c_str());
  EXPECT_TRUE(OpenSetupLog());
  EXPECT_TRUE(mDir.Has("QLSetup.log"));
}

TEST_F(SetupLogTest, IsMadeInWinDirWhenTempDirIsAFile) {
  AppSetVariable("TempDir", mDir.Write("file", "x").c_str());
  AppSetVariable("WinDir", mDir.Path().c_str());
  EXPECT_TRUE(OpenSetupLog());
  EXPECT_TRUE(mDir.Has("QLSetup.log"));
}

TEST_F(SetupLogTest, IsMadeInTheCurrentFolderWithoutTempDir) {
  const TempDir other;
  AppSetVariable("WinDir", other.Path().c_str());
  char former[MAX_PATH];
  GetCurrentDirectoryA(sizeof(former), former);
  SetCurrentDirectoryA(mDir.Path().c_str());
  EXPECT_TRUE(OpenSetupLog());
  SetCurrentDirectoryA(former);
  EXPECT_TRUE(mDir.Has("QLSetup.log"));
  EXPECT_FALSE(other.Has("QLSetup.log"));
}

TEST_F(SetupLogTest, OpenLogStaysInUse) {
  ASSERT_TRUE(Open());
  AppSetVariable("TempDir", mDir.Path().c_str());
  EXPECT_TRUE(OpenSetupLog());
  EXPECT_FALSE(mDir.Has("QLSetup.log"));
}

TEST_F(SetupLogTest, UnwritableTempDirDoesNotLeadToWinDir) {
  const TempDir other;
  AppSetVariable("TempDir", mDir.Path().c_str());
  AppSetVariable("WinDir", other.Path().c_str());
  mDir.MakeFolder("QLSetup.log");  // a folder of that name: the file cannot be made
  ::Run().setupFlags = kQuiet;
  EXPECT_TRUE(OpenSetupLog());
  EXPECT_FALSE(IsLogOpen());
  EXPECT_FALSE(other.Has("QLSetup.log"));
}

TEST_F(SetupLogTest, SilentRunGoesOnWithoutAQuestion) {
  LeaveNoFolder();
  ::Run().setupFlags = kQuiet;
  BoxDriver driver("Veltrane", IDNO);
  EXPECT_TRUE(OpenSetupLog());
  driver.Finish();
  EXPECT_FALSE(driver.mShown);
  EXPECT_FALSE(IsLogOpen());
}

TEST_F(SetupLogTest, SecondTryDoesNotAsk) {
  LeaveNoFolder();
  BoxDriver driver("Veltrane", IDNO);
  EXPECT_TRUE(OpenSetupLog(false));
  driver.Finish();
  EXPECT_FALSE(driver.mShown);
}

TEST_F(SetupLogTest, QuestionYesGoesOnWithoutALog) {
  LeaveNoFolder();
  BoxDriver driver("Veltrane", IDYES);
  EXPECT_TRUE(OpenSetupLog());
  driver.Finish();
  EXPECT_TRUE(driver.mShown);
  EXPECT_TRUE(driver.mHasYes);
  EXPECT_TRUE(driver.mHasNo);
  EXPECT_EQ(driver.mIcon, LoadIconA(nullptr, IDI_QUESTION));
  EXPECT_EQ(
      driver.mText,
      "Setup ne peut pas cr\xe9"
      "er de fichier journal. Le fichier journal est n\xe9"
      "cessaire si vous rencontrez des probl\xe8mes d'installation. Il est possible que vous ne disposiez "
      "pas "
      "des droits n\xe9"
      "cessaires \xe0 l'installation de programmes sur cet ordinateur. \n\nVoulez-vous continuer sans cr\xe9"
      "er de journal ?");
  EXPECT_FALSE(IsLogOpen());
  EXPECT_FALSE(AppVariableExists("SetupName"));
}

TEST_F(SetupLogTest, QuestionBlocksTheOtherWindows) {
  LeaveNoFolder();
  const WindowHandle other(CreateWindowExA(0, "#32770", "other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100,
                                           100, nullptr, nullptr, nullptr, nullptr));
  gOtherWindow = other.Get();
  BoxDriver driver("Veltrane", IDYES, [] { return !IsWindowEnabled(gOtherWindow); });
  EXPECT_TRUE(OpenSetupLog());
  driver.Finish();
  EXPECT_TRUE(driver.mWasReady);
}

int WINAPI RefusedBox(HWND, LPCSTR, LPCSTR, UINT) { return 0; }

TEST_F(SetupLogTest, QuestionThatCannotBeShownCountsAsNo) {
  LeaveNoFolder();
  const ImportDouble box("MessageBoxA", reinterpret_cast<void*>(&RefusedBox));
  EXPECT_FALSE(OpenSetupLog());
}

TEST_F(SetupLogTest, QuestionNoStops) {
  LeaveNoFolder();
  BoxDriver driver("Veltrane", IDNO);
  EXPECT_FALSE(OpenSetupLog());
  driver.Finish();
  EXPECT_TRUE(driver.mShown);
}

TEST_F(SetupLogTest, QuestionNamesTheInstallationOnceItIsKnown) {
  LeaveNoFolder();
  AppSetVariable("SetupName", "Installation de Veltrane");
  BoxDriver driver("Veltrane", IDYES);
  EXPECT_TRUE(OpenSetupLog());
  driver.Finish();
  EXPECT_EQ(driver.mText.find("Installation de Veltrane ne peut pas"), 0u) << driver.mText;
}

}  // namespace
