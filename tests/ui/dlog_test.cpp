#include "ui/dlog.h"

#include "resources/ids.h"
#include "ui/answerer.h"
#include "ui/language_file.h"
#include "ui/ui_fixture.h"

namespace {

INT_PTR CALLBACK EndByCommand(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowTextA(GetDlgItem(dialog, IDC_NEWFOLDER_NAME), reinterpret_cast<const char*>(lParam));
    return TRUE;
  }
  if (message != WM_COMMAND || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL)) return FALSE;
  EndDialog(dialog, LOWORD(wParam) + 100);
  return TRUE;
}

bool gCancelled = false;

INT_PTR CALLBACK NoteCancel(HWND, UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) gCancelled = true;
  return message == WM_INITDIALOG;
}

class DlogTest : public UiTest {};

// ---- texts ----

TEST_F(DlogTest, WindowTextIsFilledFromTheList) {
  TestWindow window("<SetupName> : <AppName>");
  FillWindowTexts(window.Get(), AppVars(), false);
  EXPECT_EQ(TextOf(window.Get()), "Installation de Veltrane 6.0c : Veltrane");
}

TEST_F(DlogTest, ChildrenAreFilledOnlyWhenAskedFor) {
  TestWindow window("<AppName>");
  const HWND label = window.Add("STATIC", "<AppName> <MajVersion>", 30);
  FillWindowTexts(window.Get(), AppVars(), false);
  EXPECT_EQ(TextOf(label), "<AppName> <MajVersion>");
  FillWindowTexts(window.Get(), AppVars(), true);
  EXPECT_EQ(TextOf(label), "Veltrane 6");
}

TEST_F(DlogTest, EveryChildIsFilled) {
  TestWindow window("x");
  const HWND button = window.Add("BUTTON", "&<AppName>", 31);
  const HWND edit = window.Add("EDIT", "<MajVersion>", 32);
  FillWindowTexts(window.Get(), AppVars(), true);
  EXPECT_EQ(TextOf(button), "&Veltrane");
  EXPECT_EQ(TextOf(edit), "6");
}

TEST_F(DlogTest, UnknownPlaceholdersAndEmptyTextsStay) {
  TestWindow window("<Nobody>");
  const HWND label = window.Add("STATIC", "", 30);
  FillWindowTexts(window.Get(), AppVars(), true);
  EXPECT_EQ(TextOf(window.Get()), "<Nobody>");
  EXPECT_EQ(TextOf(label), "");
}

TEST_F(DlogTest, TextsComeFromTheGivenList) {
  VarList vars;
  vars.Set("AppName", "Autre");
  TestWindow window("<AppName>");
  FillWindowTexts(window.Get(), vars, true);
  EXPECT_EQ(TextOf(window.Get()), "Autre");
}

TEST_F(DlogTest, ControlTextOfAnyLength) {
  TestWindow window("x");
  const std::string text(5000, 'y');
  window.Add("EDIT", text.c_str(), 30, ES_AUTOHSCROLL);
  EXPECT_EQ(GetControlText(window.Get(), 30), text.c_str());
}

TEST_F(DlogTest, TextOfAMissingOrEmptyControlIsEmpty) {
  TestWindow window("x");
  window.Add("EDIT", "", 30);
  EXPECT_TRUE(GetControlText(window.Get(), 30).IsEmpty());
  EXPECT_TRUE(GetControlText(window.Get(), 31).IsEmpty());
}

// ---- centring ----

void ExpectCentred(HWND window, const RECT& area) {
  RECT own = {};
  GetWindowRect(window, &own);
  EXPECT_NEAR(own.left + own.right, area.left + area.right, 1);
  EXPECT_NEAR(own.top + own.bottom, area.top + area.bottom, 1);
}

RECT WorkArea() {
  RECT work = {};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  return work;
}

WindowHandle OwnedWindow(HWND owner) {
  return WindowHandle(CreateWindowExA(0, "#32770", "Dessus", WS_POPUP | WS_CAPTION, 5, 5, 120, 90, owner,
                                      nullptr, GetModuleHandleA(nullptr), nullptr));
}

TEST_F(DlogTest, WindowWithOwnerIsCentredOnIt) {
  TestWindow owner("Fond", 300, 200, 500, 400);
  const WindowHandle window = OwnedWindow(owner.Get());
  CentreWindow(window.Get());
  RECT area = {};
  GetWindowRect(owner.Get(), &area);
  ExpectCentred(window.Get(), area);
}

TEST_F(DlogTest, WindowWithoutOwnerIsCentredOnTheWorkArea) {
  TestWindow window("Seule", 3, 4, 200, 100);
  CentreWindow(window.Get());
  ExpectCentred(window.Get(), WorkArea());
}

TEST_F(DlogTest, CentringKeepsTheSize) {
  TestWindow window("Seule", 3, 4, 211, 107);
  CentreWindow(window.Get());
  RECT own = {};
  GetWindowRect(window.Get(), &own);
  EXPECT_EQ(own.right - own.left, 211);
  EXPECT_EQ(own.bottom - own.top, 107);
}

TEST_F(DlogTest, MinimisedOwnerDoesNotPullTheWindowOffTheScreen) {
  TestWindow owner("Fond", 300, 200, 500, 400);
  ShowWindow(owner.Get(), SW_MINIMIZE);
  const WindowHandle window = OwnedWindow(owner.Get());
  CentreWindow(window.Get());
  ExpectCentred(window.Get(), WorkArea());
}

TEST_F(DlogTest, OnTheScreenWhoeverTheOwner) {
  TestWindow owner("Fond", 0, 0, 300, 200);
  const WindowHandle window = OwnedWindow(owner.Get());
  CentreOnScreen(window.Get());
  ExpectCentred(window.Get(), WorkArea());
}

// ---- dialogs ----

TEST_F(DlogTest, DialogComesFromTheProgramWithoutALibrary) {
  std::string name;
  Answerer answerer("Nouveau dossier", [&](HWND dialog) {
    name = TextOf(GetDlgItem(dialog, IDC_NEWFOLDER_NAME));
    Press(dialog, IDOK);
  });
  EXPECT_EQ(RunDialog(IDD_NEWFOLDER, nullptr, EndByCommand, reinterpret_cast<LPARAM>("param")), IDOK + 100);
  EXPECT_EQ(name, "param");
}

TEST_F(DlogTest, DialogComesFromTheLoadedLibrary) {
  DataModule english(ShippedLibrary("VTsu6en.dll"));
  SetLanguageModule(english.Get());
  {
    Answerer answerer("New Folder", [](HWND dialog) { Press(dialog, IDCANCEL); });
    EXPECT_EQ(RunDialog(IDD_NEWFOLDER, nullptr, EndByCommand, reinterpret_cast<LPARAM>("")), IDCANCEL + 100);
  }
  SetLanguageModule(nullptr);
}

TEST_F(DlogTest, DialogThatTheLibraryLacksComesFromTheProgram) {
  SetLanguageModule(GetModuleHandleA("ntdll.dll"));
  Answerer answerer("Nouveau dossier", [](HWND dialog) { Press(dialog, IDOK); });
  EXPECT_EQ(RunDialog(IDD_NEWFOLDER, nullptr, EndByCommand, reinterpret_cast<LPARAM>("")), IDOK + 100);
}

TEST_F(DlogTest, MissingDialogIsMinusOne) {
  EXPECT_EQ(RunDialog(19999, nullptr, EndByCommand, 0), -1);
  EXPECT_EQ(CreateModelessDialog(19999, nullptr, EndByCommand, 0), nullptr);
  EXPECT_EQ(LoadDialogTemplate(19999), nullptr);
}

TEST_F(DlogTest, SilentRunCreatesNoDialog) {
  BeSilent();
  EXPECT_EQ(RunDialog(IDD_NEWFOLDER, nullptr, EndByCommand, reinterpret_cast<LPARAM>("")), -1);
  EXPECT_EQ(CreateModelessDialog(IDD_NEWFOLDER, nullptr, EndByCommand, reinterpret_cast<LPARAM>("")),
            nullptr);
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(DlogTest, ModelessDialogHasItsOwner) {
  TestWindow owner("Fond");
  const WindowHandle dialog(
      CreateModelessDialog(IDD_NEWFOLDER, owner.Get(), EndByCommand, reinterpret_cast<LPARAM>("x")));
  ASSERT_TRUE(static_cast<bool>(dialog));
  EXPECT_EQ(GetWindow(dialog.Get(), GW_OWNER), owner.Get());
  EXPECT_EQ(TextOf(dialog.Get()), "Nouveau dossier");
}

TEST_F(DlogTest, MainWindowIsRemembered) {
  EXPECT_EQ(MainWindow(), nullptr);
  TestWindow window("Fond");
  SetMainWindow(window.Get());
  EXPECT_EQ(MainWindow(), window.Get());
}

// ---- the message pump ----

int gCounted = 0;
HANDLE gToSignal = nullptr;

LRESULT CALLBACK CountingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_USER || message == WM_TIMER) {
    ++gCounted;
    if (gToSignal) SetEvent(gToSignal);
    return 0;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

class PumpTest : public DlogTest {
 protected:
  void SetUp() override {
    DlogTest::SetUp();
    gCounted = 0;
    gToSignal = nullptr;
    SetWindowLongA(mWindow.Get(), GWL_WNDPROC, reinterpret_cast<LONG>(CountingProc));
  }
  void TearDown() override {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    }
    DlogTest::TearDown();
  }
  // Takes a WM_QUIT out of the queue; its code, or -1 when there is none.
  static int TakeQuit() {
    MSG msg;
    return PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) ? static_cast<int>(msg.wParam) : -1;
  }
  TestWindow mWindow{"Pompe", 0, 0, 50, 50, false};
};

TEST_F(PumpTest, AllWaitingMessagesAreDispatched) {
  for (int i = 0; i < 250; ++i) PostMessageA(mWindow.Get(), WM_USER, 0, 0);
  PumpMessages();
  EXPECT_EQ(gCounted, 250);
}

TEST_F(PumpTest, EmptyQueueReturnsAtOnce) {
  PumpMessages();
  EXPECT_EQ(gCounted, 0);
}

TEST_F(PumpTest, QuitIsPutBackAndWhatLiesBehindItIsDispatched) {
  PostQuitMessage(7);
  PostMessageA(mWindow.Get(), WM_USER, 0, 0);
  PumpMessages();
  EXPECT_EQ(gCounted, 1);
  EXPECT_EQ(TakeQuit(), 7);
}

TEST_F(PumpTest, PumpForDispatchesUntilTheTimeIsOver) {
  PostMessageA(mWindow.Get(), WM_USER, 0, 0);
  const DWORD start = GetTickCount();
  PumpFor(150);
  EXPECT_GE(GetTickCount() - start, 150u);
  EXPECT_EQ(gCounted, 1);
}

TEST_F(PumpTest, PumpForSeesTimers) {
  SetTimer(mWindow.Get(), 1, 20, nullptr);
  PumpFor(200);
  KillTimer(mWindow.Get(), 1);
  EXPECT_GE(gCounted, 1);
}

TEST_F(PumpTest, PumpForOutlastsAPendingQuit) {
  PostQuitMessage(3);
  const DWORD start = GetTickCount();
  PumpFor(120);
  EXPECT_GE(GetTickCount() - start, 120u);
  EXPECT_EQ(TakeQuit(), 3);
}

TEST_F(PumpTest, PumpForNothingStillDispatches) {
  PostMessageA(mWindow.Get(), WM_USER, 0, 0);
  PumpFor(0);
  EXPECT_EQ(gCounted, 1);
}

TEST_F(PumpTest, WaitEndsWhenTheHandleIsSignalledByAMessage) {
  const KernelHandle event(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  gToSignal = event.Get();
  PostMessageA(mWindow.Get(), WM_USER, 0, 0);
  PumpUntilSignalled(event.Get());
  EXPECT_EQ(gCounted, 1);
  EXPECT_EQ(WaitForSingleObject(event.Get(), 0), WAIT_OBJECT_0);
}

TEST_F(PumpTest, WaitDispatchesTimersAndKeepsTheQuit) {
  const KernelHandle event(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  gToSignal = event.Get();
  PostQuitMessage(5);
  SetTimer(mWindow.Get(), 1, 30, nullptr);
  PumpUntilSignalled(event.Get());
  KillTimer(mWindow.Get(), 1);
  EXPECT_EQ(WaitForSingleObject(event.Get(), 0), WAIT_OBJECT_0);
  EXPECT_EQ(TakeQuit(), 5);
}

TEST_F(PumpTest, WaitForAProcess) {
  ChildProcess child(Quoted(HelperPath("exit_with.exe")) + " 4");
  ASSERT_TRUE(child.Started());
  const KernelHandle process(OpenProcess(SYNCHRONIZE, FALSE, child.Id()));
  PumpUntilSignalled(process.Get());
  EXPECT_EQ(WaitForSingleObject(process.Get(), 0), WAIT_OBJECT_0);
}

TEST_F(PumpTest, WaitForNoHandleReturns) { PumpUntilSignalled(nullptr); }

TEST_F(PumpTest, DialogKeysReachTheModelessDialog) {
  gCancelled = false;
  const WindowHandle dialog(CreateModelessDialog(IDD_NEWFOLDER, nullptr, NoteCancel, 0));
  ASSERT_TRUE(static_cast<bool>(dialog));
  PostMessageA(dialog.Get(), WM_KEYDOWN, VK_ESCAPE, 0);
  PumpMessages();
  EXPECT_FALSE(gCancelled);
  SetModelessDialog(dialog.Get());
  PostMessageA(dialog.Get(), WM_KEYDOWN, VK_ESCAPE, 0);
  PumpMessages();
  EXPECT_TRUE(gCancelled);
}

}  // namespace
