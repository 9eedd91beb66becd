#include "ui/progmetr.h"

#include <string_view>

#include "base/assert.h"
#include "base/handle.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "resources/ids.h"
#include "stores/ini.h"
#include "stores/regkey.h"
#include "ui/dlog.h"

namespace {

constexpr int32_t kCleared = -1;

struct ProgressState {
  WindowHandle window;
  int32_t percent = kCleared;
};

ProgressState& State() {
  static ProgressState state;
  return state;
}

// While installing only, as a value of the key that MachRegKey names. A store that is a file, or a bare root,
// takes none. The key is looked for each time: the script may delete it or name another one in between. A
// failure is of no interest: whoever follows the progress sees none.
void Report(const char* name, const char* text) {
  if (!Run().install) return;
  HKEY root = nullptr;
  Str subKey;
  const Str path = AppGetExpanded("MachRegKey");
  if (path.IsEmpty() || !IniParsePath(path, root, subKey) || !root || subKey.IsEmpty()) return;
  RegKey key;
  if (key.Create(root, subKey, KEY_SET_VALUE) != ERROR_SUCCESS) return;
  const DWORD size = static_cast<DWORD>(Str::Length(text)) + 1;
  RegSetValueExA(key.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size);
}

void RedrawMeter() {
  const HWND window = State().window.Get();
  if (!window) return;
  const HWND meter = GetDlgItem(window, IDD_PROGMETER_GRAPH);
  if (meter) RedrawWindow(meter, nullptr, nullptr, RDW_INVALIDATE | RDW_NOERASE | RDW_UPDATENOW);
}

void DrawRequested(WPARAM wParam, const DRAWITEMSTRUCT& request) {
  if (VT_ASSERT(wParam == IDD_PROGMETER_GRAPH, "wParam == IDD_PROGMETER_GRAPH"))
    DrawMeter(request.hDC, request.rcItem, State().percent);
}

INT_PTR CALLBACK ProgressProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      FillWindowTexts(dialog, AppVars(), true);
      CentreWindow(dialog);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) != IDCANCEL && LOWORD(wParam) != IDC_PROGRESS_STOP) return FALSE;
      Run().abort = true;
      return TRUE;
    case WM_CLOSE:  // the run closes the window itself when it has come to its end
      Run().abort = true;
      return TRUE;
    case WM_DRAWITEM:
      DrawRequested(wParam, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    case WM_DESTROY:  // also when the background window goes first and takes this one with it
      SetModelessDialog(nullptr);
      State().window.Release();
      return FALSE;
    default:
      return FALSE;
  }
}

// Fills `part` with the system colour `back` and draws what lies in it of the text at `x`, `y`.
void DrawPart(HDC dc, const RECT& part, int back, int front, POINT at, std::string_view text) {
  if (part.right <= part.left) return;
  SetBkColor(dc, GetSysColor(back));
  SetTextColor(dc, GetSysColor(front));
  ExtTextOutA(dc, at.x, at.y, ETO_OPAQUE | ETO_CLIPPED, &part, text.data(), static_cast<UINT>(text.size()),
              nullptr);
}

// Width of the filled part, cut off at 0, to stay inside the frame for every percentage.
LONG FilledWidth(LONG innerWidth, int32_t percent) {
  const int64_t width = static_cast<int64_t>(innerWidth) * percent / 100;
  if (width < 0) return 0;
  return width > innerWidth ? innerWidth : static_cast<LONG>(width);
}

}  // namespace

void ShowProgressWindow() {
  ProgressState& state = State();
  if (state.window || Run().IsQuiet() || AppGetBool("no_progress")) return;
  state.percent = kCleared;
  state.window.Reset(CreateModelessDialog(IDD_PROGRESS, MainWindow(), ProgressProc, 0));
  if (!state.window) return;
  SetModelessDialog(state.window.Get());
  ShowWindow(state.window.Get(), SW_SHOWNORMAL);
  RedrawWindow(state.window.Get(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void CloseProgressWindow() {
  // Taken out first: the window's own WM_DESTROY lets go of the member too.
  WindowHandle window(State().window.Release());
}

bool IsProgressWindowShown() { return static_cast<bool>(State().window); }

void SetProgressText(const char* text) {
  if (!text) return;
  const HWND window = State().window.Get();
  if (window) {
    SetDlgItemTextA(window, IDC_PROGRESS_TEXT, text);
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    RedrawMeter();
  }
  LogLine(text);
  Report("SetupMsg", text);
}

void SetPercentage(int32_t percent) {
  if (AppGetExpanded("no_prog_meter") == "1") return;
  State().percent = percent;
  if (percent >= 0) Report("SetupPercent", Message("<Percent:d>", kTemplateLiteral).With("Percent", percent));
  RedrawMeter();
}

void ClearMeter() {
  State().percent = kCleared;
  RedrawMeter();
}

void DrawMeter(HDC dc, const RECT& rect, int32_t percent) {
  RECT inner = rect;
  InflateRect(&inner, -1, -1);
  if (percent < 0) FillRect(dc, &inner, GetSysColorBrush(COLOR_BTNFACE));
  FrameRect(dc, &rect, GetSysColorBrush(COLOR_WINDOWFRAME));
  if (percent == kCleared) return;

  Str text;
  text.Format("%i%%", percent);
  SIZE size = {};
  GetTextExtentPoint32A(dc, text, text.Length(), &size);
  const POINT at = {(rect.left + rect.right - size.cx) / 2, (rect.top + rect.bottom - size.cy) / 2};

  const int saved = SaveDC(dc);
  SetTextAlign(dc, TA_LEFT | TA_TOP | TA_NOUPDATECP);
  const LONG edge = inner.left + FilledWidth(inner.right - inner.left, percent);
  const RECT filled = {inner.left, inner.top, edge, inner.bottom};
  const RECT rest = {edge, inner.top, inner.right, inner.bottom};
  DrawPart(dc, filled, COLOR_ACTIVECAPTION, COLOR_CAPTIONTEXT, at, text.View());
  DrawPart(dc, rest, COLOR_MENU, COLOR_MENUTEXT, at, text.View());
  RestoreDC(dc, saved);
}
