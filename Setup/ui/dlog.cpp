#include "ui/dlog.h"

#include "base/runstate.h"
#include "messages/res.h"

namespace {

struct DialogState {
  HWND mainWindow = nullptr;
  HWND modeless = nullptr;
};

DialogState& State() {
  static DialogState state;
  return state;
}

void FillOneText(HWND window, const VarList& vars) {
  Str text = WindowText(window);
  // Texts without placeholders are left alone: setting an edit field again would move its caret and notify.
  if (!text.IsEmpty() && vars.Expand(text) > 0) SetWindowTextA(window, text);
}

BOOL CALLBACK FillChild(HWND child, LPARAM param) {
  FillOneText(child, *reinterpret_cast<const VarList*>(param));
  return TRUE;
}

RECT WorkArea() {
  RECT area;
  if (!SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0))
    area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  return area;
}

void CentreOn(HWND window, const RECT& area) {
  RECT own;
  if (!GetWindowRect(window, &own)) return;
  const int width = own.right - own.left;
  const int height = own.bottom - own.top;
  const int x = area.left + (area.right - area.left - width) / 2;
  const int y = area.top + (area.bottom - area.top - height) / 2;
  MoveWindow(window, x, y, width, height, FALSE);
}

// WM_QUIT is taken out while messages are pumped (left in the queue it would end every wait at once) and put
// back when the pump is left.
class QuitKeeper {
 public:
  QuitKeeper() = default;
  QuitKeeper(const QuitKeeper&) = delete;
  QuitKeeper& operator=(const QuitKeeper&) = delete;
  ~QuitKeeper() {
    if (mSeen) PostQuitMessage(mCode);
  }
  // Dispatches one waiting message; false when there was none.
  bool DispatchOne() {
    MSG msg;
    if (!PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) return false;
    if (msg.message == WM_QUIT) {
      mSeen = true;
      mCode = static_cast<int>(msg.wParam);
      return true;
    }
    const HWND modeless = State().modeless;
    if (modeless && IsDialogMessageA(modeless, &msg)) return true;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
    return true;
  }

 private:
  bool mSeen = false;
  int mCode = 0;
};

// Messages dispatched before a pump looks at its clock or handle again.
constexpr int kPumpBatch = 100;

void DispatchBatch(QuitKeeper& queue) {
  for (int i = 0; i < kPumpBatch && queue.DispatchOne(); ++i) {
  }
}

}  // namespace

void SetMainWindow(HWND window) { State().mainWindow = window; }

HWND MainWindow() { return State().mainWindow; }

void FillWindowTexts(HWND window, const VarList& vars, bool withChildren) {
  FillOneText(window, vars);
  if (withChildren) EnumChildWindows(window, FillChild, reinterpret_cast<LPARAM>(&vars));
}

void CentreWindow(HWND window) {
  const HWND owner = GetWindow(window, GW_OWNER);
  RECT area;
  // A minimised owner lies outside the screen and would take the window with it.
  if (!owner || IsIconic(owner) || !GetWindowRect(owner, &area)) area = WorkArea();
  CentreOn(window, area);
}

void CentreOnScreen(HWND window) { CentreOn(window, WorkArea()); }

HGLOBAL LoadDialogTemplate(unsigned id) {
  HMODULE module = ModuleForResource(id);
  HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(id), reinterpret_cast<LPCSTR>(RT_DIALOG));
  if (!found) {
    module = GetProgramModule();
    found = FindResourceA(module, MAKEINTRESOURCEA(id), reinterpret_cast<LPCSTR>(RT_DIALOG));
  }
  return found ? LoadResource(module, found) : nullptr;
}

// The template is handed over as memory: the library is open as data only and is no instance
// a window could belong to.
INT_PTR RunDialog(unsigned id, HWND owner, DLGPROC proc, LPARAM param) {
  if (Run().IsQuiet()) return -1;
  const HGLOBAL loaded = LoadDialogTemplate(id);
  if (!loaded) return -1;
  return DialogBoxIndirectParamA(GetModuleHandleA(nullptr),
                                 static_cast<LPCDLGTEMPLATEA>(LockResource(loaded)), owner, proc, param);
}

HWND CreateModelessDialog(unsigned id, HWND owner, DLGPROC proc, LPARAM param) {
  if (Run().IsQuiet()) return nullptr;
  const HGLOBAL loaded = LoadDialogTemplate(id);
  if (!loaded) return nullptr;
  return CreateDialogIndirectParamA(GetModuleHandleA(nullptr),
                                    static_cast<LPCDLGTEMPLATEA>(LockResource(loaded)), owner, proc, param);
}

Str WindowText(HWND window) {
  Str text;
  const int length = GetWindowTextLengthA(window);
  if (length <= 0) return text;
  GetWindowTextA(window, text.Lock(length + 1), length + 1);
  text.Unlock();
  return text;
}

Str GetControlText(HWND dialog, int id) {
  const HWND control = GetDlgItem(dialog, id);
  return control ? WindowText(control) : Str();
}

void SetModelessDialog(HWND dialog) { State().modeless = dialog; }

void PumpMessages() {
  QuitKeeper queue;
  while (queue.DispatchOne()) {
  }
}

void PumpFor(DWORD milliseconds) {
  QuitKeeper queue;
  const DWORD start = GetTickCount();
  for (;;) {
    DispatchBatch(queue);
    const DWORD passed = GetTickCount() - start;
    if (passed >= milliseconds) return;
    MsgWaitForMultipleObjectsEx(0, nullptr, milliseconds - passed, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  }
}

void PumpUntilSignalled(HANDLE handle) {
  QuitKeeper queue;
  for (;;) {
    const DWORD woken = MsgWaitForMultipleObjectsEx(1, &handle, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    if (woken != WAIT_OBJECT_0 + 1) return;
    DispatchBatch(queue);
  }
}
