#include "installer/VTConfig.h"

#include "base/assert.h"
#include "base/leadbyte.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "platform/fileversion.h"
#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fspath.h"
#include "platform/pathparts.h"
#include "resources/ids.h"
#include "stores/ini.h"
#include "stores/varlist2.h"
#include "ui/err.h"

namespace {

constexpr char kConfigSection[] = "Config";
constexpr char kConfigVersionName[] = "QLCMajVersion";
// The configuration file's own major version: part of its name and of its contents.
constexpr char kConfigVersion[] = "6";
constexpr char kBuildNumber[] = "200707050000";
constexpr uint32_t kOtherVersion = 0x80000000;

struct ResourceVariable {
  const char* name;
  unsigned textId;
};

// Filled in this order.
constexpr ResourceVariable kResourceVariables[] = {
    {"ServerName", 259},      {"ReadMeName", 266},  {"HelpName", 267},       {"RemoveName", 528},
    {"RemoveWkstnName", 529}, {"AppLinkDesc", 544}, {"ServerLinkDesc", 545}, {"EqnConvMgrLinkDesc", 546},
    {"EqnConvMgr", 799},      {"SetupName", 265},   {"BackgroundText", 788},
};

// What a configuration file says beside its own version, as far as the variables exist.
constexpr const char* kRecordedVariables[] = {"AppName", "MajVersion", "MinVersion", "ShortAppKey",
                                              "Version", "BuildNum",   "ProgDir",    "InstallFromDir"};

constexpr const char* kSearchFolders[] = {"ProgDir", "CurrDir", "InstallFromDir"};

void SetUnlessSet(const char* name, const char* value) {
  if (!AppVariableExists(name)) AppSetVariable(name, value);
}

// A drive without a folder would stand for that drive's current folder.
Str RootedFolder(Str folder) {
  if (folder.Length() == 2 && folder.Chars()[1] == ':') folder += '\\';
  return folder;
}

void MergeConfigSection(const char* storeVariable) {
  const Str path = AppGetExpanded(storeVariable);
  if (path.IsEmpty()) return;
  const IniStorePtr store = IniOpen(path, true);
  if (store) LoadSection(store.get(), kConfigSection);
}

enum class Candidate { kMatches, kAnotherVersion, kUnreadable };

Candidate ReadCandidate(const char* path, VarList& list) {
  if (ReadConfigFile(list, path) != kCfgOK) return Candidate::kUnreadable;
  Str version;
  if (!list.Get(kConfigVersionName, version)) return Candidate::kAnotherVersion;
  return version == AppGetExpanded("MajVersion") ? Candidate::kMatches : Candidate::kAnotherVersion;
}

void Merge(const VarList& from, VarList& into) {
  from.ForEach([&into](const char* name, const char* value, bool isMutable) {
    into.Set(name, value, isMutable);
    return true;
  });
}

// Tries one file; tells what came of it.
Candidate TryCandidate(const Str& path) {
  VarList list;
  const Candidate result = ReadCandidate(path, list);
  const bool missed = result == Candidate::kUnreadable && Run().IsWorkstation();
  LogOutcome(!missed, Message("Opening config file at <ConfigPath>: <Success>", kTemplateLiteral)
                          .With("Success", result == Candidate::kMatches ? "Success" : "Failed")
                          .With("ConfigPath", path));
  if (result == Candidate::kMatches) {
    Merge(list, ConfigList());
    AppSetVariable("ConfigPath", path);
  }
  return result;
}

struct FileAttributes {
  bool locked;
  bool hidden;
};

// What a configuration file has to look like: as it did before, read-only and hidden when it is new.
FileAttributes AttributesToKeep(const char* path) {
  FileAttributes kept = {true, true};
  if (!FS::Exists(path)) return kept;
  kept = {false, false};
  VT_ASSERT(FS::GetFileAttribute(path, FS::kAttrLock, kept.locked),
            "FS::GetFileAttribute(path,FS::kAttrLock,locked)");
  VT_ASSERT(FS::GetFileAttribute(path, FS::kAttrHidden, kept.hidden),
            "FS::GetFileAttribute(path,FS::kAttrHidden,hidden)");
  return kept;
}

void SetAttributes(const char* path, const FileAttributes& attributes) {
  if (attributes.locked) FS::SetFileAttribute(path, FS::kAttrLock, true);
  if (attributes.hidden) FS::SetFileAttribute(path, FS::kAttrHidden, true);
}

// A file that cannot be deleted has lost its read-only attribute on the way.
bool DeleteKeeping(const char* path, const FileAttributes& attributes) {
  if (!FS::Exists(path) || FS::Delete(path)) return true;
  SetAttributes(path, attributes);
  return false;
}

}  // namespace

VarList& ConfigList() {
  static VarList list;
  return list;
}

void SetProgramFolders(const Str& modulePath) {
  const size_t slash = PathText::FindLastBackslash(modulePath.View(), IsAnsiLeadByte);
  const Str folder(modulePath.View().substr(0, slash == PathText::kNone ? 0 : slash));
  AppSetVariable("CurrDir", folder);
  AppSetVariable("SetupHelpDir", folder);
  SetUnlessSet("InstallFromDir", RootedFolder(folder));
}

void SetResourceVariables() {
  for (const ResourceVariable& row : kResourceVariables) {
    if (AppVariableExists(row.name)) continue;
    Str text;
    if (GetResStr(row.textId, 0, text, 0)) AppSetVariable(row.name, text);
  }
}

void SetProductVariables(const Str& modulePath) {
  SetUnlessSet("ProgName", "Setup");
  SetUnlessSet("CopyrightYear", "2007");
  AppSetVariable("BuildNum", kBuildNumber);
  Str version;
  if (GetFileVersionText(modulePath, version)) AppSetVariable("Version", version);
}

void SetNameVariables() {
  Str text;
  if (AppGetVariable("CurrDir", text)) AppSetVariable("SetupHelpDir", text);
  SetUnlessSet("HelpFile", "<SetupHelpDir>\\setup.chm");
  if (Folders::GetWindowsDir(text)) AppSetVariable("WinDir", text);
  if ((Run().setupFlags & kOleMgrOnly) != 0 && AppGetVariable("EqnConvMgr", text)) {
    AppSetVariable("SetupName", text);
    AppSetVariable("BackgroundText", text);
  }
}

void MergeBuiltInSettings() {
  const IniStorePtr store = IniOpenStrList(IDS_BUILTIN_SETTINGS);
  if (store) LoadSection(store.get(), kConfigSection);
}

void MergeStoredSettings() {
  MergeConfigSection("MachRegKey");
  MergeConfigSection("UserRegKey");
}

bool FindConfiguration() {
  const Str name = MakeTemplate("<ShortAppKey><MajVersion>.qlc", kTemplateExpand);
  if (!VT_ASSERT(name.Find('<') < 0, "name.Find('<') < 0")) return false;
  for (const char* variable : kSearchFolders) {
    const Str folder = AppGetExpanded(variable);
    if (folder.IsEmpty()) continue;
    const Candidate result = TryCandidate(JoinPath(folder, name));
    if (result == Candidate::kMatches) return true;
    // A workstation runs from the one shared copy: what lies there and cannot be read is not worked around.
    if (result == Candidate::kUnreadable && Run().IsWorkstation()) return false;
  }
  return !Run().IsWorkstation();
}

uint32_t ReadConfigurationAtProgDir() {
  VT_ASSERT(AppVariableExists("ProgDir"), "AppVariableExists(sProgDir)");
  const Str path = ConfigurationPath();
  VarList list;
  Str text;
  if (ReadConfigFile(list, path) != kCfgOK) {
    text.Format("Could not read QLC at %s.", path.Chars());
    ShowError(text);
    return kCfgOpenFailed;
  }
  Str version;
  list.Get(kConfigVersionName, version);
  if (version != kConfigVersion) {
    text.Format("Version mismatch (%s != %s) with QLC at %s.", version.Chars(), kConfigVersion, path.Chars());
    ShowError(text);
    return kOtherVersion;
  }
  Merge(list, AppVars());
  AppSetVariable("ConfigPath", path);
  return kLoadSectionOK;
}

Str ConfigurationPath() { return MakeTemplate("<ProgDir>\\<ShortAppKey>6.QLC", kTemplateExpand); }

void CollectConfiguration() {
  ConfigList().Set(kConfigVersionName, kConfigVersion);
  for (const char* name : kRecordedVariables)
    if (AppVariableExists(name)) ConfigList().Set(name, AppGetExpanded(name));
}

bool WriteConfiguration(const char* path, const VarList& list) {
  const FileAttributes attributes = AttributesToKeep(path);
  FSPath temporary(path);
  temporary.SetExtension(".tmp");
  if (FS::Exists(temporary)) FS::Delete(temporary);
  if (WriteConfigFile(list, temporary) != kCfgOK) return false;
  if (!DeleteKeeping(path, attributes)) return false;
  // Before the file has its final name, so that a run that is broken off here leaves no file that would be
  // taken for one that the user made visible.
  SetAttributes(temporary, attributes);
  return FS::Rename(temporary, path);
}
