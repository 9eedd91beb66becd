#include "base/dynlib.h"

#include <cstring>

#include "base/assert.h"
#include "base/errormode.h"
#include "base/hooks.h"
#include "base/runstate.h"

namespace {

bool IsBareName(const char* path) { return std::strpbrk(path, "\\/:") == nullptr; }

bool IsFullPath(const char* path) {
  const bool onDrive = path[0] != '\0' && path[1] == ':' && path[2] == '\\';
  const bool onServer = path[0] == '\\' && path[1] == '\\';
  return onDrive || onServer;
}

// Loads from the system folder or from a full path only; what the library itself needs is looked up beside it
// and in the system folders, never in the folder that the program was started from.
HMODULE LoadFrom(const char* pathStr) {
  const Str path = IsBareName(pathStr) ? SystemLibraryPath(pathStr) : Str(pathStr);
  if (!IsFullPath(path)) return nullptr;
  const CriticalErrorGuard guard;
  return LoadLibraryExA(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

void ReportMissing(const char* pathStr) {
  Str text("Could not load DLL: ");
  text += pathStr;
  if (Run().IsQuiet()) {
    Hooks().logLine(text);
  } else {
    MessageBoxA(nullptr, text, "DLL Path", MB_OK);
  }
}

}  // namespace

DynLib::DynLib(const char* pathStr, const char* const* funcNames, int32_t numFuncs, uint32_t flags)
    : mNumFuncs(0) {
  VT_ASSERT(pathStr != nullptr, "pathStr");
  VT_ASSERT(funcNames != nullptr, "funcNames");
  if (pathStr == nullptr) return;
  if (funcNames != nullptr && numFuncs > 0) mNumFuncs = numFuncs;
  mFuncs.resize(static_cast<size_t>(mNumFuncs), nullptr);

  mModule.Reset(LoadFrom(pathStr));
  if (!mModule) {
    if ((flags & kReportFailure) != 0) ReportMissing(pathStr);
    return;
  }
  for (size_t i = 0; funcNames != nullptr && i < mFuncs.size(); ++i) {
    if (!VT_ASSERT(funcNames[i] != nullptr, "funcNames[i]")) continue;
    mFuncs[i] = GetProcAddress(mModule.Get(), funcNames[i]);
    VT_ASSERT(mFuncs[i] != nullptr, funcNames[i]);
  }
}

FARPROC DynLib::Func(int32_t i) const {
  if (!VT_ASSERT((i >= 0) && (i < mNumFuncs), "(i >= 0) && (i < mNumFuncs)")) return nullptr;
  return mFuncs[static_cast<size_t>(i)];
}

Str SystemLibraryPath(const char* fileName) {
  Str path;
  const UINT needed = GetSystemDirectoryA(nullptr, 0);
  if (needed == 0) return path;
  const UINT length = GetSystemDirectoryA(path.Lock(static_cast<int32_t>(needed)), needed);
  path.Unlock();
  if (length == 0 || length >= needed) return Str();
  if (path.View().back() != '\\') path += '\\';
  path += fileName;
  return path;
}
