#include "ui/browse.h"

#include <commdlg.h>
#include <dlgs.h>

#include "base/handle.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "platform/fs.h"
#include "platform/fspath.h"
#include "resources/ids.h"
#include "ui/cnewfold.h"
#include "ui/dlog.h"
#include "ui/help.h"

namespace {

// The open-file dialog wants a file name before it accepts OK; this one stands in for it and is never used.
constexpr char kPlaceholder[] = "Junk";

// A placeholder under which no folder lies in the current folder: the dialog would
// enter such a folder, not end.
Str FreePlaceholder() {
  Str name = kPlaceholder;
  Str dir;
  if (!FS::GetCurDir(dir)) return name;
  while (FS::IsDir(JoinPath(dir, name)) && dir.Length() + name.Length() < FS::kMaxPathNameLen) name += '_';
  return name;
}

// What the hook knows of the one dialog that can be open.
struct BrowseState {
  bool entering = false;   // the dialog is made to enter a folder: the hook lets that OK pass
  bool cancelled = false;  // by the user
};

BrowseState& State() {
  static BrowseState state;
  return state;
}

// Makes the dialog enter a folder, as if its path had been typed and OK pressed.
void EnterFolder(HWND dialog, const Str& folder) {
  SetDlgItemTextA(dialog, edt1, folder);
  State().entering = true;
  SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, IDOK)));
  State().entering = false;
  SetDlgItemTextA(dialog, edt1, kPlaceholder);
}

// TRUE keeps the command from the open-file dialog.
UINT_PTR OnCommand(HWND dialog, int id) {
  switch (id) {
    case IDOK:
      // Entering a folder replaces the hidden name by a search pattern.
      if (!State().entering) SetDlgItemTextA(dialog, edt1, FreePlaceholder());
      return FALSE;
    case IDCANCEL:
      State().cancelled = true;
      return FALSE;
    case IDC_BROWSE_CREATE: {
      Str created;
      if (AskNewFolder(dialog, created)) EnterFolder(dialog, created);
      return TRUE;
    }
    case pshHelp:
      ShowHelp(dialog, IDD_BROWSE);
      return TRUE;
    default:
      return FALSE;
  }
}

UINT_PTR CALLBACK BrowseHook(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      FillWindowTexts(dialog, AppVars(), true);
      CentreWindow(dialog);
      return TRUE;
    case WM_COMMAND:
      return OnCommand(dialog, LOWORD(wParam));
    default:
      return FALSE;
  }
}

// The folder itself, or the nearest one above it that exists; empty when there is none.
Str ExistingFolder(const Str& folder) {
  FSPath path(folder);
  if (!path.IsEmpty() && !path.MakeFull()) return Str();
  while (!path.IsEmpty() && !FS::IsDir(path)) {
    const Str parent = path.Parent();
    if (parent.Length() >= path.Length()) return Str();
    path = parent;
  }
  return path.Path();
}

INT_PTR CALLBACK KeepAll(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

// The template's own caption: without one handed over the dialog may take a caption of the system's.
Str DialogCaption() {
  const WindowHandle hidden(CreateModelessDialog(IDD_BROWSE, nullptr, KeepAll, 0));
  if (!hidden) return Str();
  FillWindowTexts(hidden.Get(), AppVars(), false);
  return WindowText(hidden.Get());
}

// The dialog makes every folder it enters the current one.
class CurDirKeeper {
 public:
  CurDirKeeper() : mKnown(FS::GetCurDir(mDir)) {}
  CurDirKeeper(const CurDirKeeper&) = delete;
  CurDirKeeper& operator=(const CurDirKeeper&) = delete;
  ~CurDirKeeper() {
    if (mKnown) static_cast<void>(FS::SetCurDir(mDir));  // a folder deleted meanwhile cannot be gone back to
  }

 private:
  Str mDir;
  bool mKnown;
};

}  // namespace

bool BrowseForFolder(HWND owner, Str& folder) {
  if (Run().IsQuiet()) return false;
  const CurDirKeeper keeper;
  const Str start = ExistingFolder(folder);
  char file[FS::kMaxPathNameLen] = "";
  lstrcpynA(file, kPlaceholder, sizeof file);

  const Str caption = DialogCaption();

  OPENFILENAMEA ofn = {};
  ofn.lStructSize = sizeof ofn;
  ofn.hwndOwner = owner;
  ofn.hInstance = static_cast<HINSTANCE>(LoadDialogTemplate(IDD_BROWSE));
  ofn.lpstrFile = file;
  ofn.nMaxFile = sizeof file;
  ofn.lpstrInitialDir = start.IsEmpty() ? nullptr : start.Chars();
  ofn.lpstrTitle = caption.IsEmpty() ? nullptr : caption.Chars();
  ofn.lpfnHook = BrowseHook;
  ofn.Flags =
      OFN_ENABLEHOOK | OFN_ENABLETEMPLATEHANDLE | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_NOTESTFILECREATE;
  if (owner) ofn.Flags |= OFN_SHOWHELP;
  State() = BrowseState();
  if (!GetOpenFileNameA(&ofn)) {
    const DWORD errNum = CommDlgExtendedError();
    // A cancelled dialog may leave the number of an earlier failure.
    if (errNum != 0 && !State().cancelled)
      LogLine(Message("/nBrowse dlg failed: CommDlgExtendedError() = <errNum:d>/n", kTemplateLiteral)
                  .With("errNum", static_cast<int32_t>(errNum)));
    return false;
  }
  folder = FSPath(file).Parent();
  return true;
}
