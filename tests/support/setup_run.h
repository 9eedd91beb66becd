#pragma once
// Whole runs of the real Setup.exe over a small distribution that a test writes.
#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/process.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"

// Two lines that Windows itself keeps for the run: win.ini's, put back at the end.
class ProfileGuard {
 public:
  ProfileGuard(const char* section, const char* name);
  ~ProfileGuard();
  ProfileGuard(const ProfileGuard&) = delete;
  ProfileGuard& operator=(const ProfileGuard&) = delete;

 private:
  std::string mSection;
  std::string mName;
  std::string mValue;
};
std::string ProfileString(const char* section, const char* name);

// What one run left.
struct RunOutcome {
  bool started = false;
  bool timedOut = false;
  DWORD exitCode = 0xFFFFFFFF;       // all 32 bits
  std::vector<std::string> windows;  // captions of the visible windows it showed, each once
  std::string log;                   // bytes of "Veltrane6.log", else of "QLSetup.log"; LF line ends
  std::string logName;               // which of the two; "" when there is none

  bool Logged(std::string_view text) const { return log.find(text) != std::string::npos; }
  // `first` stands in the log and `second` somewhere behind it.
  bool LoggedInOrder(std::string_view first, std::string_view second) const;
};

// A folder with Setup.exe, a script and source files; a destination; a temporary folder of the runs' own.
// Cleans the registry keys of the made-up maker before and after.
class SetupRun {
 public:
  // `distribution` and `destination` are the folders' names below the test's own folder.
  explicit SetupRun(const std::string& distribution = "dist", const std::string& destination = "dest");

  // The script's section "startup" with the product's identity, `extra` behind it.
  static std::string Startup(const std::string& extra = "");
  // A script: that section, an install and a removal section over the same file lines and one line per file.
  struct FileLine {
    std::string key;
    std::string source;  // relative to the distribution
    std::string dest;    // behind "<ProgDir>\", prefix characters in front
    std::string prefix;
    size_t size = 0;
    int disk = 1;
  };
  void WriteScript(const std::string& text) const;
  // Adds a source file and its line for FileSections().
  void AddFile(const std::string& name, std::string_view bytes, const std::string& prefix = "", int disk = 1);
  // The keys of the added files, one on each line, and the section "files" over them.
  std::string FileKeys() const;
  std::string FilesSection() const;
  // A whole script over the added files; the texts go into the sections behind the files.
  std::string SimpleScript(const std::string& install = "", const std::string& remove = "",
                           const std::string& startup = "") const;

  const TempDir& Root() const { return mRoot; }
  std::string Source(const std::string& name = "") const;
  std::string Dest(const std::string& name = "") const;
  std::string Temp(const std::string& name = "") const;
  std::string ConfigPath() const { return Dest("VT6.QLC"); }
  // Copies Setup.exe into the destination beside the script, as an installed product has it.
  void CopySetupToDest() const;

  // A program that starts the runs: its command line up to the argument that is the run's whole command line.
  void SetLauncher(const std::string& launcher) { mLauncher = launcher; }
  RunOutcome Run(const std::string& args, DWORD timeoutMs = 60000) const;
  // From another folder's Setup.exe.
  RunOutcome RunFrom(const std::string& folder, const std::string& args, DWORD timeoutMs = 60000) const;
  // A run that the test drives itself.
  std::unique_ptr<ChildProcess> Start(const std::string& args) const;
  std::unique_ptr<ChildProcess> StartFrom(const std::string& folder, const std::string& args) const;
  // The log and exit code of a run that was started and has ended.
  RunOutcome Outcome(ChildProcess& child, DWORD timeoutMs = 60000) const;
  RunOutcome SilentInstall() const { return Run("-Q -D " + Quoted(Dest())); }
  // From the installed folder, keeping program and script.
  RunOutcome SilentRemoval() const;

 private:
  RegistryGuard mMachineGuard;
  RegistryGuard mUserGuard;
  ProfileGuard mCollisionsGuard;
  ProfileGuard mSubstituteGuard;
  TempDir mRoot;
  std::string mSource;
  std::string mDest;
  std::string mLauncher;
  std::vector<FileLine> mFiles;
};

// The configuration file's contents, decoded by the test's own means. Nothing is in
// `entries` when `sound` is false.
struct DecodedConfig {
  bool sound = false;
  std::vector<std::pair<std::string, std::string>> entries;  // in the file's order, "%" kept
  std::string Value(const std::string& name) const;          // "" when absent
};
DecodedConfig DecodeConfig(const std::string& bytes);
// The file for these entries, so that tests can make installations and damage them.
std::string EncodeConfig(const std::vector<std::pair<std::string, std::string>>& entries);

// Path of the Setup.exe under test.
std::string SetupProgram();
