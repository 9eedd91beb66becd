#pragma once
// Whole files by their ANSI path. Every function fails the running test when it cannot do its work.
#include <string>
#include <string_view>
#include <vector>

// The bytes of a file.
std::string ReadWholeFile(const std::string& path);
// Creates or replaces a file.
void WriteWholeFile(const std::string& path, std::string_view bytes);
bool PathExists(const std::string& path);
bool IsFolder(const std::string& path);
// Names in a folder that match a pattern such as "ver*.tmp", sorted; without "." and "..".
std::vector<std::string> NamesIn(const std::string& folder, const std::string& pattern = "*");
// Deletes a file or a folder with all it holds, whatever the attributes. Says whether nothing is left.
bool DeleteTree(const std::string& path);
