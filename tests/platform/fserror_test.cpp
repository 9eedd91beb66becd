#include "platform/fserror.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

uint32_t FromSystem(DWORD error) {
  FS::SetLastError(0x12345678);
  FS::SetFromSystem(error);
  return FS::LastError();
}

uint32_t FromRunTime(int error) {
  FS::SetLastError(0x12345678);
  FS::SetFromRunTime(error);
  return FS::LastError();
}

TEST(FSError, Values) {
  EXPECT_EQ(FS::fsErrNone, 0u);
  EXPECT_EQ(FS::fsErrNotFound, 0x80040205u);
  EXPECT_EQ(FS::fsErrAccess, 0x80040203u);
  EXPECT_EQ(FS::fsErrFailed, 0x80000000u);
}

TEST(FSError, SuccessIsNone) {
  EXPECT_EQ(FromSystem(ERROR_SUCCESS), FS::fsErrNone);
  EXPECT_EQ(FromRunTime(0), FS::fsErrNone);
}

TEST(FSError, FileOrPathNotFound) {
  EXPECT_EQ(FromSystem(2), FS::fsErrNotFound);
  EXPECT_EQ(FromSystem(3), FS::fsErrNotFound);
  EXPECT_EQ(FromRunTime(ENOENT), FS::fsErrNotFound);
}

TEST(FSError, AccessDeniedAndSharingViolation) {
  EXPECT_EQ(FromSystem(5), FS::fsErrAccess);
  EXPECT_EQ(FromSystem(32), FS::fsErrAccess);
  EXPECT_EQ(FromRunTime(EACCES), FS::fsErrAccess);
  EXPECT_EQ(FromRunTime(ENOTEMPTY), FS::fsErrAccess);
}

TEST(FSError, AnythingElseFailed) {
  for (DWORD error : {1u, 15u, 19u, 112u, 123u, 145u, 183u})
    EXPECT_EQ(FromSystem(error), FS::fsErrFailed) << error;
  for (int error : {EEXIST, EINVAL, ENOSPC}) EXPECT_EQ(FromRunTime(error), FS::fsErrFailed) << error;
}

TEST(FSError, ItIsOverwrittenEachTime) {
  FS::SetLastError(FS::fsErrAccess);
  FS::SetLastError(FS::fsErrNone);
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
}

}  // namespace
