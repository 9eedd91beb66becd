#include "stores/inistuff.h"

#include <windows.h>

#include "base/assert.h"
#include "base/leadbyte.h"
#include "base/str.h"
#include "messages/varlist.h"
#include "platform/folders.h"
#include "platform/pathparts.h"
#include "stores/ini.h"

namespace {

// Sets a folder variable. `expression` is reported when the system does not name the folder.
void SetFolder(const char* name, bool (*getFolder)(Str&), const char* expression) {
  Str folder;
  const bool known = getFolder(folder);
  VT_ASSERT(known && folder.Length() > 0, expression);
  if (PathText::EndsInBackslash(folder.View(), IsAnsiLeadByte)) folder.Delete(folder.Length() - 1, 1);
  AppSetVariable(name, folder);
}

IniStorePtr OpenMachineStore(bool readOnly) {
  if (!AppVariableExists("MachRegKey")) return nullptr;
  return IniOpen(AppGetExpanded("MachRegKey"), readOnly);
}

void WriteFolder(IniStore* ini, const char* name) {
  const Str folder = AppGetExpanded(name);
  if (!folder.IsEmpty()) IniWriteString(ini, name, folder);
}

}  // namespace

void SetFolderVariables() {
  SetFolder("WinDir", Folders::GetWindowsDir, "winDir.Length()");
  SetFolder("SystemDir", Folders::GetSystemDir, "sysDir.Length()");
  SetFolder("TempDir", Folders::GetTempDir, "tempDir.Length()");
  Str appData;
  if (Folders::GetUserAppDataDir(appData)) AppSetVariable("UserAppDataDir", appData);
}

void ReadMachineStore() {
  const IniStorePtr store = OpenMachineStore(true);
  if (store == nullptr) return;
  Str value;
  if (IniFindSection(store.get(), "Windows")) {
    // What the variable holds stays as it was written: the variables in it may still be set.
    AppGetVariable("SetupHelpDir", value);
    IniGetStr(store.get(), "Help", value, value);
    if (!value.IsEmpty()) AppSetVariable("SetupHelpDir", value);
  }
  if (IniFindSection(store.get(), "Directories")) {
    IniGetStr(store.get(), "ProgDir", "", value);
    if (!value.IsEmpty()) {
      AppSetVariable("ini_ProgDir", value);
      AppSetVariable("ProgDir", value);
    }
  }
}

void WriteMachineStore() {
  IniStorePtr store = OpenMachineStore(false);
  if (store == nullptr || !IniFindSection(store.get(), "Directories", true)) return;
  WriteFolder(store.get(), "ProgDir");
  WriteFolder(store.get(), "InstallFromDir");
  IniClose(store);
}
