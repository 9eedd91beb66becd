#pragma once
// Language libraries made by the tests: of one language, of several, or of none.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "base/handle.h"
#include "support/files.h"
#include "support/library_maker.h"
#include "support/process.h"

// Writes a language library whose version resource lists these languages (at least one) and
// which holds these strings.
inline void MakeLanguageFile(const std::string& path, const std::vector<uint16_t>& languages,
                             const std::map<unsigned, std::string>& strings = {}) {
  LibrarySpec spec;
  for (const uint16_t language : languages) spec.translations.push_back({language, 1252});
  spec.strings = strings;
  WriteWholeFile(path, MakeLibrary(spec));
}

// A library without a version resource.
inline void MakeFileWithoutVersion(const std::string& path) {
  LibrarySpec spec;
  spec.hasVersion = false;
  spec.strings[258] = "x";
  WriteWholeFile(path, MakeLibrary(spec));
}

// Where the UTF-16 form of a name stands in a file's bytes.
inline size_t FindWide(const std::string& bytes, const std::string& name) {
  std::string wide;
  for (const char ch : name) wide += {ch, '\0'};
  const size_t at = bytes.find(wide);
  EXPECT_NE(at, std::string::npos) << name;
  return at;
}

// A library with a version resource that has no \VarFileInfo.
inline void MakeFileWithoutTranslation(const std::string& path) {
  MakeLanguageFile(path, {0x0409});
  std::string bytes = ReadWholeFile(path);
  bytes[FindWide(bytes, "VarFileInfo")] = 'X';
  WriteWholeFile(path, bytes);
}

// A library whose \VarFileInfo\Translation is there but empty.
inline void MakeFileWithEmptyTranslation(const std::string& path) {
  MakeLanguageFile(path, {0x0409});
  std::string bytes = ReadWholeFile(path);
  bytes[FindWide(bytes, "Translation") - 4] = 0;  // the value's length, two words before the name
  WriteWholeFile(path, bytes);
}

// One of the build's own language libraries.
inline std::string ShippedLibrary(const std::string& name) {
  return TestFolder() + "\\testdata\\languages\\" + name;
}

// A file opened as the program opens its language library.
class DataModule {
 public:
  explicit DataModule(const std::string& path)
      : mModule(LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE)) {
    EXPECT_TRUE(static_cast<bool>(mModule)) << path;
  }
  HMODULE Get() const { return mModule.Get(); }

 private:
  ModuleHandle mModule;
};
