#pragma once
// A library of the system loaded at run time, with a list of its functions.
#include <cstdint>
#include <vector>

#include "base/handle.h"
#include "base/str.h"

class DynLib {
 public:
  enum Flags : uint32_t { kReportFailure = 1 };  // a library that cannot be loaded is shown in a message box

  // Loads `pathStr` (a bare name is taken from the Windows system folder only) and resolves `numFuncs` names;
  // each missing one asserts with its name.
  DynLib(const char* pathStr, const char* const* funcNames, int32_t numFuncs, uint32_t flags);

  bool IsLoaded() const { return static_cast<bool>(mModule); }
  HMODULE Module() const { return mModule.Get(); }
  // Address of function i of the list, null when missing.
  FARPROC Func(int32_t i) const;
  template <class Signature>
  Signature FuncAs(int32_t i) const {
    return reinterpret_cast<Signature>(reinterpret_cast<void*>(Func(i)));
  }

 private:
  ModuleHandle mModule;
  int32_t mNumFuncs;
  std::vector<FARPROC> mFuncs;
};

// Full path of `fileName` in the Windows system folder.
Str SystemLibraryPath(const char* fileName);
