// Word macro tasks: set_word_macro, run_word_macro, remove_word_macro, fixup_word_migration and
// check_unsupported_office_version. All act in pass 1.
#include "base/assert.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "office/askmacros.h"
#include "office/word.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"
#include "ui/err.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kWordNameId = 268;
constexpr unsigned kRemovingId = 796;
constexpr unsigned kUnsupportedOfficeId = 337;

}  // namespace

int32_t Task_set_word_macro(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  const int32_t version = ArgNumber(fields[0]);
  const int32_t row = FindWordRow(version);
  if (row < 0) {
    LogLine(Message("    Error: MS Word version <WordVer> is not supported by this version of <SetupName>.")
                .With("WordVer", version));
    return 1;
  }
  SetWordMacro(row, {ArgAt(fields, 1), ArgAt(fields, 2), ArgAt(fields, 3), ArgAt(fields, 4)});
  return 1;
}

int32_t Task_run_word_macro(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  bool ask = true;
  if (!ParseOptionalTrueFalse(name, ArgAt(TaskArgs(name, args), 0), ask)) return 1;
  if (!ask || AskInstallMacros(kWordNameId)) InstallWordMacros();
  return 1;
}

int32_t Task_remove_word_macro(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  LogTaskEntry(name, args);
  SetProgressText(Message(kRemovingId).With("ProdName", Message(kWordNameId)));
  RemoveWordMacros();
  return 1;
}

int32_t Task_fixup_word_migration(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  DeleteMigratedMacros(fields[0], ArgAt(fields, 1));
  return 1;
}

int32_t Task_check_unsupported_office_version(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  const std::vector<Str> fields = TaskArgs(name, args);
  const auto number = [&](size_t i) { return i < fields.size() ? ArgNumber(fields[i]) : -1; };
  const int32_t firstVersion = number(0);
  const int32_t numVersions = number(1);
  VT_ASSERT(firstVersion > -1 && numVersions > -1, "firstVersion > -1 && numVersions > -1");
  if (IsWordInstalled(firstVersion, numVersions)) ShowWarning(Message(kUnsupportedOfficeId));
  return 1;
}
