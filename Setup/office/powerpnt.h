#pragma once
// PowerPoint versions this setup knows and the add-in registered for them.
#include <cstdint>

#include "base/str.h"

constexpr int32_t kNumPowerPntVersions = 4;

// Row of an Office major version, -1 when this setup does not know it.
int32_t FindPowerPntRow(int32_t version);
// Records the add-in for a row and looks whether that PowerPoint is installed.
void SetPowerPntAddIn(int32_t row, const Str& fileName, const Str& folder);
// Registers the recorded add-in for loading in every version found.
void RegisterPowerPntAddIns();
// Deletes the registration of every recorded add-in.
void UnregisterPowerPntAddIns();
void ResetPowerPntAddIns();
