#pragma once
// Choosing a folder with the system's open-file dialog (template 1800).
#include <windows.h>

#include "base/str.h"

// `folder` holds the start folder (or one that does not exist yet: then the nearest existing one above it is
// shown) and receives the choice; false when cancelled or not shown, and in a silent run. The process's
// current folder stays.
[[nodiscard]] bool BrowseForFolder(HWND owner, Str& folder);
