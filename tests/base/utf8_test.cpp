#include "base/utf8.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8, PlainBytesAreTakenAsTheyAre) {
  EXPECT_EQ(DecodeUtf8("abc\x7f"), u"abc\x7f");
  EXPECT_EQ(DecodeUtf8(""), u"");
}

TEST(Utf8, TwoByteSequence) {
  EXPECT_EQ(DecodeUtf8("\xc3\xa9"), std::u16string(1, 0xE9));
  EXPECT_EQ(DecodeUtf8("\xd0\x96"), std::u16string(1, 0x416));
  EXPECT_EQ(DecodeUtf8("\xdf\xbf"), std::u16string(1, 0x7FF));
}

TEST(Utf8, ThreeByteSequence) {
  EXPECT_EQ(DecodeUtf8("x\xe2\x82\xacy"), std::u16string(u"x\u20acy"));
  EXPECT_EQ(DecodeUtf8("\xef\xbf\xbf"), std::u16string(1, 0xFFFF));
}

TEST(Utf8, AnyOtherByteLeadsThree) {
  EXPECT_EQ(DecodeUtf8("\xf0\x9f\x98"), std::u16string(1, 0x07D8));  // low 4 bits 0
  EXPECT_EQ(DecodeUtf8("\x80\x81\x82"), std::u16string(1, 0x0042));
  EXPECT_EQ(DecodeUtf8("\xbf\x81\x82"), std::u16string(1, 0xF042));
  EXPECT_EQ(DecodeUtf8("\xff\x81\x82"), std::u16string(1, 0xF042));
}

TEST(Utf8, ContinuationBytesAreNotValidated) {
  EXPECT_EQ(DecodeUtf8("\xc3z"), std::u16string(1, 0x00FA));  // low 6 bits of z
  EXPECT_EQ(DecodeUtf8("\xe2zz"), std::u16string(1, 0x2EBA));
}

TEST(Utf8, NulInPlaceOfAContinuationEndsTheText) {
  EXPECT_EQ(DecodeUtf8("a\xc3"), u"a");
  EXPECT_EQ(DecodeUtf8("a\xe2"), u"a");
  EXPECT_EQ(DecodeUtf8("a\xe2\x82"), u"a");
  EXPECT_EQ(DecodeUtf8(std::string_view("a\xc3\0bc", 5)), u"a");
  EXPECT_EQ(DecodeUtf8(std::string_view("a\xe2\x82\0bc", 6)), u"a");
}

TEST(Utf8, NulEndsTheText) { EXPECT_EQ(DecodeUtf8(std::string_view("ab\0cd", 5)), u"ab"); }

}  // namespace
