#include "ui/cnewfold.h"

#include "messages/format.h"
#include "platform/fs.h"
#include "platform/fspath.h"
#include "resources/ids.h"
#include "ui/dlog.h"
#include "ui/err.h"

namespace {

constexpr unsigned kCannotCreateFolder = 299;

// The typed name as a full path, created; false (after telling the user) when that failed.
bool CreateTyped(HWND dialog, Str& created) {
  Str name = GetControlText(dialog, IDC_NEWFOLDER_NAME);
  name.Trim();
  if (name.IsEmpty()) return false;
  FSPath path(name);
  if (!path.MakeFull() || !FS::CreateDir(path)) {
    ShowError(Message(kCannotCreateFolder).With("FolderName", path));
    return false;
  }
  created = path.Path();
  return true;
}

void Retry(HWND dialog) {
  const HWND field = GetDlgItem(dialog, IDC_NEWFOLDER_NAME);
  SendMessageA(field, EM_SETSEL, 0, -1);
  SetFocus(field);
}

INT_PTR CALLBACK NewFolderProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      SetWindowLongPtrA(dialog, DWLP_USER, lParam);
      FillWindowTexts(dialog, AppVars(), true);
      SendDlgItemMessageA(dialog, IDC_NEWFOLDER_NAME, EM_LIMITTEXT, FS::kMaxPathNameLen - 1, 0);
      CentreWindow(dialog);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDCANCEL) {
        EndDialog(dialog, IDCANCEL);
        return TRUE;
      }
      if (LOWORD(wParam) != IDOK) return FALSE;
      if (CreateTyped(dialog, *reinterpret_cast<Str*>(GetWindowLongPtrA(dialog, DWLP_USER))))
        EndDialog(dialog, IDOK);
      else
        Retry(dialog);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

bool AskNewFolder(HWND owner, Str& created) {
  return RunDialog(IDD_NEWFOLDER, owner, NewFolderProc, reinterpret_cast<LPARAM>(&created)) == IDOK;
}
