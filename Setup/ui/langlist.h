#pragma once
// Language libraries beside the program: their names, and which languages they are of.
#include <cstdint>
#include <vector>

#include "base/str.h"

// "<ShortAppKey>su<MajVersion>" expanded (libraries of the setup) or "<ShortAppKey><MajVersion>" (the
// product's). Empty, after an assertion, when the variables give no usable prefix.
Str LibraryPrefix(bool product);
// Language of a library file, or of the running program when `path` is null: that of the one translation in
// its version resource. Any other number of them asserts and gives kNoLanguage.
int32_t ModuleLanguage(const char* path);
// Whether the file is a library of exactly that language. Quiet about others: they are listed, and complained
// about, by ModuleLanguage.
bool IsLibraryOf(const char* path, int32_t language);
// The languages of the setup's libraries in `folder` (a full path), each once, in the folder's order, and the
// program's own.
std::vector<int32_t> ListLanguages(const char* folder);
// The same of the product's libraries. `pattern` names the files: "VT6*.dll", or what their names begin with.
// A pattern that begins with a wildcard, or is empty, takes those with the product's prefix.
std::vector<int32_t> ListProductLanguages(const char* folder, const char* pattern);
// Path of the setup's library for a language: the file named after its abbreviation when it really is of that
// language, else the first library that is, else the named file if it has no version to tell its language.
// Empty when there is none.
Str FindLibrary(const Str& folder, int32_t language, const Str& abbreviation);
