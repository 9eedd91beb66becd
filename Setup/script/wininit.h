#pragma once
// The list of renames that Windows 95/98 carries out at its next start (pure text).
#include <string>
#include <string_view>

// `text` with the line "<dest>=<src>" directly below the header "[Rename]", which is added when there is
// none. An empty `dest` stands for no destination and is written as "NUL".
std::string AddWinInitRename(std::string_view text, std::string_view dest, std::string_view src);

// At most eight characters, and at most three behind a dot, none of them a blank.
bool IsShortName(std::string_view fileName);
