#pragma once
// The question what becomes of an earlier version (dialog 2300).
#include <cstdint>

enum class OldVersionAnswer : int32_t { kQuit, kReplace, kKeep };

// Never called in a silent run.
OldVersionAnswer AskOldVersion();
