#pragma once
// Names for temporary files. Each is announced (SetTempNameHook) before anybody creates it, so that a run
// that was killed can be cleaned up after.
#include <cstdint>

#include "base/str.h"

namespace FS {

class TempNames {
 public:
  // `prefix`: its first three characters begin each name.
  TempNames(const char* dir, const char* prefix);
  // Goes on to the next name that is not taken; false when there is none or it would be too long for a path.
  [[nodiscard]] bool Next();
  const Str& Path() const { return mPath; }

 private:
  Str mDir;
  Str mPrefix;
  uint32_t mNumber;
  uint32_t mTried = 0;
  Str mPath;
};

}  // namespace FS
