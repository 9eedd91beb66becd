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
  // `mode` names at least one of the two. A folder that is a link to elsewhere is listed but never entered.
  DirIterator(const char* path, uint32_t mode, bool recursive);
  // The next entry's full path; false at the end. Not to be called again after that.
  bool Next(Str& path, bool& isDir);

 private:
  bool ReadEntry();
  bool NextOfChild(Str& path, bool& isDir);

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
