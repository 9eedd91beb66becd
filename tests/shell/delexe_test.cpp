#include "shell/delexe.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/hooks.h"
#include "messages/varlist.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/process.h"
#include "support/temp_dir.h"
#include "support/wait.h"

namespace {

constexpr char kWinDirVariable[] = "VT_DELEXE_WINDIR";
constexpr char kRefusalsVariable[] = "VT_DELEXE_REFUSALS";
constexpr char kAssertsVariable[] = "VT_DELEXE_ASSERTS";

std::string Variable(const char* name) {
  char value[MAX_PATH] = "";
  GetEnvironmentVariableA(name, value, sizeof value);
  return value;
}

BOOL WINAPI RefusedThreadPriority(HANDLE, int) { return FALSE; }
BOOL WINAPI RefusedClass(HANDLE, DWORD) { return FALSE; }
decltype(&CloseHandle) gCloseHandle = nullptr;
// Closes and yet reports a failure.
BOOL WINAPI RefusedClose(HANDLE handle) {
  gCloseHandle(handle);
  return FALSE;
}

// Writes the assertions into a file, one in a line.
std::string gAsserts;
void NoteAssert(const char* text, const char*, int) {
  gAsserts += text;
  gAsserts += '\n';
}

void NoteAsserts() {
  HookTable hooks = Hooks();
  hooks.assertFailed = NoteAssert;
  SetHooks(hooks);
}

void DeleteWithRefusals() {
  const ImportDouble priority("SetThreadPriority", reinterpret_cast<void*>(&RefusedThreadPriority));
  const ImportDouble priorityClass("SetPriorityClass", reinterpret_cast<void*>(&RefusedClass));
  const ImportDouble closing("CloseHandle", reinterpret_cast<void*>(&RefusedClose));
  gCloseHandle = reinterpret_cast<decltype(&CloseHandle)>(closing.Original());
  DeleteProgramOnExit();
}

// The tests start copies of this program with that variable set: such a copy deletes itself instead of
// running tests.
bool RunAsCopy() {
  const std::string winDir = Variable(kWinDirVariable);
  if (winDir.empty()) return false;
  if (winDir != "-") AppSetVariable("WinDir", winDir.c_str());
  NoteAsserts();
  if (Variable(kRefusalsVariable).empty())
    DeleteProgramOnExit();
  else
    DeleteWithRefusals();
  const std::string file = Variable(kAssertsVariable);
  if (!file.empty()) WriteWholeFile(file, gAsserts);
  ExitProcess(0);
}
[[maybe_unused]] const bool gIsCopy = RunAsCopy();

class DeleteProgram : public testing::Test {
 protected:
  DeleteProgram() : mWindows(mRoot.MakeFolder("windows folder")) {
    SetEnvironmentVariableA(kWinDirVariable, mWindows.c_str());
  }
  ~DeleteProgram() override {
    for (const char* name : {kWinDirVariable, kRefusalsVariable, kAssertsVariable})
      SetEnvironmentVariableA(name, nullptr);
  }

  // A copy of this program in a folder of that name.
  std::string MakeProgram(const std::string& folder, const std::string& name = "program.exe") const {
    char self[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    const std::string path = mRoot.MakeFolder(folder) + "\\" + name;
    EXPECT_TRUE(CopyFileA(self, path.c_str(), TRUE));
    return path;
  }
  static void RunProgram(const std::string& path, const std::string& folder = "") {
    ProcessOptions options;
    options.folder = folder;
    const ProcessResult result = RunProcess(Quoted(path), options);
    EXPECT_TRUE(result.started);
    EXPECT_EQ(result.exitCode, 0u) << result.output;
  }
  std::string Batch() const { return mWindows + "\\QLDELSU.BAT"; }
  bool AllGone(const std::string& program) const {
    return WaitUntil([&] { return !PathExists(program) && !PathExists(Batch()); }, 15000);
  }

  TempDir mRoot;
  std::string mWindows;
};

TEST_F(DeleteProgram, ProgramAndBatchDisappear) {
  const std::string program = MakeProgram("plain");
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
}

TEST_F(DeleteProgram, PathWithBlanks) {
  const std::string program = MakeProgram("with some blanks", "a program.exe");
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
}

TEST_F(DeleteProgram, PathWithPerCentSigns) {
  const std::string program = MakeProgram("100% of %PATH%");
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
}

TEST_F(DeleteProgram, PathWithAccents) {
  const std::string program = MakeProgram("\xe9t\xe9 \xe0 No\xebl");
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
}

// The console's code page lacks this letter, so the batch must name the file in another way.
TEST_F(DeleteProgram, PathWithALetterThatTheConsoleLacks) {
  const std::string program = MakeProgram("c\x9cur");
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
}

TEST_F(DeleteProgram, ReadOnlyAndHiddenProgram) {
  const std::string program = MakeProgram("plain");
  SetFileAttributesA(program.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
}

TEST_F(DeleteProgram, OldBatchIsReplaced) {
  const std::string program = MakeProgram("plain");
  WriteWholeFile(Batch(), std::string(5000, 'x'));
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
}

TEST_F(DeleteProgram, BatchThatCannotBeWrittenLeavesTheProgram) {
  const std::string program = MakeProgram("plain");
  CreateDirectoryA(Batch().c_str(), nullptr);
  RunProgram(program);
  EXPECT_TRUE(PathExists(program));
  EXPECT_TRUE(IsFolder(Batch()));
}

TEST_F(DeleteProgram, ProgramThatStaysKeepsItsAttributes) {
  const std::string program = MakeProgram("plain");
  CreateDirectoryA(Batch().c_str(), nullptr);
  SetFileAttributesA(program.c_str(), FILE_ATTRIBUTE_READONLY);
  RunProgram(program);
  EXPECT_TRUE(GetFileAttributesA(program.c_str()) & FILE_ATTRIBUTE_READONLY);
}

TEST_F(DeleteProgram, EachRefusedCallAssertsAndTheProgramGoesAllTheSame) {
  const std::string program = MakeProgram("plain");
  SetEnvironmentVariableA(kRefusalsVariable, "1");
  SetEnvironmentVariableA(kAssertsVariable, mRoot.Join("asserts").c_str());
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
  EXPECT_EQ(mRoot.Read("asserts"),
            "SetThreadPriority(pi.hThread,(-15))\n"
            "SetThreadPriority(GetCurrentThread(),15)\n"
            "SetPriorityClass(GetCurrentProcess(),0x00000080)\n"
            "CloseHandle(pi.hProcess)\n"
            "CloseHandle(pi.hThread)\n");
}

TEST_F(DeleteProgram, MissingWindowsFolderAsserts) {
  const std::string program = MakeProgram("plain");
  SetEnvironmentVariableA(kWinDirVariable, "-");
  SetEnvironmentVariableA(kAssertsVariable, mRoot.Join("asserts").c_str());
  RunProgram(program, mWindows);
  EXPECT_EQ(mRoot.Read("asserts"), "AppGetVariable(sWinDir,winDir)\n");
  // The batch then lies in the current folder.
  EXPECT_TRUE(AllGone(program));
}

TEST_F(DeleteProgram, OtherFilesStay) {
  const std::string program = MakeProgram("plain");
  WriteWholeFile(mRoot.Join("plain\\setup.inf"), "script");
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
  EXPECT_TRUE(PathExists(mRoot.Join("plain\\setup.inf")));
}

}  // namespace
