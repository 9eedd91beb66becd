#include "base/version.h"

#include "base/assert.h"

namespace {

constexpr int32_t kFirstBeta = 100;

}  // namespace

Version::Version(int32_t major, int32_t minor, int32_t revision, int32_t stage)
    : mValid(true), mMajor(major), mMinor(minor), mRevision(revision), mStage(stage) {}

Version::Version(const Version& other) { *this = other; }

Version& Version::operator=(const Version& other) {
  VT_ASSERT(other.IsValid(), "version.IsValid()");
  mValid = other.mValid;
  mMajor = other.mMajor;
  mMinor = other.mMinor;
  mRevision = other.mRevision;
  mStage = other.mStage;
  return *this;
}

bool Version::IsNewerThan(const Version& other) const {
  VT_ASSERT(IsValid(), "IsValid()");
  if (mMajor != other.mMajor) return mMajor > other.mMajor;
  if (mMinor != other.mMinor) return mMinor > other.mMinor;
  if (mRevision != other.mRevision) return mRevision > other.mRevision;
  return IsLaterStageThan(other);
}

bool Version::IsNewerBuildOf(const Version& other) const {
  VT_ASSERT(IsValid(), "IsValid()");
  if (mMajor != other.mMajor || mMinor != other.mMinor || mRevision != other.mRevision) return false;
  return IsLaterStageThan(other);
}

void Version::ToText(Str& result, int32_t style) const {
  VT_ASSERT(IsValid(), "IsValid()");
  if (style == 1 || style == 2) {
    const char separator = style == 1 ? ',' : '.';
    result.Format("%d%c%d%c%d%c%d", mMajor, separator, mMinor, separator, mRevision, separator, mStage);
    return;
  }
  result.Format("%d.%02d", mMajor, mMinor);
  if (mRevision != 0) result.Append(static_cast<char>(mRevision));
  Str stage;
  if (mStage >= kFirstBeta) {
    stage.Format(" beta %d", mStage - kFirstBeta);
  } else if (mStage > 0) {
    stage.Format(" alpha %d", mStage);
  }
  result.Append(stage);
}

// A release comes after every pre-release of the same numbers.
bool Version::IsLaterStageThan(const Version& other) const {
  if (other.mStage == 0) return false;
  return mStage == 0 || mStage > other.mStage;
}
