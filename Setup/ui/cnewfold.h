#pragma once
// Asks for the name of a new folder and creates it (dialog 1900).
#include <windows.h>

#include "base/str.h"

// `created` receives the full path; false when cancelled.
[[nodiscard]] bool AskNewFolder(HWND owner, Str& created);
