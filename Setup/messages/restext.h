#pragma once
// Several resource strings at once.
#include <cstdint>

#include "base/str.h"
#include "base/strlist.h"

// A long message that is spread over consecutive strings: joins them from `firstId` on, unexpanded, up to
// "!END!", a missing string, or 100 strings.
Str JoinResStrings(unsigned firstId);
// The `count` strings from `firstId` on as a packed list, with the flags of GetResStr. A missing one is an
// empty entry.
StrList ListResStrings(unsigned firstId, int32_t count, uint32_t flags);
