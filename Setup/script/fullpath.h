#pragma once
// Paths compared as places on the disk rather than as texts.
#include "base/str.h"

// Absolute form with long names; the text as it is when it cannot be had.
Str FullLongPath(const char* path);
// Case and a backslash at the end do not count.
bool IsSamePath(const char* a, const char* b);
// Whether `folder` is `inner` or a folder that holds it.
bool HoldsPath(const char* folder, const char* inner);
