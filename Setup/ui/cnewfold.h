#pragma once
// Asks for the name of a new folder and creates it (dialog 1900).
#include <windows.h>

#include "base/str.h"

// A relative name is taken below the current folder. `created` receives the full path; false when cancelled,
// and in a silent run. A folder that cannot be created is reported and the dialog stays.
[[nodiscard]] bool AskNewFolder(HWND owner, Str& created);
