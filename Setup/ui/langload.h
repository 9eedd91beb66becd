#pragma once
// The language that the run speaks: the choice at start-up, and the library that its texts come from.
#include <windows.h>

#include <cstdint>

#include "base/str.h"
#include "ui/language.h"

// Owns one loaded language library (as data file, never executed). The program's own module is never freed.
class CLangLib {
 public:
  CLangLib() = default;
  CLangLib(HMODULE module, int32_t language, const Str& path = Str())
      : mModule(module), mLanguage(language), mPath(path) {}
  CLangLib(const CLangLib&) = delete;
  CLangLib& operator=(const CLangLib&) = delete;
  ~CLangLib();
  HMODULE Module() const { return mModule; }
  int32_t Language() const { return mLanguage; }
  const Str& Path() const { return mPath; }

 private:
  HMODULE mModule = nullptr;
  int32_t mLanguage = kNoLanguage;
  Str mPath;  // the system does not tell the path of a library that is loaded as data
};

// Loads the library for `language` from CurrDir; without one the program itself serves its
// own language. Sets SysLang.
[[nodiscard]] bool LoadLanguage(int32_t language);
// The whole choice at start-up, with its log lines.
[[nodiscard]] bool ChooseAndLoadLanguage();
// Path of the library that is loaded; empty while the program serves itself.
Str LoadedLibraryPath();
void FreeLanguageLibrary();
