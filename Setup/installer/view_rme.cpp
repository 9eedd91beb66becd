#include "installer/view_rme.h"

#include <windows.h>

#include <shellapi.h>

#include "base/handle.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "resources/ids.h"
#include "stores/register.h"
#include "ui/dlog.h"
#include "ui/err.h"

namespace {

constexpr unsigned kNoticeText = 4355;
constexpr unsigned kTroubleText = 4137;
constexpr DWORD kLaunchToReadMe = 1000;  // ms, so that the readme comes up in front of the product
constexpr INT_PTR kShellFailure = 32;    // ShellExecute succeeds above this
constexpr char kRunOnceKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";

struct FinishDialogState {
  FinishChoice choice;
  FontHandle bold;
};

INT_PTR ShellOpen(const char* path, const char* args) {
  return reinterpret_cast<INT_PTR>(ShellExecuteA(MainWindow(), "open", path, args, nullptr, SW_SHOWNORMAL));
}

bool HasReadMe() { return !AppGetExpanded("ViewReadMePath").IsEmpty(); }

void OpenReadMe() {
  const Str path = AppGetExpanded("ViewReadMePath");
  const Str args = AppGetExpanded("ReadMeArgs");
  LogLine(Message("Opening ReadMe: <RMPath> <RMARgs>", kTemplateLiteral)
              .With("RMARgs", args)
              .With("RMPath", path));
  const INT_PTR result = ShellOpen(path, args);
  if (result > kShellFailure) return;
  Str trouble;
  trouble.Format("%s (%d).", path.Chars(), static_cast<int>(result));
  ShowError(Message(kTroubleText).With("ErrMsg", trouble));
}

void OpenReadMeAfterRestart() {
  const Str name = AppGetExpanded("ProgName");
  const Message data = Message("<WinHelpPath> <HelpArgs>", kTemplateLiteral)
                           .With("HelpArgs", AppGetExpanded("ReadMeArgs"))
                           .With("WinHelpPath", AppGetExpanded("ViewReadMePath"));
  RegCreateKeyValue(HKEY_CURRENT_USER, kRunOnceKey, name, data.Text().Chars());
  LogLine(Message("Openning ReadMe on restart. RunOnce = <ROValueName>: <ROData>", kTemplateLiteral)
              .With("ROValueName", name)
              .With("ROData", data));
}

void LaunchProduct() {
  const Str path = MakeTemplate("<ProgDir>\\<AppProgName>.exe", kTemplateExpand);
  const bool started = ShellOpen(path, nullptr) > kShellFailure;
  LogOutcome(started,
             Message("Launch app = <Stat>", kTemplateLiteral).With("Stat", started ? "Success" : "Fail"));
}

void FinishWithRestart(const FinishChoice& choice) {
  if (choice.accepted) {
    LogLine("Installation requires reboot: user chose to allow reboot.");
    Run().rebootRequested = true;
    if (choice.viewReadMe) OpenReadMeAfterRestart();
  } else {
    LogLine("Installation requires reboot: user chose to NOT reboot.");
    if (choice.viewReadMe) OpenReadMe();
  }
}

void FinishWithoutRestart(const FinishChoice& choice) {
  LogLine("Installation does not require reboot.");
  if (!choice.accepted) return;
  if (choice.launch) LaunchProduct();
  if (!choice.viewReadMe) return;
  if (choice.launch) PumpFor(kLaunchToReadMe);
  OpenReadMe();
}

void MakeBold(HWND control, FontHandle& bold) {
  LOGFONTA description = {};
  const HGDIOBJ font = reinterpret_cast<HGDIOBJ>(SendMessageA(control, WM_GETFONT, 0, 0));
  if (font == nullptr || GetObjectA(font, sizeof description, &description) == 0) return;
  description.lfWeight = FW_BOLD;
  bold.Reset(CreateFontIndirectA(&description));
  if (bold) SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(bold.Get()), TRUE);
}

// A button's caption without its mnemonic mark.
Str PlainCaption(HWND dialog, int id) {
  Str caption = GetControlText(dialog, id);
  for (int32_t pos = caption.Find('&'); pos >= 0; pos = caption.Find('&', pos)) caption.Delete(pos, 1);
  return caption;
}

// Takes away the box and the line that explains it; the plain dialog has neither.
void WithdrawReadMeOffer(HWND dialog) {
  CheckDlgButton(dialog, IDC_FINISH_README, BST_UNCHECKED);
  for (const int id : {IDC_FINISH_README, IDC_FINISH_README_HINT}) {
    const HWND control = GetDlgItem(dialog, id);
    if (control != nullptr) ShowWindow(control, SW_HIDE);
  }
}

void OnOpen(HWND dialog, FinishDialogState& state) {
  CheckDlgButton(dialog, IDC_FINISH_README, BST_CHECKED);
  CheckDlgButton(dialog, IDC_FINISH_LAUNCH, BST_CHECKED);
  const HWND notice = GetDlgItem(dialog, IDC_FINISH_NOTICE);
  if (notice != nullptr) {
    SetWindowTextA(notice, GetResStr(kNoticeText));
    MakeBold(notice, state.bold);
  }
  AppSetVariable("Readme_RestartBtn", PlainCaption(dialog, IDOK));
  FillWindowTexts(dialog, AppVars(), true);
  if (!HasReadMe()) WithdrawReadMeOffer(dialog);
  CentreWindow(dialog);
}

void OnButton(HWND dialog, int id, FinishChoice& choice) {
  choice.accepted = id == IDOK;
  choice.viewReadMe = IsDlgButtonChecked(dialog, IDC_FINISH_README) == BST_CHECKED;
  choice.launch = IsDlgButtonChecked(dialog, IDC_FINISH_LAUNCH) == BST_CHECKED;
  EndDialog(dialog, id);
}

INT_PTR CALLBACK FinishProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(dialog, DWLP_USER, lParam);
    OnOpen(dialog, *reinterpret_cast<FinishDialogState*>(lParam));
    return TRUE;
  }
  auto* state = reinterpret_cast<FinishDialogState*>(GetWindowLongPtrA(dialog, DWLP_USER));
  if (message != WM_COMMAND || state == nullptr) return FALSE;
  const int id = LOWORD(wParam);
  if (id != IDOK && id != IDCANCEL) return FALSE;
  OnButton(dialog, id, state->choice);
  return TRUE;
}

}  // namespace

unsigned FinishingDialog() {
  if (Run().restartNeeded) return IDD_FINISH_REBOOT;
  return AppGetBool("ViewReadMeDlg") ? IDD_FINISH_README : IDD_FINISH;
}

void ActOnFinishChoice(const FinishChoice& choice) {
  FinishChoice possible = choice;
  possible.viewReadMe = choice.viewReadMe && HasReadMe();
  if (Run().restartNeeded) {
    FinishWithRestart(possible);
  } else {
    FinishWithoutRestart(possible);
  }
  if (!possible.viewReadMe) LogLine("User chose NOT to display the ReadMe.");
}

void RunFinishingStep() {
  FinishDialogState state;
  RunDialog(FinishingDialog(), MainWindow(), FinishProc, reinterpret_cast<LPARAM>(&state));
  ActOnFinishChoice(state.choice);
}
