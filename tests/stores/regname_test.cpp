// Names of subkeys that stand for sections, and data as the text of a line.
#include "stores/regname.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::string_literals;

TEST(SubKeyName, Decoding) {
  const struct {
    std::string name;
    std::string decoded;
  } rows[] = {
      {"Name", "Name"},  {"", ""},           {"a$/b", "a$/b"},  {"$Name", "Name"}, {"$", ""},
      {"$a$/b", "a\\b"}, {"$a$_b", "a b"},   {"$a$$b", "a$b"},  {"$$$", "$"},      {"$$", "$"},
      {"$$41", "A"},     {"$$E9t", "\xe9t"}, {"$$e9", "$e9"},   {"$$4", "$4"},     {"$a$", "a$"},
      {"$$4G", "$4G"},   {"$$$41", "$41"},   {"$x$zy", "x$zy"}, {"$$00", "\0"s},   {"$ /_", " /_"},
  };
  for (const auto& row : rows) EXPECT_EQ(DecodeSubKeyName(row.name), row.decoded) << row.name;
}

TEST(ValueData, IsCutAtNulsLineEndsAnd511Characters) {
  EXPECT_EQ(ValueDataText("text"), "text");
  EXPECT_EQ(ValueDataText(""), "");
  EXPECT_EQ(ValueDataText("a\0b"s), "a");
  EXPECT_EQ(ValueDataText("a\rb"), "a");
  EXPECT_EQ(ValueDataText("a\nb"), "a");
  EXPECT_EQ(ValueDataText(std::string(511, 'x')).size(), 511u);
  EXPECT_EQ(ValueDataText(std::string(512, 'x')).size(), 511u);
}

}  // namespace
