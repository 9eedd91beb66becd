// exit_code COMMANDLINE     runs it and prints "exit code N" with all 32 bits (unsigned); ends with 0.
// Ends with 1 when the program cannot be started; then it prints the error.
#include <windows.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  STARTUPINFOA start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION info = {};
  if (!CreateProcessA(nullptr, argv[1], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &info)) {
    const DWORD error = GetLastError();
    printf("not started, error %lu\n", error);
    return 1;
  }
  WaitForSingleObject(info.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(info.hProcess, &code);
  printf("exit code %lu\n", code);
  return 0;
}
