#pragma once
// Windows 95/98: the install function of that family does not take long names, so it works with short ones.
#include "base/str.h"

// Gives the names to install with: the source's short name, and the target's short name when it exists.
// A target that does not exist is installed under a temporary short name, whose path goes to
// `temporary` (else empty).
void UseShortNames(const Str& sourcePath, const Str& target, Str& srcName, Str& destName, Str& temporary);
// Moves the temporary file to its target, or deletes it after a failure.
void FinishShortNames(bool installed, const Str& temporary, const Str& target);
