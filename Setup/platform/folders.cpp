#include "platform/folders.h"

#include <windows.h>

#include <shlobj.h>

#include "base/runstate.h"
#include "platform/fspath.h"

namespace Folders {
namespace {

constexpr size_t kFolderSize = FS::kMaxPathNameLen + 1;  // bytes of a folder's path, terminator included

// Stores a folder that the system gave as `length` characters in a buffer of `size`, without trailing
// backslash except a root's. A length of 0 is a failure, one of `size` or more a path that did not fit.
bool Store(const char* text, size_t length, size_t size, Str& dir) {
  if (length == 0 || length >= size) return false;
  FSPath path(text);
  const Str root = path.Components(FSPath::compVolume);
  if (path.Length() > root.Length() && path.FileName().IsEmpty()) path.mPath.Delete(path.Length() - 1, 1);
  dir = path.mPath;
  return true;
}

bool GetShellFolder(int csidl, bool create, Str& dir) {
  char buffer[MAX_PATH] = "";
  if (!SHGetSpecialFolderPathA(nullptr, buffer, csidl, create)) return false;
  return Store(buffer, std::string_view(buffer).size(), sizeof buffer, dir);
}

}  // namespace

bool GetWindowsDir(Str& dir) {
  char buffer[kFolderSize];
  return Store(buffer, GetWindowsDirectoryA(buffer, sizeof buffer), sizeof buffer, dir);
}

bool GetSystemDir(Str& dir) {
  char buffer[kFolderSize];
  return Store(buffer, GetSystemDirectoryA(buffer, sizeof buffer), sizeof buffer, dir);
}

bool GetTempDir(Str& dir) {
  char buffer[kFolderSize];
  return Store(buffer, GetTempPathA(sizeof buffer, buffer), sizeof buffer, dir);
}

bool GetUserAppDataDir(Str& dir) { return GetShellFolder(CSIDL_APPDATA, true, dir); }

bool GetProgramsDir(Str& dir) {
  return GetShellFolder(CSIDL_COMMON_PROGRAMS, true, dir) || GetShellFolder(CSIDL_PROGRAMS, true, dir);
}

bool GetProgramFilesFolder(Str& dir) { return GetShellFolder(CSIDL_PROGRAM_FILES, false, dir); }

namespace {

// A program started by a path of the native kind, or from a share on some systems, is reported in that kind.
Str OrdinaryPath(Str path) {
  if (path.IBeginsWith("\\\\?\\")) path.Delete(0, 4);
  if (!path.IBeginsWith("UNC\\")) return path;
  path.Delete(0, 3);
  path.Insert('\\', 0);
  return path;
}

}  // namespace

bool GetModulePath(Str& path) {
  // Some systems cut a longer path silently: room for one character more shows it.
  char buffer[FS::kMaxPathNameLen + 2];
  const DWORD length = GetModuleFileNameA(nullptr, buffer, sizeof buffer);
  if (length == 0 || length > DWORD{FS::kMaxPathNameLen}) return false;
  path = OrdinaryPath(Str(std::string_view(buffer, length)));
  return true;
}

}  // namespace Folders

void DetectPlatform() {
  OSVERSIONINFOA info = {};
  info.dwOSVersionInfoSize = sizeof info;
  RunState& run = Run();
  run.platformFlags = 0;
  run.windowsMajor = 0;
  run.windowsMinor = 0;
  if (!GetVersionExA(&info)) return;
  if (info.dwPlatformId == VER_PLATFORM_WIN32_NT) run.platformFlags |= kPlatformNT;
  if (info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS) run.platformFlags |= kPlatformWin9x;
  if (info.dwMajorVersion >= 4) run.platformFlags |= kPlatformMajor4;
  run.windowsMajor = static_cast<uint16_t>(info.dwMajorVersion);
  run.windowsMinor = static_cast<uint16_t>(info.dwMinorVersion);
}
