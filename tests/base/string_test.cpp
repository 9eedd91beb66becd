// WStr: the contract of Str in 16-bit units, and what WStr has beyond it.
#include "base/string.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/assert_recorder.h"

namespace {

using Texts = std::vector<std::string>;

std::wstring Xs(size_t count) { return std::wstring(count, L'x'); }
std::wstring Text(const WStr& text) { return text.Chars(); }

TEST(WStr, NewIsEmptyAndOwnsNothing) {
  WStr a;
  WStr b(L"");
  WStr c(a);
  EXPECT_EQ(a.Length(), 0);
  EXPECT_EQ(a.Capacity(), 0);
  EXPECT_EQ(a.Chars(), b.Chars());
  EXPECT_EQ(a.Chars(), c.Chars());
  EXPECT_STREQ(a.Chars(), L"");
}

TEST(WStr, FromPointerCopies) {
  wchar_t source[] = L"abc";
  WStr text(source);
  source[0] = L'x';
  EXPECT_EQ(Text(text), L"abc");
  EXPECT_EQ(text.Length(), 3);
  EXPECT_EQ(text.Capacity(), 100);
}

TEST(WStr, FromNullAssertsAndIsEmpty) {
  const wchar_t* null = nullptr;
  AssertRecorder recorder;
  WStr text(null);
  EXPECT_EQ(recorder.Only(), "cp");
  EXPECT_EQ(text.Length(), 0);
  recorder.Clear();
  text = null;
  EXPECT_EQ(recorder.Only(), "cp");
}

TEST(WStr, AssignmentKeepsTheLargerBuffer) {
  WStr text(Xs(150).c_str());
  EXPECT_EQ(text.Capacity(), 200);
  text = L"abc";
  EXPECT_EQ(text.Capacity(), 200);
  EXPECT_EQ(Text(text), L"abc");
}

TEST(WStr, AssignmentOfItselfOrOfItsOwnTail) {
  WStr text(L"abcdef");
  WStr& same = text;
  text = same;
  EXPECT_EQ(Text(text), L"abcdef");
  text = text.Chars() + 2;
  EXPECT_EQ(Text(text), L"cdef");
  EXPECT_EQ(text.Length(), 4);
}

TEST(WStr, SharedBufferIsNeverWritten) {
  AssertRecorder recorder;
  WStr other;
  WStr text;
  text.Append(L"");
  text.Delete(0, -1);
  text.TrimLeft();
  text.TrimRight();
  text.Overwrite(L"x", 0);
  text.SetAt(0, L'x');
  text.Append(L'x', 0);
  text = L"";
  EXPECT_EQ(text.Capacity(), 0);
  EXPECT_STREQ(other.Chars(), L"");
}

TEST(WStr, CopyTakesCapacityLengthAndText) {
  WStr source;
  source.Lock(250)[0] = L'\0';
  source.Unlock();
  source = L"abc";
  WStr copy(source);
  EXPECT_EQ(copy.Capacity(), 300);
  EXPECT_EQ(Text(copy), L"abc");
  EXPECT_NE(copy.Chars(), source.Chars());
}

TEST(WStr, CopyFromLockedSourceAsserts) {
  WStr source(L"abc");
  source.Lock(10);
  AssertRecorder recorder;
  WStr copy(source);
  EXPECT_EQ(recorder.Only(), "str.IsUnlocked()");
  recorder.Clear();
  copy = source;
  EXPECT_EQ(recorder.Only(), "str.IsUnlocked()");
  EXPECT_EQ(Text(copy), L"abc");
  source.Unlock();
}

TEST(WStr, DestructionWhileLockedAsserts) {
  AssertRecorder recorder;
  {
    WStr text;
    text.Lock(5);
  }
  EXPECT_EQ(recorder.Only(), "IsUnlocked()");
}

TEST(WStr, LockAndUnlock) {
  WStr text(L"abc");
  wchar_t* buffer = text.Lock(101);
  EXPECT_FALSE(text.IsUnlocked());
  EXPECT_EQ(text.Capacity(), 200);
  wcscpy(buffer, L"written");
  text.Unlock();
  EXPECT_TRUE(text.IsUnlocked());
  EXPECT_EQ(text.Length(), 7);
  text.Lock(-1);
  text.Unlock();
  EXPECT_EQ(Text(text), L"written");
}

TEST(WStr, LockOfNoSizeGivesAtLeastOneUnit) {
  for (int32_t size : {0, -1, -1000}) {
    WStr text;
    text.Lock(size)[0] = L'\0';
    EXPECT_EQ(text.Capacity(), 100);
    text.Unlock();
    EXPECT_EQ(text.Length(), 0);
  }
}

TEST(WStr, LockAndAssignmentMayRunWhileLocked) {
  WStr text;
  text.Lock(5);
  text.Lock(500);
  text = L"abc";
  text.Unlock();
  EXPECT_EQ(text.Length(), 3);
}

TEST(WStr, UnlockWithoutLockAsserts) {
  AssertRecorder recorder;
  WStr text(L"abc");
  text.Unlock();
  EXPECT_EQ(recorder.Only(), "mLocked");
}

TEST(WStr, UnlockOfAnUnterminatedBufferStaysInside) {
  WStr text;
  wmemset(text.Lock(100), L'x', 100);
  text.Unlock();
  EXPECT_EQ(text.Length(), 99);
}

TEST(WStr, EveryOtherOperationAssertsWhileLocked) {
  using Operation = void (*)(WStr&);
  const Operation operations[] = {
      [](WStr& s) { s.Length(); },
      [](WStr& s) { s.Append(L'x'); },
      [](WStr& s) { s.Append(L"x"); },
      [](WStr& s) { s.Append(L"x", 1); },
      [](WStr& s) { s.Append(L'x', 2); },
      [](WStr& s) { s.Prepend(L"x", 1); },
      [](WStr& s) { s.Compare(L"x"); },
      [](WStr& s) { s.Compare(L"x", 1); },
      [](WStr& s) { s.ICompare(L"x"); },
      [](WStr& s) { s.Find(L'x'); },
      [](WStr& s) { s.Find(L"x"); },
      [](WStr& s) { s.FindLast(L'x'); },
      [](WStr& s) { s.Delete(0, 1); },
      [](WStr& s) { s.Insert(L"x", 0); },
      [](WStr& s) { s.Insert(L'x', 0); },
      [](WStr& s) { s.SetAt(0, L'x'); },
      [](WStr& s) { s.Overwrite(L"x", 0); },
      [](WStr& s) { s.TrimLeft(); },
      [](WStr& s) { s.TrimRight(); },
      [](WStr& s) { s.SetSubstring(L"x", 0, 1); },
      [](WStr& s) { s.Left(L"x", 1); },
      [](WStr& s) { s.Right(L"x", 1); },
      [](WStr& s) { s.Replace(L'x', L'y'); },
      [](WStr& s) { s.Replace(L'x', L"y"); },
      [](WStr& s) { s.Replace(L"x", L"y"); },
      [](WStr& s) {
        WStr left, right;
        s.Split(L'x', left, right);
      },
      [](WStr& s) { s.Format(L"x"); },
  };
  int index = 0;
  for (Operation operation : operations) {
    SCOPED_TRACE(index++);
    WStr text(L"abc");
    text.Lock(10);
    AssertRecorder recorder;
    operation(text);
    EXPECT_EQ(recorder.Only(), "IsUnlocked()");
    text.Unlock();
  }
}

TEST(WStr, GrowsInStepsOf100Units) {
  WStr text;
  text.Append(L'a');
  EXPECT_EQ(text.Capacity(), 100);
  text.Append(L'x', 98);
  EXPECT_EQ(text.Capacity(), 100);
  text.Append(L'x');
  EXPECT_EQ(text.Length(), 100);
  EXPECT_EQ(text.Capacity(), 200);
}

TEST(WStr, AppendAndPrependForms) {
  WStr text(L"b");
  text.Append(L"cd");
  text.Append(L"efgh", 2);
  text.Append(L"g", 5);
  text.Append(L'z', 3);
  text.Prepend(L"axx", 1);
  EXPECT_EQ(Text(text), L"abcdefgzzz");
  EXPECT_EQ(text.Length(), 10);
}

TEST(WStr, AppendOfAtMostNNeedsNoTerminator) {
  const wchar_t units[] = {L'a', L'b', L'c'};
  WStr text;
  text.Append(units, 3);
  EXPECT_EQ(Text(text), L"abc");
}

TEST(WStr, AppendOfACharacterLessThanNeverChangesNothing) {
  WStr text(L"abc");
  text.Append(L'x', 0);
  text.Append(L'x', -4);  // no more than the text itself
  EXPECT_EQ(Text(text), L"abc");
  AssertRecorder recorder;
  for (int32_t times : {-5, INT32_MIN}) {
    recorder.Clear();
    text.Append(L'x', times);
    EXPECT_EQ(recorder.Only(), "needed >= 0");
    EXPECT_EQ(Text(text), L"abc");
  }
}

TEST(WStr, AppendOfItself) {
  WStr text(Xs(60).c_str());
  text.Append(text.Chars());
  text.Prepend(text.Chars(), 30);
  EXPECT_EQ(Text(text), Xs(150));
}

TEST(WStr, CompareForms) {
  EXPECT_EQ(WStr(L"abc").Compare(L"abc"), 0);
  EXPECT_EQ(WStr(L"abc").Compare(L"abd"), -1);
  EXPECT_EQ(WStr(L"b").Compare(L"a"), 1);
  EXPECT_EQ(WStr(L"\uffff").Compare(L"a"), 1);
  EXPECT_EQ(WStr(L"abcx").Compare(L"abcy", 3), 0);
  EXPECT_EQ(WStr(L"ab").Compare(L"abc", 3), -1);
  EXPECT_EQ(WStr(L"\u00c9a\u0416").ICompare(L"\u00e9A\u0436"), 0);
  EXPECT_EQ(WStr(L"a").ICompare(L"B"), -1);
  EXPECT_EQ(WStr(L"ab").ICompare(L"a"), 1);
}

TEST(WStr, FindForms) {
  const WStr text(L"abcABC");
  EXPECT_EQ(text.Find(L'b'), 1);
  EXPECT_EQ(text.Find(L'b', 2), -1);
  EXPECT_EQ(text.Find(L'b', 2, false), 4);
  EXPECT_EQ(text.Find(L"bc", 2, false), 4);
  EXPECT_EQ(text.Find(L"abcABCd", 0, false), -1);
  EXPECT_EQ(text.FindLast(L'c'), 2);
  EXPECT_EQ(text.FindLast(L'z'), -1);
}

TEST(WStr, FindBeyondTheLengthAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(WStr(L"abc").Find(L'a', 4), -1);
  EXPECT_EQ(recorder.Only(), "(start >= 0) && (start <= mLen)");
  EXPECT_EQ(WStr(L"abc").Find(L"", 4), -1);
  EXPECT_EQ(WStr(L"abc").Find(L"", 4, false), -1);
}

TEST(WStr, FindFromTheEndOrFromBeforeTheFront) {
  const WStr text(L"abc");
  EXPECT_EQ(text.Find(L'c', 3), -1);
  EXPECT_EQ(text.Find(L"", 3), 3);
  AssertRecorder recorder;
  EXPECT_EQ(text.Find(L'a', -1), 0);
  EXPECT_EQ(recorder.Only(), "(start >= 0) && (start <= mLen)");
  EXPECT_EQ(text.Find(L"", -1), 0);
  EXPECT_EQ(text.Find(L"", -1, false), 0);
}

TEST(WStr, IFind) {
  const wchar_t text[] = L"One \u00c9t\u00e9 t\u00e9";
  EXPECT_EQ(WStr::IFind(text, L"\u00e9T\u00c9"), text + 4);
  EXPECT_EQ(WStr::IFind(text, L"T\u00c9"), text + 5);
  EXPECT_EQ(WStr::IFind(text, L"two"), nullptr);
  EXPECT_EQ(WStr::IFind(L"ab", L"abc"), nullptr);
  EXPECT_EQ(WStr::IFind(text, L""), text);
}

TEST(WStr, DeleteForms) {
  WStr text(L"abcdef");
  text.Delete(1, 2);
  EXPECT_EQ(Text(text), L"adef");
  text.Delete(2, -1);
  EXPECT_EQ(Text(text), L"ad");
  AssertRecorder recorder;
  text.Delete(2, 1);
  EXPECT_EQ(recorder.Texts(), (Texts{"pos < mLen", "count == -1 || (pos + count) <= mLen"}));
  EXPECT_EQ(Text(text), L"ad");
}

TEST(WStr, DeletePastTheEndAssertsTwiceAndDeletesToTheEnd) {
  const Texts checks = {"count == -1 || (pos + count) <= mLen", "moveSize>=0"};
  WStr text(L"abcdef");
  AssertRecorder recorder;
  text.Delete(4, 3);
  EXPECT_EQ(recorder.Texts(), checks);
  EXPECT_EQ(Text(text), L"abcd");
  recorder.Clear();
  text.Delete(1, INT32_MAX);
  EXPECT_EQ(recorder.Texts(), checks);
  EXPECT_EQ(Text(text), L"a");
  EXPECT_EQ(text.Length(), 1);
}

TEST(WStr, DeleteOfTheLastUnitsMovesNothing) {
  WStr text(L"abcdef");
  text.Delete(4, 2);
  EXPECT_EQ(Text(text), L"abcd");
  text.Delete(1, 0);
  EXPECT_EQ(Text(text), L"abcd");
}

TEST(WStr, DeleteOfANegativeCountOrFromANegativePlaceChangesNothing) {
  WStr text(L"abcdef");
  text.Delete(-3, 2);
  EXPECT_EQ(Text(text), L"abcdef");
  AssertRecorder recorder;
  text.Delete(2, -2);
  EXPECT_EQ(recorder.Only(), "count >= -1");
  EXPECT_EQ(Text(text), L"abcdef");
}

TEST(WStr, InsertForms) {
  WStr text(L"adef");
  text.Insert(L"bc", 1);
  text.Insert(L'g', 6);
  EXPECT_EQ(Text(text), L"abcdefg");
  AssertRecorder recorder;
  text.Insert(L"!", 9);
  EXPECT_EQ(recorder.Only(), "(pos >= 0) && (pos <= Length())");
  recorder.Clear();
  text.Insert(L"<", -1);
  EXPECT_EQ(recorder.Only(), "(pos >= 0) && (pos <= Length())");
  EXPECT_EQ(Text(text), L"<abcdefg!");
}

TEST(WStr, InsertOfItsOwnText) {
  WStr text(L"abcd");
  text.Insert(text.Chars() + 1, 2);
  EXPECT_EQ(Text(text), L"abbcdcd");
}

TEST(WStr, SetAtForms) {
  WStr text(L"abc");
  text.SetAt(1, L'X');
  EXPECT_EQ(Text(text), L"aXc");
  text.SetAt(3, L'd');  // the end of the text is a legal place
  EXPECT_EQ(Text(text), L"aXcd");
  EXPECT_EQ(text.Length(), 4);
  AssertRecorder recorder;
  for (int32_t pos : {-1, 5, 99, 100, INT32_MAX}) {
    recorder.Clear();
    text.SetAt(pos, L'!');
    EXPECT_EQ(recorder.Only(), "(pos >= 0) && (pos <= mLen)") << pos;
  }
  EXPECT_EQ(Text(text), L"aXcd");
  recorder.Clear();
  text.SetAt(1, L'\0');
  EXPECT_EQ(recorder.Only(), "ch != '\\0'");
  EXPECT_EQ(Text(text), L"a");  // written all the same
}

TEST(WStr, OverwriteForms) {
  WStr text(L"abcdef");
  text.Overwrite(L"XY", 4);
  EXPECT_EQ(Text(text), L"abcdXY");
  const char check[] = "(pos >= 0) && ((pos + WStr::Length(cp)) <= mLen)";
  AssertRecorder recorder;
  text.Overwrite(L"123", 4);
  EXPECT_EQ(recorder.Only(), check);
  EXPECT_EQ(Text(text), L"abcd12");
  recorder.Clear();
  text.Overwrite(L"<>", -1);
  EXPECT_EQ(recorder.Only(), check);
  EXPECT_EQ(Text(text), L">bcd12");
}

TEST(WStr, Trim) {
  WStr text(L" \t\r\n\v\fa b \t\r\n\v\f");
  text.TrimLeft();
  EXPECT_EQ(Text(text), L"a b \t\r\n\v\f");
  text.TrimRight();
  EXPECT_EQ(Text(text), L"a b");
}

TEST(WStr, TrimOfOnlySpacesLeavesNothing) {
  WStr left(L"  \t"), right(L"  \t"), none;
  left.TrimLeft();
  right.TrimRight();
  none.TrimLeft();
  none.TrimRight();
  EXPECT_EQ(left.Length(), 0);
  EXPECT_EQ(right.Length(), 0);
  EXPECT_EQ(none.Length(), 0);
}

TEST(WStr, TrimKeepsOtherSpaces) {
  WStr text(L"\u00a0\u3000a\u2003");
  text.TrimLeft();
  text.TrimRight();
  EXPECT_EQ(Text(text), L"\u00a0\u3000a\u2003");
}

TEST(WStr, SubstringCounts) {
  WStr text;
  text.Left(L"abc", -1);
  EXPECT_EQ(Text(text), L"abc");
  text.Right(L"abc", 0);
  EXPECT_EQ(Text(text), L"");
  AssertRecorder recorder;
  text.SetSubstring(L"abc", 1, 3);
  EXPECT_EQ(recorder.Only(), "(pos + count) <= cp_len");
  EXPECT_EQ(Text(text), L"bc");
  recorder.Clear();
  text.SetSubstring(L"abc", 1, -2);
  EXPECT_EQ(recorder.Only(), "count >= -1");
  EXPECT_EQ(Text(text), L"");
}

TEST(WStr, SubstringOfItself) {
  WStr text(L"abcdef");
  text.SetSubstring(text.Chars(), 2, 3);
  EXPECT_EQ(Text(text), L"cde");
}

TEST(WStr, Substrings) {
  WStr text;
  text.SetSubstring(L"abcdef", 2, 3);
  EXPECT_EQ(Text(text), L"cde");
  text.SetSubstring(L"abcdef", 2, -1);
  EXPECT_EQ(Text(text), L"cdef");
  text.Left(L"abcdef", 2);
  EXPECT_EQ(Text(text), L"ab");
  text.Right(L"abcdef", 2);
  EXPECT_EQ(Text(text), L"ef");
  text.Right(L"abc", 5);
  EXPECT_EQ(Text(text), L"abc");
  AssertRecorder recorder;
  text.SetSubstring(L"abc", 5, 1);
  EXPECT_EQ(recorder.Texts(), (Texts{"pos <= cp_len", "(pos + count) <= cp_len"}));
  EXPECT_EQ(Text(text), L"");
}

TEST(WStr, ReplaceCharacterByCharacter) {
  WStr text(L"a/b/c");
  EXPECT_EQ(text.Replace(L'/', L'\\'), 2);
  EXPECT_EQ(Text(text), L"a\\b\\c");
  EXPECT_EQ(text.Replace(L'/', L'\\'), 0);
}

TEST(WStr, ReplaceCharacterByNulAsserts) {
  WStr text(L"abc");
  AssertRecorder recorder;
  EXPECT_EQ(text.Replace(L'\0', L'x'), 0);
  EXPECT_EQ(recorder.Only(), "ch > 0");
  recorder.Clear();
  EXPECT_EQ(text.Replace(L'a', L'\0'), 0);
  EXPECT_EQ(recorder.Only(), "replace > 0");
  recorder.Clear();
  EXPECT_EQ(text.Replace(L'\0', L"x"), 0);
  EXPECT_EQ(recorder.Only(), "ch > 0");
  EXPECT_EQ(Text(text), L"abc");
}

TEST(WStr, ReplaceCharacterByText) {
  WStr text(L"a.b.");
  EXPECT_EQ(text.Replace(L'.', L"<.>"), 2);  // the search resumes behind the inserted text
  EXPECT_EQ(Text(text), L"a<.>b<.>");
  EXPECT_EQ(text.Replace(L'.', L""), 2);
  EXPECT_EQ(Text(text), L"a<>b<>");
  AssertRecorder recorder;
  EXPECT_EQ(text.Replace(L'a', static_cast<const wchar_t*>(nullptr)), 0);
  EXPECT_EQ(recorder.Only(), "replace");
}

TEST(WStr, ReplaceTextByText) {
  WStr text(L"aaa");
  EXPECT_EQ(text.Replace(L"aa", L"aaaa"), 1);
  EXPECT_EQ(Text(text), L"aaaaa");
  EXPECT_EQ(text.Replace(L"a", L"b"), 5);
  EXPECT_EQ(Text(text), L"bbbbb");
  EXPECT_EQ(text.Replace(text.Chars() + 3, L"-"), 2);  // the text may be its own
  EXPECT_EQ(Text(text), L"--b");
}

TEST(WStr, ReplaceByANullTextAsserts) {
  WStr text(L"abc");
  AssertRecorder recorder;
  EXPECT_EQ(text.Replace(L"a", nullptr), 0);
  EXPECT_EQ(recorder.Only(), "replace");
  EXPECT_EQ(Text(text), L"abc");
}

TEST(WStr, ReplaceOfAnEmptyTextAssertsAndEnds) {
  WStr text(L"abc");
  AssertRecorder recorder;
  EXPECT_EQ(text.Replace(L"", L"x"), 0);
  EXPECT_EQ(recorder.Only(), "WStr::Length(cp) > 0");
  EXPECT_EQ(Text(text), L"abc");
}

TEST(WStr, SplitAtTheFirstOccurrence) {
  WStr text(L"a=b=c"), left(L"old"), right(L"old");
  text.Split(L'=', left, right);
  EXPECT_EQ(Text(left), L"a");
  EXPECT_EQ(Text(right), L"b=c");
  text.Split(L'c', left, right);
  EXPECT_EQ(Text(left), L"a=b=");
  EXPECT_EQ(Text(right), L"");
}

TEST(WStr, SplitWithoutTheCharacter) {
  WStr text(L"abc"), left(L"old"), right(L"old");
  text.Split(L'=', left, right);
  EXPECT_EQ(Text(left), L"abc");
  EXPECT_EQ(Text(right), L"");
}

TEST(WStr, SplitIntoItselfAsserts) {
  WStr text(L"a=b"), other;
  AssertRecorder recorder;
  text.Split(L'=', text, other);
  EXPECT_EQ(recorder.Only(), "(&left != this) && (&right != this)");
  EXPECT_EQ(Text(text), L"a");
  EXPECT_EQ(Text(other), L"b");
  recorder.Clear();
  text = L"c=d";
  text.Split(L'=', other, text);
  EXPECT_EQ(recorder.Only(), "(&left != this) && (&right != this)");
}

TEST(WStr, FormatUsesThePrintfConversions) {
  WStr text;
  text.Format(L"%s|%5d|%04X|%c", L"\u0416bc", 42, 0x2AF, L'q');
  EXPECT_EQ(Text(text), L"\u0416bc|   42|02AF|q");
}

TEST(WStr, Formatting1998UnitsIsSilent) {
  WStr text;
  text.Format(L"%s", Xs(1998).c_str());
  EXPECT_EQ(Text(text), Xs(1998));
}

TEST(WStr, Formatting1999UnitsAssertsAndKeepsTheText) {
  for (size_t length : {1999u, 2000u, 2001u, 4000u, 50000u}) {
    AssertRecorder recorder;
    WStr text;
    text.Format(L"%s", Xs(length).c_str());
    EXPECT_EQ(recorder.Only(), "WStr::VFormat(buf,format,args) < ((sizeof(buf)/sizeof(buf[0])) - 1)");
    EXPECT_EQ(Text(text), Xs(length));
  }
}

TEST(WStr, FormatMayUseItsOwnText) {
  WStr text(L"abc");
  text.Format(L"<%s>", text.Chars());
  EXPECT_EQ(Text(text), L"<abc>");
}

int32_t FormatInto(wchar_t* buffer, int32_t size, const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  const int32_t length = WStr::VFormat(buffer, size, format, args);
  va_end(args);
  return length;
}

TEST(WStr, StaticVFormatIsBoundedAndMeasures) {
  wchar_t buffer[8];
  wmemset(buffer, L'#', 8);
  EXPECT_EQ(FormatInto(buffer, 5, L"%s", L"abcdefghij"), 10);
  EXPECT_STREQ(buffer, L"abcd");
  EXPECT_EQ(buffer[5], L'#');
  EXPECT_EQ(FormatInto(buffer, 5, L"%d", 1234), 4);
  EXPECT_STREQ(buffer, L"1234");
  EXPECT_EQ(FormatInto(nullptr, 0, L"%s", L"abc"), 3);
}

TEST(WStr, StaticLength) {
  EXPECT_EQ(WStr::Length(L"abc"), 3);
  AssertRecorder recorder;
  EXPECT_EQ(WStr::Length(nullptr), 0);
  EXPECT_EQ(recorder.Only(), "cp");
}

TEST(WStr, StaticICompare) {
  EXPECT_EQ(WStr::ICompare(L"\u00c9", L"\u00e9"), 0);
  EXPECT_EQ(WStr::ICompare(L"a", L"b"), -1);
  EXPECT_EQ(WStr::ICompare(L"ABCDEFGHIJKLMNOPQRSTUVWXYZ", L"abcdefghijklmnopqrstuvwxyz"), 0);
  EXPECT_NE(WStr::ICompare(L"@[", L"`{"), 0);
}

TEST(WStr, AssignmentFromAnsiText) {
  WStr text;
  text = "caf\xe9";
  EXPECT_EQ(Text(text), L"caf\u00e9");
  EXPECT_EQ(text.Capacity(), 100);
  text = std::string(99, 'x').c_str();
  EXPECT_EQ(text.Capacity(), 100);
  text = std::string(100, 'x').c_str();
  EXPECT_EQ(text.Length(), 100);
  EXPECT_EQ(text.Capacity(), 200);  // length + 1 units
}

TEST(WStr, AssignmentFromNullAnsiTextAssertsAndIsEmpty) {
  WStr text(L"old");
  AssertRecorder recorder;
  text = static_cast<const char*>(nullptr);
  EXPECT_EQ(recorder.Only(), "nStr");
  EXPECT_EQ(Text(text), L"");
  recorder.Clear();
  text.Assign(nullptr, UTF8);
  EXPECT_EQ(recorder.Only(), "cp");
  EXPECT_EQ(Text(text), L"");
}

TEST(WStr, AssignmentFromUtf8) {
  WStr text;
  text.Assign("\xc3\xa9", UTF8);
  EXPECT_EQ(Text(text), L"\u00e9");
  EXPECT_EQ(text.Length(), 1);
  text.Assign("", UTF8);
  EXPECT_EQ(text.Length(), 0);
}

TEST(WStr, AssignmentWithAnotherEncodingAsserts) {
  WStr text;
  AssertRecorder recorder;
  text.Assign("\xc3\xa9", ANSI);
  EXPECT_EQ(recorder.Only(), "encoding == UTF8");
  EXPECT_EQ(Text(text), L"\u00e9");
}

}  // namespace
