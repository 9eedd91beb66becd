#include "base/minidump.h"

#include <windows.h>

#include <string>

#include "base/assert.h"
#include "base/asserttext.h"
#include "base/dynlib.h"
#include "base/handle.h"
#include "base/hooks.h"

namespace {

constexpr DWORD kTempPathSize = 260;

// The part of dbghelp.dll's interface that a plain dump needs; the library is only ever loaded at run time.
using MiniDumpWriteDumpProc = BOOL(WINAPI*)(HANDLE process, DWORD processId, HANDLE file, int type,
                                            void* exceptionParam, void* userStreamParam, void* callbackParam);
constexpr int kNormalDump = 0;

bool GetMiniDumpPath(const char* prefix, int index, Str& path) {
  Str folder;
  const DWORD length = GetTempPathA(kTempPathSize, folder.Lock(kTempPathSize));
  folder.Unlock();
  if (!VT_ASSERT(length > 0, "::GetTempPathA(260,pathStr) > 0") || length >= kTempPathSize) return false;

  Str version;
  if (!Hooks().variable("Version", &version)) version = "";
  const std::string build(BuildNumber(version.View()));
  path.Format("%s%s_%s_%d.dmp", folder.Chars(), prefix, build.c_str(), index);
  return true;
}

// Creates the first dump file that does not exist yet.
FileHandle CreateDumpFile(Str& path) {
  for (int index = 0;; ++index) {
    if (!VT_ASSERT(GetMiniDumpPath("VTSetup", index, path),
                   "GetMiniDumpPath(\"VTSetup\",index,miniDumpPath)")) {
      return {};
    }
    if (GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES) continue;
    FileHandle file(CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file) return file;
    const DWORD error = GetLastError();
    if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS) return {};
  }
}

}  // namespace

bool WriteMiniDump(Str& path) {
  static const char* const kFunctions[] = {"MiniDumpWriteDump"};
  const DynLib library("dbghelp.dll", kFunctions, 1, 0);
  if (!library.IsLoaded()) return false;
  const auto writeDump = library.FuncAs<MiniDumpWriteDumpProc>(0);
  if (writeDump == nullptr) return false;

  FileHandle file = CreateDumpFile(path);
  if (!file) return false;
  const bool written = writeDump(GetCurrentProcess(), GetCurrentProcessId(), file.Get(), kNormalDump, nullptr,
                                 nullptr, nullptr) != FALSE;
  file.Reset();
  if (!written) DeleteFileA(path);
  return written;
}
