#include "resources/ids.h"
#include "script/script_fixture.h"
#include "support/library_maker.h"
#include "support/registry_guard.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"

namespace {

class MiscTasks : public ScriptTest {
 protected:
  void Call(TaskHandler handler, const char* name, const std::string& args, int32_t pass) {
    EXPECT_EQ(handler(name, args.c_str(), &pass), 1);
  }
  void Notify(const std::string& args) { Call(Task_notify_message, "notify_message", args, 1); }
  void Readme(const std::string& args) { Call(Task_ask_view_readme, "ask_view_readme", args, 0); }
  void Choose(const std::string& args) { Call(Task_ask_choose_lang, "ask_choose_lang", args, 1); }
  // A library of the product in that language.
  void MakeProductLibrary(const std::string& name, unsigned language) {
    LibrarySpec spec;
    spec.translations = {{language, 1252}};
    mDir.Write("libs\\" + name, MakeLibrary(spec));
  }
};

TEST_F(MiscTasks, OverwriteIsOneOnlyWhenAnEarlierVersionIsReplaced) {
  const struct {
    int32_t choice;
    const char* value;
  } rows[] = {{kOldVersionNone, "0"},
              {kOldVersionFromScript, "0"},
              {kOldVersionReplace, "1"},
              {kOldVersionKeep, "0"}};
  for (const auto& row : rows) {
    ::Run().oldVersionChoice = row.choice;
    Task_test_overwrite_old_app("test_overwrite_old_app", "do_old", nullptr);
    EXPECT_EQ(AppGetExpanded("do_old"), row.value) << row.choice;
  }
  Log();
  Task_test_overwrite_old_app("test_overwrite_old_app", "", nullptr);
  EXPECT_EQ(Log(), "The arguments for the task test_overwrite_old_app in Setup.inf are unknown.\n");
}

TEST_F(MiscTasks, AMessageThatIsNotOnIsNotShown) {
  AppSetVariable("do_ttfonts", "0");
  Notify("do_ttfonts");
  EXPECT_EQ(Log(), "    The triggering task 'do_ttfonts' is not 'on'.\n");
  Notify("missing");
  EXPECT_EQ(Log(), "    The triggering task 'missing' is not 'on'.\n");
}

TEST_F(MiscTasks, AMessageOutsideTheTableIsLogged) {
  AppSetVariable("do_other", "1");
  Notify("do_other");
  EXPECT_EQ(Log(), "    WARNING: The message ID for the task 'do_other' could not be found.\n");
}

TEST_F(MiscTasks, AMessageThatIsOnIsShownWhole) {
  AppSetVariable("DO_TTFONTS", "1");  // the table's name is found in any case
  {
    Answerer ok("Setup", [](HWND box) { Press(box, IDOK); });
    Notify("DO_TTFONTS");
  }
  const std::string log = Log();
  EXPECT_FALSE(log.empty());
  EXPECT_FALSE(Holds(log, "!END!")) << log;
  EXPECT_FALSE(Holds(log, "<")) << log;
  EXPECT_FALSE(Holds(log, "not 'on'")) << log;
}

TEST_F(MiscTasks, ASilentRunOnlyLogsTheMessage) {
  BeSilent();
  AppSetVariable("do_ttfonts", "1");
  Notify("do_ttfonts");
  EXPECT_FALSE(Log().empty());
}

TEST_F(MiscTasks, NotifyWithoutATriggerIsUnknown) {
  Notify("");
  EXPECT_EQ(Log(), "The arguments for the task notify_message in Setup.inf are unknown.\n");
}

TEST_F(MiscTasks, AReadmeThatIsOnIsRemembered) {
  AppSetVariable("do_readme", "1");
  AppSetVariable("Tail", "x");
  Readme("do_readme,<ProgDir>\\r.txt,-a <Tail>");
  EXPECT_EQ(AppGetExpanded("ViewReadMeDlg"), "1");
  EXPECT_EQ(AppGetExpanded("ViewReadMePath"), Prog("r.txt").c_str());
  EXPECT_EQ(AppGetExpanded("ReadMeArgs"), "-a x");
}

TEST_F(MiscTasks, AReadmeNeedsNoArguments) {
  AppSetVariable("do_readme", "1");
  Readme("do_readme,C:\\r.txt");
  EXPECT_EQ(AppGetExpanded("ViewReadMePath"), "C:\\r.txt");
  EXPECT_EQ(AppGetExpanded("ReadMeArgs"), "");
}

TEST_F(MiscTasks, AReadmeThatIsNotOnSetsOnlyItsFlag) {
  Readme("do_readme,C:\\r.txt,args");
  EXPECT_EQ(AppGetExpanded("ViewReadMeDlg"), "0");
  EXPECT_FALSE(AppVariableExists("ViewReadMePath"));
  EXPECT_FALSE(AppVariableExists("ReadMeArgs"));
}

TEST_F(MiscTasks, AReadmeWithoutAPathIsUnknown) {
  AppSetVariable("do_readme", "1");
  Readme("do_readme");
  EXPECT_EQ(AppGetExpanded("ViewReadMeDlg"), "1");
  EXPECT_FALSE(AppVariableExists("ViewReadMePath"));
  EXPECT_EQ(Log(), "The arguments for the task ask_view_readme in Setup.inf are unknown.\n");
  Readme("");
  EXPECT_EQ(AppGetExpanded("ViewReadMeDlg"), "0");
  EXPECT_EQ(Log(), "The arguments for the task ask_view_readme in Setup.inf are unknown.\n");
}

TEST_F(MiscTasks, ASilentRunTakesTheFirstLanguage) {
  const RegistryGuard guard(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest");
  SetRegistryDword(HKEY_CURRENT_USER, "Software\\VeltraneTest\\Config", "Number", 5);
  SetRegistryString(HKEY_CURRENT_USER, "Software\\VeltraneTest\\Config\\Deep", "a", "b");
  MakeProductLibrary("VT6de.dll", 0x0407);
  BeSilent();
  Choose(mDir.Join("libs\\VT6*.dll"));
  EXPECT_EQ(AppGetExpanded("CurLangAbbrev"), "de");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\VeltraneTest\\Config", "AppLang"), "0x0407,de");
  EXPECT_EQ(RegistryDword(HKEY_CURRENT_USER, "Software\\VeltraneTest\\Config", "Number"), 5u);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\VeltraneTest\\Config\\Deep", "a"), "b");
  EXPECT_EQ(Log(),
            "  Task_ask_choose_lang(name: ask_choose_lang, args: " + mDir.Join("libs\\VT6*.dll") + ")\n");
}

TEST_F(MiscTasks, TheUserChoosesAmongTheLibraries) {
  MakeProductLibrary("VT6de.dll", 0x0407);
  MakeProductLibrary("VT6it.dll", 0x0410);
  AppSetVariable("MachRegKey", mDir.Join("store.ini").c_str());
  mDir.Write("store.ini", "[Config]\r\nOther=1\r\n");
  {
    Answerer second("Choix de la langue", [](HWND dialog) {
      SendMessageA(GetDlgItem(dialog, IDC_LANGUAGE_LIST), LB_SETCURSEL,
                   SendMessageA(GetDlgItem(dialog, IDC_LANGUAGE_LIST), LB_FINDSTRING, static_cast<WPARAM>(-1),
                                reinterpret_cast<LPARAM>("Ital")),
                   0);
      Press(dialog, IDOK);
    });
    Choose(mDir.Join("libs\\VT6*.dll"));
  }
  EXPECT_EQ(AppGetExpanded("CurLangAbbrev"), "it");
  const std::string store = mDir.Read("store.ini");
  EXPECT_TRUE(Holds(store, "AppLang=0x0410,it")) << store;
  EXPECT_TRUE(Holds(store, "Other=1")) << store;
}

TEST_F(MiscTasks, ALanguageThatCannotBeRecordedIsLogged) {
  MakeProductLibrary("VT6de.dll", 0x0407);
  BeSilent();
  Choose(mDir.Join("libs\\VT6*.dll"));
  EXPECT_EQ(AppGetExpanded("CurLangAbbrev"), "de");
  EXPECT_TRUE(Holds(Log(), "The chosen language could not be recorded.\n"));
}

TEST_F(MiscTasks, WithoutAFolderTheProgramsIsSearched) {
  const RegistryGuard guard(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest");
  MakeProductLibrary("VT6de.dll", 0x0407);
  AppSetVariable("CurrDir", mDir.Join("libs").c_str());
  BeSilent();
  for (const std::string args : {"VT6*.dll", ""}) {
    AppSetVariable("CurLangAbbrev", "");
    Choose(args);
    EXPECT_EQ(AppGetExpanded("CurLangAbbrev"), "de") << args;
    EXPECT_EQ(Log(), "  Task_ask_choose_lang(name: ask_choose_lang, args: " + args + ")\n");
  }
}

}  // namespace
