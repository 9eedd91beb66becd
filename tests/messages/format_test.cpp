// Message templates: placeholders, format specifications, the order of filling.
#include "messages/format.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "app_vars.h"
#include "base/handle.h"
#include "messages/res.h"
#include "support/assert_recorder.h"
#include "support/library_maker.h"
#include "support/temp_dir.h"

namespace {

std::string WithInt(const char* text, const char* name, int32_t item) {
  Str filled(text);
  ReplaceItem(filled, name, item);
  return filled.Chars();
}

std::string WithText(const char* text, const char* name, const char* item) {
  Str filled(text);
  ReplaceItem(filled, name, item);
  return filled.Chars();
}

std::string Formatted(const char* spec, int32_t item) {
  Str out;
  EXPECT_TRUE(FormatInt(spec, &item, out));
  return out.Chars();
}

std::string FormattedText(const char* spec, const char* item) {
  Str out;
  EXPECT_TRUE(FormatText(spec, item, out));
  return out.Chars();
}

// MakeTemplate

class TemplateTest : public AppVarsTest {};

TEST_F(TemplateTest, LiteralTextIsCopied) {
  AppSetVariable("A", "1");
  EXPECT_EQ(MakeTemplate("<A> <B>", 0), "<A> <B>");
}

TEST_F(TemplateTest, FlagExpandsApplicationVariables) {
  AppSetVariable("A", "1");
  EXPECT_EQ(MakeTemplate("<A> <B>", 1), "1 <B>");
}

TEST_F(TemplateTest, OtherFlagsAreIgnored) {
  AppSetVariable("A", "1");
  EXPECT_EQ(MakeTemplate("<A>", 0xFFFFFFFE), "<A>");
  EXPECT_EQ(MakeTemplate("<A>", 0xFFFFFFFF), "1");
}

TEST_F(TemplateTest, NullTextIsReportedAndEmpty) {
  AssertRecorder recorder;
  EXPECT_EQ(MakeTemplate(nullptr, 1), "");
  EXPECT_EQ(recorder.Only(), "format");
}

TEST_F(TemplateTest, VariablesShadowItemsOfTheSameName) {
  AppSetVariable("Name", "variable");
  EXPECT_STREQ(Message("<Name>", 1).With("Name", "item"), "variable");
  EXPECT_STREQ(Message("<Name>", 0).With("Name", "item"), "item");
}

TEST_F(TemplateTest, SpecifiedPlaceholdersAreNotFilledByVariables) {
  AppSetVariable("Year", "2024");
  EXPECT_STREQ(Message("<Year:4d> <Year>", 1).With("Year", 7), "   7 2024");
  EXPECT_EQ(MakeTemplate("<Year:4d>", 1), "<Year:4d>");
}

TEST_F(TemplateTest, QuestionAndAnswerLine) {
  EXPECT_STREQ(Message("<Msg>: [<Response>]\n", 0).With("Msg", "Remove?").With("Response", "Yes"),
               "Remove?: [Yes]\n");
}

TEST_F(TemplateTest, LocaleFailureText) {
  const std::string text =
      "App::GetLocaleInfoW(): <APIFunc> failed. GetLastError = <ErrCode:d>, locale = <Locale>";
  EXPECT_STREQ(
      Message(text.c_str(), 0).With("APIFunc", "GetLocaleInfoW").With("ErrCode", 87).With("Locale", 1036),
      "App::GetLocaleInfoW(): GetLocaleInfoW failed. GetLastError = 87, locale = 1036");
}

TEST_F(TemplateTest, ResourceTextIsExpandedAsTheFlagsSay) {
  const TempDir dir;
  LibrarySpec spec;
  spec.strings = {{700, "<A> and <Item>"}};
  const std::string path = dir.Write("t.dll", MakeLibrary(spec));
  ModuleHandle library(LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
  SetLanguageModule(library.Get());
  AppSetVariable("A", "variable");
  EXPECT_EQ(MakeTemplate(700u, 0), "<A> and <Item>");
  EXPECT_STREQ(Message(700u).With("Item", "item"), "variable and item");
  AssertRecorder recorder;
  EXPECT_EQ(MakeTemplate(7u, 0), "");
  EXPECT_EQ(recorder.Only(), "Bad param to GetResStr: no string for strID = 0x<StrID,x>.");
  SetLanguageModule(nullptr);
}

// Finding placeholders

TEST(Placeholder, PlainForm) {
  Str text("a<Name>b");
  Str spec("before");
  EXPECT_EQ(TakePlaceholder(text, "Name", 0, &spec), 1);
  EXPECT_EQ(text, "ab");
  EXPECT_EQ(spec, "");
}

TEST(Placeholder, FormWithSpecification) {
  Str text("a<Name:08X>b");
  Str spec;
  EXPECT_EQ(TakePlaceholder(text, "Name", 0, &spec), 1);
  EXPECT_EQ(text, "ab");
  EXPECT_EQ(spec, "08X");
}

TEST(Placeholder, EmptySpecification) {
  Str text("<Name:>");
  Str spec("before");
  EXPECT_EQ(TakePlaceholder(text, "Name", 0, &spec), 0);
  EXPECT_EQ(text, "");
  EXPECT_EQ(spec, "");
}

TEST(Placeholder, SearchStartsAtTheIndex) {
  Str text("<N><N>");
  Str spec;
  EXPECT_EQ(TakePlaceholder(text, "N", 1, &spec), 3);
  EXPECT_EQ(text, "<N>");
  EXPECT_EQ(TakePlaceholder(text, "N", 1, &spec), -1);
  EXPECT_EQ(TakePlaceholder(text, "N", 99, &spec), -1);
  EXPECT_EQ(text, "<N>");
}

TEST(Placeholder, BadArgumentsAreReported) {
  {
    AssertRecorder recorder;
    Str text("<N>");
    Str spec;
    EXPECT_EQ(TakePlaceholder(text, "N", -1, &spec), 0);
    EXPECT_EQ(recorder.Only(), "index >= 0");
  }
  AssertRecorder recorder;
  Str text("<N>");
  EXPECT_EQ(TakePlaceholder(text, "N", 0, nullptr), 0);
  EXPECT_EQ(recorder.Only(), "fmtSpec");
}

TEST(Placeholder, LongerAndOtherNamesDoNotMatch) {
  for (const char* text :
       {"<NameX>", "<Nam>", "<name>", "< Name>", "<Name >", "Name>", "<Name", "<", "", "<Name,x>"}) {
    EXPECT_EQ(WithText(text, "Name", "item"), text);
  }
}

TEST(Placeholder, TenCharactersAreASpecificationElevenAreNot) {
  EXPECT_EQ(WithInt("<N:000000012d>", "N", 5), "000000000005");
  EXPECT_EQ(WithInt("<N:0000000012d>", "N", 5), "<N:0000000012d>");
}

TEST(Placeholder, SpecificationRunsToTheNextEnd) { EXPECT_EQ(WithInt("<N:4d <N>", "N", 5), "   5"); }

TEST(Placeholder, UnendedSpecificationIsNone) { EXPECT_EQ(WithInt("<N:4d", "N", 5), "<N:4d"); }

TEST(Placeholder, SearchGoesOnBehindAColonWithoutEnd) {
  // The text behind the colon is no specification; the placeholder inside it is found.
  EXPECT_EQ(WithInt("<N:12345678901234<N>", "N", 5), "<N:123456789012345");
}

TEST(Placeholder, SearchGoesOnAfterANearMatch) {
  EXPECT_EQ(WithInt("<NN<N>", "N", 5), "<NN5");
  EXPECT_EQ(WithInt("<<N>", "N", 5), "<5");
}

// Filling

TEST(ReplaceItem, FillsEveryPlaceholder) {
  Str text("<N> <N:2d> <M>");
  EXPECT_TRUE(ReplaceItem(text, "N", 5));
  EXPECT_EQ(text, "5  5 <M>");
}

TEST(ReplaceItem, GivesFalseWhenThereIsNone) {
  Str text("no <M> here");
  EXPECT_FALSE(ReplaceItem(text, "N", 5));
  EXPECT_EQ(text, "no <M> here");
}

TEST(ReplaceItem, FormatterWithoutTextRemovesThePlaceholder) {
  Str text("a<N>b<N:x>c");
  const int item = 1;
  EXPECT_FALSE(ReplaceItem(text, "N", &item, [](const char*, const void*, Str& out) {
    out = "not used";
    return false;
  }));
  EXPECT_EQ(text, "abc");
}

TEST(ReplaceItem, FormatterGetsSpecificationItemAndAFreshText) {
  Str text("<N:a><N:b>");
  int item = 0;
  EXPECT_TRUE(ReplaceItem(text, "N", &item, [](const char* spec, const void* given, Str& out) {
    EXPECT_EQ(out.Length(), 0);
    out.Append('[');
    out.Append(spec);
    out.Append(']');
    ++*static_cast<int*>(const_cast<void*>(given));
    return true;
  }));
  EXPECT_EQ(text, "[a][b]");
  EXPECT_EQ(item, 2);
}

TEST(ReplaceItem, RemembersOneSuccess) {
  Str text("<N:a><N:b>");
  const int item = 0;
  EXPECT_TRUE(ReplaceItem(text, "N", &item, [](const char* spec, const void*, Str& out) {
    out = spec;
    return spec[0] == 'a';
  }));
  EXPECT_EQ(text, "a");
}

TEST(ReplaceItem, InsertedTextIsSearchedToo) {
  Str text("<A>");
  int calls = 0;
  EXPECT_TRUE(ReplaceItem(text, "A", &calls, [](const char*, const void* item, Str& out) {
    out = ++*static_cast<int*>(const_cast<void*>(item)) < 3 ? "x<A>" : "end";
    return true;
  }));
  EXPECT_EQ(text, "xxend");
}

TEST(ReplaceItem, TextBeforeThePlaceIsNotSearchedAgain) {
  // Removing the inner one joins "<N" and ">", which lies to the left of the place.
  Str text("<N<N>>");
  EXPECT_TRUE(ReplaceItem(text, "N", ""));
  EXPECT_EQ(text, "<N>");
}

TEST(ReplaceItem, MissingArgumentsAreReported) {
  Str text("<N>");
  const int item = 5;
  const struct {
    const char* name;
    const void* item;
    FmtFunc formatter;
    const char* expected;
  } cases[] = {
      {nullptr, &item, FormatInt, "var && (Str::Length(var) > 0)"},
      {"", &item, FormatInt, "var && (Str::Length(var) > 0)"},
      {"N", nullptr, FormatInt, "item"},
      {"N", &item, nullptr, "fmtFunc"},
  };
  for (const auto& row : cases) {
    AssertRecorder recorder;
    EXPECT_FALSE(ReplaceItem(text, row.name, row.item, row.formatter));
    EXPECT_EQ(recorder.Only(), row.expected);
    EXPECT_EQ(text, "<N>");
  }
}

class EndlessItemTest : public AppVarsTest {
 protected:
  std::string Lines() {
    CloseAndRenameLog();
    const std::string log = mDir.Read("a.log");
    return log.substr(log.find("\r\n") + 2);
  }
  TempDir mDir;
};

TEST_F(EndlessItemTest, OwnPlaceholderEndsAndIsLogged) {
  ASSERT_TRUE(OpenLog(mDir.Path().c_str(), "a.log"));
  Str text("<Args>");
  EXPECT_TRUE(ReplaceItem(text, "Args", "<Args>x"));
  EXPECT_EQ(text.View(), "<Args>" + std::string(10000, 'x'));
  EXPECT_EQ(Lines(), "The item \"Args\" never comes to an end; its placeholders were left as they are.\r\n");
}

TEST_F(EndlessItemTest, GrowingTextEndsAtOneMebibyte) {
  Str text("<Args>");
  const std::string item = std::string(500, 'x') + "<Args>" + std::string(500, 'y');
  EXPECT_TRUE(ReplaceItem(text, "Args", item.c_str()));
  EXPECT_GT(text.Length(), 1024 * 1024);
  EXPECT_LT(text.Length(), 1024 * 1024 + 2000);
}

TEST_F(EndlessItemTest, HugeWidthsEnd) { EXPECT_EQ(WithInt("<N:999999999d>", "N", 5).size(), 1024u * 1024u); }

// Format specifications

TEST(FormatSpec, Decoding) {
  const struct {
    const char* text;
    bool decoded;
    char format;
    char pad;
    int32_t width;
  } rows[] = {
      {"", true, '\0', ' ', 0},    {"d", true, 'd', ' ', 0},
      {"x", true, 'x', ' ', 0},    {"X", true, 'X', ' ', 0},
      {"o", true, 'o', ' ', 0},    {"c", true, 'c', ' ', 0},
      {"u", true, 'u', ' ', 0},    {"4d", true, 'd', ' ', 4},
      {"02d", true, 'd', '0', 2},  {"08X", true, 'X', '0', 8},
      {"0", true, '\0', '0', 0},   {"00", true, '\0', '0', 0},
      {"12", true, '\0', ' ', 12}, {"010d", true, 'd', '0', 10},
      {"03dz", true, 'd', '0', 3}, {"d9", true, 'd', ' ', 0},
      {"D", false, '?', ' ', 0},   {"05s", false, '?', '0', 5},
      {" 4d", false, '?', ' ', 0}, {"-4d", false, '?', ' ', 0},
      {"4 d", false, '?', ' ', 4}, {"99999999999d", true, 'd', ' ', INT32_MAX},
  };
  for (const auto& row : rows) {
    FormatSpec spec;
    spec.format = '?';
    EXPECT_EQ(DecodeFormatSpec(row.text, spec), row.decoded) << row.text;
    EXPECT_EQ(spec.format, row.format) << row.text;
    EXPECT_EQ(spec.pad, row.pad) << row.text;
    EXPECT_EQ(spec.width, row.width) << row.text;
  }
}

TEST(FormatSpec, NullIsReported) {
  AssertRecorder recorder;
  FormatSpec spec;
  EXPECT_FALSE(DecodeFormatSpec(nullptr, spec));
  EXPECT_EQ(recorder.Only(), "fmtSpecStr");
}

// Numbers

TEST(FormatInt, PlaceholdersInUse) {
  EXPECT_EQ(WithInt("<Year:4d>", "Year", 2024), "2024");
  EXPECT_EQ(WithInt("<Month:02d>", "Month", 3), "03");
  EXPECT_EQ(WithInt("<Hour:02d>", "Hour", 17), "17");
  EXPECT_EQ(WithInt("<VerMin:2d>", "VerMin", 5), " 5");
  EXPECT_EQ(WithInt("<RootKey:08X>", "RootKey", static_cast<int32_t>(0x80000002)), "80000002");
  EXPECT_EQ(WithInt("<VersionMin:02x>", "VersionMin", 10), "0a");
  EXPECT_EQ(WithInt("<id:04x>", "id", 0x40C), "040c");
  EXPECT_EQ(WithInt("<ErrCode:d>", "ErrCode", -7), "-7");
  EXPECT_EQ(WithInt("<KBNeeded:d>", "KBNeeded", 123456), "123456");
}

TEST(FormatInt, WithoutSpecificationDecimal) {
  EXPECT_EQ(Formatted("", 0), "0");
  EXPECT_EQ(Formatted("", -1), "-1");
  EXPECT_EQ(Formatted(nullptr, 42), "42");
}

TEST(FormatInt, Limits) {
  EXPECT_EQ(Formatted("d", INT32_MAX), "2147483647");
  EXPECT_EQ(Formatted("d", INT32_MIN), "-2147483648");
  EXPECT_EQ(Formatted("x", INT32_MIN), "80000000");
  EXPECT_EQ(Formatted("o", -1), "37777777777");
}

TEST(FormatInt, Bases) {
  EXPECT_EQ(Formatted("x", 0xBEEF), "beef");
  EXPECT_EQ(Formatted("X", 0xBEEF), "BEEF");
  EXPECT_EQ(Formatted("o", 8), "10");
  EXPECT_EQ(Formatted("x", -1), "ffffffff");
  EXPECT_EQ(Formatted("X", -1), "FFFFFFFF");
}

TEST(FormatInt, ZeroIsOneDigitInEveryBase) {
  for (const char* spec : {"d", "x", "X", "o"}) EXPECT_EQ(Formatted(spec, 0), "0");
}

TEST(FormatInt, PadGoesBeforeTheSign) {
  EXPECT_EQ(Formatted("03d", -5), "0-5");
  EXPECT_EQ(Formatted("4d", -5), "  -5");
}

TEST(FormatInt, LongerTextIsNotCut) { EXPECT_EQ(Formatted("02d", 12345), "12345"); }

TEST(FormatInt, ZeroAloneIsTheFormatDecimal) {
  AssertRecorder recorder;
  EXPECT_EQ(Formatted("0", 7), "7");
  EXPECT_EQ(recorder.Only(), "bad format character");
}

TEST(FormatInt, Characters) {
  EXPECT_EQ(Formatted("c", 'A'), "A");
  EXPECT_EQ(Formatted("c", 0x141), "A");
  EXPECT_EQ(Formatted("c", 0xE9), "\xe9");
  EXPECT_EQ(Formatted("c", 0), "");
  EXPECT_EQ(Formatted("c", 0x100), "");
  EXPECT_EQ(Formatted("3c", 'A'), "  A");
  EXPECT_EQ(Formatted("02c", 0), "00");
}

TEST(FormatInt, UnsignedIsReportedAndDecimal) {
  AssertRecorder recorder;
  EXPECT_EQ(Formatted("05u", 42), "00042");
  EXPECT_EQ(recorder.Only(), "bad format character");
}

TEST(FormatInt, NegativeNumbersWithoutAKnownFormatAreTheirPatternInDecimal) {
  AssertRecorder recorder;
  EXPECT_EQ(Formatted("u", -1), "4294967295");
  EXPECT_EQ(Formatted("12", -42), "  4294967254");
}

TEST(FormatInt, DigitsOnlyAreReportedAndDecimal) {
  AssertRecorder recorder;
  EXPECT_EQ(Formatted("4", 42), "  42");
  EXPECT_EQ(recorder.Only(), "bad format character");
}

TEST(FormatInt, UndecodedSpecificationKeepsItsWidth) {
  AssertRecorder recorder;
  EXPECT_EQ(Formatted("04s", -42), "0-42");
  EXPECT_EQ(recorder.Only(), "DecodeFormatSpec(fmtSpecStr,fmtSpec)");
}

TEST(FormatInt, FurtherCharactersAreNotLookedAt) { EXPECT_EQ(Formatted("03dlx", 5), "005"); }

TEST(FormatInt, AppendsToTheText) {
  Str out("a");
  const int32_t item = 5;
  EXPECT_TRUE(FormatInt("", &item, out));
  EXPECT_EQ(out, "a5");
}

// Texts

TEST(FormatText, Plain) {
  EXPECT_EQ(FormattedText("", "text"), "text");
  EXPECT_EQ(FormattedText("", ""), "");
}

TEST(FormatText, WidthAndPad) {
  EXPECT_EQ(FormattedText("6d", "text"), "  text");
  EXPECT_EQ(FormattedText("06", "text"), "00text");
  EXPECT_EQ(FormattedText("2x", "text"), "text");
}

TEST(FormatText, FormatCharacterIsIgnored) {
  for (const char* spec : {"d", "x", "X", "o", "c", "u"}) EXPECT_EQ(FormattedText(spec, "text"), "text");
}

TEST(FormatText, UndecodedSpecificationIsReported) {
  AssertRecorder recorder;
  EXPECT_EQ(FormattedText("6s", "text"), "  text");
  EXPECT_EQ(recorder.Only(), "DecodeFormatSpec(fmtSpecStr,fmtSpec)");
}

TEST(FormatText, AppendsToTheText) {
  Str out("a");
  EXPECT_TRUE(FormatText("", "b", out));
  EXPECT_EQ(out, "ab");
}

TEST(FormatText, LongTextsStayWhole) {
  const std::string item(5000, 'x');
  EXPECT_EQ(WithText("[<T>]", "T", item.c_str()), "[" + item + "]");
}

}  // namespace
