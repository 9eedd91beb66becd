#pragma once
// Splitting of a task's argument text (pure).
#include <string>
#include <string_view>
#include <vector>

// Fields between commas, trimmed of white space after splitting; empty fields are not seen, a field of blanks
// is present and empty. With `quotedFirst`, a text that begins (after white space) with a double quote has
// its first field up to the next quote (to the end when there is none).
std::vector<std::string> SplitArgs(std::string_view text, bool quotedFirst);
