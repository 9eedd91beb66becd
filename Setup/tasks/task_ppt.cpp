// PowerPoint add-in tasks: set_ppt_macro, run_ppt_macro and remove_ppt_macro. All act in pass 1.
#include "messages/format.h"
#include "messages/logfile.h"
#include "office/askmacros.h"
#include "office/powerpnt.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"

int32_t Task_set_ppt_macro(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  const int32_t version = ArgNumber(fields[0]);
  const int32_t row = FindPowerPntRow(version);
  if (row < 0) {
    LogLine(Message("MS PowerPoint version <PowerPtVer> is not supported by this version of <SetupName>.")
                .With("PowerPtVer", version));
    return 1;
  }
  SetPowerPntAddIn(row, ArgAt(fields, 1), ArgAt(fields, 2));
  return 1;
}

int32_t Task_run_ppt_macro(const char* name, const char* args, void* data) {
  constexpr unsigned kPowerPntNameId = 512;
  if (!TaskActsNow(name, args, data)) return 1;
  LogTaskEntry(name, args);
  bool ask = true;
  if (!ParseOptionalTrueFalse(name, ArgAt(TaskArgs(name, args), 0), ask)) return 1;
  if (!ask || AskInstallMacros(kPowerPntNameId)) RegisterPowerPntAddIns();
  return 1;
}

int32_t Task_remove_ppt_macro(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  LogTaskEntry(name, args);
  UnregisterPowerPntAddIns();
  return 1;
}
