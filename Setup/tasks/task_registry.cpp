// Registry and INI tasks: add_reg_chk_exist, remove_reg_chk_exist and remove_ini_path (pass 1), register_dll
// (installation: pass 1, removal: pass 0), get_ini_var (always).
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "script/dllregister.h"
#include "script/regcheck.h"
#include "script/setupinf.h"
#include "stores/ini.h"
#include "stores/register.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kUpdatingRegistry = 358;
constexpr char kProductFile[] = "veltrane.exe";

void LogShellExtension(const RegPlace& place) {
  Str key(place.rootName);
  key.Append('\\');
  key.Append(place.keyPath);
  LogLine(
      Message(
          "    <SetupName> found a ShellEx key under <RegKey>. Since this shell extention may handle \"file "
          "open\", <AppName> will not be associated with this file type.")
          .With("RegKey", key));
}

void LogAddFailure(const RegPlace& place, const Str& text) {
  LogLine(
      Message("  Task_add_reg_chk_exist failure: couldn't add the key <RegKey> and the value <RegValue> to "
              "<RootKey>.",
              kTemplateLiteral)
          .With("RegKey", place.valueName)
          .With("RootKey", place.keyPath)
          .With("RegValue", text));
}

// The folder that the key names, when the product is installed there.
bool ReadProductFolder(const Str& iniPath, const Str& section, const Str& key, Str& value) {
  const IniStorePtr store = IniOpen(iniPath, true);
  return store && IniFindSection(store.get(), section) && IniReadStr(store.get(), key, value) &&
         !value.IsEmpty() && FS::IsFile(JoinPath(value, kProductFile));
}

bool RemoveStore(const Str& path) {
  HKEY root = nullptr;
  Str subKey;
  if (!IniParsePath(path, root, subKey)) return false;
  if (root != nullptr) return IsSafeKeyPath(subKey.View()) && RegDeleteKeyTree(root, subKey) == 0;
  return !subKey.IsEmpty() && (!FS::Exists(subKey) || FS::Delete(subKey));
}

}  // namespace

int32_t Task_add_reg_chk_exist(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 2, fields)) return 1;
  SetProgressText(GetResStr(kUpdatingRegistry));
  RegPlace place;
  if (!ParseRegPlace(fields.front(), place)) return 1;
  switch (AddValueUnlessClaimed(place, fields.back())) {
    case RegAddResult::kShellExtension:
      LogShellExtension(place);
      break;
    case RegAddResult::kFailed:
      LogAddFailure(place, fields.back());
      break;
    case RegAddResult::kAdded:
    case RegAddResult::kForeignValue:
      break;
  }
  return 1;
}

int32_t Task_remove_reg_chk_exist(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 2, fields)) return 1;
  if (fields[1].IsEmpty()) {  // every value would contain it
    LogUnknownArgs(name);
    return 1;
  }
  SetProgressText(GetResStr(kUpdatingRegistry));
  RegPlace place;
  if (ParseRegPlace(fields[0], place)) RemoveValueIfOurs(place, fields[1]);
  return 1;
}

int32_t Task_register_dll(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  const bool done = CallDllRegistration(fields[0], Run().install);
  LogOutcome(done, Message("DLL Registration <result> for <file>", kTemplateLiteral)
                       .With("result", done ? "succeeded" : "failed")
                       .With("file", fields[0]));
  return 1;
}

int32_t Task_get_ini_var(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 4, fields)) return 1;
  Str folder;
  if (ReadProductFolder(fields[1], fields[2], fields[3], folder)) AppSetVariable(fields[0], folder);
  return 1;
}

int32_t Task_remove_ini_path(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  constexpr uint8_t kKeepUserSettings = kRemove | kKeepSelf;
  const bool keep = fields.size() > 1 && fields[1].ICompare("Keep") == 0;
  if (keep && (Run().setupFlags & kKeepUserSettings) == kKeepUserSettings) return 1;
  if (!RemoveStore(fields[0]))
    LogScriptError(Message("Task_remove_ini_path: \"<IniPath>\" could not be removed.", kTemplateLiteral)
                       .With("IniPath", fields[0]));
  return 1;
}
