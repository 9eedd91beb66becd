#include "tasks/splitargs.h"

#include <gtest/gtest.h>

namespace {

using Fields = std::vector<std::string>;

TEST(SplitArgs, FieldsEndAtCommas) {
  EXPECT_EQ(SplitArgs("a,b,c", false), (Fields{"a", "b", "c"}));
  EXPECT_EQ(SplitArgs("one", false), (Fields{"one"}));
  EXPECT_EQ(SplitArgs("", false), Fields());
}

TEST(SplitArgs, EmptyFieldsAreNotSeen) {
  EXPECT_EQ(SplitArgs("a,,b", false), (Fields{"a", "b"}));
  EXPECT_EQ(SplitArgs(",a,", false), (Fields{"a"}));
  EXPECT_EQ(SplitArgs(",,,", false), Fields());
}

TEST(SplitArgs, FieldsAreTrimmedAfterSplitting) {
  EXPECT_EQ(SplitArgs(" a ,\tb\t, c d ", false), (Fields{"a", "b", "c d"}));
}

TEST(SplitArgs, AllWhiteSpaceIsTrimmed) {
  EXPECT_EQ(SplitArgs("\v\fa\v\f,\r\nb\r\n", false), (Fields{"a", "b"}));
  EXPECT_EQ(SplitArgs("\v\"a\"\f,b", true), (Fields{"a", "b"}));
  EXPECT_EQ(SplitArgs("a\xA0,b", false), (Fields{"a\xA0", "b"}));
}

TEST(SplitArgs, AFieldOfBlanksIsPresentAndEmpty) {
  EXPECT_EQ(SplitArgs("Name,Desc,Path, ,Icon,0", false), (Fields{"Name", "Desc", "Path", "", "Icon", "0"}));
}

TEST(SplitArgs, AQuotedFirstFieldMayHoldCommas) {
  EXPECT_EQ(SplitArgs("\"C:\\a, b\\c\",next,last", true), (Fields{"C:\\a, b\\c", "next", "last"}));
  EXPECT_EQ(SplitArgs("  \"a,b\",c", true), (Fields{"a,b", "c"}));
}

TEST(SplitArgs, BlanksBehindTheClosingQuoteAreNoField) {
  EXPECT_EQ(SplitArgs("\"a\" , b", true), (Fields{"a", "b"}));
  EXPECT_EQ(SplitArgs("\"a\"  ", true), (Fields{"a"}));
  EXPECT_EQ(SplitArgs("\"a\"", true), (Fields{"a"}));
}

TEST(SplitArgs, TextBehindTheClosingQuoteIsTheNextField) {
  EXPECT_EQ(SplitArgs("\"a\"b,c", true), (Fields{"a", "b", "c"}));
}

TEST(SplitArgs, TheQuotedFieldKeepsItsBlanks) {
  EXPECT_EQ(SplitArgs("\" a \",b", true), (Fields{" a ", "b"}));
}

TEST(SplitArgs, AnEmptyQuotedFieldIsPresent) { EXPECT_EQ(SplitArgs("\"\",b", true), (Fields{"", "b"})); }

TEST(SplitArgs, AMissingClosingQuoteTakesTheRest) {
  EXPECT_EQ(SplitArgs("\"a,b,c", true), (Fields{"a,b,c"}));
}

TEST(SplitArgs, QuotesInLaterFieldsStay) {
  EXPECT_EQ(SplitArgs("HKEY_X\\A\\B,\"C:\\x.exe\" \"%1\"", true),
            (Fields{"HKEY_X\\A\\B", "\"C:\\x.exe\" \"%1\""}));
  EXPECT_EQ(SplitArgs("\"p\",\"q,r\"", true), (Fields{"p", "\"q", "r\""}));
}

TEST(SplitArgs, WithoutTheRuleQuotesAreOrdinary) {
  EXPECT_EQ(SplitArgs("\"a,b\",c", false), (Fields{"\"a", "b\"", "c"}));
}

}  // namespace
