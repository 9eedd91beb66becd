#include "shell/delexe.h"

#include <windows.h>

#include <string>

#include "base/assert.h"
#include "base/handle.h"
#include "base/str.h"
#include "messages/varlist.h"
#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fspath.h"

namespace {

constexpr char kBatchName[] = "QLDELSU.BAT";

Str ToOem(const char* text) {
  Str oem;
  CharToOemA(text, oem.Lock(Str::Length(text) + 1));
  oem.Unlock();
  return oem;
}

bool SurvivesOem(const char* text) {
  const Str oem = ToOem(text);
  Str back;
  OemToCharA(oem, back.Lock(oem.Length() + 1));
  back.Unlock();
  return back == text;
}

// A path as the command interpreter reads it from a batch file: in the OEM code page, every per-cent sign
// doubled. Characters that this code page lacks are avoided by the short form.
Str BatchPath(const Str& path) {
  Str usable = path;
  if (!SurvivesOem(path)) {
    Str shortPath;
    const DWORD length = GetShortPathNameA(path, shortPath.Lock(FS::kMaxPathNameLen), FS::kMaxPathNameLen);
    shortPath.Unlock();
    if (length != 0 && length < static_cast<DWORD>(FS::kMaxPathNameLen)) usable = shortPath;
  }
  Str text = ToOem(usable);
  for (int32_t pos = text.Find('%'); pos >= 0; pos = text.Find('%', pos + 2)) text.Insert('%', pos);
  return text;
}

bool WriteBatch(const Str& batchPath, const Str& programPath) {
  const FileHandle file(CreateFileA(batchPath, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) return false;
  const Str program = BatchPath(programPath);
  Str text;
  text.Format(":Repeat\r\ndel \"%s\"\r\nif exist \"%s\" goto Repeat\r\ndel \"%s\"\r\n", program.Chars(),
              program.Chars(), BatchPath(batchPath).Chars());
  DWORD written = 0;
  return WriteFile(file.Get(), text.Chars(), static_cast<DWORD>(text.Length()), &written, nullptr) != FALSE &&
         written == static_cast<DWORD>(text.Length());
}

// Starts the batch at idle priority and lifts this process above everything, so that the program has ended
// before the batch gets the processor.
void StartBatch(const Str& batchPath) {
  std::string commandLine = "\"";
  commandLine += batchPath.Chars();
  commandLine += '"';
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION pi = {};
  if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE,
                      CREATE_SUSPENDED | IDLE_PRIORITY_CLASS, nullptr, nullptr, &startup, &pi))
    return;
  KernelHandle process(pi.hProcess);
  KernelHandle thread(pi.hThread);
  VT_ASSERT(SetThreadPriority(thread.Get(), THREAD_PRIORITY_IDLE), "SetThreadPriority(pi.hThread,(-15))");
  VT_ASSERT(SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_TIME_CRITICAL),
            "SetThreadPriority(GetCurrentThread(),15)");
  VT_ASSERT(SetPriorityClass(GetCurrentProcess(), HIGH_PRIORITY_CLASS),
            "SetPriorityClass(GetCurrentProcess(),0x00000080)");
  // Closed by hand because the outcome is checked.
  VT_ASSERT(CloseHandle(process.Release()), "CloseHandle(pi.hProcess)");
  ResumeThread(thread.Get());
  VT_ASSERT(CloseHandle(thread.Release()), "CloseHandle(pi.hThread)");
}

}  // namespace

void DeleteProgramOnExit() {
  Str winDir;
  VT_ASSERT(AppGetVariable("WinDir", winDir), "AppGetVariable(sWinDir,winDir)");
  const Str batchPath = JoinPath(winDir, kBatchName);
  Str programPath;
  if (!Folders::GetModulePath(programPath)) return;
  if (!WriteBatch(batchPath, programPath)) return;
  // The batch cannot delete a read-only or hidden file and would try for ever.
  FS::SetFileAttribute(programPath, FS::kAttrLock, false);
  FS::SetFileAttribute(programPath, FS::kAttrHidden, false);
  StartBatch(batchPath);
}
