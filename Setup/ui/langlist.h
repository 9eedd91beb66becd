#pragma once
// Language libraries beside the program: listing, choosing, loading.
#include <windows.h>

#include <cstdint>
#include <vector>

#include "base/handle.h"
#include "base/str.h"

constexpr int32_t kNoLanguage = -1;

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

// "0x040c,fr" -> 0x040c: the hexadecimal number at the start, "0x" optional. 0, more than 16 bits and null
// give kNoLanguage.
int32_t ParseLanguage(const char* text);
// The reverse: "0x040c,fr".
Str LanguageText(int32_t language);
// Lower-case ISO 639 abbreviation of a language; empty when Windows knows none (logged).
Str LanguageAbbreviation(int32_t language);
// Index of the best entry for `wanted`, -1 when none.
int32_t BestIndex(const std::vector<int32_t>& list, int32_t wanted);
// "<ShortAppKey>su<MajVersion>" expanded (libraries of the setup) or "<ShortAppKey><MajVersion>" (the
// product's). Empty, after an assertion, when the variables give no usable prefix.
Str LibraryPrefix(bool product);
// Language of a library file, or of the running program when `path` is null: that of the one translation in
// its version resource. Any other number of them asserts and gives kNoLanguage.
int32_t ModuleLanguage(const char* path);
// The languages of the setup's libraries in `folder` (a full path), each once, in the folder's order, and the
// program's own.
std::vector<int32_t> ListLanguages(const char* folder);
// The same of the product's libraries. `pattern` names the files: "VT6*.dll", or what their names begin with.
// A pattern that begins with a wildcard, or is empty, takes those with the product's prefix.
std::vector<int32_t> ListProductLanguages(const char* folder, const char* pattern);
// Loads the library for `language` from CurrDir: the file named after the language when it really is of that
// language, else the first library that is, else the named file if it has no version to tell its language.
// Without one the program itself serves its own language. Sets SysLang.
[[nodiscard]] bool LoadLanguage(int32_t language);
// The whole choice at start-up, with its log lines.
[[nodiscard]] bool ChooseAndLoadLanguage();
// Path of the library that is loaded; empty while the program serves itself.
Str LoadedLibraryPath();
void FreeLanguageLibrary();
