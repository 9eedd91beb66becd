#include "script/dllregister.h"

#include <windows.h>

#include "base/com.h"
#include "base/errormode.h"
#include "base/handle.h"
#include "platform/fspath.h"

bool CallDllRegistration(const char* path, bool install) {
  if (!FSPath(path).IsFullPath()) return false;  // a bare name would be searched for
  // Registration functions may use COM.
  const ComScope com;
  const CriticalErrorGuard guard;
  const ModuleHandle library(LoadLibraryExA(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
  if (!library) return false;
  using RegisterFn = HRESULT(WINAPI*)();
  const FARPROC address =
      GetProcAddress(library.Get(), install ? "DllRegisterServer" : "DllUnregisterServer");
  if (address == nullptr) return false;
  return SUCCEEDED(reinterpret_cast<RegisterFn>(reinterpret_cast<void*>(address))());
}
