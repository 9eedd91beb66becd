#pragma once
// Flags of the whole run, declared in the lowest storey that reads them. Set by start-up, read everywhere.
#include <cstdint>

// Bits set by the command line.
enum SetupFlags : uint8_t {
  kWorkstation = 1,  // the product runs from a shared copy on a server
  kOleMgrOnly = 2,   // only the equation-conversion manager is shown
  kRemove = 4,       // remove mode
  kKeepSelf = 8,     // remove without deleting the setup program and its script
  kQuiet = 16,       // silent: nothing is shown, nobody is waited for
};

// Bits that describe the Windows family.
enum PlatformFlags : uint32_t {
  kPlatformNT = 1,      // Windows NT family
  kPlatformWin9x = 2,   // Windows 95/98 family
  kPlatformMajor4 = 4,  // major version 4 or later
};

// What becomes of an earlier version of the product.
enum OldVersionChoice : int32_t {
  kOldVersionNone = 0,
  kOldVersionFromScript = 1,  // the folder comes from an earlier installation's record (ini_ProgDir)
  kOldVersionReplace = 2,
  kOldVersionKeep = 3,
};

struct RunState {
  uint8_t setupFlags = 0;
  bool install = true;  // every decision between install and removal reads this flag
  uint32_t platformFlags = 0;
  uint16_t windowsMajor = 0;
  uint16_t windowsMinor = 0;
  bool abort = false;            // the user cancelled
  bool restartNeeded = false;    // a file is replaced only at the next start of Windows
  bool rebootRequested = false;  // the user agreed to restart now
  bool keepAllNewer = false;     // "Yes to All" to keeping newer files
  int32_t oldVersionChoice = kOldVersionNone;

  bool IsQuiet() const { return (setupFlags & kQuiet) != 0; }
  bool IsWorkstation() const { return (setupFlags & kWorkstation) != 0; }
  bool IsWin9x() const { return (platformFlags & kPlatformWin9x) != 0; }
};

// The run's one state. Tests assign a fresh RunState{} to reset it.
RunState& Run();
