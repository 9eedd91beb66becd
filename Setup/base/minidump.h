#pragma once
// Crash dumps of the running process.
#include "base/str.h"

// Writes a small dump to "VTSetup_<build>_<n>.dmp" in the temporary folder, n being the first number whose
// file does not exist yet. False, leaving nothing behind, when the system cannot write one.
[[nodiscard]] bool WriteMiniDump(Str& path);
