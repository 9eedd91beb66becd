#pragma once
// Standard folders and facts of this Windows. Folder results carry no trailing backslash (except a root).
#include <cstdint>

#include "base/str.h"

namespace Folders {

[[nodiscard]] bool GetWindowsDir(Str& dir);
[[nodiscard]] bool GetSystemDir(Str& dir);
[[nodiscard]] bool GetTempDir(Str& dir);
// The user's application-data folder (CSIDL_APPDATA).
[[nodiscard]] bool GetUserAppDataDir(Str& dir);
// The all-users Programs folder, else the user's.
[[nodiscard]] bool GetProgramsDir(Str& dir);
// The shell's Program Files folder.
[[nodiscard]] bool GetProgramFilesFolder(Str& dir);
// Full path of the running program file, at most 260 characters; false otherwise.
[[nodiscard]] bool GetModulePath(Str& path);

}  // namespace Folders

// Fills the platform flags and Windows version of Run().
void DetectPlatform();
