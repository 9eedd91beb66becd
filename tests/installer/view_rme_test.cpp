#include "installer/view_rme.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/runstate.h"
#include "messages/app_vars.h"
#include "messages/logfile.h"
#include "resources/ids.h"
#include "support/leak_check.h"
#include "support/process.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"
#include "ui/answerer.h"

namespace {

constexpr char kCaption[] =
    "Installation termin\xe9"
    "e";
constexpr char kRunOnce[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";

class FinishTest : public AppVarsTest {
 protected:
  FinishTest() : mRunOnce(HKEY_CURRENT_USER, kRunOnce, "VTTestSetup") {}
  void SetUp() override {
    AppVarsTest::SetUp();
    AllowOpenHandles("the system keeps theme and font handles for dialogs");
    AppSetVariable("SetupName", "Installation de Veltrane");
    AppSetVariable("AppName", "Veltrane");
    AppSetVariable("ProgName", "VTTestSetup");
    OpenLog(mRoot.Path().c_str(), "test.log");
  }
  // A readme and a product that cannot be opened: nothing is left running.
  void SetMissingFiles() {
    AppSetVariable("ViewReadMePath", mRoot.Join("none.exe").c_str());
    AppSetVariable("ReadMeArgs", "/page 2");
    AppSetVariable("ProgDir", mRoot.Path().c_str());
    AppSetVariable("AppProgName", "none");
  }
  std::string Log() const {
    std::string text = mRoot.Read("test.log");
    return text.substr(text.find("\r\n") + 2);  // without the header
  }
  static bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  RegistryValueGuard mRunOnce;
  TempDir mRoot;
};

// ---- which dialog ----

TEST_F(FinishTest, PlainDialog) { EXPECT_EQ(FinishingDialog(), 2700u); }

TEST_F(FinishTest, ReadMeDialog) {
  AppSetVariable("ViewReadMeDlg", "1");
  EXPECT_EQ(FinishingDialog(), 2600u);
  AppSetVariable("ViewReadMeDlg", "0");
  EXPECT_EQ(FinishingDialog(), 2700u);
}

TEST_F(FinishTest, RestartDialogComesFirst) {
  AppSetVariable("ViewReadMeDlg", "1");
  ::Run().restartNeeded = true;
  EXPECT_EQ(FinishingDialog(), 2800u);
}

// ---- acting on the choice ----

TEST_F(FinishTest, RestartAccepted) {
  ::Run().restartNeeded = true;
  ActOnFinishChoice({true, false, false});
  EXPECT_TRUE(::Run().rebootRequested);
  EXPECT_EQ(Log(),
            "Installation requires reboot: user chose to allow reboot.\r\n"
            "User chose NOT to display the ReadMe.\r\n");
}

TEST_F(FinishTest, RestartAcceptedWithReadMeRegistersItForTheNextLogon) {
  ::Run().restartNeeded = true;
  SetMissingFiles();
  ActOnFinishChoice({true, true, false});
  const std::string data = mRoot.Join("none.exe") + " /page 2";
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kRunOnce, "VTTestSetup"), data);
  EXPECT_EQ(Log(),
            "Installation requires reboot: user chose to allow reboot.\r\n"
            "Openning ReadMe on restart. RunOnce = VTTestSetup: " +
                data + "\r\n");
}

TEST_F(FinishTest, RestartDeclinedOpensTheReadMeAtOnce) {
  ::Run().restartNeeded = true;
  ::Run().setupFlags = kQuiet;  // the report of the missing file is only logged
  SetMissingFiles();
  ActOnFinishChoice({false, true, false});
  EXPECT_FALSE(::Run().rebootRequested);
  const std::string log = Log();
  EXPECT_TRUE(Contains(log, "Installation requires reboot: user chose to NOT reboot.\r\nOpening ReadMe: " +
                                mRoot.Join("none.exe") + " /page 2\r\n"))
      << log;
  // The failure is reported.
  EXPECT_TRUE(Contains(log, "Une erreur est survenue. " + mRoot.Join("none.exe"))) << log;
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, kRunOnce, "VTTestSetup"), std::nullopt);
}

TEST_F(FinishTest, RestartDeclinedWithoutReadMe) {
  ::Run().restartNeeded = true;
  ActOnFinishChoice({false, false, false});
  EXPECT_EQ(Log(),
            "Installation requires reboot: user chose to NOT reboot.\r\n"
            "User chose NOT to display the ReadMe.\r\n");
}

TEST_F(FinishTest, NoRestartNothingChosen) {
  ActOnFinishChoice({true, false, false});
  EXPECT_EQ(Log(), "Installation does not require reboot.\r\nUser chose NOT to display the ReadMe.\r\n");
}

TEST_F(FinishTest, LaunchThatFailsIsAnErrorLine) {
  SetMissingFiles();
  ActOnFinishChoice({true, false, true});
  EXPECT_TRUE(Contains(Log(), "Installation does not require reboot.\r\n##ERROR: Launch app = Fail\r\n"))
      << Log();
}

TEST_F(FinishTest, LaunchesTheProductThenTheReadMeASecondLater) {
  // The product is a program that ends at once.
  ASSERT_TRUE(CopyFileA(HelperPath("exit_with.exe").c_str(), mRoot.Join("product.exe").c_str(), TRUE));
  SetMissingFiles();
  AppSetVariable("AppProgName", "product");
  ::Run().setupFlags = kQuiet;
  const DWORD start = GetTickCount();
  ActOnFinishChoice({true, true, true});
  EXPECT_GE(GetTickCount() - start, 1000u);
  EXPECT_TRUE(
      Contains(Log(), "Installation does not require reboot.\r\nLaunch app = Success\r\nOpening ReadMe: "))
      << Log();
  EXPECT_TRUE(WaitUntil([this] { return DeleteFileA(mRoot.Join("product.exe").c_str()) != FALSE; }));
}

TEST_F(FinishTest, ReadMeAloneDoesNotWait) {
  SetMissingFiles();
  ::Run().setupFlags = kQuiet;
  const DWORD start = GetTickCount();
  ActOnFinishChoice({true, true, false});
  EXPECT_LT(GetTickCount() - start, 1000u);
  EXPECT_TRUE(Contains(Log(), "Opening ReadMe: ")) << Log();
}

TEST_F(FinishTest, DeclinedWithoutRestartDoesNothing) {
  SetMissingFiles();
  ActOnFinishChoice({false, true, true});
  EXPECT_EQ(Log(), "Installation does not require reboot.\r\n");
}

TEST_F(FinishTest, NoReadMeWithoutAPath) {
  ActOnFinishChoice({true, true, false});
  EXPECT_EQ(Log(), "Installation does not require reboot.\r\nUser chose NOT to display the ReadMe.\r\n");
}

// ---- the dialogs ----

bool IsChecked(HWND dialog, int id) {
  return SendDlgItemMessageA(dialog, id, BM_GETCHECK, 0, 0) == BST_CHECKED;
}
std::string TextOf(HWND window) {
  char text[2048] = "";
  SendMessageA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
  return text;
}
bool HasText(HWND dialog, const std::string& wanted) {
  for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    if (TextOf(child) == wanted) return true;
  return false;
}
LONG WeightOf(HWND control) {
  LOGFONTA font = {};
  GetObjectA(reinterpret_cast<HGDIOBJ>(SendMessageA(control, WM_GETFONT, 0, 0)), sizeof font, &font);
  return font.lfWeight;
}

TEST_F(FinishTest, ReadMeDialogIsFilled) {
  SetMissingFiles();
  AppSetVariable("ViewReadMeDlg", "1");
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      EXPECT_TRUE(IsChecked(dialog, IDC_FINISH_LAUNCH));
      EXPECT_TRUE(IsChecked(dialog, IDC_FINISH_README));
      EXPECT_EQ(TextOf(GetDlgItem(dialog, IDC_FINISH_LAUNCH)), "&D\xe9marrer Veltrane maintenant");
      EXPECT_FALSE(TextOf(GetDlgItem(dialog, IDC_FINISH_NOTICE)).empty());
      EXPECT_EQ(WeightOf(GetDlgItem(dialog, IDC_FINISH_NOTICE)), 700);
      EXPECT_EQ(TextOf(GetDlgItem(dialog, IDC_FINISH_README_HINT)),
                "Choisissez \"OK\" pour visualiser ces informations maintenant.");
      EXPECT_TRUE(IsWindowVisible(GetDlgItem(dialog, IDC_FINISH_README_HINT)));
      SendDlgItemMessageA(dialog, IDC_FINISH_LAUNCH, BM_CLICK, 0, 0);
      SendDlgItemMessageA(dialog, IDC_FINISH_README, BM_CLICK, 0, 0);
      Press(dialog, IDOK);
    });
    RunFinishingStep();
  }
  EXPECT_EQ(std::string(AppGetExpanded("Readme_RestartBtn")), "OK");
  EXPECT_EQ(Log(), "Installation does not require reboot.\r\nUser chose NOT to display the ReadMe.\r\n");
}

TEST_F(FinishTest, RestartDialogIsFilled) {
  SetMissingFiles();
  ::Run().restartNeeded = true;
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      EXPECT_TRUE(HasText(dialog, "Vous devez relancer Windows pour terminer l'installation de Veltrane."));
      EXPECT_TRUE(HasText(
          dialog, "Choisissez \"Red\xe9marrer maintenant\" pour visualiser ces informations maintenant."));
      EXPECT_EQ(GetDlgItem(dialog, IDC_FINISH_LAUNCH), nullptr);
      Press(dialog, IDOK);
    });
    RunFinishingStep();
  }
  EXPECT_TRUE(::Run().rebootRequested);
  EXPECT_TRUE(Contains(Log(), "Openning ReadMe on restart."));
}

TEST_F(FinishTest, RestartDialogWithoutAReadMeHidesTheBoxAndItsHint) {
  ::Run().restartNeeded = true;
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, IDC_FINISH_README)));
      EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, IDC_FINISH_README_HINT)));
      Press(dialog, IDCANCEL);
    });
    RunFinishingStep();
  }
  EXPECT_FALSE(::Run().rebootRequested);
  EXPECT_TRUE(Contains(Log(), "User chose NOT to display the ReadMe."));
}

TEST_F(FinishTest, ClosingTheRestartDialogDeclines) {
  ::Run().restartNeeded = true;
  {
    Answerer answerer(kCaption, [](HWND dialog) { PostMessageA(dialog, WM_CLOSE, 0, 0); });
    RunFinishingStep();
  }
  EXPECT_FALSE(::Run().rebootRequested);
}

TEST_F(FinishTest, PlainDialogHasNoReadMeBox) {
  SetMissingFiles();
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      EXPECT_EQ(GetDlgItem(dialog, IDC_FINISH_README), nullptr);
      EXPECT_TRUE(IsChecked(dialog, IDC_FINISH_LAUNCH));
      Press(dialog, IDOK);
    });
    RunFinishingStep();
  }
  EXPECT_TRUE(Contains(Log(), "Launch app = Fail\r\nUser chose NOT to display the ReadMe.\r\n")) << Log();
}

}  // namespace
