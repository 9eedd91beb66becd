#include "tasks/infproc.h"

#include <cstdlib>
#include <cstring>
#include <iterator>

#include "base/assert.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "script/setupinf.h"
#include "tasks/splitargs.h"
#include "tasks/tasks.h"

namespace {

constexpr bool kPlain = false;
constexpr bool kQuoted = true;
constexpr bool kNoArgs = false;
constexpr bool kArgs = true;

#define VT_TASK(task, rule, quoted, args) \
  { #task, Task_##task, PassRule::rule, quoted, args }

// Searched from the top. Scripts rely on the names, so rows are never renamed.
constexpr TaskRow kTasks[] = {
    VT_TASK(remove_atm_font, kPass1, kPlain, kArgs),
    VT_TASK(remove_old_atm_font, kPass1, kPlain, kArgs),
    VT_TASK(atm_fontchange_notify, kPass1, kPlain, kNoArgs),
    VT_TASK(install_tt_font, kPass1, kQuoted, kArgs),
    VT_TASK(remove_font_name, kPass1, kQuoted, kArgs),
    VT_TASK(remove_tt_font, kPass1, kQuoted, kArgs),
    // Servers are registered after their files are copied and unregistered before these are deleted.
    VT_TASK(register, kInstall1Remove0, kPlain, kNoArgs),
    VT_TASK(register_dll, kInstall1Remove0, kPlain, kArgs),
    VT_TASK(add_reg_chk_exist, kPass1, kQuoted, kArgs),
    VT_TASK(remove_reg_chk_exist, kPass1, kQuoted, kArgs),
    VT_TASK(tt_fontchange_notify, kPass1, kPlain, kNoArgs),
    VT_TASK(add_icon, kPass1, kPlain, kArgs),
    VT_TASK(add_icon_group, kPass1, kPlain, kArgs),
    VT_TASK(empty_icon_group, kPass1, kPlain, kArgs),
    VT_TASK(remove_icon_group, kPass1, kPlain, kArgs),
    VT_TASK(ask_view_readme, kPass0, kPlain, kArgs),
    VT_TASK(set_all_autoconverts, kPass0, kPlain, kArgs),
    VT_TASK(set_one_autoconvert, kPass0, kQuoted, kArgs),
    VT_TASK(run_ole_mgr, kPass1, kQuoted, kArgs),
    VT_TASK(remove_ini_path, kPass1, kQuoted, kArgs),
    VT_TASK(file_sys, kNoDataOrPass0, kQuoted, kArgs),
    VT_TASK(dir_del, kNoDataOrPass1, kQuoted, kArgs),
    VT_TASK(file_inst, kAlways, kPlain, kArgs),
    VT_TASK(convert_pref, kPass1, kPlain, kNoArgs),
    VT_TASK(get_ini_var, kAlways, kPlain, kArgs),
    VT_TASK(test_ATM_on, kAlways, kPlain, kArgs),
    VT_TASK(test_overwrite_old_app, kAlways, kPlain, kArgs),
    VT_TASK(set_word_macro, kPass1, kPlain, kArgs),
    VT_TASK(check_unsupported_office_version, kPass1, kPlain, kArgs),
    VT_TASK(fixup_word_migration, kPass1, kPlain, kArgs),
    VT_TASK(run_word_macro, kPass1, kPlain, kArgs),
    VT_TASK(remove_word_macro, kPass1, kPlain, kArgs),
    VT_TASK(set_ppt_macro, kPass1, kPlain, kArgs),
    VT_TASK(run_ppt_macro, kPass1, kPlain, kArgs),
    VT_TASK(remove_ppt_macro, kPass1, kPlain, kArgs),
    VT_TASK(notify_message, kPass1, kPlain, kArgs),
    VT_TASK(ask_choose_lang, kPass1, kPlain, kArgs),
    VT_TASK(remove_soft_fonts, kPass1, kPlain, kNoArgs),
    VT_TASK(create_link, kPass1, kPlain, kArgs),
    VT_TASK(stub_reg, kPass0, kPlain, kArgs),
    VT_TASK(clean_old_winini_ext_reg, kPass1, kPlain, kArgs),
    VT_TASK(clean_others_ext_reg, kPass1, kQuoted, kArgs),
    VT_TASK(add_openwith_support, kPass1, kPlain, kArgs),
    VT_TASK(remove_openwith_support, kPass1, kPlain, kArgs),
};
#undef VT_TASK

static_assert(std::size(kTasks) == static_cast<size_t>(kNumTasks));

bool RuleAllows(PassRule rule, const int32_t* pass) {
  switch (rule) {
    case PassRule::kAlways:
      return true;
    case PassRule::kNoDataOrPass0:
      return pass == nullptr || *pass == 0;
    case PassRule::kNoDataOrPass1:
      return pass == nullptr || *pass == 1;
    case PassRule::kPass0:
      return pass != nullptr && *pass == 0;
    case PassRule::kPass1:
      return pass != nullptr && *pass == 1;
    case PassRule::kInstall1Remove0:
      return pass != nullptr && *pass == (Run().install ? 1 : 0);
  }
  return false;
}

bool RuleNeedsPass(PassRule rule) {
  return rule == PassRule::kPass0 || rule == PassRule::kPass1 || rule == PassRule::kInstall1Remove0;
}

}  // namespace

const TaskRow* TaskTable() { return kTasks; }

const TaskRow* FindTask(const char* name) {
  for (const TaskRow& row : kTasks)
    if (std::strcmp(row.name, name) == 0) return &row;
  return nullptr;
}

int32_t TaskDispatch(const char* key, const char* args, void* data) {
  if (!VT_ASSERT(key != nullptr && *key != '\0', "key")) return 0;
  const char* name = key + 1;
  const TaskRow* taskProc = FindTask(name);
  if (!VT_ASSERT(taskProc != nullptr, "taskProc")) {
    LogScriptError(Message("There is no task \"<TaskName>\".", kTemplateLiteral).With("TaskName", name));
    return 0;
  }
  return taskProc->handler(name, args, data);
}

bool TaskActsNow(const char* name, const char* args, const void* data) {
  const TaskRow* row = FindTask(name);
  if (!VT_ASSERT(row != nullptr, "taskProc")) return false;
  if (RuleNeedsPass(row->rule) && !VT_ASSERT(data != nullptr, "data")) return false;
  if (row->needsArgs && !VT_ASSERT(args != nullptr, "args")) return false;
  return RuleAllows(row->rule, static_cast<const int32_t*>(data));
}

std::vector<Str> TaskArgs(const char* name, const char* args) {
  const TaskRow* row = FindTask(name);
  std::vector<Str> fields;
  if (args == nullptr) return fields;
  for (const std::string& field : SplitArgs(args, row != nullptr && row->quotedFirst))
    fields.emplace_back(std::string_view(field));
  return fields;
}

bool TaskArgs(const char* name, const char* args, size_t least, std::vector<Str>& fields) {
  fields = TaskArgs(name, args);
  if (fields.size() >= least) return true;
  LogUnknownArgs(name);
  return false;
}

Str ArgAt(const std::vector<Str>& args, size_t i) { return i < args.size() ? args[i] : Str(); }

Str ExpandedArgAt(const std::vector<Str>& args, size_t i) {
  return MakeTemplate(ArgAt(args, i).Chars(), kTemplateExpand);
}

int32_t ArgNumber(const Str& arg) { return static_cast<int32_t>(std::strtol(arg, nullptr, 10)); }

void LogTaskEntry(const char* name, const char* args) {
  // The name goes in twice through one item; the caller's arguments last, so that nothing in them is filled.
  LogLine(Message("  Task_<Name>(name: <Name>, args: <Args>)", kTemplateLiteral)
              .With("Name", name)
              .With("Args", args == nullptr ? "" : args));
}

void LogUnknownArgs(const char* name) {
  LogLine(Message("The arguments for the task <TaskName> in Setup.inf are unknown.", kTemplateLiteral)
              .With("TaskName", name));
  const Str place = Script().Place();
  if (!place.IsEmpty()) LogLine(Message("    In Setup.inf: <Place>.", kTemplateLiteral).With("Place", place));
}

bool ParseTrueFalse(const char* name, const Str& text, bool& value) {
  if (text.ICompare("True") == 0) {
    value = true;
    return true;
  }
  if (text.ICompare("False") == 0) {
    value = false;
    return true;
  }
  LogUnknownArgs(name);
  return false;
}

bool ParseOptionalTrueFalse(const char* name, const Str& text, bool& value) {
  return text.IsEmpty() || ParseTrueFalse(name, text, value);
}
