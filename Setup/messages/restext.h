#pragma once
// Long messages that are spread over consecutive resource strings.
#include "base/str.h"

// Joins the strings from `firstId` on, unexpanded, up to "!END!", a missing string, or 100 strings.
Str JoinResStrings(unsigned firstId);
