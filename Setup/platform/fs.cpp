#include "platform/fs.h"

#include <windows.h>

#include <direct.h>

#include <cerrno>

#include "base/assert.h"
#include "base/errormode.h"
#include "base/handle.h"
#include "platform/fsattr.h"
#include "platform/fsdirit.h"

namespace FS {
namespace {

// Starts an operation on `path`: asserts that it is there (under the argument's name) and presets the error.
#define VT_FS_BEGIN(path) (SetLastError(fsErrFailed), VT_ASSERT(path, #path))

// Checks the kind of an existing file or folder. A wrong kind counts as failed.
bool HasKind(const char* path, bool (*matches)(DWORD)) {
  DWORD attributes = 0;
  if (!QueryAttributes(path, attributes)) return false;
  if (matches(attributes)) return true;
  SetLastError(fsErrFailed);
  return false;
}

// True when the name is gone. Some network systems report a deletion as done although the folder forbids it.
bool IsGone(const char* path) {
  DWORD attributes = 0;
  if (QueryAttributes(path, attributes)) {
    SetLastError(fsErrAccess);
    return false;
  }
  SetLastError(fsErrNone);
  return true;
}

// The absolute form without trailing backslash (except a root's).
bool ToFolderPath(const char* dirPath, FSPath& path) {
  path.mPath = dirPath;
  if (!path.MakeFull()) return false;
  const Str root = path.Components(FSPath::compVolume);
  if (path.Length() <= root.Length()) {
    path.mPath = root;
  } else if (path.FileName().IsEmpty()) {
    path.mPath.Delete(path.Length() - 1, 1);
  }
  return true;
}

// Removes the folder's contents as far as asked, innermost first.
bool EmptyDir(const char* dirPath, bool removeFiles, bool recursive) {
  const uint32_t files = removeFiles ? uint32_t{DirIterator::modeFiles} : 0;
  DirIterator entries(dirPath, DirIterator::modeDirs | files, recursive);
  Str path;
  bool isDir = false;
  while (entries.Next(path, isDir)) {
    if (!(isDir ? DeleteEmptyDir(path) : Delete(path))) return false;
  }
  return true;
}

}  // namespace

bool Exists(const char* path) {
  if (!VT_FS_BEGIN(path)) return false;
  DWORD attributes = 0;
  return QueryAttributes(path, attributes);
}

bool IsDir(const char* path) {
  if (!VT_FS_BEGIN(path)) return false;
  return HasKind(path, [](DWORD attributes) { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; });
}

bool IsFile(const char* path) {
  if (!VT_FS_BEGIN(path)) return false;
  return HasKind(path, [](DWORD attributes) {
    return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
  });
}

bool CreateDir(const char* dirPath) {
  if (!VT_FS_BEGIN(dirPath)) return false;
  FSPath path;
  if (!ToFolderPath(dirPath, path)) return false;
  if (IsDir(path)) return true;
  if (!Exists(path.Components(FSPath::compVolume))) {
    SetLastError(fsErrNotFound);
    return false;
  }
  const Str parent = path.Parent();
  if (!Exists(parent) && !CreateDir(parent)) {
    SetLastError(fsErrFailed);
    return false;
  }
  CriticalErrorGuard guard;
  const int error = _mkdir(path) == 0 ? 0 : errno;
  SetFromRunTime(error);
  return error == 0;
}

bool RemoveDir(const char* dirPath, bool removeFiles, bool recursive) {
  if (!VT_FS_BEGIN(dirPath)) return false;
  // The search below an empty path would be that of the current drive's root.
  if (*dirPath == '\0') {
    SetLastError(fsErrNotFound);
    return false;
  }
  if ((removeFiles || recursive) && !EmptyDir(dirPath, removeFiles, recursive)) return false;
  return DeleteEmptyDir(dirPath);
}

bool DeleteEmptyDir(const char* dirPath) {
  if (!VT_FS_BEGIN(dirPath)) return false;
  CriticalErrorGuard guard;
  const int error = _rmdir(dirPath) == 0 ? 0 : errno;
  SetFromRunTime(error);
  return error == 0 && IsGone(dirPath);
}

bool Delete(const char* path) {
  if (!VT_FS_BEGIN(path)) return false;
  CriticalErrorGuard guard;
  if (!ClearReadOnly(path)) return false;
  if (!DeleteFileA(path)) {
    SetFromSystem(GetLastError());
    return false;
  }
  return IsGone(path);
}

bool Rename(const char* oldPath, const char* newPath) {
  const bool hasOld = VT_FS_BEGIN(oldPath);
  const bool hasNew = VT_FS_BEGIN(newPath);
  if (!hasOld || !hasNew) return false;
  CriticalErrorGuard guard;
  const BOOL done = MoveFileA(oldPath, newPath);
  SetFromSystem(done ? ERROR_SUCCESS : GetLastError());
  return done != FALSE;
}

bool GetSize(const char* path, uint32_t& size) {
  size = 0;
  if (!VT_FS_BEGIN(path)) return false;
  CriticalErrorGuard guard;
  FileHandle file(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    SetFromSystem(GetLastError());
    return false;
  }
  DWORD high = 0;
  const DWORD low = GetFileSize(file.Get(), &high);
  const DWORD error = low == INVALID_FILE_SIZE ? GetLastError() : ERROR_SUCCESS;
  SetFromSystem(error);
  if (error != ERROR_SUCCESS) return false;
  size = high ? UINT32_MAX : low;
  return true;
}

bool GetCurDir(Str& dir) {
  SetLastError(fsErrFailed);
  char buffer[kMaxPathNameLen];
  const DWORD length = GetCurrentDirectoryA(sizeof buffer, buffer);
  const DWORD error = length == 0 ? GetLastError() : ERROR_SUCCESS;
  if (length == 0 || length >= sizeof buffer) {
    if (error != ERROR_SUCCESS) SetFromSystem(error);
    return false;
  }
  dir = buffer;
  SetLastError(fsErrNone);
  return true;
}

bool SetCurDir(const char* dirPath) {
  if (!VT_FS_BEGIN(dirPath)) return false;
  CriticalErrorGuard guard;
  const BOOL done = SetCurrentDirectoryA(dirPath);
  SetLastError(done ? fsErrNone : fsErrNotFound);
  return done != FALSE;
}

}  // namespace FS
