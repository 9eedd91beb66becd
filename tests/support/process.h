#pragma once
// Other programs, each wait bounded.
#include <windows.h>

#include <string>

#include "base/handle.h"

struct ProcessResult {
  bool started = false;
  bool timedOut = false;  // and therefore ended by force
  DWORD exitCode = 0;     // all 32 bits; what ended it by force leaves 0xDEAD
  DWORD error = 0;        // GetLastError of a failed start
  std::string output;     // standard output and standard error together
};

struct ProcessOptions {
  DWORD timeoutMs = 30000;
  std::string folder;       // the current folder; "" is the test's own
  std::string environment;  // a whole block ("A=1\0B=2\0"); "" inherits
  WORD show = SW_SHOWNORMAL;
};

// Runs a command line to its end.
ProcessResult RunProcess(const std::string& commandLine, const ProcessOptions& options = {});

// A program that runs beside the test; ended by force with the object.
class ChildProcess {
 public:
  ChildProcess() = default;
  explicit ChildProcess(const std::string& commandLine, const ProcessOptions& options = {});
  ~ChildProcess();
  ChildProcess(ChildProcess&&) = default;
  ChildProcess& operator=(ChildProcess&&) = delete;

  bool Started() const { return static_cast<bool>(mProcess); }
  DWORD Id() const { return mId; }
  DWORD StartError() const { return mError; }
  // True when it has ended within the time; then ExitCode is its exit code.
  bool WaitForExit(DWORD timeoutMs = 30000);
  DWORD ExitCode() const;
  // True once it waits for input (its windows are up).
  bool WaitForIdle(DWORD timeoutMs = 10000);
  void Kill();
  // What it has written so far to standard output and standard error.
  std::string Output() const;

 private:
  KernelHandle mProcess;
  DWORD mId = 0;
  DWORD mError = 0;
  std::string mOutputFile;
};

// Full path of the running test program's folder, without a backslash at the end.
std::string TestFolder();
// Full path of a helper program built beside the tests, for example "dialog_driver.exe".
std::string HelperPath(const std::string& name);
// The argument in quotes, as the C run-time of the started program reads it.
std::string Quoted(const std::string& argument);
