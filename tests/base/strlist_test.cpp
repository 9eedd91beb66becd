#include "base/strlist.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/assert_recorder.h"

namespace {

std::string BytesOf(StrList& list) {
  const MemLock lock(list.Block());
  return std::string(lock.Ptr(), list.Block().Size());
}

std::string Bytes(const char* text, size_t length) { return std::string(text, length); }

TEST(StrList, NewListIsTwoZeroBytes) {
  StrList list;
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(BytesOf(list), Bytes("\0\0", 2));
}

TEST(StrList, CreatedWithEmptyEntries) {
  StrList list(3);
  EXPECT_EQ(list.Count(), 3);
  EXPECT_EQ(BytesOf(list), Bytes("\3\0\0\0\0", 5));
  EXPECT_STREQ(list.Get(2), "");
}

TEST(StrList, AppendWritesLengthAndCharacters) {
  StrList list;
  list.Append("ab");
  list.Append("");
  list.Append("cde");
  EXPECT_EQ(BytesOf(list), Bytes("\3\0\2ab\0\3cde", 10));
  EXPECT_STREQ(list.Get(0), "ab");
  EXPECT_STREQ(list.Get(1), "");
  EXPECT_STREQ(list.Get(2), "cde");
}

TEST(StrList, CountIsLittleEndian16Bit) {
  StrList list(300);
  EXPECT_EQ(list.Count(), 300);
  EXPECT_EQ(BytesOf(list).substr(0, 2), "\x2c\x01");
}

TEST(StrList, ReplaceByALongerText) {
  StrList list;
  list.Append("a");
  list.Append("b");
  list.Append("c");
  list.Replace(1, "longer");
  EXPECT_EQ(BytesOf(list), Bytes("\3\0\1a\6longer\1c", 13));
}

TEST(StrList, ReplaceByAShorterTextShrinksTheBlock) {
  StrList list;
  list.Append("aaaa");
  list.Append("bbbb");
  list.Replace(0, "x");
  EXPECT_EQ(BytesOf(list), Bytes("\2\0\1x\4bbbb", 9));
  list.Replace(1, "");
  EXPECT_EQ(BytesOf(list), Bytes("\2\0\1x\0", 5));
}

TEST(StrList, ReplaceFillsAListOfEmptyEntries) {
  StrList list(3);
  list.Replace(0, "one");
  list.Replace(1, "two");
  list.Replace(2, "three");
  EXPECT_STREQ(list.Get(0), "one");
  EXPECT_STREQ(list.Get(1), "two");
  EXPECT_STREQ(list.Get(2), "three");
}

TEST(StrList, GetIntoABufferIsCutWithAnAssertion) {
  StrList list;
  list.Append("abcdef");
  char buffer[8] = "#######";
  list.Get(0, buffer, 7);
  EXPECT_STREQ(buffer, "abcdef");
  AssertRecorder recorder;
  list.Get(0, buffer, 6);
  EXPECT_EQ(recorder.Only(), "len < strMax");
  EXPECT_STREQ(buffer, "abcde");
  recorder.Clear();
  list.Get(0, buffer, 1);
  EXPECT_EQ(recorder.Only(), "len < strMax");
  EXPECT_STREQ(buffer, "");
}

TEST(StrList, EntryOf255Characters) {
  const std::string text(255, 'x');
  StrList list;
  list.Append(text.c_str());
  list.Append("behind");
  EXPECT_EQ(list.Get(0).View(), text);
  EXPECT_STREQ(list.Get(1), "behind");
}

TEST(StrList, LongerTextsAssertAndKeepTheFirst255) {
  const std::string text = std::string(255, 'x') + "y";
  AssertRecorder recorder;
  StrList list;
  list.Append(text.c_str());
  EXPECT_EQ(recorder.Only(), "len <= 255");
  EXPECT_EQ(list.Get(0).View(), std::string(255, 'x'));
  recorder.Clear();
  list.Replace(0, text.c_str());
  EXPECT_EQ(recorder.Only(), "len <= 255");
  EXPECT_EQ(list.Get(0).View(), std::string(255, 'x'));
}

TEST(StrList, OutsideTheListAssertsAndGivesNothing) {
  StrList list;
  list.Append("a");
  AssertRecorder recorder;
  char buffer[4] = "###";
  for (int32_t i : {-1, 1, 100}) {
    recorder.Clear();
    list.Get(i, buffer, 4);
    EXPECT_EQ(recorder.Only(), "(i >= 0) && (i < count)");
    EXPECT_STREQ(buffer, "");
    recorder.Clear();
    list.Replace(i, "x");
    EXPECT_EQ(recorder.Only(), "(i >= 0) && (i < count)");
  }
  EXPECT_EQ(BytesOf(list), Bytes("\1\0\1a", 4));
}

TEST(StrList, MoreThan65535EntriesAssertAndAreNotAdded) {
  StrList list(65535);
  const uint32_t size = list.Block().Size();
  EXPECT_EQ(list.Count(), 65535);
  AssertRecorder recorder;
  list.Append("x");
  EXPECT_EQ(recorder.Only(), "count < 65535");
  EXPECT_EQ(list.Count(), 65535);
  EXPECT_EQ(list.Block().Size(), size);
}

TEST(StrList, GetMemStrPtrWalksToTheLengthByte) {
  const uint8_t block[] = {3, 0, 1, 'a', 0, 2, 'b', 'c'};
  EXPECT_EQ(GetMemStrPtr(block, 0), block + 2);
  EXPECT_EQ(GetMemStrPtr(block, 1), block + 4);
  EXPECT_EQ(GetMemStrPtr(block, 2), block + 5);
}

}  // namespace
