#include "installer/installw.h"

#include "base/assert.h"
#include "base/handle.h"
#include "messages/varlist.h"
#include "resources/ids.h"
#include "ui/dlog.h"

namespace {

constexpr char kClassName[] = "VT6InstallWin";
constexpr LONG kTextHeight = 48;  // pixels
constexpr int kTextMargin = 32;   // pixels from the window's left and top edge

WindowHandle& MainWin() {
  static WindowHandle window;
  return window;
}

FontHandle CreateTitleFont() {
  LOGFONTA font = {};
  font.lfHeight = -kTextHeight;
  font.lfWeight = FW_BOLD;
  font.lfItalic = TRUE;
  font.lfCharSet = DEFAULT_CHARSET;
  lstrcpynA(font.lfFaceName, "Times New Roman", LF_FACESIZE);
  return FontHandle(CreateFontIndirectA(&font));
}

void PaintTitle(HDC dc, const RECT& client) {
  const Str text = AppGetExpanded("BackgroundText");
  const FontHandle font = CreateTitleFont();
  const HGDIOBJ formerFont =
      SelectObject(dc, font ? static_cast<HGDIOBJ>(font.Get()) : GetStockObject(SYSTEM_FONT));
  SetTextColor(dc, GetSysColor(COLOR_CAPTIONTEXT));
  SetBkMode(dc, TRANSPARENT);
  RECT area = client;
  area.left += kTextMargin;
  area.top += kTextMargin;
  DrawTextA(dc, text, text.Length(), &area, DT_LEFT | DT_TOP | DT_WORDBREAK | DT_NOPREFIX);
  SelectObject(dc, formerFont);
}

LRESULT CALLBACK BackgroundProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // The window goes when the run has ended: closed before, it would take the dialogs that it owns along.
  if (message == WM_CLOSE) return 0;
  if (message != WM_PAINT) return DefWindowProcA(window, message, wParam, lParam);
  PAINTSTRUCT paint;
  const HDC dc = BeginPaint(window, &paint);
  if (dc != nullptr) {
    RECT client;
    GetClientRect(window, &client);
    PaintTitle(dc, client);
  }
  EndPaint(window, &paint);
  return 0;
}

bool RegisterBackgroundClass(HINSTANCE instance) {
  WNDCLASSA description = {};
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = BackgroundProc;
  description.hInstance = instance;
  description.hIcon = LoadIconA(instance, MAKEINTRESOURCEA(IDI_SETUP));
  description.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));  // the standard arrow
  // Drawn in the colours of a title bar, which the user's colour scheme keeps readable.
  description.hbrBackground = GetSysColorBrush(COLOR_ACTIVECAPTION);
  description.lpszClassName = kClassName;
  return RegisterClassA(&description) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

}  // namespace

bool CreateBackgroundWindow(HINSTANCE instance) {
  if (!RegisterBackgroundClass(instance)) return false;
  MainWin().Reset(CreateWindowExA(
      0, kClassName, AppGetExpanded("SetupName"), WS_OVERLAPPEDWINDOW | WS_DISABLED | WS_MAXIMIZE,
      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, instance, nullptr));
  SetMainWindow(MainWin().Get());
  return static_cast<bool>(MainWin());
}

void ShowBackgroundWindow() {
  if (!MainWin()) return;
  ShowWindow(MainWin().Get(), SW_SHOWMAXIMIZED);
  UpdateWindow(MainWin().Get());
}

void DestroyBackgroundWindow() {
  SetMainWindow(nullptr);
  if (!VT_ASSERT(MainWin(), "Cannot destroy the MainWin window!")) return;
  VT_ASSERT(DestroyWindow(MainWin().Release()) != FALSE, "DestroyWindow(MainWin)");
}
