#include "platform/fsdirit.h"

#include <cstring>

#include "base/assert.h"
#include "base/errormode.h"
#include "platform/fspath.h"

namespace FS {
namespace {

bool IsSelfOrParent(const char* name) { return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0; }

}  // namespace

DirIterator::DirIterator(const char* path, uint32_t mode, bool recursive)
    : mMode(mode), mRecursive(recursive) {
  VT_ASSERT(path, "path");
  VT_ASSERT(mode & modeFiles || mode & modeDirs, "mode & modeFiles || mode & modeDirs");
  if (path) mPath = path;
}

bool DirIterator::Next(Str& path, bool& isDir) {
  if (!VT_ASSERT(!mDone, "!mDone")) return false;
  if (mChild && NextOfChild(path, isDir)) return true;
  while (ReadEntry()) {
    const bool folder = (mEntry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    // A link's contents belong to another tree: whoever deletes this one must not reach them.
    const bool link = (mEntry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    const Str entryPath = JoinPath(mPath, mEntry.cFileName);
    if (mRecursive && folder && !link) {
      mChildPath = entryPath;
      mChild = std::make_unique<DirIterator>(entryPath, mMode, true);
      if (NextOfChild(path, isDir)) return true;
    } else if (mMode & (folder ? modeDirs : modeFiles)) {
      path = entryPath;
      isDir = folder;
      return true;
    }
  }
  mDone = true;
  mSearch.Reset();
  return false;
}

// The child's next entry and, after its last one, the subfolder itself when folders are asked for. The child
// is gone by then, so that the caller may remove the folder.
bool DirIterator::NextOfChild(Str& path, bool& isDir) {
  if (mChild->Next(path, isDir)) return true;
  mChild.reset();
  if (!(mMode & modeDirs)) return false;
  path = mChildPath;
  isDir = true;
  return true;
}

// Reads the next entry other than "." and ".." into mEntry.
bool DirIterator::ReadEntry() {
  do {
    if (!mStarted) {
      mStarted = true;
      // The pattern below an empty path would be that of the current drive's root.
      if (mPath.IsEmpty()) return false;
      CriticalErrorGuard guard;
      mSearch.Reset(FindFirstFileA(JoinPath(mPath, "*.*"), &mEntry));
      if (!mSearch) return false;
    } else if (!FindNextFileA(mSearch.Get(), &mEntry)) {
      return false;
    }
  } while (IsSelfOrParent(mEntry.cFileName));
  return true;
}

}  // namespace FS
