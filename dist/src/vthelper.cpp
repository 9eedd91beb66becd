// The sample product's self-registering library, as far as a setup program meets it.
#include <windows.h>

#include "product.h"
#include "regvalues.h"

namespace {

constexpr int kPathSize = MAX_PATH + 1;
HINSTANCE gInstance;

const ClassValue kClassValues[] = {
    {"CLSID\\" HELPER_CLASS_ID, HELPER_CLASS_NAME},
    {"CLSID\\" HELPER_CLASS_ID "\\InprocServer32", nullptr},
};

}  // namespace

BOOL WINAPI DllMain(HINSTANCE instance, DWORD, LPVOID) {
  gInstance = instance;
  return TRUE;
}

extern "C" {

__declspec(dllexport) HRESULT WINAPI DllRegisterServer() {
  char path[kPathSize] = "";
  const DWORD length = GetModuleFileNameA(gInstance, path, kPathSize);
  if (length == 0 || length >= kPathSize) return E_FAIL;
  return WriteClassValues(kClassValues, ARRAYSIZE(kClassValues), path) ? S_OK : E_FAIL;
}

__declspec(dllexport) HRESULT WINAPI DllUnregisterServer() {
  return DeleteClassKey("CLSID\\" HELPER_CLASS_ID) ? S_OK : E_FAIL;
}
}
