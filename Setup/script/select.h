#pragma once
// Component selection as pure logic: which folder wins, which removal options exist.
#include <cstdint>
#include <vector>

#include "base/str.h"

// Settles `ProgDir` or `InstallFromDir` from itself and its ini_ and cmd_ forms. `noDialog`: no dialog will
// be shown, so the command line wins.
void ResolveFolderVariable(const char* name, bool noDialog);

struct RemovalOption {
  Str text;      // check box text, unexpanded
  Str name;      // "remove_keep_prefs"
  bool offered;  // enable_<name> is "1"
};
std::vector<RemovalOption> ListRemovalOptions();
// Sets do_<name> to "1" or "0" for an offered option.
void SetRemovalOption(const RemovalOption& option, bool checked);
