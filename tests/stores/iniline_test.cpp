// The syntax of INI lines, and how bytes are divided into lines.
#include "stores/iniline.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_literals;

bool ShiftJisLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

IniRules JapaneseRules() {
  IniRules rules = AsciiIniRules();
  rules.isLead = ShiftJisLead;
  return rules;
}

// The section that a line begins, "-" when it is no header.
std::string Header(std::string_view line, const IniRules& rules = AsciiIniRules()) {
  std::string_view name;
  return ParseIniHeader(line, rules, name) ? std::string(name) : "-";
}

// "key|value", "-" for no key line.
std::string KeyLine(std::string_view line) {
  std::string_view key;
  std::string_view value;
  return ParseIniKeyLine(line, key, value) ? std::string(key) + '|' + std::string(value) : "-";
}

// The pieces of a file; those that continue a line begin with "+".
std::vector<std::string> Pieces(std::string_view bytes) {
  std::vector<std::string> all;
  IniFilePieces pieces(bytes);
  IniPiece piece;
  while (pieces.Next(piece)) all.push_back((piece.continues ? "+" : "") + std::string(piece.text));
  return all;
}

std::vector<std::string> MemoryLines(std::string_view text) {
  std::vector<std::string> all;
  IniMemoryLines lines(text);
  std::string_view line;
  for (;;) {
    const IniMemoryLines::Result result = lines.Next(line);
    if (result == IniMemoryLines::kTooLong) all.push_back("too long");
    if (result != IniMemoryLines::kLine) return all;
    all.emplace_back(line);
  }
}

using Lines = std::vector<std::string>;

// Headers

TEST(IniHeader, NameStandsInBrackets) {
  EXPECT_EQ(Header("[Name]"), "Name");
  EXPECT_EQ(Header("[]"), "");
  EXPECT_EQ(Header("[a b]"), "a b");
}

TEST(IniHeader, BlanksAreTrimmed) {
  EXPECT_EQ(Header("[ Name ]"), "Name");
  EXPECT_EQ(Header(" \t[\tName \t] \t"), "Name");
  EXPECT_EQ(Header("[   ]"), "");
}

TEST(IniHeader, NameRunsToTheFinalBracket) {
  EXPECT_EQ(Header("[a]b]"), "a]b");
  EXPECT_EQ(Header("[[a]]"), "[a]");
}

TEST(IniHeader, OtherLinesAreNone) {
  for (const char* line :
       {"", "[", "]", "Name]", "[Name", "[Name] x", "[Name]; note", "x[Name]", "=", "][", ";[Name]"})
    EXPECT_EQ(Header(line), "-") << line;
}

TEST(IniHeader, SecondHalfOfACharacterIsNoBracket) {
  // 83 5D is one character whose second byte has the bracket's code.
  EXPECT_EQ(Header("[\x83\x5d", JapaneseRules()), "-");
  EXPECT_EQ(Header("[\x83\x5d]", JapaneseRules()), "\x83\x5d");
  EXPECT_EQ(Header("[\x83\x5d"), "\x83");
}

// Key lines

TEST(IniKeyLine, KeyAndValue) {
  EXPECT_EQ(KeyLine("Key=Value"), "Key|Value");
  EXPECT_EQ(KeyLine("Key="), "Key|");
  EXPECT_EQ(KeyLine("=Value"), "|Value");
  EXPECT_EQ(KeyLine("="), "|");
}

TEST(IniKeyLine, BlanksAreTrimmed) {
  EXPECT_EQ(KeyLine(" \tKey \t= \tValue \t"), "Key|Value");
  EXPECT_EQ(KeyLine("Two Words = two values"), "Two Words|two values");
}

TEST(IniKeyLine, FirstSignDivides) { EXPECT_EQ(KeyLine("a=b=c"), "a|b=c"); }

TEST(IniKeyLine, QuotesAndSemicolonsInValuesStay) { EXPECT_EQ(KeyLine("a=\"b\" ; c"), "a|\"b\" ; c"); }

TEST(IniKeyLine, CommentsAreNone) {
  EXPECT_EQ(KeyLine(";a=b"), "-");
  EXPECT_EQ(KeyLine(" \t ; a=b"), "-");
  EXPECT_TRUE(IsIniComment("\t;"));
  EXPECT_FALSE(IsIniComment("a;"));
  EXPECT_FALSE(IsIniComment(""));
}

TEST(IniKeyLine, LinesWithoutSignAreNone) {
  EXPECT_EQ(KeyLine("abc"), "-");
  EXPECT_EQ(KeyLine(""), "-");
  EXPECT_EQ(KeyLine("[Section]"), "-");
}

TEST(IniKeyLine, KeysOf512CharactersAreNone) {
  const std::string longest(511, 'k');
  EXPECT_EQ(KeyLine(longest + "=v"), longest + "|v");
  EXPECT_EQ(KeyLine(" " + longest + " =v"), longest + "|v");
  EXPECT_EQ(KeyLine(longest + "k=v"), "-");
}

TEST(IniKeyLine, DoubleByteCharactersStayWhole) {
  EXPECT_EQ(KeyLine("\x83\x5d = \x83\x5c"), "\x83\x5d|\x83\x5c");
}

// Names

TEST(IniName, CaseDoesNotMatter) {
  const IniRules rules = AsciiIniRules();
  EXPECT_TRUE(SameName("ProgDir", "PROGDIR", rules));
  EXPECT_FALSE(SameName("ProgDir", "ProgDir2", rules));
  EXPECT_TRUE(SameName("", "", rules));
  EXPECT_TRUE(NameBeginsWith("ProgDir", "pROG", rules));
  EXPECT_TRUE(NameBeginsWith("ProgDir", "", rules));
  EXPECT_FALSE(NameBeginsWith("Pro", "Prog", rules));
}

// Numbers

TEST(IniNumber, Decimal) {
  const struct {
    const char* text;
    int32_t number;
  } rows[] = {
      {"0", 0},
      {"42", 42},
      {"-7", -7},
      {"+7", 7},
      {" \t42", 42},
      {"\v\f42", 42},
      {"42abc", 42},
      {"4 2", 4},
      {"abc", 0},
      {"", 0},
      {"-", 0},
      {"--1", 0},
      {"0x10", 0},
      {"007", 7},
      {"70000", 70000},
      {"2147483647", INT32_MAX},
      {"-2147483648", INT32_MIN},
      {"2147483648", INT32_MAX},
      {"-99999999999999999999", INT32_MIN},
      {"99999999999999999999", INT32_MAX},
  };
  for (const auto& row : rows) EXPECT_EQ(ParseIniNumber(row.text), row.number) << row.text;
}

// Lines of a file

TEST(IniFileLines, EveryLineEnd) { EXPECT_EQ(Pieces("a\r\nb\n\rc\rd\ne"), (Lines{"a", "b", "c", "d", "e"})); }

TEST(IniFileLines, EqualLineEndsAreTwo) {
  EXPECT_EQ(Pieces("a\r\rb"), (Lines{"a", "", "b"}));
  EXPECT_EQ(Pieces("a\n\nb"), (Lines{"a", "", "b"}));
  EXPECT_EQ(Pieces("a\r\n\r\nb"), (Lines{"a", "", "b"}));
}

TEST(IniFileLines, LastLineNeedsNoEnd) {
  EXPECT_EQ(Pieces("a"), (Lines{"a"}));
  EXPECT_EQ(Pieces("a\r\n"), (Lines{"a"}));
  EXPECT_EQ(Pieces(""), (Lines{}));
}

TEST(IniFileLines, LongLinesComeInPiecesOf511) {
  const std::string full(511, 'x');
  EXPECT_EQ(Pieces(full + "yz\nb"), (Lines{full, "+yz", "b"}));
  EXPECT_EQ(Pieces(full + full + "y\n"), (Lines{full, "+" + full, "+y"}));
}

TEST(IniFileLines, LineOf511IsFollowedByAnEmptyRest) {
  const std::string full(511, 'x');
  EXPECT_EQ(Pieces(full + "\r\nb"), (Lines{full, "+", "b"}));
}

TEST(IniFileLines, LineEndAcrossTheReadBorderIsOne) {
  const std::string text(510, 'x');
  EXPECT_EQ(Pieces(text + "\r\nb"), (Lines{text, "b"}));
}

TEST(IniFileLines, NulHidesTheRestOfItsLine) {
  EXPECT_EQ(Pieces("a\0b\nc"s), (Lines{"a", "c"}));
  EXPECT_EQ(Pieces("\0\0\0"s), (Lines{""}));
}

// Lines in memory

TEST(IniMemory, EveryLineEnd) {
  EXPECT_EQ(MemoryLines("a\nb\r\nc\rd"), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(MemoryLines("a\n\rb"), (Lines{"a", "", "b"}));
}

TEST(IniMemory, NulEndsTheText) {
  EXPECT_EQ(MemoryLines("a\nb\0c\nd"s), (Lines{"a", "b"}));
  EXPECT_EQ(MemoryLines("\0a"s), (Lines{}));
}

TEST(IniMemory, LinesOf512CharactersAreAnError) {
  const std::string longest(511, 'x');
  EXPECT_EQ(MemoryLines(longest + "\na"), (Lines{longest, "a"}));
  EXPECT_EQ(MemoryLines("a\n" + longest + "x\nb"), (Lines{"a", "too long"}));
}

}  // namespace
