#include "script_fixture.h"

#include "support/registry_guard.h"

namespace {

using Names = std::vector<std::string>;

int gInstalls = 0;
DWORD gInstallResult = 0;
bool gAbortAtFirst = false;

DWORD WINAPI FakeFind(DWORD, LPCSTR, LPCSTR, LPCSTR appDir, LPSTR, PUINT, LPSTR destDir, PUINT) {
  lstrcpynA(destDir, appDir, 260);
  return 0;
}
DWORD WINAPI FakeInstall(DWORD, LPCSTR, LPCSTR destFile, LPCSTR, LPCSTR destDir, LPCSTR, LPSTR, PUINT) {
  ++gInstalls;
  if (gAbortAtFirst) Run().abort = true;
  if (gInstallResult == 0) WriteWholeFile(std::string(destDir) + "\\" + destFile, "installed");
  return gInstallResult;
}
constexpr VersionApi kFake = {FakeFind, FakeInstall, nullptr, nullptr, nullptr};

class Disks : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    gInstalls = 0;
    gInstallResult = 0;
    gAbortAtFirst = false;
    SetVersionApi(&kFake);
    BeSilent();
  }
};

TEST_F(Disks, AnEmptyListIsCopied) {
  EXPECT_TRUE(CopyAll());
  EXPECT_EQ(Log(), "");
}

TEST_F(Disks, FilesAreCopiedInListOrder) {
  ListFile("b.txt", "1");
  ListFile("a.txt", "2");
  EXPECT_TRUE(CopyAll());
  const std::string log = Log();
  EXPECT_LT(PlaceOf(log, "Installation : " + Prog("b.txt")), PlaceOf(log, "Installation : " + Prog("a.txt")));
  EXPECT_EQ(gInstalls, 2);
}

TEST_F(Disks, DisksAreCopiedInAscendingOrderAndAskedForOnce) {
  ListFile("c1.txt", "1", 3);
  ListFile("a1.txt", "1", 1);
  ListFile("c2.txt", "1", 3);
  ListFile("a2.txt", "1", 1);
  EXPECT_TRUE(CopyAll());
  const std::string log = Log();
  const std::string prompt =
      "Ins\xe9rez le disque 3 dans le lecteur C: puis cliquez sur OK pour continuer.: [OK]\n";
  EXPECT_LT(PlaceOf(log, "\\a1.txt"), PlaceOf(log, "\\a2.txt"));
  EXPECT_LT(PlaceOf(log, "\\a2.txt"), PlaceOf(log, prompt));
  EXPECT_LT(PlaceOf(log, prompt), PlaceOf(log, "\\c1.txt"));
  EXPECT_LT(PlaceOf(log, "\\c1.txt"), PlaceOf(log, "\\c2.txt"));
  EXPECT_EQ(log.find(prompt, log.find(prompt) + 1), std::string::npos);
  EXPECT_FALSE(Holds(log, "disque 2")) << "nothing lies on disk 2";
  EXPECT_FALSE(Holds(log, "disque 1 "));
}

TEST_F(Disks, CancelAtADiskPromptEndsTheLoop) {
  ::Run() = RunState();
  ListFile("a.txt", "1", 1);
  ListFile("b.txt", "1", 2);
  {
    Answerer cancel("Setup", [](HWND box) { Press(box, IDCANCEL); });
    EXPECT_FALSE(CopyAll());
  }
  EXPECT_EQ(NamesIn(mDir.Join("prog")), (Names{"a.txt"}));
}

TEST_F(Disks, RecordsOfDiskZeroAreNotCopied) {
  ListFile("a.txt", "1", 0);
  ListFile("b.txt", "1", -4);
  EXPECT_TRUE(CopyAll());
  EXPECT_EQ(gInstalls, 0);
}

TEST_F(Disks, AnEnormousDiskNumberEndsQuickly) {
  ListFile("a.txt", "1", 0x7FFFFFFF);
  EXPECT_TRUE(CopyAll());
  EXPECT_EQ(gInstalls, 1);
}

TEST_F(Disks, TheAbortFlagStopsBeforeTheNextFile) {
  ListFile("a.txt", "1");
  ::Run().abort = true;
  EXPECT_FALSE(CopyAll());
  EXPECT_EQ(gInstalls, 0);
}

TEST_F(Disks, TheAbortFlagSetDuringAFileStopsBehindIt) {
  ListFile("a.txt", "1");
  ListFile("b.txt", "1");
  gAbortAtFirst = true;
  EXPECT_FALSE(CopyAll());
  EXPECT_EQ(gInstalls, 1);
}

TEST_F(Disks, AFailedFileEndsTheLoop) {
  ListFile("a.txt", "1");
  ListFile("b.txt", "1");
  gInstallResult = VIF_OUTOFMEMORY;
  EXPECT_FALSE(CopyAll());
  EXPECT_EQ(gInstalls, 1);
}

TEST_F(Disks, AHiddenFileGetsThatAttributeAlone) {
  ListFile("a.txt", "1", 1, true);
  ListFile("b.txt", "1", 1, false);
  EXPECT_TRUE(CopyAll());
  // The bench reports every file as changed since the last backup.
  EXPECT_EQ(GetFileAttributesA(Prog("a.txt").c_str()) & ~FILE_ATTRIBUTE_ARCHIVE,
            static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN));
  EXPECT_EQ(GetFileAttributesA(Prog("b.txt").c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
}

TEST_F(Disks, ProgressIsReportedInPercentOfAllBytes) {
  const RegistryGuard guard(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest");
  ListFile("a.txt", "1");
  EXPECT_TRUE(CopyAll());
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\VeltraneTest", "SetupPercent"), "100");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\VeltraneTest", "SetupMsg"),
            "Installation : " + Prog("a.txt"));
}

TEST_F(Disks, AFailureLeavesThePercentageReached) {
  const RegistryGuard guard(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest");
  ListFile("a.txt", "1");
  AddFile("gone.txt", mDir.Join("prog").c_str(), Dist("gone.txt").c_str(), 1, 2, false);
  EXPECT_FALSE(CopyAll());
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\VeltraneTest", "SetupPercent"), "33");
}

TEST_F(Disks, WithoutAMeterNoPercentageIsReported) {
  const RegistryGuard guard(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest");
  AppSetVariable("no_prog_meter", "1");
  ListFile("a.txt", "1");
  EXPECT_TRUE(CopyAll());
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\VeltraneTest", "SetupPercent"), std::nullopt);
  EXPECT_EQ(mDir.Read("prog\\a.txt"), "installed");
}

TEST_F(Disks, FilesWithoutSizeReportZeroThenAHundred) {
  ListFile("a.txt", "");
  EXPECT_TRUE(CopyAll());
  EXPECT_EQ(gInstalls, 1);
}

TEST_F(Disks, TheCopyLoopPumpsMessages) {
  ::Run() = RunState();
  ListFile("a.txt", "1");
  ASSERT_TRUE(PostThreadMessageA(GetCurrentThreadId(), WM_APP, 0, 0));
  EXPECT_TRUE(CopyAll());
  MSG message;
  EXPECT_FALSE(PeekMessageA(&message, reinterpret_cast<HWND>(-1), WM_APP, WM_APP, PM_REMOVE));
}

TEST_F(Disks, TheFirstDisksPromptNamesTheProduct) {
  AddFile("a", "C:\\d", "C:\\s\\a", 2, 1, false);
  EXPECT_TRUE(PromptForDisk(1));
  const std::string log = Log();
  EXPECT_TRUE(Holds(log, "Veltrane")) << log;
  EXPECT_TRUE(Holds(log, mDir.Join("dist"))) << log;
}

TEST_F(Disks, APromptWithOneDiskAsserts) {
  AddFile("a", "C:\\d", "C:\\s\\a", 1, 1, false);
  AssertRecorder recorder;
  EXPECT_TRUE(PromptForDisk(2));
  EXPECT_EQ(recorder.Only(), "NDisks > 1");
}

TEST_F(Disks, DeletingLogsEachFileInOrder) {
  ListFile("b.txt", "1");
  ListFile("a.txt", "1");
  mDir.Write("prog\\a.txt", "x");
  EXPECT_TRUE(DeleteAll());
  EXPECT_EQ(Log(), "##ERROR: Deleting " + Prog("b.txt") + ", result = failure\nDeleting " + Prog("a.txt") +
                       ", result = success\n");
  EXPECT_TRUE(NamesIn(mDir.Join("prog")).empty());
}

TEST_F(Disks, DeletingLeavesAHeldFileToTheCaller) {
  for (const char* name : {"a.txt", "held.dll", "b.txt"}) {
    ListFile(name, "1");
    mDir.Write(std::string("prog\\") + name, "x");
  }
  EXPECT_TRUE(DeleteAll(Str(Prog("HELD.dll"))));
  EXPECT_EQ(Log(), "Deleting " + Prog("a.txt") + ", result = success\nDeleting " + Prog("b.txt") +
                       ", result = success\n");
  EXPECT_EQ(NamesIn(mDir.Join("prog")), std::vector<std::string>({"held.dll"}));
}

TEST_F(Disks, DeletingTakesReadOnlyAndHiddenFiles) {
  ListFile("a.txt", "1");
  mDir.Write("prog\\a.txt", "x");
  SetFileAttributesA(Prog("a.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
  SetFileAttributesA(Prog("a.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(DeleteAll());
  EXPECT_TRUE(NamesIn(mDir.Join("prog")).empty());
}

TEST_F(Disks, AFileWithoutAFolderIsNotLookedForInTheCurrentOne) {
  char former[MAX_PATH] = "";
  GetCurrentDirectoryA(MAX_PATH, former);
  mDir.Write("prog\\a.txt", "x");
  SetCurrentDirectoryA(mDir.Join("prog").c_str());
  AddFile("a.txt", "", "C:\\s\\a", 1, 1, false);
  EXPECT_TRUE(DeleteAll());
  SetCurrentDirectoryA(former);
  EXPECT_TRUE(mDir.Has("prog\\a.txt"));
  EXPECT_EQ(Log(), "##ERROR: Deleting a.txt, result = failure\n");
}

}  // namespace
