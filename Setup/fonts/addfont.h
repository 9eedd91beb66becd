#pragma once
// Installing and removing TrueType fonts so that running programs notice at once.
#include "base/str.h"

// True also when a newer installed font is kept. Failures are logged and shown.
[[nodiscard]] bool InstallTTFont(const char* sourcePath, const char* destPath, bool deleteSource);
// True when the font is gone (also when there was none).
[[nodiscard]] bool UninstallTTFont(const char* fontPath);
// `removeFile` false takes out the registration only. `fontPath`, when given, is used for a font that the
// system's font list does not hold.
[[nodiscard]] bool UninstallFontByName(const char* fullName, bool removeFile, const char* fontPath = nullptr);
// Tells all top-level windows that the set of fonts changed.
void NotifyFontChange();
