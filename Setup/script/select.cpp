#include "script/select.h"

#include "messages/res.h"
#include "messages/varlist.h"
#include "resources/ids.h"

namespace {

constexpr int32_t kMaxOptions = 100;

Str Prefixed(const char* prefix, const char* name) {
  Str result(prefix);
  result.Append(name);
  return result;
}

void TakeIfSet(const Str& variable, Str& value) {
  Str other;
  if (AppGetVariable(variable, other) && !other.IsEmpty()) value = other;
}

// A text of a run that ends with "!END!"; false at the end, or when the string is missing.
bool GetRunText(unsigned firstId, int32_t index, Str& text) {
  return ResStringExists(firstId + static_cast<unsigned>(index)) && GetResStr(firstId, index, text, 0) &&
         !(text == "!END!");
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
  for (int32_t i = 0; i < kMaxOptions; ++i) {
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
