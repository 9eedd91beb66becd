#include "script/script_fixture.h"
#include "support/process.h"
#include "support/registry_guard.h"
#include "tasks/tasks.h"

namespace {

constexpr char kKey[] = "Software\\VeltraneTest";

class RegistryTasks : public ScriptTest {
 protected:
  void Add(const std::string& args) {
    int32_t pass = 1;
    EXPECT_EQ(Task_add_reg_chk_exist("add_reg_chk_exist", args.c_str(), &pass), 1);
  }
  void Remove(const std::string& args) {
    int32_t pass = 1;
    EXPECT_EQ(Task_remove_reg_chk_exist("remove_reg_chk_exist", args.c_str(), &pass), 1);
  }
  void RemoveIni(const std::string& args) {
    int32_t pass = 1;
    EXPECT_EQ(Task_remove_ini_path("remove_ini_path", args.c_str(), &pass), 1);
  }
  void Register(const std::string& args) {
    int32_t pass = ::Run().install ? 1 : 0;
    EXPECT_EQ(Task_register_dll("register_dll", args.c_str(), &pass), 1);
  }
  void GetIniVar(const std::string& args) {
    EXPECT_EQ(Task_get_ini_var("get_ini_var", args.c_str(), nullptr), 1);
  }
  static std::optional<std::string> Value(const std::string& key, const std::string& name = "") {
    return RegistryString(HKEY_CURRENT_USER, std::string(kKey) + key, name);
  }
  static void SetValue(const std::string& key, const std::string& name, const std::string& text) {
    SetRegistryString(HKEY_CURRENT_USER, std::string(kKey) + key, name, text);
  }
  RegistryGuard mGuard{HKEY_CURRENT_USER, kKey};
  const std::string mRoot = "HKEY_CURRENT_USER\\Software\\VeltraneTest\\";
  const std::string mStatus = "Mise \xe0 jour des registres\n";
};

TEST_F(RegistryTasks, AddSetsAMissingValue) {
  Add("\"" + mRoot + "A\\Name\",ignored,data");
  EXPECT_EQ(Value("\\A", "Name"), "data");
  EXPECT_EQ(Log(), mStatus);
}

TEST_F(RegistryTasks, AddSetsTheDefaultValue) {
  Add(mRoot + "A\\,\"C:\\x.exe\" \"%1\"");
  EXPECT_EQ(Value("\\A"), "\"C:\\x.exe\" \"%1\"");
}

TEST_F(RegistryTasks, AddTakesARegPrefix) {
  Add("REG*" + mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), "data");
}

TEST_F(RegistryTasks, AddWritesAValueThatHoldsTheDataAgain) {
  SetValue("\\A", "Name", "more data here");
  Add(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), "data");
}

TEST_F(RegistryTasks, AddLeavesAnotherOwnersValue) {
  SetValue("\\A", "Name", "other");
  Add(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), "other");
  EXPECT_EQ(Log(), mStatus);
}

TEST_F(RegistryTasks, AddLeavesANumber) {
  SetRegistryDword(HKEY_CURRENT_USER, std::string(kKey) + "\\A", "Name", 0);
  Add(mRoot + "A\\Name,data");
  EXPECT_EQ(RegistryDword(HKEY_CURRENT_USER, std::string(kKey) + "\\A", "Name"), 0u);
}

TEST_F(RegistryTasks, AddLeavesATextTooLongToCompare) {
  const std::string text(2000, 'x');
  SetValue("\\A", "Name", text);
  Add(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), text);
}

TEST_F(RegistryTasks, AddReplacesTheLiteralMark) {
  SetValue("\\A", "Name", "before <ProgID> behind");
  Add(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), "data");
}

TEST_F(RegistryTasks, AddStopsAtAShellExtension) {
  SetValue("\\A\\ShellEx", "", "");
  Add(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), std::nullopt);
  EXPECT_EQ(
      Log(),
      mStatus + "    Installation de Veltrane 6.0c found a ShellEx key under " + mRoot +
          "A. Since this shell extention may handle \"file open\", Veltrane will not be associated with this "
          "file type.\n");
}

TEST_F(RegistryTasks, AnEmptyValueCountsAsMissing) {
  SetValue("\\A", "Name", "");
  SetValue("\\A\\ShellEx", "", "");
  Add(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), "");
}

TEST_F(RegistryTasks, AShellExtensionDoesNotMatterForOurOwnValue) {
  SetValue("\\A", "Name", "data");
  SetValue("\\A\\ShellEx", "", "");
  Add(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), "data");
  EXPECT_EQ(Log(), mStatus);
}

TEST_F(RegistryTasks, AddLogsAFailure) {
  const std::string key = "Software\\VeltraneTest\\" + std::string(300, 'k');
  Add("HKEY_CURRENT_USER\\" + key + "\\Name,data");
  EXPECT_EQ(Log(), mStatus +
                       "  Task_add_reg_chk_exist failure: couldn't add the key Name and the value data to " +
                       key + ".\n");
}

TEST_F(RegistryTasks, PathsThatNameNoKeyAreLogged) {
  for (const char* path : {"HKEY_CURRENT_USER\\Name", "HKEY_NOWHERE\\A\\Name", "nothing"}) {
    Log();
    Add(std::string(path) + ",data");
    EXPECT_TRUE(Holds(Log(), std::string("##ERROR: The registry path \"") + path + "\" names no key."));
    Remove(std::string(path) + ",data");
    EXPECT_TRUE(Holds(Log(), std::string("##ERROR: The registry path \"") + path + "\" names no key."));
  }
}

TEST_F(RegistryTasks, MissingArgumentsAreLogged) {
  Add(mRoot + "A\\Name");
  EXPECT_EQ(Log(), "The arguments for the task add_reg_chk_exist in Setup.inf are unknown.\n");
  Remove(mRoot + "A\\Name");
  EXPECT_EQ(Log(), "The arguments for the task remove_reg_chk_exist in Setup.inf are unknown.\n");
  Remove(mRoot + "A\\Name, ");
  EXPECT_EQ(Log(), "The arguments for the task remove_reg_chk_exist in Setup.inf are unknown.\n");
  RemoveIni("");
  EXPECT_EQ(Log(), "The arguments for the task remove_ini_path in Setup.inf are unknown.\n");
  Register("");
  EXPECT_EQ(Log(), "The arguments for the task register_dll in Setup.inf are unknown.\n");
  GetIniVar("Dir,ini,Section");
  EXPECT_EQ(Log(), "The arguments for the task get_ini_var in Setup.inf are unknown.\n");
}

TEST_F(RegistryTasks, RemoveTakesBackWhatAddWrote) {
  SetValue("\\A", "Other", "x");
  Add(mRoot + "A\\Name,data");
  Log();
  Remove(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), std::nullopt);
  EXPECT_EQ(Value("\\A", "Other"), "x");
  EXPECT_EQ(Log(), mStatus);
}

TEST_F(RegistryTasks, RemoveLeavesAnotherOwnersValue) {
  SetValue("\\A", "Name", "other");
  Remove(mRoot + "A\\Name,data");
  EXPECT_EQ(Value("\\A", "Name"), "other");
}

TEST_F(RegistryTasks, RemoveOfTheDefaultValueTakesAnEmptyKey) {
  Add(mRoot + "A\\,data");
  Remove(mRoot + "A\\,data");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\A"));
}

TEST_F(RegistryTasks, RemoveOfTheDefaultValueKeepsAKeyWithMore) {
  SetValue("\\A", "Other", "x");
  SetValue("\\B\\Sub", "", "x");
  Add(mRoot + "A\\,data");
  Add(mRoot + "B\\,data");
  Remove(mRoot + "A\\,data");
  Remove(mRoot + "B\\,data");
  EXPECT_EQ(Value("\\A"), std::nullopt);
  EXPECT_EQ(Value("\\A", "Other"), "x");
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\B\\Sub"));
}

TEST_F(RegistryTasks, RemoveOfANamedValueKeepsTheEmptyKey) {
  Add(mRoot + "A\\Name,data");
  Remove(mRoot + "A\\Name,data");
  EXPECT_TRUE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\A"));
}

TEST_F(RegistryTasks, RemoveOfAMissingValueDoesNothing) {
  Remove(mRoot + "Gone\\Name,data");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\Gone"));
}

TEST_F(RegistryTasks, TheChecksActInPass1Only) {
  int32_t pass = 0;
  Task_add_reg_chk_exist("add_reg_chk_exist", (mRoot + "A\\Name,data").c_str(), &pass);
  EXPECT_EQ(Value("\\A", "Name"), std::nullopt);
  EXPECT_EQ(Log(), "");
}

TEST_F(RegistryTasks, RegisterDllCallsTheLibrary) {
  const std::string dll = HelperPath("selfreg.dll");
  Register(dll);
  EXPECT_EQ(Value("\\SelfReg", "Registered"), dll);
  EXPECT_EQ(Log(), "DLL Registration succeeded for " + dll + "\n");
  EXPECT_EQ(GetModuleHandleA("selfreg.dll"), nullptr) << "freed again";
}

TEST_F(RegistryTasks, RegisterDllUnregistersOnRemoval) {
  const std::string dll = HelperPath("selfreg.dll");
  Register(dll);
  ::Run().install = false;
  Register(dll);
  EXPECT_EQ(Value("\\SelfReg", "Registered"), std::nullopt);
}

TEST_F(RegistryTasks, RegisterDllLogsFailures) {
  const std::string dll = HelperPath("selfreg.dll");
  SetEnvironmentVariableA("VT_SELFREG", "0x80004005");
  Register(dll);
  SetEnvironmentVariableA("VT_SELFREG", nullptr);
  EXPECT_EQ(Log(), "##ERROR: DLL Registration failed for " + dll + "\n");
  Register(mDir.Join("gone.dll"));
  EXPECT_EQ(Log(), "##ERROR: DLL Registration failed for " + mDir.Join("gone.dll") + "\n");
  Register(HelperPath("exit_with.exe"));
  EXPECT_TRUE(Holds(Log(), "##ERROR: DLL Registration failed for ")) << "no such function";
}

TEST_F(RegistryTasks, APositiveResultIsSuccess) {
  SetEnvironmentVariableA("VT_SELFREG", "1");
  Register(HelperPath("selfreg.dll"));
  SetEnvironmentVariableA("VT_SELFREG", nullptr);
  EXPECT_TRUE(Holds(Log(), "DLL Registration succeeded for "));
}

TEST_F(RegistryTasks, ABareLibraryNameIsNotSearchedFor) {
  Register("selfreg.dll");
  EXPECT_EQ(Log(), "##ERROR: DLL Registration failed for selfreg.dll\n");
}

TEST_F(RegistryTasks, GetIniVarReadsAFolderThatHoldsTheProduct) {
  mDir.Write("old\\veltrane.exe", "x");
  mDir.Write("p.ini", "[Paths]\nHome=" + mDir.Join("old") + "\n");
  GetIniVar("Dir," + mDir.Join("p.ini") + ",Paths,Home");
  EXPECT_EQ(AppGetExpanded("Dir"), mDir.Join("old").c_str());
}

TEST_F(RegistryTasks, GetIniVarReadsTheRegistry) {
  mDir.Write("old\\veltrane.exe", "x");
  SetValue("\\Directories", "ProgDir", mDir.Join("old"));
  GetIniVar("Dir,REG*HKEY_CURRENT_USER\\Software\\VeltraneTest,directories,progdir");
  EXPECT_EQ(AppGetExpanded("Dir"), mDir.Join("old").c_str());
}

TEST_F(RegistryTasks, GetIniVarLeavesTheVariableWithoutTheProduct) {
  AppSetVariable("Dir", "before");
  mDir.MakeFolder("empty");
  mDir.Write("p.ini", "[Paths]\nHome=" + mDir.Join("empty") + "\nNone=\n");
  const std::string ini = mDir.Join("p.ini");
  for (const std::string& args :
       {"Dir," + ini + ",Paths,Home", "Dir," + ini + ",Paths,None", "Dir," + ini + ",Paths,Gone",
        "Dir," + ini + ",Gone,Home", "Dir," + mDir.Join("gone.ini") + ",Paths,Home",
        std::string("Dir,REG*HKEY_NOWHERE\\x,Paths,Home")}) {
    GetIniVar(args);
    EXPECT_EQ(AppGetExpanded("Dir"), "before") << args;
  }
  EXPECT_EQ(Log(), "");
}

TEST_F(RegistryTasks, RemoveIniPathDeletesAFile) {
  mDir.Write("p, q.ini", "[A]\n");
  RemoveIni("\"" + mDir.Join("p, q.ini") + "\"");
  EXPECT_FALSE(mDir.Has("p, q.ini"));
  EXPECT_EQ(Log(), "");
}

TEST_F(RegistryTasks, RemoveIniPathOfAMissingFileIsNoFault) {
  RemoveIni(mDir.Join("gone.ini"));
  EXPECT_EQ(Log(), "");
}

TEST_F(RegistryTasks, RemoveIniPathDeletesAKey) {
  SetValue("\\Store\\Section\\Deep", "a", "b");
  SetValue("\\Stays", "a", "b");
  RemoveIni("REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\Store");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\Store"));
  EXPECT_EQ(Value("\\Stays", "a"), "b");
  EXPECT_EQ(Log(), "");
}

TEST_F(RegistryTasks, KeepSparesTheStoreWhenThisRunKeepsSettings) {
  SetValue("\\Store", "a", "b");
  const std::string path = "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\Store";
  ::Run().setupFlags = kRemove | kKeepSelf;
  RemoveIni(path + ",keep");
  EXPECT_EQ(Value("\\Store", "a"), "b");
  ::Run().setupFlags = kRemove;
  RemoveIni(path + ",other");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\Store"));
}

TEST_F(RegistryTasks, KeepNeedsBothFlagsAndTheWord) {
  const std::string path = "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\Store";
  for (const uint8_t flags : {uint8_t{kRemove}, uint8_t{kKeepSelf}, uint8_t{0}}) {
    SetValue("\\Store", "a", "b");
    ::Run().setupFlags = flags;
    RemoveIni(path + ",Keep");
    EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\Store")) << int{flags};
  }
  SetValue("\\Store", "a", "b");
  ::Run().setupFlags = kRemove | kKeepSelf;
  RemoveIni(path);
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, std::string(kKey) + "\\Store"));
}

TEST_F(RegistryTasks, PathsThatNameTooMuchAreRefused) {
  SetValue("\\Store", "a", "b");
  for (const char* path :
       {"REG*HKEY_CURRENT_USER", "REG*HKEY_CURRENT_USER\\", "REG*HKEY_CURRENT_USER\\Software\\",
        "REG*HKEY_CURRENT_USER\\\\Software\\VeltraneTest", "REG*HKEY_NOWHERE\\Software", "\"\""}) {
    Log();
    RemoveIni(path);
    EXPECT_TRUE(Holds(Log(), "##ERROR: Task_remove_ini_path: ")) << path;
  }
  EXPECT_EQ(Value("\\Store", "a"), "b");
}

TEST_F(RegistryTasks, AFileThatCannotBeRemovedIsLogged) {
  mDir.Write("p.ini", "[A]\n");
  const FileHandle held(
      CreateFileA(mDir.Join("p.ini").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  RemoveIni(mDir.Join("p.ini"));
  EXPECT_EQ(Log(), "##ERROR: Task_remove_ini_path: \"" + mDir.Join("p.ini") + "\" could not be removed.\n");
}

}  // namespace
