#pragma once
// The two ways in which a low module stops the whole run. The program is built without
// exceptions: nothing has to be unwound through the system's callbacks, and the entry's hooks
// report, clean up and end the process.
#include <cstddef>
#include <cstdint>

// The code that goes with exhausted memory.
struct MemError {
  static constexpr uint32_t kAlloc = 0x8004020b;  // a block could not be allocated or resized
  static constexpr uint32_t kLock = 0x80040280;   // a block could not be locked
  uint32_t code;
};

// Memory is exhausted: the out-of-memory message is shown and the run ends.
[[noreturn]] void StopForMemory(uint32_t code);
// A fatal error has been reported: the run ends.
[[noreturn]] void StopForFatalError();

// Whether an ordinary block of `size` bytes can be had now; for callers with a fall-back of their own.
[[nodiscard]] bool MemoryAvailable(size_t size);
