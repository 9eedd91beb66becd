#pragma once
// Resource texts: ids from 20000 up come from the program itself, lower ids from the loaded language library, else
// from the program.
#include <windows.h>

#include <cstdint>

#include "base/str.h"

constexpr int32_t MAX_RES_STRING_LEN = 4000;  // bytes of one loaded piece, terminator included

// The loaded language library; null means the program's own resources. Set by the language list, not owned.
void SetLanguageModule(HMODULE module);
HMODULE GetLanguageModule();
// The module whose dialogs and strings an id is taken from.
HMODULE ModuleForResource(unsigned id);

// Loads string `id` into a buffer of `size` bytes, from the chosen module, else from the program; its length, 0 when
// there is none. Asserts "id != 0".
int32_t LoadResString(unsigned id, char* buffer, int32_t size);
bool ResStringExists(unsigned id);

enum ResFlags : uint32_t { kResExpand = 1 };
// String strID + index with continuation ("$") and tag ("!tag!") rules; false when it is missing.
bool GetResStr(unsigned strID, int32_t index, Str& result, uint32_t flags);
void GetResStr(unsigned strID, int32_t index, char* buffer, int32_t strMax, uint32_t flags);
// The expanded text in one process-wide Str, overwritten by the next call. A missing string asserts.
const char* GetResStr(unsigned strID);
// The part after the first "!"; the part before it (the whole when there is none). Unexpanded.
void GetResStrAfterTag(unsigned strID, int32_t index, Str& result);
void GetResStrBeforeTag(unsigned strID, int32_t index, Str& result);
// The text between the first and second "!", empty when untagged or "!END!".
void GetResStrTag(unsigned strID, int32_t index, Str& result);
