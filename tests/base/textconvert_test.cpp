// The conversions between the ANSI code page and UTF-16.
#include <gtest/gtest.h>

#include <string>

#include "base/string.h"
#include "support/assert_recorder.h"

namespace {

TEST(TextConvert, AnsiToWideIntoABuffer) {
  wchar_t buffer[16];
  AnsiToWide("caf\xe9 \x80", buffer, 16);
  EXPECT_STREQ(buffer, L"caf\u00e9 \u20ac");
}

TEST(TextConvert, WideToAnsiIntoABuffer) {
  char buffer[16];
  WideToAnsi(L"caf\u00e9 \u20ac", buffer, 16);
  EXPECT_STREQ(buffer, "caf\xe9 \x80");
}

TEST(TextConvert, WhatTheCodePageLacksIsReplaced) {
  char buffer[16];
  WideToAnsi(L"a\u0416b", buffer, 16);
  EXPECT_STREQ(buffer, "a?b");
}

TEST(TextConvert, AShortBufferIsCutAndTerminated) {
  wchar_t wide[8];
  wmemset(wide, L'#', 8);
  AnsiToWide("abcdef", wide, 4);
  EXPECT_STREQ(wide, L"abc");
  EXPECT_EQ(wide[4], L'#');
  AnsiToWide("abcdef", wide, 1);
  EXPECT_STREQ(wide, L"");
  char narrow[8];
  memset(narrow, '#', 8);
  WideToAnsi(L"abcdef", narrow, 4);
  EXPECT_STREQ(narrow, "abc");
  EXPECT_EQ(narrow[4], '#');
  WideToAnsi(L"abcdef", narrow, 1);
  EXPECT_STREQ(narrow, "");
}

TEST(TextConvert, ExactRoomIsEnough) {
  wchar_t wide[4];
  AnsiToWide("abc", wide, 4);
  EXPECT_STREQ(wide, L"abc");
  char narrow[4];
  WideToAnsi(L"abc", narrow, 4);
  EXPECT_STREQ(narrow, "abc");
}

TEST(TextConvert, ABufferOfNoSizeIsNotWritten) {
  wchar_t wide[2] = {L'#', L'#'};
  AnsiToWide("abc", wide, 0);
  AnsiToWide("abc", wide, -1);
  EXPECT_EQ(wide[0], L'#');
  char narrow[2] = {'#', '#'};
  WideToAnsi(L"abc", narrow, 0);
  WideToAnsi(L"abc", narrow, -1);
  EXPECT_EQ(narrow[0], '#');
}

TEST(TextConvert, NullPointersAssert) {
  AssertRecorder recorder;
  wchar_t wide[4] = L"###";
  AnsiToWide(nullptr, wide, 4);
  EXPECT_EQ(recorder.Only(), "nStr");
  EXPECT_STREQ(wide, L"");
  recorder.Clear();
  AnsiToWide("abc", nullptr, 4);
  EXPECT_EQ(recorder.Only(), "wStr");
  recorder.Clear();
  char narrow[4] = "###";
  WideToAnsi(nullptr, narrow, 4);
  EXPECT_EQ(recorder.Only(), "wStr");
  EXPECT_STREQ(narrow, "");
  recorder.Clear();
  WideToAnsi(L"abc", nullptr, 4);
  EXPECT_EQ(recorder.Only(), "nStr");
  recorder.Clear();
  EXPECT_EQ(AnsiToWide(nullptr), nullptr);
  EXPECT_EQ(recorder.Only(), "nStr");
  recorder.Clear();
  EXPECT_EQ(WideToAnsi(nullptr), nullptr);
  EXPECT_EQ(recorder.Only(), "wStr");
}

TEST(TextConvert, AllocatingForms) {
  EXPECT_STREQ(AnsiToWide("caf\xe9").get(), L"caf\u00e9");
  EXPECT_STREQ(WideToAnsi(L"caf\u00e9").get(), "caf\xe9");
  EXPECT_STREQ(AnsiToWide("").get(), L"");
  const std::string longText(100000, 'x');
  EXPECT_STREQ(WideToAnsi(AnsiToWide(longText.c_str()).get()).get(), longText.c_str());
}

}  // namespace
