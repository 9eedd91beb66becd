#pragma once
// The log line of an expansion that was stopped at a limit (ExpandLimits).
#include <string_view>

// `kind` says what of that name never ends: "item" or "variable".
void LogEndless(const char* kind, std::string_view name);
