#pragma once
// How the buffers of Str and WStr grow.
#include <cstdint>

// The capacity of a buffer for `needed` units, terminator included: a whole number of steps of 100. A
// negative need asserts and takes none.
int64_t CapacityFor(int64_t needed);
