// A library that registers itself: DllRegisterServer writes HKCU\Software\VeltraneTest\SelfReg "Registered" =
// its own path, DllUnregisterServer deletes the value. Both end with the code in the environment variable
// VT_SELFREG when it is set.
#include <windows.h>

#include <cstdlib>

namespace {

constexpr char kKey[] = "Software\\VeltraneTest\\SelfReg";
HINSTANCE gInstance = nullptr;

bool ForcedResult(HRESULT* result) {
  char text[32] = "";
  if (GetEnvironmentVariableA("VT_SELFREG", text, sizeof text) == 0) return false;
  *result = static_cast<HRESULT>(strtoul(text, nullptr, 0));
  return true;
}

}  // namespace

extern "C" HRESULT WINAPI DllRegisterServer() {
  HRESULT result = S_OK;
  if (ForcedResult(&result)) return result;
  char path[MAX_PATH] = "";
  const DWORD length = GetModuleFileNameA(gInstance, path, MAX_PATH);
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr) !=
      ERROR_SUCCESS)
    return E_FAIL;
  RegSetValueExA(key, "Registered", 0, REG_SZ, reinterpret_cast<const BYTE*>(path), length + 1);
  RegCloseKey(key);
  return S_OK;
}

extern "C" HRESULT WINAPI DllUnregisterServer() {
  HRESULT result = S_OK;
  if (ForcedResult(&result)) return result;
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, kKey, 0, KEY_WRITE, &key) != ERROR_SUCCESS) return S_FALSE;
  RegDeleteValueA(key, "Registered");
  RegCloseKey(key);
  return S_OK;
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD, LPVOID) {
  gInstance = instance;
  return TRUE;
}
