#pragma once
// The one sequence that installs and removes, in normal and workstation mode.
#include <cstdint>
#include <vector>

#include "base/str.h"

// What the entry must know when the sequence is over.
struct SequenceResult {
  int exitCode = 0;         // ExitCode
  bool deleteSelf = false;  // the setup program and its script go when the run ends
  // Language libraries that a removal listed and could not delete because one of them is in use by this
  // program.
  std::vector<Str> heldFiles;
};

SequenceResult RunSequence();

// The script section of this run's mode.
const char* ModeSection();

enum LineKinds : uint32_t { kFileLines = 1, kTaskLines = 2, kRegistryLines = 4, kVariableLines = 8 };
// Runs a section with the handlers of `lineKinds`; `pass` (0 or 1) goes to the tasks.
[[nodiscard]] bool RunSectionPass(const char* section, int32_t pass, uint32_t lineKinds);
