#include "ui/language.h"

#include "ui/ui_fixture.h"

namespace {

constexpr int32_t kFrench = 0x040c;
constexpr int32_t kSwissFrench = 0x100c;
constexpr int32_t kCanadianFrench = 0x0c0c;
constexpr int32_t kGerman = 0x0407;

struct ParseRow {
  const char* text;
  int32_t language;
};

class ParseTest : public testing::TestWithParam<ParseRow> {};

TEST_P(ParseTest, HexadecimalNumberAtTheStart) {
  EXPECT_EQ(ParseLanguage(GetParam().text), GetParam().language)
      << (GetParam().text ? GetParam().text : "null");
}

INSTANTIATE_TEST_SUITE_P(LanguageText, ParseTest,
                         testing::Values(ParseRow{"0x040c,fr", 0x040c}, ParseRow{"0x040C,fr", 0x040c},
                                         ParseRow{"0X040c", 0x040c}, ParseRow{"040c,fr", 0x040c},
                                         ParseRow{"409", 0x0409}, ParseRow{"0x409 and more", 0x0409},
                                         ParseRow{"0x0409g", 0x0409}, ParseRow{"ffff", 0xffff},
                                         ParseRow{"", kNoLanguage}, ParseRow{nullptr, kNoLanguage},
                                         ParseRow{"0", kNoLanguage}, ParseRow{"0x0000,xx", kNoLanguage},
                                         ParseRow{"0x", kNoLanguage}, ParseRow{"fr", 0x000f},
                                         ParseRow{",0409", kNoLanguage}, ParseRow{" 0409", kNoLanguage},
                                         ParseRow{"x409", kNoLanguage}, ParseRow{"10000", kNoLanguage},
                                         ParseRow{"0xffffffffffffffffff", kNoLanguage}));

class LanguageTextTest : public UiTest {};

TEST_F(LanguageTextTest, TextFormHasFourDigitsAndTheAbbreviation) {
  EXPECT_EQ(LanguageText(0x040c), "0x040c,fr");
  EXPECT_EQ(LanguageText(0x0409), "0x0409,en");
  EXPECT_EQ(LanguageText(0x0c07), "0x0c07,de");
}

TEST_F(LanguageTextTest, AbbreviationIsLowerCaseIso639) {
  EXPECT_EQ(LanguageAbbreviation(0x040c), "fr");
  EXPECT_EQ(LanguageAbbreviation(0x0411), "ja");
  EXPECT_EQ(Log(), "");
}

TEST_F(LanguageTextTest, LanguageUnknownToWindowsHasNoAbbreviationAndIsLogged) {
  EXPECT_TRUE(LanguageAbbreviation(0x03ff).IsEmpty());
  const std::string log = Log();
  EXPECT_EQ(log.find("App::GetLocaleInfoW(): GetLocaleInfoA failed. GetLastError = "), 0u) << log;
  const std::string end = ", locale = 1023\n";
  ASSERT_GT(log.size(), end.size());
  EXPECT_EQ(log.substr(log.size() - end.size()), end);
}

TEST(BestIndexTest, NoWishHasNoIndex) { EXPECT_EQ(BestIndex({kFrench, kGerman}, kNoLanguage), -1); }

TEST(BestIndexTest, EqualEntryComesBeforeTheSamePrimaryLanguage) {
  EXPECT_EQ(BestIndex({kCanadianFrench, kGerman, kFrench}, kFrench), 2);
}

TEST(BestIndexTest, FirstEntryOfTheSamePrimaryLanguage) {
  EXPECT_EQ(BestIndex({kGerman, kCanadianFrench, kFrench}, kSwissFrench), 1);
}

TEST(BestIndexTest, OtherLanguagesHaveNoIndex) { EXPECT_EQ(BestIndex({kFrench, 0x0409}, kGerman), -1); }

TEST(BestIndexTest, EmptyListHasNoIndex) { EXPECT_EQ(BestIndex({}, kFrench), -1); }

}  // namespace
