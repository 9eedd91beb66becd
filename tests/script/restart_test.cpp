#include "script/restart.h"

#include "script_fixture.h"

namespace {

DWORD gFlags = 0;
int gMoves = 0;

BOOL WINAPI Refuse(LPCSTR, LPCSTR, DWORD flags) {
  gFlags = flags;
  ++gMoves;
  return FALSE;
}
BOOL WINAPI Accept(LPCSTR, LPCSTR, DWORD flags) {
  gFlags = flags;
  ++gMoves;
  return TRUE;
}

class Restart : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    gFlags = 0;
    gMoves = 0;
    AppSetVariable("WinDir", mDir.MakeFolder("win").c_str());
    mSource = mDir.Write("prog\\~A.DLL", "new");
    mTarget = mDir.Write("prog\\A.DLL", "old");
  }
  std::string List() const { return mDir.Has("win\\WinInit.Ini") ? mDir.Read("win\\WinInit.Ini") : "(none)"; }
  static std::string Short(const std::string& path) {
    char buffer[MAX_PATH] = "";
    GetShortPathNameA(path.c_str(), buffer, MAX_PATH);
    return buffer;
  }
  std::string mSource;
  std::string mTarget;
};

TEST_F(Restart, TheSystemReplacesAnExistingFile) {
  SetMoveFileEx(Accept);
  EXPECT_TRUE(ReplaceFileOnReboot(mSource.c_str(), mTarget.c_str()));
  EXPECT_EQ(gFlags, static_cast<DWORD>(MOVEFILE_DELAY_UNTIL_REBOOT | MOVEFILE_REPLACE_EXISTING));
  EXPECT_EQ(List(), "(none)");
}

TEST_F(Restart, TheNtFamilyHasNoOtherMeans) {
  SetMoveFileEx(Refuse);
  ::Run().platformFlags = kPlatformNT;
  EXPECT_FALSE(ReplaceFileOnReboot(mSource.c_str(), mTarget.c_str()));
  EXPECT_EQ(gMoves, 1);
  EXPECT_EQ(List(), "(none)");
}

TEST_F(Restart, Windows9xNotesTheShortNames) {
  SetMoveFileEx(Refuse);
  ::Run().platformFlags = kPlatformWin9x;
  EXPECT_TRUE(ReplaceFileOnReboot(mSource.c_str(), mTarget.c_str()));
  EXPECT_EQ(List(), "[Rename]\r\n" + Short(mTarget) + "=" + Short(mSource) + "\r\n");
}

TEST_F(Restart, Windows9xAddsToAnExistingList) {
  mDir.Write("win\\WinInit.Ini", "[Rename]\r\nX=Y\r\n");
  EXPECT_TRUE(ReplaceThroughWinInit(mSource.c_str(), mTarget.c_str()));
  EXPECT_EQ(List(), "[Rename]\r\n" + Short(mTarget) + "=" + Short(mSource) + "\r\nX=Y\r\n");
}

TEST_F(Restart, Windows9xCannotReplaceALongName) {
  const std::string target = mDir.Write("prog\\A long name.dll", "old");
  EXPECT_FALSE(ReplaceThroughWinInit(mSource.c_str(), target.c_str()));
  EXPECT_EQ(List(), "(none)");
}

TEST_F(Restart, AMissingDestinationNameIsNul) {
  EXPECT_TRUE(ReplaceThroughWinInit(mSource.c_str(), ""));
  EXPECT_EQ(List(), "[Rename]\r\nNUL=" + Short(mSource) + "\r\n");
}

TEST_F(Restart, ADestinationThatIsGoneKeepsItsName) {
  const std::string target = Prog("B.DLL");
  EXPECT_TRUE(ReplaceThroughWinInit(mSource.c_str(), target.c_str()));
  EXPECT_EQ(List(), "[Rename]\r\n" + target + "=" + Short(mSource) + "\r\n");
}

TEST_F(Restart, AMissingSourceFails) {
  EXPECT_FALSE(ReplaceThroughWinInit(Prog("~GONE.DLL").c_str(), mTarget.c_str()));
  EXPECT_EQ(List(), "(none)");
}

TEST_F(Restart, AListThatCannotBeWrittenFails) {
  mDir.Write("win\\WinInit.Ini", "[Rename]\r\n");
  const FileHandle held(CreateFileA(mDir.Join("win\\WinInit.Ini").c_str(), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
  EXPECT_FALSE(ReplaceThroughWinInit(mSource.c_str(), mTarget.c_str()));
}

}  // namespace
