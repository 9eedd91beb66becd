#pragma once
// The user's choice of the product's interface language (dialog 2200).
#include <cstdint>
#include <vector>

// Index of the chosen entry; cancel, or a silent run, takes the first.
int32_t PickLanguage(const std::vector<int32_t>& languages);
