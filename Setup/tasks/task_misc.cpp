// Messages and choices: notify_message and ask_choose_lang (pass 1), ask_view_readme (pass 0),
// test_overwrite_old_app (always).
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/restext.h"
#include "messages/varlist.h"
#include "script/langchoice.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"
#include "ui/err.h"

namespace {

struct MessageRow {
  const char* trigger;
  unsigned firstId;
};
constexpr MessageRow kMessages[] = {
    {"do_ttfonts", 816},
};

unsigned FindMessage(const Str& trigger) {
  for (const MessageRow& row : kMessages)
    if (trigger.ICompare(row.trigger) == 0) return row.firstId;
  return 0;
}

bool IsOn(const Str& variable) { return AppGetExpanded(variable) == "1"; }

}  // namespace

int32_t Task_notify_message(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  const Str& trigger = fields[0];
  if (!IsOn(trigger)) {
    LogLine(Message("    The triggering task '<TaskTrigger>' is not 'on'.", kTemplateLiteral)
                .With("TaskTrigger", trigger));
    return 1;
  }
  const unsigned firstId = FindMessage(trigger);
  if (firstId == 0) {
    LogLine(Message("    WARNING: The message ID for the task '<TaskTrigger>' could not be found.",
                    kTemplateLiteral)
                .With("TaskTrigger", trigger));
    return 1;
  }
  Str text = JoinResStrings(firstId);
  AppVars().Expand(text);
  ShowInfo(text);
  return 1;
}

int32_t Task_ask_view_readme(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data)) return 1;
  const bool on = TaskArgs(name, args, 1, fields) && IsOn(fields[0]);
  AppSetBool("ViewReadMeDlg", on);
  if (!on) return 1;
  if (fields.size() < 2) {
    LogUnknownArgs(name);
    return 1;
  }
  fields.resize(3);
  AppVars().Expand(fields[1]);
  AppVars().Expand(fields[2]);
  AppSetVariable("ViewReadMePath", fields[1]);
  AppSetVariable("ReadMeArgs", fields[2]);
  return 1;
}

int32_t Task_test_overwrite_old_app(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (TaskActsNow(name, args, data) && TaskArgs(name, args, 1, fields))
    AppSetBool(fields[0], Run().oldVersionChoice == kOldVersionReplace);
  return 1;
}

int32_t Task_ask_choose_lang(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  LogTaskEntry(name, args);
  if (!ChooseProductLanguage(ArgAt(TaskArgs(name, args), 0))) LogUnknownArgs(name);
  return 1;
}
