// The one-shot registry jobs, on the real registry.
#include "stores/register.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/handle.h"
#include "messages/app_vars.h"
#include "support/assert_recorder.h"
#include "support/import_double.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"
#include "support/value_size.h"

namespace {

constexpr char kKey[] = "Software\\VTTestRegister";
constexpr char kStore[] = "REG*HKEY_CURRENT_USER\\Software\\VTTestRegister";

LSTATUS WINAPI FailingSet(HKEY, LPCSTR, DWORD, DWORD, const BYTE*, DWORD) { return ERROR_ACCESS_DENIED; }

// Deletes every key but "deep" and those that hold others.
decltype(&RegDeleteKeyW) sOriginalDelete = nullptr;
LSTATUS WINAPI FailingDelete(HKEY key, LPCWSTR name) {
  return std::wstring(name) == L"deep" ? ERROR_ACCESS_DENIED : sOriginalDelete(key, name);
}

// Opens every key but "shut".
decltype(&RegOpenKeyExW) sOriginalOpen = nullptr;
LSTATUS WINAPI FailingOpen(HKEY key, LPCWSTR name, DWORD options, REGSAM access, PHKEY opened) {
  return std::wstring(name) == L"shut" ? ERROR_ACCESS_DENIED
                                       : sOriginalOpen(key, name, options, access, opened);
}

class RegisterTest : public AppVarsTest {
 protected:
  static std::string Sub(const std::string& name) { return std::string(kKey) + '\\' + name; }
  void OpenTheLog() { ASSERT_TRUE(OpenLog(mDir.Path().c_str(), "a.log")); }
  // The log lines without the header.
  std::string Lines() {
    CloseAndRenameLog();
    const std::string log = mDir.Read("a.log");
    return log.substr(log.find("\r\n") + 2);
  }
  // A key that can be read only.
  static HKEY OpenReadOnly() {
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key);
    return key;
  }

  RegistryGuard mGuard{HKEY_CURRENT_USER, kKey};
  TempDir mDir;
};

// Creating

TEST_F(RegisterTest, CreatesTheKeyAndSetsText) {
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, Sub("a\\b").c_str(), "name", "text"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, Sub("a\\b"), "name"), "text");
}

TEST_F(RegisterTest, TextIsStoredWithItsTerminator) {
  const ValueSizes sizes;
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "name", "text"));
  EXPECT_EQ(sizes.Given(), std::vector<DWORD>{5});
  DWORD type = 0;
  DWORD size = 0;
  HKEY key = OpenReadOnly();
  EXPECT_EQ(RegQueryValueExA(key, "name", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
  RegCloseKey(key);
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(size, 5u);
}

TEST_F(RegisterTest, SetsNumbers) {
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "number", 0x80000001u));
  EXPECT_EQ(RegistryDword(HKEY_CURRENT_USER, kKey, "number"), 0x80000001u);
}

TEST_F(RegisterTest, SetsDataOfAnyType) {
  const char data[] = "\1\0\2";
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "bytes", data, 3, REG_BINARY));
  HKEY key = OpenReadOnly();
  char read[8];
  DWORD size = sizeof(read);
  DWORD type = 0;
  EXPECT_EQ(RegQueryValueExA(key, "bytes", nullptr, &type, reinterpret_cast<BYTE*>(read), &size),
            ERROR_SUCCESS);
  RegCloseKey(key);
  EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));
  EXPECT_EQ(std::string(read, size), std::string(data, 3));
}

TEST_F(RegisterTest, ExistingValueIsReplaced) {
  SetRegistryDword(HKEY_CURRENT_USER, kKey, "name", 5);
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "name", "text"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kKey, "name"), "text");
}

TEST_F(RegisterTest, EmptyAndAbsentNamesAreTheDefaultValue) {
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "", "one"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kKey, ""), "one");
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, nullptr, "two"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kKey, ""), "two");
}

TEST_F(RegisterTest, NothingIsLoggedOnSuccess) {
  OpenTheLog();
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "name", "text"));
  EXPECT_EQ(Lines(), "");
}

TEST_F(RegisterTest, KeyThatCannotBeCreatedIsLogged) {
  OpenTheLog();
  // The registry refuses key names of more than 255 characters.
  const std::string name = "Software\\" + std::string(300, 'x');
  EXPECT_FALSE(RegCreateKeyValue(HKEY_LOCAL_MACHINE, name.c_str(), "name", "<SubKey>"));
  EXPECT_EQ(Lines(), "RegCreateKeyValue couldn't create key, \"0x80000002\\" + name + "\".\r\n");
}

TEST_F(RegisterTest, ValueThatCannotBeSetIsLogged) {
  OpenTheLog();
  const ImportDouble setting("RegSetValueExA", reinterpret_cast<void*>(&FailingSet));
  EXPECT_FALSE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "name", "text"));
  EXPECT_EQ(Lines(),
            "RegCreateKeyValue couldn't set the value, \"name = text\" for key, "
            "\"0x80000001\\Software\\VTTestRegister\".\r\n");
}

TEST_F(RegisterTest, NumberThatCannotBeSetIsLogged) {
  OpenTheLog();
  const ImportDouble setting("RegSetValueExA", reinterpret_cast<void*>(&FailingSet));
  EXPECT_FALSE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "number", 4000000000u));
  EXPECT_FALSE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "bytes", "\1\2", 2, REG_BINARY));
  EXPECT_EQ(Lines(),
            "RegCreateKeyValue couldn't set the value, \"number = 4000000000\" for key, "
            "\"0x80000001\\Software\\VTTestRegister\".\r\n"
            "RegCreateKeyValue couldn't set the value, \"bytes = \" for key, "
            "\"0x80000001\\Software\\VTTestRegister\".\r\n");
}

TEST_F(RegisterTest, FailingDefaultValueIsLoggedAsSuch) {
  OpenTheLog();
  {
    const ImportDouble setting("RegSetValueExA", reinterpret_cast<void*>(&FailingSet));
    EXPECT_FALSE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, nullptr, "text"));
    EXPECT_FALSE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "", "text"));
  }
  const std::string line =
      "RegCreateKeyValue couldn't set the value, \"(Default) = text\" for key, "
      "\"0x80000001\\Software\\VTTestRegister\".\r\n";
  EXPECT_EQ(Lines(), line + line);
}

TEST_F(RegisterTest, KeyHandleIsShownAsEightHexadecimalDigits) {
  OpenTheLog();
  const HKEY key = reinterpret_cast<HKEY>(static_cast<uintptr_t>(0xABCDEF1));
  EXPECT_FALSE(RegCreateKeyValue(key, "sub", "name", "text"));
  EXPECT_EQ(Lines(), "RegCreateKeyValue couldn't create key, \"0x0ABCDEF1\\sub\".\r\n");
}

TEST_F(RegisterTest, VariablesDoNotDisturbTheLogLine) {
  for (const char* name : {"RootKey", "RootKey:08X", "SubKey", "ValueName", "ValueData", "A"})
    AppSetVariable(name, "variable");
  OpenTheLog();
  const HKEY key = reinterpret_cast<HKEY>(static_cast<uintptr_t>(0xABCDEF1));
  EXPECT_FALSE(RegCreateKeyValue(key, "<A>\\b", "name", "text"));
  EXPECT_EQ(Lines(), "RegCreateKeyValue couldn't create key, \"0x0ABCDEF1\\<A>\\b\".\r\n");
}

TEST_F(RegisterTest, NullTextIsReportedAndEmpty) {
  AssertRecorder recorder;
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "name", static_cast<const char*>(nullptr)));
  EXPECT_EQ(recorder.Only(), "value");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kKey, "name"), "");
}

// Querying

TEST_F(RegisterTest, QueryReadsText) {
  SetRegistryString(HKEY_CURRENT_USER, kKey, "name", "text");
  SetRegistryString(HKEY_CURRENT_USER, kKey, "", "default");
  Str value;
  EXPECT_TRUE(RegQueryString(HKEY_CURRENT_USER, kKey, "name", value));
  EXPECT_EQ(value, "text");
  EXPECT_TRUE(RegQueryString(HKEY_CURRENT_USER, kKey, "", value));
  EXPECT_EQ(value, "default");
  EXPECT_TRUE(RegQueryString(HKEY_CURRENT_USER, kKey, nullptr, value));
  EXPECT_EQ(value, "default");
}

TEST_F(RegisterTest, QueryFailsWithoutKeyOrValue) {
  Str value("kept");
  EXPECT_FALSE(RegQueryString(HKEY_CURRENT_USER, kKey, "name", value));
  SetRegistryString(HKEY_CURRENT_USER, kKey, "other", "text");
  EXPECT_FALSE(RegQueryString(HKEY_CURRENT_USER, kKey, "name", value));
  EXPECT_EQ(value, "kept");
}

TEST_F(RegisterTest, QueryReadsAtMost1024Bytes) {
  SetRegistryString(HKEY_CURRENT_USER, kKey, "fits", std::string(1023, 'x'));
  SetRegistryString(HKEY_CURRENT_USER, kKey, "long", std::string(1024, 'x'));
  Str value;
  EXPECT_TRUE(RegQueryString(HKEY_CURRENT_USER, kKey, "fits", value));
  EXPECT_EQ(value.Length(), 1023);
  EXPECT_FALSE(RegQueryString(HKEY_CURRENT_USER, kKey, "long", value));
}

TEST_F(RegisterTest, QueryTakesTextsOnly) {
  SetRegistryDword(HKEY_CURRENT_USER, kKey, "number", 0x41);
  Str value("kept");
  EXPECT_FALSE(RegQueryString(HKEY_CURRENT_USER, kKey, "number", value));
  EXPECT_EQ(value, "kept");
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "expand", "%TEMP%", 7, REG_EXPAND_SZ));
  EXPECT_TRUE(RegQueryString(HKEY_CURRENT_USER, kKey, "expand", value));
  EXPECT_EQ(value, "%TEMP%");
}

TEST_F(RegisterTest, QueryReadsTextWithoutTerminator) {
  EXPECT_TRUE(RegCreateKeyValue(HKEY_CURRENT_USER, kKey, "name", "text", 3, REG_SZ));
  Str value;
  EXPECT_TRUE(RegQueryString(HKEY_CURRENT_USER, kKey, "name", value));
  EXPECT_EQ(value, "tex");
}

TEST_F(RegisterTest, StorePathIsQueried) {
  SetRegistryString(HKEY_CURRENT_USER, kKey, "name", "text");
  Str value;
  EXPECT_TRUE(RegGetValueStr(kStore, "name", value));
  EXPECT_EQ(value, "text");
  EXPECT_FALSE(RegGetValueStr(kStore, "other", value));
  EXPECT_FALSE(RegGetValueStr("HKEY_CURRENT_USER\\Software\\VTTestRegister", "name", value));
  EXPECT_FALSE(RegGetValueStr("REG*HKEY_CURRENT_CONFIG\\x", "name", value));
}

TEST_F(RegisterTest, ExistenceOfKeysAndValues) {
  EXPECT_FALSE(RegKeyOrValueExists(kStore, nullptr));
  SetRegistryDword(HKEY_CURRENT_USER, kKey, "number", 1);
  EXPECT_TRUE(RegKeyOrValueExists(kStore, nullptr));
  EXPECT_TRUE(RegKeyOrValueExists(kStore, ""));
  EXPECT_TRUE(RegKeyOrValueExists(kStore, "number"));
  EXPECT_FALSE(RegKeyOrValueExists(kStore, "other"));
  EXPECT_TRUE(RegKeyOrValueExists("REG*HKEY_CURRENT_USER", nullptr));
  EXPECT_FALSE(RegKeyOrValueExists("C:\\file.ini", nullptr));
  EXPECT_FALSE(RegKeyOrValueExists("REG*unknown\\x", nullptr));
}

TEST_F(RegisterTest, ContainsTellsMissingOtherAndContained) {
  SetRegistryString(HKEY_CURRENT_USER, kKey, "name", "C:\\Veltrane\\veltrane.exe %1");
  SetRegistryString(HKEY_CURRENT_USER, kKey, "empty", "");
  Str value("kept");
  EXPECT_EQ(RegValueContains(HKEY_CURRENT_USER, kKey, "none", "x", &value), 0);
  EXPECT_EQ(RegValueContains(HKEY_CURRENT_USER, kKey, "empty", "", &value), 0);
  EXPECT_EQ(RegValueContains(HKEY_CURRENT_USER, Sub("none").c_str(), "name", "x", &value), 0);
  EXPECT_EQ(value, "kept");
  EXPECT_EQ(RegValueContains(HKEY_CURRENT_USER, kKey, "name", "notepad", &value), 1);
  EXPECT_EQ(value, "C:\\Veltrane\\veltrane.exe %1");
  EXPECT_EQ(RegValueContains(HKEY_CURRENT_USER, kKey, "name", "veltrane.exe", nullptr), 2);
  EXPECT_EQ(RegValueContains(HKEY_CURRENT_USER, kKey, "name", "VELTRANE.EXE", nullptr), 1);
  EXPECT_EQ(RegValueContains(HKEY_CURRENT_USER, kKey, "name", "", nullptr), 2);
}

TEST_F(RegisterTest, ContainsReadsAtMost1024Bytes) {
  SetRegistryString(HKEY_CURRENT_USER, kKey, "long", std::string(2000, 'x'));
  EXPECT_EQ(RegValueContains(HKEY_CURRENT_USER, kKey, "long", "x", nullptr), 0);
}

// Deleting

TEST_F(RegisterTest, DeletesAValueOfASubkey) {
  SetRegistryString(HKEY_CURRENT_USER, Sub("a"), "name", "text");
  SetRegistryString(HKEY_CURRENT_USER, Sub("a"), "other", "text");
  EXPECT_TRUE(RegDeleteSubKeyValue(HKEY_CURRENT_USER, Sub("a").c_str(), "name"));
  EXPECT_FALSE(RegistryString(HKEY_CURRENT_USER, Sub("a"), "name"));
  EXPECT_TRUE(RegistryString(HKEY_CURRENT_USER, Sub("a"), "other"));
  EXPECT_TRUE(RegDeleteSubKeyValue(HKEY_CURRENT_USER, Sub("a").c_str(), "name"));
  EXPECT_TRUE(RegDeleteSubKeyValue(HKEY_CURRENT_USER, Sub("none").c_str(), "name"));
}

TEST_F(RegisterTest, DeletingAValueClosesTheGivenKey) {
  SetRegistryString(HKEY_CURRENT_USER, Sub("a"), "name", "text");
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kKey, 0, KEY_READ | KEY_WRITE, &key), ERROR_SUCCESS);
  EXPECT_TRUE(RegDeleteSubKeyValue(key, "a", "name"));
  EXPECT_FALSE(RegistryString(HKEY_CURRENT_USER, Sub("a"), "name"));
  DWORD count = 0;
  EXPECT_EQ(RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr),
            ERROR_INVALID_HANDLE);
}

TEST_F(RegisterTest, DeletesATree) {
  SetRegistryString(HKEY_CURRENT_USER, Sub("a\\b\\c"), "name", "text");
  SetRegistryString(HKEY_CURRENT_USER, Sub("a\\d"), "name", "text");
  SetRegistryString(HKEY_CURRENT_USER, Sub("other"), "name", "text");
  EXPECT_EQ(RegDeleteKeyTree(HKEY_CURRENT_USER, Sub("a").c_str()), 0);
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a")));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("other")));
}

TEST_F(RegisterTest, DeletingAMissingTreeDoesNothing) {
  EXPECT_EQ(RegDeleteKeyTree(HKEY_CURRENT_USER, Sub("none").c_str()), 0);
}

TEST_F(RegisterTest, EmptySubkeyIsNeverDeleted) {
  SetRegistryString(HKEY_CURRENT_USER, Sub("a"), "name", "text");
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kKey, 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
  for (const char* subKey : {static_cast<const char*>(nullptr), "", "\\", "\\\\"}) {
    EXPECT_EQ(RegDeleteKeyTree(key, subKey), 1);
    EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a")));
  }
  RegCloseKey(key);
}

TEST_F(RegisterTest, KeyThatStaysEndsTheWalkAndIsCounted) {
  for (const char* name : {"a\\one", "a\\two\\deep", "a\\zzz"})
    SetRegistryString(HKEY_CURRENT_USER, Sub(name), "name", "text");
  const ImportDouble deleting("RegDeleteKeyW", reinterpret_cast<void*>(&FailingDelete));
  sOriginalDelete = reinterpret_cast<decltype(&RegDeleteKeyW)>(deleting.Original());
  // "deep" stays; so do "two" and "a" above it, and "zzz" is not reached any more.
  EXPECT_EQ(RegDeleteKeyTree(HKEY_CURRENT_USER, Sub("a").c_str()), 3);
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a\\one")));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a\\two\\deep")));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a\\zzz")));
}

TEST_F(RegisterTest, KeyThatCannotBeOpenedEndsTheWalkAndIsCounted) {
  for (const char* name : {"a\\one", "a\\shut\\x", "a\\zzz"})
    SetRegistryString(HKEY_CURRENT_USER, Sub(name), "name", "text");
  const ImportDouble opening("RegOpenKeyExW", reinterpret_cast<void*>(&FailingOpen));
  sOriginalOpen = reinterpret_cast<decltype(&RegOpenKeyExW)>(opening.Original());
  EXPECT_EQ(RegDeleteKeyTree(HKEY_CURRENT_USER, Sub("a").c_str()), 2);  // "shut" and "a" above it
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a\\one")));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a\\shut\\x")));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a\\zzz")));
}

TEST_F(RegisterTest, KeysWithNamesOfOtherScriptsAreDeleted) {
  SetRegistryString(HKEY_CURRENT_USER, Sub("a"), "name", "text");
  for (const wchar_t* name :
       {L"Software\\VTTestRegister\\a\\\u65e5\u672c\\deep", L"Software\\VTTestRegister\\a\\\u0416"}) {
    KeyHandle key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_WRITE, nullptr, key.Put(), nullptr),
              ERROR_SUCCESS);
  }
  EXPECT_EQ(RegDeleteKeyTree(HKEY_CURRENT_USER, Sub("a").c_str()), 0);
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a")));
}

TEST_F(RegisterTest, DeepTreesAreDeleted) {
  std::string path = Sub("a");
  for (int i = 0; i < 100; ++i) path += "\\k";
  SetRegistryString(HKEY_CURRENT_USER, path, "name", "text");
  EXPECT_EQ(RegDeleteKeyTree(HKEY_CURRENT_USER, Sub("a").c_str()), 0);
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, Sub("a")));
}

// Names and folders

TEST(RootKey, Names) {
  EXPECT_EQ(RootKeyFromName("HKEY_CLASSES_ROOT"), HKEY_CLASSES_ROOT);
  EXPECT_EQ(RootKeyFromName("HKEY_CURRENT_USER"), HKEY_CURRENT_USER);
  EXPECT_EQ(RootKeyFromName("HKEY_LOCAL_MACHINE"), HKEY_LOCAL_MACHINE);
  EXPECT_EQ(RootKeyFromName("HKEY_DYN_DATA"), HKEY_DYN_DATA);
  EXPECT_EQ(RootKeyFromName("HKEY_CURRENT_CONFIG"), HKEY_CURRENT_CONFIG);
  EXPECT_EQ(RootKeyFromName("HKEY_USERS"), HKEY_USERS);
  EXPECT_EQ(RootKeyFromName("REG*HKEY_USERS"), HKEY_USERS);
}

TEST(RootKey, OthersAreNone) {
  for (const char* name : {"", "REG*", "reg*HKEY_USERS", "HKEY_USER", "HKEY_USERS\\", "hkey_users",
                           "REG*REG*HKEY_USERS", "HKEY_PERFORMANCE_DATA", "HKCU"})
    EXPECT_EQ(RootKeyFromName(name), nullptr) << name;
  EXPECT_EQ(RootKeyFromName(nullptr), nullptr);
}

TEST(ProgramFiles, FolderComesFromTheRegistry) {
  const RegistryValueGuard guard(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion",
                                 "ProgramFilesDir");
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir",
                    "X:\\Progs");
  char buffer[260] = "before";
  EXPECT_TRUE(GetProgramFilesDir(buffer, sizeof(buffer)));
  EXPECT_STREQ(buffer, "X:\\Progs");
  EXPECT_TRUE(GetProgramFilesDir(buffer, 9));
  char small[9] = "before";
  EXPECT_FALSE(GetProgramFilesDir(small, 8));
  EXPECT_STREQ(small, "before");
}

TEST(ProgramFiles, MissingValueFails) {
  constexpr char kVersion[] = "Software\\Microsoft\\Windows\\CurrentVersion";
  const RegistryValueGuard guard(HKEY_LOCAL_MACHINE, kVersion, "ProgramFilesDir");
  RegDeleteSubKeyValue(HKEY_LOCAL_MACHINE, kVersion, "ProgramFilesDir");
  char buffer[260] = "before";
  EXPECT_FALSE(GetProgramFilesDir(buffer, sizeof(buffer)));
  EXPECT_STREQ(buffer, "before");
}

}  // namespace
