#include "base/asserttext.h"

#include <gtest/gtest.h>

namespace {

const char kDefault[] = "File: a.cpp, Line#: 12\nAssert( x > 0 );\n";

TEST(AssertText, FillsFileLineAndExpression) {
  EXPECT_EQ(AssertMessage("%s|%d|%s!", "a.cpp", 12, "x > 0"), "a.cpp|12|x > 0!");
}

TEST(AssertText, PercentSignsAreKept) {
  EXPECT_EQ(AssertMessage("100%% %s %d %s", "a.cpp", 12, "x"), "100% a.cpp 12 x");
}

TEST(AssertText, FieldsAreNeverRead) {
  EXPECT_EQ(AssertMessage("%s %d %s", "%s%n", -1, "a %d %s"), "%s%n -1 a %d %s");
}

TEST(AssertText, AnyOtherFormatGivesTheDefault) {
  for (const char* format : {"", "no fields", "%s %d", "%s %d %s %s", "%d %s %s", "%s %s %d", "%s %d %n",
                             "%s %ld %s", "%s %5d %s", "%s %d %s %", "%s %d %s %x", "%"}) {
    EXPECT_EQ(AssertMessage(format, "a.cpp", 12, "x > 0"), kDefault) << format;
  }
}

TEST(AssertText, BuildNumberBehindTheFirstParenthesis) {
  EXPECT_EQ(BuildNumber("6.0 (1234)"), "1234");
  EXPECT_EQ(BuildNumber("6.0 (200707050000)"), "200707050000");
  EXPECT_EQ(BuildNumber("6.0 (12ab34)"), "12");
  EXPECT_EQ(BuildNumber("6.0 (12) (34)"), "12");
  EXPECT_EQ(BuildNumber("6.0 (56"), "56");
}

TEST(AssertText, NoBuildNumber) {
  for (const char* version : {"", "6.0", "6.0.1.2", "6.0 (", "6.0 ()", "6.0 (beta 3)", "6.0 ( 7)"}) {
    EXPECT_EQ(BuildNumber(version), "NoBuildNum") << version;
  }
}

}  // namespace
