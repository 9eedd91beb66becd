#include "script_fixture.h"
#include "support/registry_guard.h"

namespace {

constexpr char kKey[] = "Software\\VeltraneTest";

class FileHandler : public ScriptTest {
 protected:
  int32_t Call(const std::string& dest, int32_t disk = 1, int64_t size = 10,
               const char* source = "sub\\a.txt") {
    return StandardFileHandler("Key", disk, source, dest.c_str(), size, nullptr);
  }
};

TEST_F(FileHandler, AddsARecord) {
  EXPECT_EQ(Call(Prog("a.txt"), 2, 77), 1);
  ASSERT_EQ(GetNumFiles(), 1);
  const FileRecord record = GetFileRec(0);
  EXPECT_STREQ(record.destName, "a.txt");
  EXPECT_STREQ(record.destDir, mDir.Join("prog").c_str());
  EXPECT_STREQ(record.srcPath, Dist("sub\\a.txt").c_str());
  EXPECT_EQ(record.disk, 2);
  EXPECT_EQ(record.size, 77u);
  EXPECT_EQ(record.hidden, 0);
  EXPECT_EQ(Log(), "");
}

TEST_F(FileHandler, AStarMakesTheFileHidden) {
  EXPECT_EQ(Call("*" + Prog("a.txt")), 1);
  EXPECT_EQ(GetFileRec(0).hidden, 1);
  EXPECT_STREQ(GetFileRec(0).destName, "a.txt");
}

TEST_F(FileHandler, DiskZeroAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(Call(Prog("a.txt"), 0), 1);
  EXPECT_EQ(recorder.Only(), "disk != 0");
  EXPECT_EQ(GetNumFiles(), 1);
  EXPECT_TRUE(Holds(Log(), "\"Key\""));
}

TEST_F(FileHandler, WithoutInstallFromDirAsserts) {
  AppVars().Clear();
  AssertRecorder recorder;
  EXPECT_EQ(Call("C:\\d\\a.txt"), 1);
  EXPECT_EQ(recorder.Only(), "AppGetVariable(\"InstallFromDir\",srcDir)");
  EXPECT_STREQ(GetFileRec(0).srcPath, "sub\\a.txt");
}

TEST_F(FileHandler, AnExistingFileIsKeptOnInstallation) {
  mDir.Write("prog\\a.txt", "old");
  EXPECT_EQ(Call("?" + Prog("a.txt")), 1);
  EXPECT_EQ(GetNumFiles(), 0);
  EXPECT_EQ(Log(), "      \"" + Prog("a.txt") + "\" already exists. File not copied.\n");
}

TEST_F(FileHandler, AFileToKeepThatIsMissingIsListed) {
  EXPECT_EQ(Call("?" + Prog("a.txt")), 1);
  EXPECT_EQ(GetNumFiles(), 1);
}

TEST_F(FileHandler, AFileToKeepIsListedForRemoval) {
  ::Run().install = false;
  mDir.Write("prog\\a.txt", "old");
  EXPECT_EQ(Call("?" + Prog("a.txt")), 1);
  EXPECT_EQ(GetNumFiles(), 1);
  EXPECT_EQ(Log(), "");
}

TEST_F(FileHandler, TheSameDestinationIsListedOnce) {
  EXPECT_EQ(Call(Prog("a.txt")), 1);
  EXPECT_EQ(Call(Prog("A.TXT")), 1);
  EXPECT_EQ(GetNumFiles(), 1);
}

TEST_F(FileHandler, ADestinationWithoutAFileNameIsRefused) {
  EXPECT_EQ(Call(Prog("")), 1);
  EXPECT_EQ(Call("*?"), 1);
  EXPECT_EQ(GetNumFiles(), 0);
  EXPECT_TRUE(Holds(Log(), "##ERROR: The record of the file \"Key\" names no destination file."));
}

TEST_F(FileHandler, ADestinationWithoutAFolderIsListedAsItIs) {
  EXPECT_EQ(Call("a.txt"), 1);
  ASSERT_EQ(GetNumFiles(), 1);
  EXPECT_STREQ(GetFileRec(0).destDir, "");
  EXPECT_EQ(Log(), "##ERROR: The record of the file \"Key\" names no destination folder.\n");
}

TEST_F(FileHandler, ASizeBeyond2GBIsKept) {
  EXPECT_EQ(Call(Prog("a.txt"), 1, 4000000000), 1);
  EXPECT_EQ(GetFileRec(0).size, 4000000000u);
  EXPECT_EQ(TotalFileSize(), 4000000000u);
}

TEST_F(FileHandler, ANegativeSizeCountsAsZero) {
  EXPECT_EQ(Call(Prog("a.txt"), 1, -5), 1);
  EXPECT_EQ(GetFileRec(0).size, 0u);
  EXPECT_EQ(TotalFileSize(), 0u);
  EXPECT_TRUE(Holds(Log(), "-5"));
}

TEST_F(FileHandler, PathsTooLongAreRefusedAndLogged) {
  EXPECT_EQ(Call("C:\\" + std::string(300, 'd') + "\\a.txt"), 1);
  EXPECT_EQ(Call("C:\\d\\" + std::string(256, 'n')), 1);
  EXPECT_EQ(Call("C:\\" + std::string(130, 'd') + "\\" + std::string(130, 'n')), 1);
  EXPECT_EQ(Call("C:\\d\\a.txt", 1, 1, std::string(270, 's').c_str()), 1);
  EXPECT_EQ(GetNumFiles(), 0);
  const std::string log = Log();
  size_t lines = 0;
  for (size_t at = log.find("is too long"); at != std::string::npos; at = log.find("is too long", at + 1))
    ++lines;
  EXPECT_EQ(lines, 4u) << log;
}

TEST_F(FileHandler, PathsOf259CharactersFit) {
  const std::string folder = "C:\\" + std::string(100, 'd');
  const std::string dest = folder + "\\" + std::string(259 - folder.size() - 1, 'n');
  ASSERT_EQ(dest.size(), 259u);
  EXPECT_EQ(Call(dest), 1);
  EXPECT_EQ(GetNumFiles(), 1);
  EXPECT_EQ(Call(dest + "n"), 1);
  EXPECT_EQ(GetNumFiles(), 1);
}

TEST_F(FileHandler, TheScriptsPlaceIsLogged) {
  mDir.Write("setup.inf", "[main]\nBad\n[files]\nBad=1,a,C:\\d\\,5\n");
  ASSERT_EQ(Script().Open(mDir.Join("setup.inf").c_str(), true), kInfOK);
  EXPECT_EQ(Script().DoSection("main", {StandardFileHandler, nullptr, nullptr, nullptr}, nullptr), kInfOK);
  Script().Close();
  EXPECT_TRUE(Holds(Log(), "In Setup.inf: section \"main\", line \"Bad\"."));
}

class RegistryLine : public ScriptTest {
 protected:
  RegistryGuard mGuard{HKEY_CURRENT_USER, kKey};
  const std::string mRoot = "HKEY_CURRENT_USER\\Software\\VeltraneTest\\";
  int32_t Call(const std::string& line, const std::string& value = "") {
    return RegistryLineHandler(line.c_str(), value.c_str(), nullptr);
  }
  static std::optional<std::string> Value(const std::string& key, const std::string& name) {
    return RegistryString(HKEY_CURRENT_USER, std::string(kKey) + key, name);
  }
};

TEST_F(RegistryLine, PlusCreatesTheKeyAndSetsTheValue) {
  EXPECT_EQ(Call("+" + mRoot + "A\\B\\Name", "data, with \\ and \"quotes\""), 1);
  EXPECT_EQ(Value("\\A\\B", "Name"), "data, with \\ and \"quotes\"");
}

TEST_F(RegistryLine, PlusWithoutAValueNameSetsTheDefault) {
  EXPECT_EQ(Call("+" + mRoot + "A\\", "data"), 1);
  EXPECT_EQ(Value("\\A", ""), "data");
}

TEST_F(RegistryLine, PlusWithAnEmptyValueSetsAnEmptyText) {
  EXPECT_EQ(Call("+" + mRoot + "A\\Name"), 1);
  EXPECT_EQ(Value("\\A", "Name"), "");
}

TEST_F(RegistryLine, PlusReplacesAValue) {
  Call("+" + mRoot + "A\\Name", "old");
  Call("+" + mRoot + "A\\Name", "new");
  EXPECT_EQ(Value("\\A", "Name"), "new");
}

TEST_F(RegistryLine, ADollarBehindThePlusIsDropped) {
  EXPECT_EQ(Call("+$" + mRoot + "A\\Name", "data"), 1);
  EXPECT_EQ(Value("\\A", "Name"), "data");
  EXPECT_EQ(Call("$" + mRoot + "A\\Other", "data"), 1);
  EXPECT_EQ(Value("\\A", "Other"), "data");
}

TEST_F(RegistryLine, MinusDeletesAValue) {
  Call("+" + mRoot + "A\\Name", "data");
  Call("+" + mRoot + "A\\Stays", "data");
  EXPECT_EQ(Call("-" + mRoot + "A\\Name"), 1);
  EXPECT_EQ(Value("\\A", "Name"), std::nullopt);
  EXPECT_EQ(Value("\\A", "Stays"), "data");
}

TEST_F(RegistryLine, MinusWithATrailingBackslashDeletesTheKey) {
  Call("+" + mRoot + "Old\\Deep\\Name", "data");
  Call("+" + mRoot + "Old", "the value of the same name");
  EXPECT_EQ(Call("-" + mRoot + "Old\\"), 1);
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\Old"));
  EXPECT_EQ(Value("", "Old"), "the value of the same name");
}

TEST_F(RegistryLine, MinusWithoutATrailingBackslashDeletesTheValueOfThatName) {
  Call("+" + mRoot + "Old\\Name", "data");
  Call("+" + mRoot + "Old", "value");
  EXPECT_EQ(Call("-" + mRoot + "Old"), 1);
  EXPECT_EQ(Value("", "Old"), std::nullopt);
  EXPECT_EQ(Value("\\Old", "Name"), "data");
}

TEST_F(RegistryLine, DeletingWhatIsMissingSucceeds) {
  EXPECT_EQ(Call("-" + mRoot + "Gone\\Name"), 1);
  EXPECT_EQ(Call("-" + mRoot + "Gone\\"), 1);
}

TEST_F(RegistryLine, LinesThatNameNoKeyAreLoggedAndDoNothing) {
  Call("+" + mRoot + "A\\Name", "data");
  for (const char* line :
       {"-HKEY_CURRENT_USER", "-HKEY_CURRENT_USER\\", "-HKEY_CURRENT_USER\\\\", "-HKEY_CURRENT_USER\\\\\\",
        "-HKEY_CURRENT_USER\\Software\\\\", "-HKEY_CURRENT_USER\\Software\\VeltraneTest\\\\",
        "-HKEY_CURRENT_USER\\\\Software\\VeltraneTest\\", "-HKEY_NOWHERE\\Software\\VeltraneTest\\",
        "-hkey_current_user\\Software\\VeltraneTest\\", "-", "+", "+HKEY_CURRENT_USER\\Name"}) {
    Log();
    EXPECT_EQ(Call(line, "x"), 1) << line;
    EXPECT_EQ(Log(), "##ERROR: The registry line \"" + std::string(line) + "\" names no key.\n");
  }
  EXPECT_EQ(Value("\\A", "Name"), "data");
}

TEST_F(RegistryLine, AFailedCreationIsLoggedAndSucceeds) {
  const std::string key = "Software\\VeltraneTest\\" + std::string(300, 'k');  // a component has at most 255
  EXPECT_EQ(Call("+HKEY_CURRENT_USER\\" + key + "\\Name", "x"), 1);
  EXPECT_TRUE(Holds(Log(), "RegCreateKeyValue couldn't create key, \"0x80000001\\" + key + "\"."));
}

TEST_F(RegistryLine, NullTextsAssert) {
  AssertRecorder recorder;
  EXPECT_EQ(RegistryLineHandler(nullptr, "", nullptr), 1);
  EXPECT_EQ(RegistryLineHandler("+A", nullptr, nullptr), 1);
  EXPECT_EQ(recorder.Texts(), (std::vector<std::string>{"key", "value"}));
}

TEST(SplitRegistryLine, SplitsAtTheFirstAndTheLastBackslash) {
  Str root;
  Str key;
  Str name;
  ASSERT_TRUE(SplitRegistryLine("HKEY_X\\One\\Two\\Value", root, key, name));
  EXPECT_EQ(root, "HKEY_X");
  EXPECT_EQ(key, "One\\Two");
  EXPECT_EQ(name, "Value");
  ASSERT_TRUE(SplitRegistryLine("HKEY_X\\.ext\\", root, key, name));
  EXPECT_EQ(key, ".ext");
  EXPECT_EQ(name, "");
  EXPECT_FALSE(SplitRegistryLine("HKEY_X\\Value", root, key, name));
  EXPECT_FALSE(SplitRegistryLine("HKEY_X", root, key, name));
  EXPECT_FALSE(SplitRegistryLine("", root, key, name));
}

class VariableLine : public ScriptTest {};

TEST_F(VariableLine, SetsAndReplaces) {
  EXPECT_EQ(VariableHandler("Name", "one", nullptr), 1);
  EXPECT_EQ(VariableHandler("Name", "two", nullptr), 1);
  EXPECT_EQ(AppGetExpanded("Name"), "two");
}

TEST_F(VariableLine, APercentSignFreezes) {
  EXPECT_EQ(VariableHandler("%Name", "one", nullptr), 1);
  EXPECT_EQ(VariableHandler("Name", "two", nullptr), 1);
  EXPECT_EQ(AppGetExpanded("Name"), "one");
}

}  // namespace
