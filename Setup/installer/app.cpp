#include "installer/app.h"

#include <span>
#include <string>
#include <vector>

#include "base/assert.h"
#include "base/hooks.h"
#include "base/leadbyte.h"
#include "base/runstate.h"
#include "installer/VTConfig.h"
#include "installer/checks.h"
#include "installer/cmdline.h"
#include "installer/exitcodes.h"
#include "installer/installw.h"
#include "installer/officedlg.h"
#include "installer/reboot.h"
#include "installer/sysfacts.h"
#include "installer/vtinstal.h"
#include "messages/filelog.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fspath.h"
#include "script/setupinf.h"
#include "script/tempnotes.h"
#include "shell/delexe.h"
#include "stores/inistuff.h"
#include "tasks/infproc.h"
#include "ui/err.h"
#include "ui/help.h"
#include "ui/langload.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kErrorTitle = 256;
constexpr unsigned kWarningTitle = 257;
constexpr unsigned kPlainTitle = 258;
constexpr unsigned kOutOfMemoryText = 260;
constexpr unsigned kNewerVersionText = 336;
constexpr unsigned kBadCommandLineText = 791;
constexpr unsigned kProductRunningText = 4101;
constexpr unsigned kIoTroubleText = 4137;
constexpr unsigned kNotRestartedText = 4165;
constexpr unsigned kCannotWriteText = 11011;
constexpr unsigned kCannotReadText = 11012;
constexpr char kScriptName[] = "setup.inf";
constexpr char kStartSection[] = "startup";
constexpr char kEndSection[] = "shutdown";

constexpr InfHandlers kAllHandlers = {StandardFileHandler, TaskDispatch, RegistryLineHandler,
                                      VariableHandler};

// Shown when there is no library to take a text from.
constexpr char kNoLanguageText[] =
    "An error occurred while loading the required language library.\n\nSetup cannot continue.";

struct StopText {
  int status;
  unsigned text;
  unsigned workstationText;
};

// What a start-up that stops tells the user. 3 has a fixed text; 15 was a question already.
constexpr StopText kStopTexts[] = {
    {kExitNoScript, 4096, 4096},
    {kExitNoConfig, 4160, 4167},
    {kExitNoRights, 4168, 4168},
};

struct StartUp {
  CommandLine line;
  Str modulePath;  // of the program file
  int status = kExitOK;
};

void ReportFileTrouble(bool write) {
  ReportInternalError(kIoTroubleText, write ? kCannotWriteText : kCannotReadText);
}

void TakeMessageTitles() { SetMessageTitles(kErrorTitle, kWarningTitle, kPlainTitle, kOutOfMemoryText); }

bool ResourceTextHook(unsigned id, Str* text) { return GetResStr(id, 0, *text, 0); }

bool VariableHook(const char* name, Str* value) {
  if (!AppVariableExists(name)) return false;
  *value = AppGetExpanded(name);
  return true;
}

void ConnectHooks() {
  HookTable hooks = Hooks();
  hooks.logBlock = LogBlock;
  hooks.logLine = LogLine;
  hooks.resourceText = ResourceTextHook;
  hooks.variable = VariableHook;
  hooks.fileIoFailed = ReportFileTrouble;
  SetHooks(hooks);
}

CommandLine ReadCommandLine(const char* text) {
  const std::vector<std::string> args = SplitCommandLine(text, IsAnsiLeadByte);
  return ParseCommandLine(std::span(args).subspan(1), IsAnsiLeadByte);
}

void SetFolderFromSwitch(const std::optional<std::string>& folder, std::initializer_list<const char*> names) {
  if (!folder) return;
  for (const char* name : names) AppSetVariable(name, folder->c_str());
}

void SetSwitchVariables(const CommandLine& line) {
  SetFolderFromSwitch(line.progDir, {"ProgDir", "cmd_ProgDir"});
  SetFolderFromSwitch(line.installFromDir, {"InstallFromDir", "cmd_InstallFromDir", "lock_InstallFromDir"});
  if (line.lockProgDir) AppSetVariable("lock_ProgDir", "1");
  if (line.installNoDlg) AppSetVariable("InstallNoDlg", "1");
  if (line.noROMacroErrs) AppSetVariable("NoROMacroErrs", "1");
  if (line.raiseAssertion) AppSetVariable("ASSERT", "1");
}

// The program's place, Windows' folders, the command line. False when the run cannot even begin.
bool Begin(StartUp& start) {
  if (!Folders::GetModulePath(start.modulePath)) start.modulePath = "";
  if (!VT_ASSERT(start.modulePath.Length() != 0, "module.Length()")) return false;
  SetFolderVariables();
  DetectPlatform();
  QuitIfNotBusyMessage();
  SetSwitchVariables(start.line);
  SetProgramFolders(start.modulePath);
  if ((Run().setupFlags & kRemove) != 0) {
    Run().install = false;
    AppSetVariable("ProgDir", FSPath(start.modulePath).Parent());
  }
  return AllocateReserve();
}

void LogSilentRun() {
  if (!Run().install) {
    LogLine("Performing silent remove");
    return;
  }
  Str dest;
  AppGetVariable("ProgDir", dest);
  LogLine(Message("Performing silent install to <dest>", kTemplateLiteral).With("dest", dest));
}

// Opens the script and runs its section "startup". Without the identity that the section sets the run cannot
// go on, so a section that stops half-way is a failure; one that is missing is not.
bool ReadScript() {
  const Str path = JoinPath(AppGetExpanded("CurrDir"), kScriptName);
  AppSetVariable("InfPath", path);
  const bool opened = Script().Open(path, true) == kInfOK;
  bool started = opened;
  if (opened) {
    const bool exists = Script().SectionExists(kStartSection) == kInfOK;
    const InfResult result = Script().DoSection(kStartSection, kAllHandlers, nullptr);
    started = result == kInfOK || !exists;
  }
  LogLine(Message("Opening setup info file at <InfPath>: <Success>", kTemplateLiteral)
              .With("Success", opened ? "Success" : "Failed")
              .With("InfPath", path));
  return started;
}

// Script, configuration file, settings.
int ReadSources(const StartUp& start) {
  if (Run().IsQuiet() && start.line.valid) LogSilentRun();
  if (!ReadScript()) return kExitNoScript;
  const bool configured = FindConfiguration();
  ReadMachineStore();
  MergeStoredSettings();
  return configured ? kExitOK : kExitNoConfig;
}

// Names and titles need a language; rights are tried even when the user gave up over the log.
void CheckRightsAndLanguage(StartUp& start) {
  if (start.status != kExitOK && start.status != kExitNoLog) return;
  if (!CanWriteMachineKey()) {
    start.status = kExitNoRights;
    return;
  }
  if (start.status != kExitOK) return;
  if (!ChooseAndLoadLanguage()) {
    start.status = kExitNoLanguage;
    return;
  }
  SetResourceVariables();
  TakeMessageTitles();
}

// A text that may have to be shown before the script or the language gave the program its name.
void ShowEarlyError(unsigned id) {
  ShowError(Message(id).With("FileName", kScriptName).With("SetupName", "Setup"));
}

void ShowStopReason(int status) {
  if (status == kExitNoLanguage) ShowError(kNoLanguageText);
  for (const StopText& row : kStopTexts)
    if (row.status == status) ShowEarlyError(Run().IsWorkstation() ? row.workstationText : row.text);
}

// Everything up to the point where the program knows its texts, names and settings.
// The exit code, 0 to go on.
int ComeUp(StartUp& start) {
  start.status = OpenSetupLog() ? ReadSources(start) : kExitNoLog;
  CheckRightsAndLanguage(start);
  ShowStopReason(start.status);
  if (!start.line.valid) {
    ShowEarlyError(kBadCommandLineText);
    return kExitBadCommandLine;
  }
  return start.status;
}

void CompleteVariables(const StartUp& start) {
  SetProductVariables(start.modulePath);
  MergeBuiltInSettings();
  MergeStoredSettings();
  if (AppVariableExists("ASSERT")) VT_FAIL("-assert on the command line");
  SetNameVariables();
  TakeMessageTitles();
  LogSystemInfo(GatherSystemFacts());
}

// Looks at the rest of the machine; the exit code, 0 to go on.
int CheckOthers() {
  if (ProductStaysOpen()) {
    ShowError(Message(kProductRunningText));
    return kExitProductRunning;
  }
  if (const int32_t newer = FindNewerVersion(); newer != 0) {
    ShowError(Message(kNewerVersionText).With("NewerVersion", newer));
    return kExitNewerVersion;
  }
  const bool managerOnly = (Run().setupFlags & kOleMgrOnly) != 0;
  return managerOnly || WaitForOfficeToClose() ? kExitOK : kExitOfficeRunning;
}

// False when there is no window to destroy at the end: a silent run does without it
// where there is no desktop.
bool OpenBackground(HINSTANCE instance) {
  if (Run().IsQuiet()) AppSetVariable("no_background", "1");
  const bool created = CreateBackgroundWindow(instance);
  // A silent run would have kept it hidden: it misses nothing.
  if (!created) LogOutcome(Run().IsQuiet(), "The background window could not be created.");
  if (AppGetBool("no_background")) {
    LogLine("The background window has been turned off.");
  } else {
    ShowBackgroundWindow();
  }
  return created || !Run().IsQuiet();
}

void RunEndSection() {
  if (Script().SectionExists(kEndSection) != kInfOK) return;
  Script().DoSection(kEndSection, kAllHandlers, nullptr);
}

// Deletes what a removal could not while the program held it, then the script and the program itself.
void DeleteOwnFiles(const SequenceResult& result) {
  if (!result.heldFile.IsEmpty()) {
    FreeLanguageLibrary();
    LoggedDelete(result.heldFile);
  }
  if (!result.deleteSelf) return;
  Script().Close();
  DeleteIfThere(JoinPath(AppGetExpanded("CurrDir"), kScriptName));
  DeleteProgramOnExit();
}

int RunChecked(HINSTANCE instance) {
  const bool hasBackground = OpenBackground(instance);
  const SequenceResult result = RunSequence();
  RunEndSection();
  if (hasBackground) DestroyBackgroundWindow();
  DeleteOwnFiles(result);
  if (Run().rebootRequested && !RestartWindows()) ShowError(Message(kNotRestartedText));
  return result.exitCode;
}

}  // namespace

int App::Main(HINSTANCE instance, const char* commandLine) {
  ConnectHooks();
  const TempNotesScope tempNotes;
  StartUp start;
  start.line = ReadCommandLine(commandLine);
  Run().setupFlags = start.line.setupFlags;
  // Nobody is there to close the system's crash box.
  if (Run().IsQuiet()) SetErrorMode(SetErrorMode(SEM_FAILCRITICALERRORS) | SEM_NOGPFAULTERRORBOX);
  int exitCode = kExitCannotStart;
  if (Begin(start)) {
    exitCode = ComeUp(start);
    if (exitCode == kExitOK) {
      CompleteVariables(start);
      exitCode = CheckOthers();
    }
    if (exitCode == kExitOK) exitCode = RunChecked(instance);
  }
  CleanUp();
  return exitCode;
}

void App::CleanUp() {
  CloseProgressWindow();
  CloseHelp();
  Script().Close();
  FreeLanguageLibrary();
  FreeReserve();
  CloseAndRenameLog();
}
