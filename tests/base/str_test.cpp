// Str: ownership, locking, appending, formatting.
#include "base/str.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/charbuffer.h"
#include "support/assert_recorder.h"

namespace {

using Texts = std::vector<std::string>;

std::string Xs(size_t count) { return std::string(count, 'x'); }

TEST(Str, NewIsEmptyAndOwnsNothing) {
  Str text;
  EXPECT_EQ(text.Length(), 0);
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_STREQ(text.Chars(), "");
  EXPECT_EQ(text.Capacity(), 0);
}

TEST(Str, EmptyStringsShareOneBuffer) {
  Str a;
  Str b("");
  Str c(a);
  Str d(std::string_view{});
  EXPECT_EQ(a.Chars(), b.Chars());
  EXPECT_EQ(a.Chars(), c.Chars());
  EXPECT_EQ(a.Chars(), d.Chars());
}

TEST(Str, SharedBufferIsNeverWritten) {
  AssertRecorder recorder;
  Str other;
  Str text;
  text.Append("");
  text.Delete(0, -1);
  text.TrimLeft();
  text.TrimRight();
  text.Overwrite("x", 0);
  text.SetAt(0, 'x');
  text.SetSubstring("abc", 0, 0);
  text = "";
  EXPECT_EQ(text.Capacity(), 0);
  EXPECT_STREQ(other.Chars(), "");
  text.Append("abc");
  EXPECT_STREQ(other.Chars(), "");
  EXPECT_EQ(other.Length(), 0);
}

TEST(Str, FromPointerCopies) {
  char source[] = "abc";
  Str text(source);
  source[0] = 'x';
  EXPECT_STREQ(text.Chars(), "abc");
  EXPECT_EQ(text.Length(), 3);
  EXPECT_EQ(text.Capacity(), 100);
}

TEST(Str, FromNullAssertsAndIsEmpty) {
  AssertRecorder recorder;
  const char* null = nullptr;
  Str text(null);
  EXPECT_EQ(recorder.Only(), "cp");
  EXPECT_EQ(text.Length(), 0);
}

TEST(Str, FromViewEndsAtNul) {
  Str text(std::string_view("ab\0cd", 5));
  EXPECT_EQ(text.Length(), 2);
  text = std::string_view("xyz\0w", 5);
  EXPECT_STREQ(text.Chars(), "xyz");
  EXPECT_EQ(text.Length(), 3);
  text.Append(std::string_view("1\0002", 3));
  EXPECT_STREQ(text.Chars(), "xyz1");
  EXPECT_EQ(text.Length(), 4);
}

TEST(Str, CopyTakesCapacityLengthAndText) {
  Str source;
  source.Lock(250);
  source.Unlock();
  source = "abc";
  EXPECT_EQ(source.Capacity(), 300);
  Str copy(source);
  EXPECT_EQ(copy.Capacity(), 300);
  EXPECT_EQ(copy.Length(), 3);
  EXPECT_STREQ(copy.Chars(), "abc");
  EXPECT_NE(copy.Chars(), source.Chars());
}

TEST(Str, CopyOfAnEmptiedStringKeepsItsCapacity) {
  Str source("abc");
  source = "";
  Str copy(source);
  EXPECT_EQ(copy.Capacity(), 100);
  EXPECT_EQ(copy.Length(), 0);
}

TEST(Str, CopyFromLockedSourceAsserts) {
  Str source("abc");
  source.Lock(10);
  AssertRecorder recorder;
  {
    Str copy(source);
    EXPECT_EQ(recorder.Only(), "! str.mLocked");
    EXPECT_STREQ(copy.Chars(), "abc");
  }
  recorder.Clear();
  Str assigned;
  assigned = source;
  EXPECT_EQ(recorder.Only(), "! str.mLocked");
  EXPECT_STREQ(assigned.Chars(), "abc");
  source.Unlock();
}

TEST(Str, MoveFromLockedSourceAssertsAndTakesTheText) {
  AssertRecorder recorder;
  Str source("abc");
  source.Lock(10);
  Str moved(std::move(source));
  EXPECT_EQ(recorder.Only(), "! str.mLocked");
  EXPECT_STREQ(moved.Chars(), "abc");
  recorder.Clear();
  source.Unlock();
  source = "def";
  source.Lock(10);
  Str assigned;
  assigned = std::move(source);
  EXPECT_EQ(recorder.Only(), "! str.mLocked");
  EXPECT_STREQ(assigned.Chars(), "def");
  source.Unlock();
}

TEST(Str, MoveTakesTheBuffer) {
  Str source("abc");
  const char* buffer = source.Chars();
  Str moved(std::move(source));
  EXPECT_EQ(moved.Chars(), buffer);
  EXPECT_EQ(source.Length(), 0);
  EXPECT_EQ(source.Capacity(), 0);
  Str assigned("other");
  assigned = std::move(moved);
  EXPECT_EQ(assigned.Chars(), buffer);
  EXPECT_EQ(assigned.Length(), 3);
  EXPECT_EQ(moved.Length(), 0);
}

TEST(Str, AssignmentKeepsTheLargerBuffer) {
  Str text(Xs(150).c_str());
  EXPECT_EQ(text.Capacity(), 200);
  text = "abc";
  EXPECT_EQ(text.Capacity(), 200);
  EXPECT_EQ(text.Length(), 3);
  text = "";
  EXPECT_EQ(text.Capacity(), 200);
  EXPECT_STREQ(text.Chars(), "");
}

TEST(Str, AssignmentOfItselfOrOfItsOwnTail) {
  Str text("abcdef");
  Str& same = text;
  text = same;
  EXPECT_STREQ(text.Chars(), "abcdef");
  text = text.Chars() + 2;
  EXPECT_STREQ(text.Chars(), "cdef");
  EXPECT_EQ(text.Length(), 4);
}

TEST(Str, AssignmentFromWideTextUsesTheAnsiCodePage) {
  Str text;
  text = L"caf\u00e9";
  EXPECT_STREQ(text.Chars(), "caf\xe9");
  EXPECT_EQ(text.Length(), 4);
}

TEST(Str, AssignmentFromWideTextLocksTwiceItsLength) {
  Str text;
  text = std::wstring(60, L'a').c_str();
  EXPECT_EQ(text.Length(), 60);
  EXPECT_EQ(text.Capacity(), 200);  // 2 x 60 + 1, rounded up
}

TEST(Str, AssignmentFromNullWideTextAssertsAndIsEmpty) {
  Str text("old");
  AssertRecorder recorder;
  text = static_cast<const wchar_t*>(nullptr);
  EXPECT_EQ(recorder.Only(), "cp");
  EXPECT_STREQ(text.Chars(), "");
  EXPECT_EQ(text.Length(), 0);
}

TEST(Str, AssignmentFromNullAssertsAndIsEmpty) {
  Str text("old");
  AssertRecorder recorder;
  text = static_cast<const char*>(nullptr);
  EXPECT_EQ(recorder.Only(), "cp");
  EXPECT_STREQ(text.Chars(), "");
}

TEST(Str, DestructionWhileLockedAsserts) {
  AssertRecorder recorder;
  {
    Str text;
    text.Lock(5);
  }
  EXPECT_EQ(recorder.Only(), "! mLocked");
}

TEST(Str, LockGivesABufferOfTheSize) {
  Str text("abc");
  char* buffer = text.Lock(301);
  EXPECT_EQ(text.Capacity(), 400);
  EXPECT_STREQ(buffer, "abc");
  strcpy(buffer, "written");
  text.Unlock();
  EXPECT_EQ(text.Length(), 7);
}

TEST(Str, LockOfNoSizeGivesAtLeastOneCharacter) {
  for (int32_t size : {0, -1, -1000}) {
    Str text;
    char* buffer = text.Lock(size);
    EXPECT_EQ(text.Capacity(), 100);
    EXPECT_STREQ(buffer, "");
    buffer[0] = '\0';
    text.Unlock();
    EXPECT_EQ(text.Length(), 0);
  }
}

TEST(Str, LockAndAssignmentMayRunWhileLocked) {
  Str text;
  text.Lock(5);
  text.Lock(500);
  text = "abc";
  text.Unlock();
  EXPECT_EQ(text.Length(), 3);
}

TEST(Str, UnlockWithoutLockAsserts) {
  AssertRecorder recorder;
  Str text("abc");
  text.Unlock();
  EXPECT_EQ(recorder.Only(), "mLocked");
  EXPECT_EQ(text.Length(), 3);
  recorder.Clear();
  Str empty;
  empty.Unlock();
  EXPECT_EQ(recorder.Only(), "mLocked");
  EXPECT_EQ(empty.Capacity(), 0);
}

TEST(Str, UnlockOfAnUnterminatedBufferStaysInside) {
  Str text;
  char* buffer = text.Lock(100);
  memset(buffer, 'x', 100);
  text.Unlock();
  EXPECT_EQ(text.Length(), 99);
}

// Each operation that may not run while the buffer is held.
TEST(Str, EveryOtherOperationAssertsWhileLocked) {
  using Operation = void (*)(Str&);
  const Operation operations[] = {
      [](Str& s) { s.Length(); },          [](Str& s) { s.Append('x'); },
      [](Str& s) { s.Append("x"); },       [](Str& s) { s += "x"; },
      [](Str& s) { s.Compare("x"); },      [](Str& s) { s.Compare("x", 1); },
      [](Str& s) { s.ICompare("x"); },     [](Str& s) { s.Find('x'); },
      [](Str& s) { s.Find("x"); },         [](Str& s) { s.FindLast('x'); },
      [](Str& s) { s.Delete(0, 1); },      [](Str& s) { s.Insert("x", 0); },
      [](Str& s) { s.Insert('x', 0); },    [](Str& s) { s.SetAt(0, 'x'); },
      [](Str& s) { s.Overwrite("x", 0); }, [](Str& s) { s.TrimLeft(); },
      [](Str& s) { s.TrimRight(); },       [](Str& s) { s.SetSubstring("x", 0, 1); },
      [](Str& s) { s.Left("x", 1); },      [](Str& s) { s.Right("x", 1); },
      [](Str& s) { s.Format("x"); },
  };
  int index = 0;
  for (Operation operation : operations) {
    SCOPED_TRACE(index++);
    Str text("abc");
    text.Lock(10);
    AssertRecorder recorder;
    operation(text);
    EXPECT_EQ(recorder.Only(), "! mLocked");
    text.Unlock();
  }
}

TEST(Str, AppendingOneCharacterToAnEmptyStringAllocates100Bytes) {
  Str text;
  text.Append('a');
  EXPECT_EQ(text.Capacity(), 100);
  EXPECT_STREQ(text.Chars(), "a");
}

TEST(Str, AppendingThe100thCharacterGrowsTo200) {
  Str text;
  for (int i = 0; i < 99; ++i) text.Append('x');
  EXPECT_EQ(text.Capacity(), 100);
  text.Append('x');
  EXPECT_EQ(text.Length(), 100);
  EXPECT_EQ(text.Capacity(), 200);
  EXPECT_EQ(text.View(), Xs(100));
}

TEST(Str, CapacityIsRoundedUpToHundreds) {
  const struct {
    int32_t size;
    int32_t capacity;
  } rows[] = {{1, 100}, {99, 100}, {100, 100}, {101, 200}, {200, 200}, {201, 300}, {1000, 1000}};
  for (const auto& row : rows) {
    Str text;
    text.Lock(row.size)[0] = '\0';
    text.Unlock();
    EXPECT_EQ(text.Capacity(), row.capacity) << row.size;
  }
}

TEST(StrRoom, IsAWholeNumberOfHundreds) {
  const struct {
    int64_t needed;
    int64_t capacity;
  } rows[] = {{0, 0}, {1, 100}, {100, 100}, {101, 200}, {INT32_MAX, int64_t{INT32_MAX} + 53}};
  for (const auto& row : rows) EXPECT_EQ(CapacityFor(row.needed), row.capacity) << row.needed;
}

TEST(StrRoom, ANegativeNeedAssertsAndTakesNothing) {
  for (const int64_t needed : {int64_t{-1}, int64_t{INT32_MIN} * 2}) {
    AssertRecorder recorder;
    EXPECT_EQ(CapacityFor(needed), 0);
    EXPECT_EQ(recorder.Only(), "needed >= 0");
  }
}

TEST(Str, CapacityNeverShrinks) {
  Str text(Xs(250).c_str());
  text.Delete(0, -1);
  EXPECT_EQ(text.Capacity(), 300);
  text.Lock(1);
  text.Unlock();
  text.SetSubstring("abc", 0, 1);
  text.Format("%s", "x");
  EXPECT_EQ(text.Capacity(), 2000);
  text.TrimRight();
  text = "a";
  EXPECT_EQ(text.Capacity(), 2000);
}

TEST(Str, GrowingKeepsTheText) {
  Str text("abc");
  text.Lock(5000);
  text.Unlock();
  EXPECT_STREQ(text.Chars(), "abc");
  text.Append(Xs(6000).c_str());
  EXPECT_EQ(text.View(), "abc" + Xs(6000));
}

TEST(Str, RepeatedAppendsReallocateOncePerHundred) {
  Str text;
  int moves = 0;
  const char* buffer = text.Chars();
  for (int i = 0; i < 999; ++i) {
    text.Append('x');
    if (text.Chars() != buffer) ++moves;
    buffer = text.Chars();
  }
  EXPECT_LE(moves, 10);
}

TEST(Str, AppendForms) {
  Str text("a");
  text.Append("bc");
  text.Append(Str("de"));
  text.Append(std::string_view("fg"));
  text += "h";
  text += 'i';
  EXPECT_STREQ(text.Chars(), "abcdefghi");
  EXPECT_EQ(text.Length(), 9);
}

TEST(Str, AppendOfItself) {
  Str text(Xs(60).c_str());
  text.Append(text.Chars());
  EXPECT_EQ(text.View(), Xs(120));
  text.Append(text);
  EXPECT_EQ(text.View(), Xs(240));
  text.Append(text.Chars() + 239);
  EXPECT_EQ(text.Length(), 241);
}

TEST(Str, AppendOfNullAsserts) {
  AssertRecorder recorder;
  Str text("a");
  text.Append(static_cast<const char*>(nullptr));
  EXPECT_EQ(recorder.Only(), "cp");
  EXPECT_STREQ(text.Chars(), "a");
}

TEST(Str, FormatUsesThePrintfConversions) {
  Str text;
  text.Format("%s|%5d|%-4d|%04X|%c|%u|%%|%ld", "abc", 42, 7, 0x2AF, 'q', 7u, 9L);
  EXPECT_STREQ(text.Chars(), "abc|   42|7   |02AF|q|7|%|9");
}

TEST(Str, FormatMayUseItsOwnText) {
  Str text("abc");
  text.Format("<%s>", text.Chars());
  EXPECT_STREQ(text.Chars(), "<abc>");
}

TEST(Str, FormatLeavesABufferOf2000) {
  Str text;
  text.Format("%s", "a");
  EXPECT_EQ(text.Capacity(), 2000);
}

TEST(Str, Formatting1999CharactersIsSilent) {
  Str text;
  text.Format("%s", Xs(1999).c_str());
  EXPECT_EQ(text.View(), Xs(1999));
}

TEST(Str, Formatting2000CharactersAssertsAndKeepsTheText) {
  for (size_t length : {2000u, 2001u, 70000u}) {
    AssertRecorder recorder;
    Str text;
    text.Format("%s", Xs(length).c_str());
    EXPECT_EQ(recorder.Only(), "Str::VFormat(cp,format,args) < bufSize");
    EXPECT_EQ(text.View(), Xs(length));
  }
}

int32_t FormatInto(char* buffer, int32_t size, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int32_t length = Str::VFormat(buffer, size, format, args);
  va_end(args);
  return length;
}

TEST(Str, StaticVFormatIsBoundedAndMeasures) {
  char buffer[8];
  memset(buffer, '#', sizeof(buffer));
  EXPECT_EQ(FormatInto(buffer, 5, "%s", "abcdefghij"), 10);
  EXPECT_STREQ(buffer, "abcd");
  EXPECT_EQ(buffer[5], '#');
  EXPECT_EQ(FormatInto(buffer, 5, "%d", 1234), 4);
  EXPECT_STREQ(buffer, "1234");
  EXPECT_EQ(FormatInto(buffer, 5, "%d", 12345), 5);
  EXPECT_STREQ(buffer, "1234");
  EXPECT_EQ(FormatInto(nullptr, 0, "%s", "abc"), 3);
  buffer[0] = '#';
  EXPECT_EQ(FormatInto(buffer, 0, "%s", "abc"), 3);
  EXPECT_EQ(buffer[0], '#');
}

TEST(Str, StaticLength) {
  EXPECT_EQ(Str::Length(""), 0);
  EXPECT_EQ(Str::Length("abc"), 3);
  AssertRecorder recorder;
  EXPECT_EQ(Str::Length(nullptr), 0);
  EXPECT_EQ(recorder.Only(), "cp");
}

TEST(Str, StaticEqual) {
  EXPECT_TRUE(Str::Equal("abc", "abc"));
  EXPECT_FALSE(Str::Equal("abc", "ABC"));
  EXPECT_FALSE(Str::Equal("abc", "ab"));
  EXPECT_TRUE(Str::Equal("", ""));
}

TEST(Str, EqualityOperators) {
  Str text("abc");
  EXPECT_TRUE(text == "abc");
  EXPECT_FALSE(text == "abd");
  EXPECT_TRUE(text == Str("abc"));
  EXPECT_FALSE(text == Str("ab"));
}

}  // namespace
