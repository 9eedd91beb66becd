#pragma once
// The product's downloadable printer fonts, registered with old printer drivers in the Windows profile.
#include <cstdint>

#include "fonts/printers.h"

enum SoftFontOperation : int32_t { DO_REMOVE = 1 };

constexpr int32_t kMaxSoftFontNames = 16;

// Takes the lines that name one of the listed files out of a printer-driver section and, unless switched off
// for this run, deletes the files. Programs are told of the change.
void EditSoftFonts(SoftFontOperation op, const char* const* fileNames, int32_t numNames, const char* section,
                   const Printer& printer);
// Removes the product's soft fonts from every printer whose driver is known.
void RemoveSoftFonts();
