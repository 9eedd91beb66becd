#pragma once
// An opened registry key that may be one of the predefined roots, which are borrowed and never closed.
#include <windows.h>

#include "base/handle.h"

class RegKey {
 public:
  RegKey() = default;
  RegKey(const RegKey&) = delete;
  RegKey& operator=(const RegKey&) = delete;
  ~RegKey() { Close(); }

  // Opens an existing key; an empty `subKey` is `parent` itself. Returns the system's code.
  LSTATUS Open(HKEY parent, const char* subKey, REGSAM access);
  // Creates the key when it is missing.
  LSTATUS Create(HKEY parent, const char* subKey, REGSAM access);
  void Close();
  HKEY Get() const { return mKey.Get(); }
  explicit operator bool() const { return static_cast<bool>(mKey); }

 private:
  KeyHandle mKey;
};
