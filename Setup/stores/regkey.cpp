#include "stores/regkey.h"

#include "platform/WinRegistry.h"

LSTATUS RegKey::Open(HKEY parent, const char* subKey, REGSAM access) {
  Close();
  return RegOpenKeyExA(parent, subKey, 0, access, mKey.Put());
}

LSTATUS RegKey::Create(HKEY parent, const char* subKey, REGSAM access) {
  Close();
  return RegCreateKeyExA(parent, subKey, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, mKey.Put(),
                         nullptr);
}

void RegKey::Close() {
  if (IsPredefinedKey(mKey.Get()))
    mKey.Release();
  else
    mKey.Reset();
}
