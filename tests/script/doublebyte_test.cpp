// Run under a Japanese code page by test_other_systems.py: the second byte of some characters has the
// backslash's code.
#include <gtest/gtest.h>
#include <windows.h>

#include "base/leadbyte.h"
#include "script/fullpath.h"
#include "script/leftovers.h"
#include "script/setupinf.h"
#include "script/verscopy.h"

namespace {

// A character whose second byte is 5C, and one more.
#define TABLE "\x95\x5C"
#define SHOW "\x8E\xA6"

class DoubleByte : public testing::Test {
 protected:
  void SetUp() override {
    if (GetACP() != 932) GTEST_SKIP() << "the ANSI code page here is " << GetACP();
  }
};

TEST_F(DoubleByte, AFolderHoldsNoOtherWhoseNameBeginsLikeItsOwn) {
  EXPECT_FALSE(HoldsPath("C:\\" TABLE, "C:\\" TABLE SHOW));
  EXPECT_TRUE(HoldsPath("C:\\" TABLE, "C:\\" TABLE "\\" SHOW));
}

TEST_F(DoubleByte, ARegistryValueMayEndInACharacterWithABackslashsCode) {
  Str root;
  Str keyPath;
  Str valueName;
  ASSERT_TRUE(
      SplitRegistryLine("HKEY_CURRENT_USER\\Software\\Quorvale\\" TABLE SHOW, root, keyPath, valueName));
  EXPECT_STREQ(root, "HKEY_CURRENT_USER");
  EXPECT_STREQ(keyPath, "Software\\Quorvale");
  EXPECT_STREQ(valueName, TABLE SHOW);
}

TEST_F(DoubleByte, AKeyMayEndInACharacterWithABackslashsCode) {
  Str root;
  Str keyPath;
  Str valueName;
  ASSERT_TRUE(
      SplitRegistryLine("HKEY_CURRENT_USER\\Software\\" TABLE "\\Sub\\Name", root, keyPath, valueName));
  EXPECT_STREQ(keyPath, "Software\\" TABLE "\\Sub");
  EXPECT_STREQ(valueName, "Name");
}

TEST_F(DoubleByte, ATildeBehindACharacterWithABackslashsCodeMarksNoTemporaryFile) {
  EXPECT_FALSE(IsOwnTempPath("C:\\" TABLE "~a.dll", IsAnsiLeadByte));
  EXPECT_TRUE(IsOwnTempPath("C:\\" TABLE "\\~a.dll", IsAnsiLeadByte));
}

TEST_F(DoubleByte, ASecondHalfThatLooksLikeAnUnderlineMarksNoCompressedFile) {
  EXPECT_FALSE(IsCompressedName("C:\\a.\x83\x5F"));
  EXPECT_TRUE(IsCompressedName("C:\\a.\x83\x5F_"));
}

}  // namespace
