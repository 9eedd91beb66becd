#pragma once
// Choosing a folder with the system's open-file dialog (template 1800).
#include <windows.h>

#include "base/str.h"

// `folder` holds the start folder and receives the choice; false when cancelled.
[[nodiscard]] bool BrowseForFolder(HWND owner, Str& folder);
