#include "platform/fstemp.h"

#include <windows.h>

#include "base/errormode.h"
#include "platform/fs.h"
#include "platform/fsattr.h"

namespace FS {
namespace {

// The longest folder for which the system promises to form a name; not every system checks it by itself.
constexpr int32_t kMaxFolder = MAX_PATH - 14;
constexpr uint32_t kNumbers = 0xFFFF;  // the system forms names from 16 bits, 0 excluded

TempNameHook gTempNameHook = nullptr;

}  // namespace

TempNameHook SetTempNameHook(TempNameHook hook) {
  const TempNameHook former = gTempNameHook;
  gTempNameHook = hook;
  return former;
}

TempNames::TempNames(const char* dir, const char* prefix)
    : mDir(dir), mPrefix(prefix), mNumber(GetTickCount() + GetCurrentProcessId()) {}

bool TempNames::Next() {
  SetLastError(fsErrFailed);
  if (mDir.Length() > kMaxFolder) return false;
  CriticalErrorGuard guard;
  while (mTried++ < kNumbers) {
    const UINT number = mNumber++ % kNumbers + 1;
    char buffer[MAX_PATH];
    // With a number given, the system only forms the name.
    if (!GetTempFileNameA(mDir, mPrefix, number, buffer)) {
      SetFromSystem(::GetLastError());
      return false;
    }
    DWORD attributes = 0;
    if (QueryAttributes(buffer, attributes)) continue;
    mPath = buffer;
    if (gTempNameHook) gTempNameHook(mPath);
    return true;
  }
  SetLastError(fsErrFailed);
  return false;
}

}  // namespace FS
