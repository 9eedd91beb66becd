// Equation servers, preferences, shortcuts and associations in whole runs: what an installation makes of a
// machine and what the removal leaves of it.
#include <gtest/gtest.h>
#include <ole2.h>
#include <shlobj.h>
#include <windows.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "sequence/driver.h"
#include "support/files.h"
#include "support/setup_run.h"
#include "support/wait.h"

namespace {

constexpr char kClasses[] = "Software\\Classes\\";
constexpr char kOwnClass[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7D26}";  // that of the made-up scripts
constexpr char kServer[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DA1}";
constexpr char kThird[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DB2}";
constexpr char kStub[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DF1}";
constexpr char kSaved[] = "Software\\Quorvale\\KVRX6\\OldOLEAutoConverts";
constexpr char kOpenWith[] =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\.vttest\\OpenWithList";
constexpr char kGroup[] = "Veltrane Test";

CLSID ToClass(const char* text) {
  const std::string narrow = text;
  CLSID id = {};
  EXPECT_EQ(CLSIDFromString(const_cast<wchar_t*>(std::wstring(narrow.begin(), narrow.end()).c_str()), &id),
            S_OK);
  return id;
}

// The class that the server's objects are converted to, as the system sees it.
std::string ConvertsTo(const char* server) {
  CLSID to = {};
  if (OleGetAutoConvert(ToClass(server), &to) != S_OK) return "";
  wchar_t text[64] = L"";
  StringFromGUID2(to, text, 64);
  const std::wstring wide(text);
  return std::string(wide.begin(), wide.end());
}

std::string ProgramsFolder() {
  char path[MAX_PATH] = "";
  SHGetSpecialFolderPathA(nullptr, path, CSIDL_COMMON_PROGRAMS, FALSE);
  return path;
}

std::string ReadLink(const std::string& path) {
  const ProcessResult result = RunProcess(Quoted(HelperPath("read_link.exe")) + " " + Quoted(path));
  EXPECT_EQ(result.exitCode, 0u) << path;
  return result.output;
}

class OleShellRun : public testing::Test {
 public:
  // The system opens the classes key at the first call of each kind and keeps it: that is no test's leak.
  static void SetUpTestSuite() {
    CLSID id = {};
    CLSIDFromProgID(L"Equation.VtTest", &id);
    OleGetAutoConvert(ToClass(kServer), &id);
    OleSetAutoConvert(ToClass(kServer), CLSID_NULL);
  }

 protected:
  ~OleShellRun() override { DeleteTree(Group()); }

  static std::string Group(const std::string& name = "") {
    return ProgramsFolder() + "\\" + kGroup + (name.empty() ? "" : "\\" + name);
  }
  static void SetClass(const std::string& key, const std::string& value) {
    SetRegistryString(HKEY_LOCAL_MACHINE, kClasses + key, "", value);
  }
  static void AddServer(const char* classId, const std::string& progId, const std::string& program) {
    SetClass(progId + "\\CLSID", classId);
    SetClass(std::string("CLSID\\") + classId, progId + " objects");
    SetClass(std::string("CLSID\\") + classId + "\\ProgID", progId);
    SetClass(std::string("CLSID\\") + classId + "\\LocalServer32", program);
  }
  RunOutcome Install(const std::string& install, const std::string& remove = "") {
    mSetup.WriteScript(mSetup.SimpleScript(install, remove));
    const RunOutcome outcome = mSetup.SilentInstall();
    EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
    EXPECT_EQ(outcome.windows, std::vector<std::string>());
    mSetup.CopySetupToDest();
    return outcome;
  }
  RunOutcome Remove() {
    const RunOutcome outcome = mSetup.SilentRemoval();
    EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
    EXPECT_EQ(outcome.windows, std::vector<std::string>());
    return outcome;
  }

  // Before the runs, so that it is deleted after them.
  RegistryGuard mProgId{HKEY_LOCAL_MACHINE, std::string(kClasses) + "Equation.3"};
  RegistryGuard mOlder{HKEY_LOCAL_MACHINE, std::string(kClasses) + "Equation.KVRX5"};
  RegistryGuard mNewer{HKEY_LOCAL_MACHINE, std::string(kClasses) + "Equation.KVRX7"};
  RegistryGuard mServer{HKEY_LOCAL_MACHINE, std::string(kClasses) + "CLSID\\" + kServer};
  RegistryGuard mThird{HKEY_LOCAL_MACHINE, std::string(kClasses) + "CLSID\\" + kThird};
  RegistryGuard mStub{HKEY_LOCAL_MACHINE, std::string(kClasses) + "CLSID\\" + kStub};
  RegistryGuard mStubProgId{HKEY_LOCAL_MACHINE, std::string(kClasses) + "VtTest.Document.6"};
  RegistryGuard mExtension{HKEY_LOCAL_MACHINE, std::string(kClasses) + ".vttest"};
  RegistryGuard mOtherType{HKEY_LOCAL_MACHINE, std::string(kClasses) + "VtOther.File"};
  RegistryGuard mFileExts{HKEY_CURRENT_USER,
                          "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\.vttest"};
  SetupRun mSetup;
};

TEST_F(OleShellRun, ConversionsAreTakenOverAndGivenBack) {
  AddServer(kServer, "Equation.3", "C:\\eq3.exe");
  AddServer(kThird, "Equation.KVRX7", "C:\\vt7.exe");
  ASSERT_EQ(OleSetAutoConvert(ToClass(kServer), ToClass(kThird)), S_OK);
  mSetup.AddFile("a.txt", "alpha");

  Install("$set_all_autoconverts=True\r\n", "$set_all_autoconverts=False\r\n");
  EXPECT_EQ(ConvertsTo(kServer), kOwnClass);
  EXPECT_EQ(ConvertsTo(kThird), "");  // newer than the product
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, std::string(kSaved) + "\\" + kServer, ""), kThird);

  Remove();
  EXPECT_EQ(ConvertsTo(kServer), kThird);
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kSaved) + "\\" + kServer));
}

TEST_F(OleShellRun, OneServerIsConvertedByItsName) {
  AddServer(kServer, "Equation.3", "C:\\eq3.exe");
  AddServer(kThird, "Equation.KVRX7", "C:\\vt7.exe");
  mSetup.AddFile("a.txt", "alpha");
  Install("$set_one_autoconvert=\"equation.kvrx7\",True\r\n",
          "$set_one_autoconvert=Equation.KVRX7,False\r\n");
  EXPECT_EQ(ConvertsTo(kThird), kOwnClass);
  EXPECT_EQ(ConvertsTo(kServer), "");
  Remove();
  EXPECT_EQ(ConvertsTo(kThird), "{00000000-0000-0000-0000-000000000000}");
}

TEST_F(OleShellRun, TheProductRegistersBehindTheCopyAndLeavesBeforeTheDeletion) {
  mSetup.AddFile("Veltrane.exe", ReadWholeFile(HelperPath("note_run.exe")));
  const RunOutcome installed = Install("$register=\r\n", "$register=\r\n");
  const std::string command = "OLE Registration command: " + mSetup.Dest("Veltrane.exe") + " -";
  EXPECT_TRUE(installed.LoggedInOrder("Installation : " + mSetup.Dest("Veltrane.exe") + "\n",
                                      command + "install = Success "))
      << installed.log;
  const std::string notes = mSetup.Dest("Veltrane.exe.ran");
  ASSERT_TRUE(WaitUntil([&] { return PathExists(notes) && !ReadWholeFile(notes).empty(); }));
  EXPECT_NE(ReadWholeFile(notes).find(" -install\r\n"), std::string::npos);

  const RunOutcome removed = Remove();
  EXPECT_TRUE(removed.LoggedInOrder(command + "remove = Success ", "Deleting " + mSetup.Dest("Veltrane.exe")))
      << removed.log;
  EXPECT_NE(ReadWholeFile(notes).find(" -remove\r\n"), std::string::npos);
  EXPECT_FALSE(PathExists(mSetup.Dest("Veltrane.exe")));
}

TEST_F(OleShellRun, AMissingProductFailsToRegisterAndIsNoObstacleToItsRemoval) {
  mSetup.AddFile("a.txt", "alpha");
  const RunOutcome installed = Install("$register=\r\n", "$register=\r\n");
  EXPECT_TRUE(installed.Logged("Veltrane.exe -install = Fail: Error =  2\n")) << installed.log;
  EXPECT_TRUE(installed.Logged("Veltrane ne peut pas effectuer son enregistrement OLE. \n")) << installed.log;
  const RunOutcome removed = Remove();
  EXPECT_TRUE(removed.Logged("Veltrane.exe -remove = Success 2\n")) << removed.log;
  EXPECT_FALSE(removed.Logged("enregistrement OLE")) << removed.log;
}

TEST_F(OleShellRun, TheGroupComesWithItsLinksAndGoes) {
  mSetup.AddFile("Veltrane.exe", "a program");
  ASSERT_FALSE(PathExists(Group()));
  const RunOutcome installed = Install(
      "$add_icon=<AppName> <MajVersion>,Lance "
      "<AppName>,<ProgDir>\\Veltrane.exe,-x,<ProgDir>\\Veltrane.exe,2\r\n"
      "$add_icon=Dossier,Le dossier,<ProgDir>\r\n"
      "$add_icon_group=Veltrane Test\r\n"
      "$create_link=<ProgDir>\\sub\\Lien,Un lien,<ProgDir>\\Veltrane.exe\r\n",
      "$remove_icon_group=Veltrane Test\r\n$file_sys=delete,<ProgDir>\\sub\\Lien.lnk\r\n");
  EXPECT_TRUE(installed.Logged("Successfully created program group folder, " + Group() + ".\n"))
      << installed.log;
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>({"Dossier.lnk", "Veltrane 6.lnk"}));
  const std::string link = ReadLink(Group("Veltrane 6.lnk"));
  EXPECT_NE(link.find("path: " + mSetup.Dest("Veltrane.exe") + "\r\n"), std::string::npos) << link;
  EXPECT_NE(link.find("description: Lance Veltrane\r\n"), std::string::npos) << link;
  EXPECT_NE(link.find("arguments: -x\r\n"), std::string::npos) << link;
  EXPECT_NE(link.find("icon: " + mSetup.Dest("Veltrane.exe") + ",2\r\n"), std::string::npos) << link;
  EXPECT_NE(ReadLink(mSetup.Dest("sub\\Lien.lnk")).find("description: Un lien\r\n"), std::string::npos);

  Remove();
  EXPECT_FALSE(PathExists(Group()));
  EXPECT_FALSE(PathExists(mSetup.Dest("sub\\Lien.lnk")));
}

TEST_F(OleShellRun, ASecondRunOfTheGroupEmptiesItFirst) {
  mSetup.AddFile("a.txt", "alpha");
  Install("$add_icon=Ancien,d,<ProgDir>\\a.txt\r\n$add_icon_group=Veltrane Test\r\n");
  const RunOutcome again = Install(
      "$empty_icon_group=Veltrane Test\r\n$add_icon=Nouveau,d,<ProgDir>\\a.txt\r\n$add_icon_group=Veltrane "
      "Test\r\n");
  EXPECT_TRUE(again.Logged("Suppression des anciennes ic\xf4nes Veltrane Test\n")) << again.log;
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>({"Nouveau.lnk"}));
}

TEST_F(OleShellRun, AssociationsComeAndGo) {
  mSetup.AddFile("a.txt", "alpha");
  SetRegistryString(HKEY_CURRENT_USER, kOpenWith, "a", "other.exe");
  SetRegistryString(HKEY_CURRENT_USER, kOpenWith, "MRUList", "a");
  SetClass(".vttest", "VtOther.File");
  SetClass("VtOther.File\\shell\\open\\command", "C:\\vt\\veltrane.exe \"%1\"");
  Install(std::string("$stub_reg=VtTest.Document.6,") + kStub + ",Veltrane Document\r\n" +
              "$add_openwith_support=vttest,<AppProgName>.exe\r\n"
              "$clean_others_ext_reg=\".vttest\",VtTest.Document.6\r\n",
          "$remove_openwith_support=vttest,<AppProgName>.exe\r\n");
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, std::string(kClasses) + "VtTest.Document.6\\CLSID", ""),
            kStub);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kOpenWith, "b"), "Veltrane.exe");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kOpenWith, "MRUList"), "ab");
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, std::string(kClasses) + "VtOther.File\\shell\\open"));

  const RunOutcome removed = Remove();
  EXPECT_TRUE(removed.Logged("Deleted Veltrane.exe from OpenWithList for vttest\n")) << removed.log;
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kOpenWith, "a"), "other.exe");
  EXPECT_FALSE(RegistryString(HKEY_CURRENT_USER, kOpenWith, "b").has_value());
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kOpenWith, "MRUList"), "a");
}

TEST_F(OleShellRun, PreferencesOfTheOlderReleaseAreCarriedOver) {
  mSetup.AddFile("a.txt", "alpha");
  AddServer(kServer, "Equation.KVRX5", "C:\\vt5.exe");
  SetRegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX5\\Preferences\\Sizes", "Full", "12 pt");
  const RunOutcome outcome = Install("$convert_pref=\r\n");
  EXPECT_TRUE(outcome.Logged(
      "    Convert VT preferences: REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX5\\Preferences "
      "to REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX6, result: Success\n"))
      << outcome.log;
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX6\\Sizes", "Full"), "12 pt");
}

TEST_F(OleShellRun, ManagerOnlyRunConvertsAndEndsWithoutCopying) {
  const std::string program = mSetup.Root().Write("servers\\eq3.exe", "a program");
  AddServer(kServer, "Equation.3", program);
  mSetup.AddFile("a.txt", "alpha");
  mSetup.WriteScript(mSetup.SimpleScript());
  SetupDriver driver(mSetup, "-OLEMGR");
  const HWND dialog = driver.WaitFor(IDC_OLE_KEEP_LIST);
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(SetupDriver::Caption(dialog), "Gestionnaire de conversion");
  // By the keyboard alone: the add button's letter, then Escape.
  const std::string keys = Quoted(HelperPath("dialog_driver.exe")) +
                           " -caption \"Gestionnaire de conversion\" -has " +
                           std::to_string(IDC_OLE_KEEP_LIST) + " keys ";
  EXPECT_EQ(RunProcess(keys + "%a").exitCode, 0u);
  EXPECT_TRUE(WaitUntil([&] { return ConvertsTo(kServer) == kOwnClass; }));
  EXPECT_EQ(RunProcess(keys + "{ESC} gone").exitCode, 0u);
  const RunOutcome outcome = driver.End();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(OleShellRun, SilentManagerRunShowsNothing) {
  mSetup.AddFile("a.txt", "alpha");
  mSetup.WriteScript(mSetup.SimpleScript());
  const RunOutcome outcome = mSetup.Run("-OLEMGR -Q -D " + Quoted(mSetup.Dest()));
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_EQ(outcome.windows, std::vector<std::string>());
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
}

}  // namespace
