#pragma once
// Facts about fonts: what a TrueType file holds, which families this Windows knows,
// and the system's font list.
#include <cstdint>

#include "base/str.h"

struct TrueTypeData {
  Str fullName;
  Str familyName;
  uint32_t version = 0;  // major in the high 16 bits, minor in the low 16
  uint32_t style = 0;    // TtfStyle bits
};

// False when the file cannot be read or is no sound TrueType font.
[[nodiscard]] bool ReadTrueTypeFile(const char* path, TrueTypeData& data);

// A font family of that name (any case) is known to the system.
bool IsFontFamilyInstalled(const char* familyName);

// The Windows font folder; logs why when it cannot be found.
[[nodiscard]] bool GetFontDir(Str& folder);
// Sets TTSysDir from GetFontDir unless it is set; false when the folder cannot be found.
[[nodiscard]] bool DefineTTSysDir();

// The font list's value "<fontName> (...": its name and its data.
[[nodiscard]] bool FindRegistryFont(const char* fontName, Str& valueName, Str& regFile);
// Some value of the font list begins with `familyName`.
bool IsFamilyInRegistry(const char* familyName);
// A bare name of the font list lies in TTSysDir, a ".FOT" file in the Windows folder's "System"; other
// endings than ".TTF" and ".FOT" assert and give false.
[[nodiscard]] bool RegistryFontPath(const char* regFile, Str& path);
// Each logs its own details on failure.
[[nodiscard]] bool WriteFontToRegistry(const char* fullName, const char* fontPath);
[[nodiscard]] bool RemoveFontFromRegistry(const char* fullName);
