#include "stores/profile.h"

#include <windows.h>

Str ProfileText(const char* section, const char* key, int32_t size) {
  Str text;
  GetProfileStringA(section, key, "", text.Lock(size), static_cast<DWORD>(size));
  text.Unlock();
  return text;
}
