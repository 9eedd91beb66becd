#pragma once
// The file-system layer's last error: one process-wide value overwritten by every FS call.
#include <windows.h>

#include <cstdint>

namespace FS {

constexpr uint32_t fsErrNone = 0;
constexpr uint32_t fsErrNotFound = 0x80040205;
constexpr uint32_t fsErrAccess = 0x80040203;
constexpr uint32_t fsErrFailed = 0x80000000;

// The outcome of the latest FS call.
uint32_t LastError();
void SetLastError(uint32_t error);
// Maps a Windows error code and stores the result.
void SetFromSystem(DWORD systemError);
// Maps an errno value of the run-time library and stores the result.
void SetFromRunTime(int runTimeError);

}  // namespace FS
