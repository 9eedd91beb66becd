#pragma once
// File operations on whole folders, with the guards that scripts need.
#include "base/str.h"

// Copies a file over `destPath`, or a folder with all it holds; a folder is not copied into itself.
[[nodiscard]] bool CopyFileOrTree(const char* srcPath, const char* destPath);
// Deletes a file, or a folder that is empty.
[[nodiscard]] bool DeleteFileOrEmptyDir(const char* path);
// False for what no script may delete with all it holds: a volume's root, the Windows
// folders and folders above them.
bool IsDeletableTree(const char* path);
// Deletes a folder with all it holds. A folder that is a link is removed itself, not what it leads to.
[[nodiscard]] bool DeleteTree(const char* path);
