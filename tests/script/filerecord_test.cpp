#include "script/filerecord.h"

#include <gtest/gtest.h>

namespace {

TEST(FileRecord, FourFieldsAreSplitAtCommas) {
  RecordFields fields;
  ASSERT_TRUE(SplitRecord("1,sub\\a.dl_,?*C:\\Prog\\a.dll,1234", fields));
  EXPECT_EQ(fields.disk, "1");
  EXPECT_EQ(fields.source, "sub\\a.dl_");
  EXPECT_EQ(fields.dest, "?*C:\\Prog\\a.dll");
  EXPECT_EQ(fields.size, "1234");
}

TEST(FileRecord, BlanksAroundAFieldDoNotCount) {
  RecordFields fields;
  ASSERT_TRUE(SplitRecord(" 1,\tsub dir\\a.dl_ , ?C:\\My Prog\\a.dll , 4 ", fields));
  EXPECT_EQ(fields.disk, "1");
  EXPECT_EQ(fields.source, "sub dir\\a.dl_");
  EXPECT_EQ(fields.dest, "?C:\\My Prog\\a.dll");
  EXPECT_EQ(fields.size, "4");
  EXPECT_FALSE(SplitRecord("1,  ,b,4", fields));
}

TEST(FileRecord, FewerThanFourFieldsAreRefused) {
  RecordFields fields;
  EXPECT_FALSE(SplitRecord("", fields));
  EXPECT_FALSE(SplitRecord("1", fields));
  EXPECT_FALSE(SplitRecord("1,a", fields));
  EXPECT_FALSE(SplitRecord("1,a,b", fields));
}

TEST(FileRecord, AnEmptyFieldIsNotPresent) {
  RecordFields fields;
  EXPECT_FALSE(SplitRecord(",a,b,4", fields));
  EXPECT_FALSE(SplitRecord("1,,b,4", fields));
  EXPECT_FALSE(SplitRecord("1,a,,4", fields));
  EXPECT_FALSE(SplitRecord("1,a,b,", fields));
}

TEST(FileRecord, FieldsBehindTheFourthAreIgnored) {
  RecordFields fields;
  ASSERT_TRUE(SplitRecord("1,a,b,4,more,fields", fields));
  EXPECT_EQ(fields.size, "4");
}

TEST(FileRecord, CommasAreCounted) {
  EXPECT_EQ(CountRecordFields(""), 1u);
  EXPECT_EQ(CountRecordFields("1,a,b,4"), 4u);
  EXPECT_EQ(CountRecordFields(",,"), 3u);
}

TEST(FileRecord, ACommaBroughtByAVariableSplitsTheRawRecord) {
  EXPECT_TRUE(SplitBeforeExpanding("1,a,<ProgDir>\\b,4", "1,a,C:\\x, y\\b,4"));
  EXPECT_FALSE(SplitBeforeExpanding("1,a,<ProgDir>\\b,4", "1,a,C:\\x\\b,4"));
  EXPECT_FALSE(SplitBeforeExpanding("1,<All>", "1,a,b,c,d"));
  EXPECT_FALSE(SplitBeforeExpanding("1,a,b,c,d", "1,a,b,c,d"));
}

TEST(FileRecord, NumbersAreReadToTheFirstOtherCharacter) {
  EXPECT_EQ(ParseRecordNumber("12"), 12);
  EXPECT_EQ(ParseRecordNumber(" \t12 KB"), 12);
  EXPECT_EQ(ParseRecordNumber("+7"), 7);
  EXPECT_EQ(ParseRecordNumber("-7"), -7);
  EXPECT_EQ(ParseRecordNumber("0x10"), 0);
  EXPECT_EQ(ParseRecordNumber("010"), 10);
}

TEST(FileRecord, TextsThatAreNoNumbersAreZero) {
  EXPECT_EQ(ParseRecordNumber(""), 0);
  EXPECT_EQ(ParseRecordNumber("  "), 0);
  EXPECT_EQ(ParseRecordNumber("big"), 0);
  EXPECT_EQ(ParseRecordNumber("-"), 0);
}

TEST(FileRecord, NumbersAreLimitedTo32Bits) {
  EXPECT_EQ(ParseRecordNumber("2147483647"), 2147483647);
  EXPECT_EQ(ParseRecordNumber("2147483648"), 2147483648);
  EXPECT_EQ(ParseRecordNumber("4294967295"), 4294967295);
  EXPECT_EQ(ParseRecordNumber("4294967296"), 4294967295);
  EXPECT_EQ(ParseRecordNumber("99999999999999999999999999"), 4294967295);
  EXPECT_EQ(ParseRecordNumber("-2147483648"), INT32_MIN);
  EXPECT_EQ(ParseRecordNumber("-99999999999999999999999999"), INT32_MIN);
}

TEST(FileRecord, WhatIsANumber) {
  for (const char* text : {"0", "12", " 12\t", "-3", "+3"}) EXPECT_TRUE(IsRecordNumber(text)) << text;
  for (const char* text : {"", " ", "-", "12 KB", "1 2", "0x10", "big", "--1"})
    EXPECT_FALSE(IsRecordNumber(text)) << text;
}

TEST(FileRecord, TheSizeBehindTheLastCommaIsReplaced) {
  EXPECT_EQ(WithRecordSize("1,a,<ProgDir>\\b,4", 77), "1,a,<ProgDir>\\b,77");
  EXPECT_EQ(WithRecordSize("1,a,b,", 0), "1,a,b,0");
  EXPECT_EQ(WithRecordSize("plain", -5), "-5");
}

TEST(FileRecord, DestinationPrefixesComeInAnyOrderAndNumber) {
  for (const char* text : {"*?C:\\d\\n.x", "?*C:\\d\\n.x", "**??*C:\\d\\n.x"}) {
    const RecordDest dest = SplitRecordDest(text, nullptr);
    EXPECT_TRUE(dest.hidden) << text;
    EXPECT_TRUE(dest.keepExisting) << text;
    EXPECT_EQ(dest.dir, "C:\\d") << text;
    EXPECT_EQ(dest.name, "n.x") << text;
  }
}

TEST(FileRecord, BlanksBehindThePrefixesDoNotCount) {
  const RecordDest dest = SplitRecordDest("*? \tC:\\d\\n", nullptr);
  EXPECT_TRUE(dest.hidden && dest.keepExisting);
  EXPECT_EQ(dest.dir, "C:\\d");
  EXPECT_EQ(SplitRecordDest("* ", nullptr).name, "");
}

TEST(FileRecord, EachPrefixAloneSetsItsFlag) {
  EXPECT_TRUE(SplitRecordDest("*C:\\d\\n", nullptr).hidden);
  EXPECT_FALSE(SplitRecordDest("*C:\\d\\n", nullptr).keepExisting);
  EXPECT_TRUE(SplitRecordDest("?C:\\d\\n", nullptr).keepExisting);
  EXPECT_FALSE(SplitRecordDest("?C:\\d\\n", nullptr).hidden);
  EXPECT_FALSE(SplitRecordDest("C:\\d\\n", nullptr).hidden);
}

TEST(FileRecord, PrefixesEndAtTheFirstOtherCharacter) {
  const RecordDest dest = SplitRecordDest("*C:\\d\\?n", nullptr);
  EXPECT_FALSE(dest.keepExisting);
  EXPECT_EQ(dest.name, "?n");
}

TEST(FileRecord, DestinationsInARootOrWithoutAFolder) {
  EXPECT_EQ(SplitRecordDest("C:\\n", nullptr).dir, "C:\\");
  EXPECT_EQ(SplitRecordDest("\\n", nullptr).dir, "\\");
  EXPECT_EQ(SplitRecordDest("n", nullptr).dir, "");
  EXPECT_EQ(SplitRecordDest("n", nullptr).name, "n");
  EXPECT_EQ(SplitRecordDest("C:\\d\\", nullptr).name, "");
  EXPECT_EQ(SplitRecordDest("\\\\server\\share\\n", nullptr).dir, "\\\\server\\share");
  EXPECT_EQ(SplitRecordDest("**", nullptr).name, "");
}

TEST(FileRecord, ABackslashInsideADoubleByteCharacterSplitsNothing) {
  const auto lead = [](unsigned char byte) { return byte == 0x83; };
  const RecordDest dest = SplitRecordDest("C:\\d\\\x83\\n", lead);
  EXPECT_EQ(dest.dir, "C:\\d");
  EXPECT_EQ(dest.name, "\x83\\n");
}

}  // namespace
