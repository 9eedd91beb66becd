#pragma once
// Carries the preferences of another equation editor over into the product's own store.

// Both paths in INI-store form. `ownProduct`: the source belongs to an older release of the product. True
// when both stores could be opened, whatever was copied.
[[nodiscard]] bool ConvertPreferences(const char* inPath, const char* outPath, bool ownProduct);

// Converts the newest other server's preferences into UserRegKey and logs the result; only once per run.
void ConvertNewestPreferences();
// Allows a conversion again.
void ResetPreferenceConversion();
