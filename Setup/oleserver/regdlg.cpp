#include "oleserver/regdlg.h"

#include "base/assert.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/varlist.h"
#include "oleserver/regmgr.h"
#include "platform/fs.h"
#include "resources/ids.h"
#include "ui/dlog.h"
#include "ui/err.h"

namespace {

constexpr unsigned kDiscouragedId = 400;
constexpr unsigned kYesId = 401;
constexpr unsigned kNoId = 402;
constexpr unsigned kNoneId = 403;

Str Text(unsigned id) { return MakeTemplate(id, kTemplateExpand); }

Str TextOrNone(const Str& text) { return text.IsEmpty() ? Text(kNoneId) : text; }

// The manager's state while its dialog is open.
struct Manager {
  ServerList servers;
  bool installedOnly = true;
};

// A list of the dialog with the buttons that act on its selection.
struct ListControls {
  int list;
  int moveButton;
  int detailsButton;
};
constexpr ListControls kConvert = {IDC_OLE_CONVERT_LIST, IDC_OLE_TO_KEEP, IDC_OLE_CONVERT_DETAILS};
constexpr ListControls kKeep = {IDC_OLE_KEEP_LIST, IDC_OLE_TO_CONVERT, IDC_OLE_KEEP_DETAILS};

Manager* ManagerOf(HWND dialog) { return reinterpret_cast<Manager*>(GetWindowLongPtrA(dialog, DWLP_USER)); }

bool IsServerInstalled(const COLEEquationReg& server) {
  const Str path = server.ServerPath();
  return !path.IsEmpty() && FS::IsFile(path);
}

int SelectedIndex(HWND dialog, int list) {
  return static_cast<int>(SendDlgItemMessageA(dialog, list, LB_GETCURSEL, 0, 0));
}

const COLEEquationReg* SelectedServer(HWND dialog, int list) {
  const int index = SelectedIndex(dialog, list);
  if (index == LB_ERR) return nullptr;
  const LRESULT data = SendDlgItemMessageA(dialog, list, LB_GETITEMDATA, static_cast<WPARAM>(index), 0);
  if (!VT_ASSERT(data != 0 && data != LB_ERR, "Can't get COLEEquationReg obj from the list's selection."))
    return nullptr;
  return reinterpret_cast<const COLEEquationReg*>(data);
}

bool IsListed(HWND dialog, int list, const COLEEquationReg& server) {
  const Str name = server.DisplayName();
  return SendDlgItemMessageA(dialog, list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                             reinterpret_cast<LPARAM>(name.Chars())) != LB_ERR;
}

void AddServer(HWND dialog, int list, const COLEEquationReg& server) {
  const Str name = server.DisplayName();
  const LPARAM text = reinterpret_cast<LPARAM>(name.Chars());
  const LRESULT index = SendDlgItemMessageA(dialog, list, LB_ADDSTRING, 0, text);
  if (index >= 0)
    SendDlgItemMessageA(dialog, list, LB_SETITEMDATA, static_cast<WPARAM>(index),
                        reinterpret_cast<LPARAM>(&server));
}

void UpdateButtons(HWND dialog, const ListControls& controls) {
  const LRESULT count = SendDlgItemMessageA(dialog, controls.list, LB_GETCOUNT, 0, 0);
  if (count > 0 && SelectedIndex(dialog, controls.list) == LB_ERR)
    SendDlgItemMessageA(dialog, controls.list, LB_SETCURSEL, 0, 0);
  const BOOL enable = SelectedIndex(dialog, controls.list) != LB_ERR;
  for (const int id : {controls.moveButton, controls.detailsButton}) {
    const HWND button = GetDlgItem(dialog, id);
    if (!enable && GetFocus() == button)
      SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, IDOK)), TRUE);
    EnableWindow(button, enable);
  }
}

void UpdateAllButtons(HWND dialog) {
  UpdateButtons(dialog, kConvert);
  UpdateButtons(dialog, kKeep);
}

void FillLists(HWND dialog) {
  const Manager* manager = ManagerOf(dialog);
  for (const int list : {kConvert.list, kKeep.list}) SendDlgItemMessageA(dialog, list, LB_RESETCONTENT, 0, 0);
  for (const auto& server : manager->servers) {
    if (manager->installedOnly && !IsServerInstalled(*server)) continue;
    const int list = server->ConvertsToUs() ? kConvert.list : kKeep.list;
    if (!IsListed(dialog, list, *server)) AddServer(dialog, list, *server);
  }
  UpdateAllButtons(dialog);
}

bool ConfirmDiscouraged(const COLEEquationReg& server) {
  return AskYesNo(Message(kDiscouragedId).With("ReplaceObjectName", server.DisplayName())) == kAnswerYes;
}

void MoveSelected(HWND dialog, const ListControls& from, const ListControls& to) {
  const COLEEquationReg* server = SelectedServer(dialog, from.list);
  if (!server) return;
  const bool convert = to.list == kConvert.list;
  if (convert && !server->MayTakeOver() && !ConfirmDiscouraged(*server)) return;
  SendDlgItemMessageA(dialog, from.list, LB_DELETESTRING,
                      static_cast<WPARAM>(SelectedIndex(dialog, from.list)), 0);
  AddServer(dialog, to.list, *server);
  server->SetAutoConvert(convert);
  UpdateAllButtons(dialog);
}

void ChooseInstalledOnly(HWND dialog, bool installedOnly) {
  Manager* manager = ManagerOf(dialog);
  if (manager->installedOnly == installedOnly) return;
  manager->installedOnly = installedOnly;
  FillLists(dialog);
}

INT_PTR CALLBACK DetailsProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_INITDIALOG) {
    FillWindowTexts(dialog, AppVars(), true);
    CentreWindow(dialog);
    return TRUE;
  }
  if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
    EndDialog(dialog, LOWORD(wParam));
    return TRUE;
  }
  return FALSE;
}

void ShowDetails(HWND owner, const COLEEquationReg& server) {
  Str target;
  const Str targetName = server.GetAutoConvert(target) ? COLEEquationReg(target).DisplayName() : Str();
  AppSetVariable("LongName", server.DisplayName());
  AppSetVariable("CLSID", server.ClassId());
  AppSetVariable("ProgID", TextOrNone(server.ProgId()));
  AppSetVariable("ServerPath", server.ServerPath());
  AppSetVariable("ServerExists", Text(IsServerInstalled(server) ? kYesId : kNoId));
  AppSetVariable("AutoConvertName", TextOrNone(targetName));
  RunDialog(IDD_OLEDETAILS, owner, DetailsProc, 0);
}

void ShowSelectedDetails(HWND dialog, const ListControls& controls) {
  if (const COLEEquationReg* server = SelectedServer(dialog, controls.list)) ShowDetails(dialog, *server);
}

void Open(HWND dialog, LPARAM param) {
  SetWindowLongPtrA(dialog, DWLP_USER, param);
  AppSetVariable("PrimaryClassName", COLEEquationReg(OwnClassId()).UserTypeName());
  FillWindowTexts(dialog, AppVars(), true);
  CheckRadioButton(dialog, IDC_OLE_INSTALLED_ONLY, IDC_OLE_ALL, IDC_OLE_INSTALLED_ONLY);
  FillLists(dialog);
  CentreWindow(dialog);
}

bool Command(HWND dialog, int id) {
  switch (id) {
    case IDOK:
    case IDCANCEL:
      EndDialog(dialog, id);
      return true;
    case IDC_OLE_CONVERT_LIST:
    case IDC_OLE_KEEP_LIST:
      UpdateAllButtons(dialog);
      return true;
    case IDC_OLE_TO_KEEP:
      MoveSelected(dialog, kConvert, kKeep);
      return true;
    case IDC_OLE_TO_CONVERT:
      MoveSelected(dialog, kKeep, kConvert);
      return true;
    case IDC_OLE_CONVERT_DETAILS:
      ShowSelectedDetails(dialog, kConvert);
      return true;
    case IDC_OLE_KEEP_DETAILS:
      ShowSelectedDetails(dialog, kKeep);
      return true;
    case IDC_OLE_PRODUCT_DETAILS:
      ShowDetails(dialog, COLEEquationReg(OwnClassId()));
      return true;
    case IDC_OLE_INSTALLED_ONLY:
      ChooseInstalledOnly(dialog, true);
      return true;
    case IDC_OLE_ALL:
      ChooseInstalledOnly(dialog, false);
      return true;
    default:
      return false;
  }
}

INT_PTR CALLBACK ManagerProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      Open(dialog, lParam);
      return TRUE;
    case WM_COMMAND:
      return Command(dialog, LOWORD(wParam)) ? TRUE : FALSE;
    default:
      return FALSE;
  }
}

}  // namespace

void RunConversionManager(HWND owner) {
  if (Run().IsQuiet()) return;
  Manager manager;
  manager.servers = ListEquationServers(ServerChoice::kAll);
  RunDialog(IDD_OLEMGR, owner, ManagerProc, reinterpret_cast<LPARAM>(&manager));
}
