#include "platform/WinRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/handle.h"
#include "support/assert_recorder.h"
#include "support/import_double.h"
#include "support/registry_guard.h"
#include "support/value_size.h"

namespace {

constexpr char kPath[] = "Software\\VTTestPlatform";
constexpr char kRooted[] = "HKEY_CURRENT_USER\\Software\\VTTestPlatform";

using List = std::vector<std::string>;

class WinRegistry : public testing::Test {
 protected:
  // The test's own key, created and open for writing.
  KWinRegistry& Key() {
    if (!mKey.IsValid()) {
      EXPECT_TRUE(mKey.OpenRooted(kRooted, wrWrite));
    }
    return mKey;
  }
  static std::string Below(const std::string& name) { return std::string(kPath) + "\\" + name; }
  static void SetBinary(const std::string& path, const std::string& name, DWORD type,
                        const std::string& bytes) {
    KeyHandle key;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.Put(),
                              nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegSetValueExA(key.Get(), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                             static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
  }
  static List SubKeys(KWinRegistry& key) {
    List names;
    Str name;
    for (uint32_t i = 0; key.EnumSubKey(i, name); i++) names.push_back(name.Chars());
    std::sort(names.begin(), names.end());
    return names;
  }
  static List Values(KWinRegistry& key) {
    List values;
    Str name, data;
    for (uint32_t i = 0; key.EnumValue(i, name, data); i++)
      values.push_back(std::string(name) + "=" + data.Chars());
    std::sort(values.begin(), values.end());
    return values;
  }

 private:
  RegistryGuard mGuard{HKEY_CURRENT_USER, kPath};
  KWinRegistry mKey;
};

// ---- opening ----

TEST_F(WinRegistry, NewObjectIsInvalidAndNotWritable) {
  KWinRegistry key;
  EXPECT_FALSE(key.IsValid());
  EXPECT_FALSE(key.IsWritable());
  EXPECT_EQ(key.Key(), nullptr);
}

TEST_F(WinRegistry, ModeValues) {
  EXPECT_EQ(wrRead, 1u);
  EXPECT_EQ(wrWrite, 2u);
  EXPECT_EQ(wrUpdate, 4u);
}

TEST_F(WinRegistry, ReadModeOpensExistingKeysOnly) {
  KWinRegistry key;
  EXPECT_FALSE(key.OpenRooted(kRooted, wrRead));
  EXPECT_FALSE(key.IsValid());
  SetRegistryString(HKEY_CURRENT_USER, kPath, "v", "text");
  EXPECT_TRUE(key.OpenRooted(kRooted, wrRead));
  EXPECT_TRUE(key.IsValid());
  EXPECT_FALSE(key.IsWritable());
  Str value;
  EXPECT_TRUE(key.GetValue("v", value));
}

TEST_F(WinRegistry, WriteModeCreatesMissingKeys) {
  KWinRegistry key;
  EXPECT_TRUE(key.OpenRooted((std::string(kRooted) + "\\a\\b").c_str(), wrWrite));
  EXPECT_TRUE(key.IsWritable());
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Below("a\\b")));
}

TEST_F(WinRegistry, WriteModeOpensExistingKeysForBoth) {
  SetRegistryString(HKEY_CURRENT_USER, kPath, "v", "text");
  Str value;
  EXPECT_TRUE(Key().GetValue("v", value));
  EXPECT_TRUE(Key().SetValue("w", "more"));
}

TEST_F(WinRegistry, UpdateModeOpensExistingKeysForBoth) {
  KWinRegistry key;
  EXPECT_FALSE(key.OpenRooted(kRooted, wrUpdate));
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kPath));
  SetRegistryString(HKEY_CURRENT_USER, kPath, "v", "text");
  ASSERT_TRUE(key.OpenRooted(kRooted, wrUpdate));
  EXPECT_TRUE(key.IsWritable());
  Str value;
  EXPECT_TRUE(key.GetValue("v", value));
  EXPECT_TRUE(key.SetValue("v", "new"));
}

LSTATUS WINAPI CloseOfARoot(HKEY key) {
  ADD_FAILURE() << key << " is closed";
  return ERROR_SUCCESS;
}

TEST_F(WinRegistry, BareRootTakesThePredefinedKeyItself) {
  KWinRegistry key;
  ASSERT_TRUE(key.OpenRooted("HKEY_CURRENT_USER", wrRead));
  EXPECT_EQ(key.Key(), HKEY_CURRENT_USER);
  EXPECT_FALSE(key.IsWritable());
  {
    // Some systems take no notice of it, so the result does not show it.
    const ImportDouble closing("RegCloseKey", reinterpret_cast<void*>(&CloseOfARoot));
    key.Close();
  }
  EXPECT_FALSE(key.IsValid());
  // The root is still there.
  SetRegistryString(HKEY_CURRENT_USER, kPath, "v", "text");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kPath, "v"), "text");
}

TEST_F(WinRegistry, RootWithABackslashOnlyIsTheRoot) {
  KWinRegistry key;
  ASSERT_TRUE(key.OpenRooted("HKEY_LOCAL_MACHINE\\", wrRead));
  EXPECT_EQ(key.Key(), HKEY_LOCAL_MACHINE);
}

TEST_F(WinRegistry, EveryRootByItsFullName) {
  const struct {
    const char* name;
    HKEY root;
  } rows[] = {
      {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},     {"HKEY_DYN_DATA", HKEY_DYN_DATA},
      {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},         {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
      {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},       {"HKEY_USERS", HKEY_USERS},
      {"HKEY_PERFORMANCE_DATA", HKEY_PERFORMANCE_DATA},
  };
  for (const auto& row : rows) {
    KWinRegistry key;
    EXPECT_TRUE(key.OpenRooted(row.name, wrRead)) << row.name;
    EXPECT_EQ(key.Key(), row.root) << row.name;
    EXPECT_TRUE(IsPredefinedKey(row.root)) << row.name;
  }
}

TEST_F(WinRegistry, AbbreviatedRootTakesTheFirstOfTheTable) {
  const struct {
    const char* name;
    HKEY root;
  } rows[] = {
      {"HKEY_CUR", HKEY_CURRENT_CONFIG},
      {"H", HKEY_CURRENT_CONFIG},
      {"HKEY_D", HKEY_DYN_DATA},
      {"HKEY_CL", HKEY_CLASSES_ROOT},
      {"HKEY_CURRENT_U", HKEY_CURRENT_USER},
      {"HKEY_L", HKEY_LOCAL_MACHINE},
      {"HKEY_U", HKEY_USERS},
      {"HKEY_P", HKEY_PERFORMANCE_DATA},
  };
  for (const auto& row : rows) {
    KWinRegistry key;
    EXPECT_TRUE(key.OpenRooted(row.name, wrRead)) << row.name;
    EXPECT_EQ(key.Key(), row.root) << row.name;
  }
}

TEST_F(WinRegistry, UnknownRootAsserts) {
  for (const char* path :
       {"HKEY_NONE", "HKEY_NONE\\Software", "hkey_current_user", "HKEY_USERSX", "\\Software", ""}) {
    AssertRecorder recorder;
    KWinRegistry key;
    EXPECT_FALSE(key.OpenRooted(path, wrRead)) << path;
    EXPECT_EQ(recorder.Only(), "unknown root key") << path;
    EXPECT_FALSE(key.IsValid());
  }
}

TEST_F(WinRegistry, NullPathAsserts) {
  AssertRecorder recorder;
  KWinRegistry key;
  EXPECT_FALSE(key.OpenRooted(nullptr, wrRead));
  EXPECT_EQ(recorder.Texts(), (List{"rootedPath", "unknown root key"}));
}

TEST_F(WinRegistry, OpeningAnOpenObjectAsserts) {
  Key();
  AssertRecorder recorder;
  EXPECT_TRUE(Key().OpenRooted("HKEY_LOCAL_MACHINE\\Software", wrRead));
  EXPECT_EQ(recorder.Only(), "! IsValid()");
  EXPECT_FALSE(Key().IsWritable());
}

TEST_F(WinRegistry, OpenKeyBelowAnother) {
  KWinRegistry child;
  EXPECT_FALSE(Key().OpenKey("child", child, wrRead));
  EXPECT_FALSE(child.IsValid());
  EXPECT_TRUE(Key().OpenKey("child", child, wrWrite));
  EXPECT_TRUE(child.IsWritable());
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Below("child")));
}

TEST_F(WinRegistry, OpenKeyIntoAnOpenObjectAsserts) {
  KWinRegistry child;
  ASSERT_TRUE(Key().OpenKey("a", child, wrWrite));
  AssertRecorder recorder;
  EXPECT_TRUE(Key().OpenKey("b", child, wrWrite));
  EXPECT_EQ(recorder.Only(), "mHKey == 0");
  EXPECT_TRUE(child.SetValue("v", "text"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, Below("b"), "v"), "text");
}

TEST_F(WinRegistry, OpenKeyChecksItsArguments) {
  AssertRecorder recorder;
  KWinRegistry invalid, child;
  EXPECT_FALSE(invalid.OpenKey("a", child, wrRead));
  EXPECT_EQ(recorder.Only(), "IsValid()");
  recorder.Clear();
  KWinRegistry copy;
  EXPECT_TRUE(Key().OpenKey(nullptr, copy, wrRead));  // the key itself
  EXPECT_EQ(recorder.Only(), "path");
}

TEST_F(WinRegistry, CloseOfAForeignlyClosedKeyAsserts) {
  KWinRegistry key;
  Key();
  ASSERT_TRUE(key.OpenRooted(kRooted, wrRead));
  RegCloseKey(key.Key());
  AssertRecorder recorder;
  key.Close();
  EXPECT_EQ(recorder.Only(), "result == ERROR_SUCCESS");
  EXPECT_FALSE(key.IsValid());
}

TEST_F(WinRegistry, ClosingTwiceIsHarmless) {
  Key().Close();
  Key();
  KWinRegistry key;
  key.Close();
  key.Close();
  EXPECT_FALSE(key.IsValid());
}

// ---- values ----

TEST_F(WinRegistry, SetAndGetValue) {
  EXPECT_TRUE(Key().SetValue("name", "some text"));
  Str value;
  EXPECT_TRUE(Key().GetValue("name", value));
  EXPECT_EQ(value, "some text");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kPath, "name"), "some text");
}

TEST_F(WinRegistry, ValueIsStoredAsTextWithItsEnd) {
  const ValueSizes sizes;
  EXPECT_TRUE(Key().SetValue("name", "abc"));
  EXPECT_EQ(sizes.Given(), std::vector<DWORD>{4});
  DWORD type = 0, size = 0;
  EXPECT_EQ(RegQueryValueExA(Key().Key(), "name", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
  EXPECT_EQ(type, DWORD{REG_SZ});
  EXPECT_EQ(size, 4u);
}

TEST_F(WinRegistry, AccentsAndEmptyTexts) {
  Str value;
  EXPECT_TRUE(Key().SetValue("\xe9t\xe9", "\xc9quation"));
  EXPECT_TRUE(Key().GetValue("\xe9t\xe9", value));
  EXPECT_EQ(value, "\xc9quation");
  EXPECT_TRUE(Key().SetValue("empty", ""));
  EXPECT_TRUE(Key().GetValue("empty", value));
  EXPECT_EQ(value, "");
}

TEST_F(WinRegistry, DefaultValue) {
  EXPECT_TRUE(Key().SetDefaultValue("unnamed"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kPath, ""), "unnamed");
  Str value;
  EXPECT_TRUE(Key().GetValue("", value));
  EXPECT_EQ(value, "unnamed");
}

TEST_F(WinRegistry, LongerValueThanTheCachedLength) {
  Str value;
  EXPECT_TRUE(Key().SetValue("a", "x"));
  EXPECT_TRUE(Key().GetValue("a", value));  // caches the lengths
  const std::string longer(3000, 'y');
  EXPECT_TRUE(Key().SetValue("a", longer.c_str()));
  EXPECT_TRUE(Key().GetValue("a", value));
  EXPECT_EQ(value, longer.c_str());
  // And one written by somebody else.
  const std::string foreign(9000, 'z');
  SetRegistryString(HKEY_CURRENT_USER, kPath, "a", foreign);
  EXPECT_TRUE(Key().GetValue("a", value));
  EXPECT_EQ(value, foreign.c_str());
}

TEST_F(WinRegistry, ExpandableTextIsNotExpanded) {
  SetBinary(kPath, "e", REG_EXPAND_SZ, std::string("%PATH%\\x", 9));
  Str value;
  EXPECT_TRUE(Key().GetValue("e", value));
  EXPECT_EQ(value, "%PATH%\\x");
}

TEST_F(WinRegistry, TextWithoutItsEndIsReadWhole) {
  SetBinary(kPath, "t", REG_SZ, "abc");
  Str value;
  EXPECT_TRUE(Key().GetValue("t", value));
  EXPECT_EQ(value, "abc");
}

TEST_F(WinRegistry, TextEndsAtItsFirstNul) {
  SetBinary(kPath, "t", REG_SZ, std::string("ab\0cd\0", 6));
  Str value;
  EXPECT_TRUE(Key().GetValue("t", value));
  EXPECT_EQ(value, "ab");
}

TEST_F(WinRegistry, OtherTypesGiveEmptyText) {
  SetRegistryDword(HKEY_CURRENT_USER, kPath, "d", 0x41424344);
  SetBinary(kPath, "b", REG_BINARY, "bytes");
  SetBinary(kPath, "m", REG_MULTI_SZ, std::string("a\0b\0\0", 5));
  for (const char* name : {"d", "b", "m", "missing"}) {
    Str value("left over");
    EXPECT_FALSE(Key().GetValue(name, value)) << name;
    EXPECT_EQ(value, "") << name;
  }
}

TEST_F(WinRegistry, DeleteValue) {
  EXPECT_TRUE(Key().SetValue("a", "x"));
  EXPECT_TRUE(Key().DeleteValue("a"));
  EXPECT_FALSE(RegistryString(HKEY_CURRENT_USER, kPath, "a"));
  EXPECT_FALSE(Key().DeleteValue("a"));
}

TEST_F(WinRegistry, DeleteValueWithoutNameKeepsTheDefaultValue) {
  EXPECT_TRUE(Key().SetDefaultValue("x"));
  AssertRecorder recorder;
  EXPECT_FALSE(Key().DeleteValue(nullptr));
  EXPECT_EQ(recorder.Only(), "name");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kPath, ""), "x");
  EXPECT_TRUE(Key().DeleteValue(""));
  EXPECT_FALSE(RegistryString(HKEY_CURRENT_USER, kPath, ""));
}

TEST_F(WinRegistry, WritingToAReadOnlyKeyAsserts) {
  Key().SetValue("a", "x");
  KWinRegistry reader;
  ASSERT_TRUE(reader.OpenRooted(kRooted, wrRead));
  AssertRecorder recorder;
  EXPECT_FALSE(reader.SetValue("a", "y"));
  EXPECT_EQ(recorder.Texts(), (List{"IsWritable()", "result == ERROR_SUCCESS"}));
  recorder.Clear();
  EXPECT_FALSE(reader.SetDefaultValue("y"));
  EXPECT_EQ(recorder.Texts(), (List{"IsWritable()", "result == ERROR_SUCCESS"}));
  recorder.Clear();
  EXPECT_FALSE(reader.DeleteValue("a"));
  EXPECT_EQ(recorder.Only(), "IsWritable()");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kPath, "a"), "x");
}

TEST_F(WinRegistry, DeletingBelowAReadOnlyKeyAsserts) {
  SetRegistryString(HKEY_CURRENT_USER, Below("sub"), "v", "x");
  KWinRegistry reader;
  ASSERT_TRUE(reader.OpenRooted(kRooted, wrRead));
  AssertRecorder recorder;
  (void)reader.DeleteKey("sub");
  ASSERT_FALSE(recorder.Texts().empty());
  EXPECT_EQ(recorder.Texts().front(), "IsWritable()");
}

TEST_F(WinRegistry, InvalidObjectAssertsInEveryOperation) {
  struct Row {
    const char* name;
    bool (*call)(KWinRegistry& key);
  };
  static Str text, data;
  static uint32_t index;
  const Row rows[] = {
      {"GetValue", [](KWinRegistry& key) { return key.GetValue("a", text); }},
      {"SetValue", [](KWinRegistry& key) { return key.SetValue("a", "b"); }},
      {"SetDefaultValue", [](KWinRegistry& key) { return key.SetDefaultValue("b"); }},
      {"DeleteValue", [](KWinRegistry& key) { return key.DeleteValue("a"); }},
      {"DeleteKey", [](KWinRegistry& key) { return key.DeleteKey("a"); }},
      {"CopyKey",
       [](KWinRegistry& key) {
         KWinRegistry dest;
         key.CopyKey(dest);
         return false;
       }},
      {"EnumSubKey", [](KWinRegistry& key) { return key.EnumSubKey(0, text); }},
      {"EnumValue",
       [](KWinRegistry& key) {
         index = 0;
         return key.EnumValue(index, text, data);
       }},
  };
  for (const Row& row : rows) {
    AssertRecorder recorder;
    KWinRegistry key;
    EXPECT_FALSE(row.call(key)) << row.name;
    ASSERT_FALSE(recorder.Texts().empty()) << row.name;
    EXPECT_EQ(recorder.Texts().front(), "IsValid()") << row.name;
  }
}

TEST_F(WinRegistry, NullNamesAndValuesAssert) {
  Key().SetDefaultValue("unnamed");
  AssertRecorder recorder;
  Str value;
  EXPECT_TRUE(Key().GetValue(nullptr, value));
  EXPECT_EQ(value, "unnamed");
  EXPECT_EQ(recorder.Only(), "name");
  recorder.Clear();
  EXPECT_TRUE(Key().SetValue("a", nullptr));
  EXPECT_EQ(recorder.Only(), "value");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kPath, "a"), "");
  recorder.Clear();
  EXPECT_TRUE(Key().SetValue(nullptr, "b"));
  EXPECT_EQ(recorder.Only(), "name");
  recorder.Clear();
  EXPECT_TRUE(Key().SetDefaultValue(nullptr));
  EXPECT_EQ(recorder.Only(), "value");
}

// ---- enumeration ----

TEST_F(WinRegistry, SubKeysByIndex) {
  for (const char* name : {"one", "two", "a name of some length", "\xe9t\xe9"}) {
    KWinRegistry child;
    ASSERT_TRUE(Key().OpenKey(name, child, wrWrite));
  }
  KWinRegistry reader;
  ASSERT_TRUE(reader.OpenRooted(kRooted, wrRead));
  EXPECT_EQ(SubKeys(reader), (List{"a name of some length", "one", "two", "\xe9t\xe9"}));
  Str name;
  EXPECT_FALSE(reader.EnumSubKey(4, name));
}

TEST_F(WinRegistry, LongSubKeyName) {
  const std::string longest(200, 'k');  // within what every system takes together with the path
  KWinRegistry child;
  ASSERT_TRUE(Key().OpenKey(longest.c_str(), child, wrWrite));
  EXPECT_EQ(SubKeys(Key()), List{longest});
}

TEST_F(WinRegistry, ValuesAreTheTextsOnly) {
  Key().SetValue("a", "1");
  SetRegistryDword(HKEY_CURRENT_USER, kPath, "b", 2);
  SetBinary(kPath, "c", REG_EXPAND_SZ, std::string("%x%", 4));
  Key().SetValue("d", "");
  Key().SetDefaultValue("unnamed");
  KWinRegistry reader;
  ASSERT_TRUE(reader.OpenRooted(kRooted, wrRead));
  EXPECT_EQ(Values(reader), (List{"=unnamed", "a=1", "d="}));
}

TEST_F(WinRegistry, NumbersOfSubKeysAndValuesAreThoseOfTheFirstLook) {
  Key().SetValue("a", "1");
  SetRegistryString(HKEY_CURRENT_USER, Below("one"), "v", "x");
  KWinRegistry reader;
  ASSERT_TRUE(reader.OpenRooted(kRooted, wrRead));
  EXPECT_EQ(SubKeys(reader), List{"one"});
  SetRegistryString(HKEY_CURRENT_USER, Below("two"), "v", "x");
  SetRegistryString(HKEY_CURRENT_USER, kPath, "b", "2");
  EXPECT_EQ(SubKeys(reader).size(), 1u);
  EXPECT_EQ(Values(reader).size(), 1u);
  reader.Close();
  ASSERT_TRUE(reader.OpenRooted(kRooted, wrRead));
  EXPECT_EQ(SubKeys(reader).size(), 2u);
  EXPECT_EQ(Values(reader).size(), 2u);
}

TEST_F(WinRegistry, EmptyKeyHasNeither) {
  EXPECT_EQ(SubKeys(Key()), List{});
  EXPECT_EQ(Values(Key()), List{});
}

// ---- deleting ----

TEST_F(WinRegistry, DeleteKeyTakesEverythingBelow) {
  for (const char* name : {"t", "t\\a", "t\\a\\b", "t\\c", "t\\d\\e\\f"})
    SetRegistryString(HKEY_CURRENT_USER, Below(name), "v", "x");
  SetRegistryString(HKEY_CURRENT_USER, Below("stays"), "v", "x");
  EXPECT_TRUE(Key().DeleteKey("t"));
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, Below("t")));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, Below("stays"), "v"), "x");
}

TEST_F(WinRegistry, DeleteKeyOfAMissingNameSucceedsAndLeavesNothing) {
  EXPECT_TRUE(Key().DeleteKey("none"));
  EXPECT_EQ(SubKeys(Key()), List{});
}

TEST_F(WinRegistry, DeleteKeyWithoutNameDeletesNothing) {
  SetRegistryString(HKEY_CURRENT_USER, Below("t"), "v", "x");
  EXPECT_FALSE(Key().DeleteKey(""));
  AssertRecorder recorder;
  EXPECT_FALSE(Key().DeleteKey(nullptr));
  EXPECT_EQ(recorder.Only(), "name");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, Below("t"), "v"), "x");
}

TEST_F(WinRegistry, DeleteKeyEndsAtANameThatOurCodePageCannotHold) {
  const wchar_t name[] = L"Software\\VTTestPlatform\\t\\\x3042";
  HKEY made = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_WRITE, nullptr, &made, nullptr),
            ERROR_SUCCESS);
  { KeyHandle owner(made); }
  EXPECT_FALSE(Key().DeleteKey("t"));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Below("t")));
  EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, name), ERROR_SUCCESS);
  EXPECT_TRUE(Key().DeleteKey("t"));
}

TEST_F(WinRegistry, DeleteKeyOfManySubKeys) {
  for (int i = 0; i < 60; i++)
    SetRegistryString(HKEY_CURRENT_USER, Below("t\\" + std::to_string(i)), "v", "x");
  EXPECT_TRUE(Key().DeleteKey("t"));
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, Below("t")));
}

// ---- copying ----

TEST_F(WinRegistry, CopyTakesTextsAndSubKeysAtAnyDepth) {
  SetRegistryString(HKEY_CURRENT_USER, Below("from"), "s", "text");
  SetRegistryString(HKEY_CURRENT_USER, Below("from"), "", "unnamed");
  SetRegistryDword(HKEY_CURRENT_USER, Below("from"), "d", 7);
  SetRegistryString(HKEY_CURRENT_USER, Below("from\\a\\b\\c"), "deep", "down");
  KWinRegistry from, to;
  ASSERT_TRUE(Key().OpenKey("from", from, wrRead));
  ASSERT_TRUE(Key().OpenKey("to", to, wrWrite));
  EXPECT_TRUE(from.CopyKey(to));
  EXPECT_EQ(Values(to), (List{"=unnamed", "s=text"}));
  EXPECT_FALSE(RegistryDword(HKEY_CURRENT_USER, Below("to"), "d"));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, Below("to\\a\\b\\c"), "deep"), "down");
}

TEST_F(WinRegistry, CopyIntoAReadOnlyKeyAssertsAndEnds) {
  SetRegistryString(HKEY_CURRENT_USER, Below("from"), "s", "text");
  KWinRegistry from, to;
  ASSERT_TRUE(Key().OpenKey("from", from, wrRead));
  {
    KWinRegistry made;
    ASSERT_TRUE(Key().OpenKey("to", made, wrWrite));
  }
  ASSERT_TRUE(Key().OpenKey("to", to, wrRead));
  AssertRecorder recorder;
  EXPECT_FALSE(from.CopyKey(to));
  EXPECT_EQ(recorder.Texts(), (List{"IsWritable()", "result == ERROR_SUCCESS",
                                    "stat = destKey.SetValue(valueName, valueData)"}));
}

TEST_F(WinRegistry, CopyOfASubKeyThatCannotBeMadeAssertsAndEnds) {
  SetRegistryString(HKEY_CURRENT_USER, Below("from\\sub"), "s", "text");
  KWinRegistry from, to;
  ASSERT_TRUE(Key().OpenKey("from", from, wrRead));
  ASSERT_TRUE(Key().OpenKey("to", to, wrWrite));
  ASSERT_TRUE(DeleteRegistryTree(HKEY_CURRENT_USER, Below("to")));  // behind the object's back
  AssertRecorder recorder;
  EXPECT_FALSE(from.CopyKey(to));
  EXPECT_EQ(recorder.Only(), "stat = destKey.OpenKey(subKeyName, destSubKey, wrWrite)");
}

decltype(&RegOpenKeyExA) sOriginalOpen = nullptr;
LSTATUS WINAPI DenyingOpen(HKEY key, LPCSTR name, DWORD options, REGSAM access, PHKEY opened) {
  if (name != nullptr && std::string(name) == "locked") return ERROR_ACCESS_DENIED;
  return sOriginalOpen(key, name, options, access, opened);
}

TEST_F(WinRegistry, CopyEndsAtASubKeyThatCannotBeRead) {
  SetRegistryString(HKEY_CURRENT_USER, Below("from\\a\\locked"), "s", "text");
  SetRegistryString(HKEY_CURRENT_USER, Below("from\\b"), "s", "text");
  KWinRegistry from, to;
  ASSERT_TRUE(Key().OpenKey("from", from, wrRead));
  ASSERT_TRUE(Key().OpenKey("to", to, wrWrite));
  const ImportDouble opening("RegOpenKeyExA", reinterpret_cast<void*>(&DenyingOpen));
  sOriginalOpen = reinterpret_cast<decltype(sOriginalOpen)>(opening.Original());
  EXPECT_FALSE(from.CopyKey(to));
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, Below("to\\a")));
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, Below("to\\b")));
}

}  // namespace
