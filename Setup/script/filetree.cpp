#include "script/filetree.h"

#include <windows.h>

#include <string_view>

#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fsdirit.h"
#include "script/fullpath.h"

namespace {

bool CopyTree(const Str& srcPath, const Str& destPath) {
  if (HoldsPath(srcPath, destPath) || !FS::CreateDir(destPath)) return false;
  FS::DirIterator entries(srcPath, FS::DirIterator::modeFiles | FS::DirIterator::modeDirs, true);
  Str path;
  bool isDir = false;
  while (entries.Next(path, isDir)) {
    const Str target = JoinPath(destPath, path.Chars() + srcPath.Length());
    // A folder comes after what it holds, so files make theirs.
    const bool done = isDir ? FS::CreateDir(target)
                            : FS::CreateDir(FSPath(target).Parent()) && FS::Copy(path, target, false);
    if (!done) return false;
  }
  return true;
}

}  // namespace

bool CopyFileOrTree(const char* srcPath, const char* destPath) {
  if (!FS::IsDir(srcPath)) return FS::Copy(srcPath, destPath, false);
  FSPath source(srcPath);
  if (!source.MakeFull()) return false;
  if (source.FileName().IsEmpty()) source.mPath.Delete(source.Length() - 1, 1);
  return CopyTree(source.mPath, destPath);
}

bool DeleteFileOrEmptyDir(const char* path) {
  return FS::IsDir(path) ? FS::DeleteEmptyDir(path) : FS::Delete(path);
}

bool IsDeletableTree(const char* path) {
  FSPath full(path);
  // A drive without a path would stand for its current folder; what is meant is the drive.
  if (full.Length() == 2 && path[1] == ':') return false;
  if (full.IsEmpty() || !full.MakeFull() || HoldsPath(full, full.Components(FSPath::compVolume)))
    return false;
  // A path of the form \\?\C:\folder or \\.\C:\folder, by which the Windows folder has another name.
  const std::string_view text = full.mPath.View();
  if (text.starts_with("\\\\?\\") || text.starts_with("\\\\.\\"))
    return text.size() > 5 && text[5] == ':' && IsDeletableTree(full.mPath.Chars() + 4);
  Str folder;
  return !(Folders::GetWindowsDir(folder) && HoldsPath(full, folder)) &&
         !(Folders::GetSystemDir(folder) && HoldsPath(full, folder));
}

bool DeleteTree(const char* path) {
  const DWORD attributes = GetFileAttributesA(path);
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
    return FS::DeleteEmptyDir(path);
  return FS::RemoveDir(path, true, true);
}
