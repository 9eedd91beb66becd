#include "installer/upgrade.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/runstate.h"
#include "messages/app_vars.h"
#include "messages/logfile.h"
#include "sequence/stand_in.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/leak_check.h"
#include "support/process.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"
#include "support/wait.h"

namespace {

constexpr char kUserKey[] = "Software\\Quorvale\\KVRX4";
constexpr char kBackupKey[] = "Software\\Quorvale\\KVRX4Backup";

// An environment variable for the time of a test.
class EnvironmentGuard {
 public:
  EnvironmentGuard(const char* name, const std::string& value) : mName(name) {
    SetEnvironmentVariableA(name, value.c_str());
  }
  ~EnvironmentGuard() { SetEnvironmentVariableA(mName, nullptr); }
  EnvironmentGuard(const EnvironmentGuard&) = delete;
  EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

 private:
  const char* mName;
};

class UpgradeTest : public AppVarsTest {
 protected:
  UpgradeTest()
      : mMachine(HKEY_LOCAL_MACHINE, "Software\\Quorvale"),
        mUser(HKEY_CURRENT_USER, "Software\\Quorvale"),
        mOldLog("OLD_SETUP_LOG", mRoot.Join("calls.txt")),
        mOldExit("OLD_SETUP_EXIT", "7") {}
  void SetUp() override {
    AppVarsTest::SetUp();
    AllowOpenHandles("the system keeps handles of its message queue");
    ::Run().setupFlags = kQuiet;
    mOld = mRoot.MakeFolder("old version");
    mWindows = mRoot.MakeFolder("windows");
    AppSetVariable("WinDir", mWindows.c_str());
    AppSetVariable("ProgDir", "(before)");
    OpenLog(mRoot.Path().c_str(), "test.log");
  }
  void Record(int version, const std::string& folder) {
    SetRegistryString(HKEY_LOCAL_MACHINE,
                      "Software\\Quorvale\\KVRX" + std::to_string(version) + "\\Directories", "ProgDir",
                      folder);
  }
  void InstallOld(int version) {
    Record(version, mOld);
    mProgram = mOld + (version == 4 ? "\\QLSetup.exe" : "\\Setup.exe");
    ASSERT_TRUE(CopyFileA(HelperPath("old_setup.exe").c_str(), mProgram.c_str(), TRUE));
  }
  // With this the old setup deletes its own program file, as a real one does.
  std::string Batch() const { return mRoot.Join("old.bat"); }
  std::string Log() const {
    const std::string text = mRoot.Read("test.log");
    return text.substr(text.find("\r\n") + 2);
  }
  std::string Calls() const { return mRoot.Has("calls.txt") ? mRoot.Read("calls.txt") : ""; }
  std::string ProgDir() const { return AppGetExpanded("ProgDir").Chars(); }

  TempDir mRoot;
  RegistryGuard mMachine;
  RegistryGuard mUser;
  EnvironmentGuard mOldLog;
  EnvironmentGuard mOldExit;
  std::string mOld;
  std::string mWindows;
  std::string mProgram;
};

TEST_F(UpgradeTest, NothingInstalled) {
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_TRUE(RemoveEarlierVersion(5));
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(ProgDir(), "(before)");
}

TEST_F(UpgradeTest, VersionBelow4Asserts) {
  AssertRecorder recorder;
  EXPECT_TRUE(RemoveEarlierVersion(3));
  EXPECT_EQ(recorder.Only(), "majVers >= 4");
}

TEST_F(UpgradeTest, StoreWithoutAFolder) {
  Record(5, "");
  EXPECT_TRUE(RemoveEarlierVersion(5));
  EXPECT_FALSE(AppVariableExists("OldMajVersion"));
}

TEST_F(UpgradeTest, MissingFolderIsIgnored) {
  Record(5, mRoot.Join("gone"));
  EXPECT_TRUE(RemoveEarlierVersion(5));
  EXPECT_FALSE(AppVariableExists("OldMajVersion"));
}

TEST_F(UpgradeTest, FolderWithoutTheSetupProgramIsIgnored) {
  Record(5, mOld);
  WriteWholeFile(mOld + "\\QLSetup.exe", "the name of version 4");
  EXPECT_TRUE(RemoveEarlierVersion(5));
  EXPECT_FALSE(AppVariableExists("OldMajVersion"));
  EXPECT_EQ(Log(), "");
}

TEST_F(UpgradeTest, Version5IsRemovedAndItsFolderTaken) {
  InstallOld(5);
  const EnvironmentGuard batch("OLD_SETUP_BATCH", Batch());
  EXPECT_TRUE(RemoveEarlierVersion(5));
  EXPECT_EQ(Calls(), "\"" + mProgram + "\" -Q -RS\ndone\n");
  EXPECT_EQ(std::string(AppGetExpanded("OldMajVersion")), "5");
  EXPECT_EQ(ProgDir(), mOld);
  EXPECT_EQ(Log(), "Removing old version by running " + mProgram + "\r\nVTW5Setup returned 7\r\n");
  EXPECT_FALSE(PathExists(mProgram));
  EXPECT_TRUE(WaitUntil([this] { return !PathExists(Batch()); }));
}

TEST_F(UpgradeTest, ProgramThatStaysIsWaitedForAndNamed) {
  InstallOld(5);
  const DWORD start = GetTickCount();
  EXPECT_TRUE(RemoveEarlierVersion(5));
  EXPECT_GE(GetTickCount() - start, 15000u);
  EXPECT_EQ(Log(), "Removing old version by running " + mProgram + "\r\n##ERROR: " + mProgram +
                       " did not delete itself.\r\nVTW5Setup returned 7\r\n");
  EXPECT_EQ(ProgDir(), mOld);
}

TEST_F(UpgradeTest, Version5ThatCannotBeStartedCountsAsRemoved) {
  Record(5, mOld);
  WriteWholeFile(mOld + "\\Setup.exe", "no program");
  EXPECT_TRUE(RemoveEarlierVersion(5));
  EXPECT_EQ(ProgDir(), mOld);
  EXPECT_NE(Log().find("##ERROR: " + mOld + "\\Setup.exe could not be started (error "), std::string::npos)
      << Log();
}

TEST_F(UpgradeTest, WaitsForTheOldSetupsWindow) {
  InstallOld(4);
  const EnvironmentGuard window("OLD_SETUP_WINDOW", "700");
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(Calls(), "\"" + mProgram + "\" -Q -RS\ndone\n");
}

TEST_F(UpgradeTest, Version4IsNotWaitedForAndItsFolderNotTaken) {
  InstallOld(4);
  const DWORD start = GetTickCount();
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_LT(GetTickCount() - start, 10000u);
  EXPECT_EQ(ProgDir(), "(before)");
  EXPECT_EQ(std::string(AppGetExpanded("OldMajVersion")), "4");
  EXPECT_EQ(Log(), "Removing old version by running " + mProgram +
                       "\r\nVTW4Setup returned 7\r\n"
                       "Couldn't restore VTW4 settings - couldn't open backup key\r\n");
}

TEST_F(UpgradeTest, Version4ThatCannotBeStartedFails) {
  Record(4, mOld);
  WriteWholeFile(mOld + "\\QLSetup.exe", "no program");
  EXPECT_FALSE(RemoveEarlierVersion(4));
}

TEST_F(UpgradeTest, Version4SettingsSurviveThroughTheBackup) {
  InstallOld(4);
  SetRegistryString(HKEY_CURRENT_USER, kUserKey, "Zoom", "150");
  SetRegistryString(HKEY_CURRENT_USER, kBackupKey, "Stale", "from an earlier try");
  const EnvironmentGuard key("OLD_SETUP_KEY", kUserKey);
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kUserKey, "Zoom"), "150");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kUserKey, "Stale"), std::nullopt);
  EXPECT_EQ(Log(), "Backing up VTW4 settings\r\nRemoving old version by running " + mProgram +
                       "\r\nVTW4Setup returned 7\r\nRestoring VTW4 settings\r\n");
}

TEST_F(UpgradeTest, Version4SubkeysSurvive) {
  InstallOld(4);
  SetRegistryString(HKEY_CURRENT_USER, std::string(kUserKey) + "\\Toolbar\\Deep", "Rows", "3");
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, std::string(kBackupKey) + "\\Toolbar\\Deep", "Rows"), "3");
}

TEST_F(UpgradeTest, BackupThatCannotBeWritten) {
  InstallOld(4);
  SetRegistryString(HKEY_CURRENT_USER, kUserKey, "Zoom", "150");
  const DeniedKey denied(HKEY_CURRENT_USER, kBackupKey);
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(Log().find("Error backing up VTW4 settings\r\n"), 0u) << Log();
}

TEST_F(UpgradeTest, SettingsThatCannotBeRestored) {
  InstallOld(4);
  SetRegistryString(HKEY_CURRENT_USER, kUserKey, "Zoom", "150");
  const DeniedKey denied(HKEY_CURRENT_USER, kUserKey);
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_NE(Log().find("\nCouldn't restore VTW4 settings - couldn't open KVRX4 key\r\n"), std::string::npos)
      << Log();
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kBackupKey, "Zoom"), "150");
}

TEST_F(UpgradeTest, Version4FilesSurvive) {
  InstallOld(4);
  CreateDirectoryA((mOld + "\\Fonts").c_str(), nullptr);
  const std::string fontInfo = mOld + "\\Fonts\\FontInfo.ini";
  const std::string html = mWindows + "\\vthtml.ini";
  WriteWholeFile(fontInfo, "fonts");
  WriteWholeFile(html, "html");
  const EnvironmentGuard files("OLD_SETUP_FILES", fontInfo + "|" + html);
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(ReadWholeFile(fontInfo), "fonts");
  EXPECT_EQ(ReadWholeFile(html), "html");
  const std::string fontTemp = mOld + "\\Fonts\\FontInfo.tmp";
  const std::string htmlTemp = mWindows + "\\vthtml.tmp";
  EXPECT_EQ(Log(), "Renaming " + fontInfo + " to " + fontTemp + "\r\nRenaming " + html + " to " + htmlTemp +
                       "\r\nRemoving old version by running " + mProgram +
                       "\r\nVTW4Setup returned 7\r\n"
                       "Couldn't restore VTW4 settings - couldn't open backup key\r\n"
                       "Renaming " +
                       fontTemp + " to " + fontInfo + "\r\nRenaming " + htmlTemp + " to " + html + "\r\n");
}

TEST_F(UpgradeTest, KeptFileReplacesWhatTheOldSetupLeftInItsPlace) {
  InstallOld(4);
  const std::string html = mWindows + "\\vthtml.ini";
  WriteWholeFile(html, "html");
  const EnvironmentGuard left("OLD_SETUP_NEW", html);
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(ReadWholeFile(html), "html");
  EXPECT_FALSE(PathExists(mWindows + "\\vthtml.tmp"));
  EXPECT_EQ(Log().find("##ERROR"), std::string::npos) << Log();
}

TEST_F(UpgradeTest, StaleTemporaryFileGivesWayToTheOriginal) {
  InstallOld(4);
  WriteWholeFile(mWindows + "\\vthtml.ini", "original");
  WriteWholeFile(mWindows + "\\vthtml.tmp", "stale");
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(ReadWholeFile(mWindows + "\\vthtml.ini"), "original");
  EXPECT_FALSE(PathExists(mWindows + "\\vthtml.tmp"));
}

TEST_F(UpgradeTest, StaleTemporaryFileWithoutAnOriginalStays) {
  InstallOld(4);
  WriteWholeFile(mWindows + "\\vthtml.tmp", "somebody's");
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(ReadWholeFile(mWindows + "\\vthtml.tmp"), "somebody's");
  EXPECT_FALSE(PathExists(mWindows + "\\vthtml.ini"));
}

TEST_F(UpgradeTest, StatusIsShownWhileTheOldSetupRuns) {
  ::Run().setupFlags = 0;
  AppSetVariable("SetupName", "Installation de Veltrane");
  InstallOld(4);
  const EnvironmentGuard window("OLD_SETUP_WINDOW", "700");
  EXPECT_TRUE(RemoveEarlierVersion(4));
  EXPECT_EQ(Log().find("Removing old version by running"), 0u) << Log();
  EXPECT_NE(Log().find("Suppression de Veltrane 4...\r\n"), std::string::npos) << Log();
}

}  // namespace
