#include "script/shortnames.h"

#include <windows.h>

#include "base/assert.h"
#include "platform/fs.h"

namespace {

constexpr DWORD kPathSize = FS::kMaxPathNameLen;

}  // namespace

void UseShortNames(const Str& sourcePath, const Str& target, Str& srcName, Str& destName, Str& temporary) {
  temporary = "";
  char shortSourceName[kPathSize] = "";
  DWORD len = GetShortPathNameA(sourcePath, shortSourceName, kPathSize);
  if (VT_ASSERT(len <= kPathSize, "len <= Dim(shortSourceName)") && len > 0)
    srcName = FSPath(shortSourceName).FileName();
  if (FS::Exists(target)) {
    char shortTargetName[kPathSize] = "";
    len = GetShortPathNameA(target, shortTargetName, kPathSize);
    if (VT_ASSERT(len <= kPathSize, "len <= Dim(shortTargetName)") && len > 0)
      destName = FSPath(shortTargetName).FileName();
    return;
  }
  char unique[kPathSize] = "";
  if (GetTempFileNameA(FSPath(target).Parent(), "qli", 0, unique) == 0) return;
  FS::Delete(unique);  // only its name is wanted
  temporary = unique;
  destName = FSPath(unique).FileName();
}

void FinishShortNames(bool installed, const Str& temporary, const Str& target) {
  if (!FS::Exists(temporary)) return;
  if (!installed)
    FS::Delete(temporary);
  else
    VT_ASSERT(MoveFileA(temporary, target) != FALSE, "MoveFileA(sourceRename,targetRename)");
}
