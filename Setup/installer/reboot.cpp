#include "installer/reboot.h"

#include <windows.h>

#include "base/handle.h"
#include "base/runstate.h"

namespace {

// A success of the call alone says nothing: a privilege that the user lacks is
// reported by the last error only.
bool EnableShutdownPrivilege() {
  KernelHandle token;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, token.Put()))
    return false;
  TOKEN_PRIVILEGES privileges = {};
  privileges.PrivilegeCount = 1;
  privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
  if (!LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &privileges.Privileges[0].Luid)) return false;
  SetLastError(ERROR_SUCCESS);
  const BOOL adjusted = AdjustTokenPrivileges(token.Get(), FALSE, &privileges, 0, nullptr, nullptr);
  return GetLastError() == ERROR_SUCCESS && adjusted;
}

}  // namespace

bool RestartWindows() {
  const bool isNT = (Run().platformFlags & kPlatformNT) != 0;
  if (isNT && !EnableShutdownPrivilege()) return false;
  return ExitWindowsEx(EWX_REBOOT, 0) != FALSE;
}
