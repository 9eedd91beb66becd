#include "installer/maindlg.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/runstate.h"
#include "messages/app_vars.h"
#include "messages/logfile.h"
#include "resources/ids.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/leak_check.h"
#include "support/temp_dir.h"
#include "ui/answerer.h"

namespace {

constexpr char kCaption[] = "Installation de Veltrane";

std::string TextOf(HWND dialog, int id) {
  char text[2048] = "";
  SendDlgItemMessageA(dialog, id, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
  return text;
}
bool IsShown(HWND dialog, int id) {
  const HWND control = GetDlgItem(dialog, id);
  return control != nullptr && IsWindowVisible(control);
}
bool IsEnabled(HWND dialog, int id) { return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE; }
bool IsChecked(HWND dialog, int id) {
  return SendDlgItemMessageA(dialog, id, BM_GETCHECK, 0, 0) == BST_CHECKED;
}
void SetFolder(HWND dialog, const std::string& folder) {
  SendDlgItemMessageA(dialog, IDC_MAIN_FOLDER, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(folder.c_str()));
}
void Click(HWND dialog, int id) { SendDlgItemMessageA(dialog, id, BM_CLICK, 0, 0); }

class MainDialogTest : public AppVarsTest {
 protected:
  void SetUp() override {
    AppVarsTest::SetUp();
    AllowOpenHandles("the system keeps theme and font handles for dialogs");
    AppSetVariable("SetupName", kCaption);
    AppSetVariable("AppName", "Veltrane");
    AppSetVariable("ProgDir", mRoot.Join("dest").c_str());
    AppSetVariable("InstallFromDir", mRoot.Path().c_str());
  }
  std::string ProgDir() const { return AppGetExpanded("ProgDir").Chars(); }
  TempDir mRoot;
};

// ---- the rules ----

TEST_F(MainDialogTest, ModeOfEachButton) {
  EXPECT_EQ(ModeOfButton(IDC_MAIN_INSTALL, false), kModeInstall);
  EXPECT_EQ(ModeOfButton(IDC_MAIN_INSTALL, true), kModeWorkstation);
  EXPECT_EQ(ModeOfButton(IDC_MAIN_REMOVE, false), kModeRemove);
  EXPECT_EQ(ModeOfButton(IDC_MAIN_REMOVE, true), kModeRemove);
}

TEST_F(MainDialogTest, ButtonBetweenTheTwoIsNoSelection) {
  AssertRecorder recorder;
  EXPECT_EQ(ModeOfButton(IDC_MAIN_WORKSTATION, false), kModeInstall);
  EXPECT_EQ(recorder.Only(), "Unknown Selection Mode");
}

TEST_F(MainDialogTest, FolderLabels) {
  EXPECT_EQ(FolderLabel(kModeInstall), 262u);
  EXPECT_EQ(FolderLabel(kModeWorkstation), 263u);
  EXPECT_EQ(FolderLabel(kModeRemove), 261u);
}

TEST_F(MainDialogTest, UnknownMode) {
  AssertRecorder recorder;
  FolderLabel(static_cast<SelectionMode>(4));
  EXPECT_EQ(recorder.Only(), "Unknown mode.");
}

TEST_F(MainDialogTest, FolderIsFreeUnlessLocked) {
  EXPECT_TRUE(MayChangeFolder(kModeInstall));
  EXPECT_TRUE(MayChangeFolder(kModeWorkstation));
  EXPECT_FALSE(MayChangeFolder(kModeRemove));
  AppSetVariable("lock_ProgDir", "1");
  EXPECT_FALSE(MayChangeFolder(kModeInstall));
  EXPECT_FALSE(MayChangeFolder(kModeWorkstation));
  EXPECT_FALSE(MayChangeFolder(kModeRemove));
}

TEST_F(MainDialogTest, TextWhenAnEarlierInstallationWasFound) {
  EXPECT_EQ(InstallText(), 1u);
  AppSetVariable("ini_ProgDir", "C:\\old");
  EXPECT_EQ(InstallText(), 2u);
}

// ---- without the dialog ----

class QuietMain : public MainDialogTest {
 protected:
  void SetUp() override {
    MainDialogTest::SetUp();
    ::Run().setupFlags = kQuiet;
    OpenLog(mRoot.Path().c_str(), "test.log");
  }
  std::string Log() const { return mRoot.Read("test.log"); }
};

TEST_F(QuietMain, InstallCreatesTheFolder) {
  AppSetVariable("ProgDir", mRoot.Join("a\\b c").c_str());
  EXPECT_TRUE(AcceptFolder(kModeInstall, mRoot.Join("a\\b c").c_str()));
  EXPECT_TRUE(IsFolder(mRoot.Join("a\\b c")));
}

TEST_F(QuietMain, RelativeFolderIsMadeFull) {
  char before[MAX_PATH];
  GetCurrentDirectoryA(MAX_PATH, before);
  SetCurrentDirectoryA(mRoot.Path().c_str());
  EXPECT_TRUE(AcceptFolder(kModeInstall, "below"));
  SetCurrentDirectoryA(before);
  EXPECT_EQ(ProgDir(), mRoot.Join("below"));
}

TEST_F(QuietMain, EmptyFolder) {
  EXPECT_FALSE(AcceptFolder(kModeInstall, ""));
  EXPECT_FALSE(AcceptFolder(kModeRemove, "  "));
  const std::string log = Log();
  EXPECT_NE(log.find("Vous devez indiquer \xe0 Installation de Veltrane le nom du dossier dans lequel vous "
                     "voulez installer "
                     "Veltrane."),
            std::string::npos);
  EXPECT_NE(log.find("le nom du dossier \xe0 partir duquel vous voulez supprimer Veltrane."),
            std::string::npos);
}

TEST_F(QuietMain, RemovalNeedsTheFolder) {
  EXPECT_FALSE(AcceptFolder(kModeRemove, mRoot.Join("none").c_str()));
  EXPECT_NE(
      Log().find("Le dossier " + mRoot.Join("none") +
                 " n'existe pas. Installation de Veltrane ne peut pas supprimer Veltrane de ce dossier."),
      std::string::npos);
}

TEST_F(QuietMain, FileWhereTheFolderShouldBe) {
  mRoot.Write("dest", "a file");
  EXPECT_FALSE(AcceptFolder(kModeInstall, mRoot.Join("dest").c_str()));
  EXPECT_NE(Log().find(mRoot.Join("dest")), std::string::npos);
}

TEST_F(QuietMain, SourceFolderIsChecked) {
  AppVars().Clear();
  AssertRecorder recorder;
  EXPECT_TRUE(AcceptFolder(kModeInstall, mRoot.Join("dest").c_str()));
  EXPECT_EQ(recorder.Texts(), std::vector<std::string>({"AppGetVariable(sInstallFromDir,installFromDir)",
                                                        "installFromDir.Length()"}));
}

TEST_F(QuietMain, DefaultsOfAnInstall) {
  AppSetVariable("enable_remove_keep_fonts", "1");
  AcceptMainDefaults();
  EXPECT_TRUE(IsFolder(mRoot.Join("dest")));
  EXPECT_TRUE(::Run().install);
  EXPECT_FALSE(AppVariableExists("do_remove_keep_fonts"));
}

TEST_F(QuietMain, DefaultsOfARemovalKeepWhatIsOffered) {
  ::Run().install = false;
  mRoot.MakeFolder("dest");
  AppSetVariable("enable_remove_keep_fonts", "1");
  AcceptMainDefaults();
  EXPECT_EQ(std::string(AppGetExpanded("do_remove_keep_fonts")), "1");
  EXPECT_FALSE(AppVariableExists("do_remove_keep_prefs"));
}

TEST_F(QuietMain, DefaultsGoOnWithAMissingFolder) {
  ::Run().install = false;
  AcceptMainDefaults();
  EXPECT_EQ(ProgDir(), mRoot.Join("dest"));
  EXPECT_NE(Log().find("n'existe pas"), std::string::npos);
}

// ---- the dialog ----

TEST_F(MainDialogTest, InstallMode) {
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      EXPECT_TRUE(IsChecked(dialog, IDC_MAIN_INSTALL));
      EXPECT_TRUE(IsEnabled(dialog, IDC_MAIN_INSTALL));
      EXPECT_FALSE(IsChecked(dialog, IDC_MAIN_REMOVE));
      EXPECT_EQ(TextOf(dialog, IDC_MAIN_FOLDER_LABEL), "&Dossier de destination :");
      EXPECT_EQ(TextOf(dialog, IDC_MAIN_FOLDER), mRoot.Join("dest"));
      EXPECT_EQ(TextOf(dialog, IDC_MAIN_TEXT).rfind("Choisissez OK pour installer Veltrane, ses polices", 0),
                0u);
      EXPECT_TRUE(IsShown(dialog, IDC_MAIN_TEXT));
      EXPECT_TRUE(IsEnabled(dialog, IDC_MAIN_FOLDER));
      EXPECT_TRUE(IsEnabled(dialog, IDC_MAIN_BROWSE));
      EXPECT_FALSE(IsShown(dialog, IDC_MAIN_OPTIONS_LABEL));
      EXPECT_FALSE(IsShown(dialog, IDC_MAIN_OPTION_FIRST));
      EXPECT_FALSE(IsShown(dialog, IDC_MAIN_WORKSTATION_NOTE));
      Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_TRUE(::Run().install);
  EXPECT_TRUE(IsFolder(mRoot.Join("dest")));
}

TEST_F(MainDialogTest, QuitChangesNothing) {
  {
    Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDCANCEL); });
    EXPECT_FALSE(ShowMainDialog());
  }
  EXPECT_FALSE(PathExists(mRoot.Join("dest")));
  EXPECT_TRUE(::Run().install);
}

TEST_F(MainDialogTest, TypedFolderIsTaken) {
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      SetFolder(dialog, " " + mRoot.Join("other place") + " ");
      Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_EQ(ProgDir(), mRoot.Join("other place"));
  EXPECT_FALSE(PathExists(mRoot.Join("dest")));
}

TEST_F(MainDialogTest, LockedFolder) {
  AppSetVariable("lock_ProgDir", "1");
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      EXPECT_FALSE(IsEnabled(dialog, IDC_MAIN_FOLDER));
      EXPECT_FALSE(IsEnabled(dialog, IDC_MAIN_BROWSE));
      Press(dialog, IDCANCEL);
    });
    EXPECT_FALSE(ShowMainDialog());
  }
}

TEST_F(MainDialogTest, WorkstationMode) {
  ::Run().setupFlags = kWorkstation;
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      EXPECT_NE(TextOf(dialog, IDC_MAIN_INSTALL), "I&nstaller");
      EXPECT_EQ(TextOf(dialog, IDC_MAIN_FOLDER_LABEL), "&Dossier o\xf9 Veltrane est install\xe9 :");
      EXPECT_TRUE(IsShown(dialog, IDC_MAIN_WORKSTATION_NOTE));
      EXPECT_TRUE(IsEnabled(dialog, IDC_MAIN_FOLDER));
      Press(dialog, IDCANCEL);
    });
    EXPECT_FALSE(ShowMainDialog());
  }
}

TEST_F(MainDialogTest, RemovalRunCannotInstall) {
  ::Run().install = false;
  mRoot.MakeFolder("dest");
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      EXPECT_TRUE(IsChecked(dialog, IDC_MAIN_REMOVE));
      EXPECT_FALSE(IsEnabled(dialog, IDC_MAIN_INSTALL));
      EXPECT_EQ(TextOf(dialog, IDC_MAIN_FOLDER_LABEL), "Supprimer Veltrane du &dossier :");
      EXPECT_FALSE(IsEnabled(dialog, IDC_MAIN_FOLDER));
      EXPECT_FALSE(IsEnabled(dialog, IDC_MAIN_BROWSE));
      EXPECT_FALSE(IsShown(dialog, IDC_MAIN_TEXT));
      EXPECT_EQ(TextOf(dialog, IDC_MAIN_OPTIONS_LABEL)
                    .rfind("Tous les composants de Veltrane seront supprim\xe9s.", 0),
                0u);
      EXPECT_TRUE(IsShown(dialog, IDC_MAIN_OPTIONS_LABEL));
      EXPECT_FALSE(IsShown(dialog, IDC_MAIN_OPTION_FIRST));
      Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_FALSE(::Run().install);
}

TEST_F(MainDialogTest, ChoosingRemovalClearsTheInstallFlag) {
  mRoot.MakeFolder("dest");
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      Click(dialog, IDC_MAIN_REMOVE);
      EXPECT_FALSE(IsEnabled(dialog, IDC_MAIN_FOLDER));
      EXPECT_TRUE(IsShown(dialog, IDC_MAIN_OPTIONS_LABEL));
      Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_FALSE(::Run().install);
}

TEST_F(MainDialogTest, SwitchingBackAndForth) {
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      Click(dialog, IDC_MAIN_REMOVE);
      Click(dialog, IDC_MAIN_INSTALL);
      EXPECT_EQ(TextOf(dialog, IDC_MAIN_FOLDER_LABEL), "&Dossier de destination :");
      EXPECT_TRUE(IsEnabled(dialog, IDC_MAIN_FOLDER));
      EXPECT_TRUE(IsShown(dialog, IDC_MAIN_TEXT));
      EXPECT_FALSE(IsShown(dialog, IDC_MAIN_OPTIONS_LABEL));
      Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_TRUE(::Run().install);
}

TEST_F(MainDialogTest, OnlyOfferedOptionsAreEnabledAndChecked) {
  ::Run().install = false;
  mRoot.MakeFolder("dest");
  AppSetVariable("enable_remove_keep_fonts", "1");
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      constexpr int kPrefs = IDC_MAIN_OPTION_FIRST, kFonts = IDC_MAIN_OPTION_FIRST + 1;
      EXPECT_EQ(TextOf(dialog, IDC_MAIN_OPTIONS_LABEL), "Supprimer tous les composants de Veltrane sauf :");
      EXPECT_EQ(TextOf(dialog, kPrefs),
                "Conserver vos &pr\xe9"
                "f\xe9rences, au cas o\xf9 vous voudriez r\xe9-installer Veltrane");
      EXPECT_EQ(TextOf(dialog, kFonts),
                "Conserver les p&olices pour pouvoir afficher et imprimer les \xe9quations existantes");
      EXPECT_FALSE(IsEnabled(dialog, kPrefs));
      EXPECT_FALSE(IsChecked(dialog, kPrefs));
      EXPECT_TRUE(IsEnabled(dialog, kFonts));
      EXPECT_TRUE(IsChecked(dialog, kFonts));
      Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_EQ(std::string(AppGetExpanded("do_remove_keep_fonts")), "1");
  EXPECT_FALSE(AppVariableExists("do_remove_keep_prefs"));
}

TEST_F(MainDialogTest, UncheckedOptionIsSetToZero) {
  ::Run().install = false;
  mRoot.MakeFolder("dest");
  AppSetVariable("enable_remove_keep_prefs", "1");
  AppSetVariable("do_remove_keep_prefs", "1");
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      Click(dialog, IDC_MAIN_OPTION_FIRST);
      Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_EQ(std::string(AppGetExpanded("do_remove_keep_prefs")), "0");
}

// Answers the error box that OK brings up and then does `act` in the dialog, which must still be there.
void RefusedThen(HWND dialog, const std::string& text, const std::function<void()>& act) {
  Press(dialog, IDOK);
  HWND box = nullptr;
  EXPECT_TRUE(WaitUntil([&] { return (box = FindDialog("Setup")) != nullptr; }));
  char shown[1024] = "";
  SendDlgItemMessageA(box, 0xFFFF, WM_GETTEXT, sizeof shown, reinterpret_cast<LPARAM>(shown));
  EXPECT_NE(std::string(shown).find(text), std::string::npos) << shown;
  Press(box, IDOK);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(box) && IsWindowEnabled(dialog); }));
  EXPECT_TRUE(IsWindow(dialog));
  act();
}

TEST_F(MainDialogTest, EmptyFolderKeepsTheDialogOpen) {
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      SetFolder(dialog, "");
      RefusedThen(dialog, "le nom du dossier dans lequel vous voulez installer Veltrane.",
                  [&] { Press(dialog, IDCANCEL); });
    });
    EXPECT_FALSE(ShowMainDialog());
  }
}

TEST_F(MainDialogTest, EmptyFolderOnRemovalKeepsTheDialogOpen) {
  AppSetVariable("ProgDir", "");
  ::Run().install = false;
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      RefusedThen(dialog, "duquel vous voulez supprimer Veltrane.", [&] { Press(dialog, IDCANCEL); });
    });
    EXPECT_FALSE(ShowMainDialog());
  }
}

TEST_F(MainDialogTest, MissingFolderOnRemovalKeepsTheDialogOpen) {
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      Click(dialog, IDC_MAIN_REMOVE);
      RefusedThen(dialog, "n'existe pas", [&] {
        Click(dialog, IDC_MAIN_INSTALL);
        Press(dialog, IDOK);
      });
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_TRUE(::Run().install);
}

TEST_F(MainDialogTest, FolderThatCannotBeMadeKeepsTheDialogOpen) {
  mRoot.Write("dest", "a file");
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      RefusedThen(dialog, mRoot.Join("dest"), [&] {
        SetFolder(dialog, mRoot.Join("dest2"));
        Press(dialog, IDOK);
      });
    });
    EXPECT_TRUE(ShowMainDialog());
  }
  EXPECT_EQ(ProgDir(), mRoot.Join("dest2"));
}

TEST_F(MainDialogTest, PressesItselfWithoutADialogWanted) {
  AppSetVariable("InstallNoDlg", "1");
  EXPECT_TRUE(ShowMainDialog());
  EXPECT_TRUE(IsFolder(mRoot.Join("dest")));
}

TEST_F(MainDialogTest, SelfPressedButRefusedStaysOpen) {
  AppSetVariable("InstallNoDlg", "1");
  mRoot.Write("dest", "a file");
  {
    Answerer answerer("Setup", [&](HWND box) { Press(box, IDOK); });
    Answerer dialogAnswerer(kCaption, [&](HWND dialog) {
      // The box came up once; the dialog waits for its user now.
      EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(dialog) && FindDialog("Setup") == nullptr; }));
      Press(dialog, IDCANCEL);
    });
    EXPECT_FALSE(ShowMainDialog());
  }
}

}  // namespace
