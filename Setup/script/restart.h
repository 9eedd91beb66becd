#pragma once
// Replacing a file at the next start of Windows.
#include <windows.h>

using MoveFileExFn = BOOL(WINAPI*)(LPCSTR existing, LPCSTR target, DWORD flags);
// Tests put a failing function in place; null for the system's.
void SetMoveFileEx(MoveFileExFn function);

// Windows 95/98: notes the replacement in WinInit.Ini of the folder in "WinDir". False for a destination with
// a long name, which that list cannot hold, or when the file cannot be written.
[[nodiscard]] bool ReplaceThroughWinInit(const char* src, const char* dest);
