// File associations: the document class, Explorer's open-with lists, conflicts with other programs.
#include "shell/assoc.h"

#include "messages/res.h"
#include "shell/stubscript.h"
#include "stores/register.h"
#include "support/registry_guard.h"
#include "support/setup_run.h"
#include "tasks/infproc.h"
#include "ui/ui_fixture.h"

namespace {

constexpr char kClasses[] = "Software\\Classes\\";
constexpr char kProgId[] = "VtTest.Document.6";
constexpr char kClassId[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DF1}";
constexpr char kFileExts[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\.vttest";
const std::string kList = std::string(kFileExts) + "\\OpenWithList";

class AssocTest : public UiTest {
 public:
  // The system opens the classes key at the first look and keeps it.
  static void SetUpTestSuite() {
    Str value;
    static_cast<void>(RegQueryString(HKEY_CLASSES_ROOT, "VtTest.Nothing", "", value));
  }

 protected:
  void SetUp() override {
    UiTest::SetUp();
    AppSetVariable("AppProgName", "Veltrane");
  }
  std::string Task(const std::string& name, const std::string& args, int32_t pass = 1) {
    EXPECT_EQ(TaskDispatch(("$" + name).c_str(), args.c_str(), pass < 0 ? nullptr : &pass), 1);
    return Log();
  }
  static std::string Unknown(const std::string& task) {
    return "The arguments for the task " + task + " in Setup.inf are unknown.\n";
  }
  static std::string Class(const std::string& key) {
    return RegistryString(HKEY_LOCAL_MACHINE, kClasses + key, "").value_or("(none)");
  }
  static void SetClass(const std::string& key, const std::string& value) {
    SetRegistryString(HKEY_LOCAL_MACHINE, kClasses + key, "", value);
  }

 private:
  RegistryGuard mProgIdGuard{HKEY_LOCAL_MACHINE, std::string(kClasses) + kProgId};
  RegistryGuard mClassGuard{HKEY_LOCAL_MACHINE, std::string(kClasses) + "CLSID\\" + kClassId};
  RegistryGuard mExtensionGuard{HKEY_LOCAL_MACHINE, std::string(kClasses) + ".vttest"};
  RegistryGuard mTypeGuard{HKEY_LOCAL_MACHINE, std::string(kClasses) + "VtOther.File"};
  RegistryGuard mListGuard{HKEY_CURRENT_USER, kFileExts};
};

// ---- stub_reg ----

class StubTest : public AssocTest {
 protected:
  std::string Args(const std::string& name = "Veltrane \xc9quation") {
    return std::string(kProgId) + "," + kClassId + "," + name;
  }
};

TEST_F(StubTest, RegistersADocumentClass) {
  EXPECT_EQ(Task("stub_reg", Args(), 0), "");
  EXPECT_EQ(Class(kProgId), "Veltrane \xc9quation");
  EXPECT_EQ(Class(std::string(kProgId) + "\\CLSID"), kClassId);
  EXPECT_EQ(Class(std::string("CLSID\\") + kClassId), "Veltrane \xc9quation");
  EXPECT_EQ(Class(std::string("CLSID\\") + kClassId + "\\ProgID"), kProgId);
}

TEST_F(StubTest, ActsInPass0Only) {
  EXPECT_EQ(Task("stub_reg", Args(), 1), "");
  EXPECT_EQ(Class(kProgId), "(none)");
}

TEST_F(StubTest, AnExistingProgIdIsLeftAlone) {
  SetClass(kProgId, "");
  EXPECT_EQ(Task("stub_reg", Args(), 0), "");
  EXPECT_EQ(Class(kProgId), "");
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + kProgId + "\\CLSID"));
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + "CLSID\\" + kClassId));
}

TEST_F(StubTest, AnExistingClassIsTakenOver) {
  SetClass(std::string("CLSID\\") + kClassId, "old name");
  SetClass(std::string("CLSID\\") + kClassId + "\\Insertable", "stays");
  Task("stub_reg", Args(), 0);
  EXPECT_EQ(Class(std::string("CLSID\\") + kClassId), "Veltrane \xc9quation");
  EXPECT_EQ(Class(std::string("CLSID\\") + kClassId + "\\Insertable"), "stays");
}

TEST_F(StubTest, TheTextOfAClassKeepsItsSlashes) {
  Task("stub_reg", Args("one/two"), 0);
  EXPECT_EQ(Class(kProgId), "one/two");
}

TEST_F(StubTest, TheProductsVariablesAreNotSeen) {
  AppSetVariable("StubProgId", "VtTest.Other");
  Task("stub_reg", Args("<AppName>"), 0);
  EXPECT_EQ(Class(kProgId), "<AppName>");
  EXPECT_FALSE(AppVariableExists("StubClassName"));
}

TEST_F(StubTest, EmptyNamesRegisterNothing) {
  const std::string classes =
      RegistryString(HKEY_LOCAL_MACHINE, std::string(kClasses) + "CLSID", "").value_or("(none)");
  EXPECT_EQ(Task("stub_reg", std::string(" ,") + kClassId + ",name", 0), "");
  EXPECT_EQ(Task("stub_reg", std::string(kProgId) + ", ,name", 0), "");
  EXPECT_EQ(Class(kProgId), "(none)");
  EXPECT_EQ(Class("CLSID"), classes);
}

TEST_F(StubTest, NeedsThreeArguments) {
  EXPECT_EQ(Task("stub_reg", std::string(kProgId) + "," + kClassId, 0), Unknown("stub_reg"));
  EXPECT_EQ(Class(kProgId), "(none)");
}

TEST_F(StubTest, NeedsAPassAndArguments) {
  {
    AssertRecorder rec;
    EXPECT_EQ(Task("stub_reg", Args(), -1), "");
    EXPECT_EQ(rec.Only(), "data");
  }
  AssertRecorder rec;
  int32_t pass = 0;
  EXPECT_EQ(TaskDispatch("$stub_reg", nullptr, &pass), 1);
  EXPECT_EQ(rec.Only(), "args");
}

// ---- the script language ----

class StubScriptTest : public AssocTest {
 protected:
  StubScript mScript;
  const std::string mRoot = std::string("@") + kProgId;
};

TEST_F(StubScriptTest, RootIsOpenedOrCreated) {
  EXPECT_TRUE(mScript.Execute(mRoot.c_str()));
  EXPECT_EQ(Class(kProgId), "(none)");
  EXPECT_TRUE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + kProgId));
  EXPECT_TRUE(mScript.Execute("=first"));
  EXPECT_TRUE(mScript.Execute(mRoot.c_str()));
  EXPECT_EQ(Class(kProgId), "first");
}

TEST_F(StubScriptTest, SlashesSeparateKeys) {
  EXPECT_TRUE(mScript.Execute((mRoot + "/a/b").c_str()));
  EXPECT_TRUE(mScript.Execute("=deep"));
  EXPECT_EQ(Class(std::string(kProgId) + "\\a\\b"), "deep");
  EXPECT_TRUE(mScript.Execute("/c/d"));
  EXPECT_TRUE(mScript.Execute("=deeper"));
  EXPECT_EQ(Class(std::string(kProgId) + "\\a\\b\\c\\d"), "deeper");
}

TEST_F(StubScriptTest, SubkeysAreBelowTheRootKey) {
  EXPECT_TRUE(mScript.Execute(mRoot.c_str()));
  EXPECT_TRUE(mScript.Execute("/a"));
  EXPECT_TRUE(mScript.Execute("/b"));
  EXPECT_TRUE(mScript.Execute("=b's"));
  EXPECT_EQ(Class(std::string(kProgId) + "\\b"), "b's");
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + kProgId + "\\a\\b"));
}

TEST_F(StubScriptTest, ANewRootClosesTheSubkey) {
  EXPECT_TRUE(mScript.Execute(mRoot.c_str()));
  EXPECT_TRUE(mScript.Execute("/a"));
  EXPECT_TRUE(mScript.Execute((std::string("@CLSID/") + kClassId).c_str()));
  EXPECT_TRUE(mScript.Execute("=root's"));
  EXPECT_EQ(Class(std::string("CLSID\\") + kClassId), "root's");
}

TEST_F(StubScriptTest, ASubkeyNeedsARoot) {
  AssertRecorder rec;
  EXPECT_FALSE(mScript.Execute("/a"));
  EXPECT_EQ(rec.Only(), "rootKey");
}

TEST_F(StubScriptTest, ATextNeedsARoot) {
  AssertRecorder rec;
  EXPECT_FALSE(mScript.Execute("=text"));
  EXPECT_EQ(rec.Only(), "rootKey");
}

TEST_F(StubScriptTest, AnEmptyTextIsSet) {
  EXPECT_TRUE(mScript.Execute(mRoot.c_str()));
  EXPECT_TRUE(mScript.Execute("="));
  EXPECT_EQ(Class(kProgId), "");
}

TEST_F(StubScriptTest, DeletesBelowTheRootKey) {
  SetClass(std::string(kProgId) + "\\a\\b", "deep");
  SetClass(std::string(kProgId) + "\\c", "stays");
  EXPECT_TRUE(mScript.Execute(mRoot.c_str()));
  EXPECT_TRUE(mScript.Execute("/c"));
  EXPECT_TRUE(mScript.Execute("-a"));
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + kProgId + "\\a"));
  // The subkey was closed: the next text is the root key's.
  EXPECT_TRUE(mScript.Execute("=root's"));
  EXPECT_EQ(Class(std::string(kProgId) + "\\c"), "stays");
  EXPECT_EQ(Class(kProgId), "root's");
}

TEST_F(StubScriptTest, DeletesWithoutARootBelowTheClasses) {
  SetClass(std::string(kProgId) + "\\a\\b", "deep");
  EXPECT_TRUE(mScript.Execute((std::string("-") + kProgId + "/a").c_str()));
  EXPECT_TRUE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + kProgId));
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + kProgId + "\\a"));
}

TEST_F(StubScriptTest, DeletingWhatIsMissingGoesOn) {
  EXPECT_TRUE(mScript.Execute((std::string("-") + kProgId).c_str()));
  EXPECT_TRUE(mScript.Execute("-"));
}

TEST_F(StubScriptTest, AnEmptyPathOpensNothing) {
  EXPECT_FALSE(mScript.Execute("@"));
  EXPECT_TRUE(mScript.Execute(mRoot.c_str()));
  EXPECT_FALSE(mScript.Execute("/"));
}

TEST_F(StubScriptTest, OtherCommandsAreRefused) {
  for (const char* command : {"x", "", " @a", "!END!"}) {
    AssertRecorder rec;
    EXPECT_FALSE(mScript.Execute(command));
    EXPECT_EQ(rec.Only(), "first char must be @, /, -, or =") << command;
  }
}

// ---- open-with lists ----

class OpenWithTest : public AssocTest {
 protected:
  static void SetEntry(const std::string& name, const std::string& data) {
    SetRegistryString(HKEY_CURRENT_USER, kList, name, data);
  }
  static std::string Entry(const std::string& name) {
    return RegistryString(HKEY_CURRENT_USER, kList, name).value_or("(none)");
  }
  std::string Add(const std::string& app = "Veltrane.exe") {
    return Task("add_openwith_support", "vttest," + app);
  }
  std::string Remove(const std::string& app = "Veltrane.exe") {
    return Task("remove_openwith_support", "vttest," + app);
  }
};

TEST_F(OpenWithTest, AnEmptyListGetsA) {
  EXPECT_EQ(Add(), "Added Veltrane.exe to OpenWithList for vttest\n");
  EXPECT_EQ(Entry("a"), "Veltrane.exe");
  EXPECT_EQ(Entry("MRUList"), "a");
}

TEST_F(OpenWithTest, TheLetterBehindTheGreatestIsTaken) {
  SetEntry("a", "one.exe");
  SetEntry("c", "three.exe");
  SetEntry("MRUList", "ca");
  Add();
  EXPECT_EQ(Entry("d"), "Veltrane.exe");
  EXPECT_EQ(Entry("b"), "(none)");
  EXPECT_EQ(Entry("MRUList"), "cad");
}

TEST_F(OpenWithTest, LettersAreComparedWithoutCase) {
  SetEntry("C", "three.exe");
  SetEntry("b", "two.exe");
  Add();
  EXPECT_EQ(Entry("d"), "Veltrane.exe");
  EXPECT_EQ(Entry("MRUList"), "d");
}

TEST_F(OpenWithTest, OtherNamesAreNoLetters) {
  SetEntry("zz", "one.exe");
  SetEntry("7", "two.exe");
  SetEntry("{", "three.exe");
  Add();
  EXPECT_EQ(Entry("a"), "Veltrane.exe");
}

TEST_F(OpenWithTest, BehindZTheFirstFreeLetterIsTaken) {
  SetEntry("a", "one.exe");
  SetEntry("z", "last.exe");
  Add();
  EXPECT_EQ(Entry("b"), "Veltrane.exe");
  EXPECT_EQ(Entry("{"), "(none)");
}

TEST_F(OpenWithTest, AFullListIsLoggedAndLeftAlone) {
  for (char letter = 'a'; letter <= 'z'; ++letter) SetEntry(std::string(1, letter), "other.exe");
  SetEntry("MRUList", "abc");
  EXPECT_EQ(Add(), "    OpenWithList for vttest is full: Veltrane.exe was not added\n");
  EXPECT_EQ(Entry("MRUList"), "abc");
}

TEST_F(OpenWithTest, AnApplicationThatIsThereIsNotAdded) {
  SetEntry("a", "one.exe");
  SetEntry("b", "VELTRANE.EXE");
  EXPECT_EQ(Add(), "Veltrane.exe already exists in OpenWithList for vttest\n");
  EXPECT_EQ(Entry("c"), "(none)");
  EXPECT_EQ(Entry("MRUList"), "(none)");
}

TEST_F(OpenWithTest, AnyValueCountsAsThere) {
  SetEntry("other name", "Veltrane.exe");
  EXPECT_EQ(Add(), "Veltrane.exe already exists in OpenWithList for vttest\n");
}

TEST_F(OpenWithTest, RemovingDeletesEntryAndLetter) {
  SetEntry("a", "one.exe");
  SetEntry("b", "veltrane.EXE");
  SetEntry("MRUList", "abab");
  EXPECT_EQ(Remove(), "Deleted Veltrane.exe from OpenWithList for vttest\n");
  EXPECT_EQ(Entry("b"), "(none)");
  EXPECT_EQ(Entry("a"), "one.exe");
  EXPECT_EQ(Entry("MRUList"), "aab");
}

TEST_F(OpenWithTest, RemovingWithoutAnOrderMakesNone) {
  SetEntry("a", "Veltrane.exe");
  EXPECT_EQ(Remove(), "Deleted Veltrane.exe from OpenWithList for vttest\n");
  EXPECT_EQ(Entry("MRUList"), "(none)");
}

TEST_F(OpenWithTest, RemovingFindsTheLetterInAnyCase) {
  SetEntry("B", "Veltrane.exe");
  SetEntry("MRUList", "ab");
  Remove();
  EXPECT_EQ(Entry("MRUList"), "a");
}

TEST_F(OpenWithTest, RemovingFromAListWithoutItChangesNothing) {
  SetEntry("a", "one.exe");
  SetEntry("other name", "Veltrane.exe");
  SetEntry("MRUList", "a");
  EXPECT_EQ(Remove(), "Veltrane.exe did not exist in OpenWithList for vttest\n");
  EXPECT_EQ(Entry("a"), "one.exe");
  EXPECT_EQ(Entry("other name"), "Veltrane.exe");
  EXPECT_EQ(Entry("MRUList"), "a");
}

TEST_F(OpenWithTest, RemovingWithoutAListMakesNone) {
  EXPECT_EQ(Remove(), "Veltrane.exe did not exist in OpenWithList for vttest\n");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kFileExts));
}

TEST_F(OpenWithTest, AddingAndRemovingLeavesTheListAsItWas) {
  SetEntry("a", "one.exe");
  SetEntry("MRUList", "a");
  Add();
  Remove();
  EXPECT_EQ(Entry("b"), "(none)");
  EXPECT_EQ(Entry("MRUList"), "a");
}

TEST_F(OpenWithTest, TasksNeedTwoArgumentsPass1AndAContext) {
  for (const char* task : {"add_openwith_support", "remove_openwith_support"}) {
    EXPECT_EQ(Task(task, "vttest"), Unknown(task));
    EXPECT_EQ(Task(task, "vttest,Veltrane.exe", 0), "");
    AssertRecorder rec;
    EXPECT_EQ(Task(task, "vttest,Veltrane.exe", -1), "");
    EXPECT_EQ(rec.Only(), "data") << task;
  }
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kFileExts));
}

// ---- types that others hold ----

class OthersTest : public AssocTest {
 protected:
  void SetUp() override {
    AssocTest::SetUp();
    SetClass(".vttest", "VtOther.File");
    SetClass(kCommand, "\"C:\\vt\\VELTRANE.EXE\" \"%1\"");
    SetClass("VtOther.File\\shell\\print\\command", "\"C:\\vt\\Veltrane.exe\" /p");
  }
  bool IsOpenKeyThere() {
    return RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + "VtOther.File\\shell\\open");
  }
  const std::string kCommand = "VtOther.File\\shell\\open\\command";
};

TEST_F(OthersTest, ACommandThatStartsTheProductIsDeleted) {
  EXPECT_EQ(
      Task("clean_others_ext_reg", ".vttest,Equation.KVRX6"),
      "    An independant application was found to be launching Veltrane. Installation de Veltrane 6.0c has "
      "removed the registry key \"HKEY_CLASSES_ROOT\\VtOther.File\\shell\\open\" in order to eliminate the "
      "conflict.\n");
  EXPECT_FALSE(IsOpenKeyThere());
  EXPECT_EQ(Class("VtOther.File\\shell\\print\\command"), "\"C:\\vt\\Veltrane.exe\" /p");
  EXPECT_EQ(Class(".vttest"), "VtOther.File");
}

TEST_F(OthersTest, TheDotIsSuppliedAndQuotesAreTaken) {
  EXPECT_NE(Task("clean_others_ext_reg", "\"vttest\",Equation.KVRX6"), "");
  EXPECT_FALSE(IsOpenKeyThere());
}

TEST_F(OthersTest, TheProductsOwnTypeIsLeftAlone) {
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,VtOther.File"), "");
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,Other"), "");
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,VTOTHER.FILE"), "");
  EXPECT_TRUE(IsOpenKeyThere());
}

TEST_F(OthersTest, AnotherProgramIsLeftAlone) {
  SetClass(kCommand, "C:\\other\\viewer.exe Veltrane");
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,Equation.KVRX6"), "");
  EXPECT_TRUE(IsOpenKeyThere());
}

TEST_F(OthersTest, AnUnknownExtensionIsLeftAlone) {
  EXPECT_EQ(Task("clean_others_ext_reg", ".vtnone,Equation.KVRX6"), "");
  EXPECT_TRUE(IsOpenKeyThere());
}

TEST_F(OthersTest, AnEmptyTypeDeletesNothing) {
  SetClass(".vttest", "");
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,Equation.KVRX6"), "");
  SetClass(".vttest", "VtOther.File");
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest, "), "");
  EXPECT_TRUE(IsOpenKeyThere());
}

TEST_F(OthersTest, WithoutACommandNothingIsDeleted) {
  ASSERT_TRUE(DeleteRegistryTree(HKEY_LOCAL_MACHINE, std::string(kClasses) + kCommand));
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,Equation.KVRX6"), "");
  EXPECT_TRUE(IsOpenKeyThere());
}

TEST_F(OthersTest, WithoutTheProgramsNameItAsserts) {
  AppVars().Clear();
  {
    AssertRecorder rec;
    Task("clean_others_ext_reg", ".vttest,Equation.KVRX6");
    EXPECT_EQ(rec.Only(), "AppGetVariable(\"AppProgName\",searchStr)");
  }
  AppSetVariable("AppProgName", "");
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,Equation.KVRX6"), "");
  EXPECT_TRUE(IsOpenKeyThere());
}

TEST_F(OthersTest, TaskNeedsTwoArgumentsPass1AndAContext) {
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest"), Unknown("clean_others_ext_reg"));
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,Equation.KVRX6", 0), "");
  AssertRecorder rec;
  EXPECT_EQ(Task("clean_others_ext_reg", ".vttest,Equation.KVRX6", -1), "");
  EXPECT_EQ(rec.Only(), "data");
  EXPECT_TRUE(IsOpenKeyThere());
}

// ---- associations of the old way ----

constexpr char kOldNt[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\Extensions";
constexpr char kOld[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Extensions";

class OldWayTest : public AssocTest {
 protected:
  static std::string Value(HKEY root, const char* key) {
    return RegistryString(root, key, "vttest").value_or("(none)");
  }
  static std::string Deleted(const std::string& place) {
    return "    Fixed possible file extension conflicts by deleting the value \"vttest\" from the \"" +
           place + "\" registry key.\n";
  }

 private:
  ProfileGuard mLine{"Extensions", "vttest"};
  RegistryValueGuard mMachineNt{HKEY_LOCAL_MACHINE, kOldNt, "vttest"};
  RegistryValueGuard mMachine{HKEY_LOCAL_MACHINE, kOld, "vttest"};
  RegistryValueGuard mUserNt{HKEY_CURRENT_USER, kOldNt, "vttest"};
  RegistryValueGuard mUser{HKEY_CURRENT_USER, kOld, "vttest"};
};

TEST_F(OldWayTest, TheWinIniLineIsDeleted) {
  WriteProfileStringA("Extensions", "vttest", "c:\\vt\\VELTRANE.EXE ^.vttest");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "vttest"),
            "    Fixed possible file extension conflicts by deleting the \"vttest = c:\\vt\\VELTRANE.EXE "
            "^.vttest\" "
            "line from the [Extensions] section in WIN.INI.\n");
  EXPECT_EQ(ProfileString("Extensions", "vttest"), "");
}

TEST_F(OldWayTest, ALineOfAnotherProgramStays) {
  WriteProfileStringA("Extensions", "vttest", "c:\\other\\viewer.exe ^.vttest");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "vttest"), "");
  EXPECT_EQ(ProfileString("Extensions", "vttest"), "c:\\other\\viewer.exe ^.vttest");
}

TEST_F(OldWayTest, AllFourRegistryValuesAreDeleted) {
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
    for (const char* key : {kOldNt, kOld}) SetRegistryString(root, key, "vttest", "veltrane ^.vttest");
  // Windows keeps win.ini's section in the user's key of the NT kind: that value goes as the line.
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "vttest"),
            "    Fixed possible file extension conflicts by deleting the \"vttest = veltrane ^.vttest\" line "
            "from the "
            "[Extensions] section in WIN.INI.\n" +
                Deleted(std::string("HKEY_LOCAL_MACHINE\\") + kOldNt) +
                Deleted(std::string("HKEY_LOCAL_MACHINE\\") + kOld) +
                Deleted(std::string("HKEY_CURRENT_USER\\") + kOld));
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
    for (const char* key : {kOldNt, kOld}) EXPECT_EQ(Value(root, key), "(none)") << key;
}

TEST_F(OldWayTest, ValuesOfOtherProgramsStay) {
  SetRegistryString(HKEY_LOCAL_MACHINE, kOld, "vttest", "viewer.exe ^.vttest");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "vttest"), "");
  EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, kOld), "viewer.exe ^.vttest");
}

TEST_F(OldWayTest, TheExtensionMayHaveItsDot) {
  SetRegistryString(HKEY_CURRENT_USER, kOld, "vttest", "veltrane.exe ^.vttest");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", ".vttest"), Deleted(std::string("HKEY_CURRENT_USER\\") + kOld));
}

TEST_F(OldWayTest, AShortProgramNameIsFoundWithItsExtensionOnly) {
  AppSetVariable("AppProgName", "vt");
  SetRegistryString(HKEY_CURRENT_USER, kOld, "vttest", "c:\\vtools\\viewer.exe ^.vttest");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "vttest"), "");
  SetRegistryString(HKEY_CURRENT_USER, kOld, "vttest", "c:\\x\\VT.EXE ^.vttest");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "vttest"), Deleted(std::string("HKEY_CURRENT_USER\\") + kOld));
}

TEST_F(OldWayTest, AnEmptyExtensionDoesNothing) {
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "."), "");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", " "), "");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", ""), Unknown("clean_old_winini_ext_reg"));
}

TEST_F(OldWayTest, WithoutTheProgramsNameItAsserts) {
  AppVars().Clear();
  AssertRecorder rec;
  Task("clean_old_winini_ext_reg", "vttest");
  EXPECT_EQ(rec.Only(), "AppGetVariable(\"AppProgName\",progName)");
}

TEST_F(OldWayTest, TaskActsInPass1Only) {
  SetRegistryString(HKEY_CURRENT_USER, kOld, "vttest", "veltrane.exe ^.vttest");
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "vttest", 0), "");
  EXPECT_EQ(Value(HKEY_CURRENT_USER, kOld), "veltrane.exe ^.vttest");
  AssertRecorder rec;
  EXPECT_EQ(Task("clean_old_winini_ext_reg", "vttest", -1), "");
  EXPECT_EQ(rec.Only(), "data");
}

}  // namespace
