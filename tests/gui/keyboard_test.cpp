// The keyboard alone, in whole runs: every key is real input to the window in front.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/handle.h"
#include "gui/gui_run.h"
#include "resources/ids.h"
#include "support/files.h"
#include "support/library_maker.h"
#include "support/setup_run.h"

namespace {

class KeyboardTest : public testing::Test {
 protected:
  KeyboardTest() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.AddFile("Veltrane.exe", ReadWholeFile(HelperPath("note_run.exe")));
    mSetup.WriteScript(mSetup.SimpleScript("", "&remove_keep_prefs?\r\n&remove_keep_fonts?\r\n",
                                           "enable_remove_keep_prefs=1\r\nenable_remove_keep_fonts=1\r\n") +
                       "[remove_keep_prefs]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Prefs=kept\r\n"
                       "[remove_keep_fonts]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Fonts=kept\r\n");
  }
  void TearDown() override {
    const std::string product = mSetup.Dest("Veltrane.exe");
    EXPECT_TRUE(WaitUntil([&] {
      return !PathExists(product) ||
             static_cast<bool>(FileHandle(
                 CreateFileA(product.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr)));
    }));
  }
  std::string To() const { return "-D " + Quoted(mSetup.Dest()); }
  RunOutcome Ended(GuiRun& run, DWORD code) {
    RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, code) << outcome.log;
    return outcome;
  }

  SetupRun mSetup;
};

TEST_F(KeyboardTest, InstallStartAndRemove) {
  {
    GuiRun run(mSetup, To());
    const Driven main = run.Dialog(IDC_MAIN_INSTALL);
    EXPECT_EQ(GetForegroundWindow(), main.Window());
    main.Keys({VK_RETURN});
    const Driven finish = run.Dialog(IDC_FINISH_LAUNCH);
    EXPECT_TRUE(finish.Checked(IDC_FINISH_LAUNCH));
    finish.Keys({VK_RETURN});
    EXPECT_TRUE(Ended(run, 0).Logged("Launch app = Success\n"));
    EXPECT_TRUE(WaitUntil([this] { return PathExists(mSetup.Dest("Veltrane.exe.ran")); }));
    DeleteFileA(mSetup.Dest("Veltrane.exe.ran").c_str());
  }
  mSetup.CopySetupToDest();
  GuiRun run(mSetup, mSetup.Dest(), "-R");
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  // Tab goes through what can be used; the blank unchecks the fonts.
  main.Keys({VK_TAB, VK_TAB});
  main.WaitFocus(IDC_MAIN_OPTION_FIRST + 1);
  main.Keys({VK_SPACE});
  run.Until("the fonts unchecked", [&] { return !main.Checked(IDC_MAIN_OPTION_FIRST + 1); });
  main.Keys({VK_RETURN});
  run.Box("a supprim\xe9 Veltrane").Keys({VK_RETURN});
  Ended(run, 0);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Prefs"), "kept");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Fonts"), std::nullopt);
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
  EXPECT_TRUE(WaitUntil([this] { return !PathExists(mSetup.Dest("Setup.exe")); }));
}

TEST_F(KeyboardTest, TabGoesThroughTheMainDialogInOrder) {
  GuiRun run(mSetup, To());
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  main.WaitFocus(IDC_MAIN_INSTALL);
  for (const int id : {IDC_MAIN_FOLDER, IDC_MAIN_BROWSE, IDOK, IDCANCEL, IDC_HELP_BUTTON, IDC_MAIN_INSTALL}) {
    main.Keys({VK_TAB});
    main.WaitFocus(id);
  }
  main.Keys({VK_ESCAPE});
  Ended(run, 10);
}

TEST_F(KeyboardTest, MnemonicsReachTheControlsOfTheMainDialog) {
  GuiRun run(mSetup, To());
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  main.AltKey('S');
  run.Until("the removal", [&] { return main.Checked(IDC_MAIN_REMOVE); });
  main.AltKey('O');
  run.Until("the fonts unchecked", [&] { return !main.Checked(IDC_MAIN_OPTION_FIRST + 1); });
  main.AltKey('N');
  run.Until("the installation", [&] { return main.Checked(IDC_MAIN_INSTALL); });
  main.AltKey('D');
  main.WaitFocus(IDC_MAIN_FOLDER);
  main.AltKey('Q');
  Ended(run, 10);
}

TEST_F(KeyboardTest, TypedFolderAndArrows) {
  GuiRun run(mSetup, "-D " + Quoted(mSetup.Root().Join("d")));
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  // Arrows change between the two buttons.
  main.Keys({VK_DOWN});
  run.Until("the removal", [&] { return main.Checked(IDC_MAIN_REMOVE); });
  main.Keys({VK_UP});
  run.Until("the installation", [&] { return main.Checked(IDC_MAIN_INSTALL); });
  main.AltKey('D');
  main.WaitFocus(IDC_MAIN_FOLDER);
  main.Keys({VK_END});
  main.Type("est");
  run.Until("the typed folder", [&] { return main.Text(IDC_MAIN_FOLDER) == mSetup.Dest(); });
  main.Keys({VK_RETURN});
  const Driven finish = run.Dialog(IDC_FINISH_LAUNCH);
  finish.Keys({VK_SPACE});
  run.Until("the unchecked start", [&] { return !finish.Checked(IDC_FINISH_LAUNCH); });
  finish.Keys({VK_RETURN});
  EXPECT_FALSE(Ended(run, 0).Logged("Launch app"));
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("a.txt")), "alpha");
}

TEST_F(KeyboardTest, EmptyFolderIsTypedAgain) {
  GuiRun run(mSetup, To());
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  main.AltKey('D');
  main.WaitFocus(IDC_MAIN_FOLDER);
  main.Keys({VK_END});
  for (size_t i = 0; i < mSetup.Dest().size(); ++i) main.Keys({VK_BACK});
  run.Until("the empty field", [&] { return main.Text(IDC_MAIN_FOLDER).empty(); });
  main.Keys({VK_RETURN});
  run.Box("Vous devez indiquer").Keys({VK_RETURN});
  main.WaitFocus(IDC_MAIN_FOLDER);
  main.Type("dest");
  main.Keys({VK_RETURN});
  run.Dialog(IDC_FINISH_LAUNCH).Keys({VK_ESCAPE});
  Ended(run, 0);
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("a.txt")), "alpha");
}

TEST_F(KeyboardTest, BrowseAndCreateAFolder) {
  const std::string base = mSetup.Root().MakeFolder("base");
  GuiRun run(mSetup, "-D " + Quoted(base));
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  main.AltKey('P');
  const Driven browse = run.Dialog(IDC_BROWSE_CREATE);
  browse.AltKey('C');
  const Driven create = run.Dialog(IDC_NEWFOLDER_NAME);
  create.WaitFocus(IDC_NEWFOLDER_NAME);
  create.Type("neu");
  create.Keys({VK_RETURN});
  create.WaitGone();
  EXPECT_TRUE(IsFolder(base + "\\neu"));
  run.Until("the folder dialog", [&] { return IsWindowEnabled(browse.Window()) != FALSE; });
  browse.Keys({VK_RETURN});
  browse.WaitGone();
  run.Until("the folder in the field", [&] { return main.Text(IDC_MAIN_FOLDER) == base + "\\neu"; });
  main.Keys({VK_ESCAPE});
  Ended(run, 10);
}

TEST_F(KeyboardTest, EscapeCancelsTheCopy) {
  for (int i = 0; i < 1200; ++i) mSetup.AddFile("f" + std::to_string(i) + ".txt", "x");
  mSetup.WriteScript(mSetup.SimpleScript());
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).Keys({VK_RETURN});
  const Driven progress = run.Dialog(IDD_PROGMETER_GRAPH);
  run.Until("the third file", [this] { return PathExists(mSetup.Dest("f2.txt")); });
  progress.Keys({VK_ESCAPE});
  run.Box("L'application Veltrane n'a pas").Keys({VK_RETURN});
  Ended(run, 12);
  EXPECT_FALSE(PathExists(mSetup.Dest("f1199.txt")));
}

TEST_F(KeyboardTest, RestartIsTheDefaultAndEscapeDeclinesIt) {
  mSetup.Root().MakeFolder("dest");
  WriteWholeFile(mSetup.Dest("a.txt"), "in use");
  const FileHandle held(CreateFileA(mSetup.Dest("a.txt").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
  GuiRun run(mSetup, To());
  run.Dialog(IDC_MAIN_INSTALL).Keys({VK_RETURN});
  const Driven finish = run.Dialog(IDC_FINISH_README);
  finish.WaitFocus(IDOK);
  finish.Keys({VK_ESCAPE});
  EXPECT_TRUE(Ended(run, 0).Logged("user chose to NOT reboot.\n"));
}

TEST_F(KeyboardTest, EarlierVersionIsAnsweredByLetters) {
  const std::string old = mSetup.Root().MakeFolder("old");
  mSetup.WriteScript(mSetup.SimpleScript("", "", "OldAppDir=" + old + "\r\n"));
  GuiRun run(mSetup, "");
  const Driven dialog = run.Dialog(IDC_OLD_REPLACE);
  dialog.WaitFocus(IDC_OLD_REPLACE);
  dialog.AltKey('C');
  run.Until("the choice to keep", [&] { return dialog.Checked(IDC_OLD_KEEP); });
  dialog.AltKey('R');
  run.Until("the choice to replace", [&] { return dialog.Checked(IDC_OLD_REPLACE); });
  dialog.Keys({VK_RETURN});
  const Driven main = run.Dialog(IDC_MAIN_INSTALL);
  EXPECT_EQ(main.Text(IDC_MAIN_FOLDER), old);
  main.Keys({VK_ESCAPE});
  Ended(run, 10);
}

}  // namespace
