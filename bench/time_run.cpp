// time_run COMMANDLINE...     runs a program to its end and prints "microseconds N" and "exit code N": its
// whole time, from its start to its end, without what the machine needs to get into the Windows world.
#include "file_loop.h"

int main(int argc, char** argv) {
  std::string line;
  for (int i = 1; i < argc; ++i) {
    if (i > 1) line += ' ';
    line += '"' + std::string(argv[i]) + '"';
  }
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  const Clock clock;
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process)) {
    std::printf("error %lu\n", GetLastError());
    return 1;
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  const double time = clock.Microseconds();
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  std::printf("microseconds %.0f\nexit code %lu\n", time, code);
  return 0;
}
