// Letters, digits and blanks of ASCII.
#include "base/ascii.h"

#include <gtest/gtest.h>

namespace {

TEST(Ascii, LettersAreLoweredAndOtherBytesStay) {
  EXPECT_EQ(AsciiLower('A'), 'a');
  EXPECT_EQ(AsciiLower('Z'), 'z');
  EXPECT_EQ(AsciiLower('@'), '@');
  EXPECT_EQ(AsciiLower('['), '[');
  EXPECT_EQ(AsciiLower('\xc9'), '\xc9');
  EXPECT_TRUE(IsAsciiLetter('Q') && IsAsciiLetter('q'));
  EXPECT_FALSE(IsAsciiLetter('`') || IsAsciiLetter('{') || IsAsciiLetter('\xe9'));
  EXPECT_TRUE(IsAsciiDigit('0') && IsAsciiDigit('9'));
  EXPECT_FALSE(IsAsciiDigit('/') || IsAsciiDigit(':'));
}

TEST(Ascii, TextsAreEqualButForTheCaseOfLetters) {
  EXPECT_TRUE(EqualNoCase("Setup.INF", "sETUP.inf"));
  EXPECT_TRUE(EqualNoCase("", ""));
  EXPECT_FALSE(EqualNoCase("abc", "ab"));
  EXPECT_FALSE(EqualNoCase("ab", "abc"));
  EXPECT_FALSE(EqualNoCase("\xc9", "\xe9"));
}

TEST(Ascii, SpacesAndTabsAreBlanks) {
  EXPECT_EQ(SkipBlanks(" \t a "), "a ");
  EXPECT_EQ(TrimBlanks(" \t a b\t "), "a b");
  EXPECT_EQ(TrimBlanks("a\n"), "a\n");
  EXPECT_EQ(TrimBlanks(" \t"), "");
  EXPECT_EQ(TrimBlanks(""), "");
}

}  // namespace
