// Word: versions, startup folders, macros installed and removed, failures and what is said about them.
#include "office/word.h"

#include "office_fixture.h"
#include "platform/unix_tool.h"
#include "ui/answerer.h"

namespace {

constexpr char kCaption[] = "Installation de Veltrane 6.0c";
constexpr char kErrorCaption[] = "Erreur de Installation de Veltrane 6.0c";
constexpr char kQuestion[] =
    "Installation de Veltrane 6.0c vous permet d'ajouter des fonctionnalit\xe9s \xe0 Microsoft Word, (voir "
    "le manuel "
    "d'utilisateur). \n\nVoulez-vous installer les commandes de Veltrane pour Microsoft Word ?";

std::string Copying(const std::string& from, const std::string& to) {
  return "Copying " + from + " to " + to + "\n";
}

class WordStartup : public OfficeTest {
 protected:
  static std::string Startup(int version) {
    Str path;
    return FindWordStartup(WordRow(FindWordRow(version)), path) ? path.Chars() : "none";
  }
  static void SetRoot(int version, const char* key, const std::string& path) {
    SetRegistryString(HKEY_LOCAL_MACHINE,
                      std::string(kOffice) + "\\" + std::to_string(version) + ".0\\" + key + "\\InstallRoot",
                      "PATH", path);
  }
};

TEST_F(WordStartup, NoWordKeyMeansNoWord) { EXPECT_EQ(Startup(11), "none"); }

TEST_F(WordStartup, TheVersionsAreTheKnownFour) {
  for (const int version : {9, 10, 11, 12}) EXPECT_GE(FindWordRow(version), 0);
  EXPECT_EQ(FindWordRow(8), -1);
  EXPECT_EQ(FindWordRow(13), -1);
}

TEST_F(WordStartup, LiesBelowWordsInstallRoot) {
  SetRoot(11, "Word", "C:\\Office\\");
  EXPECT_EQ(Startup(11), "C:\\Office\\Startup");
}

TEST_F(WordStartup, ABackslashIsSupplied) {
  SetRoot(12, "Word", "C:\\Office");
  EXPECT_EQ(Startup(12), "C:\\Office\\Startup");
}

TEST_F(WordStartup, QuotesAreStripped) {
  SetRoot(11, "Word", "\"C:\\Office\\\"");
  EXPECT_EQ(Startup(11), "C:\\Office\\Startup");
}

TEST_F(WordStartup, AVersionBelowNineHasNoStartupSubfolder) {
  SetRoot(8, "Word", "\"C:\\Office\\\"");
  const WordVersion old = {0, 8, "REG*HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Office\\8.0\\Word", "", 0,
                           0, 0};
  Str path;
  EXPECT_TRUE(FindWordStartup(old, path));
  EXPECT_STREQ(path, "C:\\Office\\");
}

TEST_F(WordStartup, TheSharedKeyServesWhenWordsOwnHasNoPath) {
  SetRegistryString(HKEY_LOCAL_MACHINE, WordKey(10), "x", "y");
  SetRoot(10, "Common", "C:\\Shared\\");
  EXPECT_EQ(Startup(10), "C:\\Shared\\Startup");
}

TEST_F(WordStartup, WithoutAnyInstallRootThereIsNone) {
  SetRegistryString(HKEY_LOCAL_MACHINE, WordKey(9), "x", "y");
  EXPECT_EQ(Startup(9), "none");
}

TEST_F(WordStartup, TheSharedKeyAloneIsNoWord) {
  SetRoot(9, "Common", "C:\\Shared\\");
  EXPECT_EQ(Startup(9), "none");
}

class WordMacros : public OfficeTest {
 protected:
  void SetUp() override {
    OfficeTest::SetUp();
    BeSilent();
  }
};

TEST_F(WordMacros, RecordingLogsWhereWordIs) {
  const std::string startup = AddWord(11, "Office11");
  EXPECT_EQ(Task("set_word_macro", WordArgs(11)), "MS Word 11 found, Office Loc is " + startup + "\n");
  EXPECT_EQ(Task("set_word_macro", WordArgs(12)), "MS Word 12 not found, Office Loc is \n");
}

TEST_F(WordMacros, AnUnknownVersionIsLogged) {
  EXPECT_EQ(
      Task("set_word_macro", "14,a.dot,C:\\x"),
      "    Error: MS Word version 14 is not supported by this version of Installation de Veltrane 6.0c.\n");
}

TEST_F(WordMacros, ActInPassOneOnly) {
  AddWord(11, "Office11");
  for (const char* task : {"set_word_macro", "run_word_macro", "remove_word_macro", "fixup_word_migration",
                           "check_unsupported_office_version"})
    EXPECT_EQ(Task(task, "11,a,b", 0), "") << task;
}

TEST_F(WordMacros, WithoutAPassAssert) {
  AssertRecorder recorder;
  EXPECT_EQ(TaskDispatch("$run_word_macro", "False", nullptr), 1);
  EXPECT_EQ(recorder.Only(), "data");
}

TEST_F(WordMacros, BothFilesGoIntoTheStartupFolder) {
  const std::string startup = AddWord(11, "Office11");
  Task("set_word_macro", WordArgs(11));
  EXPECT_EQ(Task("run_word_macro", "False"),
            "Installation des commandes pour Microsoft Word 2003\n" +
                Copying(mDir.Join("macros\\vt.dot"), startup + "\\vt.dot") +
                Copying(mDir.Join("macros\\vt2.dot"), startup + "\\vt2.dot"));
  EXPECT_EQ(mDir.Read("Office11\\Startup\\vt.dot"), "first macro");
  EXPECT_EQ(mDir.Read("Office11\\Startup\\vt2.dot"), "second macro");
}

TEST_F(WordMacros, AVersionThatWasNotRecordedGetsNone) {
  AddWord(11, "Office11");
  EXPECT_EQ(Task("run_word_macro", "False"), "");
  EXPECT_FALSE(mDir.Has("Office11\\Startup\\vt.dot"));
}

TEST_F(WordMacros, NewestVersionFirst) {
  AddWord(9, "Office9");
  AddWord(12, "Office12");
  Task("set_word_macro", WordArgs(9));
  Task("set_word_macro", WordArgs(12));
  const std::string log = Task("run_word_macro", "FALSE");
  EXPECT_LT(log.find("Microsoft Word 2007"), log.find("Microsoft Word 2000"));
  EXPECT_TRUE(mDir.Has("Office9\\Startup\\vt.dot"));
}

TEST_F(WordMacros, ASharedFolderGetsOneCopy) {
  const std::string startup = AddWord(12, "Shared");
  SetRegistryString(HKEY_LOCAL_MACHINE, WordKey(11) + "\\InstallRoot", "PATH", mDir.Join("SHARED"));
  Task("set_word_macro", WordArgs(11));
  Task("set_word_macro", WordArgs(12));
  EXPECT_EQ(Task("run_word_macro", "False"),
            "Installation des commandes pour Microsoft Word 2007\n" +
                Copying(mDir.Join("macros\\vt.dot"), startup + "\\vt.dot") +
                Copying(mDir.Join("macros\\vt2.dot"), startup + "\\vt2.dot") +
                "Installation des commandes pour Microsoft Word 2003\n"
                "    The startup folder for Microsoft Word 2003 is also used by Microsoft Word 2007. vt.dot "
                "was not "
                "installed.\n");
}

TEST_F(WordMacros, AnotherWordIsAnUnknownArgument) {
  AddWord(11, "Office11");
  Task("set_word_macro", WordArgs(11));
  EXPECT_EQ(Task("run_word_macro", "yes"),
            "The arguments for the task run_word_macro in Setup.inf are unknown.\n");
  EXPECT_FALSE(mDir.Has("Office11\\Startup\\vt.dot"));
}

TEST_F(WordMacros, ASilentRunAnswersYes) {
  AddWord(11, "Office11");
  Task("set_word_macro", WordArgs(11));
  EXPECT_EQ(Task("run_word_macro", "True").substr(0, sizeof kQuestion + 7),
            std::string(kQuestion) + ": [Yes]\n");
  EXPECT_TRUE(mDir.Has("Office11\\Startup\\vt.dot"));
}

TEST_F(WordMacros, EmptyFileNamesAreSkipped) {
  AddWord(11, "Office11");
  Task("set_word_macro", "11");
  EXPECT_EQ(Task("run_word_macro", "False"), "Installation des commandes pour Microsoft Word 2003\n");
  EXPECT_EQ(Task("remove_word_macro", "Veltrane"),
            "  Task_remove_word_macro(name: remove_word_macro, args: Veltrane)\n"
            "Suppression des commandes pour Microsoft Word\n"
            "Suppression des commandes pour Microsoft Word 2003\n");
}

TEST_F(WordMacros, NamesThatAreTooLongAreCut) {
  AddWord(11, "Office11");
  AssertRecorder recorder;
  Task("set_word_macro", "11," + std::string(300, 'n'));
  EXPECT_EQ(recorder.Only(), "Str::Length(text) <= room");
}

TEST_F(WordMacros, RemovalDeletesBothFilesWhereverWordIs) {
  const std::string startup = AddWord(11, "Office11");
  Task("set_word_macro", WordArgs(11));
  Task("run_word_macro", "False");
  EXPECT_EQ(Task("remove_word_macro", "Veltrane"),
            "  Task_remove_word_macro(name: remove_word_macro, args: Veltrane)\n"
            "Suppression des commandes pour Microsoft Word\n"
            "Suppression des commandes pour Microsoft Word 2003\n"
            "Deleting " +
                startup + "\\vt.dot, result = success\nDeleting " + startup +
                "\\vt2.dot, result = success\n");
  EXPECT_FALSE(mDir.Has("Office11\\Startup\\vt.dot"));
}

TEST_F(WordMacros, RemovalOfAMissingFileIsAnError) {
  const std::string startup = AddWord(11, "Office11");
  Task("set_word_macro", WordArgs(11));
  EXPECT_NE(
      Task("remove_word_macro", "").find("##ERROR: Deleting " + startup + "\\vt.dot, result = failure\n"),
      std::string::npos);
}

// ---- failures ----

TEST_F(WordMacros, AMissingFolderIsReportedWithReasonAndAdvice) {
  const std::string startup = AddWord(9, "Office9");
  RemoveDirectoryA(startup.c_str());
  Task("set_word_macro", WordArgs(9));
  const std::string log = Task("run_word_macro", "False");
  EXPECT_NE(
      log.find(
          "Installation de Veltrane 6.0c ne peut pas installer les Commandes Veltrane pour Microsoft "
          "Word 2000 (Office 2000) pour la raison suivante : le dossier de d\xe9marrage de Word n'existe "
          "pas.\nFichier concern\xe9 : vt.dot.\n"),
      std::string::npos)
      << log;
  EXPECT_NE(
      log.find("cr\xe9"
               "ez le dossier de d\xe9marrage de Word 2000, g\xe9n\xe9ralement situ\xe9 sous C:\\Program "
               "Files\\Microsoft Office\\Office\\Startup"),
      std::string::npos)
      << log;
  EXPECT_EQ(log.find("vt2.dot"), std::string::npos) << "the second file is not tried";
}

TEST_F(WordMacros, AMissingSourceLeavesAWritableFolderAsTheReason) {
  AddWord(12, "Office12");
  Task("set_word_macro", "12,none.dot," + mDir.Join("macros"));
  const std::string log = Task("run_word_macro", "False");
  EXPECT_NE(log.find("impossible d'\xe9"
                     "crire dans le dossier de d\xe9marrage de Word"),
            std::string::npos)
      << log;
}

// A startup folder that refuses new files until the object's end.
class LockedFolder {
 public:
  explicit LockedFolder(const std::string& folder) : mFolder(folder) {
    const std::string unixFolder = UnixPath(folder);
    mLocked =
        !unixFolder.empty() && StartUnix("chmod 555 " + unixFolder) && WaitUntil([&] { return IsLocked(); });
  }
  ~LockedFolder() {
    if (mLocked && StartUnix("chmod 755 " + UnixPath(mFolder))) WaitUntil([&] { return !IsLocked(); });
  }
  LockedFolder(const LockedFolder&) = delete;
  LockedFolder& operator=(const LockedFolder&) = delete;
  bool Locked() const { return mLocked; }

 private:
  bool IsLocked() const { return (GetFileAttributesA(mFolder.c_str()) & FILE_ATTRIBUTE_READONLY) != 0; }
  std::string mFolder;
  bool mLocked = false;
};

TEST_F(WordMacros, AWriteProtectedFolderIsReportedWithItsReason) {
  const LockedFolder folder(AddWord(11, "Office11"));
  if (!folder.Locked()) GTEST_SKIP() << "no folder can be write-protected here";
  Task("set_word_macro", WordArgs(11));
  const std::string log = Task("run_word_macro", "False");
  EXPECT_NE(log.find("le dossier de d\xe9marrage de Word est prot\xe9g\xe9 contre l'\xe9"
                     "criture"),
            std::string::npos)
      << log;
}

TEST_F(WordMacros, AWriteProtectedFolderCanBeKeptSilentAndSilencesTheRest) {
  const std::string startup = AddWord(12, "Office12");
  const std::string missing = AddWord(11, "Office11");
  RemoveDirectoryA(missing.c_str());
  const LockedFolder folder(startup);
  if (!folder.Locked()) GTEST_SKIP() << "no folder can be write-protected here";
  AppSetVariable("NoROMacroErrs", "1");
  Task("set_word_macro", WordArgs(11));
  Task("set_word_macro", WordArgs(12));
  EXPECT_EQ(Task("run_word_macro", "False"), "Installation des commandes pour Microsoft Word 2007\n" +
                                                 Copying(mDir.Join("macros\\vt.dot"), startup + "\\vt.dot") +
                                                 "    Couldn't install vt.dot to the target folder, " +
                                                 startup + ", because the folder is locked.\n" +
                                                 "Installation des commandes pour Microsoft Word 2003\n" +
                                                 Copying(mDir.Join("macros\\vt.dot"), missing + "\\vt.dot") +
                                                 "    Couldn't install vt.dot to the target folder, " +
                                                 missing + ", because the folder doesn't exist.\n");
}

// ---- questions on screen ----

class WordQuestion : public OfficeTest {};

TEST_F(WordQuestion, NoIsConfirmedAndNothingInstalled) {
  SetMessageTitles(256, 257, 258, 260);
  AddWord(11, "Office11");
  Task("set_word_macro", WordArgs(11));
  int32_t pass = 1;
  {
    Answerer question(kCaption, [](HWND box) {
      Press(box, IDNO);
      WaitUntil([&] { return !IsWindow(box); });
      HWND info = nullptr;
      if (WaitUntil([&] { return (info = FindDialog(kCaption)) != nullptr; })) Press(info, IDOK);
    });
    EXPECT_EQ(TaskDispatch("$run_word_macro", "True", &pass), 1);
  }
  EXPECT_EQ(
      Log(),
      std::string(kQuestion) +
          ": [No]\n\nVous avez choisi de ne pas installer les commandes de Veltrane pour Microsoft Word. Si "
          "vous d\xe9sirez ajouter ces commandes, relancez Installation de Veltrane 6.0c.\n\n");
  EXPECT_FALSE(mDir.Has("Office11\\Startup\\vt.dot"));
}

TEST_F(WordQuestion, FailuresAreShown) {
  SetMessageTitles(256, 257, 258, 260);
  const std::string startup = AddWord(10, "Office10");
  RemoveDirectoryA(startup.c_str());
  Task("set_word_macro", WordArgs(10));
  int32_t pass = 1;
  {
    Answerer box(kErrorCaption, [](HWND window) { Press(window, IDOK); });
    EXPECT_EQ(TaskDispatch("$run_word_macro", "False", &pass), 1);
  }
}

// ---- left-over copies, unsupported versions ----

TEST_F(WordMacros, LeftOverCopiesAreDeletedInAnyCase) {
  AddWord(11, "Office11");
  mDir.Write("Office11\\Startup\\OLD.dot", "x");
  mDir.Write("Office11\\Startup\\old.wll", "x");
  mDir.Write("Office11\\Startup\\other.dot", "x");
  mDir.Write("Office11\\Startup\\sub\\old.dot", "x");
  const std::string log = Task("fixup_word_migration", "old.dot,old.wll");
  EXPECT_FALSE(mDir.Has("Office11\\Startup\\OLD.dot"));
  EXPECT_FALSE(mDir.Has("Office11\\Startup\\old.wll"));
  EXPECT_TRUE(mDir.Has("Office11\\Startup\\other.dot"));
  EXPECT_TRUE(mDir.Has("Office11\\Startup\\sub\\old.dot"));
  EXPECT_NE(log.find("Installation de Veltrane 6.0c found \"OLD.dot\" and tried to delete it: SUCCESS\n"),
            std::string::npos)
      << log;
  const std::string missing =
      "Installation de Veltrane 6.0c couldn't determine the name of the MS Office/Word 'Startup' folder. "
      "Unable to "
      "continue task 'fixup_word_migration'.\n";
  EXPECT_EQ(log.substr(0, missing.size()), missing) << "for each version that is not there";
}

TEST_F(WordMacros, AStartupFolderOnAMissingDriveHasNothingToDelete) {
  SetRegistryString(HKEY_LOCAL_MACHINE, WordKey(11) + "\\InstallRoot", "PATH", "Q:\\Office\\");
  EXPECT_EQ(Task("fixup_word_migration", "old.dot").find("found \""), std::string::npos);
}

TEST_F(WordMacros, AnUnsupportedVersionIsToldOnce) {
  AddWord(14, "Office14");
  AddWord(15, "Office15");
  const std::string log = Task("check_unsupported_office_version", "13,4");
  const size_t told = log.find("va continuer.");
  EXPECT_NE(told, std::string::npos) << log;
  EXPECT_EQ(log.find("va continuer.", told + 1), std::string::npos) << log;
}

TEST_F(WordMacros, VersionsOutsideTheRangeDoNotCount) {
  AddWord(14, "Office14");
  EXPECT_EQ(Task("check_unsupported_office_version", "15,3"), "");
  EXPECT_EQ(Task("check_unsupported_office_version", "13,1"), "");
  EXPECT_EQ(Task("check_unsupported_office_version", "14,0"), "");
}

TEST_F(WordMacros, AMissingNumberAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(Task("check_unsupported_office_version", "13"), "");
  EXPECT_EQ(recorder.Only(), "firstVersion > -1 && numVersions > -1");
}

}  // namespace
