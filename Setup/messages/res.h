#pragma once
// Resource texts: ids from 20000 up come from the program itself, lower ids from the loaded language library,
// else from the program.
#include <windows.h>

#include <cstdint>

#include "base/str.h"

constexpr int32_t MAX_RES_STRING_LEN = 4000;  // bytes of one loaded piece, terminator included

// The loaded language library; null means the program's own resources. Set by the language list, not owned.
void SetLanguageModule(HMODULE module);
HMODULE GetLanguageModule();
// The module that holds the program's own resources; null (the default) means the running program. Not owned.
void SetProgramModule(HMODULE module);
HMODULE GetProgramModule();
// The module whose dialogs and strings an id is taken from.
HMODULE ModuleForResource(unsigned id);

// Loads string `id` into a buffer of `size` bytes, from the chosen module, else from the program; its length,
// 0 when there is none. Asserts "id != 0".
int32_t LoadResString(unsigned id, char* buffer, int32_t size);

enum ResFlags : uint32_t { kResExpand = 1 };
// String strID + index with continuation ("$") and tag ("!tag!") rules, each of its pieces cut to `room`
// bytes, terminator included; false when it is missing or empty.
bool GetResStr(unsigned strID, int32_t index, Str& result, uint32_t flags, int32_t room = MAX_RES_STRING_LEN);
void GetResStr(unsigned strID, int32_t index, char* buffer, int32_t strMax, uint32_t flags);
// The expanded text in one process-wide Str, overwritten by the next call; its pieces are cut at 1023
// characters. A missing string asserts and gives an empty text.
const char* GetResStr(unsigned strID);
// Asserts that a string id names no string.
void ReportMissingString();
// The part after the first "!"; the part before it. The whole text when there is none.
// Unexpanded, not continued.
void GetResStrAfterTag(unsigned strID, int32_t index, Str& result);
void GetResStrBeforeTag(unsigned strID, int32_t index, Str& result);
// The text between the first and second "!", empty when untagged or "!END!".
void GetResStrTag(unsigned strID, int32_t index, Str& result);
