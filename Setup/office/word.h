#pragma once
// Word versions this setup knows, their startup folders, and the macro files that go there.
#include <cstdint>

#include "base/str.h"

// One Word version; constant.
struct WordVersion {
  unsigned nameId;        // resource string naming the product
  int32_t version;        // Office major version
  const char* wordKey;    // INI-store path of Word's key
  const char* commonKey;  // INI-store path of Office's shared key
  unsigned messageId;     // failure message, several strings up to "!END!"
  unsigned reasonId;      // first of four reasons
  unsigned actionId;      // first of four pieces of advice, in the reasons' order
};

constexpr int32_t kNumWordVersions = 4;

// Row 0..3; asserts and gives the newest outside that range.
const WordVersion& WordRow(int32_t row);
// Row of an Office major version, -1 when this setup does not know it.
int32_t FindWordRow(int32_t version);

// Word's startup folder by the registry; false when that Word is not there.
[[nodiscard]] bool FindWordStartup(const WordVersion& word, Str& path);

// What set_word_macro tells about one version; names without folders, folders without trailing backslash.
struct WordMacroFiles {
  Str firstName;
  Str firstDir;
  Str secondName;
  Str secondDir;
};

// Records the files for a row and looks (and logs) whether its startup folder is there.
void SetWordMacro(int32_t row, const WordMacroFiles& files);
// Copies the recorded files into the startup folder of every version found, newest
// first, one copy per folder.
void InstallWordMacros();
// Deletes the recorded files from every startup folder there is.
void RemoveWordMacros();
// Deletes files of these names (any case) from every startup folder.
void DeleteMigratedMacros(const char* firstName, const char* secondName);
// True when Word of one of `count` versions from `first` on is installed.
[[nodiscard]] bool IsWordInstalled(int32_t first, int32_t count);

// Forgets all recorded files and sets the report flag again.
void ResetWordMacros();
