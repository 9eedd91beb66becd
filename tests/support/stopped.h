#pragma once
// In tests a stopped run is an exception: MemError for exhausted memory, FatalStop after a fatal error.
#include "base/fatal.h"

struct FatalStop {};

[[noreturn]] inline void ThrowMemError(uint32_t code) { throw MemError{code}; }
[[noreturn]] inline void ThrowFatalStop() { throw FatalStop{}; }
