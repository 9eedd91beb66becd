// Text in a double-byte code page. These tests need a system whose ANSI code page is the Japanese one;
// test_other_systems.py runs them in such a one.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

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

TEST_F(DoubleByte, SecondHalvesHaveNoCaseInASearch) {
  EXPECT_EQ(Str::IFind("z\x83\x41", "\x83\x61"), nullptr);
  EXPECT_EQ(Str("z\x83\x41").Find("\x83\x61", 0, false), -1);
  const char text[] = "\x83\x61\x83\x41";
  EXPECT_EQ(Str::IFind(text, "\x83\x41"), text + 2);
}

TEST_F(DoubleByte, FullWidthLettersAreFoundInEitherCase) {
  const char text[] = "x\x82\x60y\x82\x81";
  EXPECT_EQ(Str::IFind(text, "\x82\x81"), text + 1);
  EXPECT_EQ(Str(text).Find("\x82\x81"), 4);
}

TEST_F(DoubleByte, AFirstHalfIsFoundAlone) {
  const char text[] = "a\x83\x41";
  EXPECT_EQ(Str::IFind(text, "A\x83"), text);
  EXPECT_EQ(Str::IFind(text, "\x83\x41\x83"), nullptr);
}

TEST_F(DoubleByte, HalfWidthLettersHaveNoCase) {
  EXPECT_NE(Str::ICompare("\xc1", "\xe1"), 0);  // a pair of letters in the western code page
  EXPECT_EQ(Str::ICompare("\xb1x", "\xb1X"), 0);
}

TEST_F(DoubleByte, PositionsAndCountsAreBytes) {
  Str text("\x83\x5cz\x83\x5c");  // 5C has the code of a backslash
  EXPECT_EQ(text.Length(), 5);
  EXPECT_EQ(text.Find('\\'), 1);
  EXPECT_EQ(text.FindLast('\\'), 4);
  EXPECT_EQ(text.Compare("\x83\x5c", 2), 0);
  text.Delete(2, 1);
  EXPECT_STREQ(text.Chars(), "\x83\x5c\x83\x5c");
  text.Insert("-", 2);
  text.SetAt(4, '\x5d');
  EXPECT_STREQ(text.Chars(), "\x83\x5c-\x83\x5d");
  text.Left("\x83\x41z", 2);
  EXPECT_STREQ(text.Chars(), "\x83\x41");
  text.Left("\x83\x41z", 1);
  EXPECT_STREQ(text.Chars(), "\x83");
  text.Right("z\x83\x41", 2);
  EXPECT_STREQ(text.Chars(), "\x83\x41");
}

TEST_F(DoubleByte, TheWideBlankIsNotTrimmed) {
  Str text(
      " \x81\x40"
      "a\x81\x40 ");
  text.Trim();
  EXPECT_STREQ(text.Chars(),
               "\x81\x40"
               "a\x81\x40");
}

TEST_F(DoubleByte, FormattingKeepsCharactersWhole) {
  Str text;
  text.Format("<%s|%c>", "\x83\x5c", 'x');
  EXPECT_STREQ(text.Chars(), "<\x83\x5c|x>");
}

TEST_F(DoubleByte, AWideTextOfDoubleByteCharactersFitsTheBufferLocked) {
  Str text;
  text = std::wstring(150, L'\u30a2').c_str();
  EXPECT_EQ(text.Length(), 300);
  EXPECT_EQ(text.Capacity(), 400);  // 2 x 150 + 1, rounded up
}

TEST_F(DoubleByte, ATextCutShortInUnitsKeepsItsFirstCharacters) {
  wchar_t buffer[8] = L"#######";
  AnsiToWide("a\x83\x41\x83\x41", buffer, 3);
  EXPECT_STREQ(buffer, L"a\u30a2");
  EXPECT_EQ(buffer[3], L'#');
}

TEST_F(DoubleByte, AFirstHalfAtTheEndIsConvertedWithinTheText) {
  wchar_t buffer[8] = L"#######";
  AnsiToWide("a\x83", buffer, 8);
  EXPECT_EQ(buffer[0], L'a');
  EXPECT_LE(wcslen(buffer), 2u);
  const auto whole = AnsiToWide("a\x83");
  ASSERT_NE(whole, nullptr);
  EXPECT_STREQ(whole.get(), buffer);
  WStr text;
  text = "a\x83";
  EXPECT_STREQ(text.Chars(), buffer);
}

TEST_F(DoubleByte, AllocatingConversionsKeepTheText) {
  EXPECT_STREQ(AnsiToWide("\x83\x41z").get(), L"\u30a2z");
  EXPECT_STREQ(WideToAnsi(L"\u30a2z").get(), "\x83\x41z");
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
