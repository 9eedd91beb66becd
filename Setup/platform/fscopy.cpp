// Copying a file so that its final name never stands for a half-written one.
#include <windows.h>

#include "base/assert.h"
#include "base/errormode.h"
#include "base/handle.h"
#include "platform/fs.h"
#include "platform/fsattr.h"
#include "platform/fstemp.h"

namespace FS {
namespace {

bool GetIdentity(const char* path, BY_HANDLE_FILE_INFORMATION& info) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  FileHandle file(CreateFileA(path, 0, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return file && GetFileInformationByHandle(file.Get(), &info);
}

// True when both names lead to one file, under whatever spelling.
bool IsSameFile(const char* a, const char* b) {
  BY_HANDLE_FILE_INFORMATION first = {}, second = {};
  return GetIdentity(a, first) && GetIdentity(b, second) &&
         first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
         first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

void RemoveTemp(const char* path) {
  SetFileAttributesA(path, FILE_ATTRIBUTE_NORMAL);
  DeleteFileA(path);
}

// Moves the finished copy over the target; a system error code.
DWORD PutInPlace(const char* temp, const char* dest, bool failIfExists) {
  if (failIfExists) return MoveFileA(temp, dest) ? ERROR_SUCCESS : GetLastError();
  if (MoveFileExA(temp, dest, MOVEFILE_REPLACE_EXISTING)) return ERROR_SUCCESS;
  const DWORD error = GetLastError();
  if (error != ERROR_CALL_NOT_IMPLEMENTED) return error;
  // Windows 95/98 cannot replace in one step.
  DeleteFileA(dest);
  return MoveFileA(temp, dest) ? ERROR_SUCCESS : GetLastError();
}

// Copies through a temporary file beside the target; a system error code. `full` is
// the target's absolute path.
DWORD CopyBeside(const char* src, const FSPath& full, bool failIfExists) {
  TempNames names(full.Parent(), "~vt");
  while (names.Next()) {
    DWORD error = CopyFileA(src, names.Path(), TRUE) ? ERROR_SUCCESS : GetLastError();
    if (error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS) continue;
    if (error == ERROR_SUCCESS) error = PutInPlace(names.Path(), full, failIfExists);
    if (error != ERROR_SUCCESS) RemoveTemp(names.Path());
    return error;
  }
  return ERROR_BUFFER_OVERFLOW;
}

// True for failures of the way through a temporary file that writing into the target itself might not meet: a
// folder that takes no new file, a target that others have open, a temporary name too long for a path.
bool MayWorkInPlace(DWORD error) {
  return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_BUFFER_OVERFLOW ||
         error == ERROR_PATH_NOT_FOUND || error == ERROR_FILENAME_EXCED_RANGE;
}

// True when the target's own room and what is free beside it take the source, although both files at once
// did not fit.
bool FitsOver(const char* src, const char* dest) {
  uint32_t sourceBytes = 0, destBytes = 0, freeKB = 0;
  return GetSize(src, sourceBytes) && sourceBytes < UINT32_MAX && GetSize(dest, destBytes) &&
         GetFreeKB(dest, freeKB) && sourceBytes / 1024 < uint64_t{destBytes} / 1024 + freeKB;
}

}  // namespace

bool Copy(const char* srcPath, const char* destPath, bool failIfExists) {
  const bool hasSource = VT_ASSERT(srcPath, "srcPath");
  const bool hasDest = VT_ASSERT(destPath, "destPath");
  SetLastError(fsErrFailed);
  if (!hasSource || !hasDest) return false;
  CriticalErrorGuard guard;
  DWORD attributes = 0;
  const bool exists = QueryAttributes(destPath, attributes);
  if (exists && !failIfExists) ClearReadOnly(destPath);

  FSPath full(destPath);
  // What the system's copy refuses, it shall refuse itself: an existing target, a folder, a file onto itself.
  const bool plain =
      exists && (failIfExists || (attributes & FILE_ATTRIBUTE_DIRECTORY) || IsSameFile(srcPath, destPath));
  DWORD error = ERROR_BUFFER_OVERFLOW;
  if (!plain && full.MakeFull()) error = CopyBeside(srcPath, full, failIfExists);
  if (plain || MayWorkInPlace(error) || (error == ERROR_DISK_FULL && FitsOver(srcPath, destPath))) {
    error = CopyFileA(srcPath, destPath, failIfExists) ? ERROR_SUCCESS : GetLastError();
  }
  SetFromSystem(error);
  return error == ERROR_SUCCESS;
}

}  // namespace FS
