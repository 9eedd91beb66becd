#pragma once
// Version-checked installation of one file, plain or LZ-compressed, over the Windows version library.
#include <cstdint>

#include "base/str.h"

// vcSTATUS: 0 = installed.
enum CopyStatus : uint32_t {
  vcInUse = 0x1,
  vcOutOfMemory = 0x2,
  vcDestFull = 0x4,
  vcSourceOld = 0x8,
  vcDiffLanguage = 0x10,
  vcDiffCodePage = 0x20,
  vcDestUnreadable = 0x40,
  vcAccessViolation = 0x80,
  vcDiffType = 0x100,
  vcSourceUnreadable = 0x200,
  vcReserved = 0x400,  // never set here, but it counts as "cannot read"
  vcCompressedUnreadable = 0x800,
  vcExpandedNameUnknown = 0x1000,
  vcNoSourceName = 0x2000,
  vcBufferTooSmall = 0x4000,
  vcOther = 0x10000,
  vcConflict = vcSourceOld | vcDiffLanguage | vcDiffCodePage | vcDiffType,
};

// `destFile` is a full path, or empty to receive the path where the file was installed. A missing destination
// folder is made. `force` installs even over a newer or different file. Nothing is shown.
uint32_t VersionCopy(const char* szSourceFile, Str& destFile, bool force);
uint32_t VersionCopy(const char* szSourceFile, const char* destFile, bool force);

// Whether the name says that the file is compressed: its extension holds "#" or "_".
bool IsCompressedName(const char* path);

// Status of the install function's answer `installCodes` (VIF_ bits, VIF_MISMATCH ignored). `destWritable`:
// the destination exists and is not read-only, so that refused access means a running program.
uint32_t StatusOfInstall(uint32_t installCodes, bool destWritable);
