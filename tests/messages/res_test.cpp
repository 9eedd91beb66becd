// Resource texts: which module an id comes from, continued texts, tags, the readers.
#include "messages/res.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "app_vars.h"
#include "base/handle.h"
#include "messages/restext.h"
#include "messages/restextrules.h"
#include "support/assert_recorder.h"
#include "support/library_maker.h"
#include "support/temp_dir.h"

namespace {

constexpr char kMissing[] = "Bad param to GetResStr: no string for strID = 0x<StrID,x>.";

// A language library and a program of the test's own making.
class ResTest : public AppVarsTest {
 protected:
  using Strings = std::map<unsigned, std::string>;

  void TearDown() override {
    SetLanguageModule(nullptr);
    SetProgramModule(nullptr);
    AppVarsTest::TearDown();
  }

  void UseLibrary(const Strings& strings) {
    mLibrary = Load("library.dll", strings);
    SetLanguageModule(mLibrary.Get());
  }
  void UseProgram(const Strings& strings) {
    mProgram = Load("program.dll", strings);
    SetProgramModule(mProgram.Get());
  }

  static std::string Text(unsigned id, int32_t index = 0, uint32_t flags = 0) {
    Str result("before");
    EXPECT_TRUE(GetResStr(id, index, result, flags)) << id;
    return result.Chars();
  }

 private:
  ModuleHandle Load(const std::string& name, const Strings& strings) {
    LibrarySpec spec;
    spec.strings = strings;
    const std::string path = mDir.Write(name, MakeLibrary(spec));
    ModuleHandle module(LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    EXPECT_TRUE(module);
    return module;
  }

  TempDir mDir;
  ModuleHandle mLibrary;
  ModuleHandle mProgram;
};

// Modules

TEST_F(ResTest, LowIdsComeFromTheLibrary) {
  UseLibrary({{700, "library"}, {19999, "library last"}});
  UseProgram({{700, "program"}, {19999, "program last"}});
  EXPECT_EQ(Text(700), "library");
  EXPECT_EQ(Text(19999), "library last");
  EXPECT_EQ(ModuleForResource(19999), GetLanguageModule());
}

TEST_F(ResTest, HighIdsNeverComeFromTheLibrary) {
  UseLibrary({{20000, "library"}, {20001, "library"}, {20002, "library"}});
  UseProgram({{20000, "program"}, {20001, "program too"}});
  EXPECT_EQ(Text(20000), "program");
  EXPECT_EQ(Text(20001), "program too");
  EXPECT_STREQ(GetResStr(20001), "program too");
  Str result;
  EXPECT_FALSE(GetResStr(20002, 0, result, 0));
  EXPECT_NE(ModuleForResource(20000), GetLanguageModule());
}

TEST_F(ResTest, WithoutALibraryEverythingComesFromTheProgram) {
  UseProgram({{700, "program"}});
  EXPECT_EQ(Text(700), "program");
  EXPECT_EQ(GetLanguageModule(), nullptr);
}

TEST_F(ResTest, WhatTheLibraryLacksComesFromTheProgram) {
  UseLibrary({{700, "library"}});
  UseProgram({{701, "program"}});
  EXPECT_EQ(Text(701), "program");
}

TEST_F(ResTest, RunningProgramIsTheProgramUnlessSaid) {
  EXPECT_EQ(ModuleForResource(20000), GetModuleHandleA(nullptr));
  EXPECT_EQ(ModuleForResource(1), GetModuleHandleA(nullptr));
}

TEST_F(ResTest, LoaderCutsAtTheBuffer) {
  UseProgram({{700, "abcdef"}});
  char buffer[8] = "#######";
  EXPECT_EQ(LoadResString(700, buffer, 4), 3);
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(buffer[4], '#');
  EXPECT_EQ(LoadResString(700, buffer, 8), 6);
  EXPECT_STREQ(buffer, "abcdef");
}

TEST_F(ResTest, LoaderGivesAnEmptyTextForAMissingString) {
  UseProgram({{700, "abc"}});
  char buffer[8] = "before";
  EXPECT_EQ(LoadResString(701, buffer, 8), 0);
  EXPECT_STREQ(buffer, "");
}

TEST_F(ResTest, IdZeroIsReported) {
  AssertRecorder recorder;
  char buffer[8] = "before";
  EXPECT_EQ(LoadResString(0, buffer, 8), 0);
  EXPECT_EQ(recorder.Only(), "id != 0");
  EXPECT_STREQ(buffer, "");
}

// Text by id and index

TEST_F(ResTest, IndexIsAddedToTheId) {
  UseProgram({{1536, "first"}, {1537, "second"}, {1538, "!END!"}});
  EXPECT_EQ(Text(1536, 1), "second");
  EXPECT_EQ(Text(1536, 2), "!END!");
}

TEST_F(ResTest, FlagExpandsTheText) {
  UseProgram({{700, "<A> <B>"}});
  AppSetVariable("A", "1");
  EXPECT_EQ(Text(700, 0, 0), "<A> <B>");
  EXPECT_EQ(Text(700, 0, kResExpand), "1 <B>");
  EXPECT_EQ(Text(700, 0, 0xFFFFFFFE), "<A> <B>");
}

TEST_F(ResTest, MissingStringOfAListIsNoError) {
  UseProgram({{700, "a"}});
  Str result("before");
  EXPECT_FALSE(GetResStr(700, 1, result, 0));
  EXPECT_EQ(result, "");
}

TEST_F(ResTest, CharactersOfTheCodePage) {
  UseProgram({{700, "d\xe9j\xe0 vu"}});
  EXPECT_EQ(Text(700), "d\xe9j\xe0 vu");
}

TEST_F(ResTest, LongestPieceIsReportedAsPerhapsCut) {
  UseProgram({{700, std::string(3998, 'x')}, {701, std::string(3999, 'x')}, {702, std::string(5000, 'x')}});
  EXPECT_EQ(Text(700).size(), 3998u);
  for (unsigned id : {701u, 702u}) {
    AssertRecorder recorder;
    EXPECT_EQ(Text(id).size(), 3999u);
    EXPECT_EQ(recorder.Only(), "Str::Length(buf) != (MAX_RES_STRING_LEN - 1)");
  }
}

TEST_F(ResTest, BufferGetsTheTextCutAndTerminated) {
  UseProgram({{700, "abcdef"}});
  AppSetVariable("A", "1");
  char buffer[8];
  GetResStr(700, 0, buffer, 8, 0);
  EXPECT_STREQ(buffer, "abcdef");
  GetResStr(700, 0, buffer, 7, 0);
  EXPECT_STREQ(buffer, "abcdef");
  AssertRecorder recorder;
  GetResStr(700, 0, buffer, 6, 0);
  EXPECT_STREQ(buffer, "abcde");
  EXPECT_EQ(recorder.Only(), "temp.Length() < strMax");
}

TEST_F(ResTest, BufferGetsTheExpandedText) {
  UseProgram({{700, "<A>"}});
  AppSetVariable("A", "1");
  char buffer[8];
  GetResStr(700, 0, buffer, 8, kResExpand);
  EXPECT_STREQ(buffer, "1");
  GetResStr(701, 0, buffer, 8, kResExpand);
  EXPECT_STREQ(buffer, "");
}

// Continued texts

TEST_F(ResTest, NumberContinuesWithThreeThousandMore) {
  UseProgram({{700, "A$5$"}, {3005, "B"}});
  EXPECT_EQ(Text(700), "AB");
}

TEST_F(ResTest, NumberOfTheProgramsIdsContinuesWithThirtyThousandMore) {
  UseProgram({{20000, "A$5$"}, {30005, "B"}, {3005, "wrong"}});
  EXPECT_EQ(Text(20000), "AB");
}

TEST_F(ResTest, NumbersOfAChainAlwaysCountFromTheFirstId) {
  UseProgram({{20000, "A$5$"},
              {30005, "B$6$"},
              {30006, "C"},
              {700, "D$18000$"},
              {21000, "E$6$"},  // one of the program's ids, in a text that is not
              {3006, "F"}});
  EXPECT_EQ(Text(20000), "ABC");
  EXPECT_EQ(Text(700), "DEF");
}

TEST_F(ResTest, NumbersOfAChainDoNotCountTheIndexIn) {
  UseProgram({{20000, "A$5$"}, {3005, "B"}, {30005, "wrong"}});
  EXPECT_EQ(Text(19999, 1), "AB");
}

TEST_F(ResTest, EmptyNumberContinuesWithTheNextId) {
  UseProgram({{700, "A$$"}, {701, "B$$"}, {702, "C"}});
  EXPECT_EQ(Text(700), "ABC");
}

TEST_F(ResTest, NextIdFollowsThePieceThatSaysSo) {
  UseProgram({{700, "A$5$"}, {3005, "B$$"}, {3006, "C"}, {701, "wrong"}});
  EXPECT_EQ(Text(700), "ABC");
}

TEST_F(ResTest, PieceWithoutInnerMarkEndsTheChain) {
  UseProgram({{700, "A$"}, {701, "B"}, {710, "A$$"}, {711, "B$"}, {712, "C"}});
  EXPECT_EQ(Text(700), "A");
  EXPECT_EQ(Text(710), "AB");
}

TEST_F(ResTest, MarkInsideATextIsText) {
  UseProgram({{700, "5 $ or 6"}, {701, "costs $5 and$$"}, {702, " more"}});
  EXPECT_EQ(Text(700), "5 $ or 6");
  EXPECT_EQ(Text(701), "costs $5 and more");
}

TEST_F(ResTest, WordsBetweenTheMarksAreText) {
  UseProgram({{700, "A$word$"}});
  EXPECT_EQ(Text(700), "A$word");
}

TEST_F(ResTest, MissingPieceEndsTheChain) {
  UseProgram({{700, "A$5$"}});
  EXPECT_EQ(Text(700), "A");
}

TEST_F(ResTest, ChainThatLeadsBackEndsAfterAHundredPieces) {
  UseProgram({{3005, "x$5$"}});
  EXPECT_EQ(Text(3005), std::string(100, 'x'));
}

TEST_F(ResTest, ChainAcrossLibraryAndProgram) {
  UseLibrary({{700, "A$5$"}});
  UseProgram({{3005, "B"}});
  EXPECT_EQ(Text(700), "AB");
}

TEST_F(ResTest, LongTextsAreJoinedWhole) {
  UseProgram({{700, std::string(3900, 'a') + "$$"}, {701, std::string(3900, 'b')}});
  EXPECT_EQ(Text(700), std::string(3900, 'a') + std::string(3900, 'b'));
}

// Tags

TEST_F(ResTest, TagIsRemoved) {
  UseProgram({{700, "!tag!Body"}, {701, "!!Body"}, {702, "!a!b!c"}});
  EXPECT_EQ(Text(700), "Body");
  EXPECT_EQ(Text(701), "Body");
  EXPECT_EQ(Text(702), "b!c");
}

TEST_F(ResTest, EndMarkIsNoTag) {
  UseProgram({{700, "!END!"}, {701, "!END!x"}, {702, "!end!"}});
  EXPECT_EQ(Text(700), "!END!");
  EXPECT_EQ(Text(701), "x");
  EXPECT_EQ(Text(702), "");
}

TEST_F(ResTest, MarkLaterInTheTextIsNoTag) {
  UseProgram({{700, "Stop! Now!"}});
  EXPECT_EQ(Text(700), "Stop! Now!");
}

TEST_F(ResTest, OpenTagIsReportedAndKept) {
  UseProgram({{700, "!tag"}});
  AssertRecorder recorder;
  EXPECT_EQ(Text(700), "!tag");
  EXPECT_EQ(recorder.Only(), "pos >= 1");
}

TEST_F(ResTest, TagIsJudgedInTheJoinedText) {
  UseProgram({{700, "!ta$$"}, {701, "g!Body"}, {710, "Stop$$"}, {711, "!now!"}});
  EXPECT_EQ(Text(700), "Body");
  EXPECT_EQ(Text(710), "Stop!now!");
}

TEST_F(ResTest, OtherFirstCharactersStay) {
  UseProgram({{1792, "@<StubProgId>"}, {1793, "=<StubClassName>"}, {1794, "/CLSID"}});
  EXPECT_EQ(Text(1792, 0), "@<StubProgId>");
  EXPECT_EQ(Text(1792, 1), "=<StubClassName>");
  EXPECT_EQ(Text(1792, 2), "/CLSID");
}

// The shared text

TEST_F(ResTest, SharedTextIsExpanded) {
  UseProgram({{700, "<A>"}});
  AppSetVariable("A", "1");
  EXPECT_STREQ(GetResStr(700), "1");
}

TEST_F(ResTest, SharedTextIsOverwrittenByTheNextCall) {
  UseProgram({{700, "first"}, {701, "second"}});
  const Str copy(GetResStr(700));
  EXPECT_STREQ(GetResStr(701), "second");
  EXPECT_EQ(copy, "first");
}

TEST_F(ResTest, SharedTextFollowsContinuationAndTags) {
  UseProgram({{700, "!t!A$5$"}, {3005, "B"}});
  EXPECT_STREQ(GetResStr(700), "AB");
}

TEST_F(ResTest, SharedTextPiecesAreCutAt1023Characters) {
  UseProgram({{700, std::string(1023, 'x')}, {701, std::string(1024, 'x')}, {702, std::string(3999, 'x')}});
  EXPECT_EQ(std::string(GetResStr(700)).size(), 1023u);
  EXPECT_EQ(std::string(GetResStr(701)).size(), 1023u);
  EXPECT_EQ(std::string(GetResStr(702)).size(), 1023u);
}

TEST_F(ResTest, MissingSharedTextIsReportedAndEmpty) {
  UseProgram({{700, "before"}});
  GetResStr(700);
  AssertRecorder recorder;
  EXPECT_STREQ(GetResStr(701), "");
  EXPECT_EQ(recorder.Only(), kMissing);
}

// The readers of parts

TEST_F(ResTest, PartsBesideTheFirstMark) {
  UseProgram({{700, "before<A>!after!more<A>"}, {701, "whole"}, {702, "!tag!Body"}});
  AppSetVariable("A", "1");
  Str part;
  GetResStrBeforeTag(700, 0, part);
  EXPECT_EQ(part, "before<A>");
  GetResStrAfterTag(700, 0, part);
  EXPECT_EQ(part, "after!more<A>");
  GetResStrBeforeTag(700, 1, part);
  EXPECT_EQ(part, "whole");
  GetResStrAfterTag(700, 1, part);
  EXPECT_EQ(part, "whole");
  GetResStrBeforeTag(700, 2, part);
  EXPECT_EQ(part, "");
  GetResStrAfterTag(700, 2, part);
  EXPECT_EQ(part, "tag!Body");
}

TEST_F(ResTest, TagReader) {
  UseProgram({{700, "!tag!Body"}, {701, "!open"}, {702, "plain!x!"}, {703, "!END!"}, {704, "!!x"}});
  const char* expected[] = {"tag", "open", "", "", "", ""};
  for (int32_t i = 0; i < 6; ++i) {
    Str tag("before");
    GetResStrTag(700, i, tag);
    EXPECT_EQ(tag, expected[i]) << i;
  }
}

TEST_F(ResTest, TagReaderLooksAt255Characters) {
  UseProgram({{700, "!" + std::string(300, 't') + "!Body"}});
  Str tag;
  GetResStrTag(700, 0, tag);
  EXPECT_EQ(tag.View(), std::string(254, 't'));
}

// Several texts at once

TEST_F(ResTest, PiecesOfALongMessageAreJoinedUpToTheEndMark) {
  UseProgram({{700, "One <A>, "}, {701, "!t!two$$"}, {702, " and"}, {703, "!END!"}, {704, "wrong"}});
  AppSetVariable("A", "1");
  EXPECT_EQ(JoinResStrings(700), "One <A>, two and and");  // 702 continues 701 and is a piece itself
  EXPECT_EQ(JoinResStrings(703), "");
}

TEST_F(ResTest, PiecesOfALongMessageEndAtAMissingOne) {
  UseProgram({{700, "one"}, {701, "two"}, {703, "wrong"}});
  EXPECT_EQ(JoinResStrings(700), "onetwo");
  EXPECT_EQ(JoinResStrings(702), "");
}

TEST_F(ResTest, PiecesOfALongMessageEndAfterAHundred) {
  Strings strings;
  for (unsigned id = 700; id < 850; ++id) strings[id] = "x";
  UseProgram(strings);
  EXPECT_EQ(JoinResStrings(700).View(), std::string(100, 'x'));
}

TEST_F(ResTest, PiecesOfALongMessageAreCutAt1024Characters) {
  const std::string longest(1024, 'x');
  UseProgram({{700, longest}, {701, std::string(1025, 'y')}, {702, std::string(3999, 'z')}});
  EXPECT_EQ(JoinResStrings(700).View(), longest + std::string(1024, 'y') + std::string(1024, 'z'));
}

TEST_F(ResTest, APackedListHoldsTheTextsInOrder) {
  UseProgram({{700, "one <A>"}, {701, "!t!two"}, {703, "four$5$"}, {3005, "!"}});
  AppSetVariable("A", "1");
  StrList list = ListResStrings(700, 4, kResExpand);
  ASSERT_EQ(list.Count(), 4);
  EXPECT_STREQ(list.Get(0), "one 1");
  EXPECT_STREQ(list.Get(1), "two");
  EXPECT_STREQ(list.Get(2), "");  // missing
  EXPECT_STREQ(list.Get(3), "four!");
  EXPECT_STREQ(ListResStrings(700, 1, 0).Get(0), "one <A>");
  EXPECT_EQ(ListResStrings(700, 0, 0).Count(), 0);
}

// The rules alone

TEST(ResTextRules, PiecesAndTheirSuccessors) {
  const struct {
    const char* piece;
    const char* text;
    uint32_t next;
  } rows[] = {
      {"", "", 0},          {"A", "A", 0},        {"A$", "A", 0},
      {"$", "", 0},         {"$$", "", 43},       {"A$$", "A", 43},
      {"A$5$", "A", 3005},  {"A$0$", "A", 3000},  {"A$x$", "A$x", 0},
      {"A$5x$", "A$5x", 0}, {"A$5$$", "A$5", 43}, {"A$ 5$", "A$ 5", 0},
      {"$5$", "", 3005},    {"A$5", "A$5", 0},    {"A$99999999999$", "A$99999999999", 0},
  };
  for (const auto& row : rows) {
    const ResPiece piece = SplitPiece(row.piece, 42, 42);
    EXPECT_EQ(piece.text, row.text) << row.piece;
    EXPECT_EQ(piece.nextId, row.next) << row.piece;
  }
  EXPECT_EQ(SplitPiece("A$5$", 3007, 19999).nextId, 3005u);
  EXPECT_EQ(SplitPiece("A$5$", 3007, 20000).nextId, 30005u);
}

}  // namespace
