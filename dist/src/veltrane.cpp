// The sample product's editor, as far as a setup program meets it: it registers itself as an OLE server,
// opens a window whose class name begins with "MainVTWin", and leaves when it is asked to and is not busy.
//
//   Veltrane.exe [FILE]     opens the window
//   Veltrane.exe -install   registers the equation server, without a window; exit code 1 on failure
//   Veltrane.exe -remove    unregisters it
//   Veltrane.exe -busy      opens a window that refuses to quit, as with unsaved work
#include <windows.h>

#include "product.h"
#include "regvalues.h"

namespace {

constexpr char kWindowClass[] = "MainVTWin6";
constexpr char kTitle[] = "Veltrane";
constexpr LRESULT kQuitting = 100;  // the answer of a copy that is about to end
constexpr LRESULT kBusy = 1;
constexpr int kPathSize = MAX_PATH + 1;

UINT gQuitMessage;
bool gBusy;

const ClassValue kClassValues[] = {
    {PRODUCT_PROG_ID, PRODUCT_CLASS_NAME},
    {PRODUCT_PROG_ID "\\CLSID", PRODUCT_CLASS_ID},
    {PRODUCT_PROG_ID "\\Insertable", ""},
    {PRODUCT_PROG_ID "\\protocol\\StdFileEditing\\server", nullptr},
    {PRODUCT_PROG_ID "\\protocol\\StdFileEditing\\verb\\0", "Edit"},
    {"CLSID\\" PRODUCT_CLASS_ID, PRODUCT_CLASS_NAME},
    {"CLSID\\" PRODUCT_CLASS_ID "\\AuxUserType\\2", "Equation"},
    {"CLSID\\" PRODUCT_CLASS_ID "\\AuxUserType\\3", kTitle},
    {"CLSID\\" PRODUCT_CLASS_ID "\\Insertable", ""},
    {"CLSID\\" PRODUCT_CLASS_ID "\\LocalServer32", nullptr},
    {"CLSID\\" PRODUCT_CLASS_ID "\\ProgID", PRODUCT_PROG_ID},
    {"CLSID\\" PRODUCT_CLASS_ID "\\Verb\\0", "Edit,0,2"},
};

// Paths may hold blanks, and both keys hold command lines.
bool OwnCommand(char (&command)[kPathSize + 2]) {
  const DWORD length = GetModuleFileNameA(nullptr, command + 1, kPathSize);
  if (length == 0 || length >= kPathSize) return false;
  command[0] = command[length + 1] = '"';
  command[length + 2] = '\0';
  return true;
}

bool RegisterServer() {
  char command[kPathSize + 2] = "";
  return OwnCommand(command) && WriteClassValues(kClassValues, ARRAYSIZE(kClassValues), command);
}

bool UnregisterServer() {
  const bool progId = DeleteClassKey(PRODUCT_PROG_ID);
  return DeleteClassKey("CLSID\\" PRODUCT_CLASS_ID) && progId;
}

// What a user would miss after a removal: the removal options are about such values.
void SavePreferences() {
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, PREFERENCES_KEY "\\View", 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                      nullptr) != ERROR_SUCCESS)
    return;
  static const char kZoom[] = "200";
  RegSetValueExA(key, "Zoom", 0, REG_SZ, reinterpret_cast<const BYTE*>(kZoom), sizeof kZoom);
  RegCloseKey(key);
}

// A fraction and a root, in lines and letters.
void PaintEquation(HDC dc, const RECT& area) {
  const int x = area.right / 2, y = area.bottom / 2;
  SetTextAlign(dc, TA_CENTER | TA_BASELINE);
  TextOutA(dc, x, y - 8, "a + b", 5);
  TextOutA(dc, x, y + 20, "c", 1);
  MoveToEx(dc, x - 24, y, nullptr);
  LineTo(dc, x + 24, y);
}

LRESULT CALLBACK MainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == gQuitMessage && gQuitMessage != 0) {
    if (gBusy) return kBusy;
    // Posted: the sender waits for the answer, not for the end.
    PostMessageA(window, WM_CLOSE, 0, 0);
    return kQuitting;
  }
  switch (message) {
    case WM_PAINT: {
      PAINTSTRUCT paint;
      RECT area;
      HDC dc = BeginPaint(window, &paint);
      GetClientRect(window, &area);
      PaintEquation(dc, area);
      EndPaint(window, &paint);
      return 0;
    }
    case WM_CLOSE:
      SavePreferences();
      DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

HWND OpenMainWindow(HINSTANCE instance) {
  WNDCLASSA windowClass = {};
  windowClass.lpfnWndProc = MainProc;
  windowClass.hInstance = instance;
  windowClass.hIcon = LoadIconA(instance, MAKEINTRESOURCEA(1));
  windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
  windowClass.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
  windowClass.lpszClassName = kWindowClass;
  if (RegisterClassA(&windowClass) == 0) return nullptr;
  return CreateWindowExA(0, kWindowClass, kTitle, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, 400, 240,
                         nullptr, nullptr, instance, nullptr);
}

int RunEditor(HINSTANCE instance, int show) {
  gQuitMessage = RegisterWindowMessageA("WM_QLI_QuitIfNotBusy");
  const HWND window = OpenMainWindow(instance);
  if (window == nullptr) return 1;
  ShowWindow(window, show);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return 0;
}

bool IsSwitch(const char* commandLine, const char* name) { return lstrcmpiA(commandLine, name) == 0; }

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int show) {
  while (*commandLine == ' ') ++commandLine;
  if (IsSwitch(commandLine, "-install")) return RegisterServer() ? 0 : 1;
  if (IsSwitch(commandLine, "-remove")) return UnregisterServer() ? 0 : 1;
  gBusy = IsSwitch(commandLine, "-busy");
  return RunEditor(instance, show);
}
