#include "installer/upgrade.h"

#include <windows.h>

#include <string>

#include "base/assert.h"
#include "base/handle.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/WinRegistry.h"
#include "platform/fs.h"
#include "platform/fspath.h"
#include "stores/ini.h"
#include "ui/dlog.h"
#include "ui/err.h"

namespace {

constexpr int32_t kVersion4 = 4;
constexpr char kSilentRemoval[] = " -Q -RS";
constexpr char kOldSetupClass[] = "VTInstallWin";
constexpr DWORD kWindowInterval = 250;     // ms between looks for the old setup's window
constexpr DWORD kDeletionInterval = 100;   // ms between looks for the old setup's file
constexpr DWORD kDeletionTimeout = 15000;  // ms
constexpr unsigned kStatusText = 385;

constexpr char kUserKey[] = "HKEY_CURRENT_USER\\Software\\Quorvale";
constexpr char kSettingsName[] = "KVRX4";
constexpr char kBackupName[] = "KVRX4Backup";

const char* OldSetupName(int32_t majVers) { return majVers == kVersion4 ? "QLSetup.exe" : "Setup.exe"; }

// The folder recorded by version `majVers`; empty when that version is not installed.
Str RecordedFolder(int32_t majVers) {
  Str folder;
  const Message path = Message("REG*HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX<MajVers>", kTemplateLiteral)
                           .With("MajVers", majVers);
  const IniStorePtr store = IniOpen(path, true);
  if (store && IniFindSection(store.get(), "Directories")) IniGetStr(store.get(), "ProgDir", "", folder);
  return folder;
}

struct OldSetup {
  Str path;  // its program file
  bool isVersion4;
  HWND topmost;  // the window that already lies above all others, or null
};

void LogRemoval(const OldSetup& setup) {
  LogLine(
      Message("Removing old version by running <OldSetup>", kTemplateLiteral).With("OldSetup", setup.path));
}

void SetTopmost(HWND window, bool topmost) {
  if (window == nullptr) return;
  SetWindowPos(window, topmost ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

// Starts the old setup's silent removal; the Windows error, 0 when it runs.
DWORD StartOldSetup(const char* path, KernelHandle& process) {
  std::string commandLine = "\"";
  commandLine += path;
  commandLine += '"';
  commandLine += kSilentRemoval;
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION info = {};
  if (!CreateProcessA(path, commandLine.data(), nullptr, nullptr, FALSE,
                      CREATE_DEFAULT_ERROR_MODE | NORMAL_PRIORITY_CLASS, nullptr, nullptr, &startup, &info))
    return GetLastError();
  const KernelHandle thread(info.hThread);
  process.Reset(info.hProcess);
  return ERROR_SUCCESS;
}

void WaitForDeletion(const Str& path) {
  const DWORD start = GetTickCount();
  while (FS::Exists(path) && GetTickCount() - start < kDeletionTimeout) PumpFor(kDeletionInterval);
  if (!FS::Exists(path)) return;
  Str text;
  text.Format("%s did not delete itself.", path.Chars());
  LogError(text);
}

uint32_t WaitForOldSetup(const KernelHandle& process) {
  while (FindWindowA(kOldSetupClass, nullptr) != nullptr) PumpFor(kWindowInterval);
  PumpUntilSignalled(process.Get());
  DWORD exitCode = 0;
  GetExitCodeProcess(process.Get(), &exitCode);
  return exitCode;
}

// Runs the old setup's silent removal to its end; false when it could not be started.
bool RunOldSetup(const OldSetup& setup) {
  const HWND status = Run().IsQuiet() ? nullptr : ShowStatus(Message(kStatusText));
  if (status != nullptr && setup.topmost == nullptr) SetTopmost(status, true);
  KernelHandle process;
  const DWORD error = StartOldSetup(setup.path, process);
  int32_t exitCode = 0;
  if (error == ERROR_SUCCESS) {
    exitCode = static_cast<int32_t>(WaitForOldSetup(process));
    if (!setup.isVersion4) WaitForDeletion(setup.path);
  }
  if (status != nullptr) CloseStatus(status);
  if (error == ERROR_SUCCESS) {
    LogLine(Message("VTW<OldMajVersion>Setup returned <ExitCode>").With("ExitCode", exitCode));
    return true;
  }
  LogError(Message("<OldSetup> could not be started (error <ErrCode>).", kTemplateLiteral)
               .With("ErrCode", static_cast<int32_t>(error))
               .With("OldSetup", setup.path));
  return false;
}

// One settings file that the old uninstaller would delete: renamed for the time of the removal.
class KeptFile {
 public:
  explicit KeptFile(const Str& original) : mOriginal(original) {
    FSPath temporary(original);
    temporary.SetExtension(".tmp");
    mTemporary = temporary.Path();
    if (!FS::Exists(mOriginal)) return;
    if (FS::Exists(mTemporary)) FS::Delete(mTemporary);
    mRenamed = Rename("Renaming <Original> to <Temp>", mOriginal, mTemporary);
  }
  void PutBack() {
    if (!mRenamed) return;
    // What the old setup left in its place holds nothing of the user's.
    if (FS::Exists(mOriginal)) FS::Delete(mOriginal);
    Rename("Renaming <Temp> to <Original>", mTemporary, mOriginal);
    mRenamed = false;
  }

 private:
  bool Rename(const char* text, const Str& from, const Str& to) const {
    const Message line = Message(text, kTemplateLiteral).With("Original", mOriginal).With("Temp", mTemporary);
    const bool done = FS::Rename(from, to);
    LogOutcome(done, line);
    return done;
  }

  Str mOriginal;
  Str mTemporary;
  bool mRenamed = false;
};

Str UserKeyPath(const char* name) { return JoinPath(kUserKey, name); }

void BackUpUserSettings() {
  KWinRegistry settings;
  if (!settings.OpenRooted(UserKeyPath(kSettingsName), wrRead)) return;
  KWinRegistry maker;
  // An earlier backup would mix with this one; usually there is none, so that a failure says nothing.
  if (maker.OpenRooted(kUserKey, wrUpdate)) maker.DeleteKey(kBackupName);
  KWinRegistry backup;
  if (backup.OpenRooted(UserKeyPath(kBackupName), wrWrite) && settings.CopyKey(backup)) {
    LogLine(Message("Backing up VTW<OldMajVersion> settings"));
  } else {
    LogLine(Message("Error backing up VTW<OldMajVersion> settings"));
  }
}

void RestoreUserSettings() {
  KWinRegistry backup;
  if (!backup.OpenRooted(UserKeyPath(kBackupName), wrRead)) {
    LogLine(Message("Couldn't restore VTW<OldMajVersion> settings - couldn't open backup key"));
    return;
  }
  KWinRegistry settings;
  if (!settings.OpenRooted(UserKeyPath(kSettingsName), wrWrite)) {
    LogLine(Message("Couldn't restore VTW<OldMajVersion> settings - couldn't open KVRX4 key"));
    return;
  }
  LogLine(Message("Restoring VTW<OldMajVersion> settings"));
  if (!backup.CopyKey(settings)) LogError("Some settings could not be restored.");
}

bool RemoveVersion4(const Str& folder, const Str& setupPath) {
  KeptFile fontInfo(JoinPath(JoinPath(folder, "Fonts"), "FontInfo.ini"));
  KeptFile html(JoinPath(AppGetExpanded("WinDir"), "vthtml.ini"));
  BackUpUserSettings();
  const OldSetup setup = {setupPath, true, nullptr};
  LogRemoval(setup);
  const bool started = RunOldSetup(setup);
  RestoreUserSettings();
  fontInfo.PutBack();
  html.PutBack();
  return started;
}

// The version counts as removed even when its setup could not be run: this version then installs over it.
void RemoveOtherVersion(const Str& folder, const Str& setupPath) {
  const bool showsWindow = !Run().IsQuiet() && MainWindow() != nullptr && IsWindowVisible(MainWindow());
  const OldSetup setup = {setupPath, false, showsWindow ? MainWindow() : nullptr};
  SetTopmost(setup.topmost, true);
  LogRemoval(setup);
  RunOldSetup(setup);
  SetTopmost(setup.topmost, false);
  if (!Run().IsQuiet() && MainWindow() != nullptr) SetForegroundWindow(MainWindow());
  AppSetVariable("ProgDir", folder);
}

}  // namespace

bool RemoveEarlierVersion(int32_t majVers) {
  VT_ASSERT(majVers >= kVersion4, "majVers >= 4");
  const Str folder = RecordedFolder(majVers);
  if (folder.IsEmpty() || !FS::IsDir(folder)) return true;
  const Str setupPath = JoinPath(folder, OldSetupName(majVers));
  if (!FS::IsFile(setupPath)) return true;
  AppSetVariable("OldMajVersion", Message("<MajVers>", kTemplateLiteral).With("MajVers", majVers));
  if (majVers == kVersion4) return RemoveVersion4(folder, setupPath);
  RemoveOtherVersion(folder, setupPath);
  return true;
}
