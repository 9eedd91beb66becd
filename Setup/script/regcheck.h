#pragma once
// Registry values that are shared with other products: added only where nobody else has a claim, removed only
// while they hold what was added.
#include <windows.h>

#include "base/str.h"

enum class RegAddResult : uint8_t { kAdded, kForeignValue, kShellExtension, kFailed };

// A value taken apart as registry lines of the script are; `root` is null for an unknown one.
struct RegPlace {
  Str rootName;
  HKEY root = nullptr;
  Str keyPath;
  Str valueName;
};
// False (logged as an error of the script) when the text names no value of a known root.
[[nodiscard]] bool ParseRegPlace(const char* text, RegPlace& place);

// Sets the text unless the value holds another one (except the literal "<ProgID>") or, with no value yet, the
// key has a subkey "ShellEx".
RegAddResult AddValueUnlessClaimed(const RegPlace& place, const char* text);
// Deletes the value while it contains `text`; behind a deleted default value also the key if nothing is left
// in it. False when the value is not ours.
bool RemoveValueIfOurs(const RegPlace& place, const char* text);
