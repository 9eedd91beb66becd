#pragma once
// Reading version resources through the system's version library, loaded at run time.
#include <cstdint>

#include "base/str.h"

// The "FileVersion" text of a file; without one "major.minor.revision.build"; false when it has no version
// resource.
[[nodiscard]] bool GetFileVersionText(const char* path, Str& text);
// The language id of a file's only translation (\VarFileInfo\Translation); -1 when it cannot be read, and -1
// with `several` set when more than one is listed.
int32_t GetFileLanguage(const char* path, bool& several);
