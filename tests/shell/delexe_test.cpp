#include "shell/delexe.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <string>

#include "base/handle.h"
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
constexpr char kNotesVariable[] = "VT_DELEXE_NOTES";

std::string Variable(const char* name) {
  char value[MAX_PATH] = "";
  GetEnvironmentVariableA(name, value, sizeof value);
  return value;
}

// What the program calls and asserts, one in a line.
std::string gNotes;
void Note(const char* format, ...) __attribute__((format(printf, 1, 2)));
void Note(const char* format, ...) {
  char text[1024];
  va_list args;
  va_start(args, format);
  vsnprintf(text, sizeof text, format, args);
  va_end(args);
  gNotes += text;
  gNotes += '\n';
}

void NoteAsserts() {
  HookTable hooks = Hooks();
  hooks.assertFailed = [](const char* text, const char*, int) { Note("%s", text); };
  SetHooks(hooks);
}

decltype(&CreateProcessA) gCreateProcess = nullptr;
bool gStarted = false;
BOOL WINAPI NotedStart(LPCSTR program, LPSTR commandLine, LPSECURITY_ATTRIBUTES process,
                       LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                       LPCSTR folder, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION info) {
  gStarted = true;
  Note("CreateProcess %s, flags 0x%lx, start-up flags %lu, show %u", commandLine, flags, startup->dwFlags,
       startup->wShowWindow);
  return gCreateProcess(program, commandLine, process, thread, inherit, flags, environment, folder, startup,
                        info);
}

BOOL WINAPI RefusedThreadPriority(HANDLE, int priority) {
  Note("SetThreadPriority %d", priority);
  return FALSE;
}

BOOL WINAPI RefusedClass(HANDLE, DWORD priorityClass) {
  Note("SetPriorityClass 0x%lx", priorityClass);
  return FALSE;
}

decltype(&ResumeThread) gResumeThread = nullptr;
DWORD WINAPI NotedResume(HANDLE thread) {
  Note("ResumeThread");
  return gResumeThread(thread);
}

decltype(&CloseHandle) gCloseHandle = nullptr;
// Closes and yet reports a failure.
BOOL WINAPI RefusedClose(HANDLE handle) {
  if (gStarted) Note("CloseHandle");
  gCloseHandle(handle);
  return FALSE;
}

void DeleteWithRefusals() {
  const ImportDouble starting("CreateProcessA", reinterpret_cast<void*>(&NotedStart));
  const ImportDouble priority("SetThreadPriority", reinterpret_cast<void*>(&RefusedThreadPriority));
  const ImportDouble priorityClass("SetPriorityClass", reinterpret_cast<void*>(&RefusedClass));
  const ImportDouble resuming("ResumeThread", reinterpret_cast<void*>(&NotedResume));
  const ImportDouble closing("CloseHandle", reinterpret_cast<void*>(&RefusedClose));
  gCreateProcess = reinterpret_cast<decltype(&CreateProcessA)>(starting.Original());
  gResumeThread = reinterpret_cast<decltype(&ResumeThread)>(resuming.Original());
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
  const std::string file = Variable(kNotesVariable);
  if (!file.empty()) WriteWholeFile(file, gNotes);
  ExitProcess(0);
}
[[maybe_unused]] const bool gIsCopy = RunAsCopy();

class DeleteProgram : public testing::Test {
 protected:
  DeleteProgram() : mWindows(mRoot.MakeFolder("windows folder")) {
    SetEnvironmentVariableA(kWinDirVariable, mWindows.c_str());
  }
  ~DeleteProgram() override {
    for (const char* name : {kWinDirVariable, kRefusalsVariable, kNotesVariable})
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

TEST_F(DeleteProgram, BatchRepeatsUntilTheProgramIsGone) {
  const std::string program = MakeProgram("with some blanks");
  {
    // As long as somebody holds the program, the batch cannot delete it.
    const FileHandle held(
        CreateFileA(program.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    RunProgram(program);
    EXPECT_EQ(ReadWholeFile(Batch()), ":Repeat\r\ndel \"" + program + "\"\r\nif exist \"" + program +
                                          "\" goto Repeat\r\ndel \"" + Batch() + "\"\r\n");
    EXPECT_TRUE(PathExists(program));
  }
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
  SetEnvironmentVariableA(kNotesVariable, mRoot.Join("notes").c_str());
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
  EXPECT_EQ(mRoot.Read("notes"),
            "CreateProcess \"" + Batch() + "\", flags 0x44, start-up flags 1, show 0\n" +
                "SetThreadPriority -15\nSetThreadPriority(pi.hThread,(-15))\n"
                "SetThreadPriority 15\nSetThreadPriority(GetCurrentThread(),15)\n"
                "SetPriorityClass 0x80\nSetPriorityClass(GetCurrentProcess(),0x00000080)\n"
                "CloseHandle\nCloseHandle(pi.hProcess)\n"
                "ResumeThread\n"
                "CloseHandle\nCloseHandle(pi.hThread)\n");
}

TEST_F(DeleteProgram, MissingWindowsFolderAsserts) {
  const std::string program = MakeProgram("plain");
  SetEnvironmentVariableA(kWinDirVariable, "-");
  SetEnvironmentVariableA(kNotesVariable, mRoot.Join("notes").c_str());
  RunProgram(program, mWindows);
  EXPECT_EQ(mRoot.Read("notes"), "AppGetVariable(sWinDir,winDir)\n");
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
