#include "installer/officedlg.h"

#include <windows.h>

#include "base/runstate.h"
#include "installer/checks.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "resources/ids.h"
#include "ui/dlog.h"

namespace {

constexpr DWORD kRetryDelay = 200;  // ms

INT_PTR CALLBACK OfficeProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      FillWindowTexts(dialog, AppVars(), true);
      CentreWindow(dialog);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
      EndDialog(dialog, LOWORD(wParam));
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

bool WaitForOfficeToClose() {
  while (IsOfficeOpen()) {
    if (Run().IsQuiet()) {
      LogError("Word or PowerPoint is running.");
      return false;
    }
    if (RunDialog(IDD_OFFICE, MainWindow(), OfficeProc, 0) != IDOK) return false;
    PumpFor(kRetryDelay);
  }
  return true;
}
