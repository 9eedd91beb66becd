#pragma once
// PostScript Type 1 fonts: what their files say, and their removal through Adobe Type Manager.
#include <cstdint>

#include "base/str.h"
#include "fonts/atm.h"

// Name and version from a PFB file's first comment line; either out value may be null.
// Each failure logs its line.
[[nodiscard]] bool GetPSNameAndVersion(const char* pfbPath, Str* name, uint32_t* version);
// Style flags (PsStyle) and names from a PFM file; the names may be null.
[[nodiscard]] bool GetPfmStyle(const char* pfmPath, uint32_t& style);
[[nodiscard]] bool GetPfmNames(const char* pfmPath, Str* faceName, Str* psName);

[[nodiscard]] bool GetATMFontPaths(const AtmLibrary& atm, const char* windowsName, uint32_t style,
                                   Str& pfbPath, Str& pfmPath);
[[nodiscard]] bool GetVersionOfATMFont(const AtmLibrary& atm, const char* windowsName, uint32_t style,
                                       uint32_t& version);
// ATM's status number in `status`; false (logged) when ATM cannot tell.
[[nodiscard]] bool IsATMFontInUse(const AtmLibrary& atm, const char* windowsName, uint32_t style,
                                  int& status);
// Deletes the font's line from "Atm.ini" in WinDir.
void RemoveATMIniLine(const char* windowsName, uint32_t style);

// Removes the font that the two files describe, unless a program uses it.
void RemovePSFont(const AtmLibrary& atm, const char* pfbPath, const char* pfmPath);
// Removes it only when the installed one is older than the one in the two files. An old font that ATM keeps
// is shown to the user.
void RemoveOldPSFont(const AtmLibrary& atm, const char* pfbPath, const char* pfmPath);
