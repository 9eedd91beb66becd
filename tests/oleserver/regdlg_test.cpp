// The conversion manager and its details dialog, driven from a second thread by control
// ids and by the keyboard.
#include "oleserver/regdlg.h"

#include "oleserver/ole_fixture.h"
#include "resources/ids.h"
#include "ui/answerer.h"

namespace {

constexpr char kManager[] = "Gestionnaire de conversion";
constexpr char kSetup[] = "Installation de Veltrane 6.0c";

// What a list box of another thread's dialog holds, in order, with "*" before the selected entry.
std::string Entries(HWND dialog, int id) {
  const HWND list = GetDlgItem(dialog, id);
  const LRESULT count = SendMessageA(list, LB_GETCOUNT, 0, 0);
  const LRESULT selected = SendMessageA(list, LB_GETCURSEL, 0, 0);
  std::string text;
  for (LRESULT i = 0; i < count; ++i) {
    char entry[512] = "";
    SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(entry));
    text += (i == selected ? "*" : "") + std::string(entry) + ";";
  }
  return text;
}

std::string Lists(HWND dialog) {
  return Entries(dialog, IDC_OLE_CONVERT_LIST) + " | " + Entries(dialog, IDC_OLE_KEEP_LIST);
}

// Waits until both lists are as given; an action was only posted.
void ExpectLists(HWND dialog, const std::string& wanted) {
  WaitUntil([&] { return Lists(dialog) == wanted; });
  EXPECT_EQ(Lists(dialog), wanted);
}

bool IsOn(HWND dialog, int id) { return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE; }

// Which of the buttons that depend on a selection are enabled.
std::string Enabled(HWND dialog) {
  std::string text;
  if (IsOn(dialog, IDC_OLE_TO_KEEP)) text += "remove ";
  if (IsOn(dialog, IDC_OLE_TO_CONVERT)) text += "add ";
  if (IsOn(dialog, IDC_OLE_CONVERT_DETAILS)) text += "details1 ";
  if (IsOn(dialog, IDC_OLE_KEEP_DETAILS)) text += "details2 ";
  return text;
}

void Select(HWND dialog, int id, const char* entry) {
  const HWND list = GetDlgItem(dialog, id);
  const LRESULT index =
      SendMessageA(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(entry));
  ASSERT_GE(index, 0) << entry;
  SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
  Press(dialog, id, LBN_SELCHANGE);
}

std::string Field(HWND dialog, int id) { return TextOf(GetDlgItem(dialog, id)); }

HWND FocusOf(HWND dialog) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
  return info.hwndFocus;
}

void SendKey(WORD key, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, 0));
  input.ki.dwFlags = flags;
  EXPECT_EQ(SendInput(1, &input, sizeof input), 1u);
}

// Brings the dialog to the front and presses keys in it, as a user would.
void Keys(HWND dialog, const std::vector<WORD>& keys) {
  SetForegroundWindow(dialog);
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog; }));
  for (const WORD key : keys) {
    SendKey(key, 0);
    SendKey(key, KEYEVENTF_KEYUP);
  }
}

void AltKey(HWND dialog, WORD key) {
  SetForegroundWindow(dialog);
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog; }));
  SendKey(VK_MENU, 0);
  SendKey(key, 0);
  SendKey(key, KEYEVENTF_KEYUP);
  SendKey(VK_MENU, KEYEVENTF_KEYUP);
}

class ManagerTest : public OleTest {
 protected:
  void SetUp() override {
    OleTest::SetUp();
    SetMessageTitles(256, 257, 258, 260);
  }
  // Opens the manager, lets `act` work in it from another thread, and closes it.
  void Manage(const std::function<void(HWND)>& act) {
    Answerer answerer(kManager, [&](HWND dialog) {
      act(dialog);
      Press(dialog, IDOK);
    });
    RunConversionManager(nullptr);
  }
};

TEST_F(ManagerTest, TextsAreFilledIn) {
  Manage([](HWND dialog) {
    EXPECT_EQ(CaptionOf(dialog), kManager);
    EXPECT_EQ(Field(dialog, IDC_OLE_PRODUCT_DETAILS), "&D\xe9tails de Veltrane 6...");
    EXPECT_EQ(Field(dialog, IDC_OLE_INSTALLED_ONLY), "Editeurs install\xe9s &seulement");
    std::string texts;
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
      texts += TextOf(child) + "\n";
    EXPECT_NE(texts.find("&Convertir en Veltrane 6.0 Equation :\n"), std::string::npos) << texts;
    EXPECT_NE(texts.find("&Ne pas convertir :\n"), std::string::npos) << texts;
  });
}

TEST_F(ManagerTest, ServersStandInTheListOfTheirState) {
  AddInstalledServer("Equation.3", kClassA, "Microsoft Equation 3.0", "eq3.exe");
  AddInstalledServer("Equation.2", kClassB, "Microsoft Equation 2.0", "eq2.exe");
  AddInstalledServer("Equation.KVRX5", kClassC, "Veltrane 5.0 Equation", "vt5.exe");
  Convert(kClassA, kOwnClass);
  Convert(kClassB, kClassA);
  Manage([](HWND dialog) {
    ExpectLists(dialog, "*Microsoft Equation 3.0; | *Microsoft Equation 2.0;Veltrane 5.0 Equation;");
    EXPECT_EQ(Enabled(dialog), "remove add details1 details2 ");
  });
}

TEST_F(ManagerTest, BothListsEmptyDisableTheirButtons) {
  Manage([](HWND dialog) {
    ExpectLists(dialog, " | ");
    EXPECT_EQ(Enabled(dialog), "");
    EXPECT_TRUE(IsOn(dialog, IDC_OLE_PRODUCT_DETAILS));
    EXPECT_TRUE(IsOn(dialog, IDOK));
  });
}

TEST_F(ManagerTest, OnlyInstalledServersAreShownAtFirst) {
  AddInstalledServer("Equation.3", kClassA, "here", "eq3.exe");
  AddServer("Equation.2", kClassB, "gone", mDir.Join("gone.exe"));
  AddServer("Equation.4", kClassC, "without program");
  Manage([](HWND dialog) {
    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_OLE_INSTALLED_ONLY), BST_CHECKED);
    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_OLE_ALL), BST_UNCHECKED);
    ExpectLists(dialog, " | *here;");
    SendMessageA(GetDlgItem(dialog, IDC_OLE_ALL), BM_CLICK, 0, 0);
    ExpectLists(dialog, " | *gone;here;without program;");
    SendMessageA(GetDlgItem(dialog, IDC_OLE_INSTALLED_ONLY), BM_CLICK, 0, 0);
    ExpectLists(dialog, " | *here;");
  });
}

TEST_F(ManagerTest, TheSameChoiceAgainKeepsTheSelection) {
  AddInstalledServer("Equation.3", kClassA, "a", "eq3.exe");
  AddInstalledServer("Equation.2", kClassB, "b", "eq2.exe");
  Manage([](HWND dialog) {
    Select(dialog, IDC_OLE_KEEP_LIST, "b");
    SendMessageA(GetDlgItem(dialog, IDC_OLE_INSTALLED_ONLY), BM_CLICK, 0, 0);
    ExpectLists(dialog, " | a;*b;");
  });
}

TEST_F(ManagerTest, NamesAreShownOnceInAList) {
  AddInstalledServer("Equation.3", kClassA, "the same", "eq3.exe");
  AddInstalledServer("Equation.2", kClassB, "the same", "eq2.exe");
  AddInstalledServer("Equation.4", kClassC, "the same", "eq4.exe");
  Convert(kClassC, kOwnClass);
  Manage([](HWND dialog) { ExpectLists(dialog, "*the same; | *the same;"); });
}

TEST_F(ManagerTest, ServersWithoutANameAreShownAsWhatIsKnown) {
  AddInstalledServer("Equation.3", kClassA, "", "eq3.exe");
  AddInstalledServer("Equation", kClassB, "Equation Editor", "eq1.exe");
  Manage([](HWND dialog) { ExpectLists(dialog, " | *Equation.3;Veltrane 1.x-3.x ou Equation Editor 1.x;"); });
}

TEST_F(ManagerTest, MovingConvertsAtOnce) {
  AddInstalledServer("Equation.2", kClassA, "a", "eq2.exe");
  AddInstalledServer("Equation.3", kClassB, "b", "eq3.exe");
  AddInstalledServer("Equation.4", kClassC, "c", "eq4.exe");
  Convert(kClassB, kClassA);
  Manage([](HWND dialog) {
    Select(dialog, IDC_OLE_KEEP_LIST, "b");
    Press(dialog, IDC_OLE_TO_CONVERT);
    ExpectLists(dialog, "*b; | *a;c;");
    EXPECT_EQ(ConvertsTo(kClassB), kOwnClass);
    EXPECT_EQ(ConvertsTo(kClassA), "");
    EXPECT_EQ(Enabled(dialog), "remove add details1 details2 ");
    Press(dialog, IDC_OLE_TO_KEEP);
    ExpectLists(dialog, " | *a;b;c;");
    EXPECT_EQ(ConvertsTo(kClassB), kClassA);
    EXPECT_EQ(Enabled(dialog), "add details2 ");
  });
  EXPECT_EQ(ConvertsTo(kClassB), kClassA);
}

TEST_F(ManagerTest, CancelKeepsWhatWasDone) {
  AddInstalledServer("Equation.3", kClassA, "a", "eq3.exe");
  Answerer answerer(kManager, [](HWND dialog) {
    Press(dialog, IDC_OLE_TO_CONVERT);
    ExpectLists(dialog, "*a; | ");
    Press(dialog, IDCANCEL);
  });
  RunConversionManager(nullptr);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
}

TEST_F(ManagerTest, MovingBesideANamesakeShowsBoth) {
  AddInstalledServer("Equation.3", kClassA, "the same", "eq3.exe");
  AddInstalledServer("Equation.2", kClassB, "the same", "eq2.exe");
  Convert(kClassB, kOwnClass);
  Manage([](HWND dialog) {
    Press(dialog, IDC_OLE_TO_CONVERT);
    WaitUntil([&] { return ConvertsTo(kClassA) == kOwnClass; });
    WaitUntil([&] { return Entries(dialog, IDC_OLE_KEEP_LIST).empty(); });
    EXPECT_EQ(SendDlgItemMessageA(dialog, IDC_OLE_CONVERT_LIST, LB_GETCOUNT, 0, 0), 2);
  });
}

TEST_F(ManagerTest, MovingWithoutASelectionDoesNothing) {
  AddInstalledServer("Equation.3", kClassA, "a", "eq3.exe");
  Manage([](HWND dialog) {
    SendDlgItemMessageA(dialog, IDC_OLE_KEEP_LIST, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    SendMessageA(dialog, WM_COMMAND, IDC_OLE_TO_CONVERT, 0);
    SendMessageA(dialog, WM_COMMAND, IDC_OLE_KEEP_DETAILS, 0);
    ExpectLists(dialog, " | a;");
  });
  EXPECT_EQ(ConvertsTo(kClassA), "");
}

TEST_F(ManagerTest, AnEntryWithoutAServerIsAnInternalError) {
  AddInstalledServer("Equation.3", kClassA, "a", "eq3.exe");
  AssertRecorder rec;
  Manage([](HWND dialog) {
    SendDlgItemMessageA(dialog, IDC_OLE_KEEP_LIST, LB_SETITEMDATA, 0, 0);
    SendMessageA(dialog, WM_COMMAND, IDC_OLE_TO_CONVERT, 0);
    ExpectLists(dialog, " | *a;");
  });
  EXPECT_EQ(rec.Only(), "Can't get COLEEquationReg obj from the list's selection.");
}

TEST_F(ManagerTest, ANewerReleaseIsAskedAboutAndNoKeepsIt) {
  AddInstalledServer("Equation.KVRX7", kClassA, "Veltrane 7.0 Equation", "vt7.exe");
  Manage([](HWND dialog) {
    Press(dialog, IDC_OLE_TO_CONVERT);
    HWND box = nullptr;
    ASSERT_TRUE(WaitUntil([&] { return (box = FindDialog(kSetup)) != nullptr; }));
    EXPECT_FALSE(IsWindowEnabled(dialog));
    Press(box, IDNO);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(box); }));
    ExpectLists(dialog, " | *Veltrane 7.0 Equation;");
    EXPECT_EQ(ConvertsTo(kClassA), "");
  });
  EXPECT_NE(Log().find("Il est d\xe9"
                       "conseill\xe9 de remplacer Veltrane 7.0 Equation par Veltrane 6. \n\nEtes-vous "
                       "s\xfbr de vouloir faire cette modification ?: [No]\n"),
            std::string::npos);
}

TEST_F(ManagerTest, ANewerReleaseIsMovedAfterYes) {
  AddInstalledServer("Equation.KVRX7", kClassA, "Veltrane 7.0 Equation", "vt7.exe");
  Manage([](HWND dialog) {
    Press(dialog, IDC_OLE_TO_CONVERT);
    HWND box = nullptr;
    ASSERT_TRUE(WaitUntil([&] { return (box = FindDialog(kSetup)) != nullptr; }));
    Press(box, IDYES);
    ExpectLists(dialog, "*Veltrane 7.0 Equation; | ");
    EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
    // Giving it back needs no question.
    Press(dialog, IDC_OLE_TO_KEEP);
    ExpectLists(dialog, " | *Veltrane 7.0 Equation;");
  });
  EXPECT_EQ(ConvertsTo(kClassA), kNoClass);
}

TEST_F(ManagerTest, FocusOfADisabledButtonMovesToTheCloseButton) {
  AddInstalledServer("Equation.3", kClassA, "a", "eq3.exe");
  Manage([](HWND dialog) {
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, IDC_OLE_TO_CONVERT)),
                 TRUE);
    ASSERT_EQ(FocusOf(dialog), GetDlgItem(dialog, IDC_OLE_TO_CONVERT));
    Press(dialog, IDC_OLE_TO_CONVERT);
    ExpectLists(dialog, "*a; | ");
    EXPECT_TRUE(WaitUntil([&] { return FocusOf(dialog) == GetDlgItem(dialog, IDOK); }));
  });
}

// ---- details ----

TEST_F(ManagerTest, DetailsShowOneServersRegistration) {
  const std::string program = AddInstalledServer("Equation.3", kClassA, "Microsoft Equation 3.0", "eq3.exe");
  AddServer("Equation.2", kClassB, "Microsoft Equation 2.0");
  Convert(kClassA, kClassB);
  Manage([&](HWND dialog) {
    Press(dialog, IDC_OLE_KEEP_DETAILS);
    HWND details = nullptr;
    ASSERT_TRUE(WaitUntil(
        [&] { return (details = FindDialog("D\xe9tails pour Microsoft Equation 3.0")) != nullptr; }));
    EXPECT_EQ(Field(details, IDC_DETAILS_CLSID), kClassA);
    EXPECT_EQ(Field(details, IDC_DETAILS_PROGID), "Equation.3");
    EXPECT_EQ(Field(details, IDC_DETAILS_SERVER), program);
    EXPECT_EQ(Field(details, IDC_DETAILS_EXISTS), "Oui");
    EXPECT_EQ(Field(details, IDC_DETAILS_AUTOCONVERT), "Microsoft Equation 2.0");
    Press(details, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(details) && IsWindowEnabled(dialog); }));
  });
}

TEST_F(ManagerTest, DetailsOfAConvertedServer) {
  AddServer("Equation", kClassA, "Equation Editor", mDir.Join("gone.exe"));
  Convert(kClassA, kOwnClass);
  Manage([&](HWND dialog) {
    SendMessageA(GetDlgItem(dialog, IDC_OLE_ALL), BM_CLICK, 0, 0);
    Press(dialog, IDC_OLE_CONVERT_DETAILS);
    HWND details = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
      return (details = FindDialog("D\xe9tails pour Veltrane 1.x-3.x ou Equation Editor 1.x")) != nullptr;
    }));
    EXPECT_EQ(Field(details, IDC_DETAILS_SERVER), mDir.Join("gone.exe"));
    EXPECT_EQ(Field(details, IDC_DETAILS_EXISTS), "Non");
    EXPECT_EQ(Field(details, IDC_DETAILS_AUTOCONVERT), "Veltrane 6.0 Equation");
    Press(details, IDCANCEL);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(details); }));
  });
}

TEST_F(ManagerTest, DetailsOfTheProductItself) {
  Manage([&](HWND dialog) {
    Press(dialog, IDC_OLE_PRODUCT_DETAILS);
    HWND details = nullptr;
    ASSERT_TRUE(WaitUntil(
        [&] { return (details = FindDialog("D\xe9tails pour Veltrane 6.0 Equation")) != nullptr; }));
    EXPECT_EQ(Field(details, IDC_DETAILS_CLSID), kOwnClass);
    EXPECT_EQ(Field(details, IDC_DETAILS_PROGID),
              "(n\xe9"
              "ant)");
    EXPECT_EQ(Field(details, IDC_DETAILS_SERVER), "");
    EXPECT_EQ(Field(details, IDC_DETAILS_EXISTS), "Non");
    EXPECT_EQ(Field(details, IDC_DETAILS_AUTOCONVERT),
              "(n\xe9"
              "ant)");
    Press(details, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(details); }));
  });
}

TEST_F(ManagerTest, DetailsOfAServerThatConvertsToAnUnknownClass) {
  AddInstalledServer("Equation.3", kClassA, "a", "eq3.exe");
  Convert(kClassA, kClassB);
  Manage([&](HWND dialog) {
    Press(dialog, IDC_OLE_KEEP_DETAILS);
    HWND details = nullptr;
    ASSERT_TRUE(WaitUntil([&] { return (details = FindDialog("D\xe9tails pour a")) != nullptr; }));
    EXPECT_EQ(Field(details, IDC_DETAILS_AUTOCONVERT), kClassB);
    Press(details, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(details); }));
  });
}

// ---- keyboard ----

TEST_F(ManagerTest, LettersMoveServers) {
  AddInstalledServer("Equation.3", kClassA, "a", "eq3.exe");
  AddInstalledServer("Equation.2", kClassB, "b", "eq2.exe");
  Manage([](HWND dialog) {
    AltKey(dialog, 'N');
    ASSERT_TRUE(WaitUntil([&] { return FocusOf(dialog) == GetDlgItem(dialog, IDC_OLE_KEEP_LIST); }));
    Keys(dialog, {VK_DOWN});
    ExpectLists(dialog, " | a;*b;");
    AltKey(dialog, 'A');
    ExpectLists(dialog, "*b; | *a;");
    AltKey(dialog, 'R');
    ExpectLists(dialog, " | *a;b;");
    EXPECT_EQ(ConvertsTo(kClassB), kNoClass);
  });
}

TEST_F(ManagerTest, BlankPressesTheButtonBehindTheList) {
  AddInstalledServer("Equation.3", kClassA, "a", "eq3.exe");
  Convert(kClassA, kOwnClass);
  Manage([](HWND dialog) {
    ASSERT_TRUE(WaitUntil([&] { return FocusOf(dialog) == GetDlgItem(dialog, IDC_OLE_CONVERT_LIST); }));
    Keys(dialog, {VK_TAB, VK_SPACE});
    ExpectLists(dialog, " | *a;");
    // The pressed button is disabled now; the next one pressed is the close button.
    EXPECT_TRUE(WaitUntil([&] { return FocusOf(dialog) == GetDlgItem(dialog, IDOK); }));
  });
}

TEST_F(ManagerTest, LettersChooseWhatIsShown) {
  AddInstalledServer("Equation.3", kClassA, "here", "eq3.exe");
  AddServer("Equation.2", kClassB, "gone", mDir.Join("gone.exe"));
  Manage([](HWND dialog) {
    AltKey(dialog, 'T');
    ExpectLists(dialog, " | *gone;here;");
    AltKey(dialog, 'S');
    ExpectLists(dialog, " | *here;");
  });
}

TEST_F(ManagerTest, EscapeAndEnterCloseTheManager) {
  for (const WORD key : {VK_ESCAPE, VK_RETURN}) {
    Answerer answerer(kManager, [&](HWND dialog) { Keys(dialog, {key}); });
    RunConversionManager(nullptr);
  }
}

TEST_F(ManagerTest, EscapeClosesTheDetailsOnly) {
  Manage([](HWND dialog) {
    AltKey(dialog, 'D');
    HWND details = nullptr;
    ASSERT_TRUE(WaitUntil(
        [&] { return (details = FindDialog("D\xe9tails pour Veltrane 6.0 Equation")) != nullptr; }));
    Keys(details, {VK_ESCAPE});
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(details) && IsWindowEnabled(dialog); }));
  });
}

TEST_F(ManagerTest, SilentRunOpensNothing) {
  BeSilent();
  RunConversionManager(nullptr);
  EXPECT_EQ(VisibleDialogs(), 0);
}

}  // namespace
