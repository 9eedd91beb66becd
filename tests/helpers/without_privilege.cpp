// without_privilege NAME COMMANDLINE     removes a privilege (for example SeShutdownPrivilege) from its own
// token, runs the command line, which inherits the token, and ends with its exit code.
#include <windows.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  HANDLE token = nullptr;
  TOKEN_PRIVILEGES privileges = {};
  privileges.PrivilegeCount = 1;
  privileges.Privileges[0].Attributes = 4;  // SE_PRIVILEGE_REMOVED, which older headers lack
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token) ||
      !LookupPrivilegeValueA(nullptr, argv[1], &privileges.Privileges[0].Luid) ||
      !AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr)) {
    const DWORD error = GetLastError();
    printf("cannot remove %s, error %lu\n", argv[1], error);
    return 3;
  }
  STARTUPINFOA start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION info = {};
  if (!CreateProcessA(nullptr, argv[2], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &info)) {
    const DWORD error = GetLastError();
    printf("not started, error %lu\n", error);
    return 4;
  }
  WaitForSingleObject(info.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(info.hProcess, &code);
  return static_cast<int>(code);
}
