#pragma once
// Language ids of Windows, their text forms, and which one of a list comes nearest to a wish.
#include <cstdint>
#include <vector>

#include "base/str.h"

constexpr int32_t kNoLanguage = -1;

// "0x040c,fr" -> 0x040c: the hexadecimal number at the start, "0x" optional. 0, more than 16 bits and null
// give kNoLanguage.
int32_t ParseLanguage(const char* text);
// The reverse: "0x040c,fr".
Str LanguageText(int32_t language);
// Lower-case ISO 639 abbreviation of a language; empty when Windows knows none (logged).
Str LanguageAbbreviation(int32_t language);
// Index of the best entry for `wanted`: the same language, else the first of the same primary language; -1
// when there is none.
int32_t BestIndex(const std::vector<int32_t>& list, int32_t wanted);
