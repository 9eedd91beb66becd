// The keyboard in the program's own dialogs and boxes: real key input, as a user's.
#include <windows.h>

#include "resources/ids.h"
#include "ui/answerer.h"
#include "ui/browse.h"
#include "ui/cnewfold.h"
#include "ui/langpick.h"
#include "ui/progmetr.h"
#include "ui/ui_fixture.h"

namespace {

const char kSetup[] = "Installation de Veltrane 6.0c";

// Brings the dialog to the front and presses keys in it.
void Keys(HWND dialog, const std::vector<WORD>& keys) {
  SetForegroundWindow(dialog);
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog; }));
  for (const WORD key : keys) {
    INPUT input[2] = {};
    for (INPUT& one : input) {
      one.type = INPUT_KEYBOARD;
      one.ki.wVk = key;
      one.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, 0));
    }
    input[1].ki.dwFlags = KEYEVENTF_KEYUP;
    ASSERT_EQ(SendInput(2, input, sizeof input[0]), 2u);
  }
}

class KeysTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    SetMessageTitles(256, 257, 258, 260);
  }
};

TEST_F(KeysTest, EnterIsYesInTheThreeButtonQuestion) {
  Answerer answerer(kSetup, [](HWND dialog) { Keys(dialog, {VK_RETURN}); });
  EXPECT_EQ(AskYesToAll("Garder ?"), kAnswerYes);
}

TEST_F(KeysTest, LettersAnswerTheThreeButtonQuestion) {
  {
    Answerer answerer(kSetup, [](HWND dialog) { Keys(dialog, {'N'}); });
    EXPECT_EQ(AskYesToAll("Garder ?"), kAnswerNo);
  }
  {
    Answerer answerer(kSetup, [](HWND dialog) { Keys(dialog, {'T'}); });
    EXPECT_EQ(AskYesToAll("Garder ?"), kAnswerYesToAll);
  }
  Answerer answerer(kSetup, [](HWND dialog) { Keys(dialog, {'O'}); });
  EXPECT_EQ(AskYesToAll("Garder ?"), kAnswerYes);
}

TEST_F(KeysTest, EscapeDoesNotAnswerTheThreeButtonQuestion) {
  // Had Escape ended the dialog, the answer would be another; the letter behind it does.
  Answerer answerer(kSetup, [](HWND dialog) { Keys(dialog, {VK_ESCAPE, 'N'}); });
  EXPECT_EQ(AskYesToAll("Garder ?"), kAnswerNo);
}

TEST_F(KeysTest, TabAndBlankReachTheSecondButton) {
  Answerer answerer(kSetup, [](HWND dialog) { Keys(dialog, {VK_TAB, VK_SPACE}); });
  EXPECT_EQ(AskYesToAll("Garder ?"), kAnswerYesToAll);
}

TEST_F(KeysTest, EscapeCancelsAQuestionWithCancel) {
  Answerer answerer(kSetup, [](HWND dialog) { Keys(dialog, {VK_ESCAPE}); });
  EXPECT_EQ(AskOkCancel("Disque 2"), kAnswerCancel);
}

TEST_F(KeysTest, EnterTakesTheDefaultNo) {
  Answerer answerer(kSetup, [](HWND dialog) { Keys(dialog, {VK_RETURN}); });
  EXPECT_EQ(AskYesNoDefaultNo("Relancer ?"), kAnswerNo);
}

TEST_F(KeysTest, EscapeInTheProgressWindowAborts) {
  ShowProgressWindow();
  const HWND window = FindDialog("Installation de Veltrane ...");
  ASSERT_NE(window, nullptr);
  SetForegroundWindow(window);
  Keys(window, {VK_ESCAPE});
  EXPECT_TRUE(WaitUntil([] {
    PumpMessages();
    return ::Run().abort;
  }));
  CloseProgressWindow();
}

TEST_F(KeysTest, TypedFolderNameAndEnter) {
  Str created;
  Answerer answerer("Nouveau dossier", [&](HWND dialog) {
    SendMessageA(GetDlgItem(dialog, IDC_NEWFOLDER_NAME), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>(mDir.Join("n").c_str()));
    Keys(dialog, {VK_END, 'E', 'U', VK_RETURN});
  });
  EXPECT_TRUE(AskNewFolder(nullptr, created));
  EXPECT_EQ(created.ICompare(mDir.Join("neu").c_str()), 0) << created.Chars();
}

TEST_F(KeysTest, ArrowAndEnterChooseTheLanguage) {
  Answerer answerer("Choix de la langue", [](HWND dialog) { Keys(dialog, {VK_DOWN, VK_RETURN}); });
  EXPECT_EQ(PickLanguage({0x040c, 0x0409, 0x0407}), 1);
}

TEST_F(KeysTest, EscapeTakesTheFirstLanguage) {
  Answerer answerer("Choix de la langue", [](HWND dialog) { Keys(dialog, {VK_DOWN, VK_ESCAPE}); });
  EXPECT_EQ(PickLanguage({0x040c, 0x0409}), 0);
}

TEST_F(KeysTest, EscapeLeavesTheChosenFolder) {
  Str folder = mDir.Path().c_str();
  Answerer answerer("Choix du dossier", [](HWND dialog) { Keys(dialog, {VK_ESCAPE}); });
  EXPECT_FALSE(BrowseForFolder(nullptr, folder));
  EXPECT_EQ(folder, mDir.Path().c_str());
}

}  // namespace
