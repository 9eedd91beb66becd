#pragma once
// Language libraries beside the program: listing, choosing, loading.
#include <windows.h>

#include <cstdint>
#include <vector>

#include "base/handle.h"
#include "base/str.h"

constexpr int32_t kNoLanguage = -1;

// Owns one loaded language library (as data file, never executed).
class CLangLib {
 public:
  CLangLib() = default;
  CLangLib(HMODULE module, int32_t language) : mModule(module), mLanguage(language) {}
  CLangLib(const CLangLib&) = delete;
  CLangLib& operator=(const CLangLib&) = delete;
  ~CLangLib();
  HMODULE Module() const { return mModule; }
  int32_t Language() const { return mLanguage; }

 private:
  HMODULE mModule = nullptr;
  int32_t mLanguage = kNoLanguage;
};

// "0x040c,fr" -> 0x040c; none or 0 gives kNoLanguage.
int32_t ParseLanguage(const char* text);
Str LanguageText(int32_t language);
// Lower-case ISO 639 abbreviation of a language; empty when Windows knows none (logged).
Str LanguageAbbreviation(int32_t language);
// Index of the best entry for `wanted`, -1 when none.
int32_t BestIndex(const std::vector<int32_t>& list, int32_t wanted);
// "<ShortAppKey>su<MajVersion>" expanded (libraries of the setup) or "<ShortAppKey><MajVersion>" (the product's).
Str LibraryPrefix(bool product);
// Language of a library file, or of the running program when `path` is null.
int32_t ModuleLanguage(const char* path);
std::vector<int32_t> ListLanguages(const char* folder, bool product);
// Loads the library for `language`; the program itself serves its own language.
[[nodiscard]] bool LoadLanguage(int32_t language);
// The whole choice at start-up, with its log lines.
[[nodiscard]] bool ChooseAndLoadLanguage();
void FreeLanguageLibrary();
