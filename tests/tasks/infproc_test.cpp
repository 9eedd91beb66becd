#include "tasks/infproc.h"

#include <algorithm>

#include "script/script_fixture.h"
#include "tasks/tasks.h"

namespace {

using Texts = std::vector<std::string>;

// In which of the eight situations a task acts: one letter each for no data, pass 0, pass 1 of an
// installation and of a removal ("-" where data is required).
struct Expected {
  const char* name;
  TaskHandler handler;
  const char* install;
  const char* removal;
};
constexpr char kPass1Only[] = "-.1";
constexpr char kPass0Only[] = "-0.";
constexpr char kNone0[] = "n0.";
constexpr char kNone1[] = "n.1";
constexpr char kAlways[] = "n01";

#define VT_ROW(task, install, removal) \
  { #task, Task_##task, install, removal }
constexpr Expected kExpected[] = {
    VT_ROW(remove_atm_font, kPass1Only, kPass1Only),
    VT_ROW(remove_old_atm_font, kPass1Only, kPass1Only),
    VT_ROW(atm_fontchange_notify, kPass1Only, kPass1Only),
    VT_ROW(install_tt_font, kPass1Only, kPass1Only),
    VT_ROW(remove_font_name, kPass1Only, kPass1Only),
    VT_ROW(remove_tt_font, kPass1Only, kPass1Only),
    VT_ROW(register, kPass1Only, kPass0Only),
    VT_ROW(register_dll, kPass1Only, kPass0Only),
    VT_ROW(add_reg_chk_exist, kPass1Only, kPass1Only),
    VT_ROW(remove_reg_chk_exist, kPass1Only, kPass1Only),
    VT_ROW(tt_fontchange_notify, kPass1Only, kPass1Only),
    VT_ROW(add_icon, kPass1Only, kPass1Only),
    VT_ROW(add_icon_group, kPass1Only, kPass1Only),
    VT_ROW(empty_icon_group, kPass1Only, kPass1Only),
    VT_ROW(remove_icon_group, kPass1Only, kPass1Only),
    VT_ROW(ask_view_readme, kPass0Only, kPass0Only),
    VT_ROW(set_all_autoconverts, kPass0Only, kPass0Only),
    VT_ROW(set_one_autoconvert, kPass0Only, kPass0Only),
    VT_ROW(run_ole_mgr, kPass1Only, kPass1Only),
    VT_ROW(remove_ini_path, kPass1Only, kPass1Only),
    VT_ROW(file_sys, kNone0, kNone0),
    VT_ROW(dir_del, kNone1, kNone1),
    VT_ROW(file_inst, kAlways, kAlways),
    VT_ROW(convert_pref, kPass1Only, kPass1Only),
    VT_ROW(get_ini_var, kAlways, kAlways),
    VT_ROW(test_ATM_on, kAlways, kAlways),
    VT_ROW(test_overwrite_old_app, kAlways, kAlways),
    VT_ROW(set_word_macro, kPass1Only, kPass1Only),
    VT_ROW(check_unsupported_office_version, kPass1Only, kPass1Only),
    VT_ROW(fixup_word_migration, kPass1Only, kPass1Only),
    VT_ROW(run_word_macro, kPass1Only, kPass1Only),
    VT_ROW(remove_word_macro, kPass1Only, kPass1Only),
    VT_ROW(set_ppt_macro, kPass1Only, kPass1Only),
    VT_ROW(run_ppt_macro, kPass1Only, kPass1Only),
    VT_ROW(remove_ppt_macro, kPass1Only, kPass1Only),
    VT_ROW(notify_message, kPass1Only, kPass1Only),
    VT_ROW(ask_choose_lang, kPass1Only, kPass1Only),
    VT_ROW(remove_soft_fonts, kPass1Only, kPass1Only),
    VT_ROW(create_link, kPass1Only, kPass1Only),
    VT_ROW(stub_reg, kPass0Only, kPass0Only),
    VT_ROW(clean_old_winini_ext_reg, kPass1Only, kPass1Only),
    VT_ROW(clean_others_ext_reg, kPass1Only, kPass1Only),
    VT_ROW(add_openwith_support, kPass1Only, kPass1Only),
    VT_ROW(remove_openwith_support, kPass1Only, kPass1Only),
};
#undef VT_ROW

class InfProc : public ScriptTest {
 protected:
  static void ExpectActs(const char* name, const char* acts) {
    int32_t pass0 = 0;
    int32_t pass1 = 1;
    AssertRecorder recorder;
    EXPECT_EQ(TaskActsNow(name, "", nullptr), acts[0] == 'n') << name << " without data";
    EXPECT_EQ(recorder.Texts(), acts[0] == '-' ? Texts{"data"} : Texts()) << name;
    EXPECT_EQ(TaskActsNow(name, "", &pass0), acts[1] == '0') << name << " in pass 0";
    EXPECT_EQ(TaskActsNow(name, "", &pass1), acts[2] == '1') << name << " in pass 1";
  }
};

TEST_F(InfProc, TheTableHasItsRowsInOrder) {
  ASSERT_EQ(std::size(kExpected), static_cast<size_t>(kNumTasks));
  for (int32_t i = 0; i < kNumTasks; ++i) {
    EXPECT_STREQ(TaskTable()[i].name, kExpected[i].name) << i;
    EXPECT_EQ(FindTask(kExpected[i].name), &TaskTable()[i]);
  }
}

TEST_F(InfProc, EachHandlerIsThatOfItsName) {
  for (const Expected& row : kExpected) {
    ASSERT_NE(FindTask(row.name), nullptr) << row.name;
    EXPECT_EQ(FindTask(row.name)->handler, row.handler) << row.name;
  }
}

TEST_F(InfProc, TasksActInTheirPassOfAnInstallation) {
  for (const Expected& row : kExpected) ExpectActs(row.name, row.install);
}

TEST_F(InfProc, TasksActInTheirPassOfARemoval) {
  ::Run().install = false;
  for (const Expected& row : kExpected) ExpectActs(row.name, row.removal);
}

TEST_F(InfProc, TasksWithAQuotedFirstArgument) {
  const std::vector<std::string> quoted = {
      "install_tt_font",      "remove_font_name", "remove_tt_font",      "add_reg_chk_exist",
      "remove_reg_chk_exist", "run_ole_mgr",      "remove_ini_path",     "file_sys",
      "set_one_autoconvert",  "dir_del",          "clean_others_ext_reg"};
  for (int32_t i = 0; i < kNumTasks; ++i) {
    const std::string name = TaskTable()[i].name;
    EXPECT_EQ(TaskTable()[i].quotedFirst, std::find(quoted.begin(), quoted.end(), name) != quoted.end())
        << name;
  }
}

TEST_F(InfProc, AMissingArgumentTextAssertsWhereOneIsNeeded) {
  int32_t pass = 1;
  AssertRecorder recorder;
  EXPECT_FALSE(TaskActsNow("add_icon", nullptr, &pass));
  EXPECT_EQ(recorder.Only(), "args");
  recorder.Clear();
  EXPECT_TRUE(TaskActsNow("tt_fontchange_notify", nullptr, &pass));
  EXPECT_TRUE(TaskActsNow("register", nullptr, &pass));
  EXPECT_TRUE(TaskActsNow("add_icon", "", &pass)) << "an empty text is present";
  EXPECT_TRUE(recorder.Texts().empty());
}

TEST_F(InfProc, EveryHandlerSucceedsOutsideItsPass) {
  int32_t pass = 7;
  for (int32_t i = 0; i < kNumTasks; ++i) {
    if (TaskTable()[i].rule == PassRule::kAlways) continue;
    EXPECT_EQ(TaskTable()[i].handler(TaskTable()[i].name, "a,b,c", &pass), 1) << TaskTable()[i].name;
  }
  EXPECT_EQ(Log(), "");
}

TEST_F(InfProc, EveryHandlerSucceedsWithoutArguments) {
  BeSilent();
  AssertRecorder recorder;  // some tasks assert their arguments
  for (int32_t pass = 0; pass < 2; ++pass) {
    for (int32_t i = 0; i < kNumTasks; ++i) {
      const TaskRow& row = TaskTable()[i];
      if (!row.needsArgs) continue;
      EXPECT_EQ(row.handler(row.name, "", &pass), 1) << row.name;
    }
  }
}

TEST_F(InfProc, DispatchFindsTheTaskBehindTheDollar) {
  EXPECT_EQ(TaskDispatch("$test_overwrite_old_app", "Var", nullptr), 1);
  EXPECT_EQ(AppGetExpanded("Var"), "0");
}

TEST_F(InfProc, NamesAreComparedByteForByte) {
  for (const char* key : {"$File_sys", "$file_sy", "$file_syss", "$", "$unknown", "$ file_sys"}) {
    AssertRecorder recorder;
    EXPECT_EQ(TaskDispatch(key, "delete,x", nullptr), 0) << key;
    EXPECT_EQ(recorder.Only(), "taskProc") << key;
  }
}

TEST_F(InfProc, AnUnknownTaskStopsItsSection) {
  mDir.Write("setup.inf", "[main]\n$unknown=x\n$test_overwrite_old_app=Var\n");
  ASSERT_EQ(Script().Open(mDir.Join("setup.inf").c_str(), true), kInfOK);
  {
    AssertRecorder recorder;
    EXPECT_EQ(Script().DoSection("main", {nullptr, TaskDispatch, nullptr, nullptr}, nullptr),
              kInfHandlerFailed);
    EXPECT_EQ(recorder.Only(), "taskProc");
  }
  Script().Close();
  EXPECT_FALSE(AppVariableExists("Var"));
  const std::string log = Log();
  EXPECT_TRUE(
      Holds(log, "##ERROR: There is no task \"unknown\". In Setup.inf: section \"main\", line \"$unknown\"."))
      << log;
}

TEST_F(InfProc, TheEntryLineNamesTaskAndArguments) {
  LogTaskEntry("ask_choose_lang", "C:\\x\\*.dll");
  LogTaskEntry("ask_choose_lang", nullptr);
  LogTaskEntry("add_icon", "<Name>,<Other>");
  EXPECT_EQ(Log(),
            "  Task_ask_choose_lang(name: ask_choose_lang, args: C:\\x\\*.dll)\n"
            "  Task_ask_choose_lang(name: ask_choose_lang, args: )\n"
            "  Task_add_icon(name: add_icon, args: <Name>,<Other>)\n");
}

TEST_F(InfProc, UnknownArgumentsAreLogged) {
  LogUnknownArgs("run_ole_mgr");
  EXPECT_EQ(Log(), "The arguments for the task run_ole_mgr in Setup.inf are unknown.\n");
}

TEST_F(InfProc, UnknownArgumentsNameTheirPlaceInTheScript) {
  mDir.Write("setup.inf", "[main]\n$run_ole_mgr=Maybe\nAfter=1\n");
  ASSERT_EQ(Script().Open(mDir.Join("setup.inf").c_str(), true), kInfOK);
  int32_t pass = 1;
  EXPECT_EQ(Script().DoSection("main", {nullptr, TaskDispatch, nullptr, VariableHandler}, &pass), kInfOK);
  Script().Close();
  EXPECT_EQ(AppGetExpanded("After"), "1") << "the section goes on";
  const std::string log = Log();
  EXPECT_TRUE(Holds(log,
                    "The arguments for the task run_ole_mgr in Setup.inf are unknown.\n"
                    "    In Setup.inf: section \"main\", line \"$run_ole_mgr\".\n"))
      << log;
}

TEST_F(InfProc, TrueAndFalseInAnyCase) {
  bool value = false;
  EXPECT_TRUE(ParseTrueFalse("t", "tRUE", value));
  EXPECT_TRUE(value);
  EXPECT_TRUE(ParseTrueFalse("t", "FALSE", value));
  EXPECT_FALSE(value);
  EXPECT_EQ(Log(), "");
  for (const char* text : {"Maybe", "1", "", " True"}) {
    EXPECT_FALSE(ParseTrueFalse("run_ole_mgr", text, value)) << text;
    EXPECT_EQ(Log(), "The arguments for the task run_ole_mgr in Setup.inf are unknown.\n");
  }
}

TEST_F(InfProc, ArgumentsFollowTheRowsRule) {
  EXPECT_EQ(TaskArgs("dir_del", "\"C:\\a, b\"").size(), 1u);
  EXPECT_EQ(TaskArgs("add_icon", "\"C:\\a, b\"").size(), 2u);
  EXPECT_TRUE(TaskArgs("add_icon", nullptr).empty());
  std::vector<Str> fields;
  EXPECT_TRUE(TaskArgs("add_icon", "a,b", 2, fields));
  EXPECT_FALSE(TaskArgs("add_icon", "a,b", 3, fields));
  EXPECT_EQ(Log(), "The arguments for the task add_icon in Setup.inf are unknown.\n");
}

TEST_F(InfProc, AnOptionalSectionFollowsATask) {
  mDir.Write("setup.inf", "[main]\n$test_overwrite_old_app=do_old\n&old?\n[old]\nSeen=1\n");
  ASSERT_EQ(Script().Open(mDir.Join("setup.inf").c_str(), true), kInfOK);
  const InfHandlers handlers = {nullptr, TaskDispatch, nullptr, VariableHandler};
  EXPECT_EQ(Script().DoSection("main", handlers, nullptr), kInfOK);
  EXPECT_FALSE(AppVariableExists("Seen"));
  ::Run().oldVersionChoice = kOldVersionReplace;
  EXPECT_EQ(Script().DoSection("main", handlers, nullptr), kInfOK);
  Script().Close();
  EXPECT_TRUE(AppVariableExists("Seen"));
}

}  // namespace
