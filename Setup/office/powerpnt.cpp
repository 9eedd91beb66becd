#include "office/powerpnt.h"

#include <windows.h>

#include "base/assert.h"
#include "platform/fspath.h"
#include "stores/ini.h"
#include "stores/register.h"

namespace {

struct PowerPntVersion {
  int32_t version;
  const char* addInKey;    // INI-store path of the AddIns key
  const char* installKey;  // INI-store path of the InstallRoot key, ending in a backslash
  uint32_t autoLoad;       // written as "AutoLoad"
};

constexpr uint32_t kLoadAlways = 0xFFFFFFFF;

#define PPT_KEY(root, version, name) \
  "REG*" root "\\Software\\Microsoft\\Office\\" version ".0\\PowerPoint\\" name
#define USER "HKEY_CURRENT_USER"
#define MACHINE "HKEY_LOCAL_MACHINE"

// Versions 9 and 10 read their add-ins from the user's part of the registry, 11 and 12 from the machine's.
constexpr PowerPntVersion kPowerPntVersions[kNumPowerPntVersions] = {
    {9, PPT_KEY(USER, "9", "AddIns"), PPT_KEY(MACHINE, "9", "InstallRoot\\"), kLoadAlways},
    {10, PPT_KEY(USER, "10", "AddIns"), PPT_KEY(MACHINE, "10", "InstallRoot\\"), kLoadAlways},
    {11, PPT_KEY(MACHINE, "11", "AddIns"), PPT_KEY(MACHINE, "11", "InstallRoot\\"), kLoadAlways},
    {12, PPT_KEY(MACHINE, "12", "AddIns"), PPT_KEY(MACHINE, "12", "InstallRoot\\"), kLoadAlways},
};

#undef PPT_KEY
#undef USER
#undef MACHINE

constexpr int32_t kMaxFileName = 259;

struct AddInState {
  bool found = false;
  Str fileName;
  Str folder;
};

AddInState gAddIns[kNumPowerPntVersions];

bool IsInstalled(const PowerPntVersion& powerPnt) {
  const Str installKey(powerPnt.installKey);
  VT_ASSERT(installKey.Length(), "Str::Length(installPPTAddIn->installKey)");
  const int32_t lastSlashPos = installKey.FindLast('\\');
  VT_ASSERT(lastSlashPos < installKey.Length(), "lastSlashPos < Str::Length(installPPTAddIn->installKey)");
  Str storePath;
  Str valueName;
  storePath.Left(installKey, lastSlashPos);
  valueName.SetSubstring(installKey, lastSlashPos + 1, -1);
  return RegKeyOrValueExists(storePath, valueName);
}

// Root and subkey of the add-in's own key.
bool AddInKey(int32_t i, const Str& addInName, HKEY& hkRoot, Str& appKeyStr) {
  if (!VT_ASSERT(IniParsePath(kPowerPntVersions[i].addInKey, hkRoot, appKeyStr),
                 "IniParsePath(InstallPowerPt[i].addInKey,hkRoot,appKeyStr)") ||
      !VT_ASSERT(appKeyStr.Length(), "appKeyStr.Length()"))
    return false;
  if (appKeyStr.Chars()[appKeyStr.Length() - 1] != '\\') appKeyStr.Append('\\');
  appKeyStr.Append(addInName);
  return true;
}

void RegisterRow(int32_t i) {
  const AddInState& addIn = gAddIns[i];
  if (!VT_ASSERT(addIn.fileName.Length(), "Str::Length(InstallPowerPt[i].filename)")) return;
  const Str addInName = FSPath(addIn.fileName).BaseName();
  if (!VT_ASSERT(addInName.Length(), "addInName.Length()")) return;
  HKEY hkRoot = nullptr;
  Str appKeyStr;
  if (!AddInKey(i, addInName, hkRoot, appKeyStr)) return;
  const Str path = JoinPath(addIn.folder, addIn.fileName);
  VT_ASSERT(RegCreateKeyValue(hkRoot, appKeyStr, "AutoLoad", kPowerPntVersions[i].autoLoad),
            "RegCreateKeyValue(hkRoot,appKeyStr,\"AutoLoad\",InstallPowerPt[i].autoLoad)");
  VT_ASSERT(RegCreateKeyValue(hkRoot, appKeyStr, "Path", path.Chars()),
            "RegCreateKeyValue(hkRoot,appKeyStr,\"Path\",path)");
}

}  // namespace

int32_t FindPowerPntRow(int32_t version) {
  for (int32_t row = 0; row < kNumPowerPntVersions; ++row)
    if (kPowerPntVersions[row].version == version) return row;
  return -1;
}

void SetPowerPntAddIn(int32_t row, const Str& fileName, const Str& folder) {
  if (!VT_ASSERT(row >= 0 && row < kNumPowerPntVersions, "row >= 0 && row < kNumPowerPntVersions")) return;
  AddInState& addIn = gAddIns[row];
  addIn.found = IsInstalled(kPowerPntVersions[row]);
  addIn.fileName = fileName;
  if (!VT_ASSERT(fileName.Length() <= kMaxFileName, "Str::Length(fileName) <= kMaxFileName"))
    addIn.fileName.Left(fileName, kMaxFileName);
  addIn.folder = folder;
}

void RegisterPowerPntAddIns() {
  for (int32_t i = 0; i < kNumPowerPntVersions; ++i)
    if (gAddIns[i].found) RegisterRow(i);
}

void UnregisterPowerPntAddIns() {
  for (int32_t i = 0; i < kNumPowerPntVersions; ++i) {
    // A row without a file has no key of its own: its path would be the key of all add-ins.
    if (gAddIns[i].fileName.IsEmpty()) continue;
    const Str addInName = FSPath(gAddIns[i].fileName).BaseName();
    HKEY hkRoot = nullptr;
    Str appKeyStr;
    if (VT_ASSERT(addInName.Length(), "addInName.Length()") && AddInKey(i, addInName, hkRoot, appKeyStr))
      RegDeleteKeyTree(hkRoot, appKeyStr);
  }
}

void ResetPowerPntAddIns() {
  for (AddInState& addIn : gAddIns) addIn = AddInState{};
}
