#include "platform/fsvolume.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "support/assert_recorder.h"
#include "support/import_double.h"
#include "support/temp_dir.h"

namespace {

TEST(FSFreeKB, FormulaOnTheSystemsNumbers) {
  EXPECT_EQ(FS::ClusterKB(8, 512, 1000), 4000u);
  EXPECT_EQ(FS::ClusterKB(1, 512, 3), 1u);  // 1.5 KB, cut
  EXPECT_EQ(FS::ClusterKB(8, 512, 0), 0u);
}

TEST(FSFreeKB, BigDiskDoesNotWrap) {
  // 200 GB in clusters of 4 KB; in 32 bits this would come out as 75497472.
  EXPECT_EQ(FS::ClusterKB(8, 512, 52428800), 209715200u);
}

TEST(FSFreeKB, LargestNumberIsTheLimit) {
  EXPECT_EQ(FS::ClusterKB(128, 512, 0xFFFFFFFF), 0xFFFFFFFFu);
  EXPECT_EQ(FS::ClusterKB(0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF), 0xFFFFFFFFu);
  EXPECT_EQ(FS::ClusterKB(8, 512, 0x3FFFFFFF), 0xFFFFFFFCu);  // just below
  EXPECT_EQ(FS::BytesKB(4ull << 42), 0xFFFFFFFFu);
  EXPECT_EQ(FS::BytesKB((1ull << 42) - 1), 0xFFFFFFFFu);
  EXPECT_EQ(FS::BytesKB(2047), 1u);
}

TEST(FSFreeKB, OfTheVolumeThatHoldsThePath) {
  TempDir dir;
  ULARGE_INTEGER available = {}, total = {};
  ASSERT_TRUE(GetDiskFreeSpaceExA("C:\\", &available, &total, nullptr));
  uint32_t kb = 0;
  ASSERT_TRUE(FS::GetFreeKB(dir.Path().c_str(), kb));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  // Others use the disk meanwhile: the same within 5 GB.
  const double expected = static_cast<double>(FS::BytesKB(available.QuadPart));
  EXPECT_NEAR(static_cast<double>(kb), expected, 5e6);
  EXPECT_LE(kb, total.QuadPart / 1024);
}

TEST(FSFreeKB, RelativePathIsTheCurrentDrive) {
  uint32_t kb = 0;
  EXPECT_TRUE(FS::GetFreeKB("some\\folder", kb));
  EXPECT_GT(kb, 0u);
}

TEST(FSFreeKB, MissingDriveFailsWithZero) {
  uint32_t kb = 99;
  EXPECT_FALSE(FS::GetFreeKB("Y:\\folder", kb));
  EXPECT_EQ(kb, 0u);
  EXPECT_NE(FS::LastError(), FS::fsErrNone);
}

std::string gAskedRoot;
DWORD gClusters[3];  // sectors per cluster, bytes per sector, free clusters
ULONGLONG gAvailable = 0;

BOOL WINAPI GivenClusters(LPCSTR root, LPDWORD sectors, LPDWORD bytes, LPDWORD freeClusters,
                          LPDWORD clusters) {
  gAskedRoot = root;
  *sectors = gClusters[0];
  *bytes = gClusters[1];
  *freeClusters = gClusters[2];
  *clusters = 0xFFFFFFFF;
  return TRUE;
}

BOOL WINAPI GivenBytes(LPCSTR, PULARGE_INTEGER available, PULARGE_INTEGER total, PULARGE_INTEGER totalFree) {
  available->QuadPart = total->QuadPart = totalFree->QuadPart = gAvailable;
  return gAvailable != 0;
}

// The free space of a volume about which the system tells these numbers.
uint32_t FreeKBOf(DWORD sectors, DWORD bytes, DWORD freeClusters, ULONGLONG available,
                  const char* path = "C:\\a\\b") {
  const ImportDouble clusterDouble("GetDiskFreeSpaceA", reinterpret_cast<void*>(&GivenClusters));
  const ImportDouble bytesDouble("GetDiskFreeSpaceExA", reinterpret_cast<void*>(&GivenBytes));
  gClusters[0] = sectors;
  gClusters[1] = bytes;
  gClusters[2] = freeClusters;
  gAvailable = available;
  uint32_t kb = 0;
  EXPECT_TRUE(FS::GetFreeKB(path, kb));
  return kb;
}

TEST(FSFreeKB, FromTheClustersOfTheVolumesRoot) {
  EXPECT_EQ(FreeKBOf(8, 512, 1000, 0), 4000u);
  EXPECT_EQ(gAskedRoot, "C:\\");
  EXPECT_EQ(FreeKBOf(8, 512, 1000, 0, "\\\\server\\share\\a\\b"), 4000u);
  EXPECT_EQ(gAskedRoot, "\\\\server\\share\\");
}

TEST(FSFreeKB, ClusterCountThatTheSystemCapsIsNotTheLimit) {
  // 2 GB in clusters, 3 GB in bytes.
  EXPECT_EQ(FreeKBOf(64, 512, 65535, 3ull << 30), 3u << 20);
}

// Run with a disk of 200 GB as the drive D.
TEST(HugeDiskChild, FreeSpaceIsTrue) {
  uint32_t kb = 0;
  ASSERT_TRUE(FS::GetFreeKB("D:\\some\\folder", kb));
  EXPECT_NEAR(static_cast<double>(kb), 200.0 * (1 << 20), 1024);
}

// Run with drives of these kinds.
TEST(DriveKindsChild, EachHasItsType) {
  const struct {
    const char* path;
    FS::VolumeType type;
  } rows[] = {
      {"C:\\a", FS::volFixed},     {"D:\\a", FS::volCDROM},   {"E:\\a", FS::volRemote},
      {"F:\\a", FS::volRemovable}, {"G:\\a", FS::volRAMDisk}, {"H:\\a", FS::volFixed},
  };
  for (const auto& row : rows) {
    FS::VolumeType type = FS::volUnknown;
    EXPECT_TRUE(FS::GetVolumeType(row.path, type)) << row.path;
    EXPECT_EQ(type, row.type) << row.path;
    EXPECT_EQ(FS::LastError(), FS::fsErrNone) << row.path;
  }
}

TEST(DriveKindsChild, DriveWithoutARootFails) {
  FS::VolumeType type = FS::volFixed;
  EXPECT_FALSE(FS::GetVolumeType("I:\\a", type));
  EXPECT_EQ(type, FS::volUnknown);
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  uint32_t kb = 1;
  EXPECT_FALSE(FS::GetFreeKB("I:\\a", kb));
  EXPECT_EQ(kb, 0u);
}

UINT gDriveType = 0;
UINT WINAPI GivenDriveType(LPCSTR root) {
  gAskedRoot = root;
  return gDriveType;
}

TEST(FSVolumeType, IsAskedOfTheVolumesRoot) {
  const ImportDouble asking("GetDriveTypeA", reinterpret_cast<void*>(&GivenDriveType));
  gDriveType = DRIVE_CDROM;
  FS::VolumeType type = FS::volUnknown;
  EXPECT_TRUE(FS::GetVolumeType("E:\\a\\b.txt", type));
  EXPECT_EQ(gAskedRoot, "E:\\");
  EXPECT_EQ(type, FS::volCDROM);
  EXPECT_TRUE(FS::GetVolumeType("\\\\server\\share\\a", type));
  EXPECT_EQ(gAskedRoot, "\\\\server\\share\\");
}

TEST(FSVolumeType, UnknownDriveTypeOfAPathAssertsAndFails) {
  const ImportDouble asking("GetDriveTypeA", reinterpret_cast<void*>(&GivenDriveType));
  gDriveType = 99;
  AssertRecorder recorder;
  FS::VolumeType type = FS::volFixed;
  EXPECT_FALSE(FS::GetVolumeType("C:\\", type));
  EXPECT_EQ(recorder.Only(), "Unknown volume type.");
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
}

TEST(FSVolumeType, EveryDriveTypeOfTheSystem) {
  const struct {
    UINT driveType;
    FS::VolumeType type;
  } rows[] = {
      {DRIVE_UNKNOWN, FS::volUnknown}, {DRIVE_FIXED, FS::volFixed},     {DRIVE_REMOVABLE, FS::volRemovable},
      {DRIVE_CDROM, FS::volCDROM},     {DRIVE_RAMDISK, FS::volRAMDisk}, {DRIVE_REMOTE, FS::volRemote},
  };
  for (const auto& row : rows) {
    FS::VolumeType type = static_cast<FS::VolumeType>(-1);
    EXPECT_TRUE(FS::VolumeTypeOf(row.driveType, type));
    EXPECT_EQ(type, row.type);
  }
  EXPECT_EQ(FS::volUnknown, 0);
  EXPECT_EQ(FS::volFixed, 1);
  EXPECT_EQ(FS::volRemovable, 2);
  EXPECT_EQ(FS::volCDROM, 3);
  EXPECT_EQ(FS::volRAMDisk, 4);
  EXPECT_EQ(FS::volRemote, 5);
}

TEST(FSVolumeType, NoRootFolderFailsSilently) {
  FS::VolumeType type;
  EXPECT_FALSE(FS::VolumeTypeOf(DRIVE_NO_ROOT_DIR, type));
}

TEST(FSVolumeType, AnyOtherTypeAssertsAndFails) {
  FS::VolumeType type;
  AssertRecorder recorder;
  EXPECT_FALSE(FS::VolumeTypeOf(7, type));
  EXPECT_EQ(recorder.Only(), "Unknown volume type.");
}

TEST(FSVolumeType, OfAPathOnAFixedDisk) {
  TempDir dir;
  FS::VolumeType type = FS::volUnknown;
  EXPECT_TRUE(FS::GetVolumeType(dir.Join("no\\such\\file").c_str(), type));
  EXPECT_EQ(type, FS::volFixed);
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
}

TEST(FSVolumeType, MissingDriveFails) {
  FS::VolumeType type = FS::volFixed;
  EXPECT_FALSE(FS::GetVolumeType("Y:\\x", type));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
}

}  // namespace
