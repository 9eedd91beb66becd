#include "shell/delexe.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "messages/varlist.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/process.h"
#include "support/temp_dir.h"
#include "support/wait.h"

namespace {

constexpr char kWinDirVariable[] = "VT_DELEXE_WINDIR";

// The tests start copies of this program with that variable set: such a copy deletes itself instead of
// running tests.
bool RunAsCopy() {
  char winDir[MAX_PATH] = "";
  if (GetEnvironmentVariableA(kWinDirVariable, winDir, sizeof winDir) == 0) return false;
  AppSetVariable("WinDir", winDir);
  DeleteProgramOnExit();
  ExitProcess(0);
}
[[maybe_unused]] const bool gIsCopy = RunAsCopy();

class DeleteProgram : public testing::Test {
 protected:
  DeleteProgram() : mWindows(mRoot.MakeFolder("windows folder")) {
    SetEnvironmentVariableA(kWinDirVariable, mWindows.c_str());
  }
  ~DeleteProgram() override { SetEnvironmentVariableA(kWinDirVariable, nullptr); }

  // A copy of this program in a folder of that name.
  std::string MakeProgram(const std::string& folder, const std::string& name = "program.exe") const {
    char self[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    const std::string path = mRoot.MakeFolder(folder) + "\\" + name;
    EXPECT_TRUE(CopyFileA(self, path.c_str(), TRUE));
    return path;
  }
  static void RunProgram(const std::string& path) {
    const ProcessResult result = RunProcess(Quoted(path));
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

TEST_F(DeleteProgram, OtherFilesStay) {
  const std::string program = MakeProgram("plain");
  WriteWholeFile(mRoot.Join("plain\\setup.inf"), "script");
  RunProgram(program);
  EXPECT_TRUE(AllGone(program));
  EXPECT_TRUE(PathExists(mRoot.Join("plain\\setup.inf")));
}

}  // namespace
