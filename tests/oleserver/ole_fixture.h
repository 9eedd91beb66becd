#pragma once
// What the equation-server tests start from: a machine without equation servers, classes of the tests' own,
// the product's variables and stores below keys of the tests' own.
#include <gtest/gtest.h>
#include <ole2.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "oleserver/convpref.h"
#include "oleserver/regmgr.h"
#include "stores/register.h"
#include "support/registry_guard.h"
#include "support/setup_run.h"
#include "tasks/infproc.h"
#include "ui/ui_fixture.h"

inline constexpr char kClasses[] = "Software\\Classes\\";
inline constexpr char kTestStore[] = "Software\\VeltraneTest";

// Class identifiers of the tests' own; made up, the system spells them like this.
inline constexpr char kOwnClass[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7D26}";
inline constexpr char kClassA[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DA1}";
inline constexpr char kClassB[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DB2}";
inline constexpr char kClassC[] = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DC3}";
inline constexpr char kNoClass[] = "{00000000-0000-0000-0000-000000000000}";

inline CLSID ToClass(const std::string& text) {
  CLSID id = {};
  const std::wstring wide(text.begin(), text.end());
  EXPECT_EQ(CLSIDFromString(const_cast<wchar_t*>(wide.c_str()), &id), S_OK) << text;
  return id;
}

// The class that objects of `from` are converted to, asked of the system; "" when nothing is set.
inline std::string ConvertsTo(const std::string& from) {
  CLSID to = {};
  if (OleGetAutoConvert(ToClass(from), &to) != S_OK) return "";
  wchar_t text[64] = L"";
  StringFromGUID2(to, text, 64);
  const std::wstring wide(text);
  return std::string(wide.begin(), wide.end());
}

inline void Convert(const std::string& from, const std::string& to) {
  EXPECT_EQ(OleSetAutoConvert(ToClass(from), ToClass(to)), S_OK);
}

class OleTest : public UiTest {
 public:
  // The system opens the classes key at the first call of each kind and keeps it: that is no test's leak.
  static void SetUpTestSuite() {
    CLSID id = {};
    CLSIDFromProgID(L"Equation.VtTest", &id);
    LPOLESTR name = nullptr;
    if (OleRegGetUserType(ToClass(kClassA), USERCLASSTYPE_FULL, &name) == S_OK) CoTaskMemFree(name);
    OleGetAutoConvert(ToClass(kClassA), &id);
    OleSetAutoConvert(ToClass(kClassA), ToClass(kNoClass));
    Str value;
    RegQueryString(HKEY_CLASSES_ROOT, "Equation.VtTest", "", value);
  }

 protected:
  void SetUp() override {
    UiTest::SetUp();
    ResetPreferenceConversion();
    AppSetVariable("CompanyKey", "KV");
    AppSetVariable("ClassId", kOwnClass);
    AppSetVariable("AppProgName", "Veltrane");
    AppSetVariable("EqnConvMgr", "Gestionnaire de conversion");
    AppSetVariable("WinDir", "C:\\windows");
    AppSetVariable("ProgDir", mDir.Path().c_str());
    AppSetVariable("MachRegKey", "REG*HKEY_LOCAL_MACHINE\\Software\\VeltraneTest\\KVRX6");
    AppSetVariable("UserRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\KVRX6\\Preferences");
    ASSERT_TRUE(ListEquationServers(ServerChoice::kAll).empty()) << "this Windows has equation servers";
    AddClass(kOwnClass, "Veltrane 6.0 Equation");
  }
  void TearDown() override {
    ResetPreferenceConversion();
    UiTest::TearDown();
  }

  void GuardKey(const std::string& path) {
    mGuards.push_back(std::make_unique<RegistryGuard>(HKEY_LOCAL_MACHINE, path));
  }
  static std::string ClassKey(const std::string& classId) {
    return std::string(kClasses) + "CLSID\\" + classId;
  }
  static void SetClass(const std::string& key, const std::string& value) {
    SetRegistryString(HKEY_LOCAL_MACHINE, kClasses + key, "", value);
  }
  // A class without anything but its name.
  void AddClass(const std::string& classId, const std::string& typeName) {
    GuardKey(ClassKey(classId));
    SetClass("CLSID\\" + classId, typeName);
  }
  // A key that leads from a ProgID to a class.
  void AddProgId(const std::string& progId, const std::string& classId) {
    GuardKey(kClasses + progId);
    SetClass(progId + "\\CLSID", classId);
  }
  // A whole server. `command`: its LocalServer32; "" for none.
  void AddServer(const std::string& progId, const std::string& classId, const std::string& typeName,
                 const std::string& command = "") {
    AddClass(classId, typeName);
    AddProgId(progId, classId);
    SetClass("CLSID\\" + classId + "\\ProgID", progId);
    if (!command.empty()) SetClass("CLSID\\" + classId + "\\LocalServer32", command);
  }
  // A server whose program is there.
  std::string AddInstalledServer(const std::string& progId, const std::string& classId,
                                 const std::string& typeName, const std::string& program) {
    const std::string path = mDir.Write(program, "a program");
    AddServer(progId, classId, typeName, path);
    return path;
  }
  // Key of the remembered target of a class.
  static std::string SavedKey(const std::string& classId) {
    return std::string(kTestStore) + "\\KVRX6\\OldOLEAutoConverts\\" + classId;
  }
  static std::string ProgIdsOf(const ServerList& servers) {
    std::string text;
    for (const auto& server : servers) text += std::string(server->ProgId().View()) + ";";
    return text;
  }
  static std::string ListAll() { return ProgIdsOf(ListEquationServers(ServerChoice::kAll)); }
  static std::string ListTakeOver() { return ProgIdsOf(ListEquationServers(ServerChoice::kTakeOver)); }

  // Runs a task in a pass; -1: without one. Returns what it logged.
  std::string Task(const std::string& name, const std::string& args, int32_t pass) {
    EXPECT_EQ(TaskDispatch(("$" + name).c_str(), args.c_str(), pass < 0 ? nullptr : &pass), 1);
    return Log();
  }

 private:
  RegistryGuard mMachineGuard{HKEY_LOCAL_MACHINE, kTestStore};
  RegistryGuard mUserGuard{HKEY_CURRENT_USER, kTestStore};
  std::vector<std::unique_ptr<RegistryGuard>> mGuards;
};
