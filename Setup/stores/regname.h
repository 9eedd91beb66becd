#pragma once
// Names of registry subkeys that stand for INI sections, and values as lines. Pure.
#include <string>
#include <string_view>

// The section name that a subkey's name stands for. One that begins with "$" is encoded: "$/" is a backslash,
// "$_" a blank, "$$" a "$", "$" with two upper-case hexadecimal digits the byte of that value. Others stand
// for themselves.
std::string DecodeSubKeyName(std::string_view name);

// The text of a value's data as a line can hold it: up to the first NUL or line end, at most 511 bytes.
std::string_view ValueDataText(std::string_view data);
