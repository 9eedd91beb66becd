#pragma once
// Adobe Type Manager's programming interface, bound at run time; absent on most machines.
#include <windows.h>

#include <cstdint>

#include "base/handle.h"
#include "base/str.h"

// A connection to ATM for a scope. Styles are PsStyle bits; results are ATM's numbers, 0 for success.
class AtmLibrary {
 public:
  AtmLibrary();
  AtmLibrary(const AtmLibrary&) = delete;
  AtmLibrary& operator=(const AtmLibrary&) = delete;
  ~AtmLibrary();

  // A library with all needed entry points is on this machine.
  bool IsInstalled() const { return static_cast<bool>(mModule); }
  // ATM is there and running; without it nothing else may be called.
  bool IsLoaded() const { return mLoaded; }
  // Needs IsInstalled. 0.0 when the library does not tell.
  void GetVersion(uint16_t& major, uint16_t& minor) const;

  // Status numbers of FontStatus.
  static constexpr int kFontInUse = -406;
  static constexpr int kFontPresent = -407;
  static constexpr int kFontDifferent = -408;
  static constexpr int kFontAbsent = -409;
  int FontStatus(const char* windowsName, uint32_t style) const;
  // Paths of up to 260 characters.
  int GetFontPaths(const char* windowsName, uint32_t style, Str& pfbPath, Str& pfmPath) const;
  int RemoveFont(const char* windowsName, uint32_t style) const;
  // Makes ATM tell all programs that the set of fonts changed.
  void ForceFontChange() const;

 private:
  // Entry points this program calls, in the order of the name table.
  enum Entry : int32_t {
    kProperlyLoaded,
    kFinish,
    kBeginFontChange,
    kForceFontChange,
    kEndFontChange,
    kFontStatus,
    kGetFontPaths,
    kRemoveFont,
    kNumNeeded,                // all before this; those from here on may be missing
    kGetVersion = kNumNeeded,  // only for the log
    kNumEntries,
  };
  bool Bind(const char* moduleName);
  template <class Signature>
  Signature Func(Entry entry) const {
    return reinterpret_cast<Signature>(reinterpret_cast<void*>(mFuncs[entry]));
  }

  ModuleHandle mModule;
  FARPROC mFuncs[kNumEntries] = {};
  bool mLoaded = false;
};
