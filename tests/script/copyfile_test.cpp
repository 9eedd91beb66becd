#include "script_fixture.h"

namespace {

using Names = std::vector<std::string>;

// What the install function answers, call by call; the last answer repeats.
std::vector<DWORD> gAnswers;
std::vector<std::string> gTargets;
std::vector<DWORD> gFlags;

DWORD WINAPI FakeFind(DWORD, LPCSTR, LPCSTR, LPCSTR appDir, LPSTR, PUINT, LPSTR destDir, PUINT) {
  lstrcpynA(destDir, appDir, 260);
  return 0;
}
DWORD WINAPI FakeInstall(DWORD flags, LPCSTR, LPCSTR destFile, LPCSTR, LPCSTR destDir, LPCSTR, LPSTR, PUINT) {
  const DWORD answer = gAnswers.front();
  if (gAnswers.size() > 1) gAnswers.erase(gAnswers.begin());
  gFlags.push_back(flags);
  gTargets.push_back(std::string(destDir) + "\\" + destFile);
  if (answer == 0) WriteWholeFile(gTargets.back(), "installed");
  return answer;
}
INT WINAPI FakeOpen(LPSTR, LPOFSTRUCT, WORD) { return -1; }
INT WINAPI FakeExpanded(LPSTR, LPSTR) { return -1; }
void WINAPI FakeClose(INT) {}
constexpr VersionApi kFake = {FakeFind, FakeInstall, FakeOpen, FakeExpanded, FakeClose};

int gMoves = 0;
std::string gMoveFrom;
std::string gMoveTo;
BOOL gMoveResult = TRUE;
BOOL WINAPI FakeMove(LPCSTR from, LPCSTR to, DWORD) {
  ++gMoves;
  gMoveFrom = from;
  gMoveTo = to;
  return gMoveResult;
}

class FileCopy : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    gAnswers = {0};
    gTargets.clear();
    gFlags.clear();
    gMoves = 0;
    gMoveResult = TRUE;
    SetVersionApi(&kFake);
    SetMoveFileEx(FakeMove);
    mSource = mDir.Write("dist\\a.dll", "new");
    mTarget = mDir.MakeFolder("other") + "\\a.dll";
    BeSilent();
  }
  uint32_t Copy(std::vector<DWORD> answers) {
    gAnswers = std::move(answers);
    return CopyFileByName(mSource.c_str(), mTarget.c_str());
  }
  static void BeInteractive() { ::Run() = RunState(); }
  std::string mSource;
  std::string mTarget;
};

TEST_F(FileCopy, DoneIsSilentAndLogsNothing) {
  EXPECT_EQ(Copy({0}), 0u);
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(gFlags, (std::vector<DWORD>{2}));
}

TEST_F(FileCopy, ASilentRunKeepsNewerFiles) {
  EXPECT_EQ(Copy({VIF_SRCOLD | VIF_MISMATCH}), 0u);
  EXPECT_TRUE(::Run().keepAllNewer);
  EXPECT_EQ(gFlags.size(), 1u);
  EXPECT_FALSE(Holds(Log(), "Voulez-vous"));
}

TEST_F(FileCopy, YesKeepsTheNewerFile) {
  BeInteractive();
  {
    Answerer yes("Installation de Veltrane 6.0c", [](HWND dialog) { Press(dialog, IDYES); });
    EXPECT_EQ(Copy({VIF_SRCOLD | VIF_MISMATCH}), 0u);
  }
  EXPECT_FALSE(::Run().keepAllNewer);
  EXPECT_EQ(gFlags.size(), 1u);
  EXPECT_TRUE(Holds(Log(),
                    "Le fichier a.dll qui existe actuellement dans votre ordinateur est plus r\xe9"
                    "cent celui qui va \xeatre install\xe9.\n\nVoulez-vous conserver le fichier existant "
                    "(recommand\xe9)?: [Yes]\n"));
}

TEST_F(FileCopy, YesToAllKeepsEveryNewerFile) {
  BeInteractive();
  {
    Answerer all("Installation de Veltrane 6.0c", [](HWND dialog) { Press(dialog, kAnswerYesToAll); });
    EXPECT_EQ(Copy({VIF_SRCOLD | VIF_MISMATCH}), 0u);
  }
  EXPECT_TRUE(::Run().keepAllNewer);
  EXPECT_EQ(Copy({VIF_SRCOLD | VIF_MISMATCH}), 0u) << "not asked again";
  EXPECT_EQ(gFlags.size(), 2u);
}

TEST_F(FileCopy, NoInstallsTheOlderFileByForce) {
  BeInteractive();
  Answerer no("Installation de Veltrane 6.0c", [](HWND dialog) { Press(dialog, IDNO); });
  EXPECT_EQ(Copy({VIF_SRCOLD | VIF_MISMATCH, 0}), 0u);
  EXPECT_EQ(gFlags, (std::vector<DWORD>{2, 3}));
}

TEST_F(FileCopy, OtherConflictsAreForcedWithoutAQuestion) {
  for (const DWORD bit : {VIF_DIFFLANG, VIF_DIFFCODEPG, VIF_DIFFTYPE}) {
    gFlags.clear();
    EXPECT_EQ(Copy({bit | VIF_MISMATCH, 0}), 0u);
    EXPECT_EQ(gFlags, (std::vector<DWORD>{2, 3}));
  }
  EXPECT_FALSE(::Run().keepAllNewer);
}

TEST_F(FileCopy, AForcedCopyThatFailsIsReported) {
  EXPECT_EQ(Copy({VIF_DIFFTYPE | VIF_MISMATCH, VIF_OUTOFSPACE}), 0x4u);
  EXPECT_TRUE(Holds(Log(), "Impossible d'installer le fichier a.dll : le fichier destination est plein."));
}

TEST_F(FileCopy, AFileInUseIsInstalledOnRestart) {
  EXPECT_EQ(Copy({VIF_FILEINUSE, 0}), 0u);
  EXPECT_EQ(gTargets.back(), Prog("~.dll"));
  EXPECT_EQ(gFlags, (std::vector<DWORD>{2, 3}));
  EXPECT_EQ(gMoveFrom, Prog("~.dll"));
  EXPECT_EQ(gMoveTo, mTarget);
  EXPECT_TRUE(::Run().restartNeeded);
  EXPECT_EQ(Log(), "  The file " + mTarget +
                       " is in use. Installing this file on restart. TempPath = " + Prog("~.dll") + "\n");
  EXPECT_TRUE(PathExists(Prog("~.dll")));
}

TEST_F(FileCopy, TheRestartNameReplacesTheFirstCharacter) {
  mTarget = mDir.Join("other\\library.dll");
  EXPECT_EQ(Copy({VIF_FILEINUSE, 0}), 0u);
  EXPECT_EQ(gMoveFrom, Prog("~ibrary.dll"));
}

TEST_F(FileCopy, ATakenRestartNameIsNumbered) {
  mDir.Write("prog\\~.dll", "taken");
  mDir.Write("prog\\~_01.dll", "taken");
  EXPECT_EQ(Copy({VIF_FILEINUSE, 0}), 0u);
  EXPECT_EQ(gMoveFrom, Prog("~_02.dll"));
}

TEST_F(FileCopy, AFileOnAnotherVolumeWaitsBesideItself) {
  AppSetVariable("ProgDir", "Q:\\prog");
  EXPECT_EQ(Copy({VIF_FILEINUSE, 0}), 0u);
  EXPECT_EQ(gMoveFrom, mDir.Join("other\\~.dll"));
}

TEST_F(FileCopy, WithoutAProductFolderTheFileWaitsBesideItself) {
  AppSetVariable("ProgDir", "");
  EXPECT_EQ(Copy({VIF_FILEINUSE, 0}), 0u);
  EXPECT_EQ(gMoveFrom, mDir.Join("other\\~.dll"));
}

TEST_F(FileCopy, ARestartThatCannotBeArrangedIsReported) {
  gMoveResult = FALSE;
  ::Run().platformFlags = kPlatformNT;
  EXPECT_EQ(Copy({VIF_FILEINUSE, 0}), 0x1u);
  EXPECT_FALSE(::Run().restartNeeded);
  const std::string log = Log();
  EXPECT_TRUE(Holds(log, "'ReplaceFileOnReboot' failed.\nCopyFileByName: vcError 1\n")) << log;
  EXPECT_TRUE(Holds(log,
                    "Impossible d'installer le fichier a.dll : il est en cours d'utilisation dans un autre "
                    "programme."))
      << log;
  EXPECT_TRUE(NamesIn(mDir.Join("prog")).empty()) << "the temporary copy is gone";
}

TEST_F(FileCopy, ALongNameInUseOnWindows9xIsReported) {
  gMoveResult = FALSE;
  ::Run().platformFlags = kPlatformWin9x;
  mTarget = mDir.Write("other\\a long name.dll", "old");
  // The two calls come from the copy itself and from the one to the temporary path.
  EXPECT_EQ(Copy({VIF_FILEINUSE, 0}), 0x1u);
  const std::string log = Log();
  EXPECT_TRUE(Holds(log,
                    "'ReplaceFileOnReboot' failed. Maybe the filename is long? (Win95/98 can't handle long "
                    "filenames.)\nCopyFileByName: vcError 1\n"))
      << log;
  EXPECT_TRUE(Holds(log, "il est en cours d'utilisation dans un autre programme."));
  EXPECT_FALSE(::Run().restartNeeded);
}

TEST_F(FileCopy, ATemporaryCopyThatFailsIsReportedAsInUse) {
  EXPECT_EQ(Copy({VIF_FILEINUSE, VIF_OUTOFSPACE}), 0x1u);
  EXPECT_EQ(gMoves, 0);
  EXPECT_TRUE(Holds(Log(), "il est en cours d'utilisation dans un autre programme."));
}

TEST_F(FileCopy, EachFailureHasItsMessage) {
  const struct {
    DWORD bit;
    const char* text;
  } rows[] = {
      {VIF_OUTOFMEMORY,
       "Windows a manqu\xe9 de m\xe9moire lors de la d\xe9"
       "compression du fichier a.dll."},
      {VIF_OUTOFSPACE, "Impossible d'installer le fichier a.dll : le fichier destination est plein."},
      {VIF_CANNOTREADSRC, "Impossible d'installer le fichier a.dll faute de pouvoir le lire."},
      {VIF_CANNOTCREATE,
       "Impossible d'installer le fichier a.dll en raison d'une erreur g\xe9n\xe9rale d'E/S."},
      {VIF_CANNOTREADDST,
       "Impossible d'installer le fichier a.dll en raison d'une erreur g\xe9n\xe9rale d'E/S."},
  };
  for (const auto& row : rows) {
    Log();
    EXPECT_NE(Copy({row.bit}), 0u);
    const std::string log = Log();
    EXPECT_TRUE(Holds(log, row.text)) << log;
  }
}

TEST_F(FileCopy, TheFirstMessageThatAppliesIsShown) {
  EXPECT_EQ(Copy({VIF_OUTOFSPACE | VIF_CANNOTREADSRC}), 0x204u);
  const std::string log = Log();
  EXPECT_TRUE(Holds(log, "le fichier destination est plein."));
  EXPECT_FALSE(Holds(log, "faute de pouvoir le lire"));
}

TEST_F(FileCopy, TheStatusIsLoggedAsANumber) {
  EXPECT_EQ(Copy({VIF_CANNOTREADSRC}), 0x200u);
  EXPECT_TRUE(Holds(Log(), "CopyFileByName: vcError 512\n"));
}

// The read-only test comes after the install function has failed on a file whose
// attribute could not be cleared.
DWORD WINAPI LockingInstall(DWORD, LPCSTR, LPCSTR destFile, LPCSTR, LPCSTR destDir, LPCSTR, LPSTR, PUINT) {
  SetFileAttributesA((std::string(destDir) + "\\" + destFile).c_str(), FILE_ATTRIBUTE_READONLY);
  return VIF_WRITEPROT;
}

TEST_F(FileCopy, AReadOnlyFileHasItsMessage) {
  static constexpr VersionApi kLocking = {FakeFind, LockingInstall, FakeOpen, FakeExpanded, FakeClose};
  SetVersionApi(&kLocking);
  WriteWholeFile(mTarget, "old");
  EXPECT_EQ(CopyFileByName(mSource.c_str(), mTarget.c_str()), 0x10000u);
  EXPECT_TRUE(
      Holds(Log(),
            "Impossible d'installer le fichier a.dll : ce fichier est d\xe9j\xe0 pr\xe9sent dans votre "
            "syst\xe8me et il est en lecture seule."));
}

TEST_F(FileCopy, ASourceWithoutANameCannotBeRead) {
  EXPECT_EQ(CopyFileByName(mDir.Join("dist\\").c_str(), mTarget.c_str()), 0x2000u);
  EXPECT_TRUE(Holds(Log(), "faute de pouvoir le lire."));
}

TEST_F(FileCopy, ACompressedSourceThatCannotBeOpenedCannotBeRead) {
  EXPECT_EQ(CopyFileByName(mSource.c_str(), mDir.Join("other\\").c_str()), 0x800u);
  EXPECT_TRUE(Holds(Log(), "faute de pouvoir le lire."));
}

TEST_F(FileCopy, TheStatusTextFollowsTheSourcesName) {
  const struct {
    const char* name;
    const char* text;
  } rows[] = {{"a.dll", "Installation : "},
              {"a.dl_",
               "D\xe9"
               "compression : "},
              {"a.d#l",
               "D\xe9"
               "compression : "},
              {"a_b#.dll", "Installation : "},
              {"dir.x_\\plain", "Installation : "}};
  for (const auto& row : rows) {
    const std::string source = mDir.Write(std::string("dist\\") + row.name, "x");
    Log();
    EXPECT_TRUE(CopyOneFile(source.c_str(), mTarget.c_str()));
    EXPECT_EQ(Log(), row.text + mTarget + "\n");
  }
}

TEST_F(FileCopy, PathsAreRequired) {
  AssertRecorder recorder;
  EXPECT_FALSE(CopyOneFile(nullptr, mTarget.c_str()));
  EXPECT_FALSE(CopyOneFile(mSource.c_str(), nullptr));
  EXPECT_FALSE(CopyOneFile("", mTarget.c_str()));
  EXPECT_FALSE(CopyOneFile(mSource.c_str(), ""));
  EXPECT_EQ(recorder.Texts(),
            (Names{"infile", "outfile", "Str::Length(infile) > 0", "Str::Length(outfile) > 0"}));
}

TEST_F(FileCopy, AMissingSourceOfOneDiskEndsTheInstallation) {
  EXPECT_FALSE(CopyOneFile(Dist("gone").c_str(), mTarget.c_str()));
  EXPECT_TRUE(Holds(
      Log(), "Installation de Veltrane 6.0c ne peut pas trouver le fichier d'origine " + Dist("gone") + "."));
}

TEST_F(FileCopy, AMissingSourceOfSeveralDisksIsAskedForOnceInASilentRun) {
  AddFile("gone", mDir.Join("other").c_str(), Dist("gone").c_str(), 2, 1, false);
  EXPECT_FALSE(CopyOneFile(Dist("gone").c_str(), mTarget.c_str()));
  const std::string log = Log();
  const std::string question = "Veltrane ne peut pas copier " + Dist("gone") + " \xe0 " + mTarget +
                               ". Ins\xe9rez le DISQUE 2 dans le lecteur C: puis cliquez sur OK.";
  const size_t first = PlaceOf(log, question);
  EXPECT_EQ(log.find(question, first + 1), std::string::npos);
  EXPECT_TRUE(Holds(log, ": [OK]\n"));
}

TEST_F(FileCopy, ASourceListedTwiceIsAskedForOnTheDiskOfItsDestination) {
  AddFile("first", mDir.Join("other").c_str(), Dist("gone").c_str(), 1, 1, false);
  AddFile("second", mDir.Join("other").c_str(), Dist("gone").c_str(), 3, 1, false);
  EXPECT_FALSE(CopyOneFile(Dist("gone").c_str(), mDir.Join("other\\Second").c_str()));
  EXPECT_TRUE(Holds(Log(), "Ins\xe9rez le DISQUE 3 dans le lecteur"));
}

TEST_F(FileCopy, TheUserIsAskedForTheDiskAsLongAsHeSaysOk) {
  BeInteractive();
  AddFile("late", mDir.Join("other").c_str(), Dist("late").c_str(), 2, 1, false);
  {
    Answerer twice("Setup", [&](HWND box) {
      Press(box, IDOK);
      HWND next = nullptr;
      if (!WaitUntil([&] { return (next = FindDialog("Setup")) != nullptr && next != box; })) return;
      mDir.Write("dist\\late", "x");
      Press(next, IDOK);
    });
    EXPECT_TRUE(CopyOneFile(Dist("late").c_str(), mTarget.c_str()));
  }
  EXPECT_EQ(ReadWholeFile(mTarget), "installed");
}

TEST_F(FileCopy, CancelAtTheDiskPromptFails) {
  BeInteractive();
  AddFile("gone", mDir.Join("other").c_str(), Dist("gone").c_str(), 2, 1, false);
  Answerer cancel("Setup", [](HWND box) { Press(box, IDCANCEL); });
  EXPECT_FALSE(CopyOneFile(Dist("gone").c_str(), mTarget.c_str()));
}

TEST_F(FileCopy, AFileOntoItselfIsDoneWithoutCopying) {
  gAnswers = {VIF_OUTOFMEMORY};
  EXPECT_TRUE(CopyOneFile(mSource.c_str(), Dist("A.DLL").c_str()));
  char shortPath[MAX_PATH] = "";
  GetShortPathNameA(mSource.c_str(), shortPath, MAX_PATH);
  EXPECT_TRUE(CopyOneFile(mSource.c_str(), shortPath));
  EXPECT_TRUE(CopyOneFile(mSource.c_str(), mDir.Join("dist\\..\\dist\\a.dll").c_str()));
  EXPECT_TRUE(gTargets.empty());
}

TEST_F(FileCopy, AFailureOnSetupsOwnFilesIsNoFailure) {
  AppSetVariable("SysLang", "fr");
  for (const char* own : {"Setup.exe", "VTsu6fr.dll", "SETUP.INF"}) {
    gAnswers = {VIF_OUTOFMEMORY};
    EXPECT_TRUE(CopyOneFile(mSource.c_str(), Dist(own).c_str())) << own;
  }
  EXPECT_FALSE(CopyOneFile(mSource.c_str(), Dist("other.inf").c_str()));
}

TEST_F(FileCopy, UniqueNamesAreNumbered) {
  Str path(mTarget.c_str());
  EXPECT_FALSE(GetUniqueName(path));
  EXPECT_EQ(path, mTarget.c_str());
  WriteWholeFile(mTarget, "x");
  EXPECT_TRUE(GetUniqueName(path));
  EXPECT_EQ(path, mDir.Join("other\\a_01.dll").c_str());
  for (int i = 1; i <= 99; ++i)
    WriteWholeFile(mDir.Join("other\\a_" + std::string(i < 10 ? "0" : "") + std::to_string(i) + ".dll"), "x");
  path = mTarget.c_str();
  EXPECT_TRUE(GetUniqueName(path));
  EXPECT_EQ(path, mDir.Join("other\\a_100.dll").c_str());
}

TEST_F(FileCopy, AUniqueNameWithoutAnExtension) {
  mDir.Write("other\\plain", "x");
  Str path(mDir.Join("other\\plain").c_str());
  EXPECT_TRUE(GetUniqueName(path));
  EXPECT_EQ(path, mDir.Join("other\\plain_01").c_str());
}

// A file held by another program is really replaced later.
TEST_F(FileCopy, TheSystemsFunctionsInstallAHeldFileOnRestart) {
  SetVersionApi(nullptr);
  SetMoveFileEx(FakeMove);
  WriteWholeFile(mTarget, "old");
  const FileHandle held(
      CreateFileA(mTarget.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_TRUE(CopyOneFile(mSource.c_str(), mTarget.c_str()));
  EXPECT_EQ(gMoves, 1);
  EXPECT_EQ(ReadWholeFile(gMoveFrom), "new");
  EXPECT_TRUE(::Run().restartNeeded);
  EXPECT_TRUE(NamesIn(mDir.Join("temp")).empty());
}

}  // namespace
