// Copying with its questions: newer files, missing sources, disks, space, and the progress window with its
// cancel button.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "gui/gui_run.h"
#include "resources/ids.h"
#include "support/files.h"
#include "support/library_maker.h"
#include "support/registry_guard.h"
#include "support/setup_run.h"

namespace {

constexpr char kStore[] = "Software\\Quorvale\\KVRX6";
constexpr char kNotInstalled[] =
    "L'application Veltrane n'a pas \xe9t\xe9 install\xe9"
    "e correctement.";

std::string Library(unsigned major, const std::string& tail) {
  LibrarySpec spec;
  spec.fileVersion = spec.productVersion = {major, 0, 0, 0};
  spec.translations = {{0x040C, 1252}};
  return MakeLibrary(spec) + tail;
}

class CopyTest : public testing::Test {
 protected:
  std::string To() const { return "-D " + Quoted(mSetup.Dest()); }
  // Starts the installation and confirms the main dialog.
  std::unique_ptr<GuiRun> StartInstall() {
    auto run = std::make_unique<GuiRun>(mSetup, To());
    run->Dialog(IDC_MAIN_INSTALL).End(IDOK);
    return run;
  }
  RunOutcome Finish(GuiRun& run) {
    run.Dialog(IDC_FINISH_LAUNCH).Close();
    RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, 0u) << outcome.log;
    return outcome;
  }
  RunOutcome ExpectFailed(GuiRun& run, DWORD code) {
    const Driven box = run.Box(kNotInstalled);
    EXPECT_EQ(box.Caption(), "Erreur de Installation de Veltrane 6.0c");
    // Closed before the message.
    EXPECT_FALSE(run.Now(IDD_PROGMETER_GRAPH));
    box.End(IDOK);
    RunOutcome outcome = run.End();
    EXPECT_EQ(outcome.exitCode, code) << outcome.log;
    return outcome;
  }

  SetupRun mSetup;
};

// ---- newer files ----

class NewerFileTest : public CopyTest {
 protected:
  NewerFileTest() {
    mSetup.AddFile("first.txt", "first");
    for (const char* name : {"a.dll", "b.dll", "c.dll"}) mSetup.AddFile(name, Library(1, "offered"));
    mSetup.AddFile("last.txt", "last");
    mSetup.WriteScript(mSetup.SimpleScript());
    mSetup.Root().MakeFolder("dest");
    for (const char* name : {"a.dll", "b.dll", "c.dll"})
      WriteWholeFile(mSetup.Dest(name), Library(2, "present"));
  }
  static constexpr char kQuestion[] =
      "est plus r\xe9"
      "cent celui qui va \xeatre install\xe9.";
  Driven Question(GuiRun& run, const std::string& name) {
    const Driven dialog = run.Box("Le fichier " + name + " qui existe actuellement");
    EXPECT_NE(GuiRun::BoxText(dialog.Window()).find(kQuestion), std::string::npos);
    EXPECT_NE(dialog.Control(IDC_ANSWER_YES_TO_ALL), nullptr);
    EXPECT_EQ(dialog.Caption(), "Installation de Veltrane 6.0c");
    return dialog;
  }
  bool Stayed(const char* name) const {
    return ReadWholeFile(mSetup.Dest(name)).find("present") != std::string::npos;
  }
};

TEST_F(NewerFileTest, YesKeepsOneFile) {
  const auto run = StartInstall();
  Question(*run, "a.dll").End(IDC_ANSWER_YES);
  Question(*run, "b.dll").End(IDC_ANSWER_NO);
  Question(*run, "c.dll").End(IDC_ANSWER_YES);
  const RunOutcome outcome = Finish(*run);
  EXPECT_TRUE(Stayed("a.dll"));
  EXPECT_FALSE(Stayed("b.dll"));
  EXPECT_TRUE(Stayed("c.dll"));
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("last.txt")), "last");
  EXPECT_TRUE(outcome.LoggedInOrder("(recommand\xe9)?: [Yes]\n", "(recommand\xe9)?: [No]\n"));
  EXPECT_TRUE(NamesIn(mSetup.Dest(), "ver*.tmp").empty());
}

TEST_F(NewerFileTest, YesToAllAsksNoMore) {
  const auto run = StartInstall();
  Question(*run, "a.dll").End(IDC_ANSWER_NO);
  Question(*run, "b.dll").End(IDC_ANSWER_YES_TO_ALL);
  const RunOutcome outcome = Finish(*run);
  EXPECT_FALSE(Stayed("a.dll"));
  EXPECT_TRUE(Stayed("b.dll"));
  EXPECT_TRUE(Stayed("c.dll"));
  EXPECT_TRUE(outcome.LoggedInOrder("(recommand\xe9)?: [Yes to All]\n", "  Keeping the newer file c.dll\n"));
}

// ---- the progress window ----

TEST_F(NewerFileTest, ProgressWindowStandsBehindTheQuestion) {
  const auto run = StartInstall();
  const Driven question = Question(*run, "a.dll");
  const Driven progress = run->Behind(IDD_PROGMETER_GRAPH);
  EXPECT_EQ(progress.Caption(), "Installation de Veltrane ...");
  EXPECT_EQ(progress.Text(IDC_PROGRESS_TEXT), "Installation : " + mSetup.Dest("a.dll"));
  EXPECT_EQ(progress.Text(IDC_PROGRESS_LABEL), "Fichiers copi\xe9s :");
  EXPECT_EQ(GetWindow(progress.Window(), GW_OWNER), run->OfClass("VT6InstallWin"));
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupMsg"), "Installation : " + mSetup.Dest("a.dll"));
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupPercent"), "0");
  question.End(IDC_ANSWER_YES_TO_ALL);
  Finish(*run);
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupPercent"), "100");
}

TEST_F(NewerFileTest, CancelInTheMiddleOfTheCopyIs12) {
  mSetup.WriteScript(mSetup.SimpleScript("+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Second=pass\r\n"));
  const auto run = StartInstall();
  const Driven question = Question(*run, "a.dll");
  run->Behind(IDD_PROGMETER_GRAPH).Press(IDCANCEL);
  question.End(IDC_ANSWER_NO);
  ExpectFailed(*run, 12);
  // The file that was being copied is complete, the next one never came.
  EXPECT_FALSE(Stayed("a.dll"));
  EXPECT_TRUE(Stayed("b.dll"));
  EXPECT_FALSE(PathExists(mSetup.Dest("last.txt")));
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Second"), std::nullopt);
  EXPECT_TRUE(PathExists(mSetup.ConfigPath()));
}

TEST_F(NewerFileTest, TheHiddenStopControlCancelsToo) {
  const auto run = StartInstall();
  const Driven question = Question(*run, "a.dll");
  run->Behind(IDD_PROGMETER_GRAPH).Press(IDC_PROGRESS_STOP);
  question.End(IDC_ANSWER_YES);
  ExpectFailed(*run, 12);
}

TEST_F(NewerFileTest, ClosingTheProgressWindowCancelsToo) {
  const auto run = StartInstall();
  const Driven question = Question(*run, "a.dll");
  run->Behind(IDD_PROGMETER_GRAPH).Close();
  question.End(IDC_ANSWER_YES);
  ExpectFailed(*run, 12);
}

TEST_F(NewerFileTest, CancelledInstallationCanBeRunAgain) {
  {
    const auto run = StartInstall();
    const Driven question = Question(*run, "a.dll");
    run->Behind(IDD_PROGMETER_GRAPH).Press(IDCANCEL);
    question.End(IDC_ANSWER_YES);
    ExpectFailed(*run, 12);
  }
  const auto run = StartInstall();
  Question(*run, "a.dll").End(IDC_ANSWER_YES_TO_ALL);
  Finish(*run);
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("last.txt")), "last");
}

TEST_F(NewerFileTest, ProgressWindowCanBeTurnedOff) {
  mSetup.WriteScript(mSetup.SimpleScript("", "", "no_progress=1\r\n"));
  const auto run = StartInstall();
  const Driven question = Question(*run, "a.dll");
  EXPECT_FALSE(run->Now(IDD_PROGMETER_GRAPH));
  // What it would have shown is recorded all the same.
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupMsg"), "Installation : " + mSetup.Dest("a.dll"));
  question.End(IDC_ANSWER_YES_TO_ALL);
  EXPECT_TRUE(Finish(*run).Logged("Installation : " + mSetup.Dest("last.txt") + "\n"));
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupPercent"), "100");
}

// No question holds the copying up here: the button is pressed while it runs.
TEST_F(CopyTest, CancelWhileFilesAreFlowing) {
  constexpr int kFiles = 1200;
  for (int i = 0; i < kFiles; ++i) mSetup.AddFile("f" + std::to_string(i) + ".txt", "x");
  mSetup.WriteScript(mSetup.SimpleScript());
  const auto run = StartInstall();
  const Driven progress = run->Dialog(IDD_PROGMETER_GRAPH);
  run->Until("the third file", [this] { return PathExists(mSetup.Dest("f2.txt")); });
  progress.Press(IDCANCEL);
  ExpectFailed(*run, 12);
  EXPECT_TRUE(PathExists(mSetup.Dest("f2.txt")));
  EXPECT_FALSE(PathExists(mSetup.Dest("f" + std::to_string(kFiles - 1) + ".txt")));
}

// ---- missing sources ----

TEST_F(CopyTest, MissingSourceIsReportedAndEndsTheRun) {
  mSetup.AddFile("a.txt", "alpha");
  mSetup.AddFile("b.txt", "beta");
  mSetup.WriteScript(mSetup.SimpleScript());
  DeleteFileA(mSetup.Source("b.txt").c_str());
  const auto run = StartInstall();
  run->Answer("ne peut pas trouver le fichier d'origine " + mSetup.Source("b.txt") + ".", IDOK);
  ExpectFailed(*run, 12);
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
}

class DiskTest : public CopyTest {
 protected:
  DiskTest() {
    mSetup.AddFile("a.txt", "alpha");
    mSetup.AddFile("c.txt", "gamma", "", 2);
    mSetup.AddFile("b.txt", "beta");
    mSetup.WriteScript(mSetup.SimpleScript());
  }
  static constexpr char kInsert[] = "rez le disque 2 dans le lecteur ";
};

TEST_F(DiskTest, SecondDiskIsAskedForOnceAfterTheFirst) {
  const auto run = StartInstall();
  const Driven box = run->Box(kInsert);
  EXPECT_TRUE(PathExists(mSetup.Dest("a.txt")));
  EXPECT_TRUE(PathExists(mSetup.Dest("b.txt")));
  EXPECT_FALSE(PathExists(mSetup.Dest("c.txt")));
  EXPECT_NE(box.Control(IDCANCEL), nullptr);
  box.End(IDOK);
  const RunOutcome outcome = Finish(*run);
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("c.txt")), "gamma");
  EXPECT_TRUE(outcome.Logged("puis cliquez sur OK pour continuer.: [OK]\n"));
}

TEST_F(DiskTest, CancelledSecondDiskIs12) {
  const auto run = StartInstall();
  run->Answer(kInsert, IDCANCEL);
  const RunOutcome outcome = ExpectFailed(*run, 12);
  EXPECT_TRUE(outcome.Logged("puis cliquez sur OK pour continuer.: [Cancel]\n"));
  EXPECT_FALSE(PathExists(mSetup.Dest("c.txt")));
}

TEST_F(DiskTest, MissingFileIsAskedForUntilItIsThere) {
  DeleteFileA(mSetup.Source("c.txt").c_str());
  const auto run = StartInstall();
  run->Answer(kInsert, IDOK);
  const std::string question = "ne peut pas copier " + mSetup.Source("c.txt") + " \xe0 " +
                               mSetup.Dest("c.txt") + ". Ins\xe9rez le DISQUE 2";
  run->Answer(question, IDOK);
  const Driven again = run->Box(question);
  WriteWholeFile(mSetup.Source("c.txt"), "gamma");
  again.End(IDOK);
  Finish(*run);
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("c.txt")), "gamma");
}

TEST_F(DiskTest, CancelledMissingFileIs12) {
  DeleteFileA(mSetup.Source("c.txt").c_str());
  const auto run = StartInstall();
  run->Answer(kInsert, IDOK);
  run->Answer("Ins\xe9rez le DISQUE 2 dans le lecteur", IDCANCEL);
  ExpectFailed(*run, 12);
}

// ---- space ----

class SpaceTest : public CopyTest {
 protected:
  // More than any volume has: 4 TB.
  SpaceTest() {
    std::string keys, records;
    for (int i = 0; i < 2000; ++i) {
      const std::string name = "f" + std::to_string(i);
      keys += name + "\r\n";
      records += name + "=1," + name + ",<ProgDir>\\" + name + ",2147483647\r\n";
    }
    mSetup.WriteScript(SetupRun::Startup() + "[easy_install]\r\n" + keys + "[files]\r\n" + records);
  }
};

TEST_F(SpaceTest, CancelIs13) {
  const auto run = StartInstall();
  const Driven box = run->Box("Espace insuffisant dans ");
  const std::string text = GuiRun::BoxText(box.Window());
  EXPECT_NE(text.find("4194305998Ko n\xe9"
                      "cessaires."),
            std::string::npos)
      << text;
  box.End(IDCANCEL);
  const RunOutcome outcome = run->End();
  EXPECT_EQ(outcome.exitCode, 13u) << outcome.log;
  EXPECT_TRUE(outcome.Logged("de toutes fa\xe7ons ?: [Cancel]\n"));
  EXPECT_FALSE(PathExists(mSetup.ConfigPath()));
}

TEST_F(SpaceTest, OkGoesOn) {
  const auto run = StartInstall();
  run->Answer("Espace insuffisant dans ", IDOK);
  // The files do not exist, which comes to light only now.
  run->Answer("ne peut pas trouver le fichier d'origine " + mSetup.Source("f0"), IDOK);
  ExpectFailed(*run, 12);
}

// ---- the configuration file, an empty list ----

TEST_F(CopyTest, ConfigurationFileThatCannotBeWrittenIs11) {
  mSetup.AddFile("a.txt", "alpha");
  mSetup.WriteScript(mSetup.SimpleScript());
  mSetup.Root().MakeFolder("dest\\VT6.tmp\\in the way");
  const auto run = StartInstall();
  const Driven box = run->Box("crire le fichier de configuration dans " + mSetup.Dest() + ".");
  EXPECT_FALSE(run->Now(IDD_PROGMETER_GRAPH));
  box.End(IDOK);
  EXPECT_EQ(run->End().exitCode, 11u);
  EXPECT_FALSE(PathExists(mSetup.Dest("a.txt")));
}

TEST_F(CopyTest, InstallationWithoutFilesWritesNoConfiguration) {
  mSetup.WriteScript(SetupRun::Startup() +
                     "[easy_install]\r\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Only=this\r\n");
  const auto run = StartInstall();
  const RunOutcome outcome = Finish(*run);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\Made", "Only"), "this");
  EXPECT_FALSE(PathExists(mSetup.ConfigPath()));
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, kStore, "SetupPercent"), std::nullopt);
  EXPECT_FALSE(
      outcome.Logged("Ecriture des donn\xe9"
                     "es de configuration"));
}

TEST_F(CopyTest, ReadOnlyFileIsReplaced) {
  mSetup.AddFile("a.txt", "alpha");
  mSetup.WriteScript(mSetup.SimpleScript());
  mSetup.Root().MakeFolder("dest");
  WriteWholeFile(mSetup.Dest("a.txt"), "old");
  SetFileAttributesA(mSetup.Dest("a.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  const auto run = StartInstall();
  Finish(*run);
  EXPECT_EQ(ReadWholeFile(mSetup.Dest("a.txt")), "alpha");
}

}  // namespace
