#include "ui/err.h"

#include "base/assert.h"
#include "base/handle.h"
#include "base/mem.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "resources/ids.h"
#include "ui/dlog.h"

namespace {

constexpr int32_t kTitleRoom = 50;          // characters
constexpr int32_t kOutOfMemoryRoom = 1024;  // characters
constexpr uint32_t kReserveSize = 7880;     // bytes

// The texts of the boxes, set once the language is known.
struct MessageTexts {
  Str errorTitle = "Setup";
  Str warningTitle = "Setup";
  Str plainTitle = "Setup";
  Str outOfMemory = "Setup";
};

MessageTexts& Texts() {
  static MessageTexts texts;
  return texts;
}

MemHandle& Reserve() {
  static MemHandle block;
  return block;
}

void SetSlot(Str& slot, unsigned id, int32_t room) {
  slot = GetResStr(id);
  if (slot.Length() > room) slot.Delete(room, -1);
}

// Every box needs its text; without one the box stays empty.
const char* CheckedText(const char* text) { return VT_ASSERT(text, "text") ? text : ""; }

// The window that a box blocks: the dialog last used above the main window, so that the question cannot be
// bypassed or asked twice there; else the main window itself.
HWND BoxOwner() {
  const HWND mainWindow = MainWindow();
  if (!mainWindow) return nullptr;
  const HWND popup = GetLastActivePopup(mainWindow);
  const bool isOurs = popup && GetWindowThreadProcessId(popup, nullptr) == GetCurrentThreadId();
  return isOurs && IsWindowVisible(popup) ? popup : mainWindow;
}

// A box with an owner disables that window alone; this disables the main window too, when the owner is a
// dialog above it, until the box is gone.
class MainWindowBlock {
 public:
  explicit MainWindowBlock(HWND owner) : mWindow(owner == MainWindow() ? nullptr : MainWindow()) {
    const bool wasDisabled = mWindow && EnableWindow(mWindow, FALSE);
    if (wasDisabled) mWindow = nullptr;
  }
  MainWindowBlock(const MainWindowBlock&) = delete;
  MainWindowBlock& operator=(const MainWindowBlock&) = delete;
  ~MainWindowBlock() {
    if (mWindow) EnableWindow(mWindow, TRUE);
  }

 private:
  HWND mWindow;
};

int32_t Box(const char* text, const Str& title, UINT style) {
  const HWND owner = BoxOwner();
  const MainWindowBlock block(owner);
  return MessageBoxA(owner, text, title, style | MB_TASKMODAL);
}

void ShowBox(const char* given, const Str& title, UINT icon) {
  const char* text = CheckedText(given);
  LogLine(text);
  LogLine("");
  if (!Run().IsQuiet()) Box(text, title, MB_OK | icon);
}

// Variables are not filled in here: a placeholder left in the question is logged as the user saw it.
void LogAnswer(const char* text, const char* response) {
  LogLine(Message("<Msg>: [<Response>]\n", kTemplateLiteral).With("Msg", text).With("Response", response));
}

struct Question {
  UINT style;
  Answer silent;
  Answer first;
  const char* firstName;
  const char* otherName;
};

int32_t Ask(const char* given, const Str& title, const Question& question) {
  const char* text = CheckedText(given);
  const int32_t answer = Run().IsQuiet() ? question.silent : Box(text, title, question.style);
  LogAnswer(text, answer == question.first ? question.firstName : question.otherName);
  return answer;
}

INT_PTR CALLBACK YesToAllProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      FillWindowTexts(dialog, AppVars(), true);
      // Set after the filling: the message is finished and must show what the log will show.
      SetDlgItemTextA(dialog, IDC_MESSAGE, reinterpret_cast<const char*>(lParam));
      CentreOnScreen(dialog);
      return TRUE;
    case WM_COMMAND: {
      const int id = LOWORD(wParam);
      if (id != IDC_ANSWER_YES && id != IDC_ANSWER_NO && id != IDC_ANSWER_YES_TO_ALL) return FALSE;
      EndDialog(dialog, id);
      return TRUE;
    }
    default:
      return FALSE;
  }
}

const char* YesToAllName(INT_PTR answer) {
  if (answer == kAnswerYesToAll) return "Yes to All";
  return answer == kAnswerYes ? "Yes" : "No";
}

INT_PTR CALLBACK StatusProc(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
  if (message != WM_INITDIALOG) return FALSE;
  SetDlgItemTextA(dialog, IDC_MESSAGE, reinterpret_cast<const char*>(lParam));
  FillWindowTexts(dialog, AppVars(), true);
  CentreWindow(dialog);
  return TRUE;
}

}  // namespace

void SetMessageTitles(unsigned errorId, unsigned warningId, unsigned plainId, unsigned outOfMemoryId) {
  MessageTexts& texts = Texts();
  SetSlot(texts.errorTitle, errorId, kTitleRoom);
  SetSlot(texts.warningTitle, warningId, kTitleRoom);
  SetSlot(texts.plainTitle, plainId, kTitleRoom);
  SetSlot(texts.outOfMemory, outOfMemoryId, kOutOfMemoryRoom);
}

void ResetMessageTitles() { Texts() = MessageTexts(); }

const char* ErrorTitle() { return Texts().errorTitle; }
const char* WarningTitle() { return Texts().warningTitle; }
const char* PlainTitle() { return Texts().plainTitle; }

void ShowError(const char* text) { ShowBox(text, Texts().errorTitle, MB_ICONSTOP); }
void ShowWarning(const char* text) { ShowBox(text, Texts().warningTitle, MB_ICONEXCLAMATION); }
void ShowInfo(const char* text) { ShowBox(text, Texts().plainTitle, MB_ICONINFORMATION); }
void ShowPlain(const char* text) { ShowBox(text, Texts().errorTitle, 0); }

int32_t AskErrorOkCancel(const char* text) {
  return Ask(text, Texts().errorTitle, {MB_OKCANCEL | MB_ICONSTOP, kAnswerOK, kAnswerOK, "OK", "Cancel"});
}

int32_t AskOkCancel(const char* text) {
  return Ask(text, Texts().plainTitle,
             {MB_OKCANCEL | MB_ICONEXCLAMATION, kAnswerOK, kAnswerOK, "OK", "Cancel"});
}

int32_t AskYesNo(const char* text) {
  return Ask(text, Texts().plainTitle, {MB_YESNO | MB_ICONQUESTION, kAnswerYes, kAnswerYes, "Yes", "No"});
}

int32_t AskYesNoDefaultNo(const char* text) {
  return Ask(text, Texts().plainTitle,
             {MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2, kAnswerNo, kAnswerYes, "Yes", "No"});
}

int32_t AskYesToAll(const char* given) {
  const char* text = CheckedText(given);
  INT_PTR irtn = kAnswerYes;
  if (!Run().IsQuiet()) {
    const HWND owner = BoxOwner();
    const MainWindowBlock block(owner);
    irtn = RunDialog(IDD_YESTOALL, owner, YesToAllProc, reinterpret_cast<LPARAM>(text));
    VT_ASSERT(irtn != -1, "irtn != -1");
  }
  LogAnswer(text, YesToAllName(irtn));
  return static_cast<int32_t>(irtn);
}

void ShowOutOfMemory() { ShowWarning(Texts().outOfMemory); }

HWND ShowStatus(const char* given) {
  const char* text = CheckedText(given);
  LogLine(text);
  if (Run().IsQuiet()) return nullptr;
  const HWND hDialog =
      CreateModelessDialog(IDD_STATUS, MainWindow(), StatusProc, reinterpret_cast<LPARAM>(text));
  if (!VT_ASSERT(hDialog, "hDialog")) return nullptr;
  ShowWindow(hDialog, SW_SHOWNORMAL);
  // The caller works on without a message loop: paint now, the text control included.
  RedrawWindow(hDialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  return hDialog;
}

void CloseStatus(HWND hDialog) {
  if (!hDialog && Run().IsQuiet()) return;  // ShowStatus made none
  if (!VT_ASSERT(hDialog, "hDialog")) return;
  WindowHandle(hDialog).Reset();
}

void ReportInternalError(unsigned msgId, uint32_t code) {
  LogInternalError(code);
  Message report(msgId);
  report.With("ErrMsg", GetResStr(code));
  ShowError(report);
}

void FatalError(unsigned msgId, uint32_t code) {
  ReportInternalError(msgId, code);
  StopForFatalError();
}

bool AllocateReserve() {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, kReserveSize);
  if (!block) {
    ShowOutOfMemory();
    return false;
  }
  Reserve() = MemHandle(block);
  return true;
}

void FreeReserve() { Reserve() = MemHandle(); }
