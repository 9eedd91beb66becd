// The assertion entry and the standard handler, with real boxes, debugger output and dumps.
#include "base/assert.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "base/hooks.h"
#include "base/runstate.h"
#include "base/str.h"
#include "box_driver.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/process.h"
#include "support/temp_dir.h"

namespace {

using Texts = std::vector<std::string>;

TEST(Assert, PassesWithoutAReport) {
  int evaluated = 0;
  EXPECT_TRUE(VT_ASSERT(++evaluated == 1, "never seen"));
  EXPECT_EQ(evaluated, 1);
}

TEST(Assert, ReportsTextFileAndLineAndGoesOn) {
  AssertRecorder recorder;
  const int line = __LINE__ + 1;
  EXPECT_FALSE(VT_ASSERT(1 > 2, "! mLocked"));
  ASSERT_EQ(recorder.Asserts().size(), 1u);
  EXPECT_EQ(recorder.Asserts()[0].text, "! mLocked");
  EXPECT_EQ(recorder.Asserts()[0].file, "assert_test.cpp");
  EXPECT_EQ(recorder.Asserts()[0].line, line);
}

TEST(Assert, FailReportsAlways) {
  AssertRecorder recorder;
  VT_FAIL("bad format character");
  EXPECT_EQ(recorder.Only(), "bad format character");
}

TEST(Assert, EntryDropsTheFolder) {
  AssertRecorder recorder;
  AssertEntry("x", "C:\\src/base\\str.cpp", 7);
  EXPECT_EQ(recorder.Asserts()[0].file, "str.cpp");
  EXPECT_EQ(recorder.Asserts()[0].line, 7);
}

TEST(Assert, AssertFailedFormatsAtThePlaceRecordedLast) {
  AssertRecorder recorder;
  AssertEntry("x", "somewhere.cpp", 99);
  AssertFailed("%s is %d", "value", 5);
  ASSERT_EQ(recorder.Asserts().size(), 2u);
  EXPECT_EQ(recorder.Asserts()[1].text, "value is 5");
  EXPECT_EQ(recorder.Asserts()[1].file, "somewhere.cpp");
  EXPECT_EQ(recorder.Asserts()[1].line, 99);
}

TEST(Assert, KeepsTheLastError) {
  AssertRecorder recorder;
  HookTable hooks = Hooks();
  hooks.assertFailed = [](const char*, const char*, int) { SetLastError(1); };
  SetHooks(hooks);
  SetLastError(1234);
  VT_FAIL("x");
  EXPECT_EQ(GetLastError(), 1234u);
  AssertFailed("%d", 1);
  EXPECT_EQ(GetLastError(), 1234u);
}

// ---- the standard handler ----

std::vector<std::string>* gDebugOutput = nullptr;

LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) {
  constexpr DWORD kDebugPrint = 0x40010006;
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode == kDebugPrint && gDebugOutput != nullptr) {
    gDebugOutput->push_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

std::vector<std::string>* gBlocks = nullptr;
const char* gCaption = nullptr;
const char* gFormat = nullptr;
const char* gVersion = nullptr;

void RecordBlock(const char* text) { gBlocks->push_back(text); }

bool FindText(unsigned id, Str* text) {
  const char* const found = id == 2048 ? gCaption : id == 2049 ? gFormat : nullptr;
  if (found != nullptr) *text = found;
  return found != nullptr;
}

bool FindVariable(const char* name, Str* value) {
  if (strcmp(name, "Version") != 0 || gVersion == nullptr) return false;
  *value = gVersion;
  return true;
}

// The standard handler with a recorded log and debugger output; dumps go to a folder of the test's own.
class StandardHandler : public testing::Test {
 protected:
  void SetUp() override {
    gCaption = gFormat = nullptr;
    gVersion = "6.0 (1234)";
    gBlocks = &mBlocks;
    gDebugOutput = &mDebugOutput;
    HookTable hooks = {};
    hooks.logBlock = RecordBlock;
    hooks.resourceText = FindText;
    hooks.variable = FindVariable;
    mFormer = SetHooks(hooks);
    mHandler = AddVectoredExceptionHandler(1, OnException);
    GetEnvironmentVariableA("TMP", mFormerTemp, MAX_PATH);
    SetEnvironmentVariableA("TMP", mTemp.Path().c_str());
  }

  void TearDown() override {
    SetEnvironmentVariableA("TMP", mFormerTemp);
    RemoveVectoredExceptionHandler(mHandler);
    SetHooks(mFormer);
    ::Run() = RunState{};
    gBlocks = nullptr;
    gDebugOutput = nullptr;
  }

  std::string DumpNote(int index = 0) const {
    return "Minidump created at '" + mTemp.Join("VTSetup_1234_" + std::to_string(index) + ".dmp") + "'.\n";
  }

  TempDir mTemp;
  char mFormerTemp[MAX_PATH] = "";
  std::vector<std::string> mBlocks;
  std::vector<std::string> mDebugOutput;
  HookTable mFormer = {};
  void* mHandler = nullptr;
};

const char kMessage[] = "File: unit.cpp, Line#: 42\nAssert( x > 0 );\n";

TEST_F(StandardHandler, ShowsTheDefaultFormatAndCaptionWithoutResources) {
  BoxDriver driver("Assertion Failure!", IDYES);
  AssertEntry("x > 0", "unit.cpp", 42);
  driver.Finish();
  ASSERT_TRUE(driver.mShown);
  EXPECT_EQ(driver.mText, kMessage + ("\n" + DumpNote()));
  EXPECT_EQ(driver.mIcon, LoadIconA(nullptr, IDI_EXCLAMATION));
  EXPECT_TRUE(driver.mTopMost);
  EXPECT_FALSE(driver.mHasOwner);
  EXPECT_TRUE(driver.mHasYes);
  EXPECT_TRUE(driver.mHasNo);
}

TEST_F(StandardHandler, ShowsTheTranslatedFormatAndCaption) {
  gCaption = "Echec d'assertion !";
  gFormat = "Fichier %s, ligne %d : %s. Voulez-vous continuer?";
  BoxDriver driver("Echec d'assertion !", IDYES);
  AssertEntry("x > 0", "unit.cpp", 42);
  driver.Finish();
  ASSERT_TRUE(driver.mShown);
  EXPECT_EQ(driver.mText, "Fichier unit.cpp, ligne 42 : x > 0. Voulez-vous continuer?\n" + DumpNote());
}

TEST_F(StandardHandler, ATranslatedFormatWithOtherFieldsIsNotUsed) {
  gFormat = "%s %s %n";
  ::Run().setupFlags = kQuiet;
  AssertEntry("x > 0", "unit.cpp", 42);
  EXPECT_EQ(mBlocks, Texts{kMessage});
}

TEST_F(StandardHandler, ResourceTextsAreCutTo499Bytes) {
  const std::string format = "%s %d %s " + std::string(600, '.');
  gFormat = format.c_str();
  ::Run().setupFlags = kQuiet;
  AssertEntry("x > 0", "unit.cpp", 42);
  EXPECT_EQ(mBlocks, Texts{"unit.cpp 42 x > 0 " + std::string(490, '.')});
}

TEST_F(StandardHandler, WritesTheMessageToDebuggerAndLog) {
  ::Run().setupFlags = kQuiet;
  AssertEntry("x > 0", "unit.cpp", 42);
  EXPECT_EQ(mBlocks, Texts{kMessage});
  EXPECT_EQ(mDebugOutput, (Texts{kMessage, DumpNote()}));
}

TEST_F(StandardHandler, ASilentRunShowsNothingAndGoesOn) {
  ::Run().setupFlags = kQuiet;
  BoxDriver driver("Assertion Failure!", IDYES);
  AssertEntry("x > 0", "unit.cpp", 42);
  driver.Finish();
  EXPECT_FALSE(driver.mShown);
  EXPECT_TRUE(mTemp.Has("VTSetup_1234_0.dmp"));
}

TEST_F(StandardHandler, EachFailureWritesItsOwnDump) {
  ::Run().setupFlags = kQuiet;
  VT_FAIL("one");
  VT_FAIL("two");
  EXPECT_EQ(NamesIn(mTemp.Path()), (Texts{"VTSetup_1234_0.dmp", "VTSetup_1234_1.dmp"}));
  EXPECT_EQ(mTemp.Read("VTSetup_1234_1.dmp").substr(0, 4), "MDMP");
}

TEST_F(StandardHandler, WithoutADumpTheMessageStandsAlone) {
  SetEnvironmentVariableA("TMP", mTemp.Join("no such folder").c_str());
  BoxDriver driver("Assertion Failure!", IDYES);
  AssertEntry("x > 0", "unit.cpp", 42);
  driver.Finish();
  EXPECT_EQ(driver.mText, kMessage);
  EXPECT_EQ(mDebugOutput, Texts{kMessage});
}

TEST_F(StandardHandler, APendingQuitMessageShowsNothing) {
  PostQuitMessage(5);
  BoxDriver driver("Assertion Failure!", IDYES);
  AssertEntry("x > 0", "unit.cpp", 42);
  driver.Finish();
  EXPECT_FALSE(driver.mShown);
  EXPECT_EQ(mDebugOutput.back(), "**** Assert during termination ****\n");
  EXPECT_EQ(mBlocks, Texts{kMessage});
  MSG message;  // still pending for the program's own loop
  ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 5u);
}

volatile bool gInnerDone = false;

void CALLBACK FailInside(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  VT_FAIL("inner");
  gInnerDone = true;
}

TEST_F(StandardHandler, ASecondFailureWhileTheBoxIsOpenShowsNoSecondBox) {
  gInnerDone = false;
  SetTimer(nullptr, 0, 10, FailInside);
  BoxDriver driver("Assertion Failure!", IDYES, [] { return static_cast<bool>(gInnerDone); });
  VT_FAIL("outer");
  driver.Finish();
  EXPECT_TRUE(driver.mShown);
  EXPECT_TRUE(gInnerDone);
  EXPECT_EQ(driver.mBoxes, 1);
  EXPECT_EQ(mDebugOutput.back(), "**** nested calls to AssertFailed ****\n");
  EXPECT_EQ(mBlocks.size(), 1u);
}

void FailWhileLogging(const char* text) {
  RecordBlock(text);
  VT_FAIL("from the log");
}

TEST_F(StandardHandler, AFailureWhileReportingIsNotReportedItself) {
  HookTable hooks = Hooks();
  hooks.logBlock = FailWhileLogging;
  SetHooks(hooks);
  ::Run().setupFlags = kQuiet;
  VT_FAIL("outer");
  EXPECT_EQ(mBlocks.size(), 1u);
  ASSERT_GE(mDebugOutput.size(), 2u);
  EXPECT_EQ(mDebugOutput[1], "**** nested calls to AssertFailed ****\n");
  VT_FAIL("the next one");  // the guard is released again
  EXPECT_EQ(mBlocks.size(), 2u);
}

BOOL WINAPI UnderADebugger() { return TRUE; }
int gBreaks = 0;
void WINAPI CountBreak() { ++gBreaks; }

TEST_F(StandardHandler, AFailureWhileReportingStopsInTheDebugger) {
  HookTable hooks = Hooks();
  hooks.logBlock = FailWhileLogging;
  SetHooks(hooks);
  ::Run().setupFlags = kQuiet;
  const ImportDouble breaking("DebugBreak", reinterpret_cast<void*>(&CountBreak));
  gBreaks = 0;
  VT_FAIL("without a debugger a break would end the process");
  EXPECT_EQ(gBreaks, 0);
  const ImportDouble asking("IsDebuggerPresent", reinterpret_cast<void*>(&UnderADebugger));
  VT_FAIL("with one");
  EXPECT_EQ(gBreaks, 1);
  EXPECT_EQ(mBlocks.size(), 2u);
}

int WINAPI RefusedBox(HWND, LPCSTR, LPCSTR, UINT) { return 0; }

TEST_F(StandardHandler, ABoxThatCannotBeShownGoesOn) {
  const ImportDouble box("MessageBoxA", reinterpret_cast<void*>(&RefusedBox));
  AssertEntry("x > 0", "unit.cpp", 42);
  EXPECT_EQ(mBlocks, Texts{kMessage});
}

TEST_F(StandardHandler, FormattedFailuresAreReportedToo) {
  ::Run().setupFlags = kQuiet;
  AssertEntry("x > 0", "unit.cpp", 42);
  AssertFailed("%s is %d", "value", 5);
  EXPECT_EQ(mBlocks, (Texts{kMessage, "File: unit.cpp, Line#: 42\nAssert( value is 5 );\n"}));
}

// ---- the answers, in a process of their own ----

constexpr char kChildSwitch[] = "VT_ASSERT_CHILD";

void AppendToFile(const char* text) {
  char path[MAX_PATH] = "";
  GetEnvironmentVariableA(kChildSwitch, path, MAX_PATH);
  WriteWholeFile(path, text);
}

// Runs in the child process only: fails once and goes on.
TEST(AssertBoxChild, FailsOnce) {
  if (GetEnvironmentVariableA(kChildSwitch, nullptr, 0) == 0)
    GTEST_SKIP() << "started by AssertBox tests only";
  HookTable hooks = {};
  hooks.logBlock = AppendToFile;
  SetHooks(hooks);
  AssertEntry("child", "child.cpp", 1);
}

// Answers the child's box and gives back its exit code.
DWORD ExitCodeAfter(int answer, const TempDir& folder) {
  SetEnvironmentVariableA(kChildSwitch, folder.Join("child.log").c_str());
  char formerTemp[MAX_PATH] = "";
  GetEnvironmentVariableA("TMP", formerTemp, MAX_PATH);
  SetEnvironmentVariableA("TMP", folder.Path().c_str());
  char path[MAX_PATH];
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  DWORD exitCode = 0xDEAD;
  {
    BoxDriver driver("Assertion Failure!", answer);
    exitCode = RunProcess(Quoted(path) + " --gtest_filter=AssertBoxChild.FailsOnce").exitCode;
    EXPECT_TRUE(driver.mShown);
  }
  SetEnvironmentVariableA("TMP", formerTemp);
  SetEnvironmentVariableA(kChildSwitch, nullptr);
  return exitCode;
}

TEST(AssertBox, YesGoesOn) {
  const TempDir folder;
  EXPECT_EQ(ExitCodeAfter(IDYES, folder), 0u);
}

TEST(AssertBox, NoEndsTheProcessWithExitCode9) {
  const TempDir folder;
  EXPECT_EQ(ExitCodeAfter(IDNO, folder), 9u);
  EXPECT_EQ(folder.Read("child.log"), "File: child.cpp, Line#: 1\nAssert( child );\n");
}

}  // namespace
