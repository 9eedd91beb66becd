#pragma once
// What the system tells of a volume, brought into our units.
#include <cstdint>

#include "platform/fs.h"

namespace FS {

// ((sectors per cluster * bytes per sector) / 32 * free clusters) / 32, at most 0xFFFFFFFF.
constexpr uint32_t ClusterKB(uint32_t sectorsPerCluster, uint32_t bytesPerSector, uint32_t freeClusters) {
  // Two 32-bit factors and a third, each less than 2^32: only the last product could pass 64 bits.
  const uint64_t unit = uint64_t{sectorsPerCluster} * bytesPerSector / 32;
  if (freeClusters != 0 && unit > UINT64_MAX / freeClusters) return UINT32_MAX;
  const uint64_t kb = unit * freeClusters / 32;
  return kb > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(kb);
}

constexpr uint32_t BytesKB(uint64_t bytes) {
  return bytes / 1024 > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(bytes / 1024);
}

// Our type for the system's drive type; false for a drive without root folder and for an
// unknown type, which asserts.
[[nodiscard]] bool VolumeTypeOf(uint32_t driveType, VolumeType& type);

}  // namespace FS
