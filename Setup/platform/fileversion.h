#pragma once
// Reading version resources through the system's version library, loaded at run time.
#include <cstdint>

#include "base/str.h"

// Whether the file is a program or library of which nothing is cut off, with resources that all lie in it.
// Others must not be mapped: reading them leads out of the mapping.
[[nodiscard]] bool IsWholeImage(const char* path);

// The "FileVersion" text of a file; without one "major.minor.revision.build"; false when it
// has no version resource.
[[nodiscard]] bool GetFileVersionText(const char* path, Str& text);
// The language id of a file's only translation (\VarFileInfo\Translation); -1 when it cannot be read, and -1
// with `several` set when more than one is listed.
int32_t GetFileLanguage(const char* path, bool& several);
