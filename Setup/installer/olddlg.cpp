#include "installer/olddlg.h"

#include <windows.h>

#include "messages/varlist.h"
#include "resources/ids.h"
#include "ui/dlog.h"
#include "ui/help.h"

namespace {

INT_PTR ToResult(OldVersionAnswer answer) { return static_cast<INT_PTR>(answer); }

void OnCommand(HWND dialog, int id) {
  switch (id) {
    case IDOK: {
      const bool replace = IsDlgButtonChecked(dialog, IDC_OLD_REPLACE) == BST_CHECKED;
      EndDialog(dialog, ToResult(replace ? OldVersionAnswer::kReplace : OldVersionAnswer::kKeep));
      break;
    }
    case IDCANCEL:
      EndDialog(dialog, ToResult(OldVersionAnswer::kQuit));
      break;
    case IDC_HELP_BUTTON:
      ShowHelp(dialog, IDD_OLDVERSION);
      break;
    default:
      break;
  }
}

INT_PTR CALLBACK OldVersionProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      FillWindowTexts(dialog, AppVars(), true);
      CheckRadioButton(dialog, IDC_OLD_REPLACE, IDC_OLD_KEEP, IDC_OLD_REPLACE);
      CentreWindow(dialog);
      return TRUE;
    case WM_COMMAND:
      OnCommand(dialog, LOWORD(wParam));
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

OldVersionAnswer AskOldVersion() {
  const INT_PTR result = RunDialog(IDD_OLDVERSION, MainWindow(), OldVersionProc, 0);
  if (result == ToResult(OldVersionAnswer::kReplace)) return OldVersionAnswer::kReplace;
  if (result == ToResult(OldVersionAnswer::kKeep)) return OldVersionAnswer::kKeep;
  return OldVersionAnswer::kQuit;
}
