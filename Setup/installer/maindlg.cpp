#include "installer/maindlg.h"

#include <windows.h>

#include <vector>

#include "base/assert.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "platform/fspath.h"
#include "resources/ids.h"
#include "script/select.h"
#include "ui/browse.h"
#include "ui/dlog.h"
#include "ui/err.h"
#include "ui/help.h"

namespace {

constexpr unsigned kFolderMissingText = 296;
constexpr unsigned kNoFolderInstallText = 297;
constexpr unsigned kNoFolderRemoveText = 298;
constexpr unsigned kFolderNotCreatedText = 299;
constexpr unsigned kAllRemovedText = 362;
constexpr unsigned kWorkstationButtonText = 790;
constexpr unsigned kInstallText = 1;
constexpr unsigned kReinstallText = 2;
constexpr int kMaxOptions = IDC_MAIN_OPTION_LAST - IDC_MAIN_OPTION_FIRST + 1;

struct ModeRow {
  SelectionMode mode;
  unsigned folderLabel;
  bool folderFree;  // the folder may be changed unless it is locked
};

constexpr ModeRow kModes[] = {
    {kModeInstall, 262, true},
    {kModeWorkstation, 263, true},
    {kModeRemove, 261, false},
};

const ModeRow& RowOf(SelectionMode mode) {
  for (const ModeRow& row : kModes)
    if (row.mode == mode) return row;
  VT_FAIL("Unknown mode.");
  return kModes[0];
}

struct MainDialogState {
  SelectionMode mode = kModeInstall;
  std::vector<RemovalOption> options;
};

SelectionMode InitialMode() {
  if (!Run().install) return kModeRemove;
  return Run().IsWorkstation() ? kModeWorkstation : kModeInstall;
}

void SetText(HWND dialog, int id, unsigned textId) { SetDlgItemTextA(dialog, id, GetResStr(textId)); }

void ShowControl(HWND dialog, int id, bool show) {
  const HWND control = GetDlgItem(dialog, id);
  if (control != nullptr) ShowWindow(control, show ? SW_SHOW : SW_HIDE);
}

void EnableControl(HWND dialog, int id, bool enable) {
  const HWND control = GetDlgItem(dialog, id);
  if (control != nullptr) EnableWindow(control, enable);
}

bool AnyOffered(const std::vector<RemovalOption>& options) {
  for (const RemovalOption& option : options)
    if (option.offered) return true;
  return false;
}

// The options with their boxes, or the text that says there is nothing to choose; neither on an installation.
void ShowOptions(HWND dialog, const MainDialogState& state) {
  const bool remove = state.mode == kModeRemove;
  const bool offered = AnyOffered(state.options);
  for (int i = 0; i < kMaxOptions; ++i) {
    const bool exists = static_cast<size_t>(i) < state.options.size();
    ShowControl(dialog, IDC_MAIN_OPTION_FIRST + i, remove && offered && exists);
  }
  ShowControl(dialog, IDC_MAIN_OPTIONS_LABEL, remove);
}

void ApplyMode(HWND dialog, MainDialogState& state, SelectionMode mode) {
  state.mode = mode;
  SetText(dialog, IDC_MAIN_FOLDER_LABEL, FolderLabel(mode));
  EnableControl(dialog, IDC_MAIN_FOLDER, MayChangeFolder(mode));
  EnableControl(dialog, IDC_MAIN_BROWSE, MayChangeFolder(mode));
  ShowControl(dialog, IDC_MAIN_TEXT, mode != kModeRemove);
  ShowControl(dialog, IDC_MAIN_WORKSTATION_NOTE, mode == kModeWorkstation);
  ShowOptions(dialog, state);
}

void FillOptions(HWND dialog, const MainDialogState& state) {
  if (!AnyOffered(state.options)) SetText(dialog, IDC_MAIN_OPTIONS_LABEL, kAllRemovedText);
  int id = IDC_MAIN_OPTION_FIRST;
  for (const RemovalOption& option : state.options) {
    if (id > IDC_MAIN_OPTION_LAST) break;
    SetDlgItemTextA(dialog, id, MakeTemplate(option.text, kTemplateExpand));
    CheckDlgButton(dialog, id, option.offered ? BST_CHECKED : BST_UNCHECKED);
    EnableControl(dialog, id, option.offered);
    ++id;
  }
}

void OnOpen(HWND dialog, MainDialogState& state) {
  FillWindowTexts(dialog, AppVars(), true);
  SetText(dialog, IDC_MAIN_TEXT, InstallText());
  if (Run().IsWorkstation()) SetText(dialog, IDC_MAIN_INSTALL, kWorkstationButtonText);
  state.options = ListRemovalOptions();
  FillOptions(dialog, state);
  SetDlgItemTextA(dialog, IDC_MAIN_FOLDER, AppGetExpanded("ProgDir"));
  SendDlgItemMessageA(dialog, IDC_MAIN_FOLDER, EM_LIMITTEXT, FS::kMaxPathNameLen - 1, 0);
  const SelectionMode mode = InitialMode();
  CheckRadioButton(dialog, IDC_MAIN_INSTALL, IDC_MAIN_REMOVE,
                   mode == kModeRemove ? IDC_MAIN_REMOVE : IDC_MAIN_INSTALL);
  if (!Run().install) EnableControl(dialog, IDC_MAIN_INSTALL, false);
  ApplyMode(dialog, state, mode);
  CentreWindow(dialog);
  // Pressed as soon as the dialog is up, so that the same checks are made as for a user's OK.
  if (AppVariableExists("InstallNoDlg")) PostMessageA(dialog, WM_COMMAND, IDOK, 0);
}

void StoreOptions(HWND dialog, const MainDialogState& state) {
  int id = IDC_MAIN_OPTION_FIRST;
  for (const RemovalOption& option : state.options) {
    if (id > IDC_MAIN_OPTION_LAST) break;
    SetRemovalOption(option, IsDlgButtonChecked(dialog, id) == BST_CHECKED);
    ++id;
  }
}

void OnOK(HWND dialog, const MainDialogState& state) {
  if (state.mode == kModeRemove) StoreOptions(dialog, state);
  if (!AcceptFolder(state.mode, GetControlText(dialog, IDC_MAIN_FOLDER))) {
    SetFocus(GetDlgItem(dialog, MayChangeFolder(state.mode) ? IDC_MAIN_FOLDER : IDCANCEL));
    return;
  }
  if (state.mode == kModeRemove) Run().install = false;
  EndDialog(dialog, IDOK);
}

void OnBrowse(HWND dialog) {
  Str folder = GetControlText(dialog, IDC_MAIN_FOLDER);
  if (BrowseForFolder(dialog, folder)) SetDlgItemTextA(dialog, IDC_MAIN_FOLDER, folder);
}

void OnCommand(HWND dialog, int id, MainDialogState& state) {
  switch (id) {
    case IDOK:
      OnOK(dialog, state);
      break;
    case IDCANCEL:
      EndDialog(dialog, IDCANCEL);
      break;
    case IDC_HELP_BUTTON:
      ShowHelp(dialog, IDD_MAIN);
      break;
    case IDC_MAIN_BROWSE:
      OnBrowse(dialog);
      break;
    case IDC_MAIN_INSTALL:
    case IDC_MAIN_WORKSTATION:
    case IDC_MAIN_REMOVE:
      ApplyMode(dialog, state, ModeOfButton(id, Run().IsWorkstation()));
      break;
    default:
      break;
  }
}

INT_PTR CALLBACK MainProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(dialog, DWLP_USER, lParam);
    OnOpen(dialog, *reinterpret_cast<MainDialogState*>(lParam));
    return TRUE;
  }
  auto* state = reinterpret_cast<MainDialogState*>(GetWindowLongPtrA(dialog, DWLP_USER));
  if (message != WM_COMMAND || state == nullptr) return FALSE;
  OnCommand(dialog, LOWORD(wParam), *state);
  return TRUE;
}

void ReportFolder(unsigned textId, const Str& folder) {
  ShowError(Message(textId).With("FolderName", folder));
}

// The folder as it will be stored; empty, after a message, when it cannot serve in this mode.
Str CheckedFolder(SelectionMode mode, const Str& typed) {
  FSPath folder(typed);
  folder.mPath.Trim();
  if (folder.IsEmpty()) {
    ShowError(Message(mode == kModeRemove ? kNoFolderRemoveText : kNoFolderInstallText));
    return Str();
  }
  const bool full = folder.MakeFull();
  if (mode == kModeRemove) {
    if (full && FS::IsDir(folder)) return folder.Path();
    ReportFolder(kFolderMissingText, folder.Path());
    return Str();
  }
  if (full && (FS::IsDir(folder) || FS::CreateDir(folder))) return folder.Path();
  ReportFolder(kFolderNotCreatedText, folder.Path());
  return Str();
}

void CheckSourceFolder() {
  Str installFromDir;
  VT_ASSERT(AppGetVariable("InstallFromDir", installFromDir),
            "AppGetVariable(sInstallFromDir,installFromDir)");
  VT_ASSERT(installFromDir.Length() != 0, "installFromDir.Length()");
}

}  // namespace

SelectionMode ModeOfButton(int buttonId, bool workstation) {
  if (buttonId == IDC_MAIN_REMOVE) return kModeRemove;
  VT_ASSERT(buttonId == IDC_MAIN_INSTALL, "Unknown Selection Mode");
  return workstation ? kModeWorkstation : kModeInstall;
}

unsigned FolderLabel(SelectionMode mode) { return RowOf(mode).folderLabel; }

bool MayChangeFolder(SelectionMode mode) {
  return RowOf(mode).folderFree && !AppVariableExists("lock_ProgDir");
}

unsigned InstallText() { return AppVariableExists("ini_ProgDir") ? kReinstallText : kInstallText; }

bool AcceptFolder(SelectionMode mode, const Str& folder) {
  const Str progDir = CheckedFolder(mode, folder);
  if (progDir.IsEmpty()) return false;
  VT_ASSERT(progDir.Length() != 0, "progDir.Length()");
  AppSetVariable("ProgDir", progDir);
  CheckSourceFolder();
  return true;
}

bool ShowMainDialog() {
  MainDialogState state;
  return RunDialog(IDD_MAIN, MainWindow(), MainProc, reinterpret_cast<LPARAM>(&state)) == IDOK;
}

void AcceptMainDefaults() {
  const SelectionMode mode = InitialMode();
  if (mode == kModeRemove) {
    for (const RemovalOption& option : ListRemovalOptions()) SetRemovalOption(option, true);
  }
  // Without a dialog to stay in, the run goes on with the folder as it is; copying says what does not work.
  if (!AcceptFolder(mode, AppGetExpanded("ProgDir"))) CheckSourceFolder();
}
