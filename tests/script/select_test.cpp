#include "script/select.h"

#include "script_fixture.h"

namespace {

class Select : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    AppVars().Clear();
  }
  static std::string Resolved(bool noDialog = false) {
    ResolveFolderVariable("ProgDir", noDialog);
    return AppVariableExists("ProgDir") ? AppGetExpanded("ProgDir").Chars() : "(unset)";
  }
};

TEST_F(Select, TheRecordedFolderWinsNormally) {
  AppSetVariable("ProgDir", "own");
  AppSetVariable("cmd_ProgDir", "cmd");
  AppSetVariable("ini_ProgDir", "ini");
  EXPECT_EQ(Resolved(), "ini");
}

TEST_F(Select, ALockedFolderFollowsTheCommandLine) {
  AppSetVariable("cmd_ProgDir", "cmd");
  AppSetVariable("ini_ProgDir", "ini");
  AppSetVariable("lock_ProgDir", "0");  // that it exists is enough
  EXPECT_EQ(Resolved(), "cmd");
}

TEST_F(Select, WithoutADialogTheCommandLineWins) {
  AppSetVariable("cmd_ProgDir", "cmd");
  AppSetVariable("ini_ProgDir", "ini");
  EXPECT_EQ(Resolved(true), "cmd");
  AppSetVariable("InstallNoDlg", "");
  EXPECT_EQ(Resolved(false), "cmd");
}

TEST_F(Select, OneOfTheTwoReplacesTheFolderWhateverTheOrder) {
  AppSetVariable("ProgDir", "own");
  AppSetVariable("cmd_ProgDir", "cmd");
  EXPECT_EQ(Resolved(false), "cmd");
  AppVars().Clear();
  AppSetVariable("ini_ProgDir", "ini");
  EXPECT_EQ(Resolved(true), "ini");
}

TEST_F(Select, EmptyFoldersReplaceNothing) {
  AppSetVariable("ProgDir", "own");
  AppSetVariable("cmd_ProgDir", "");
  AppSetVariable("ini_ProgDir", "");
  EXPECT_EQ(Resolved(), "own");
  AppSetVariable("cmd_ProgDir", "cmd");
  EXPECT_EQ(Resolved(), "cmd");
}

TEST_F(Select, AFolderThatNobodyNamesStaysUnset) { EXPECT_EQ(Resolved(), "(unset)"); }

TEST_F(Select, TheLockOfOneFolderDoesNotConcernTheOther) {
  AppSetVariable("cmd_InstallFromDir", "cmd");
  AppSetVariable("ini_InstallFromDir", "ini");
  AppSetVariable("lock_ProgDir", "1");
  ResolveFolderVariable("InstallFromDir", false);
  EXPECT_EQ(AppGetExpanded("InstallFromDir"), "ini");
}

TEST_F(Select, ListsTheRemovalOptions) {
  const std::vector<RemovalOption> options = ListRemovalOptions();
  ASSERT_EQ(options.size(), 2u);
  EXPECT_EQ(options[0].name, "remove_keep_prefs");
  EXPECT_EQ(options[0].text,
            "Conserver vos &pr\xe9"
            "f\xe9rences, au cas o\xf9 vous voudriez r\xe9-installer <AppName>");
  EXPECT_EQ(options[1].name, "remove_keep_fonts");
  EXPECT_EQ(options[1].text,
            "Conserver les p&olices pour pouvoir afficher et imprimer les \xe9quations existantes");
  EXPECT_FALSE(options[0].offered);
  EXPECT_FALSE(options[1].offered);
}

TEST_F(Select, AnOptionIsOfferedOnlyForExactlyOne) {
  AppSetVariable("enable_remove_keep_fonts", "1");
  std::vector<RemovalOption> options = ListRemovalOptions();
  EXPECT_FALSE(options[0].offered);
  EXPECT_TRUE(options[1].offered);
  AppSetVariable("enable_remove_keep_prefs", "yes");
  AppSetVariable("enable_remove_keep_fonts", "0");
  options = ListRemovalOptions();
  EXPECT_FALSE(options[0].offered);
  EXPECT_FALSE(options[1].offered);
}

TEST_F(Select, AnOfferedOptionTakesTheUsersChoice) {
  AppSetVariable("enable_remove_keep_fonts", "1");
  AppSetVariable("do_remove_keep_fonts", "1");
  const std::vector<RemovalOption> options = ListRemovalOptions();
  SetRemovalOption(options[1], false);
  EXPECT_EQ(AppGetExpanded("do_remove_keep_fonts"), "0");
  SetRemovalOption(options[1], true);
  EXPECT_EQ(AppGetExpanded("do_remove_keep_fonts"), "1");
}

TEST_F(Select, AnOptionThatIsNotOfferedIsNotTouched) {
  AppSetVariable("do_remove_keep_prefs", "1");
  SetRemovalOption(ListRemovalOptions()[0], false);
  EXPECT_EQ(AppGetExpanded("do_remove_keep_prefs"), "1");
  SetRemovalOption(ListRemovalOptions()[1], true);
  EXPECT_FALSE(AppVariableExists("do_remove_keep_fonts"));
}

}  // namespace
