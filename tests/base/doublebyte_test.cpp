// Text in a double-byte code page. These tests need a system whose ANSI code page is the Japanese one;
// test_other_systems.py runs them in such a one.
#include <gtest/gtest.h>
#include <windows.h>

#include "base/str.h"
#include "base/string.h"

namespace {

class DoubleByte : public testing::Test {
 protected:
  void SetUp() override {
    if (GetACP() != 932) GTEST_SKIP() << "the ANSI code page here is " << GetACP();
  }
};

TEST_F(DoubleByte, FullWidthLettersFold) {
  EXPECT_EQ(Str::ICompare("\x82\x60x", "\x82\x81X"), 0);  // full-width A and a
}

TEST_F(DoubleByte, TrailBytesAreNotFoldedAsLetters) {
  EXPECT_NE(Str::ICompare("\x83\x41", "\x83\x61"), 0);  // trail bytes A and a of two different characters
  EXPECT_EQ(Str::ICompare("\x83\x41", "\x83\x41"), 0);
}

TEST_F(DoubleByte, ALeadByteAtTheEndStaysInside) {
  EXPECT_EQ(Str::ICompare("a\x83", "A\x83"), 0);
  EXPECT_NE(Str::ICompare("a\x83", "A\x83\x41"), 0);
}

TEST_F(DoubleByte, SearchTriesEveryByte) {
  const char text[] = "\x83\x41z";
  EXPECT_EQ(Str::IFind(text, "aZ"), text + 1);
  EXPECT_EQ(Str::IFind(text, "\x83\x41Z"), text);
}

TEST_F(DoubleByte, WideTextIsConverted) {
  Str text;
  text = L"\u30a2z";
  EXPECT_STREQ(text.Chars(), "\x83\x41z");
  WStr wide;
  wide = text.Chars();
  EXPECT_STREQ(wide.Chars(), L"\u30a2z");
}

TEST_F(DoubleByte, ATextCutShortHoldsNoHalfCharacter) {
  char buffer[8] = "#######";
  WideToAnsi(L"a\u30a2\u30a2", buffer, 5);
  EXPECT_STREQ(buffer, "a\x83\x41");
  WideToAnsi(L"a\u30a2\u30a2", buffer, 4);
  EXPECT_STREQ(buffer, "a\x83\x41");
  WideToAnsi(L"a\u30a2\u30a2", buffer, 3);
  EXPECT_STREQ(buffer, "a");
}

}  // namespace
