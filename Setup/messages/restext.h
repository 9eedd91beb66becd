#pragma once
// Several resource strings at once.
#include <cstdint>

#include "base/str.h"
#include "base/strlist.h"
#include "messages/res.h"

// Texts may be spread over a run of consecutive strings that ends before "!END!" or a missing string.
constexpr int32_t kMaxRunLength = 100;
// Text `index` of the run that begins with `firstId`, unexpanded and cut to `room` bytes, terminator
// included; false at its end.
[[nodiscard]] bool GetRunText(unsigned firstId, int32_t index, Str& text, int32_t room = MAX_RES_STRING_LEN);

// A long message: joins the texts of a run, kMaxRunLength at most and 1024 characters of each.
Str JoinResStrings(unsigned firstId);
// The `count` strings from `firstId` on as a packed list, with the flags of GetResStr. A
// missing one is an empty entry.
StrList ListResStrings(unsigned firstId, int32_t count, uint32_t flags);
