// Folder variables and the machine store.
#include "stores/inistuff.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <string>

#include "messages/app_vars.h"
#include "support/assert_recorder.h"
#include "support/import_double.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"

namespace {

constexpr char kKey[] = "Software\\VTTestMachine";

std::string Value(const char* name) {
  Str value;
  return AppGetVariable(name, value) ? value.Chars() : "-";
}

// Stand-ins for the system's answers.
UINT WINAPI NoFolder(LPSTR, UINT) { return 0; }
DWORD WINAPI NoTempFolder(DWORD, LPSTR) { return 0; }
DWORD GiveFolder(const std::string& folder, DWORD size, LPSTR buffer) {
  if (size <= folder.size()) return static_cast<DWORD>(folder.size()) + 1;
  lstrcpyA(buffer, folder.c_str());
  return static_cast<DWORD>(folder.size());
}
DWORD WINAPI LongTempFolder(DWORD size, LPSTR buffer) {
  return GiveFolder("C:\\" + std::string(256, 't') + '\\', size, buffer);
}
DWORD WINAPI RootAsTempFolder(DWORD size, LPSTR buffer) { return GiveFolder("D:\\", size, buffer); }

class FolderVariablesTest : public AppVarsTest {};

TEST_F(FolderVariablesTest, NameTheFoldersOfTheSystem) {
  SetFolderVariables();
  char folder[MAX_PATH];
  GetWindowsDirectoryA(folder, sizeof(folder));
  EXPECT_EQ(Value("WinDir"), folder);
  GetSystemDirectoryA(folder, sizeof(folder));
  EXPECT_EQ(Value("SystemDir"), folder);
  SHGetFolderPathA(nullptr, CSIDL_APPDATA, nullptr, 0, folder);
  EXPECT_EQ(Value("UserAppDataDir"), folder);
}

TEST_F(FolderVariablesTest, TempDirHasNoTrailingBackslash) {
  SetFolderVariables();
  char folder[MAX_PATH];
  GetTempPathA(sizeof(folder), folder);
  EXPECT_EQ(Value("TempDir") + '\\', folder);
}

TEST_F(FolderVariablesTest, AreSetInThisOrder) {
  SetFolderVariables();
  std::string names;
  AppVars().ForEach([&](const char* name, const char*, bool isMutable) {
    EXPECT_TRUE(isMutable);
    names += std::string(name) + ' ';
    return true;
  });
  EXPECT_EQ(names, "UserAppDataDir TempDir SystemDir WinDir ");
}

TEST_F(FolderVariablesTest, FolderThatTheSystemDoesNotNameIsReportedAndEmpty) {
  const struct {
    const char* function;
    void* failing;
    const char* variable;
    const char* expression;
  } rows[] = {
      {"GetWindowsDirectoryA", reinterpret_cast<void*>(&NoFolder), "WinDir", "winDir.Length()"},
      {"GetSystemDirectoryA", reinterpret_cast<void*>(&NoFolder), "SystemDir", "sysDir.Length()"},
      {"GetTempPathA", reinterpret_cast<void*>(&NoTempFolder), "TempDir", "tempDir.Length()"},
  };
  for (const auto& row : rows) {
    AppVars().Clear();
    AssertRecorder recorder;
    {
      const ImportDouble naming(row.function, row.failing);
      SetFolderVariables();
    }
    EXPECT_EQ(recorder.Only(), row.expression);
    EXPECT_EQ(Value(row.variable), "");
    EXPECT_NE(Value("UserAppDataDir"), "-") << "the other folders are named";
  }
}

TEST_F(FolderVariablesTest, FoldersMayHave260Characters) {
  const ImportDouble naming("GetTempPathA", reinterpret_cast<void*>(&LongTempFolder));
  SetFolderVariables();
  EXPECT_EQ(Value("TempDir"), "C:\\" + std::string(256, 't'));
}

TEST_F(FolderVariablesTest, RootLosesItsBackslash) {
  const ImportDouble naming("GetTempPathA", reinterpret_cast<void*>(&RootAsTempFolder));
  SetFolderVariables();
  EXPECT_EQ(Value("TempDir"), "D:");
}

class MachineStoreTest : public AppVarsTest {
 protected:
  static void UseStore() { AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VTTestMachine"); }
  static std::string Sub(const char* name) { return std::string(kKey) + '\\' + name; }
  static void Set(const char* section, const char* name, const char* value) {
    SetRegistryString(HKEY_CURRENT_USER, Sub(section), name, value);
  }
  static std::string Get(const char* section, const char* name) {
    return RegistryString(HKEY_CURRENT_USER, Sub(section), name).value_or("-");
  }

  RegistryGuard mGuard{HKEY_CURRENT_USER, kKey};
};

// Reading

TEST_F(MachineStoreTest, WithoutItsVariableNothingIsRead) {
  Set("Directories", "ProgDir", "C:\\Veltrane");
  ReadMachineStore();
  EXPECT_TRUE(AppVars().IsEmpty());
}

TEST_F(MachineStoreTest, MissingStoreIsNoError) {
  UseStore();
  ReadMachineStore();
  EXPECT_EQ(Value("ProgDir"), "-");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kKey));
}

TEST_F(MachineStoreTest, HelpFolderIsRead) {
  UseStore();
  AppSetVariable("SetupHelpDir", "C:\\Old");
  Set("Windows", "Help", "C:\\Help");
  ReadMachineStore();
  EXPECT_EQ(Value("SetupHelpDir"), "C:\\Help");
}

TEST_F(MachineStoreTest, HelpFolderStaysWithoutAnEntry) {
  UseStore();
  AppSetVariable("SetupHelpDir", "C:\\Old");
  Set("Windows", "Other", "x");
  ReadMachineStore();
  EXPECT_EQ(Value("SetupHelpDir"), "C:\\Old");
}

TEST_F(MachineStoreTest, HelpFolderWithoutAnEntryKeepsItsPlaceholders) {
  UseStore();
  AppSetVariable("ProgDir", "C:\\NotYetKnown");
  AppSetVariable("SetupHelpDir", "<ProgDir>\\Help");
  Set("Windows", "Other", "x");
  ReadMachineStore();
  EXPECT_EQ(Value("SetupHelpDir"), "<ProgDir>\\Help");
}

TEST_F(MachineStoreTest, EmptyHelpFolderIsNotSet) {
  UseStore();
  Set("Windows", "Help", "");
  ReadMachineStore();
  EXPECT_EQ(Value("SetupHelpDir"), "-");
  AppSetVariable("SetupHelpDir", "C:\\Old");
  ReadMachineStore();
  EXPECT_EQ(Value("SetupHelpDir"), "C:\\Old");
}

TEST_F(MachineStoreTest, ProgramFolderIsReadTwofold) {
  UseStore();
  AppSetVariable("ProgDir", "C:\\Other");
  Set("Directories", "ProgDir", "C:\\Veltrane");
  Set("Directories", "InstallFromDir", "D:\\");
  ReadMachineStore();
  EXPECT_EQ(Value("ProgDir"), "C:\\Veltrane");
  EXPECT_EQ(Value("ini_ProgDir"), "C:\\Veltrane");
  EXPECT_EQ(Value("InstallFromDir"), "-");
}

TEST_F(MachineStoreTest, EmptyProgramFolderIsNotSet) {
  UseStore();
  AppSetVariable("ProgDir", "C:\\Other");
  Set("Directories", "ProgDir", "");
  ReadMachineStore();
  EXPECT_EQ(Value("ProgDir"), "C:\\Other");
  EXPECT_EQ(Value("ini_ProgDir"), "-");
}

TEST_F(MachineStoreTest, ReadingChangesNothing) {
  UseStore();
  SetRegistryDword(HKEY_CURRENT_USER, Sub("Windows"), "number", 5);
  Set("Directories", "ProgDir", "C:\\Veltrane");
  ReadMachineStore();
  EXPECT_EQ(RegistryDword(HKEY_CURRENT_USER, Sub("Windows"), "number"), 5u);
}

TEST_F(MachineStoreTest, PathIsExpanded) {
  AppSetVariable("Name", "VTTestMachine");
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\<Name>");
  Set("Directories", "ProgDir", "C:\\Veltrane");
  ReadMachineStore();
  EXPECT_EQ(Value("ProgDir"), "C:\\Veltrane");
}

TEST_F(MachineStoreTest, FileServesAsAStoreToo) {
  const TempDir dir;
  AppSetVariable("MachRegKey", dir.Write("a.ini", "[Directories]\nProgDir=C:\\Veltrane\n").c_str());
  ReadMachineStore();
  EXPECT_EQ(Value("ProgDir"), "C:\\Veltrane");
}

// Writing

TEST_F(MachineStoreTest, WithoutItsVariableNothingIsWritten) {
  AppSetVariable("ProgDir", "C:\\Veltrane");
  WriteMachineStore();
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kKey));
}

TEST_F(MachineStoreTest, FoldersAreWritten) {
  UseStore();
  AppSetVariable("ProgDir", "C:\\Veltrane");
  AppSetVariable("Drive", "D:");
  AppSetVariable("InstallFromDir", "<Drive>\\Setup");
  WriteMachineStore();
  EXPECT_EQ(Get("Directories", "ProgDir"), "C:\\Veltrane");
  EXPECT_EQ(Get("Directories", "InstallFromDir"), "D:\\Setup");
}

TEST_F(MachineStoreTest, UnsetAndEmptyFoldersAreLeft) {
  UseStore();
  Set("Directories", "ProgDir", "C:\\Old");
  Set("Directories", "InstallFromDir", "D:\\Old");
  AppSetVariable("InstallFromDir", "");
  WriteMachineStore();
  EXPECT_EQ(Get("Directories", "ProgDir"), "C:\\Old");
  EXPECT_EQ(Get("Directories", "InstallFromDir"), "D:\\Old");
}

TEST_F(MachineStoreTest, OtherSectionsStayAsTheyAre) {
  UseStore();
  AppSetVariable("ProgDir", "C:\\Veltrane");
  SetRegistryDword(HKEY_CURRENT_USER, Sub("Options"), "number", 0x41424344);
  SetRegistryString(HKEY_CURRENT_USER, kKey, "SetupMsg", "own value");
  WriteMachineStore();
  EXPECT_EQ(RegistryDword(HKEY_CURRENT_USER, Sub("Options"), "number"), 0x41424344u);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kKey, "SetupMsg"), "own value");
  EXPECT_EQ(Get("Directories", "ProgDir"), "C:\\Veltrane");
}

TEST_F(MachineStoreTest, WrittenFolderIsReadAgain) {
  UseStore();
  AppSetVariable("ProgDir", "C:\\Veltrane \xe9");
  WriteMachineStore();
  AppSetVariable("ProgDir", "C:\\Other");
  ReadMachineStore();
  EXPECT_EQ(Value("ProgDir"), "C:\\Veltrane \xe9");
}

}  // namespace
