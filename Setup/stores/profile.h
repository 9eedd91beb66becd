#pragma once
// The Windows profile (win.ini).
#include "base/str.h"

// Text of a key, at most `size` - 1 bytes; empty when there is none.
Str ProfileText(const char* section, const char* key, int32_t size = 1024);
