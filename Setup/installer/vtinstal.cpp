#include "installer/vtinstal.h"

#include <windows.h>

#include "base/leadbyte.h"
#include "base/runstate.h"
#include "installer/VTConfig.h"
#include "installer/exitcodes.h"
#include "installer/maindlg.h"
#include "installer/olddlg.h"
#include "installer/upgrade.h"
#include "installer/view_rme.h"
#include "messages/filelog.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "oleserver/regdlg.h"
#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fspath.h"
#include "platform/pathparts.h"
#include "script/files.h"
#include "script/fullpath.h"
#include "script/select.h"
#include "script/setupinf.h"
#include "stores/inistuff.h"
#include "stores/register.h"
#include "tasks/infproc.h"
#include "ui/dlog.h"
#include "ui/err.h"
#include "ui/langload.h"
#include "ui/progmetr.h"

namespace {

constexpr uint16_t kOldestWindows = 5;  // Windows 2000
constexpr unsigned kOldWindowsText = 264;
constexpr unsigned kInstalledText = 322;
constexpr unsigned kRemovedText = 323;
constexpr unsigned kWritingConfigText = 355;
constexpr unsigned kConfigNotWrittenText = 356;
constexpr unsigned kInstallFailedText = 4097;
constexpr unsigned kRemovalFailedText = 4098;

constexpr int32_t kCollectPass = 0;
constexpr int32_t kExecutePass = 1;

struct ModeSectionRow {
  bool install;
  bool workstation;
  const char* section;
};

constexpr ModeSectionRow kModeSections[] = {
    {true, false, "easy_install"},
    {true, true, "wkstation_install"},
    {false, false, "remove"},
    {false, true, "wkstation_remove"},
};

bool HasFolder(const char* variable) { return !AppGetExpanded(variable).IsEmpty(); }

bool ConversionManagerOnly() { return (Run().setupFlags & kOleMgrOnly) != 0; }

// Settles the folders that the script, the command line and an earlier installation named.
void ResolveFolders() {
  ResolveFolderVariable("ProgDir", Run().IsQuiet());
  ResolveFolderVariable("InstallFromDir", Run().IsQuiet());
}

bool RemoveEarlierVersions() {
  for (const int32_t version : {4, 5})
    if (!RemoveEarlierVersion(version)) return false;
  return true;
}

// The earlier installation's folder by its full long name, written as the folders are
// with which it is compared.
void NormaliseOldFolder() {
  Str folder = AppGetExpanded("OldAppDir");
  if (PathText::EndsInBackslash(folder.View(), IsAnsiLeadByte)) folder = FSPath(folder).Parent();
  Str path;
  const DWORD length = GetShortPathNameA(folder, path.Lock(FS::kMaxPathNameLen), FS::kMaxPathNameLen);
  path.Unlock();
  if (length == 0 || length >= static_cast<DWORD>(FS::kMaxPathNameLen)) path = folder;
  if (FS::GetLongName(path)) AppSetVariable("OldAppDir", path);
}

// What to do with an earlier version in `OldAppDir`; false when the user quit.
bool ChooseOldVersion() {
  if (!FS::IsDir(AppGetExpanded("OldAppDir"))) return true;
  if (AppVariableExists("ini_ProgDir")) {
    Run().oldVersionChoice = kOldVersionFromScript;
    return true;
  }
  if (Run().IsWorkstation()) {
    Run().oldVersionChoice = kOldVersionReplace;
    return true;
  }
  NormaliseOldFolder();
  const Str oldFolder = AppGetExpanded("OldAppDir");
  if (Run().IsQuiet()) {
    // The command line named the destination.
    const bool same = AppGetExpanded("ProgDir").ICompare(oldFolder) == 0;
    Run().oldVersionChoice = same ? kOldVersionReplace : kOldVersionKeep;
    return true;
  }
  switch (AskOldVersion()) {
    case OldVersionAnswer::kReplace:
      Run().oldVersionChoice = kOldVersionReplace;
      AppSetVariable("ProgDir", oldFolder);
      return true;
    case OldVersionAnswer::kKeep:
      Run().oldVersionChoice = kOldVersionKeep;
      return true;
    case OldVersionAnswer::kQuit:
      break;
  }
  Run().abort = true;
  return false;
}

void SetDefaultFolder() {
  if (HasFolder("ProgDir")) return;
  char programFiles[FS::kMaxPathNameLen + 1];
  Str folder;
  if (GetProgramFilesDir(programFiles, sizeof programFiles) && programFiles[0] != '\0') {
    folder = programFiles;
  } else if (!Folders::GetProgramFilesFolder(folder)) {
    LogError("The Program Files folder cannot be found.");
    return;
  }
  folder = JoinPath(folder, AppGetExpanded("AppName"));
  // A new version does not land in the old one's folder unless the user says so.
  if (folder.ICompare(AppGetExpanded("OldAppDir")) == 0) {
    folder += ' ';
    folder.Append(AppGetExpanded("MajVersion"));
  }
  AppSetVariable("ProgDir", folder);
}

void MakeFolderFull() {
  FSPath folder(AppGetExpanded("ProgDir"));
  if (!folder.IsEmpty() && folder.MakeFull()) AppSetVariable("ProgDir", folder.Path());
}

void WriteFontSettings() {
  WriteProfileStringA("TrueType", "TTifCollisions", "1");
  LogLine("Modifying [TrueType] section of Win.ini...\n +TTifCollisions = 1");
  LogLine("Modifying [FontSubstitutes] section of Win.ini/registry...\n +VT Symbol");
  WriteProfileStringA("FontSubstitutes", "VT Symbol", "Symbol");
}

// The main dialog, or its defaults; false when the user quit.
bool ChooseWhatAndWhere() {
  if (Run().IsQuiet()) {
    AcceptMainDefaults();
    return true;
  }
  return ShowMainDialog();
}

// A removal that the user chose in the dialog may run from a distribution folder, which must survive.
bool MayDeleteSelf() {
  if (Run().install || Run().IsWorkstation() || (Run().setupFlags & kKeepSelf) != 0) return false;
  if ((Run().setupFlags & kRemove) != 0) return true;
  Str program;
  return Folders::GetModulePath(program) && IsSamePath(FSPath(program).Parent(), AppGetExpanded("ProgDir"));
}

bool WritesConfiguration() { return Run().install && GetNumFiles() > 0 && !Run().IsWorkstation(); }

bool RecordConfiguration() {
  SetProgressText(Message(kWritingConfigText));
  CollectConfiguration();
  const Str path = AppGetExpanded("DscFilePath");
  if (WriteConfiguration(path, ConfigList())) return true;
  CloseProgressWindow();
  AppSetVariable("ConfigFolder", FSPath(path).Parent());
  ShowError(Message(kConfigNotWrittenText));
  return false;
}

// The listed file that is the loaded language library; empty when none is.
Str FindHeldFile() {
  const Str library = LoadedLibraryPath();
  if (library.IsEmpty()) return Str();
  const Str name = FSPath(library).FileName();
  for (int32_t i = 0; i < GetNumFiles(); ++i) {
    const FileRecord record = GetFileRec(i);
    if (record.destDir[0] == '\0' || name.ICompare(record.destName) != 0) continue;
    const Str path = JoinPath(record.destDir, record.destName);
    if (IsSamePath(path, library)) return path;
  }
  return Str();
}

// False when the product folder's path leaves no room for a file in it: each of its files was left out then.
bool FolderTakesFiles() {
  constexpr int32_t kShortestName = 2;  // a backslash and one character
  return AppGetExpanded("ProgDir").Length() + kShortestName < FS::kMaxPathNameLen;
}

// Copies or deletes the listed files and then runs the section's second pass. False when
// the files were not done.
bool PerformFilesAndTasks(const char* section, SequenceResult& result) {
  if (Run().abort) return false;
  if (Run().install && !FolderTakesFiles()) return false;
  if (!Run().install) result.heldFile = FindHeldFile();
  if (!(Run().install ? CopyAll() : DeleteAll(result.heldFile))) return false;
  if (!PrepareFileList()) return false;
  ClearMeter();
  if (!Run().abort && !RunSectionPass(section, kExecutePass, kTaskLines | kRegistryLines | kVariableLines))
    LogError("The script's second pass stopped before its end.");
  if (!Run().install && !Run().IsWorkstation()) DeleteIfThere(AppGetExpanded("DscFilePath"));
  return true;
}

void Conclude() {
  if (!Run().install) {
    ShowInfo(Message(kRemovedText));
    return;
  }
  WriteMachineStore();
  if (!Run().IsQuiet()) {
    RunFinishingStep();
    return;
  }
  ShowInfo(Message(kInstalledText));
  if (Run().restartNeeded) LogLine("Windows must be restarted to complete the installation.");
}

int Fail(unsigned textId, int exitCode) {
  CloseProgressWindow();
  ShowError(Message(textId));
  return exitCode;
}

// The part of the sequence that works on the machine: collect, copy or delete, execute.
int RunMainSection(SequenceResult& result) {
  const char* section = ModeSection();
  if (!PrepareFileList()) return Fail(kInstallFailedText, kExitCannotStart);
  if (!RunSectionPass(section, kCollectPass, kFileLines | kTaskLines | kVariableLines))
    return Fail(kInstallFailedText, kExitCannotStart);
  if (Run().install && !CheckSpace()) return kExitNoSpace;

  if (!Run().IsQuiet()) ShowProgressWindow();
  if (GetNumFiles() == 0) ClearMeter();
  if (WritesConfiguration() && !RecordConfiguration()) return kExitConfigNotWritten;
  if (!PerformFilesAndTasks(section, result))
    return Fail(Run().install ? kInstallFailedText : kRemovalFailedText, kExitCopyFailed);
  CloseProgressWindow();
  Conclude();
  return kExitOK;
}

int RunSteps(SequenceResult& result) {
  if (Run().windowsMajor < kOldestWindows) return Fail(kOldWindowsText, kExitCannotStart);
  ResolveFolders();
  if (!ConversionManagerOnly()) {
    if (!HasFolder("ProgDir") && !RemoveEarlierVersions()) return kExitAbandoned;
    if (!ChooseOldVersion()) return kExitAbandoned;
  }
  SetDefaultFolder();
  MakeFolderFull();
  // Whoever chose to go on without a log is not asked again, nor stopped.
  static_cast<void>(OpenSetupLog(false));
  WriteFontSettings();
  if (ConversionManagerOnly()) {
    RunConversionManager(MainWindow());
    return kExitOK;
  }
  if (!ChooseWhatAndWhere()) return kExitAbandoned;
  result.deleteSelf = MayDeleteSelf();
  LogLine(Message("<AppName> installation directory is <ProgDir>\n"));
  AppSetVariable("DscFilePath", ConfigurationPath());
  return RunMainSection(result);
}

}  // namespace

const char* ModeSection() {
  for (const ModeSectionRow& row : kModeSections)
    if (row.install == Run().install && row.workstation == Run().IsWorkstation()) return row.section;
  return "";
}

bool RunSectionPass(const char* section, int32_t pass, uint32_t lineKinds) {
  InfHandlers handlers;
  if ((lineKinds & kFileLines) != 0) handlers.fileProc = StandardFileHandler;
  if ((lineKinds & kTaskLines) != 0) handlers.taskProc = TaskDispatch;
  if ((lineKinds & kRegistryLines) != 0) handlers.registryProc = RegistryLineHandler;
  if ((lineKinds & kVariableLines) != 0) handlers.variableProc = VariableHandler;
  return Script().DoSection(section, handlers, &pass) == kInfOK;
}

SequenceResult RunSequence() {
  SequenceResult result;
  result.exitCode = RunSteps(result);
  if (result.exitCode != kExitOK) result.deleteSelf = false;
  return result;
}
