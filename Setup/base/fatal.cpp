#include "base/fatal.h"

#include <windows.h>

#include <memory>
#include <new>

#include "base/hooks.h"

namespace {

// The run could not go on; used where no hook ends the process itself.
constexpr UINT kExitStopped = 8;

}  // namespace

void StopForMemory(uint32_t code) {
  Hooks().memoryExhausted(code);
  ExitProcess(kExitStopped);
}

void StopForFatalError() {
  Hooks().fatalError();
  ExitProcess(kExitStopped);
}

bool MemoryAvailable(size_t size) {
  const std::unique_ptr<std::byte[]> probe(new (std::nothrow) std::byte[size]);
  return probe != nullptr;
}
