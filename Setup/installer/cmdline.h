#pragma once
// The command line as bytes: splitting it into arguments, and the grammar of the switches (pure).
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/leadbyte.h"

// The arguments of a process, its program name first, by the rules every Windows program follows:
// - the program name ends at the closing quote when it begins with one, else at the first blank;
// - blanks and tabs outside quotes separate arguments; a quote switches quoting on or off;
// - 2n backslashes before a quote stand for n backslashes, 2n + 1 for n backslashes and a plain quote; other
//   backslashes stand for themselves;
// - two quotes inside quotes stand for one plain quote.
std::vector<std::string> SplitCommandLine(std::string_view text, LeadByteTest isLeadByte = nullptr);

// What the switches say. Text in the system code page, folders as given but for one trailing backslash.
struct CommandLine {
  bool valid = true;
  uint8_t setupFlags = 0;  // SetupFlags
  std::optional<std::string> progDir;
  std::optional<std::string> installFromDir;
  bool lockProgDir = false;
  bool installNoDlg = false;
  bool noROMacroErrs = false;
  bool raiseAssertion = false;
};

// Reads the arguments behind the program name. Stops at the first invalid one; what came before it counts.
CommandLine ParseCommandLine(std::span<const std::string> args, LeadByteTest isLeadByte = nullptr);
