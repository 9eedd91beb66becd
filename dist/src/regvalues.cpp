#include "regvalues.h"

bool WriteClassValues(const ClassValue* values, size_t count, const char* ownPath) {
  bool ok = true;
  for (size_t i = 0; i < count; ++i) {
    const char* text = values[i].text ? values[i].text : ownPath;
    const LONG result = RegSetValueA(HKEY_CLASSES_ROOT, values[i].key, REG_SZ, text, 0);
    ok = ok && result == ERROR_SUCCESS;
  }
  return ok;
}

namespace {

// Children first, each time the first of those that are left, for a deleted one shifts the others.
LONG DeleteTree(HKEY parent, const char* name) {
  HKEY key = nullptr;
  LONG result = RegOpenKeyExA(parent, name, 0, KEY_READ | DELETE, &key);
  if (result != ERROR_SUCCESS) return result == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : result;
  char child[256];
  DWORD length = sizeof child;
  while (result == ERROR_SUCCESS &&
         RegEnumKeyExA(key, 0, child, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS) {
    result = DeleteTree(key, child);
    length = sizeof child;
  }
  RegCloseKey(key);
  return result == ERROR_SUCCESS ? RegDeleteKeyA(parent, name) : result;
}

}  // namespace

bool DeleteClassKey(const char* key) { return DeleteTree(HKEY_CLASSES_ROOT, key) == ERROR_SUCCESS; }
