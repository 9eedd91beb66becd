#include "installer/VTConfig.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/runstate.h"
#include "messages/app_vars.h"
#include "messages/logfile.h"
#include "stores/varlist2.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/registry_guard.h"
#include "support/setup_run.h"
#include "support/temp_dir.h"
#include "ui/err.h"

namespace {

std::string Value(const char* name) {
  Str text;
  return AppGetVariable(name, text) ? text.Chars() : "(unset)";
}

std::string ListValue(const VarList& list, const char* name) {
  Str text;
  return list.Get(name, text) ? text.Chars() : "(unset)";
}

class ConfigTest : public AppVarsTest {
 protected:
  void SetUp() override {
    AppVarsTest::SetUp();
    ConfigList().Clear();
    ::Run().setupFlags = kQuiet;  // messages are logged only
    OpenLog(mLogDir.Path().c_str(), "test.log");
  }
  void TearDown() override {
    ConfigList().Clear();
    AppVarsTest::TearDown();
  }
  std::string Log() const { return ReadWholeFile(mLogDir.Join("test.log")); }

  TempDir mLogDir;
};

// ---- built-in variables ----

TEST_F(ConfigTest, ProgramFoldersComeFromTheModulePath) {
  SetProgramFolders("C:\\Dist folder\\Setup.exe");
  EXPECT_EQ(Value("CurrDir"), "C:\\Dist folder");
  EXPECT_EQ(Value("SetupHelpDir"), "C:\\Dist folder");
  EXPECT_EQ(Value("InstallFromDir"), "C:\\Dist folder");
}

TEST_F(ConfigTest, SourceFolderOfTheCommandLineStays) {
  AppSetVariable("InstallFromDir", "D:\\elsewhere");
  SetProgramFolders("C:\\Dist\\Setup.exe");
  EXPECT_EQ(Value("InstallFromDir"), "D:\\elsewhere");
}

TEST_F(ConfigTest, ProgramOnADriveItself) {
  SetProgramFolders("C:\\Setup.exe");
  EXPECT_EQ(Value("CurrDir"), "C:");
  EXPECT_EQ(Value("InstallFromDir"), "C:\\");
}

struct TextRow {
  const char* name;
  const char* text;
};

TEST_F(ConfigTest, ResourceVariablesHoldTheirRawTexts) {
  constexpr TextRow kRows[] = {
      {"ServerName", "Serveur <AppName>"},
      {"ReadMeName", "Notes de mise \xe0 jour de <AppName>"},
      {"HelpName", "Aide de <AppName>"},
      {"RemoveName", "Supprimer <AppName>"},
      {"RemoveWkstnName", "Supprimer <AppName> (Poste de travail)"},
      {"AppLinkDesc",
       "Utilisez <AppName> pour cr\xe9"
       "er des \xe9quations"},
      {"ServerLinkDesc",
       "Utilisez <ServerName> pour cr\xe9"
       "er des \xe9quations et acc\xe9l\xe9rer votre travail sous d'autres applications"},
      {"EqnConvMgrLinkDesc",
       "Utilisez <EqnConvMgr> pour d\xe9"
       "finir les types d'\xe9quations dont l'\xe9"
       "dition sera associ\xe9"
       "e \xe0 <AppName>"},
      {"EqnConvMgr", "Gestionnaire de conversion"},
      {"SetupName", "Installation de <AppName> <MajVersion>.<MinVersion>c"},
      {"BackgroundText", "Installation de <AppName> <MajVersion>.<MinVersion>"},
  };
  SetResourceVariables();
  for (const TextRow& row : kRows) EXPECT_EQ(Value(row.name), row.text) << row.name;
}

TEST_F(ConfigTest, ResourceVariablesKeepWhatIsSet) {
  AppSetVariable("SetupName", "Mine");
  SetResourceVariables();
  EXPECT_EQ(Value("SetupName"), "Mine");
}

TEST_F(ConfigTest, ProductVariables) {
  AppSetVariable("BuildNum", "1");
  AppSetVariable("Version", "1");
  char program[MAX_PATH];
  GetModuleFileNameA(nullptr, program, MAX_PATH);
  SetProductVariables(program);
  EXPECT_EQ(Value("ProgName"), "Setup");
  EXPECT_EQ(Value("CopyrightYear"), "2007");
  EXPECT_EQ(Value("BuildNum"), "200707050000");
  EXPECT_EQ(Value("Version"), "6.0 (200707050000)");
}

TEST_F(ConfigTest, ProgramNameAndYearKeepWhatIsSet) {
  AppSetVariable("ProgName", "Installer");
  AppSetVariable("CopyrightYear", "2008");
  SetProductVariables("C:\\none.exe");
  EXPECT_EQ(Value("ProgName"), "Installer");
  EXPECT_EQ(Value("CopyrightYear"), "2008");
}

TEST_F(ConfigTest, NameVariables) {
  AppSetVariable("CurrDir", "C:\\dist");
  AppSetVariable("SetupHelpDir", "C:\\recorded");
  AppSetVariable("EqnConvMgr", "Manager");
  AppSetVariable("SetupName", "Name");
  SetNameVariables();
  EXPECT_EQ(Value("SetupHelpDir"), "C:\\dist");
  EXPECT_EQ(std::string(AppGetExpanded("HelpFile")), "C:\\dist\\setup.chm");
  EXPECT_EQ(Value("SetupName"), "Name");
  char windows[MAX_PATH];
  GetWindowsDirectoryA(windows, MAX_PATH);
  EXPECT_EQ(Value("WinDir"), windows);
}

TEST_F(ConfigTest, HelpFileOfTheScriptStays) {
  AppSetVariable("HelpFile", "other.chm");
  SetNameVariables();
  EXPECT_EQ(Value("HelpFile"), "other.chm");
}

TEST_F(ConfigTest, ConversionManagerAloneGivesItsNameToAll) {
  ::Run().setupFlags = kOleMgrOnly | kQuiet;
  AppSetVariable("EqnConvMgr", "Manager");
  AppSetVariable("SetupName", "Name");
  AppSetVariable("BackgroundText", "Text");
  SetNameVariables();
  EXPECT_EQ(Value("SetupName"), "Manager");
  EXPECT_EQ(Value("BackgroundText"), "Manager");
}

// ---- settings ----

TEST_F(ConfigTest, BuiltInSettingsAreMerged) {
  MergeBuiltInSettings();
  EXPECT_EQ(Value("CompanyName"), "Quorvale");
}

TEST_F(ConfigTest, StoredSettingsTheUsersLast) {
  const RegistryGuard machine(HKEY_CURRENT_USER, "Software\\VeltraneTest\\Machine");
  const RegistryGuard user(HKEY_CURRENT_USER, "Software\\VeltraneTest\\User");
  const RegistryGuard both(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  SetRegistryString(HKEY_CURRENT_USER, machine.Path() + "\\Config", "A", "machine");
  SetRegistryString(HKEY_CURRENT_USER, machine.Path() + "\\Config", "B", "machine");
  SetRegistryString(HKEY_CURRENT_USER, user.Path() + "\\Config", "B", "user");
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\Machine");
  AppSetVariable("UserRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\User");
  MergeStoredSettings();
  EXPECT_EQ(Value("A"), "machine");
  EXPECT_EQ(Value("B"), "user");
}

TEST_F(ConfigTest, MissingStoresAreNoError) {
  AppSetVariable("UserRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\none");
  MergeStoredSettings();
  EXPECT_EQ(Log().find("##ERROR"), std::string::npos);
}

// ---- the search ----

class ConfigSearch : public ConfigTest {
 protected:
  void SetUp() override {
    ConfigTest::SetUp();
    AppSetVariable("ShortAppKey", "VT");
    AppSetVariable("MajVersion", "6");
    for (const char* name : {"ProgDir", "CurrDir", "InstallFromDir"})
      AppSetVariable(name, mRoot.MakeFolder(name).c_str());
  }
  void WriteAt(const char* folder, const std::string& version, const std::string& mark) {
    mRoot.Write(std::string(folder) + "\\VT6.QLC",
                EncodeConfig({{"QLCMajVersion", version}, {"Mark", mark}}));
  }
  std::string PathAt(const char* folder) const { return mRoot.Join(std::string(folder) + "\\VT6.qlc"); }

  TempDir mRoot;
};

TEST_F(ConfigSearch, FoldersAreTriedInOrder) {
  WriteAt("InstallFromDir", "6", "third");
  WriteAt("CurrDir", "6", "second");
  EXPECT_TRUE(FindConfiguration());
  EXPECT_EQ(ListValue(ConfigList(), "Mark"), "second");
  EXPECT_EQ(Value("ConfigPath"), PathAt("CurrDir"));
  EXPECT_EQ(Value("Mark"), "(unset)");
  const std::string log = Log();
  EXPECT_NE(log.find("Opening config file at " + PathAt("ProgDir") + ": Failed\r\nOpening config file at " +
                     PathAt("CurrDir") + ": Success\r\n"),
            std::string::npos)
      << log;
  EXPECT_EQ(log.find(PathAt("InstallFromDir")), std::string::npos);
}

TEST_F(ConfigSearch, OtherVersionIsPassedOver) {
  WriteAt("ProgDir", "5", "old");
  WriteAt("CurrDir", "6", "right");
  EXPECT_TRUE(FindConfiguration());
  EXPECT_EQ(ListValue(ConfigList(), "Mark"), "right");
}

TEST_F(ConfigSearch, UnsetFoldersAreSkipped) {
  AppVars().Clear();
  AppSetVariable("ShortAppKey", "VT");
  AppSetVariable("MajVersion", "6");
  AppSetVariable("CurrDir", mRoot.Join("CurrDir").c_str());
  WriteAt("CurrDir", "6", "only");
  EXPECT_TRUE(FindConfiguration());
  EXPECT_EQ(ListValue(ConfigList(), "Mark"), "only");
}

TEST_F(ConfigSearch, NothingFoundIsNoFailure) {
  EXPECT_TRUE(FindConfiguration());
  EXPECT_EQ(Value("ConfigPath"), "(unset)");
}

TEST_F(ConfigSearch, DamagedFileIsPassedOverAndLeavesNothing) {
  std::string bytes = EncodeConfig({{"QLCMajVersion", "6"}, {"Mark", "damaged"}});
  bytes[bytes.size() - 2] = static_cast<char>(bytes[bytes.size() - 2] ^ 0x10);
  mRoot.Write("ProgDir\\VT6.QLC", bytes);
  EXPECT_TRUE(FindConfiguration());
  EXPECT_TRUE(ConfigList().IsEmpty());
  EXPECT_EQ(Log().find("##ERROR"), std::string::npos);
}

TEST_F(ConfigSearch, NameThatCannotBeFormed) {
  AppVars().Clear();
  AppSetVariable("MajVersion", "6");
  AssertRecorder recorder;
  EXPECT_FALSE(FindConfiguration());
  EXPECT_EQ(recorder.Only(), "name.Find('<') < 0");
}

TEST_F(ConfigSearch, WorkstationNeedsAFile) {
  ::Run().setupFlags = kWorkstation | kQuiet;
  EXPECT_FALSE(FindConfiguration());
  const std::string log = Log();
  // The first that cannot be read ends the search.
  EXPECT_NE(log.find("##ERROR: Opening config file at " + PathAt("ProgDir") + ": Failed"), std::string::npos);
  EXPECT_EQ(log.find(PathAt("CurrDir")), std::string::npos);
}

TEST_F(ConfigSearch, WorkstationPassesOverAnotherVersion) {
  ::Run().setupFlags = kWorkstation | kQuiet;
  WriteAt("ProgDir", "5", "old");
  WriteAt("CurrDir", "6", "right");
  EXPECT_TRUE(FindConfiguration());
  const std::string log = Log();
  EXPECT_EQ(log.find("##ERROR"), std::string::npos);
  EXPECT_NE(log.find("Opening config file at " + PathAt("ProgDir") + ": Failed"), std::string::npos);
}

TEST_F(ConfigSearch, WorkstationWithOtherVersionsOnlyFails) {
  ::Run().setupFlags = kWorkstation | kQuiet;
  for (const char* folder : {"ProgDir", "CurrDir", "InstallFromDir"}) WriteAt(folder, "5", "old");
  EXPECT_FALSE(FindConfiguration());
}

TEST_F(ConfigSearch, OrderOfTheEntriesSurvives) {
  mRoot.Write("ProgDir\\VT6.QLC",
              EncodeConfig({{"C", "3"}, {"%B", "2"}, {"A", "1"}, {"QLCMajVersion", "6"}}));
  ASSERT_TRUE(FindConfiguration());
  EXPECT_EQ(Listing(ConfigList()), "C=3 %B=2 A=1 QLCMajVersion=6");
}

// ---- reading at ProgDir ----

TEST_F(ConfigSearch, ReadAtProgDir) {
  mRoot.Write("ProgDir\\VT6.QLC", EncodeConfig({{"QLCMajVersion", "6"}, {"Mark", "here"}}));
  EXPECT_EQ(ReadConfigurationAtProgDir(), kLoadSectionOK);
  EXPECT_EQ(Value("Mark"), "here");
  EXPECT_EQ(Value("ConfigPath"), mRoot.Join("ProgDir\\VT6.QLC"));
}

TEST_F(ConfigSearch, ReadAtProgDirWithoutAFile) {
  EXPECT_EQ(ReadConfigurationAtProgDir(), kCfgOpenFailed);
  EXPECT_NE(Log().find("Could not read QLC at " + mRoot.Join("ProgDir\\VT6.QLC") + "."), std::string::npos);
}

TEST_F(ConfigSearch, ReadAtProgDirOfAnotherVersion) {
  mRoot.Write("ProgDir\\VT6.QLC", EncodeConfig({{"QLCMajVersion", "5"}, {"Mark", "here"}}));
  const uint32_t result = ReadConfigurationAtProgDir();
  EXPECT_NE(result, kLoadSectionOK);
  EXPECT_NE(result, kCfgOpenFailed);
  EXPECT_EQ(Value("Mark"), "(unset)");
  EXPECT_NE(Log().find("Version mismatch (5 != 6) with QLC at " + mRoot.Join("ProgDir\\VT6.QLC") + "."),
            std::string::npos);
}

TEST_F(ConfigTest, ReadAtProgDirWithoutProgDir) {
  AssertRecorder recorder;
  AppSetVariable("ShortAppKey", "VT");
  EXPECT_EQ(ReadConfigurationAtProgDir(), kCfgOpenFailed);
  EXPECT_EQ(recorder.Only(), "AppVariableExists(sProgDir)");
}

// ---- writing ----

TEST_F(ConfigTest, PathForWritingHasTheFixedDigit) {
  AppSetVariable("ProgDir", "C:\\<Where>");
  AppSetVariable("Where", "Veltrane");
  AppSetVariable("ShortAppKey", "VT");
  AppSetVariable("MajVersion", "7");
  EXPECT_EQ(std::string(ConfigurationPath()), "C:\\Veltrane\\VT6.QLC");
}

TEST_F(ConfigTest, CollectedEntriesAreExpanded) {
  AppSetVariable("AppName", "Veltrane");
  AppSetVariable("ProgDir", "C:\\<AppName>");
  AppSetVariable("Secret", "not recorded");
  CollectConfiguration();
  EXPECT_EQ(Listing(ConfigList()), "ProgDir=C:\\Veltrane AppName=Veltrane QLCMajVersion=6");
}

class ConfigWrite : public ConfigTest {
 protected:
  ConfigWrite() : mPath(mRoot.Join("VT6.QLC")) { mList.Set("A", "1"); }
  DWORD Attributes() const { return GetFileAttributesA(mPath.c_str()); }
  bool IsWritten() const { return DecodeConfig(ReadWholeFile(mPath)).Value("A") == "1"; }

  TempDir mRoot;
  std::string mPath;
  VarList mList;
};

TEST_F(ConfigWrite, NewFileIsReadOnlyAndHidden) {
  EXPECT_TRUE(WriteConfiguration(mPath.c_str(), mList));
  EXPECT_TRUE(IsWritten());
  EXPECT_NE(Attributes() & FILE_ATTRIBUTE_READONLY, 0u);
  EXPECT_NE(Attributes() & FILE_ATTRIBUTE_HIDDEN, 0u);
  EXPECT_EQ(NamesIn(mRoot.Path()), std::vector<std::string>({"VT6.QLC"}));
}

TEST_F(ConfigWrite, WritableFileStaysWritable) {
  WriteWholeFile(mPath, "old");
  EXPECT_TRUE(WriteConfiguration(mPath.c_str(), mList));
  EXPECT_TRUE(IsWritten());
  EXPECT_EQ(Attributes() & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN), 0u);
}

TEST_F(ConfigWrite, ReadOnlyFileStaysReadOnly) {
  WriteWholeFile(mPath, "old");
  SetFileAttributesA(mPath.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(WriteConfiguration(mPath.c_str(), mList));
  EXPECT_TRUE(IsWritten());
  EXPECT_NE(Attributes() & FILE_ATTRIBUTE_READONLY, 0u);
  EXPECT_EQ(Attributes() & FILE_ATTRIBUTE_HIDDEN, 0u);
}

TEST_F(ConfigWrite, HiddenFileStaysHidden) {
  WriteWholeFile(mPath, "old");
  SetFileAttributesA(mPath.c_str(), FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(WriteConfiguration(mPath.c_str(), mList));
  EXPECT_TRUE(IsWritten());
  EXPECT_NE(Attributes() & FILE_ATTRIBUTE_HIDDEN, 0u);
  EXPECT_EQ(Attributes() & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST_F(ConfigWrite, LeftOverTemporaryFileIsReplaced) {
  mRoot.Write("VT6.tmp", "left over");
  EXPECT_TRUE(WriteConfiguration(mPath.c_str(), mList));
  EXPECT_TRUE(IsWritten());
  EXPECT_FALSE(mRoot.Has("VT6.tmp"));
}

TEST_F(ConfigWrite, FailureToWriteKeepsTheOldFileAndItsAttributes) {
  WriteWholeFile(mPath, "old");
  SetFileAttributesA(mPath.c_str(), FILE_ATTRIBUTE_READONLY);
  mRoot.MakeFolder("VT6.tmp");
  EXPECT_FALSE(WriteConfiguration(mPath.c_str(), mList));
  EXPECT_EQ(ReadWholeFile(mPath), "old");
  EXPECT_NE(Attributes() & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST_F(ConfigWrite, FailureToDeleteLeavesTheTemporaryFile) {
  WriteWholeFile(mPath, "old");
  const FileHandle held(CreateFileA(mPath.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(held);
  EXPECT_FALSE(WriteConfiguration(mPath.c_str(), mList));
  EXPECT_EQ(DecodeConfig(ReadWholeFile(mRoot.Join("VT6.tmp"))).Value("A"), "1");
}

// What happens to the names in a folder, in order, from the construction on.
class FolderWatch {
 public:
  explicit FolderWatch(const TempDir& folder)
      : mFolder(folder),
        mHandle(CreateFileA(folder.Path().c_str(), FILE_LIST_DIRECTORY,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                            FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr)),
        mEvent(CreateEventA(nullptr, FALSE, FALSE, nullptr)) {
    Ask();
  }
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;
  ~FolderWatch() {
    CancelIo(mHandle);
    CloseHandle(mHandle);
    CloseHandle(mEvent);
  }

  // Each change as "<FILE_ACTION_...> <name>", until now.
  std::vector<std::string> Changes() {
    mFolder.Write(kLast, "");
    std::vector<std::string> changes;
    for (;;) {
      DWORD size = 0;
      if (WaitForSingleObject(mEvent, 10000) != WAIT_OBJECT_0 ||
          !GetOverlappedResult(mHandle, &mOverlapped, &size, FALSE) || size == 0) {
        ADD_FAILURE() << "the system tells no changes";
        return changes;
      }
      const char* at = reinterpret_cast<const char*>(mBuffer);
      for (;;) {
        FILE_NOTIFY_INFORMATION entry = {};
        memcpy(&entry, at, offsetof(FILE_NOTIFY_INFORMATION, FileName));
        const wchar_t* wide =
            reinterpret_cast<const wchar_t*>(at + offsetof(FILE_NOTIFY_INFORMATION, FileName));
        const std::string name(wide, wide + entry.FileNameLength / sizeof(wchar_t));
        if (name == kLast) return changes;
        changes.push_back(std::to_string(entry.Action) + " " + name);
        if (entry.NextEntryOffset == 0) break;
        at += entry.NextEntryOffset;
      }
      Ask();
    }
  }

 private:
  static constexpr char kLast[] = "last";
  void Ask() {
    mOverlapped = {};
    mOverlapped.hEvent = mEvent;
    if (!ReadDirectoryChangesW(mHandle, mBuffer, sizeof mBuffer, FALSE,
                               FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_ATTRIBUTES, nullptr,
                               &mOverlapped, nullptr))
      ADD_FAILURE() << "the folder cannot be watched: " << GetLastError();
  }

  const TempDir& mFolder;
  HANDLE mHandle;
  HANDLE mEvent;
  OVERLAPPED mOverlapped = {};
  DWORD mBuffer[4096] = {};
};

// A run that is broken off must not leave a file that the next run takes for one that the user made visible.
TEST_F(ConfigWrite, AttributesComeBeforeTheFinalName) {
  ASSERT_TRUE(WriteConfiguration(mPath.c_str(), mList));
  FolderWatch watch(mRoot);
  EXPECT_TRUE(WriteConfiguration(mPath.c_str(), mList));
  const std::vector<std::string> changes = watch.Changes();
  EXPECT_EQ(changes.back(), "5 VT6.QLC") << "the new name is the last change";
  EXPECT_EQ(std::count(changes.begin(), changes.end(), "1 VT6.tmp"), 1);
  EXPECT_GE(std::count(changes.begin(), changes.end(), "3 VT6.tmp"), 1) << "its attributes";
}

TEST_F(ConfigWrite, MissingFolderFails) {
  EXPECT_FALSE(WriteConfiguration(mRoot.Join("none\\VT6.QLC").c_str(), mList));
}

}  // namespace
