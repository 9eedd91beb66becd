// Variable lists: order, frozen entries, the readings of a value, expansion and its end.
#include "messages/varlist.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "app_vars.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace {

std::string Expanded(const VarList& list, const char* text) {
  Str expanded(text);
  list.Expand(expanded);
  return expanded.Chars();
}

class VarListTest : public AppVarsTest {
 protected:
  VarList mList;
};

TEST_F(VarListTest, StartsEmpty) {
  EXPECT_TRUE(mList.IsEmpty());
  Str value("unchanged");
  EXPECT_FALSE(mList.Get("A", value));
  EXPECT_EQ(value, "unchanged");
  EXPECT_FALSE(mList.Exists("A"));
}

TEST_F(VarListTest, RunsFromTheNewestVariableToTheOldest) {
  mList.Set("A", "1");
  mList.Set("B", "2");
  mList.Set("C", "3");
  EXPECT_EQ(Listing(mList), "C=3 B=2 A=1");
}

TEST_F(VarListTest, SettingAgainReplacesTheValueInItsPlace) {
  mList.Set("A", "1");
  mList.Set("B", "2");
  mList.Set("A", "3");
  EXPECT_EQ(Listing(mList), "B=2 A=3");
}

TEST_F(VarListTest, NamesDifferByCase) {
  mList.Set("ProgDir", "1");
  mList.Set("progdir", "2");
  EXPECT_EQ(Listing(mList), "progdir=2 ProgDir=1");
  Str value;
  EXPECT_TRUE(mList.Get("ProgDir", value));
  EXPECT_EQ(value, "1");
  EXPECT_FALSE(mList.Exists("PROGDIR"));
}

TEST_F(VarListTest, PercentFreezesAndIsNoPartOfTheName) {
  mList.Set("%A", "1");
  mList.Set("A", "2");
  EXPECT_EQ(Listing(mList), "%A=1");
  EXPECT_TRUE(mList.Exists("A"));
  EXPECT_FALSE(mList.Exists("%A"));
}

TEST_F(VarListTest, FreezingASetVariableTakesTheNewValueFirst) {
  mList.Set("A", "1");
  mList.Set("%A", "2");
  mList.Set("A", "3");
  mList.Set("%A", "4");
  EXPECT_EQ(Listing(mList), "%A=2");
}

TEST_F(VarListTest, MutableFlagFreezesLikePercent) {
  mList.Set("A", "1", false);
  mList.Set("A", "2", true);
  EXPECT_EQ(Listing(mList), "%A=1");
}

TEST_F(VarListTest, PercentWinsOverTheMutableFlag) {
  mList.Set("%A", "1", true);
  mList.Set("A", "2", true);
  EXPECT_EQ(Listing(mList), "%A=1");
}

TEST_F(VarListTest, SettingAFrozenVariableIsNotReported) {
  const TempDir dir;
  mList.Set("%A", "1");
  ASSERT_TRUE(OpenLog(dir.Path().c_str(), "a.log"));
  const size_t header = dir.Read("a.log").size();
  mList.Set("A", "2");  // a failed assertion would fail the test
  mList.SetBool("A", true, false);
  CloseAndRenameLog();
  EXPECT_EQ(dir.Read("a.log").size(), header);
  EXPECT_EQ(Listing(mList), "%A=1");
}

TEST_F(VarListTest, HoldsCopiesOfNameAndValue) {
  char name[] = "A";
  char value[] = "1";
  mList.Set(name, value);
  name[0] = 'B';
  value[0] = '2';
  EXPECT_EQ(Listing(mList), "A=1");
}

TEST_F(VarListTest, OnlyOnePercentIsDropped) {
  mList.Set("%%A", "1");
  EXPECT_EQ(Listing(mList), "%%A=1");
  EXPECT_TRUE(mList.Exists("%A"));
}

TEST_F(VarListTest, ListsAreIndependent) {
  VarList other;
  mList.Set("A", "1");
  other.Set("A", "2");
  EXPECT_EQ(Listing(mList), "A=1");
  EXPECT_EQ(Listing(other), "A=2");
  EXPECT_FALSE(AppVariableExists("A"));
}

TEST_F(VarListTest, ValuesMayBeEmptyAndLong) {
  const std::string longValue(100000, 'x');
  mList.Set("Empty", "");
  mList.Set("Long", longValue.c_str());
  Str value("before");
  EXPECT_TRUE(mList.Get("Empty", value));
  EXPECT_EQ(value, "");
  EXPECT_TRUE(mList.Get("Long", value));
  EXPECT_EQ(value.Length(), 100000);
}

TEST_F(VarListTest, NullNamesAndValuesAreReportedAndChangeNothing) {
  AssertRecorder recorder;
  Str value("kept");
  bool flag = true;
  char buffer[4] = "abc";
  mList.Set(nullptr, "1");
  mList.Set("A", nullptr);
  EXPECT_FALSE(mList.Get(nullptr, value));
  EXPECT_FALSE(mList.GetExpanded(nullptr, value, 3));
  EXPECT_FALSE(mList.Get(nullptr, 4, buffer, 0));
  EXPECT_FALSE(mList.Exists(nullptr));
  EXPECT_FALSE(mList.GetBool(nullptr, flag));
  mList.SetBool(nullptr, true);
  EXPECT_EQ(recorder.Texts(), (std::vector<std::string>{"varName", "value", "varName", "varName", "varName",
                                                        "varName", "varName", "varName"}));
  EXPECT_TRUE(mList.IsEmpty());
  EXPECT_EQ(value, "kept");
  EXPECT_STREQ(buffer, "abc");
}

TEST_F(VarListTest, NamelessVariablesAreIgnoredAndLogged) {
  const TempDir dir;
  ASSERT_TRUE(OpenLog(dir.Path().c_str(), "a.log"));
  mList.Set("", "1");
  mList.Set("%", "2");
  CloseAndRenameLog();
  EXPECT_TRUE(mList.IsEmpty());
  const std::string log = dir.Read("a.log");
  EXPECT_NE(log.find("A variable without a name was not set to \"1\".\r\n"), std::string::npos) << log;
  EXPECT_NE(log.find("A variable without a name was not set to \"2\".\r\n"), std::string::npos) << log;
}

TEST_F(VarListTest, ForEachStopsWhenTheVisitorSaysSo) {
  mList.Set("A", "1");
  mList.Set("B", "2");
  mList.Set("C", "3");
  std::string seen;
  EXPECT_FALSE(mList.ForEach([&](const char* name, const char*, bool) {
    seen += name;
    return seen.size() < 2;
  }));
  EXPECT_EQ(seen, "CB");
  EXPECT_TRUE(mList.ForEach([](const char*, const char*, bool) { return true; }));
}

TEST_F(VarListTest, ClearForgetsEverything) {
  mList.Set("%A", "1");
  mList.Clear();
  EXPECT_TRUE(mList.IsEmpty());
  mList.Set("A", "2");
  EXPECT_EQ(Listing(mList), "A=2");
}

// Expanded values

TEST_F(VarListTest, GetGivesTheRawValue) {
  mList.Set("B", "x");
  mList.Set("A", "<B>");
  Str value;
  EXPECT_TRUE(mList.Get("A", value));
  EXPECT_EQ(value, "<B>");
  EXPECT_TRUE(mList.GetExpanded("A", value, 0));
  EXPECT_EQ(value, "<B>");
}

TEST_F(VarListTest, ExpandedByThisList) {
  AppSetVariable("B", "app");
  mList.Set("B", "list");
  mList.Set("A", "<B>");
  Str value;
  EXPECT_TRUE(mList.GetExpanded("A", value, VarList::kExpandThis));
  EXPECT_EQ(value, "list");
}

TEST_F(VarListTest, ExpandedByTheApplicationListFirst) {
  AppSetVariable("B", "app <C>");
  mList.Set("B", "list");
  mList.Set("C", "list c");
  mList.Set("A", "<B> <D>");
  mList.Set("D", "d");
  Str value;
  EXPECT_TRUE(mList.GetExpanded("A", value, VarList::kExpandApp));
  EXPECT_EQ(value, "app <C> <D>");
  EXPECT_TRUE(mList.GetExpanded("A", value, VarList::kExpandApp | VarList::kExpandThis));
  EXPECT_EQ(value, "app list c d");
}

TEST_F(VarListTest, ApplicationListExpandsItselfOnlyOnce) {
  AppSetVariable("A", "<A>x");
  Str value;
  // Each expansion of this one ends at 10,000 replacements; a second one would show.
  EXPECT_TRUE(AppVars().GetExpanded("A", value, VarList::kExpandApp | VarList::kExpandThis));
  EXPECT_EQ(value.Length(), 3 + 1 + 10000);
}

TEST_F(VarListTest, ExpandedGivesFalseForAnAbsentVariable) {
  Str value("kept");
  EXPECT_FALSE(mList.GetExpanded("A", value, 3));
  EXPECT_EQ(value, "kept");
}

TEST_F(VarListTest, BufferGetsAShorterValueWithItsTerminator) {
  mList.Set("A", "abc");
  char buffer[8];
  std::memset(buffer, '#', sizeof(buffer));
  EXPECT_TRUE(mList.Get("A", 8, buffer, 0));
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(buffer[7], '#');
}

TEST_F(VarListTest, BufferGetsAValueOfItsSizeWithoutTerminator) {
  mList.Set("A", "abcdef");
  char buffer[6];
  for (int max : {4, 6}) {
    std::memset(buffer, '#', sizeof(buffer));
    if (max == 6) mList.Set("A", "abcdef");
    EXPECT_TRUE(mList.Get("A", max, buffer, 0));
    EXPECT_EQ(std::string(buffer, 6), max == 4 ? "abcd##" : "abcdef");
  }
}

TEST_F(VarListTest, BufferGetsTheExpandedValue) {
  AppSetVariable("B", "x");
  mList.Set("A", "<B>");
  char buffer[8] = "";
  EXPECT_TRUE(mList.Get("A", 8, buffer, VarList::kExpandApp));
  EXPECT_STREQ(buffer, "x");
}

TEST_F(VarListTest, BufferStaysForAnAbsentVariable) {
  char buffer[4] = "abc";
  EXPECT_FALSE(mList.Get("A", 4, buffer, 0));
  EXPECT_STREQ(buffer, "abc");
}

TEST_F(VarListTest, BufferWithoutRoomIsReportedAndNotTouched) {
  mList.Set("A", "value");
  char buffer[4] = "abc";
  for (int max : {0, -1}) {
    AssertRecorder recorder;
    EXPECT_TRUE(mList.Get("A", max, buffer, 0));
    EXPECT_EQ(recorder.Only(), "max > 0");
    EXPECT_STREQ(buffer, "abc");
  }
}

// Truth values

TEST_F(VarListTest, TrueWords) {
  for (const char* word : {"True", "true", "TRUE", "Yes", "yes", "YES", "1"}) {
    mList.Set("A", word);
    bool flag = false;
    EXPECT_TRUE(mList.GetBool("A", flag));
    EXPECT_TRUE(flag) << word;
  }
}

TEST_F(VarListTest, FalseWords) {
  for (const char* word : {"False", "false", "FALSE", "No", "no", "NO", "0"}) {
    mList.Set("A", word);
    bool flag = true;
    EXPECT_TRUE(mList.GetBool("A", flag));
    EXPECT_FALSE(flag) << word;
  }
}

TEST_F(VarListTest, OtherWordsAreReportedAndLeaveTheResult) {
  for (const char* word : {"Y", "N", "", "01", "10", " 1", "on", "truely", "<B>"}) {
    for (bool before : {false, true}) {
      AssertRecorder recorder;
      mList.Set("A", word);
      mList.Set("B", "Yes");
      bool flag = before;
      EXPECT_TRUE(mList.GetBool("A", flag));
      EXPECT_EQ(recorder.Only(), "bad Bool value") << word;
      EXPECT_EQ(flag, before);
    }
  }
}

TEST_F(VarListTest, AbsentTruthValueLeavesTheResult) {
  bool flag = true;
  EXPECT_FALSE(mList.GetBool("A", flag));
  EXPECT_TRUE(flag);
}

TEST_F(VarListTest, SetBoolWritesDigits) {
  mList.SetBool("A", true);
  mList.SetBool("B", false, false);
  mList.SetBool("B", true);
  EXPECT_EQ(Listing(mList), "%B=0 A=1");
}

// Expansion

TEST_F(VarListTest, ExpansionReplacesEveryPlaceholder) {
  mList.Set("A", "1");
  mList.Set("B", "2");
  Str text("<A>+<B>=<A><A>");
  EXPECT_EQ(mList.Expand(text), 4);
  EXPECT_EQ(text, "1+2=11");
}

TEST_F(VarListTest, ExpansionLeavesUnknownNames) {
  mList.Set("A", "1");
  Str text("<B> <a> <A > < A> <A:d> <> A <");
  EXPECT_EQ(mList.Expand(text), 0);
  EXPECT_EQ(text, "<B> <a> <A > < A> <A:d> <> A <");
}

TEST_F(VarListTest, ExpansionOfTextsWithoutMarksDoesNothing) {
  mList.Set("A", "1");
  for (const char* plain : {"", "A", "text > more", "only < one"}) {
    Str text(plain);
    EXPECT_EQ(mList.Expand(text), 0);
    EXPECT_EQ(text, plain);
  }
}

TEST_F(VarListTest, NestedValuesAreExpandedWhateverTheOrder) {
  mList.Set("A", "<B>");
  mList.Set("B", "x");
  EXPECT_EQ(Expanded(mList, "<A>"), "x");

  VarList reversed;
  reversed.Set("B", "x");
  reversed.Set("A", "<B>");
  EXPECT_EQ(Expanded(reversed, "<A>"), "x");
}

TEST_F(VarListTest, NestedValuesCountEachReplacement) {
  mList.Set("A", "<B><B>");
  mList.Set("B", "<C>");
  mList.Set("C", "x");
  Str text("<A>");
  EXPECT_EQ(mList.Expand(text), 5);
  EXPECT_EQ(text, "xx");
}

TEST_F(VarListTest, NewerVariablesAreReplacedFirst) {
  // "<A<B>>" becomes "<A1>" once B is replaced; whether A1 or the inner one comes first shows in the result.
  mList.Set("A1", "late");
  mList.Set("B", "1");
  mList.Set("A<B>", "early");
  EXPECT_EQ(Expanded(mList, "<A<B>>"), "early");

  VarList other;
  other.Set("A<B>", "early");
  other.Set("A1", "late");
  other.Set("B", "1");
  EXPECT_EQ(Expanded(other, "<A<B>>"), "late");
}

TEST_F(VarListTest, ValuesCanCompleteAPlaceholder) {
  mList.Set("A", "<");
  mList.Set("B", "x");
  EXPECT_EQ(Expanded(mList, "<A>B>"), "x");
}

TEST_F(VarListTest, EmptyValuesRemoveThePlaceholder) {
  mList.Set("A", "");
  EXPECT_EQ(Expanded(mList, "[<A>]"), "[]");
}

TEST_F(VarListTest, SearchGoesOnAtThePlaceOfTheReplacement) {
  // Behind the first replacement "<A" and ">" meet to the left of the place; only the next pass sees that.
  mList.Set("A", ">");
  Str text("<A<A>");
  EXPECT_EQ(mList.Expand(text), 2);
  EXPECT_EQ(text, ">");
}

TEST_F(VarListTest, TheInsertedValueIsSearchedWithinThePass) {
  // The second "<A>" begins with the inserted value; it is gone before the older variable has its turn.
  mList.Set("<A", "wrong");
  mList.Set("A", "<");
  Str text("<<A>A>");
  EXPECT_EQ(mList.Expand(text), 2);
  EXPECT_EQ(text, "<<");
}

TEST_F(VarListTest, NewerVariableThatAppearsWaitsForTheNextPass) {
  mList.Set("B>c", "right");
  mList.Set("A", "<B>");
  mList.Set("B", "wrong");
  EXPECT_EQ(Expanded(mList, "<A>c>"), "right");
}

TEST_F(VarListTest, OtherMarksCanBeUsed) {
  mList.Set("A", "1");
  Str text("[A] <A> %A%");
  EXPECT_EQ(mList.Expand(text, '[', ']'), 1);
  EXPECT_EQ(text, "1 <A> %A%");
  EXPECT_EQ(mList.Expand(text, '%', '%'), 1);
  EXPECT_EQ(text, "1 <A> 1");
}

TEST_F(VarListTest, NamesMayHoldMarks) {
  mList.Set("a>b", "1");
  mList.Set("<", "2");
  EXPECT_EQ(Expanded(mList, "<a>b> <<> <a> b>"), "1 2 <a> b>");
}

TEST_F(VarListTest, FrozenVariablesAreExpandedToo) {
  mList.Set("%A", "1");
  EXPECT_EQ(Expanded(mList, "<A>"), "1");
}

class EndlessExpansionTest : public AppVarsTest {
 protected:
  void SetUp() override {
    AppVarsTest::SetUp();
    ASSERT_TRUE(OpenLog(mDir.Path().c_str(), "a.log"));
  }
  // The log lines without the header.
  std::string Lines() {
    CloseAndRenameLog();
    const std::string log = mDir.Read("a.log");
    return log.substr(log.find("\r\n") + 2);
  }

  TempDir mDir;
  VarList mList;
};

TEST_F(EndlessExpansionTest, OwnPlaceholderEndsAfterTenThousandReplacements) {
  mList.Set("A", "<A>x");
  Str text("<A>");
  EXPECT_EQ(mList.Expand(text), 10000);
  EXPECT_EQ(text.View(), "<A>" + std::string(10000, 'x'));
  EXPECT_EQ(Lines(), "The variable \"A\" never comes to an end; its placeholders were left as they are.\r\n");
}

TEST_F(EndlessExpansionTest, OwnPlaceholderBehindTextEndsToo) {
  mList.Set("A", "x<A>");
  Str text("<A>");
  EXPECT_EQ(mList.Expand(text), 10000);
  EXPECT_EQ(text.View(), std::string(10000, 'x') + "<A>");
}

TEST_F(EndlessExpansionTest, OwnPlaceholderAloneEnds) {
  mList.Set("A", "<A>");
  Str text("(<A>)");
  EXPECT_EQ(mList.Expand(text), 10000);
  EXPECT_EQ(text, "(<A>)");
}

TEST_F(EndlessExpansionTest, VariablesThatNameEachOtherEnd) {
  mList.Set("A", "<B>");
  mList.Set("B", "<A>");
  Str text("<A>");
  EXPECT_EQ(mList.Expand(text), 10000);
  EXPECT_EQ(Lines().find("The variable \""), 0u);
}

TEST_F(EndlessExpansionTest, GrowingTextEndsAtOneMebibyte) {
  mList.Set("A", (std::string(300, 'a') + "<B>" + std::string(300, 'b')).c_str());
  mList.Set("B", "<A>");
  Str text("<A>");
  const int32_t count = mList.Expand(text);
  EXPECT_LT(count, 10000);
  EXPECT_GT(text.Length(), 1024 * 1024);
  EXPECT_LT(text.Length(), 1024 * 1024 + 1000);
  EXPECT_EQ(Lines().find("The variable \""), 0u);
}

TEST_F(EndlessExpansionTest, DoublingTextEndsAtOneMebibyte) {
  mList.Set("A", "<A><A>");
  Str text("<A>");
  EXPECT_EQ(mList.Expand(text), 10000);
  mList.Set("A", (std::string(1000, 'x') + "<A><A>").c_str());
  EXPECT_LT(mList.Expand(text), 10000);
  EXPECT_LT(text.Length(), 1024 * 1024 + 2000);
}

TEST_F(EndlessExpansionTest, OtherTextsStillExpandAfterwards) {
  mList.Set("A", "<A>x");
  mList.Set("B", "b");
  Str text("<A>");
  mList.Expand(text);
  EXPECT_EQ(Expanded(mList, "<B>"), "b");
}

TEST_F(EndlessExpansionTest, NamesWithMarksDoNotDisturbTheLogLine) {
  mList.Set("VarName", "wrong");
  mList.Set("<VarName>", "<<VarName>>");
  Str text("<<VarName>>");
  EXPECT_EQ(mList.Expand(text), 10000);
  EXPECT_EQ(Lines(),
            "The variable \"<VarName>\" never comes to an end; its placeholders were left as they are.\r\n");
}

TEST_F(EndlessExpansionTest, TenThousandEndingReplacementsAreNoError) {
  mList.Set("A", "1");
  std::string placeholders;
  for (int i = 0; i < 10000; ++i) placeholders += "<A>";
  Str text(placeholders.c_str());
  EXPECT_EQ(mList.Expand(text), 10000);
  EXPECT_EQ(text.View(), std::string(10000, '1'));
  EXPECT_EQ(Lines(), "");
}

TEST_F(EndlessExpansionTest, ManyVariablesAndALongTextAreQuick) {
  std::string placeholders;
  for (int i = 0; i < 5000; ++i) {
    const std::string name = "Variable" + std::to_string(i);
    mList.Set(name.c_str(), std::to_string(i).c_str());
  }
  for (int i = 0; i < 5000; i += 50) placeholders += "<Variable" + std::to_string(i) + ">,";
  Str text(placeholders.c_str());
  const DWORD start = GetTickCount();
  for (int i = 0; i < 200; ++i) {
    text = placeholders.c_str();
    EXPECT_EQ(mList.Expand(text), 100);
  }
  EXPECT_LT(GetTickCount() - start, 5000u);
}

TEST_F(EndlessExpansionTest, NamesAndTextsFullOfMarksAreQuick) {
  std::string marks;
  for (int i = 0; i < 10000; ++i) marks += "<A>";
  mList.Set(marks.c_str(), "found");
  mList.Set("B", marks.c_str());
  const DWORD start = GetTickCount();
  EXPECT_EQ(Expanded(mList, "<B>"), marks);
  EXPECT_EQ(Expanded(mList, ("<" + marks + ">").c_str()), "found");
  EXPECT_LT(GetTickCount() - start, 20000u);
}

// The application list

class AppVariablesTest : public AppVarsTest {};

TEST_F(AppVariablesTest, SetAndGetActOnTheApplicationList) {
  Str value;
  EXPECT_FALSE(AppVariableExists("A"));
  EXPECT_FALSE(AppGetVariable("A", value));
  AppSetVariable("A", "<B>");
  EXPECT_TRUE(AppVariableExists("A"));
  EXPECT_TRUE(AppGetVariable("A", value));
  EXPECT_EQ(value, "<B>");
  EXPECT_EQ(Listing(AppVars()), "A=<B>");
}

TEST_F(AppVariablesTest, ExpandedTextIsEmptyForAnAbsentVariable) {
  EXPECT_EQ(AppGetExpanded("A"), "");
  AppSetVariable("B", "x");
  AppSetVariable("A", "<B>");
  EXPECT_EQ(AppGetExpanded("A"), "x");
}

TEST_F(AppVariablesTest, TruthValueIsAlwaysMutable) {
  AppSetBool("A", true);
  EXPECT_TRUE(AppGetBool("A"));
  AppSetBool("A", false);
  EXPECT_FALSE(AppGetBool("A"));
  EXPECT_EQ(Listing(AppVars()), "A=0");
}

TEST_F(AppVariablesTest, TruthValueIsExpanded) {
  AppSetVariable("B", "1");
  AppSetVariable("A", "<B>");
  EXPECT_TRUE(AppGetBool("A"));
}

TEST_F(AppVariablesTest, AbsentTruthValueIsFalse) { EXPECT_FALSE(AppGetBool("A")); }

TEST_F(AppVariablesTest, OtherTruthValuesAreReportedAndFalse) {
  for (const char* word : {"True", "yes", "2", "", "<B>"}) {
    AssertRecorder recorder;
    AppSetVariable("A", word);
    EXPECT_FALSE(AppGetBool("A"));
    EXPECT_EQ(recorder.Only(), "value == \"0\" || value == \"1\"") << word;
  }
}

}  // namespace
