#include "platform/fsvolume.h"

#include <windows.h>

#include <algorithm>

#include "base/assert.h"
#include "base/errormode.h"

namespace FS {
namespace {

struct DriveTypeRow {
  uint32_t driveType;
  VolumeType type;
};
constexpr DriveTypeRow kDriveTypes[] = {
    {DRIVE_UNKNOWN, volUnknown}, {DRIVE_FIXED, volFixed},     {DRIVE_REMOVABLE, volRemovable},
    {DRIVE_CDROM, volCDROM},     {DRIVE_RAMDISK, volRAMDisk}, {DRIVE_REMOTE, volRemote},
};

// The root of the path's volume, with a trailing backslash; the current volume for a relative path.
Str VolumeRoot(const char* volPath) {
  FSPath path(volPath);
  if (!path.IsFullPath() && !path.MakeFull()) return Str();
  return path.Components(FSPath::compVolume);
}

}  // namespace

bool GetFreeKB(const char* volPath, uint32_t& kb) {
  kb = 0;
  SetLastError(fsErrFailed);
  if (!VT_ASSERT(volPath, "volPath")) return false;
  const Str root = VolumeRoot(volPath);
  DWORD sectors = 0, bytes = 0, freeClusters = 0, clusters = 0;
  CriticalErrorGuard guard;
  if (!GetDiskFreeSpaceA(root, &sectors, &bytes, &freeClusters, &clusters)) {
    SetFromSystem(GetLastError());
    return false;
  }
  kb = ClusterKB(sectors, bytes, freeClusters);
  // The cluster count of a huge volume is capped (on Windows 95/98 at 2 GB); the byte count is not.
  ULARGE_INTEGER available = {}, total = {}, totalFree = {};
  if (GetDiskFreeSpaceExA(root, &available, &total, &totalFree))
    kb = std::max(kb, BytesKB(available.QuadPart));
  SetLastError(fsErrNone);
  return true;
}

bool GetVolumeType(const char* volPath, VolumeType& type) {
  type = volUnknown;
  SetLastError(fsErrFailed);
  if (!VT_ASSERT(volPath, "volPath")) return false;
  const Str root = VolumeRoot(volPath);
  CriticalErrorGuard guard;
  if (!VolumeTypeOf(GetDriveTypeA(root), type)) return false;
  SetLastError(fsErrNone);
  return true;
}

bool VolumeTypeOf(uint32_t driveType, VolumeType& type) {
  if (driveType == DRIVE_NO_ROOT_DIR) return false;
  for (const DriveTypeRow& row : kDriveTypes) {
    if (row.driveType != driveType) continue;
    type = row.type;
    return true;
  }
  VT_FAIL("Unknown volume type.");
  return false;
}

}  // namespace FS
