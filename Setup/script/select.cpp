#include "script/select.h"

#include "messages/restext.h"
#include "messages/varlist.h"
#include "resources/ids.h"

namespace {

Str Prefixed(const char* prefix, const char* name) {
  Str result(prefix);
  result.Append(name);
  return result;
}

void TakeIfSet(const Str& variable, Str& value) {
  Str other;
  if (AppGetVariable(variable, other) && !other.IsEmpty()) value = other;
}

}  // namespace

void ResolveFolderVariable(const char* name, bool noDialog) {
  const Str fromScript = Prefixed("ini_", name);
  const Str fromCommandLine = Prefixed("cmd_", name);
  const bool commandLineWins =
      noDialog || AppVariableExists(Prefixed("lock_", name)) || AppVariableExists("InstallNoDlg");
  Str value;
  const bool wasSet = AppGetVariable(name, value);
  // The later one wins when both are set.
  TakeIfSet(commandLineWins ? fromScript : fromCommandLine, value);
  TakeIfSet(commandLineWins ? fromCommandLine : fromScript, value);
  // An unset variable stays unset: later steps form a default for it.
  if (wasSet || !value.IsEmpty()) AppSetVariable(name, value);
}

std::vector<RemovalOption> ListRemovalOptions() {
  std::vector<RemovalOption> options;
  for (int32_t i = 0; i < kMaxRunLength; ++i) {
    RemovalOption option;
    if (!GetRunText(IDS_REMOVAL_OPTION_TEXTS, i, option.text) ||
        !GetRunText(IDS_REMOVAL_OPTION_NAMES, i, option.name))
      break;
    option.offered = AppGetExpanded(Prefixed("enable_", option.name)) == "1";
    options.push_back(option);
  }
  return options;
}

void SetRemovalOption(const RemovalOption& option, bool checked) {
  if (option.offered) AppSetBool(Prefixed("do_", option.name), checked);
}
