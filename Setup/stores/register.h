#pragma once
// One-shot registry jobs. "Store path" is the "REG*<root>\<subkey>" form of the INI stores.
#include <windows.h>

#include <cstdint>

#include "base/str.h"

// Creates (or opens) the subkey and sets the value; failures are logged.
bool RegCreateKeyValue(HKEY key, const char* subKey, const char* valueName, const void* data, uint32_t size,
                       uint32_t type);
bool RegCreateKeyValue(HKEY key, const char* subKey, const char* valueName, const char* text);
bool RegCreateKeyValue(HKEY key, const char* subKey, const char* valueName, uint32_t number);
// Reads at most 1024 bytes.
bool RegQueryString(HKEY root, const char* keyPath, const char* valueName, Str& out);
bool RegGetValueStr(const char* storePath, const char* valueName, Str& out);
bool RegKeyOrValueExists(const char* storePath, const char* valueName);
enum RegContains : int32_t { kRegMissing = 0, kRegOther = 1, kRegContains = 2 };
int32_t RegValueContains(HKEY root, const char* subKey, const char* valueName, const char* text, Str* out);
// Deletes the value, then closes `key` unless it is a predefined root: the handle is gone afterwards.
bool RegDeleteSubKeyValue(HKEY key, const char* subKey, const char* valueName);
// Deletes the subkey with all below it; returns how many keys could not be deleted. An
// empty subkey is refused.
int32_t RegDeleteKeyTree(HKEY key, const char* subKey);
// Null for an unknown name.
HKEY RootKeyFromName(const char* text);
bool GetProgramFilesDir(char* buffer, uint32_t size);
