#include "script/verscopy.h"

#include <algorithm>

#include "script/tempnotes.h"
#include "script_fixture.h"
#include "support/import_double.h"
#include "support/process.h"
#include "versioned_file.h"

namespace {

// The install functions with prepared answers.
struct FakeApi {
  std::vector<DWORD> installResults;  // one for each call; the last one repeats
  std::vector<DWORD> installFlags;
  DWORD installError = 0;
  std::string tmpName;   // made in the destination folder when VIF_TEMPFILE is answered
  std::string strayTmp;  // made there without being named
  DWORD findResult = 0;
  std::string curDir;
  DWORD findFlags = 0;
  std::string findAppDir;
  std::string srcFile;
  std::string destFile;
  INT lzOpenResult = 3;
  INT expandedResult = TRUE;
  std::string expandedName;
  int closed = 0;
};
FakeApi gFake;

DWORD WINAPI FakeFind(DWORD flags, LPCSTR, LPCSTR, LPCSTR appDir, LPSTR curDir, PUINT curLen, LPSTR destDir,
                      PUINT destLen) {
  gFake.findFlags = flags;
  gFake.findAppDir = appDir;
  EXPECT_EQ(*curLen, 260u);
  EXPECT_EQ(*destLen, 260u);
  lstrcpynA(curDir, gFake.curDir.c_str(), 260);
  lstrcpynA(destDir, appDir, 260);
  return gFake.findResult;
}

DWORD WINAPI FakeInstall(DWORD flags, LPCSTR srcFile, LPCSTR destFile, LPCSTR, LPCSTR destDir, LPCSTR,
                         LPSTR tmpFile, PUINT tmpLen) {
  EXPECT_STREQ(tmpFile, "");
  EXPECT_EQ(*tmpLen, 260u);
  const size_t call = std::min(gFake.installFlags.size(), gFake.installResults.size() - 1);
  gFake.installFlags.push_back(flags);
  gFake.srcFile = srcFile;
  gFake.destFile = destFile;
  const DWORD result = gFake.installResults[call];
  if ((result & VIF_TEMPFILE) != 0) {
    WriteWholeFile(std::string(destDir) + "\\" + gFake.tmpName, "half");
    lstrcpynA(tmpFile, ("\\" + gFake.tmpName).c_str(), 260);
  }
  if (!gFake.strayTmp.empty()) WriteWholeFile(std::string(destDir) + "\\" + gFake.strayTmp, "half");
  SetLastError(gFake.installError);
  return result;
}

INT WINAPI FakeOpen(LPSTR, LPOFSTRUCT, WORD) { return gFake.lzOpenResult; }
INT WINAPI FakeExpanded(LPSTR, LPSTR expanded) {
  lstrcpynA(expanded, gFake.expandedName.c_str(), 260);
  return gFake.expandedResult;
}
void WINAPI FakeClose(INT) { ++gFake.closed; }

constexpr VersionApi kFake = {FakeFind, FakeInstall, FakeOpen, FakeExpanded, FakeClose};

class FakedCopy : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    gFake = FakeApi();
    gFake.installResults = {0};
    gFake.tmpName = "ver1A2B.tmp";
    SetVersionApi(&kFake);
    mSource = mDir.Write("dist\\a.dll", "new");
  }
  uint32_t Copy(bool force = false) { return VersionCopy(mSource.c_str(), Prog("a.dll").c_str(), force); }
  uint32_t CopyWith(DWORD installResult) {
    gFake.installFlags.clear();
    gFake.installResults = {installResult};
    return Copy();
  }
  std::string mSource;
};

TEST_F(FakedCopy, FlagsFollowForce) {
  EXPECT_EQ(Copy(false), 0u);
  EXPECT_EQ(Copy(true), 0u);
  EXPECT_EQ(gFake.installFlags, (std::vector<DWORD>{2, 3}));
  EXPECT_EQ(gFake.findFlags, 0u);
}

TEST_F(FakedCopy, EachResultBitBecomesItsStatus) {
  const struct {
    DWORD bit;
    uint32_t status;
  } rows[] = {
      {VIF_FILEINUSE, 0x1},        {VIF_OUTOFMEMORY, 0x2},      {VIF_OUTOFSPACE, 0x4},
      {VIF_SRCOLD, 0x8},           {VIF_DIFFLANG, 0x10},        {VIF_DIFFCODEPG, 0x20},
      {VIF_CANNOTREADDST, 0x40},   {VIF_ACCESSVIOLATION, 0x80}, {VIF_DIFFTYPE, 0x100},
      {VIF_CANNOTREADSRC, 0x200},  {VIF_SHARINGVIOLATION, 0x1}, {VIF_WRITEPROT, 0x10000},
      {VIF_CANNOTCREATE, 0x10000}, {VIF_CANNOTDELETE, 0x10000}, {VIF_CANNOTRENAME, 0x10000},
      {VIF_BUFFTOOSMALL, 0x10000},
  };
  for (const auto& row : rows) EXPECT_EQ(CopyWith(row.bit), row.status) << std::hex << row.bit;
}

TEST_F(FakedCopy, AllMappedBitsThatArePresentAreSet) {
  EXPECT_EQ(CopyWith(VIF_SRCOLD | VIF_DIFFLANG | VIF_DIFFTYPE | VIF_MISMATCH), 0x118u);
  EXPECT_EQ(CopyWith(VIF_OUTOFSPACE | VIF_CANNOTCREATE), 0x4u);
}

TEST_F(FakedCopy, InUseStandsAlone) { EXPECT_EQ(CopyWith(VIF_FILEINUSE | VIF_SRCOLD | VIF_MISMATCH), 0x1u); }

TEST_F(FakedCopy, AHeldSourceIsNotInUse) {
  EXPECT_EQ(CopyWith(VIF_CANNOTREADSRC | VIF_SHARINGVIOLATION), 0x200u);
}

TEST_F(FakedCopy, ARunningProgramIsInUseWhenItIsWritable) {
  EXPECT_EQ(CopyWith(VIF_ACCESSVIOLATION | VIF_CANNOTDELETE), 0x80u) << "nothing there";
  mDir.Write("prog\\a.dll", "old");
  EXPECT_EQ(CopyWith(VIF_ACCESSVIOLATION | VIF_CANNOTDELETE), 0x1u);
  EXPECT_EQ(CopyWith(VIF_ACCESSVIOLATION), 0x80u);
}

TEST_F(FakedCopy, AReadOnlyDestinationLosesTheAttributeFirst) {
  mDir.Write("prog\\a.dll", "old");
  SetFileAttributesA(Prog("a.dll").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(Copy(), 0u);
  EXPECT_EQ(GetFileAttributesA(Prog("a.dll").c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST_F(FakedCopy, AMismatchAloneIsInstalledByForce) {
  gFake.installResults = {VIF_MISMATCH, 0};
  EXPECT_EQ(Copy(), 0u);
  EXPECT_EQ(gFake.installFlags, (std::vector<DWORD>{2, 3}));
}

TEST_F(FakedCopy, AMismatchWithItsTemporaryFileIsInstalledByForce) {
  gFake.installResults = {VIF_MISMATCH | VIF_TEMPFILE, 0};
  EXPECT_EQ(Copy(), 0u);
  EXPECT_EQ(gFake.installFlags, (std::vector<DWORD>{2, 3}));
  EXPECT_TRUE(NamesIn(mDir.Join("prog")).empty());
}

TEST_F(FakedCopy, TheForcedRetrysResultCounts) {
  gFake.installResults = {VIF_MISMATCH, VIF_OUTOFSPACE};
  EXPECT_EQ(Copy(), 0x4u);
  gFake.installFlags.clear();
  gFake.installResults = {VIF_MISMATCH, VIF_FILEINUSE};
  EXPECT_EQ(Copy(), 0x1u);
}

TEST_F(FakedCopy, AMismatchWithAReasonIsNotRetried) {
  gFake.installResults = {VIF_MISMATCH | VIF_DIFFLANG, 0};
  EXPECT_EQ(Copy(), 0x10u);
  EXPECT_EQ(gFake.installFlags.size(), 1u);
}

TEST_F(FakedCopy, TheTemporaryFileIsDeleted) {
  EXPECT_EQ(CopyWith(VIF_TEMPFILE | VIF_MISMATCH | VIF_SRCOLD), 0x8u);
  EXPECT_TRUE(NamesIn(mDir.Join("prog")).empty());
}

TEST_F(FakedCopy, AnUnnamedTemporaryFileIsDeletedToo) {
  mDir.Write("prog\\verABCD.tmp", "of another program");
  gFake.strayTmp = "ver9F.tmp";
  EXPECT_EQ(CopyWith(VIF_OUTOFSPACE), 0x4u);
  EXPECT_EQ(NamesIn(mDir.Join("prog")), (std::vector<std::string>{"verABCD.tmp"}));
}

TEST_F(FakedCopy, FailuresAreLogged) {
  gFake.installError = 112;
  EXPECT_EQ(CopyWith(VIF_OUTOFSPACE), 0x4u);
  EXPECT_EQ(Log(), "VerInstallFile: GetLastError 112\n");
  gFake.installError = 5;
  EXPECT_EQ(CopyWith(VIF_CANNOTCREATE), 0x10000u);
  EXPECT_EQ(Log(), "VerInstallFile: GetLastError 5\nMyVerInstallFile: installCodes 2048\n");
  EXPECT_EQ(CopyWith(0), 0u);
  EXPECT_EQ(Log(), "");
}

TEST_F(FakedCopy, AHeldDestinationIsLoggedWithTheSystemsError) {
  gFake.installError = 32;
  EXPECT_EQ(CopyWith(VIF_SHARINGVIOLATION | VIF_CANNOTDELETE), 0x1u);
  EXPECT_EQ(Log(), "VerInstallFile: GetLastError 32\n");
  // What the install function itself calls "in use" needs no reason.
  EXPECT_EQ(CopyWith(VIF_FILEINUSE), 0x1u);
  EXPECT_EQ(Log(), "");
}

TEST_F(FakedCopy, ACopyInUseElsewhereDoesNotCount) {
  gFake.findResult = VFF_FILEINUSE;
  gFake.curDir = "C:\\elsewhere";
  EXPECT_EQ(Copy(), 0u);
  EXPECT_EQ(gFake.installFlags.size(), 1u);
}

TEST_F(FakedCopy, ACopyInUseInTheDestinationIsReturnedAtOnce) {
  gFake.findResult = VFF_FILEINUSE | VFF_CURNEDEST;
  gFake.curDir = mDir.Join("PROG");
  EXPECT_EQ(Copy(), 0x1u);
  EXPECT_TRUE(gFake.installFlags.empty());
}

TEST_F(FakedCopy, ATooSmallBufferIsReturnedAtOnce) {
  gFake.findResult = VFF_BUFFTOOSMALL;
  EXPECT_EQ(Copy(), 0x4000u);
  gFake.findResult = VFF_BUFFTOOSMALL | VFF_FILEINUSE;
  gFake.curDir = "C:\\elsewhere";
  EXPECT_EQ(Copy(), 0x4000u);
  gFake.curDir = mDir.Join("prog");
  EXPECT_EQ(Copy(), 0x1u);
  EXPECT_TRUE(gFake.installFlags.empty());
}

TEST_F(FakedCopy, ACurrentDirectoryElsewhereAloneIsNoFault) {
  gFake.findResult = VFF_CURNEDEST;
  EXPECT_EQ(Copy(), 0u);
}

TEST_F(FakedCopy, ASourceWithoutANameIsRefused) {
  EXPECT_EQ(VersionCopy(mDir.Join("dist\\").c_str(), Prog("a.dll").c_str(), false), 0x2000u);
  EXPECT_EQ(VersionCopy("", Prog("a.dll").c_str(), false), 0x2000u);
}

TEST_F(FakedCopy, ANullSourceAsserts) {
  AssertRecorder recorder;
  EXPECT_NE(VersionCopy(nullptr, Prog("a.dll").c_str(), false), 0u);
  EXPECT_EQ(recorder.Only(), "szSourceFile");
}

TEST_F(FakedCopy, WithoutADestinationTheFileIsShared) {
  char windows[MAX_PATH] = "";
  GetWindowsDirectoryA(windows, MAX_PATH);
  gFake.expandedName = mDir.Join("dist\\big.dll");
  Str dest;
  EXPECT_EQ(VersionCopy(mSource.c_str(), dest, false), 0u);
  EXPECT_EQ(gFake.findFlags, static_cast<DWORD>(VFFF_ISSHAREDFILE));
  EXPECT_EQ(gFake.findAppDir, windows);
  EXPECT_EQ(gFake.destFile, "big.dll");
  EXPECT_EQ(dest, (std::string(windows) + "\\big.dll").c_str());
  EXPECT_EQ(gFake.closed, 1);
}

TEST_F(FakedCopy, AFailureLeavesTheEmptyDestination) {
  gFake.expandedName = "big.dll";
  gFake.installResults = {VIF_OUTOFMEMORY};
  Str dest;
  EXPECT_EQ(VersionCopy(mSource.c_str(), dest, false), 0x2u);
  EXPECT_EQ(dest, "");
}

TEST_F(FakedCopy, AFolderAsDestinationKeepsItsFolder) {
  gFake.expandedName = "big.dll";
  Str dest(Prog("").c_str());
  EXPECT_EQ(VersionCopy(mSource.c_str(), dest, false), 0u);
  EXPECT_EQ(gFake.findFlags, 0u);
  EXPECT_EQ(gFake.findAppDir, mDir.Join("prog"));
  EXPECT_EQ(gFake.destFile, "big.dll");
  EXPECT_EQ(dest, Prog("").c_str());
}

TEST_F(FakedCopy, ACompressedSourceThatCannotBeOpened) {
  gFake.lzOpenResult = -1;
  EXPECT_EQ(VersionCopy(mSource.c_str(), "", false), 0x800u);
  EXPECT_EQ(gFake.closed, 0);
}

TEST_F(FakedCopy, AnExpandedNameThatIsUnknown) {
  gFake.expandedResult = -1;
  EXPECT_EQ(VersionCopy(mSource.c_str(), "", false), 0x1000u);
  EXPECT_EQ(gFake.closed, 1);
}

TEST_F(FakedCopy, AMissingFolderIsMade) {
  EXPECT_EQ(VersionCopy(mSource.c_str(), Prog("deep\\er\\a.dll").c_str(), false), 0u);
  EXPECT_TRUE(IsFolder(Prog("deep\\er")));
}

TEST_F(FakedCopy, AFolderThatCannotBeMadeIsAGeneralFailure) {
  mDir.Write("prog\\file", "");
  EXPECT_EQ(VersionCopy(mSource.c_str(), Prog("file\\a.dll").c_str(), false), 0x10000u);
  EXPECT_EQ(VersionCopy(mSource.c_str(), "Q:\\d\\a.dll", false), 0x10000u);
  EXPECT_TRUE(gFake.installFlags.empty());
  EXPECT_TRUE(Holds(Log(), "##ERROR: VersionCopy: the folder cannot be made: "));
}

TEST_F(FakedCopy, PathsTooLongAreRefused) {
  const std::string longName(250, 'n');
  EXPECT_EQ(VersionCopy(("C:\\dddddddddddd\\" + longName).c_str(), Prog("a.dll").c_str(), false), 0x10000u);
  EXPECT_EQ(VersionCopy(mSource.c_str(), Prog(longName).c_str(), false), 0x10000u);
  EXPECT_TRUE(gFake.installFlags.empty());
}

TEST_F(FakedCopy, Windows9xInstallsUnderATemporaryShortName) {
  ::Run().platformFlags = kPlatformWin9x;
  const std::string source = mDir.Write("dist\\a long source name.dll", "new");
  EXPECT_EQ(VersionCopy(source.c_str(), Prog("a long name.dll").c_str(), false), 0u);
  char shortName[MAX_PATH] = "";
  GetShortPathNameA(source.c_str(), shortName, MAX_PATH);
  EXPECT_EQ(gFake.srcFile, std::string(shortName).substr(std::string(shortName).rfind('\\') + 1));
  EXPECT_EQ(gFake.destFile.substr(0, 3), "qli");
  EXPECT_TRUE(NamesIn(mDir.Join("prog")).empty()) << "the double made no file";
}

TEST_F(FakedCopy, Windows9xUsesTheShortNameOfAnExistingTarget) {
  ::Run().platformFlags = kPlatformWin9x;
  mDir.Write("prog\\a long name.dll", "old");
  EXPECT_EQ(VersionCopy(mSource.c_str(), Prog("a long name.dll").c_str(), false), 0u);
  char shortName[MAX_PATH] = "";
  GetShortPathNameA(Prog("a long name.dll").c_str(), shortName, MAX_PATH);
  EXPECT_EQ(gFake.destFile, std::string(shortName).substr(std::string(shortName).rfind('\\') + 1));
}

DWORD WINAPI LongShortName(LPCSTR, LPSTR, DWORD) { return 261; }

TEST_F(FakedCopy, Windows9xShortNamesThatDoNotFitAssert) {
  ::Run().platformFlags = kPlatformWin9x;
  mDir.Write("prog\\a.dll", "old");
  const ImportDouble naming("GetShortPathNameA", reinterpret_cast<void*>(&LongShortName));
  AssertRecorder recorder;
  EXPECT_EQ(Copy(), 0u);
  EXPECT_EQ(recorder.Texts(),
            (std::vector<std::string>{"len <= Dim(shortSourceName)", "len <= Dim(shortTargetName)"}));
  EXPECT_EQ(gFake.srcFile, "a.dll");
  EXPECT_EQ(gFake.destFile, "a.dll");
}

BOOL WINAPI RefusedMove(LPCSTR, LPCSTR) { return FALSE; }

// The real install functions.
class RealCopy : public ScriptTest {
 protected:
  uint32_t Copy(const std::string& name, bool force = false) {
    return VersionCopy(Dist(name).c_str(), Prog(name).c_str(), force);
  }
  void MakeSource(const std::string& name, const FileVersion& version, const std::string& tail = "") {
    MakeVersionedFile(Dist(name), version, tail);
  }
  void MakeTarget(const std::string& name, const FileVersion& version, const std::string& tail = "") {
    MakeVersionedFile(Prog(name), version, tail);
  }
  void ExpectNoTemporaryFiles() {
    EXPECT_TRUE(NamesIn(mDir.Join("prog"), "*.tmp").empty());
    EXPECT_TRUE(NamesIn(mDir.Join("temp")).empty());
  }
};

TEST_F(RealCopy, AFreshFileIsCopied) {
  mDir.Write("dist\\a.txt", "text");
  EXPECT_EQ(Copy("a.txt"), 0u);
  EXPECT_EQ(mDir.Read("prog\\a.txt"), "text");
  ExpectNoTemporaryFiles();
}

TEST_F(RealCopy, ANewerVersionGoesOverAnOlderOne) {
  MakeSource("a.dll", {2, 0}, "source");
  MakeTarget("a.dll", {1, 9}, "target");
  EXPECT_EQ(Copy("a.dll"), 0u);
  EXPECT_EQ(mDir.Read("prog\\a.dll"), mDir.Read("dist\\a.dll"));
}

TEST_F(RealCopy, TheSameVersionIsReplaced) {
  MakeSource("a.dll", {2, 0}, "source");
  MakeTarget("a.dll", {2, 0}, "target");
  EXPECT_EQ(Copy("a.dll"), 0u);
  EXPECT_EQ(mDir.Read("prog\\a.dll"), mDir.Read("dist\\a.dll"));
}

TEST_F(RealCopy, AnOlderVersionLeavesTheFileAsItIs) {
  MakeSource("a.dll", {1, 0}, "source");
  MakeTarget("a.dll", {2, 0}, "target");
  const std::string before = mDir.Read("prog\\a.dll");
  EXPECT_EQ(Copy("a.dll"), 0x8u);
  EXPECT_EQ(mDir.Read("prog\\a.dll"), before);
  ExpectNoTemporaryFiles();
}

TEST_F(RealCopy, ForceInstallsAnOlderVersion) {
  MakeSource("a.dll", {1, 0}, "source");
  MakeTarget("a.dll", {2, 0}, "target");
  EXPECT_EQ(Copy("a.dll", true), 0u);
  EXPECT_EQ(mDir.Read("prog\\a.dll"), mDir.Read("dist\\a.dll"));
  ExpectNoTemporaryFiles();
}

TEST_F(RealCopy, AnotherFileTypeIsAConflict) {
  MakeSource("a.dll", {2, 0, VFT_APP});
  MakeTarget("a.dll", {1, 0, VFT_DLL});
  EXPECT_EQ(Copy("a.dll"), 0x100u);
  ExpectNoTemporaryFiles();
}

TEST_F(RealCopy, AReadOnlyTargetIsReplaced) {
  mDir.Write("dist\\a.txt", "new");
  mDir.Write("prog\\a.txt", "old");
  SetFileAttributesA(Prog("a.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(Copy("a.txt"), 0u);
  EXPECT_EQ(mDir.Read("prog\\a.txt"), "new");
}

TEST_F(RealCopy, AMissingSourceIsUnreadable) {
  EXPECT_EQ(Copy("gone.txt"), 0x200u);
  ExpectNoTemporaryFiles();
}

TEST_F(RealCopy, ASourceHeldByAnotherIsUnreadable) {
  const FileHandle held(CreateFileA(mDir.Write("dist\\a.txt", "text").c_str(), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(static_cast<bool>(held));
  EXPECT_EQ(Copy("a.txt"), 0x200u);
}

TEST_F(RealCopy, ATargetHeldByAnotherIsInUse) {
  mDir.Write("dist\\a.txt", "new");
  const FileHandle held(CreateFileA(mDir.Write("prog\\a.txt", "old").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(static_cast<bool>(held));
  EXPECT_EQ(Copy("a.txt"), 0x1u);
  EXPECT_EQ(mDir.Read("prog\\a.txt"), "old");
  ExpectNoTemporaryFiles();
}

TEST_F(RealCopy, ARunningProgramIsInUse) {
  WriteWholeFile(Prog("run.exe"), ReadWholeFile(HelperPath("exit_with.exe")));
  mDir.Write("dist\\run.exe", "new");
  ChildProcess running(Quoted(Prog("run.exe")) + " hang");
  ASSERT_TRUE(running.Started());
  EXPECT_EQ(Copy("run.exe"), 0x1u);
  ExpectNoTemporaryFiles();
  running.Kill();
}

TEST_F(RealCopy, ACompressedSourceIsExpandedUnderTheGivenName) {
  mDir.Write("dist\\file.dl_", MakeLzFile("expanded text", 'l'));
  EXPECT_EQ(VersionCopy(Dist("file.dl_").c_str(), Prog("other.dll").c_str(), false), 0u);
  EXPECT_EQ(mDir.Read("prog\\other.dll"), "expanded text");
}

TEST_F(RealCopy, ACompressedSourceWithoutADestinationNameGetsItsExpandedName) {
  mDir.Write("dist\\FILE.DL_", MakeLzFile("expanded text", 'L'));
  Str dest(Prog("").c_str());
  EXPECT_EQ(VersionCopy(Dist("FILE.DL_").c_str(), dest, false), 0u);
  EXPECT_EQ(mDir.Read("prog\\FILE.DLL"), "expanded text");
}

TEST_F(RealCopy, ACompressedSourceThatIsCutLeavesTheFileAsItIs) {
  const std::string whole = MakeLzFile("expanded text", 'l');
  mDir.Write("dist\\file.dl_", whole.substr(0, whole.size() - 1));
  mDir.Write("prog\\file.dll", "former");
  EXPECT_EQ(VersionCopy(Dist("file.dl_").c_str(), Prog("file.dll").c_str(), true), 0x200u);
  EXPECT_EQ(mDir.Read("prog\\file.dll"), "former");
  EXPECT_TRUE(Holds(Log(), "##ERROR: VersionCopy: the compressed file ends too early: ")) << Log();
}

TEST_F(RealCopy, AnEmptyDestinationReceivesTheFullPath) {
  mDir.Write("dist\\VTSHARED.DL_", MakeLzFile("expanded text", 'L'));
  Str dest;
  ASSERT_EQ(VersionCopy(Dist("VTSHARED.DL_").c_str(), dest, false), 0u);
  const std::string path = dest.Chars();
  EXPECT_TRUE(PathExists(path)) << path;
  EXPECT_EQ(path.substr(path.rfind('\\') + 1), "VTSHARED.DLL");
  EXPECT_EQ(ReadWholeFile(path), "expanded text");
  DeleteTree(path);
}

TEST_F(RealCopy, Windows9xMovesTheTemporaryFileToItsLongName) {
  ::Run().platformFlags = kPlatformWin9x;
  mDir.Write("dist\\a long source name.txt", "new");
  EXPECT_EQ(
      VersionCopy(Dist("a long source name.txt").c_str(), Prog("a long target name.txt").c_str(), false), 0u);
  EXPECT_EQ(NamesIn(mDir.Join("prog")), (std::vector<std::string>{"a long target name.txt"}));
  EXPECT_EQ(mDir.Read("prog\\a long target name.txt"), "new");
  mDir.Write("dist\\a long source name.txt", "newer");
  EXPECT_EQ(
      VersionCopy(Dist("a long source name.txt").c_str(), Prog("a long target name.txt").c_str(), false), 0u);
  EXPECT_EQ(NamesIn(mDir.Join("prog")).size(), 1u);
}

TEST_F(RealCopy, Windows9xAssertsWhenTheTemporaryFileCannotBeMoved) {
  ::Run().platformFlags = kPlatformWin9x;
  mDir.Write("dist\\a.txt", "new");
  const ImportDouble moving("MoveFileA", reinterpret_cast<void*>(&RefusedMove));
  AssertRecorder recorder;
  EXPECT_EQ(VersionCopy(Dist("a.txt").c_str(), Prog("a long target name.txt").c_str(), false), 0u);
  EXPECT_EQ(recorder.Only(), "MoveFileA(sourceRename,targetRename)");
}

TEST_F(RealCopy, Windows9xDeletesTheTemporaryFileAfterAFailure) {
  ::Run().platformFlags = kPlatformWin9x;
  EXPECT_NE(VersionCopy(Dist("gone.txt").c_str(), Prog("a long target name.txt").c_str(), false), 0u);
  EXPECT_TRUE(NamesIn(mDir.Join("prog")).empty());
}

}  // namespace
