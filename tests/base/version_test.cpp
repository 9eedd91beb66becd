#include "base/version.h"

#include <gtest/gtest.h>

#include "support/assert_recorder.h"

namespace {

std::string Text(const Version& version, int32_t style) {
  Str text;
  version.ToText(text, style);
  return text.Chars();
}

TEST(Version, NewIsInvalid) { EXPECT_FALSE(Version().IsValid()); }

TEST(Version, KeepsItsFields) {
  const Version version(6, 5, 'b', 102);
  EXPECT_TRUE(version.IsValid());
  EXPECT_EQ(version.Major(), 6);
  EXPECT_EQ(version.Minor(), 5);
  EXPECT_EQ(version.Revision(), 'b');
  EXPECT_EQ(version.Stage(), 102);
}

TEST(Version, CopyOfAnInvalidOneAsserts) {
  AssertRecorder recorder;
  const Version invalid;
  Version copy(invalid);
  EXPECT_EQ(recorder.Only(), "version.IsValid()");
  recorder.Clear();
  copy = invalid;
  EXPECT_EQ(recorder.Only(), "version.IsValid()");
  EXPECT_FALSE(copy.IsValid());
}

TEST(Version, CopyOfAValidOne) {
  const Version version(6, 1, 'a', 3);
  Version copy(version);
  EXPECT_EQ(Text(copy, 2), "6.1.97.3");
  copy = Version(7, 0, 0, 0);
  EXPECT_EQ(Text(copy, 2), "7.0.0.0");
}

struct Comparison {
  const char* name;
  Version a;
  Version b;
  bool newer;
  bool newerBuild;
};

const Comparison kComparisons[] = {
    {"major", {7, 0, 0, 0}, {6, 9, 'z', 0}, true, false},
    {"major, the other way", {6, 9, 'z', 0}, {7, 0, 0, 0}, false, false},
    {"minor", {6, 1, 0, 0}, {6, 0, 'z', 0}, true, false},
    {"minor, the other way", {6, 0, 'z', 0}, {6, 1, 0, 0}, false, false},
    {"minor as a number", {6, 10, 0, 0}, {6, 9, 0, 0}, true, false},
    {"revision letter", {6, 0, 'b', 0}, {6, 0, 'a', 0}, true, false},
    {"revision letter over none", {6, 0, 'a', 101}, {6, 0, 0, 0}, true, false},
    {"revision letter, the other way", {6, 0, 'a', 0}, {6, 0, 'b', 0}, false, false},
    {"two releases", {6, 0, 0, 0}, {6, 0, 0, 0}, false, false},
    {"release over beta", {6, 0, 0, 0}, {6, 0, 0, 105}, true, true},
    {"beta against release", {6, 0, 0, 105}, {6, 0, 0, 0}, false, false},
    {"release over alpha", {6, 0, 0, 0}, {6, 0, 0, 99}, true, true},
    {"beta 1 over alpha 50", {6, 0, 0, 101}, {6, 0, 0, 50}, true, true},
    {"alpha 50 against beta 1", {6, 0, 0, 50}, {6, 0, 0, 101}, false, false},
    {"beta 0 over alpha 99", {6, 0, 0, 100}, {6, 0, 0, 99}, true, true},
    {"later beta", {6, 0, 0, 103}, {6, 0, 0, 102}, true, true},
    {"major of a release over a beta", {7, 0, 0, 0}, {6, 0, 0, 105}, true, false},
    {"minor of a release over a beta", {6, 1, 0, 0}, {6, 0, 0, 105}, true, false},
    {"revision letter of a release over a beta", {6, 0, 'b', 0}, {6, 0, 'a', 105}, true, false},
    {"earlier major, later beta", {6, 0, 0, 105}, {7, 0, 0, 101}, false, false},
    {"earlier minor, later beta", {6, 0, 0, 105}, {6, 1, 0, 101}, false, false},
    {"earlier revision letter, later beta", {6, 0, 'a', 105}, {6, 0, 'b', 101}, false, false},
    {"same beta", {6, 0, 0, 102}, {6, 0, 0, 102}, false, false},
};

TEST(Version, IsNewerThan) {
  for (const Comparison& row : kComparisons) EXPECT_EQ(row.a.IsNewerThan(row.b), row.newer) << row.name;
}

TEST(Version, IsNewerBuildOf) {
  for (const Comparison& row : kComparisons)
    EXPECT_EQ(row.a.IsNewerBuildOf(row.b), row.newerBuild) << row.name;
}

TEST(Version, ComparingAnInvalidOneAsserts) {
  AssertRecorder recorder;
  EXPECT_FALSE(Version().IsNewerThan(Version(1, 0, 0, 0)));
  EXPECT_EQ(recorder.Only(), "IsValid()");
  recorder.Clear();
  EXPECT_FALSE(Version().IsNewerBuildOf(Version(1, 0, 0, 0)));
  EXPECT_EQ(recorder.Only(), "IsValid()");
}

TEST(Version, TextInStyle0) {
  EXPECT_EQ(Text(Version(6, 0, 'a', 102), 0), "6.00a beta 2");
  EXPECT_EQ(Text(Version(6, 0, 0, 0), 0), "6.00");
  EXPECT_EQ(Text(Version(6, 12, 0, 0), 0), "6.12");
  EXPECT_EQ(Text(Version(6, 123, 0, 0), 0), "6.123");
  EXPECT_EQ(Text(Version(6, 5, 'c', 0), 0), "6.05c");
  EXPECT_EQ(Text(Version(6, 0, 0, 1), 0), "6.00 alpha 1");
  EXPECT_EQ(Text(Version(6, 0, 0, 99), 0), "6.00 alpha 99");
  EXPECT_EQ(Text(Version(6, 0, 0, 100), 0), "6.00 beta 0");
}

TEST(Version, TextInStyle1) {
  EXPECT_EQ(Text(Version(6, 0, 'a', 102), 1), "6,0,97,102");
  EXPECT_EQ(Text(Version(6, 5, 0, 0), 1), "6,5,0,0");
}

TEST(Version, TextInStyle2) { EXPECT_EQ(Text(Version(6, 0, 'a', 102), 2), "6.0.97.102"); }

TEST(Version, TextOfAnInvalidOneAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(Text(Version(), 2), "0.0.0.0");
  EXPECT_EQ(recorder.Only(), "IsValid()");
}

}  // namespace
