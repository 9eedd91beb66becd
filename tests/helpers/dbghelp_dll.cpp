// Stands in for the system's dump writer: begins a dump and fails.
#include <windows.h>

extern "C" BOOL WINAPI MiniDumpWriteDump(HANDLE, DWORD, HANDLE file, int, void*, void*, void*) {
  DWORD written = 0;
  WriteFile(file, "MDMP", 4, &written, nullptr);
  SetLastError(ERROR_WRITE_FAULT);
  return FALSE;
}
