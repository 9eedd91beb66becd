// The entry of Setup.exe.
#include <windows.h>

#include "base/hooks.h"
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

// The last steps of a run that is broken off. Running out of memory once more in here ends it at once.
[[noreturn]] void BreakOff(bool outOfMemory) {
  static bool gEnding = false;
  if (!gEnding) {
    gEnding = true;
    if (outOfMemory) {
      FreeReserve();  // room for the message
      ShowOutOfMemory();
    }
    App::CleanUp();
  }
  ExitProcess(kExitCannotStart);
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  DropCurrentFolderFromSearch();
  HookTable hooks = Hooks();
  hooks.memoryExhausted = [](uint32_t) { BreakOff(true); };
  hooks.fatalError = [] { BreakOff(false); };
  SetHooks(hooks);
  return App::Main(instance, GetCommandLineA());
}
