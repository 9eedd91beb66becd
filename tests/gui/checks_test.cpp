// What start-up tells the user before anything is changed, and how the run ends then.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "gui/gui_run.h"
#include "resources/ids.h"
#include "sequence/stand_in.h"
#include "support/files.h"
#include "support/setup_run.h"

namespace {

constexpr char kName[] = "Installation de Veltrane 6.0c";
constexpr char kErrorTitle[] = "Erreur de Installation de Veltrane 6.0c";
constexpr char kBackgroundClass[] = "VT6InstallWin";

class CheckTest : public testing::Test {
 protected:
  CheckTest() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.WriteScript(mSetup.SimpleScript());
  }
  std::string To() const { return "-D " + Quoted(mSetup.Dest()); }
  // The run shows one message with that caption and ends with the code once it is confirmed.
  void ExpectMessage(const std::string& args, const std::string& part, const std::string& caption,
                     DWORD code) {
    GuiRun run(mSetup, args);
    const Driven box = run.Box(part);
    EXPECT_EQ(box.Caption(), caption);
    EXPECT_EQ(run.OfClass(kBackgroundClass), nullptr);
    box.End(IDOK);
    const RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, code) << outcome.log;
    EXPECT_TRUE(outcome.Logged(part)) << outcome.log;
    EXPECT_FALSE(PathExists(mSetup.Dest()));
  }
  // Waits for the main dialog, leaves it and expects that nothing was changed.
  RunOutcome QuitMain(GuiRun& run) {
    run.Dialog(IDC_MAIN_INSTALL).End(IDCANCEL);
    const RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, 10u) << outcome.log;
    EXPECT_FALSE(PathExists(mSetup.Dest()));
    return outcome;
  }

  SetupRun mSetup;
};

TEST_F(CheckTest, MissingScriptIsShown) {
  DeleteFileA(mSetup.Source("setup.inf").c_str());
  ExpectMessage(To(), "ne peut pas ouvrir setup.inf.", "Setup", 1);
}

TEST_F(CheckTest, WorkstationWithoutConfigurationIsShown) {
  ExpectMessage("-W " + To(), "ne trouve pas le fichier de configuration", "Setup", 2);
}

TEST_F(CheckTest, InvalidCommandLineIsShown) {
  ExpectMessage("-X", "Arguments de ligne de commande non valides.", kErrorTitle, 4);
}

TEST_F(CheckTest, InvalidCommandLineIsShownInTheChosenLanguage) {
  ASSERT_TRUE(CopyFileA((TestFolder() + "\\testdata\\languages\\VTsu6en.dll").c_str(),
                        mSetup.Source("VTsu6en.dll").c_str(), FALSE));
  mSetup.WriteScript(mSetup.SimpleScript("", "", "AppLang=0x0409,en\r\n"));
  GuiRun run(mSetup, "file.txt");
  const Driven box = run.Box("ommand line");
  EXPECT_NE(box.Caption().find("Veltrane 6.0"), std::string::npos) << box.Caption();
  box.End(IDOK);
  EXPECT_EQ(run.End().exitCode, 4u);
}

TEST_F(CheckTest, RunningCopyIsShown) {
  const StandInWindow product("MainVTWin6", 0);
  ExpectMessage(To(), "sont ouverts. \nQuittez cette application", kErrorTitle, 5);
  EXPECT_EQ(product.Asked(), 1);
}

TEST_F(CheckTest, NewerVersionIsShown) {
  SetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Quorvale\\KVRX8", "", "");
  ExpectMessage(To(), "Une version de Veltrane 8 a", kErrorTitle, 7);
}

TEST_F(CheckTest, MissingRightsAreShown) {
  const DeniedKey denied(HKEY_LOCAL_MACHINE, "Software\\Quorvale");
  ExpectMessage(To(), "HKEY_LOCAL_MACHINE\\Software\\Quorvale", "Setup", 14);
}

TEST_F(CheckTest, UnknownTaskIsShown) {
  mSetup.WriteScript(mSetup.SimpleScript("$No_such_task=1\r\n"));
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  // The faulty script is an internal failure first; the user goes on.
  const Driven assertion = run.Box("taskProc");
  EXPECT_EQ(assertion.Caption(), "Echec d'assertion !");
  assertion.End(IDYES);
  run.Answer("L'application Veltrane n'a pas", IDOK);
  EXPECT_EQ(run.End().exitCode, 8u);
}

// ---- Word and PowerPoint ----

constexpr char kOfficeText[] = "Veuillez fermer ces applications";

TEST_F(CheckTest, OfficeIsAskedForUntilItIsClosed) {
  StandInWindow word("OpusApp");
  GuiRun run(mSetup, To());
  const Driven first = run.Box(kOfficeText);
  EXPECT_EQ(first.Caption(), kName);
  EXPECT_EQ(first.Focus(), IDOK);
  const DWORD retried = GetTickCount();
  first.End(IDOK);
  const Driven second = run.Box(kOfficeText);
  EXPECT_GE(GetTickCount() - retried, 200u);
  word.Close();
  EXPECT_TRUE(WaitUntil([] { return FindWindowA("OpusApp", nullptr) == nullptr; }));
  second.End(IDOK);
  QuitMain(run);
}

TEST_F(CheckTest, QuitBesideOfficeIs6) {
  const StandInWindow powerPoint("PP11FrameClass");
  GuiRun run(mSetup, To());
  run.Box(kOfficeText).End(IDCANCEL);
  EXPECT_EQ(run.End().exitCode, 6u);
}

TEST_F(CheckTest, ClosingTheOfficeDialogIs6) {
  const StandInWindow word("OpusApp");
  GuiRun run(mSetup, To());
  const Driven dialog = run.Box(kOfficeText);
  dialog.Close();
  dialog.WaitGone();
  EXPECT_EQ(run.End().exitCode, 6u);
}

TEST_F(CheckTest, ConversionManagerOpensBesidePowerPoint) {
  const StandInWindow powerPoint("PP12FrameClass");
  GuiRun run(mSetup, "-OLEMGR " + To());
  run.Dialog(IDC_OLE_CONVERT_LIST).End(IDOK);
  const RunOutcome outcome = run.End();
  EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
  EXPECT_FALSE(PathExists(mSetup.Dest()));
}

// ---- the log ----

// Names under which the log cannot be created.
void ObstructLog(const SetupRun& setup) { setup.Root().MakeFolder("tmp\\QLSetup.log"); }

TEST_F(CheckTest, NoToTheMissingLogIs15) {
  ObstructLog(mSetup);
  GuiRun run(mSetup, To());
  const Driven box = run.Box(
      "Setup ne peut pas cr\xe9"
      "er de fichier journal.");
  EXPECT_EQ(box.Caption(), "Veltrane");
  box.End(IDNO);
  EXPECT_EQ(run.End().exitCode, 15u);
}

TEST_F(CheckTest, YesToTheMissingLogGoesOn) {
  ObstructLog(mSetup);
  GuiRun run(mSetup, To());
  run.Answer(
      "Voulez-vous continuer sans cr\xe9"
      "er de journal",
      IDYES);
  run.Dialog(IDC_MAIN_INSTALL).End(IDOK);
  run.Dialog(IDC_FINISH_LAUNCH).Close();
  EXPECT_EQ(run.End().exitCode, 0u);
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("a.txt")), "alpha");
}

TEST_F(CheckTest, InvalidCommandLineWinsOverTheMissingLog) {
  ObstructLog(mSetup);
  GuiRun run(mSetup, "-X");
  run.Answer("fichier journal", IDNO);
  run.Answer("Arguments de ligne de commande", IDOK);
  EXPECT_EQ(run.End().exitCode, 4u);
}

// ---- internal failures ----

TEST_F(CheckTest, NoToAnAssertionIs9) {
  GuiRun run(mSetup, "-ASSERT " + To());
  const Driven box = run.Box("Assertion( -assert on the command line )");
  EXPECT_EQ(box.Caption(), "Echec d'assertion !");
  box.End(IDNO);
  EXPECT_EQ(run.End().exitCode, 9u);
}

TEST_F(CheckTest, YesToAnAssertionGoesOn) {
  GuiRun run(mSetup, "-ASSERT " + To());
  run.Answer("-assert on the command line", IDYES);
  EXPECT_TRUE(QuitMain(run).Logged("-assert on the command line"));
}

// ---- the background window ----

TEST_F(CheckTest, BackgroundWindowIsShownMaximisedAndDisabled) {
  GuiRun run(mSetup, To());
  const Driven dialog = run.Dialog(IDC_MAIN_INSTALL);
  const HWND background = run.OfClass(kBackgroundClass);
  ASSERT_NE(background, nullptr);
  EXPECT_TRUE(IsWindowVisible(background));
  EXPECT_FALSE(IsWindowEnabled(background));
  EXPECT_TRUE(IsZoomed(background));
  EXPECT_EQ(CaptionOfWindow(background), kName);
  EXPECT_EQ(GetWindow(dialog.Window(), GW_OWNER), background);
  const LONG style = GetWindowLongA(background, GWL_STYLE);
  constexpr LONG kStyle = WS_OVERLAPPEDWINDOW | WS_DISABLED | WS_MAXIMIZE;
  EXPECT_EQ(style & kStyle, kStyle);
  EXPECT_FALSE(QuitMain(run).Logged("The background window has been turned off."));
}

TEST_F(CheckTest, BackgroundWindowStaysHiddenWhenTheScriptSaysSo) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "no_background=1\r\n"));
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL);
  const HWND background = run.OfClass(kBackgroundClass);
  ASSERT_NE(background, nullptr);
  EXPECT_FALSE(IsWindowVisible(background));
  EXPECT_TRUE(QuitMain(run).Logged("The background window has been turned off.\n"));
}

}  // namespace
