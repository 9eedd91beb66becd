// The small dialogs of the start-up and the sequence.
#include <gtest/gtest.h>
#include <windows.h>

#include "base/runstate.h"
#include "installer/officedlg.h"
#include "installer/olddlg.h"
#include "messages/app_vars.h"
#include "resources/ids.h"
#include "sequence/stand_in.h"
#include "support/leak_check.h"
#include "ui/answerer.h"

namespace {

constexpr char kCaption[] = "Installation de Veltrane";

class SmallDialogs : public AppVarsTest {
 protected:
  void SetUp() override {
    AppVarsTest::SetUp();
    AllowOpenHandles("the system keeps theme and font handles for dialogs");
    AppSetVariable("SetupName", kCaption);
    AppSetVariable("AppName", "Veltrane");
    AppSetVariable("OldAppDir", "C:\\Old place");
  }
};

void Check(HWND dialog, int id) { SendDlgItemMessageA(dialog, id, BM_CLICK, 0, 0); }

TEST_F(SmallDialogs, OldVersionReplaceIsTheDefault) {
  Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDOK); });
  EXPECT_EQ(AskOldVersion(), OldVersionAnswer::kReplace);
}

TEST_F(SmallDialogs, OldVersionKeep) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Check(dialog, IDC_OLD_KEEP);
    Press(dialog, IDOK);
  });
  EXPECT_EQ(AskOldVersion(), OldVersionAnswer::kKeep);
}

TEST_F(SmallDialogs, OldVersionQuit) {
  Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDCANCEL); });
  EXPECT_EQ(AskOldVersion(), OldVersionAnswer::kQuit);
}

TEST_F(SmallDialogs, OldVersionClosedCountsAsQuit) {
  Answerer answerer(kCaption, [](HWND dialog) { PostMessageA(dialog, WM_CLOSE, 0, 0); });
  EXPECT_EQ(AskOldVersion(), OldVersionAnswer::kQuit);
}

TEST_F(SmallDialogs, NoOfficeNoDialog) {
  EXPECT_TRUE(WaitForOfficeToClose());
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(SmallDialogs, OfficeQuit) {
  const StandInWindow word("OpusApp");
  Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDCANCEL); });
  EXPECT_FALSE(WaitForOfficeToClose());
}

TEST_F(SmallDialogs, OfficeDialogClosedCountsAsQuit) {
  const StandInWindow word("OpusApp");
  Answerer answerer(kCaption, [](HWND dialog) { PostMessageA(dialog, WM_CLOSE, 0, 0); });
  EXPECT_FALSE(WaitForOfficeToClose());
}

TEST_F(SmallDialogs, OfficeRetryAfterClosing) {
  StandInWindow word("OpusApp");
  Answerer answerer(kCaption, [&word](HWND dialog) {
    word.Close();
    EXPECT_TRUE(WaitUntil([] { return FindWindowA("OpusApp", nullptr) == nullptr; }));
    Press(dialog, IDOK);
  });
  EXPECT_TRUE(WaitForOfficeToClose());
}

TEST_F(SmallDialogs, OfficeRetryWhileStillOpenAsksAgainAfterAMoment) {
  const StandInWindow word("OpusApp");
  DWORD pressed = 0;
  Answerer answerer(kCaption, [&pressed](HWND first) {
    pressed = GetTickCount();
    Press(first, IDOK);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(first); }));
    HWND second = nullptr;
    EXPECT_TRUE(WaitUntil([&] { return (second = FindDialog(kCaption)) != nullptr; }));
    EXPECT_GE(GetTickCount() - pressed, 200u);
    Press(second, IDCANCEL);
  });
  EXPECT_FALSE(WaitForOfficeToClose());
}

TEST_F(SmallDialogs, OfficeInASilentRun) {
  ::Run().setupFlags = kQuiet;
  const StandInWindow word("OpusApp");
  EXPECT_FALSE(WaitForOfficeToClose());
}

}  // namespace
