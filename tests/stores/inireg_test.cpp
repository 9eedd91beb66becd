// INI stores over registry keys, on the real registry.
#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "ini_support.h"
#include "support/assert_recorder.h"
#include "support/import_double.h"
#include "support/registry_guard.h"
#include "support/value_size.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kKey[] = "Software\\VTTestIni";
constexpr char kStore[] = "REG*HKEY_CURRENT_USER\\Software\\VTTestIni";

class IniRegTest : public testing::Test {
 protected:
  static std::string Sub(const std::string& name) { return std::string(kKey) + '\\' + name; }
  static void Set(const std::string& section, const std::string& name, const std::string& value) {
    SetRegistryString(HKEY_CURRENT_USER, Sub(section), name, value);
  }
  static std::optional<std::string> Get(const std::string& section, const std::string& name) {
    return RegistryString(HKEY_CURRENT_USER, Sub(section), name);
  }
  static bool Has(const std::string& section) { return RegistryKeyExists(HKEY_CURRENT_USER, Sub(section)); }
  static void SetBytes(const std::string& section, const std::string& name, DWORD type,
                       const std::string& bytes) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, Sub(section).c_str(), &key), ERROR_SUCCESS);
    EXPECT_EQ(
        RegSetValueExA(key, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()), bytes.size()),
        ERROR_SUCCESS);
    RegCloseKey(key);
  }
  // Type and bytes of a value: "4:2a000000"-like for comparing.
  static std::string Raw(const std::string& section, const std::string& name) {
    HKEY key = nullptr;
    if (RegOpenKeyA(HKEY_CURRENT_USER, Sub(section).c_str(), &key) != ERROR_SUCCESS) return "no key";
    DWORD type = 0;
    DWORD size = 0;
    std::string bytes;
    LSTATUS status = RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, &size);
    if (status == ERROR_SUCCESS) {
      bytes.resize(size);
      status =
          RegQueryValueExA(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
    }
    RegCloseKey(key);
    return status == ERROR_SUCCESS ? std::to_string(type) + ':' + bytes : "none";
  }
  static IniStorePtr Open(bool readOnly) { return IniOpen(kStore, readOnly); }

  RegistryGuard mGuard{HKEY_CURRENT_USER, kKey};
};

// Paths

TEST(IniParsePath, RegistryPaths) {
  const struct {
    const char* path;
    HKEY root;
    const char* subKey;
  } rows[] = {
      {"REG*HKEY_CLASSES_ROOT\\.eqn", HKEY_CLASSES_ROOT, ".eqn"},
      {"REG*HKEY_CURRENT_USER\\Software\\A b", HKEY_CURRENT_USER, "Software\\A b"},
      {"REG*HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX5", HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX5"},
      {"REG*HKEY_USERS\\.Default", HKEY_USERS, ".Default"},
      {"REG*HKEY_CURRENT_USER", HKEY_CURRENT_USER, ""},
      {"REG*HKEY_CURRENT_USER\\", HKEY_CURRENT_USER, ""},
  };
  for (const auto& row : rows) {
    HKEY root = nullptr;
    Str subKey("before");
    EXPECT_TRUE(IniParsePath(row.path, root, subKey)) << row.path;
    EXPECT_EQ(root, row.root);
    EXPECT_EQ(subKey, row.subKey);
  }
}

TEST(IniParsePath, UnknownRootsFail) {
  for (const char* path :
       {"REG*HKEY_CURRENT_CONFIG\\Software", "REG*HKEY_DYN_DATA\\x", "REG*HKCU\\Software",
        "REG*hkey_current_user\\Software", "REG*HKEY_CURRENT_USERS\\x", "REG*\\Software", "REG*"}) {
    HKEY root = HKEY_USERS;
    Str subKey;
    EXPECT_FALSE(IniParsePath(path, root, subKey)) << path;
    EXPECT_EQ(IniOpen(path, true), nullptr);
    EXPECT_EQ(IniOpen(path, false), nullptr);
  }
}

TEST(IniParsePath, OtherPathsAreFiles) {
  for (const char* path :
       {"C:\\a.ini", "", "a", "reg*HKEY_CURRENT_USER\\x", " REG*HKEY_CURRENT_USER\\x", "REG"}) {
    HKEY root = HKEY_USERS;
    Str file;
    EXPECT_TRUE(IniParsePath(path, root, file));
    EXPECT_EQ(root, nullptr);
    EXPECT_EQ(file, path);
  }
}

// Opening and loading

TEST_F(IniRegTest, ReadOnlyNeedsTheKey) {
  EXPECT_EQ(Open(true), nullptr);
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kKey));
}

TEST_F(IniRegTest, WritableCreatesTheKey) {
  EXPECT_NE(Open(false), nullptr);
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, kKey));
}

TEST_F(IniRegTest, CreateMakesTheKey) {
  EXPECT_TRUE(IniCreate(kStore));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, kKey));
}

TEST_F(IniRegTest, SubkeysAreSectionsAndValuesAreKeys) {
  Set("Windows", "Help", "C:\\Help");
  Set("Directories", "ProgDir", "C:\\Veltrane");
  Set("Directories", "InstallFromDir", "D:\\");
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(ReadOf(ini.get(), "windows", "help"), "C:\\Help");
  EXPECT_EQ(ReadOf(ini.get(), "Directories", "ProgDir"), "C:\\Veltrane");
  EXPECT_EQ(ReadOf(ini.get(), "Directories", "InstallFromDir"), "D:\\");
}

TEST_F(IniRegTest, OwnValuesAndDeeperKeysAreNotRead) {
  SetRegistryString(HKEY_CURRENT_USER, kKey, "own", "1");
  Set("A", "k", "2");
  Set("A\\Deep", "k", "3");
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "[A] k=2");
}

TEST_F(IniRegTest, EmptySubkeyIsAnEmptySection) {
  Set("A", "k", "1");
  HKEY key = nullptr;
  RegCreateKeyA(HKEY_CURRENT_USER, Sub("Empty").c_str(), &key);
  RegCloseKey(key);
  const IniStorePtr ini = Open(true);
  EXPECT_TRUE(IniFindSection(ini.get(), "Empty"));
  EXPECT_EQ(SectionText(ini.get()), "[Empty]\n\n");
}

TEST_F(IniRegTest, DefaultValueHasAnEmptyKey) {
  Set("A", "", "default");
  const IniStorePtr ini = Open(true);
  EXPECT_EQ(ReadOf(ini.get(), "A", ""), "default");
}

TEST_F(IniRegTest, EncodedSubkeyNamesAreDecoded) {
  Set("$a$/b$_c$$d$41", "k", "1");
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "[a\\b c$dA] k=1");
}

TEST_F(IniRegTest, NamesWithoutDollarInFrontStandForThemselves) {
  Set("a$_b", "k", "1");
  const IniStorePtr ini = Open(true);
  EXPECT_EQ(Listing(ini.get()), "[a$_b] k=1");
}

TEST_F(IniRegTest, DataOfOtherTypesIsBoundedAndCutAtItsFirstNul) {
  SetBytes("A", "number", REG_DWORD, std::string("ab\0d", 4));
  SetBytes("A", "binary", REG_BINARY, "xyz");
  SetBytes("A", "nothing", REG_BINARY, "");
  SetBytes("A", "many", REG_BINARY, std::string(5000, 'z'));
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(ReadOf(ini.get(), "A", "number"), "ab");
  EXPECT_EQ(ReadOf(ini.get(), "A", "binary"), "xyz");
  EXPECT_EQ(ReadOf(ini.get(), "A", "nothing"), "");
  EXPECT_EQ(ReadOf(ini.get(), "A", "many"), std::string(511, 'z'));
}

TEST_F(IniRegTest, LongNameAndLongTextFitIntoOneKey) {
  const std::string name(200, 'n');
  Set("A", name, std::string(511, 'v'));
  const IniStorePtr ini = Open(true);
  EXPECT_EQ(ReadOf(ini.get(), "A", name.c_str()), std::string(511, 'v'));
}

TEST_F(IniRegTest, LineEndsInDataMakeNoFurtherLines) {
  Set("A", "k", "first\r\nx=second\n[B]");
  const IniStorePtr ini = Open(true);
  EXPECT_EQ(Listing(ini.get()), "[A] k=first");
}

TEST_F(IniRegTest, ManySectionsAreLoaded) {
  for (int i = 0; i < 150; ++i) Set("S" + std::to_string(i), "k", std::to_string(i));
  const IniStorePtr ini = Open(true);
  EXPECT_EQ(ReadOf(ini.get(), "S149", "k"), "149");
}

TEST_F(IniRegTest, StoresCanBeOpenTogether) {
  Set("A", "k", "1");
  SetRegistryString(HKEY_CURRENT_USER, "Software\\VTTestIni\\A\\Sub", "k", "2");
  const IniStorePtr first = Open(true);
  const IniStorePtr second = IniOpen("REG*HKEY_CURRENT_USER\\Software\\VTTestIni\\A", true);
  EXPECT_EQ(Listing(first.get()), "[A] k=1");
  EXPECT_EQ(Listing(second.get()), "[Sub] k=2");
}

LSTATUS WINAPI FailingEnumValue(HKEY, DWORD, LPSTR, LPDWORD, LPDWORD, LPDWORD, LPBYTE, LPDWORD) {
  return ERROR_REGISTRY_CORRUPT;
}
LSTATUS WINAPI FailingEnumKey(HKEY, DWORD, LPSTR, LPDWORD, LPDWORD, LPSTR, LPDWORD, PFILETIME) {
  return ERROR_REGISTRY_CORRUPT;
}
decltype(&RegOpenKeyExA) sOriginalOpen = nullptr;
LSTATUS WINAPI FailingOpen(HKEY key, LPCSTR name, DWORD options, REGSAM access, PHKEY opened) {
  if (name != nullptr && std::string(name) == "locked") return ERROR_ACCESS_DENIED;
  return sOriginalOpen(key, name, options, access, opened);
}

TEST_F(IniRegTest, UnreadableValuesFailTheOpening) {
  Set("A", "k", "1");
  const ImportDouble enumerating("RegEnumValueA", reinterpret_cast<void*>(&FailingEnumValue));
  EXPECT_EQ(Open(true), nullptr);
  EXPECT_EQ(Open(false), nullptr);
}

TEST_F(IniRegTest, UnreadableSubkeysFailTheOpening) {
  Set("A", "k", "1");
  Set("locked", "k", "1");
  {
    const ImportDouble enumerating("RegEnumKeyExA", reinterpret_cast<void*>(&FailingEnumKey));
    EXPECT_EQ(Open(true), nullptr);
  }
  {
    const ImportDouble opening("RegOpenKeyExA", reinterpret_cast<void*>(&FailingOpen));
    sOriginalOpen = reinterpret_cast<decltype(sOriginalOpen)>(opening.Original());
    EXPECT_EQ(Open(true), nullptr);
  }
  EXPECT_NE(Open(true), nullptr);
}

TEST_F(IniRegTest, StoreCanBeOpenedAfterAFailure) {
  Set("A", "k", "1");
  Set("B", "k", "2");
  {
    const ImportDouble enumerating("RegEnumValueA", reinterpret_cast<void*>(&FailingEnumValue));
    EXPECT_EQ(Open(true), nullptr);
  }
  const IniStorePtr ini = Open(true);
  EXPECT_EQ(ReadOf(ini.get(), "A", "k"), "1");
  EXPECT_EQ(ReadOf(ini.get(), "B", "k"), "2");
}

TEST_F(IniRegTest, ValueNamesOf512CharactersFailTheOpening) {
  Set("A", std::string(511, 'n'), "fits");
  EXPECT_EQ(ReadOf(Open(true).get(), "A", std::string(511, 'n').c_str()), "fits");
  Set("A", std::string(512, 'n'), "long");
  EXPECT_EQ(Open(true), nullptr);
}

// Writing back

TEST_F(IniRegTest, ReadOnlyStoreWritesNothing) {
  Set("A", "k", "1");
  IniStorePtr ini = Open(true);
  IniFindSection(ini.get(), "A");
  IniWriteString(ini.get(), "k", "2");
  IniFindSection(ini.get(), "B", true);
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("A", "k"), "1");
  EXPECT_FALSE(Has("B"));
}

TEST_F(IniRegTest, ChangedKeysAreWritten) {
  Set("A", "k", "1");
  Set("A", "other", "2");
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "A");
  IniWriteString(ini.get(), "k", "changed");
  IniWriteString(ini.get(), "new", "3");
  IniDeleteKey(ini.get(), "other");
  const ValueSizes sizes;
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(sizes.Given(), (std::vector<DWORD>{8, 2}));
  EXPECT_EQ(Raw("A", "k"), std::string("1:changed\0", 10));
  EXPECT_EQ(Get("A", "new"), "3");
  EXPECT_EQ(Get("A", "other"), std::nullopt);
}

TEST_F(IniRegTest, EachEditAloneIsAChange) {
  bool (*const edits[])(IniStore*) = {
      [](IniStore* ini) { return IniDeleteKey(ini, "gone"); },
      [](IniStore* ini) { return IniWriteString(ini, "k", "1"); },
      [](IniStore* ini) { return IniAddString(ini, "k", "2"); },
      [](IniStore* ini) { return IniSetSection(ini, "A", BlockOf("[A]\nx=1\n\n")); },
  };
  for (const auto& edit : edits) {
    Set("A", "gone", "1");
    IniStorePtr ini = Open(false);
    ASSERT_TRUE(IniFindSection(ini.get(), "A"));
    EXPECT_TRUE(edit(ini.get()));
    Set("A", "of another", "1");  // does not outlive the rewriting of a changed section
    EXPECT_TRUE(IniClose(ini));
    EXPECT_EQ(Get("A", "of another"), std::nullopt);
  }
  EXPECT_EQ(Get("A", "gone"), std::nullopt);
  EXPECT_EQ(Get("A", "x"), "1");
}

TEST_F(IniRegTest, NewSectionsAreSubkeys) {
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "New", true);
  IniWriteString(ini.get(), "k", "v");
  IniFindSection(ini.get(), "Empty", true);
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("New", "k"), "v");
  EXPECT_TRUE(Has("Empty"));
}

TEST_F(IniRegTest, DeletedSectionsGoWithAllTheirSubkeys) {
  Set("A", "k", "1");
  Set("A\\Deep\\Deeper", "k", "1");
  Set("B", "k", "2");
  IniStorePtr ini = Open(false);
  IniDeleteSection(ini.get(), "A");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_FALSE(Has("A"));
  EXPECT_EQ(Get("B", "k"), "2");
}

TEST_F(IniRegTest, ChangedSectionsLoseTheirSubkeys) {
  Set("A", "k", "1");
  Set("A\\Deep", "k", "1");
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "A");
  IniWriteString(ini.get(), "k", "2");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("A", "k"), "2");
  EXPECT_FALSE(Has("A\\Deep"));
}

TEST_F(IniRegTest, UnchangedSectionsKeepSubkeysAndForeignValues) {
  const std::string multi("a\0b\0\0", 5);
  Set("Other", "text", "1");
  Set("Other\\Deep", "k", "1");
  SetBytes("Other", "number", REG_DWORD, std::string("\1\2\0\0", 4));
  SetBytes("Other", "binary", REG_BINARY, std::string("\xff\0\xfe", 3));
  SetBytes("Other", "expand", REG_EXPAND_SZ, std::string("%TEMP%\0", 7));
  SetBytes("Other", "multi", REG_MULTI_SZ, multi);
  Set("Other", "long", std::string(2000, 'x'));
  Set("Other", "lines", "a\r\nb=c");
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "Directories", true);
  IniWriteString(ini.get(), "ProgDir", "C:\\Veltrane");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("Directories", "ProgDir"), "C:\\Veltrane");
  EXPECT_EQ(Raw("Other", "number"), "4:" + std::string("\1\2\0\0", 4));
  EXPECT_EQ(Raw("Other", "binary"), "3:" + std::string("\xff\0\xfe", 3));
  EXPECT_EQ(Raw("Other", "expand"), "2:" + std::string("%TEMP%\0", 7));
  EXPECT_EQ(Raw("Other", "multi"), "7:" + multi);
  EXPECT_EQ(Get("Other", "long"), std::string(2000, 'x'));
  EXPECT_EQ(Get("Other", "lines"), "a\r\nb=c");
  EXPECT_EQ(Raw("Other", "b"), "none");
  EXPECT_EQ(Get("Other", "text"), "1");
  EXPECT_TRUE(Has("Other\\Deep"));
}

TEST_F(IniRegTest, UnchangedSectionsAreWrittenAgainAsTheyWereRead) {
  Set("A", "text", "read");
  SetBytes("A", "number", REG_DWORD, std::string("x\0\0\0", 4));
  IniStorePtr ini = Open(false);
  Set("A", "text", "changed meanwhile");
  SetBytes("A", "number", REG_DWORD, std::string("y\0\0\0", 4));
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("A", "text"), "read");
  EXPECT_EQ(Raw("A", "number"), "4:" + std::string("y\0\0\0", 4));
}

TEST_F(IniRegTest, UnchangedSectionDeletedMeanwhileIsMadeAgain) {
  Set("A", "k", "1");
  IniStorePtr ini = Open(false);
  DeleteRegistryTree(HKEY_CURRENT_USER, Sub("A"));
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("A", "k"), "1");
}

TEST_F(IniRegTest, RenamedSectionIsWrittenUnderItsNewName) {
  Set("A", "k", "1");
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "A");
  IniRenameSection(ini.get(), "B");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("B", "k"), "1");
}

TEST_F(IniRegTest, DecodedNamesAreWrittenAsTheyAreHeld) {
  Set("$a$_b", "k", "1");
  IniStorePtr ini = Open(false);
  {
    AssertRecorder recorder;
    EXPECT_TRUE(IniClose(ini));
    EXPECT_EQ(recorder.Only(), "KeyIsValid(szCurrentKeyName)");
  }
  EXPECT_EQ(Get("a b", "k"), "1");
  EXPECT_EQ(Get("$a$_b", "k"), "1");
}

TEST_F(IniRegTest, DefaultValueIsWritten) {
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "A", true);
  IniWriteString(ini.get(), "", "default");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("A", ""), "default");
}

TEST_F(IniRegTest, OddNamesAreReportedOnceAndWritten) {
  Set("A", "two words", "1");
  Set("B", "two words", "2");
  Set("B", "a-b", "3");
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "A");
  IniWriteString(ini.get(), "k", "4");
  AssertRecorder recorder;
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(recorder.Texts(), (Texts{"KeyIsValid(szValueName)", "KeyIsValid(szValueName)"}));
  EXPECT_EQ(Get("A", "two words"), "1");
  EXPECT_EQ(Get("B", "two words"), "2");
  EXPECT_EQ(Get("B", "a-b"), "3");
}

TEST_F(IniRegTest, OddSectionNamesAreReportedAndWritten) {
  IniStorePtr ini = Open(false);
  AssertRecorder recorder;
  IniFindSection(ini.get(), "two words", true);
  IniWriteString(ini.get(), "k", "1");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(recorder.Texts(), (Texts{"KeyIsValid(section)", "KeyIsValid(szCurrentKeyName)"}));
  EXPECT_EQ(Get("two words", "k"), "1");
}

TEST_F(IniRegTest, CommentsAndOtherLinesAreSkipped) {
  IniStorePtr ini = Open(false);
  IniSetSection(ini.get(), "A", BlockOf("[A]\n; note=1\nfile line\n\nk=1\n\n"));
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("A", "k"), "1");
  EXPECT_EQ(Raw("A", "; note"), "none");
  EXPECT_EQ(Raw("A", "file line"), "none");
}

TEST_F(IniRegTest, SectionWithoutHeaderIsNotWritten) {
  Set("A", "k", "1");
  IniStorePtr ini = Open(false);
  IniSetSection(ini.get(), "A", BlockOf("no header\nx=1\n\n"));
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Raw("A", "x"), "none");
  EXPECT_EQ(Raw("", "x"), "none");
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, kKey));
}

TEST_F(IniRegTest, ValuesBehindOneThatBeginsWithABracketStayInTheirSubkey) {
  Set("A", "[x", "y");
  Set("A", "z", "1");
  Set("B", "k", "1");
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "A");
  EXPECT_TRUE(IniWriteString(ini.get(), "k", "2"));
  AssertRecorder recorder;
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(recorder.Only(), "KeyIsValid(szValueName)");
  EXPECT_EQ(Get("A", "k"), "2");
  EXPECT_EQ(Get("A", "[x"), "y");
  EXPECT_EQ(Get("A", "z"), "1");
  EXPECT_EQ(Raw("B", "z"), "none");
}

TEST_F(IniRegTest, ValuesOfADeletedSectionGoNowhereElse) {
  Set("A", "k", "1");
  Set("B", "[x", "y");
  Set("B", "z", "1");
  IniStorePtr ini = Open(false);
  IniDeleteSection(ini.get(), "B");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_FALSE(Has("B"));
  EXPECT_EQ(Get("A", "k"), "1");
  EXPECT_EQ(Raw("A", "[x"), "none");
  EXPECT_EQ(Raw("A", "z"), "none");
}

TEST_F(IniRegTest, EveryHeaderOfASectionsTextBeginsASubkey) {
  IniStorePtr ini = Open(false);
  EXPECT_TRUE(IniSetSection(ini.get(), "A", BlockOf("[A]\nk=1\n[B]\nk=2\n\n")));
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("A", "k"), "1");
  EXPECT_EQ(Get("B", "k"), "2");
}

TEST_F(IniRegTest, LongValuesAreWrittenWhole) {
  IniStorePtr ini = Open(false);
  IniFindSection(ini.get(), "A", true);
  IniWriteString(ini.get(), "k", std::string(2000, 'x').c_str());
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Get("A", "k"), std::string(2000, 'x'));
}

TEST_F(IniRegTest, LeavingTheScopeWritesBack) {
  {
    const IniStorePtr ini = Open(false);
    IniFindSection(ini.get(), "A", true);
    IniWriteString(ini.get(), "k", "1");
  }
  EXPECT_EQ(Get("A", "k"), "1");
}

TEST_F(IniRegTest, UnwritableSectionIsSkippedSilently) {
  IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  AssertRecorder recorder;
  // A name that the registry refuses: longer than 255 characters.
  IniFindSection(ini.get(), std::string(300, 'x').c_str(), true);
  IniWriteString(ini.get(), "k", "1");
  IniFindSection(ini.get(), "B", true);
  IniWriteString(ini.get(), "k", "2");
  EXPECT_FALSE(IniClose(ini));
  EXPECT_TRUE(recorder.Texts().empty());
  EXPECT_EQ(Get("B", "k"), "2");
}

TEST_F(IniRegTest, RootItselfCanBeRead) {
  const IniStorePtr ini = IniOpen("REG*HKEY_CURRENT_USER", true);
  ASSERT_NE(ini, nullptr);
  EXPECT_TRUE(IniFindSection(ini.get(), "Software"));
}

}  // namespace
