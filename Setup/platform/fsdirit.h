#pragma once
// Walks a folder, optionally with its subfolders; a folder is returned after its contents.
#include <windows.h>

#include <cstdint>
#include <memory>

#include "base/handle.h"
#include "base/str.h"

namespace FS {

class DirIterator {
 public:
  enum Mode : uint32_t { modeFiles = 1, modeDirs = 2 };
  DirIterator(const char* path, uint32_t mode, bool recursive);
  // The next entry's full path; false at the end.
  bool Next(Str& path, bool& isDir);

 private:
  bool ReadEntry();

  Str mPath;
  uint32_t mMode;
  bool mRecursive;
  bool mStarted = false;
  bool mDone = false;
  WIN32_FIND_DATAA mEntry = {};
  FindHandle mSearch;
  std::unique_ptr<DirIterator> mChild;
  Str mChildPath;
};

}  // namespace FS
