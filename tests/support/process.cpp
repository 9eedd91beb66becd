#include "support/process.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/files.h"

namespace {

constexpr DWORD kKilledExitCode = 0xDEAD;

// A file, not a pipe: what the program leaves running would keep a pipe open.
std::string NewOutputFile() {
  char folder[MAX_PATH + 1] = "";
  char file[MAX_PATH + 1] = "";
  GetTempPathA(sizeof folder, folder);
  GetTempFileNameA(folder, "out", 0, file);
  return file;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& commandLine, const ProcessOptions& options)
    : mOutputFile(NewOutputFile()) {
  SECURITY_ATTRIBUTES inherited = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  FileHandle output(CreateFileA(mOutputFile.c_str(), FILE_APPEND_DATA,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                                OPEN_ALWAYS, 0, nullptr));
  FileHandle input(CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                               OPEN_EXISTING, 0, nullptr));
  STARTUPINFOA start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
  start.wShowWindow = options.show;
  start.hStdInput = input.Get();
  start.hStdOutput = output.Get();
  start.hStdError = output.Get();
  std::vector<char> line(commandLine.begin(), commandLine.end());
  line.push_back('\0');
  std::string environment = options.environment;
  environment.push_back('\0');
  PROCESS_INFORMATION info = {};
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0,
                      options.environment.empty() ? nullptr : environment.data(),
                      options.folder.empty() ? nullptr : options.folder.c_str(), &start, &info)) {
    mError = GetLastError();
    return;
  }
  mProcess.Reset(info.hProcess);
  KernelHandle thread(info.hThread);
  mId = info.dwProcessId;
}

ChildProcess::~ChildProcess() {
  Kill();
  // The file may stay open in a grandchild for a moment; it lies in the throw-away prefix.
  if (!mOutputFile.empty()) DeleteFileA(mOutputFile.c_str());
}

bool ChildProcess::WaitForExit(DWORD timeoutMs) {
  return mProcess && WaitForSingleObject(mProcess.Get(), timeoutMs) == WAIT_OBJECT_0;
}

DWORD ChildProcess::ExitCode() const {
  DWORD code = 0;
  if (mProcess) GetExitCodeProcess(mProcess.Get(), &code);
  return code;
}

bool ChildProcess::WaitForIdle(DWORD timeoutMs) {
  return mProcess && WaitForInputIdle(mProcess.Get(), timeoutMs) == 0;
}

void ChildProcess::Kill() {
  if (!mProcess || WaitForSingleObject(mProcess.Get(), 0) == WAIT_OBJECT_0) return;
  TerminateProcess(mProcess.Get(), kKilledExitCode);
  WaitForSingleObject(mProcess.Get(), 5000);
}

std::string ChildProcess::Output() const { return mOutputFile.empty() ? "" : ReadWholeFile(mOutputFile); }

ProcessResult RunProcess(const std::string& commandLine, const ProcessOptions& options) {
  ProcessResult result;
  ChildProcess child(commandLine, options);
  result.started = child.Started();
  result.error = child.StartError();
  if (!result.started) return result;
  result.timedOut = !child.WaitForExit(options.timeoutMs);
  child.Kill();
  result.exitCode = child.ExitCode();
  result.output = child.Output();
  return result;
}

std::string TestFolder() {
  char path[MAX_PATH + 1] = "";
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  const std::string full = path;
  return full.substr(0, full.rfind('\\'));
}

std::string HelperPath(const std::string& name) { return TestFolder() + "\\helpers\\" + name; }

std::string Quoted(const std::string& argument) {
  std::string quoted = "\"";
  size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') quoted.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    quoted.push_back(c);
  }
  return quoted.append(backslashes, '\\') + '"';
}
