#pragma once
// Earlier major versions of the product, removed by their own setup programs before
// this version is installed.
#include <cstdint>

// Looks for major version `majVers` (4 or more) and removes it. Nothing found is success; false only when a
// version was found and could not be removed. Sets OldMajVersion, and ProgDir to the folder of a removed
// version other than 4.
[[nodiscard]] bool RemoveEarlierVersion(int32_t majVers);
