#pragma once
// Several resource strings at once.
#include <cstdint>

#include "base/str.h"
#include "base/strlist.h"

// Texts may be spread over a run of consecutive strings that ends before "!END!" or a missing string.
constexpr int32_t kMaxRunLength = 100;
// Text `index` of the run that begins with `firstId`, unexpanded; false at its end.
[[nodiscard]] bool GetRunText(unsigned firstId, int32_t index, Str& text);

// A long message: joins the texts of a run, kMaxRunLength at most.
Str JoinResStrings(unsigned firstId);
// The `count` strings from `firstId` on as a packed list, with the flags of GetResStr. A missing one is an
// empty entry.
StrList ListResStrings(unsigned firstId, int32_t count, uint32_t flags);
