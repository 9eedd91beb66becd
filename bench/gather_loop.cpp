// gather_loop SCRIPT ROUNDS     runs the collecting pass of a script's section "easy_install" ROUNDS times,
// in one process and without a log, and prints "lines N" and "nanoseconds N", the processor time of one round
// with the opening of the script. Nothing is copied.
//
// Processor time, because the rounds of a long script are interrupted by other programs more often than the
// rounds of a short one. The system counts it in steps of 10 ms: take enough rounds.
#include <cstdint>
#include <cstdlib>

#include "base/runstate.h"
#include "file_loop.h"
#include "messages/varlist.h"
#include "script/files.h"
#include "script/setupinf.h"

namespace {

uint64_t Count(const FILETIME& time) {
  return (static_cast<uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

// Of this process so far, in units of 100 ns.
uint64_t ProcessorTime() {
  FILETIME created;
  FILETIME ended;
  FILETIME kernel;
  FILETIME user;
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  return Count(kernel) + Count(user);
}

bool Gather(const char* script) {
  InfHandlers handlers;
  handlers.fileProc = StandardFileHandler;
  handlers.variableProc = VariableHandler;
  int32_t pass = 0;
  if (!PrepareFileList() || Script().Open(script, true) != kInfOK) return false;
  const bool done = Script().DoSection("easy_install", handlers, &pass) == kInfOK;
  Script().Close();
  return done;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  Run().install = true;
  AppSetVariable("ProgDir", "C:\\Program Files\\Veltrane");
  AppSetVariable("InstallFromDir", "C:\\dist");
  const uint64_t rounds = std::strtoul(argv[2], nullptr, 10);
  const uint64_t start = ProcessorTime();
  for (uint64_t round = 0; round < rounds; ++round)
    if (!Gather(argv[1])) return 1;
  const uint64_t time = ProcessorTime() - start;
  std::printf("lines %d\nnanoseconds %lu\n", static_cast<int>(GetNumFiles()),
              static_cast<unsigned long>(time * 100 / rounds));
  return 0;
}
