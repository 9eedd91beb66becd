#include "ui/err.h"

#include <vector>

#include "base/mem.h"
#include "resources/ids.h"
#include "support/import_double.h"
#include "support/stopped.h"
#include "ui/answerer.h"
#include "ui/language_file.h"
#include "ui/ui_fixture.h"

namespace {

// What a box looked like when it was answered.
struct SeenBox {
  std::vector<std::string> texts;  // of its static controls
  HICON icon = nullptr;
  std::vector<int> buttons;
  int defaultButton = 0;
  HWND owner = nullptr;
};

bool HasText(const SeenBox& box, const std::string& text) {
  for (const std::string& seen : box.texts)
    if (seen == text) return true;
  return false;
}

BOOL CALLBACK LookAtControl(HWND child, LPARAM param) {
  auto* box = reinterpret_cast<SeenBox*>(param);
  char kind[32] = "";
  GetClassNameA(child, kind, sizeof kind);
  if (lstrcmpiA(kind, "button") == 0) {
    if (!IsWindowVisible(child)) return TRUE;
    box->buttons.push_back(GetDlgCtrlID(child));
    if ((GetWindowLongA(child, GWL_STYLE) & 0xF) == BS_DEFPUSHBUTTON)
      box->defaultButton = GetDlgCtrlID(child);
    return TRUE;
  }
  box->texts.push_back(TextOf(child));
  const auto icon = reinterpret_cast<HICON>(SendMessageA(child, STM_GETICON, 0, 0));
  if (icon && IsWindowVisible(child)) box->icon = icon;
  return TRUE;
}

SeenBox Look(HWND dialog) {
  SeenBox seen;
  EnumChildWindows(dialog, LookAtControl, reinterpret_cast<LPARAM>(&seen));
  seen.owner = GetWindow(dialog, GW_OWNER);
  return seen;
}

INT_PTR CALLBACK IgnoreAll(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

HICON SystemIcon(LPCSTR name) { return LoadIconA(nullptr, name); }

const char kSetup[] = "Installation de Veltrane 6.0c";
const char kErrorCaption[] = "Erreur de Installation de Veltrane 6.0c";
const char kWarningCaption[] = "Avertissement de Installation de Veltrane 6.0c";

class ErrTest : public UiTest {
 protected:
  static void SetTitles() { SetMessageTitles(256, 257, 258, 260); }

  // Runs `show` and answers the box of that caption with `button`.
  template <class Show>
  SeenBox Answered(const char* caption, int button, Show show) {
    SeenBox seen;
    {
      Answerer answerer(caption, [&](HWND dialog) {
        seen = Look(dialog);
        Press(dialog, button);
      });
      show();
    }
    return seen;
  }
};

// ---- the boxes ----

TEST_F(ErrTest, ErrorHasOkStopIconErrorTitleAndIsLoggedWithAnEmptyLine) {
  SetTitles();
  const SeenBox box = Answered(kErrorCaption, IDOK, [] { ShowError("Disque plein"); });
  EXPECT_TRUE(HasText(box, "Disque plein"));
  EXPECT_EQ(box.icon, SystemIcon(IDI_HAND));
  EXPECT_EQ(box.buttons, std::vector<int>{IDOK});
  EXPECT_EQ(Log(), "Disque plein\n\n");
}

TEST_F(ErrTest, WarningHasOkExclamationIconAndWarningTitle) {
  SetTitles();
  const SeenBox box = Answered(kWarningCaption, IDOK, [] { ShowWarning("Attention"); });
  EXPECT_TRUE(HasText(box, "Attention"));
  EXPECT_EQ(box.icon, SystemIcon(IDI_EXCLAMATION));
  EXPECT_EQ(box.buttons, std::vector<int>{IDOK});
  EXPECT_EQ(Log(), "Attention\n\n");
}

TEST_F(ErrTest, InfoHasOkInformationIconAndPlainTitle) {
  SetTitles();
  const SeenBox box = Answered(kSetup, IDOK, [] { ShowInfo("Fini"); });
  EXPECT_TRUE(HasText(box, "Fini"));
  EXPECT_EQ(box.icon, SystemIcon(IDI_ASTERISK));
  EXPECT_EQ(box.buttons, std::vector<int>{IDOK});
  EXPECT_EQ(Log(), "Fini\n\n");
}

TEST_F(ErrTest, PlainHasOkNoIconAndErrorTitle) {
  SetTitles();
  const SeenBox box = Answered(kErrorCaption, IDOK, [] { ShowPlain("Simple"); });
  EXPECT_TRUE(HasText(box, "Simple"));
  EXPECT_EQ(box.icon, nullptr);
  EXPECT_EQ(box.buttons, std::vector<int>{IDOK});
  EXPECT_EQ(Log(), "Simple\n\n");
}

TEST_F(ErrTest, ErrorOkCancelHasStopIconAndErrorTitle) {
  SetTitles();
  int32_t answer = 0;
  const SeenBox box = Answered(kErrorCaption, IDOK, [&] { answer = AskErrorOkCancel("Continuer"); });
  EXPECT_EQ(answer, kAnswerOK);
  EXPECT_EQ(box.icon, SystemIcon(IDI_HAND));
  EXPECT_EQ(box.buttons, (std::vector<int>{IDOK, IDCANCEL}));
  EXPECT_EQ(Log(), "Continuer: [OK]\n\n");
}

TEST_F(ErrTest, OkCancelHasExclamationIconAndPlainTitle) {
  SetTitles();
  int32_t answer = 0;
  const SeenBox box = Answered(kSetup, IDCANCEL, [&] { answer = AskOkCancel("Disque 2"); });
  EXPECT_EQ(answer, kAnswerCancel);
  EXPECT_EQ(box.icon, SystemIcon(IDI_EXCLAMATION));
  EXPECT_EQ(box.buttons, (std::vector<int>{IDOK, IDCANCEL}));
  EXPECT_EQ(Log(), "Disque 2: [Cancel]\n\n");
}

TEST_F(ErrTest, ErrorOkCancelReportsCancel) {
  SetTitles();
  int32_t answer = 0;
  Answered(kErrorCaption, IDCANCEL, [&] { answer = AskErrorOkCancel("Continuer"); });
  EXPECT_EQ(answer, kAnswerCancel);
  EXPECT_EQ(Log(), "Continuer: [Cancel]\n\n");
}

TEST_F(ErrTest, YesNoHasQuestionIconAndPlainTitle) {
  SetTitles();
  int32_t answer = 0;
  const SeenBox box = Answered(kSetup, IDYES, [&] { answer = AskYesNo("Remove?"); });
  EXPECT_EQ(answer, kAnswerYes);
  EXPECT_EQ(box.icon, SystemIcon(IDI_QUESTION));
  EXPECT_EQ(box.buttons, (std::vector<int>{IDYES, IDNO}));
  EXPECT_EQ(box.defaultButton, IDYES);
  EXPECT_EQ(Log(), "Remove?: [Yes]\n\n");
}

TEST_F(ErrTest, YesNoReportsNo) {
  SetTitles();
  int32_t answer = 0;
  Answered(kSetup, IDNO, [&] { answer = AskYesNo("Remove?"); });
  EXPECT_EQ(answer, kAnswerNo);
  EXPECT_EQ(Log(), "Remove?: [No]\n\n");
}

TEST_F(ErrTest, YesNoDefaultNoHasNoAsDefaultButton) {
  SetTitles();
  int32_t answer = 0;
  const SeenBox box = Answered(kSetup, IDYES, [&] { answer = AskYesNoDefaultNo("Relancer"); });
  EXPECT_EQ(answer, kAnswerYes);
  EXPECT_EQ(box.icon, SystemIcon(IDI_QUESTION));
  EXPECT_EQ(box.buttons, (std::vector<int>{IDYES, IDNO}));
  EXPECT_EQ(box.defaultButton, IDNO);
  EXPECT_EQ(Log(), "Relancer: [Yes]\n\n");
}

TEST_F(ErrTest, OutOfMemoryIsAWarningWithItsText) {
  SetTitles();
  const std::string text =
      "Installation de Veltrane 6.0c n'a pas assez de m\xe9moire et va se terminer. Veuillez red\xe9marrer "
      "Windows avant "
      "de relancer Installation de Veltrane 6.0c.";
  const SeenBox box = Answered(kWarningCaption, IDOK, [] { ShowOutOfMemory(); });
  EXPECT_TRUE(HasText(box, text));
  EXPECT_EQ(box.icon, SystemIcon(IDI_EXCLAMATION));
  EXPECT_EQ(Log(), text + "\n\n");
}

TEST_F(ErrTest, QuestionThatHoldsAPlaceholderKeepsItInTheLog) {
  SetTitles();
  for (const char* name : {"Msg", "Response"}) AppSetVariable(name, "variable");
  Answered(kSetup, IDYES, [] { AskYesNo("<AppName> ?"); });
  EXPECT_EQ(Log(), "<AppName> ?: [Yes]\n\n");
}

TEST_F(ErrTest, BoxesBelongToTheMainWindow) {
  SetTitles();
  TestWindow main("Fond");
  SetMainWindow(main.Get());
  const SeenBox box = Answered(kErrorCaption, IDOK, [] { ShowError("x"); });
  EXPECT_EQ(box.owner, main.Get());
}

TEST_F(ErrTest, BoxBlocksTheDialogAboveTheMainWindow) {
  SetTitles();
  TestWindow main("Fond");
  SetMainWindow(main.Get());
  const HWND dialog = CreateModelessDialog(IDD_NEWFOLDER, main.Get(), IgnoreAll, 0);
  WindowHandle owner(dialog);
  ShowWindow(dialog, SW_SHOW);
  SetForegroundWindow(dialog);
  SetActiveWindow(dialog);
  bool wasEnabled = true;
  {
    Answerer answerer(kErrorCaption, [&](HWND box) {
      wasEnabled = IsWindowEnabled(dialog);
      Press(box, IDOK);
    });
    ShowError("x");
  }
  EXPECT_FALSE(wasEnabled);
  EXPECT_TRUE(IsWindowEnabled(dialog));
}

TEST_F(ErrTest, BoxAboveADialogBlocksTheMainWindowToo) {
  SetTitles();
  TestWindow main("Fond");
  SetMainWindow(main.Get());
  WindowHandle dialog(CreateModelessDialog(IDD_NEWFOLDER, main.Get(), IgnoreAll, 0));
  ShowWindow(dialog.Get(), SW_SHOW);
  SetForegroundWindow(dialog.Get());
  SetActiveWindow(dialog.Get());
  const auto isBlocked = [&](const char* caption, int button, const auto& show) {
    bool blocked = false;
    {
      Answerer answerer(caption, [&](HWND box) {
        blocked = !IsWindowEnabled(main.Get()) && !IsWindowEnabled(dialog.Get());
        Press(box, button);
      });
      show();
    }
    return blocked;
  };
  EXPECT_TRUE(isBlocked(kErrorCaption, IDOK, [] { ShowError("x"); }));
  EXPECT_TRUE(IsWindowEnabled(main.Get()));
  EXPECT_TRUE(isBlocked(kSetup, kAnswerYes, [] { AskYesToAll("x"); }));
  EXPECT_TRUE(IsWindowEnabled(main.Get()));
  // Disabled before, it stays so.
  EnableWindow(main.Get(), FALSE);
  EXPECT_TRUE(isBlocked(kErrorCaption, IDOK, [] { ShowError("x"); }));
  EXPECT_FALSE(IsWindowEnabled(main.Get()));
}

TEST_F(ErrTest, BoxesBlockTheOtherWindows) {
  SetTitles();
  TestWindow other("Autre");
  const auto isBlocked = [&](const char* caption, int button, const auto& show) {
    bool blocked = false;
    {
      Answerer answerer(caption, [&](HWND box) {
        blocked = WaitUntil([&] { return !IsWindowEnabled(other.Get()); });
        Press(box, button);
      });
      show();
    }
    return blocked;
  };
  EXPECT_TRUE(isBlocked(kErrorCaption, IDOK, [] { ShowError("x"); }));
  EXPECT_TRUE(isBlocked(kWarningCaption, IDOK, [] { ShowWarning("x"); }));
  EXPECT_TRUE(isBlocked(kSetup, IDOK, [] { ShowInfo("x"); }));
  EXPECT_TRUE(isBlocked(kErrorCaption, IDOK, [] { ShowPlain("x"); }));
  EXPECT_TRUE(isBlocked(kErrorCaption, IDOK, [] { AskErrorOkCancel("x"); }));
  EXPECT_TRUE(isBlocked(kSetup, IDOK, [] { AskOkCancel("x"); }));
  EXPECT_TRUE(isBlocked(kSetup, IDYES, [] { AskYesNo("x"); }));
  EXPECT_TRUE(isBlocked(kSetup, IDYES, [] { AskYesNoDefaultNo("x"); }));
  EXPECT_TRUE(IsWindowEnabled(other.Get()));
}

int WINAPI RefusedBox(HWND, LPCSTR, LPCSTR, UINT) { return 0; }

TEST_F(ErrTest, BoxThatCannotBeShownCountsAsTheSecondButton) {
  SetTitles();
  const ImportDouble box("MessageBoxA", reinterpret_cast<void*>(&RefusedBox));
  EXPECT_EQ(AskErrorOkCancel("q"), 0);
  EXPECT_EQ(AskOkCancel("q"), 0);
  EXPECT_EQ(Log(), "q: [Cancel]\n\nq: [Cancel]\n\n");
  EXPECT_EQ(AskYesNo("q"), 0);
  EXPECT_EQ(AskYesNoDefaultNo("q"), 0);
  EXPECT_EQ(Log(), "q: [No]\n\nq: [No]\n\n");
}

TEST_F(ErrTest, MessageThatCannotBeShownIsLoggedAllTheSame) {
  SetTitles();
  const ImportDouble box("MessageBoxA", reinterpret_cast<void*>(&RefusedBox));
  ShowError("a");
  ShowWarning("b");
  ShowInfo("c");
  ShowPlain("d");
  EXPECT_EQ(Log(), "a\n\nb\n\nc\n\nd\n\n");
}

TEST_F(ErrTest, NullTextAssertsAndCountsAsEmpty) {
  AssertRecorder recorder;
  BeSilent();
  ShowError(nullptr);
  ShowWarning(nullptr);
  ShowInfo(nullptr);
  ShowPlain(nullptr);
  EXPECT_EQ(AskErrorOkCancel(nullptr), kAnswerOK);
  EXPECT_EQ(AskOkCancel(nullptr), kAnswerOK);
  EXPECT_EQ(AskYesNo(nullptr), kAnswerYes);
  EXPECT_EQ(AskYesNoDefaultNo(nullptr), kAnswerNo);
  EXPECT_EQ(AskYesToAll(nullptr), kAnswerYes);
  EXPECT_EQ(ShowStatus(nullptr), nullptr);
  EXPECT_EQ(recorder.Texts(), std::vector<std::string>(10, "text"));
}

// ---- titles ----

TEST_F(ErrTest, TitlesAreSetupUntilTheyAreSet) {
  EXPECT_STREQ(ErrorTitle(), "Setup");
  EXPECT_STREQ(WarningTitle(), "Setup");
  EXPECT_STREQ(PlainTitle(), "Setup");
  for (const auto show : {ShowError, ShowWarning, ShowInfo, ShowPlain}) {
    const SeenBox box = Answered("Setup", IDOK, [&] { show("Texte"); });
    EXPECT_TRUE(HasText(box, "Texte"));
  }
  for (const auto ask : {AskErrorOkCancel, AskOkCancel})
    Answered("Setup", IDOK, [&] { EXPECT_EQ(ask("Texte"), kAnswerOK); });
  for (const auto ask : {AskYesNo, AskYesNoDefaultNo})
    Answered("Setup", IDYES, [&] { EXPECT_EQ(ask("Texte"), kAnswerYes); });
}

TEST_F(ErrTest, OutOfMemoryTextIsSetupUntilItIsSet) {
  BeSilent();
  ShowOutOfMemory();
  EXPECT_EQ(Log(), "Setup\n\n");
}

TEST_F(ErrTest, TitlesComeExpandedFromTheResources) {
  SetTitles();
  EXPECT_STREQ(ErrorTitle(), kErrorCaption);
  EXPECT_STREQ(WarningTitle(), kWarningCaption);
  EXPECT_STREQ(PlainTitle(), kSetup);
}

TEST_F(ErrTest, TitleOfExactlyFiftyCharactersStays) {
  const std::string fifty = std::string(49, 'a') + "z";
  AppSetVariable("SetupName", fifty.c_str());
  SetTitles();
  EXPECT_EQ(PlainTitle(), fifty);
}

TEST_F(ErrTest, LongerTitlesAreCutToFiftyCharacters) {
  AppSetVariable("SetupName", std::string(60, 'b').c_str());
  SetTitles();
  EXPECT_EQ(ErrorTitle(), "Erreur de " + std::string(40, 'b'));
  EXPECT_EQ(WarningTitle(), "Avertissement de " + std::string(33, 'b'));
  EXPECT_EQ(PlainTitle(), std::string(50, 'b'));
}

TEST_F(ErrTest, LongTitleResourceIsCutToFiftyCharacters) {
  const std::string library = mDir.Join("long.dll");
  MakeLanguageFile(library, {0x0409}, {{256, std::string(70, 'T')}, {257, "w"}, {258, "p"}, {260, "m"}});
  DataModule module(library);
  SetLanguageModule(module.Get());
  SetTitles();
  EXPECT_EQ(ErrorTitle(), std::string(50, 'T'));
  SetLanguageModule(nullptr);
}

TEST_F(ErrTest, OutOfMemoryTextIsCutToItsRoom) {
  AppSetVariable("SetupName", std::string(1500, 'm').c_str());
  SetTitles();
  BeSilent();
  ShowOutOfMemory();
  EXPECT_EQ(Log(), std::string(1024, 'm') + "\n\n");
}

// ---- silent ----

TEST_F(ErrTest, SilentRunShowsNothingAndLogsAllTheSame) {
  SetTitles();
  BeSilent();
  ShowError("a");
  ShowWarning("b");
  ShowInfo("c");
  ShowPlain("d");
  EXPECT_EQ(Log(), "a\n\nb\n\nc\n\nd\n\n");
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(ErrTest, SilentQuestionsTakeTheirDefaults) {
  SetTitles();
  BeSilent();
  EXPECT_EQ(AskErrorOkCancel("q"), kAnswerOK);
  EXPECT_EQ(Log(), "q: [OK]\n\n");
  EXPECT_EQ(AskOkCancel("q"), kAnswerOK);
  EXPECT_EQ(Log(), "q: [OK]\n\n");
  EXPECT_EQ(AskYesNo("q"), kAnswerYes);
  EXPECT_EQ(Log(), "q: [Yes]\n\n");
  EXPECT_EQ(AskYesNoDefaultNo("q"), kAnswerNo);
  EXPECT_EQ(Log(), "q: [No]\n\n");
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(ErrTest, SilentYesToAllShowsNothingEither) {
  BeSilent();
  EXPECT_EQ(AskYesToAll("q"), kAnswerYes);
  EXPECT_EQ(Log(), "q: [Yes]\n\n");
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(ErrTest, SilentOutOfMemoryOnlyLogs) {
  SetTitles();
  BeSilent();
  ShowOutOfMemory();
  EXPECT_NE(Log().find("n'a pas assez de m\xe9moire"), std::string::npos);
}

// ---- yes to all ----

TEST_F(ErrTest, YesToAllShowsTheMessageAndFilledTexts) {
  std::string caption, message, yes, all, no;
  {
    Answerer answerer(kSetup, [&](HWND dialog) {
      message = TextOf(GetDlgItem(dialog, 20));
      yes = TextOf(GetDlgItem(dialog, 6));
      all = TextOf(GetDlgItem(dialog, 21));
      no = TextOf(GetDlgItem(dialog, 7));
      Press(dialog, 6);
    });
    EXPECT_EQ(AskYesToAll("Garder C:\\a&b\\<x>.dll ?"), kAnswerYes);
  }
  EXPECT_EQ(message, "Garder C:\\a&b\\<x>.dll ?");
  EXPECT_EQ(yes, "&Oui");
  EXPECT_EQ(all, "Oui \xe0 &tous");
  EXPECT_EQ(no, "&Non");
  EXPECT_EQ(Log(), "Garder C:\\a&b\\<x>.dll ?: [Yes]\n\n");
}

TEST_F(ErrTest, YesToAllReportsNo) {
  Answerer answerer(kSetup, [](HWND dialog) { Press(dialog, 7); });
  EXPECT_EQ(AskYesToAll("q"), kAnswerNo);
  EXPECT_EQ(Log(), "q: [No]\n\n");
}

TEST_F(ErrTest, YesToAllReportsYesToAll) {
  Answerer answerer(kSetup, [](HWND dialog) { Press(dialog, 21); });
  EXPECT_EQ(AskYesToAll("q"), kAnswerYesToAll);
  EXPECT_EQ(Log(), "q: [Yes to All]\n\n");
}

TEST_F(ErrTest, YesToAllRemembersNothing) {
  {
    Answerer answerer(kSetup, [](HWND dialog) { Press(dialog, 21); });
    EXPECT_EQ(AskYesToAll("q"), kAnswerYesToAll);
  }
  Answerer answerer(kSetup, [](HWND dialog) { Press(dialog, 7); });
  EXPECT_EQ(AskYesToAll("q"), kAnswerNo);
}

TEST_F(ErrTest, YesToAllIgnoresOtherCommands) {
  bool stayed = false;
  {
    Answerer answerer(kSetup, [&](HWND dialog) {
      for (const int id : {IDOK, IDCANCEL, 20, 99}) SendMessageA(dialog, WM_COMMAND, id, 0);
      SendMessageA(dialog, WM_CLOSE, 0, 0);
      stayed = IsWindow(dialog);
      Press(dialog, 7);
    });
    EXPECT_EQ(AskYesToAll("q"), kAnswerNo);
  }
  EXPECT_TRUE(stayed);
}

TEST_F(ErrTest, YesToAllIsCentredOnTheScreen) {
  TestWindow main("Fond", 0, 0, 200, 150);
  SetMainWindow(main.Get());
  RECT at = {};
  {
    Answerer answerer(kSetup, [&](HWND dialog) {
      GetWindowRect(dialog, &at);
      Press(dialog, 6);
    });
    AskYesToAll("q");
  }
  RECT work = {};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  EXPECT_NEAR(at.left + at.right, work.left + work.right, 2);
  EXPECT_NEAR(at.top + at.bottom, work.top + work.bottom, 2);
}

TEST_F(ErrTest, YesToAllWithoutItsDialogAsserts) {
  AssertRecorder recorder;
  SetProgramModule(GetModuleHandleA("ntdll.dll"));
  EXPECT_EQ(AskYesToAll("q"), -1);
  EXPECT_EQ(recorder.Only(), "irtn != -1");
  EXPECT_EQ(Log(), "q: [No]\n\n");
}

// ---- status ----

TEST_F(ErrTest, StatusShowsItsTextAndIsLogged) {
  const HWND status = ShowStatus("Suppression de Veltrane 5...");
  ASSERT_NE(status, nullptr);
  EXPECT_TRUE(IsWindowVisible(status));
  EXPECT_EQ(TextOf(status), kSetup);
  EXPECT_EQ(TextOf(GetDlgItem(status, 20)), "Suppression de Veltrane 5...");
  EXPECT_EQ(Log(), "Suppression de Veltrane 5...\n");
  CloseStatus(status);
  EXPECT_FALSE(IsWindow(status));
}

TEST_F(ErrTest, StatusIsCentred) {
  TestWindow main("Fond", 200, 100, 500, 400);
  SetMainWindow(main.Get());
  const HWND status = ShowStatus("x");
  RECT own = {}, owner = {};
  GetWindowRect(status, &own);
  GetWindowRect(main.Get(), &owner);
  EXPECT_EQ(GetWindow(status, GW_OWNER), main.Get());
  EXPECT_NEAR(own.left + own.right, owner.left + owner.right, 2);
  EXPECT_NEAR(own.top + own.bottom, owner.top + owner.bottom, 2);
  CloseStatus(status);
}

TEST_F(ErrTest, SilentStatusOnlyLogs) {
  BeSilent();
  const HWND status = ShowStatus("Suppression");
  EXPECT_EQ(status, nullptr);
  EXPECT_EQ(Log(), "Suppression\n");
  CloseStatus(status);  // nothing to close, nothing to complain about
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(ErrTest, StatusWithoutItsDialogAsserts) {
  AssertRecorder recorder;
  SetProgramModule(GetModuleHandleA("ntdll.dll"));
  EXPECT_EQ(ShowStatus("x"), nullptr);
  EXPECT_EQ(recorder.Only(), "hDialog");
}

TEST_F(ErrTest, ClosingNoStatusAsserts) {
  AssertRecorder recorder;
  CloseStatus(nullptr);
  EXPECT_EQ(recorder.Only(), "hDialog");
}

// ---- internal errors ----

const char kReport[] =
    "Une erreur est survenue. Installation de Veltrane 6.0c ne peut pas lire le fichier. Installation de "
    "Veltrane 6.0c va "
    "continuer.";

TEST_F(ErrTest, InternalErrorShowsTheTextOfItsCode) {
  SetTitles();
  const SeenBox box = Answered(kErrorCaption, IDOK, [] { ReportInternalError(4137, 11012); });
  EXPECT_TRUE(HasText(box, kReport));
  EXPECT_EQ(box.icon, SystemIcon(IDI_HAND));
  EXPECT_EQ(Log(), std::string("\nQuorvale internal error: #0x2b04\n   ") + kReport + "\n\n");
}

TEST_F(ErrTest, FatalErrorReportsAndThenThrows) {
  BeSilent();
  EXPECT_THROW(FatalError(4137, 11012), FatalStop);
  EXPECT_EQ(Log(), std::string("\nQuorvale internal error: #0x2b04\n   ") + kReport + "\n\n");
}

TEST_F(ErrTest, FatalOutOfMemoryHasItsText) {
  BeSilent();
  EXPECT_THROW(FatalError(4136, 11010), FatalStop);
  const std::string log = Log();
  EXPECT_NE(log.find("Une erreur grave est survenue."), std::string::npos);
  EXPECT_EQ(log.find("<ErrMsg>"), std::string::npos);
}

// ---- reserve ----

HGLOBAL gReserve = nullptr;
UINT gReserveFlags = 0;
decltype(&GlobalAlloc) gGlobalAlloc = nullptr;

HGLOBAL WINAPI NoteAllocation(UINT flags, SIZE_T size) {
  gReserveFlags = flags;
  return gReserve = gGlobalAlloc(flags, size);
}

TEST_F(ErrTest, ReserveIsAMovableBlockOf7880Bytes) {
  const ImportDouble allocating("GlobalAlloc", reinterpret_cast<void*>(&NoteAllocation));
  gGlobalAlloc = reinterpret_cast<decltype(gGlobalAlloc)>(allocating.Original());
  gReserve = nullptr;
  ASSERT_TRUE(AllocateReserve());
  EXPECT_EQ(GlobalSize(gReserve), 7880u);
  EXPECT_NE(gReserveFlags & GMEM_MOVEABLE, 0u);
  FreeReserve();
}

HGLOBAL WINAPI NoMemory(UINT, SIZE_T) {
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

TEST_F(ErrTest, ReserveThatCannotBeHadIsReported) {
  SetTitles();
  const int32_t before = MemHandle::LiveCount();
  const ImportDouble allocating("GlobalAlloc", reinterpret_cast<void*>(&NoMemory));
  bool allocated = true;
  const SeenBox box = Answered(kWarningCaption, IDOK, [&] { allocated = AllocateReserve(); });
  EXPECT_FALSE(allocated);
  EXPECT_EQ(box.icon, SystemIcon(IDI_EXCLAMATION));
  EXPECT_NE(Log().find("n'a pas assez de m\xe9moire et va se terminer."), std::string::npos);
  EXPECT_EQ(MemHandle::LiveCount(), before);
}

TEST_F(ErrTest, ReserveIsOneBlockUntilItIsFreed) {
  const int32_t before = MemHandle::LiveCount();
  ASSERT_TRUE(AllocateReserve());
  EXPECT_EQ(MemHandle::LiveCount(), before + 1);
  FreeReserve();
  EXPECT_EQ(MemHandle::LiveCount(), before);
  FreeReserve();
  EXPECT_EQ(MemHandle::LiveCount(), before);
}

}  // namespace
