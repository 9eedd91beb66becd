#include "oleserver/regmgr.h"

#include <objbase.h>
#include <ole2.h>

#include <algorithm>
#include <cstdlib>
#include <tuple>

#include "base/assert.h"
#include "base/runstate.h"
#include "base/string.h"
#include "messages/format.h"
#include "messages/varlist.h"
#include "platform/WinRegistry.h"
#include "platform/fspath.h"
#include "stores/ini.h"
#include "stores/register.h"

namespace {

constexpr unsigned kOldestReleaseName = 404;
constexpr char kOldestProgId[] = "Equation";
constexpr int32_t kMaxServerText = 299;  // characters taken of a registered server command
constexpr char kSavedTargets[] = "OldOLEAutoConverts";

// Owns text that OLE allocated.
class TaskText {
 public:
  TaskText() = default;
  TaskText(const TaskText&) = delete;
  TaskText& operator=(const TaskText&) = delete;
  ~TaskText() { CoTaskMemFree(mText); }
  LPOLESTR* Put() { return &mText; }
  Str Ansi() const {
    Str text;
    if (mText) text = mText;
    return text;
  }

 private:
  LPOLESTR mText = nullptr;
};

bool ParseClassId(const Str& text, CLSID& classId) {
  WStr wide;
  wide = text.Chars();
  // The parameter is not written to; older headers lack the const.
  return CLSIDFromString(const_cast<wchar_t*>(wide.Chars()), &classId) == S_OK;
}

Str ClassIdText(const CLSID& classId) {
  TaskText text;
  return StringFromCLSID(classId, text.Put()) == S_OK ? text.Ansi() : Str();
}

bool ClassOfProgId(const Str& progId, Str& classId) {
  WStr wide;
  wide = progId.Chars();
  CLSID id;
  if (CLSIDFromProgID(wide, &id) != S_OK) return false;
  classId = ClassIdText(id);
  return !classId.IsEmpty();
}

bool ReadClassValue(const Str& classId, const char* subKey, Str& value) {
  Str key("CLSID\\");
  key.Append(classId);
  key.Append(subKey);
  return RegQueryString(HKEY_CLASSES_ROOT, key, "", value) && !value.IsEmpty();
}

Str UserType(const Str& classId) {
  CLSID id;
  TaskText name;
  if (!ParseClassId(classId, id) || OleRegGetUserType(id, USERCLASSTYPE_FULL, name.Put()) != S_OK)
    return Str();
  return name.Ansi();
}

// Key that remembers what a server's objects were converted to; false without a
// registry store of the product.
bool SavedTargetKey(const Str& classId, HKEY& root, Str& subKey) {
  const Str store = AppGetExpanded("MachRegKey");
  if (store.IsEmpty() || !IniParsePath(store, root, subKey) || root == nullptr || subKey.IsEmpty())
    return false;
  subKey = JoinPath(JoinPath(subKey, kSavedTargets), classId);
  return true;
}

void RememberTarget(const Str& classId, const Str& target) {
  HKEY root = nullptr;
  Str subKey;
  if (SavedTargetKey(classId, root, subKey)) RegCreateKeyValue(root, subKey, "", target.Chars());
}

// Takes a remembered target out of the registry.
bool RecallTarget(const Str& classId, Str& target) {
  HKEY root = nullptr;
  Str subKey;
  if (!SavedTargetKey(classId, root, subKey) || !RegQueryString(root, subKey, "", target)) return false;
  RegDeleteKeyTree(root, subKey);
  return true;
}

// A target that is no class identifier ends the conversion.
void ApplyAutoConvert(const Str& classId, const Str& target) {
  CLSID from;
  CLSID to;
  if (!ParseClassId(classId, from)) return;
  if (!ParseClassId(target, to)) to = CLSID_NULL;
  // A class that is not registered cannot be converted; nobody can do anything about it.
  static_cast<void>(OleSetAutoConvert(from, to));
}

bool IsEquationKey(const Str& name) {
  return name.ICompare(kOldestProgId) == 0 || name.IBeginsWith("Equation.");
}

std::vector<Str> EquationProgIds() {
  std::vector<Str> progIds;
  KWinRegistry classes;
  if (!classes.OpenRooted("HKEY_CLASSES_ROOT", wrRead)) return progIds;
  Str name;
  for (uint32_t i = 0; classes.EnumSubKey(i, name); ++i)
    if (IsEquationKey(name)) progIds.push_back(name);
  return progIds;
}

bool FileBeside(const Str& program, const char* fileName, Str& path) {
  if (program.IsEmpty()) return false;
  path = JoinPath(FSPath(program).Parent(), fileName);
  return true;
}

}  // namespace

Str COLEEquationReg::ProgId() const {
  Str progId;
  return ReadClassValue(mClassId, "\\ProgID", progId) ? progId : Str();
}

Str COLEEquationReg::ServerPath() const {
  Str command;
  if (!ReadClassValue(mClassId, "\\LocalServer32", command) &&
      !ReadClassValue(mClassId, "\\LocalServer", command)) {
    const Str progId = ProgId();
    if (progId.IsEmpty() ||
        !RegQueryString(HKEY_CLASSES_ROOT, JoinPath(progId, "protocol\\StdExecute"), "Server", command))
      return Str();
  }
  if (command.Length() > kMaxServerText) command.Delete(kMaxServerText, -1);
  return Str(std::string_view(ServerProgram(command.View())));
}

Str COLEEquationReg::UserTypeName() const { return UserType(mClassId); }

Str COLEEquationReg::DisplayName() const {
  const Str progId = ProgId();
  if (progId == kOldestProgId) return MakeTemplate(kOldestReleaseName, kTemplateExpand);
  Str name = UserTypeName();
  // An entry without any text could not be told from another one.
  if (name.IsEmpty()) name = progId.IsEmpty() ? mClassId : progId;
  return name;
}

ServerDescription COLEEquationReg::Description() const {
  const Str program = ServerPath();
  const Str baseName = program.IsEmpty() ? Str() : FSPath(program).BaseName();
  ServerDescription server = DescribeServer(ProgId().View(), baseName.View());
  server.convertsToUs = ConvertsToUs();
  return server;
}

bool COLEEquationReg::GetAutoConvert(Str& targetClassId) const {
  CLSID from;
  CLSID to;
  if (!ParseClassId(mClassId, from) || OleGetAutoConvert(from, &to) != S_OK || to == CLSID_NULL) return false;
  targetClassId = ClassIdText(to);
  return true;
}

bool COLEEquationReg::ConvertsToUs() const {
  Str target;
  return GetAutoConvert(target) && target.ICompare(OwnClassId()) == 0;
}

void COLEEquationReg::SetAutoConvert(bool on) const {
  if (ConvertsToUs() == on) return;
  Str target;
  if (on) {
    CLSID own;
    // Without a class of the product the server would only lose the conversion that it has.
    if (!ParseClassId(OwnClassId(), own)) return;
    if (GetAutoConvert(target)) RememberTarget(mClassId, target);
    ApplyAutoConvert(mClassId, OwnClassId());
    const Str progId = ProgId();
    // Old programs find embedding servers here and would open the former one.
    if (!progId.IsEmpty()) WriteProfileStringA("embedding", progId, nullptr);
  } else {
    if (!RecallTarget(mClassId, target)) target = "";
    ApplyAutoConvert(mClassId, target);
  }
}

bool COLEEquationReg::MayTakeOver() const {
  const ServerDescription own = OwnDescription();
  const ServerDescription server = Description();
  if (own.version < server.version) return false;
  if (!own.own) return !server.own && own.maker == server.maker;
  switch (Run().oldVersionChoice) {
    case kOldVersionNone:
      return own.version >= server.version;
    case kOldVersionFromScript:
      return server.convertsToUs;
    case kOldVersionReplace:
      return true;
    case kOldVersionKeep:
      return false;
    default:
      VT_FAIL("Unknown value for 'OverwriteAppState.action'");
      return false;
  }
}

bool COLEEquationReg::GetPreferencePath(Str& path) const {
  static const struct {
    const char* progId;
    const char* path;  // null: this server keeps none
  } kKnown[] = {
      {"Equation.3", "REG*HKEY_CURRENT_USER\\Software\\Microsoft\\Equation Editor\\3.0\\Options"},
      {"Equation.2", "REG*HKEY_CURRENT_USER\\Software\\Microsoft\\Equation Editor\\2.0\\Options"},
      {"Equation.COEE2", "<WinDir>\\Eqnedit.ini"},
      {"Equation.KVRX36", nullptr},
  };
  const Str progId = ProgId();
  for (const auto& known : kKnown) {
    if (progId.ICompare(known.progId) != 0) continue;
    if (known.path) path = MakeTemplate(known.path, kTemplateExpand);
    return known.path != nullptr;
  }
  const ServerDescription server = Description();
  if (!server.own && server.version < 2) return FileBeside(ServerPath(), "eqnedit.ini", path);
  if (server.own && server.version == 3) return FileBeside(ServerPath(), "veltrane.ini", path);
  if (server.own && server.version < 3) return false;
  Str appKey;
  appKey.SetSubstring(progId, progId.Find('.') + 1, -1);
  path = Message("<Root>\\Quorvale\\<AppKey>\\Preferences", kTemplateLiteral)
             .With("Root", "REG*HKEY_CURRENT_USER\\Software")
             .With("AppKey", appKey)
             .Text();
  return true;
}

ServerList ListEquationServers(ServerChoice choice) {
  ServerList servers;
  const Str ownClass = OwnClassId();
  for (const Str& progId : EquationProgIds()) {
    Str classId;
    if (!ClassOfProgId(progId, classId) || classId.ICompare(ownClass) == 0) continue;
    const bool listed = std::any_of(servers.begin(), servers.end(), [&](const auto& server) {
      return server->ClassId().ICompare(classId) == 0;
    });
    if (listed) continue;
    auto server = std::make_unique<COLEEquationReg>(classId);
    if (choice == ServerChoice::kAll || server->MayTakeOver()) servers.push_back(std::move(server));
  }
  return servers;
}

const COLEEquationReg* FindServerByProgId(const ServerList& servers, const char* progId) {
  for (const auto& server : servers)
    if (server->ProgId().ICompare(progId) == 0) return server.get();
  return nullptr;
}

std::vector<const COLEEquationReg*> SortNewestFirst(const ServerList& servers) {
  using Rank = std::tuple<int32_t, std::string, std::string>;
  std::vector<std::pair<Rank, const COLEEquationReg*>> ranked;
  for (const auto& server : servers) {
    const ServerDescription description = server->Description();
    ranked.push_back(
        {{description.version, description.maker, std::string(server->ProgId().View())}, server.get()});
  }
  std::sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<const COLEEquationReg*> sorted;
  for (const auto& [rank, server] : ranked) sorted.push_back(server);
  return sorted;
}

Str OwnClassId() { return AppGetExpanded("ClassId"); }

ServerDescription OwnDescription() {
  ServerDescription own;
  own.own = true;
  own.maker = AppGetExpanded("CompanyKey").View().substr(0, 2);
  own.version = static_cast<int32_t>(std::strtol(AppGetExpanded("MajVersion"), nullptr, 10));
  return own;
}
