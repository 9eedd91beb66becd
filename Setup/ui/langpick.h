#pragma once
// The user's choice of the product's interface language (dialog 2200).
#include <cstdint>
#include <vector>

// Index of the chosen entry. A silent run, a list of one entry and cancel take the
// first; -1 for an empty list.
int32_t PickLanguage(const std::vector<int32_t>& languages);
