#pragma once
// The attribute query that the other file operations are built on.
#include <windows.h>

namespace FS {

// The system's attribute bits of an existing file or folder. Sets FS::LastError.
[[nodiscard]] bool QueryAttributes(const char* path, DWORD& attributes);
// Clears the read-only bit of a file where it is set; a folder keeps its own. True when the path exists and
// nothing went wrong. Sets FS::LastError.
bool ClearReadOnly(const char* path);

}  // namespace FS
