#pragma once
// The one sequence that installs and removes, in normal and workstation mode.
#include <cstdint>

#include "base/str.h"

// What the entry must know when the sequence is over.
struct SequenceResult {
  int exitCode = 0;         // ExitCode
  bool deleteSelf = false;  // the setup program and its script go when the run ends
  // The language library when a removal listed it: this program shows its texts from it until the end.
  Str heldFile;
};

SequenceResult RunSequence();

// The script section of this run's mode.
const char* ModeSection();

enum LineKinds : uint32_t { kFileLines = 1, kTaskLines = 2, kRegistryLines = 4, kVariableLines = 8 };
// Runs a section with the handlers of `lineKinds`; `pass` (0 or 1) goes to the tasks.
[[nodiscard]] bool RunSectionPass(const char* section, int32_t pass, uint32_t lineKinds);
