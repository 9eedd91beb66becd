#include "script/dllregister.h"

#include <windows.h>

#include <objbase.h>

#include "base/handle.h"
#include "platform/errormode.h"
#include "platform/fspath.h"

namespace {

// Registration functions may use COM; the thread's other users keep theirs.
class ComScope {
 public:
  ComScope() : mResult(CoInitialize(nullptr)) {}
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;
  ~ComScope() {
    if (SUCCEEDED(mResult)) CoUninitialize();
  }

 private:
  HRESULT mResult;
};

}  // namespace

bool CallDllRegistration(const char* path, bool install) {
  if (!FSPath(path).IsFullPath()) return false;  // a bare name would be searched for
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
