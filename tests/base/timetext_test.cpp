#include "base/timetext.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<int> Numbers(const TimeText& fields) {
  return {fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second};
}

std::vector<int> Parsed(std::string_view text) {
  TimeText fields;
  EXPECT_TRUE(ParseTimeText(text, fields));
  return Numbers(fields);
}

TEST(TimeText, ReadsTheSixNumbers) {
  EXPECT_EQ(Parsed("03/07/2024 09:05:30"), (std::vector<int>{2024, 3, 7, 9, 5, 30}));
}

TEST(TimeText, TooShortIsRefused) {
  TimeText fields;
  fields.day = 77;
  EXPECT_FALSE(ParseTimeText("03/07/2024 09:05:3", fields));
  EXPECT_FALSE(ParseTimeText("", fields));
  EXPECT_EQ(fields.day, 77);
}

TEST(TimeText, NumbersAreCutAtThePlaceOfTheirSeparator) {
  EXPECT_EQ(Parsed("0310712024109105130"), (std::vector<int>{2024, 3, 7, 9, 5, 30}));
  EXPECT_EQ(Parsed("03/07/2024 09:05:3099"), (std::vector<int>{2024, 3, 7, 9, 5, 30}));
}

TEST(TimeText, NumbersEndAtTheFirstOtherCharacter) {
  EXPECT_EQ(Parsed(" 3/7x/20z4 x9:-5:+7"), (std::vector<int>{20, 3, 7, 0, -5, 7}));
}

TEST(TimeText, SeparatorsByPosition) {
  const std::string good = "03/07/2024 09:05:30";
  for (const TimeText::Separator& separator : TimeText::kSeparators) {
    EXPECT_TRUE(HasSeparator(good, separator));
    std::string bad = good;
    bad[separator.position] = 'x';
    EXPECT_FALSE(HasSeparator(bad, separator));
    EXPECT_FALSE(HasSeparator(good.substr(0, separator.position), separator));
  }
}

TEST(TimeText, Prints) {
  EXPECT_EQ(PrintTimeText({3, 7, 2024, 9, 5, 30}), "03/07/2024 09:05:30");
  EXPECT_EQ(PrintTimeText({12, 31, 1970, 23, 59, 59}), "12/31/1970 23:59:59");
  EXPECT_EQ(PrintTimeText({-1, 0, 5, 0, 0, 0}), "-1/00/0005 00:00:00");
}

}  // namespace
