// Str: comparing, searching, editing and cutting.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "base/str.h"
#include "support/assert_recorder.h"

namespace {

using Texts = std::vector<std::string>;

TEST(StrCompare, IsByteWise) {
  EXPECT_EQ(Str("abc").Compare("abc"), 0);
  EXPECT_EQ(Str("abc").Compare("abd"), -1);
  EXPECT_EQ(Str("b").Compare("a"), 1);
  EXPECT_EQ(Str("ab").Compare("abc"), -1);
  EXPECT_EQ(Str("abc").Compare("ab"), 1);
  EXPECT_EQ(Str("a").Compare("A"), 1);
  EXPECT_EQ(Str("\xe9").Compare("z"), 1);  // bytes are unsigned
  EXPECT_EQ(Str().Compare(""), 0);
}

TEST(StrCompare, OfAtMostNCharacters) {
  EXPECT_EQ(Str("abcx").Compare("abcy", 3), 0);
  EXPECT_EQ(Str("abcx").Compare("abcy", 4), -1);
  EXPECT_EQ(Str("ab").Compare("abc", 3), -1);
  EXPECT_EQ(Str("ab").Compare("ab", 100), 0);
  EXPECT_EQ(Str("ab").Compare("cd", 0), 0);
  EXPECT_EQ(Str("ab").Compare("ac", -1), -1);
}

TEST(StrCompare, OfNullAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(Str("a").Compare(nullptr), 1);
  EXPECT_EQ(recorder.Only(), "cp");
}

TEST(StrIBeginsWith, IgnoresTheCaseOfAnsiLetters) {
  EXPECT_TRUE(Str("Setup.INF").IBeginsWith("sETUP."));
  EXPECT_TRUE(Str("\xc9t\xe9").IBeginsWith("\xe9T"));
  EXPECT_TRUE(Str("a").IBeginsWith("A"));
  EXPECT_TRUE(Str("a").IBeginsWith(""));
  EXPECT_FALSE(Str("a").IBeginsWith("ab"));
  EXPECT_FALSE(Str("ab").IBeginsWith("b"));
}

TEST(StrICompare, IgnoresTheCaseOfAnsiLetters) {
  EXPECT_EQ(Str("Setup.INF").ICompare("sETUP.inf"), 0);
  EXPECT_EQ(Str("\xc9t\xe9").ICompare("\xe9T\xc9"), 0);
  EXPECT_NE(Str("abc").ICompare("abd"), 0);
  EXPECT_NE(Str("abc").ICompare("ab"), 0);
  EXPECT_NE(Str("e").ICompare("\xe9"), 0);
  EXPECT_EQ(Str("a").ICompare("B"), -1);
  EXPECT_EQ(Str("B").ICompare("a"), 1);
  EXPECT_EQ(Str::ICompare("", ""), 0);
}

// The lower-case form of a byte of code page 1252.
char Lower1252(char ch) {
  const auto byte = static_cast<unsigned char>(ch);
  if (byte >= 'A' && byte <= 'Z') return static_cast<char>(byte - 'A' + 'a');
  if (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7) return static_cast<char>(byte + 0x20);
  if (byte == 0x8A || byte == 0x8C || byte == 0x8E) return static_cast<char>(byte + 0x10);
  return byte == 0x9F ? '\xff' : ch;
}

TEST(StrICompare, OfEveryByteWithEveryOther) {
  if (GetACP() != 1252) GTEST_SKIP() << "the letters of code page 1252";
  for (int a = 1; a < 256; ++a) {
    for (int b = 1; b < 256; ++b) {
      const char textA[] = {static_cast<char>(a), '\0'};
      const char textB[] = {static_cast<char>(b), '\0'};
      const bool equal = Lower1252(textA[0]) == Lower1252(textB[0]);
      EXPECT_EQ(Str::ICompare(textA, textB) == 0, equal) << a << " and " << b;
      EXPECT_EQ(Str::IFind(textA, textB) != nullptr, equal) << a << " and " << b;
    }
  }
}

TEST(StrICompare, TellsApartWhatOnlySortsAlike) {
  EXPECT_NE(Str::ICompare("stra\xdf"
                          "e",
                          "strasse"),
            0);
  EXPECT_NE(Str::ICompare("\xe6on", "aeon"), 0);
  EXPECT_NE(Str::ICompare("co-op", "coop"), 0);
}

TEST(StrFind, Character) {
  const Str text("abcabc");
  EXPECT_EQ(text.Find('b'), 1);
  EXPECT_EQ(text.Find('b', 2), 4);
  EXPECT_EQ(text.Find('b', 4), 4);
  EXPECT_EQ(text.Find('b', 5), -1);
  EXPECT_EQ(text.Find('B'), -1);
  EXPECT_EQ(text.Find('B', 0, false), 1);
  EXPECT_EQ(text.Find('B', 2, false), 4);
  EXPECT_EQ(text.Find('z', 0, false), -1);
}

TEST(StrFind, Text) {
  const Str text("abcABC");
  EXPECT_EQ(text.Find("bc"), 1);
  EXPECT_EQ(text.Find("bc", 2), -1);
  EXPECT_EQ(text.Find("bc", 2, false), 4);
  EXPECT_EQ(text.Find("ABC", 0, false), 0);
  EXPECT_EQ(text.Find("abcABCd"), -1);
  EXPECT_EQ(text.Find("abcABCd", 0, false), -1);
  EXPECT_EQ(text.Find("", 6), 6);
}

TEST(StrFind, StartAtTheEndIsAllowed) {
  EXPECT_EQ(Str("abc").Find('c', 3), -1);
  EXPECT_EQ(Str().Find('c', 0), -1);
}

TEST(StrFind, StartBeyondTheLengthAssertsAndFindsNothing) {
  AssertRecorder recorder;
  EXPECT_EQ(Str("abc").Find('a', 4), -1);
  EXPECT_EQ(recorder.Only(), "(start >= 0) && (start <= mLen)");
  recorder.Clear();
  EXPECT_EQ(Str("abc").Find("a", 4), -1);
  EXPECT_EQ(recorder.Only(), "(start >= 0) && (start <= mLen)");
  EXPECT_EQ(Str("abc").Find("", 4), -1);
  EXPECT_EQ(Str("abc").Find("", 4, false), -1);
}

TEST(StrFind, NegativeStartAssertsAndSearchesFromTheFront) {
  AssertRecorder recorder;
  EXPECT_EQ(Str("abc").Find('a', -1), 0);
  EXPECT_EQ(recorder.Only(), "(start >= 0) && (start <= mLen)");
  EXPECT_EQ(Str("abc").Find("", -1), 0);
  EXPECT_EQ(Str("abc").Find("", -1, false), 0);
}

TEST(StrFind, TheFirstMatchCounts) {
  const Str text("xaAAa");
  EXPECT_EQ(text.Find("Aa", 0, false), 1);
  EXPECT_EQ(text.Find("Aa", 2, false), 2);
  EXPECT_EQ(text.Find("Aa"), 3);
  EXPECT_EQ(text.Find("a", 5, false), -1);
}

TEST(StrFind, IFindGivesAPointerOrNull) {
  const char text[] = "One \xc9t\xe9 two";
  EXPECT_EQ(Str::IFind(text, "\xe9T\xc9"), text + 4);
  EXPECT_EQ(Str::IFind(text, "TWO"), text + 8);
  EXPECT_EQ(Str::IFind(text, "three"), nullptr);
  EXPECT_EQ(Str::IFind("ab", "abc"), nullptr);  // pattern longer than the text
  EXPECT_EQ(Str::IFind(text, ""), text);
}

TEST(StrFind, FindLast) {
  EXPECT_EQ(Str("a\\b\\c").FindLast('\\'), 3);
  EXPECT_EQ(Str("abc").FindLast('z'), -1);
  EXPECT_EQ(Str("abc").FindLast('c'), 2);
  EXPECT_EQ(Str().FindLast('c'), -1);
}

TEST(StrDelete, Middle) {
  Str text("abcdef");
  text.Delete(1, 2);
  EXPECT_STREQ(text.Chars(), "adef");
  EXPECT_EQ(text.Length(), 4);
  text.Delete(2, 0);
  EXPECT_STREQ(text.Chars(), "adef");
}

TEST(StrDelete, MinusOneDeletesToTheEnd) {
  Str text("abcdef");
  text.Delete(3, -1);
  EXPECT_STREQ(text.Chars(), "abc");
  EXPECT_EQ(text.Length(), 3);
}

TEST(StrDelete, AtTheEndChangesNothingAndAsserts) {
  Str text("abcdef");
  AssertRecorder recorder;
  text.Delete(6, 1);
  EXPECT_STREQ(text.Chars(), "abcdef");
  EXPECT_EQ(recorder.Texts(), (Texts{"pos < mLen", "count == -1 || (pos + count) <= mLen"}));
}

TEST(StrDelete, PastTheEndAssertsAndDeletesToTheEnd) {
  Str text("abcdef");
  AssertRecorder recorder;
  text.Delete(4, 5);
  EXPECT_STREQ(text.Chars(), "abcd");
  EXPECT_EQ(recorder.Only(), "count == -1 || (pos + count) <= mLen");
  recorder.Clear();
  text.Delete(1, INT32_MAX);
  EXPECT_STREQ(text.Chars(), "a");
  EXPECT_EQ(recorder.Only(), "count == -1 || (pos + count) <= mLen");
}

TEST(StrDelete, NegativeCountAssertsAndDeletesNothing) {
  Str text("abcdef");
  AssertRecorder recorder;
  text.Delete(2, -2);
  EXPECT_STREQ(text.Chars(), "abcdef");
  EXPECT_EQ(recorder.Only(), "count >= -1");
}

TEST(StrDelete, NegativePositionStaysInside) {
  Str text("abcdef");
  text.Delete(-3, 2);
  EXPECT_STREQ(text.Chars(), "abcdef");
}

TEST(StrInsert, TextAndCharacter) {
  Str text("adef");
  text.Insert("bc", 1);
  EXPECT_STREQ(text.Chars(), "abcdef");
  EXPECT_EQ(text.Length(), 6);
  text.Insert('<', 0);
  text.Insert('>', 7);
  EXPECT_STREQ(text.Chars(), "<abcdef>");
  Str empty;
  empty.Insert("x", 0);
  EXPECT_STREQ(empty.Chars(), "x");
}

TEST(StrInsert, BeyondTheEndAssertsAndAppends) {
  Str text("abc");
  AssertRecorder recorder;
  text.Insert("d", 4);
  EXPECT_EQ(recorder.Only(), "pos <= Length()");
  EXPECT_STREQ(text.Chars(), "abcd");
}

TEST(StrInsert, NegativePositionInsertsAtTheFront) {
  Str text("abc");
  text.Insert("x", -5);
  EXPECT_STREQ(text.Chars(), "xabc");
}

TEST(StrInsert, OfItsOwnText) {
  Str text("abcd");
  text.Insert(text.Chars() + 1, 2);
  EXPECT_STREQ(text.Chars(), "abbcdcd");
  text = "abcdefghij";
  text.Insert(text.Chars() + 5, 0);  // what is inserted lies in the tail that moves
  EXPECT_STREQ(text.Chars(), "fghijabcdefghij");
  Str longer(std::string(80, 'x').c_str());
  longer.Insert(longer.Chars(), 40);
  EXPECT_EQ(longer.View(), std::string(160, 'x'));
}

TEST(StrSetAt, Writes) {
  Str text("abc");
  text.SetAt(1, 'X');
  EXPECT_STREQ(text.Chars(), "aXc");
}

TEST(StrSetAt, BeyondTheTextAssertsAndStaysTerminated) {
  Str text("abc");
  {
    AssertRecorder recorder;
    text.SetAt(50, 'X');
    EXPECT_EQ(recorder.Only(), "pos < mLen");
    EXPECT_STREQ(text.Chars(), "abc");
    recorder.Clear();
    text.SetAt(3, 'd');
    EXPECT_EQ(recorder.Texts(), (Texts{"pos < mLen", "Str::Length(mCharP) == mLen"}));
    EXPECT_STREQ(text.Chars(), "abcd");
  }
  text = "abc";
}

TEST(StrSetAt, OutsideTheBufferWritesNothing) {
  Str text(std::string(99, 'x').c_str());
  AssertRecorder recorder;
  for (int32_t pos : {99, 100, 101, 5000, INT32_MAX}) {
    recorder.Clear();
    text.SetAt(pos, 'X');
    EXPECT_EQ(recorder.Only(), "pos < mLen");
  }
  recorder.Clear();
  text.SetAt(-1, 'X');
  EXPECT_EQ(text.View(), std::string(99, 'x'));
  Str empty;
  empty.SetAt(0, 'X');
  EXPECT_EQ(recorder.Only(), "pos < mLen");
  EXPECT_STREQ(empty.Chars(), "");
}

TEST(StrSetAt, NulAssertsAndIsWritten) {
  Str text("abc");
  AssertRecorder recorder;
  text.SetAt(1, '\0');
  EXPECT_EQ(recorder.Texts(), (Texts{"ch != '\\0'", "Str::Length(mCharP) == mLen"}));
  EXPECT_STREQ(text.Chars(), "a");
}

TEST(StrInvariant, IsCheckedAfterEveryMutation) {
  using Operation = void (*)(Str&);
  const Operation operations[] = {
      [](Str& s) { s.Append("x"); },    [](Str& s) { s.Append('x'); },       [](Str& s) { s.Delete(3, 1); },
      [](Str& s) { s.Insert("x", 4); }, [](Str& s) { s.Overwrite("x", 3); }, [](Str& s) { s.SetAt(3, 'x'); },
  };
  for (Operation operation : operations) {
    AssertRecorder recorder;
    Str text("abcdef");
    text.SetAt(1, '\0');
    recorder.Clear();
    operation(text);
    EXPECT_EQ(recorder.Only(), "Str::Length(mCharP) == mLen");
  }
}

TEST(StrOverwrite, KeepsTheLength) {
  Str text("abcdef");
  text.Overwrite("XY", 4);
  EXPECT_STREQ(text.Chars(), "abcdXY");
  text.Overwrite("", 6);
  text.Overwrite("12", 0);
  EXPECT_STREQ(text.Chars(), "12cdXY");
  EXPECT_EQ(text.Length(), 6);
}

TEST(StrOverwrite, PastTheEndAssertsAndIsCut) {
  Str text("abcdef");
  AssertRecorder recorder;
  text.Overwrite("XYZ", 4);
  EXPECT_EQ(recorder.Only(), "(pos + Str::Length(cp)) <= mLen");
  EXPECT_STREQ(text.Chars(), "abcdXY");
  recorder.Clear();
  text.Overwrite("X", INT32_MAX);
  EXPECT_EQ(recorder.Only(), "(pos + Str::Length(cp)) <= mLen");
  EXPECT_STREQ(text.Chars(), "abcdXY");
}

TEST(StrOverwrite, BeforeTheFrontIsCut) {
  Str text("abcdef");
  text.Overwrite("XYZ", -2);
  EXPECT_STREQ(text.Chars(), "Zbcdef");
}

TEST(StrTrim, RemovesTheSixSpaces) {
  Str text(" \t\r\n\v\fa b \t\r\n\v\f");
  Str left(text);
  left.TrimLeft();
  EXPECT_STREQ(left.Chars(), "a b \t\r\n\v\f");
  Str right(text);
  right.TrimRight();
  EXPECT_STREQ(right.Chars(), " \t\r\n\v\fa b");
  text.Trim();
  EXPECT_STREQ(text.Chars(), "a b");
  EXPECT_EQ(text.Length(), 3);
}

TEST(StrTrim, KeepsOtherCharacters) {
  Str text(
      "\xa0\x1f"
      "a\x85");
  text.Trim();
  EXPECT_STREQ(text.Chars(),
               "\xa0\x1f"
               "a\x85");
}

TEST(StrTrim, OfOnlySpacesLeavesNothing) {
  Str left("  \t");
  left.TrimLeft();
  EXPECT_EQ(left.Length(), 0);
  Str right("  \t");
  right.TrimRight();
  EXPECT_EQ(right.Length(), 0);
}

TEST(StrSubstring, Middle) {
  Str text;
  text.SetSubstring("abcdef", 2, 3);
  EXPECT_STREQ(text.Chars(), "cde");
  text.SetSubstring("abcdef", 2, -1);
  EXPECT_STREQ(text.Chars(), "cdef");
  text.SetSubstring("abcdef", 6, 0);
  EXPECT_STREQ(text.Chars(), "");
  text.SetSubstring("abcdef", 6, -1);
  EXPECT_STREQ(text.Chars(), "");
}

TEST(StrSubstring, BehindTheTextAssertsTwiceAndIsEmpty) {
  Str text("old");
  AssertRecorder recorder;
  text.SetSubstring("abc", 5, 1);
  EXPECT_EQ(recorder.Texts(), (Texts{"pos <= cp_len", "(pos + count) <= cp_len"}));
  EXPECT_STREQ(text.Chars(), "");
  EXPECT_EQ(text.Length(), 0);
}

TEST(StrSubstring, CountIsCutToWhatRemains) {
  Str text;
  AssertRecorder recorder;
  text.SetSubstring("abc", 1, 3);
  EXPECT_EQ(recorder.Only(), "(pos + count) <= cp_len");
  EXPECT_STREQ(text.Chars(), "bc");
  recorder.Clear();
  text.SetSubstring("abc", 1, INT32_MAX);
  EXPECT_EQ(recorder.Only(), "(pos + count) <= cp_len");
  EXPECT_STREQ(text.Chars(), "bc");
}

TEST(StrSubstring, NegativeCountBelowMinusOneAsserts) {
  Str text("old");
  AssertRecorder recorder;
  text.SetSubstring("abc", 1, -2);
  EXPECT_EQ(recorder.Only(), "count >= -1");
  EXPECT_STREQ(text.Chars(), "");
}

TEST(StrSubstring, OfItself) {
  Str text("abcdef");
  text.SetSubstring(text.Chars(), 2, 3);
  EXPECT_STREQ(text.Chars(), "cde");
}

TEST(StrSubstring, Left) {
  Str text;
  text.Left("abcdef", 2);
  EXPECT_STREQ(text.Chars(), "ab");
  text.Left("abcdef", -1);
  EXPECT_STREQ(text.Chars(), "abcdef");
}

TEST(StrSubstring, Right) {
  Str text;
  text.Right("abcdef", 2);
  EXPECT_STREQ(text.Chars(), "ef");
  text.Right("abcdef", 6);
  EXPECT_STREQ(text.Chars(), "abcdef");
  text.Right("abcdef", 0);
  EXPECT_STREQ(text.Chars(), "");
}

TEST(StrSubstring, RightOfMoreThanThereIsStaysInside) {
  Str text;
  text.Right("abc", 5);
  EXPECT_STREQ(text.Chars(), "abc");
}

}  // namespace
