// Reading the Windows profile.
#include "stores/profile.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace {

class Profile : public testing::Test {
 protected:
  void TearDown() override { WriteProfileStringA("VTProfile", nullptr, nullptr); }
};

TEST_F(Profile, GivesTheTextOfAKey) {
  ASSERT_TRUE(WriteProfileStringA("VTProfile", "name", "a text"));
  EXPECT_STREQ(ProfileText("VTProfile", "name"), "a text");
}

TEST_F(Profile, AMissingKeyOrSectionIsEmpty) {
  ASSERT_TRUE(WriteProfileStringA("VTProfile", "name", "a text"));
  EXPECT_STREQ(ProfileText("VTProfile", "other"), "");
  EXPECT_STREQ(ProfileText("VTNoProfile", "name"), "");
}

TEST_F(Profile, CutsToTheSize) {
  ASSERT_TRUE(WriteProfileStringA("VTProfile", "name", "abcdef"));
  EXPECT_STREQ(ProfileText("VTProfile", "name", 4), "abc");
}

}  // namespace
