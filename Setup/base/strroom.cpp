#include "base/strroom.h"

#include "base/assert.h"

int64_t CapacityFor(int64_t needed) {
  constexpr int64_t kGrowStep = 100;
  if (!VT_ASSERT(needed >= 0, "needed >= 0")) return 0;
  return (needed + kGrowStep - 1) / kGrowStep * kGrowStep;
}
