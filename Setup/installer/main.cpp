// The entry of Setup.exe.
#include <windows.h>

#include <new>

#include "base/mem.h"
#include "base/runstate.h"
#include "installer/app.h"
#include "installer/exitcodes.h"
#include "ui/err.h"

namespace {

// Libraries come from the system folder: the program may be started from a folder that others can write to,
// and Windows would look into the current folder, too. The function is missing before Windows XP.
void DropCurrentFolderFromSearch() {
  const HMODULE kernel = GetModuleHandleA("kernel32.dll");
  if (kernel == nullptr) return;
  const auto setDllDirectory = reinterpret_cast<BOOL(WINAPI*)(LPCSTR)>(
      reinterpret_cast<void*>(GetProcAddress(kernel, "SetDllDirectoryA")));
  if (setDllDirectory != nullptr) setDllDirectory("");
}

// The last steps of a run that was broken off; whatever fails here no longer matters.
int BreakOff(bool outOfMemory) {
  try {
    if (outOfMemory) {
      FreeReserve();  // room for the message
      ShowOutOfMemory();
    }
    App::CleanUp();
  } catch (...) {
  }
  return kExitCannotStart;
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  DropCurrentFolderFromSearch();
  try {
    return App::Main(instance, GetCommandLineA());
  } catch (const FatalStop&) {
    return BreakOff(false);
  } catch (const MemError&) {
    return BreakOff(true);
  } catch (const std::bad_alloc&) {
    return BreakOff(true);
  }
}
