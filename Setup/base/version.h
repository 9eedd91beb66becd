#pragma once
// Version value: major, minor, revision letter and pre-release stage.
#include <cstdint>

#include "base/str.h"

class Version {
 public:
  Version() = default;  // invalid
  Version(int32_t major, int32_t minor, int32_t revision, int32_t stage);
  Version(const Version& other);
  Version& operator=(const Version& other);
  bool IsValid() const { return mValid; }
  int32_t Major() const { return mMajor; }
  int32_t Minor() const { return mMinor; }
  int32_t Revision() const { return mRevision; }
  int32_t Stage() const { return mStage; }
  bool IsNewerThan(const Version& other) const;
  bool IsNewerBuildOf(const Version& other) const;
  // style 0: "6.00a beta 2"; 1: "6,0,97,102"; 2: "6.0.97.102".
  void ToText(Str& result, int32_t style) const;

 private:
  bool IsLaterStageThan(const Version& other) const;

  bool mValid = false;
  int32_t mMajor = 0;
  int32_t mMinor = 0;
  int32_t mRevision = 0;  // a character code, 0 for none
  int32_t mStage = 0;     // 0 release; 1..99 alpha number; 100 and above beta number + 100
};
