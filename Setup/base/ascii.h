#pragma once
// Letters, digits and blanks of ASCII, for names and syntax that no code page changes. Pure.
#include <algorithm>
#include <string_view>

constexpr bool IsAsciiDigit(char ch) { return ch >= '0' && ch <= '9'; }

constexpr char AsciiLower(char ch) { return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch; }

constexpr bool IsAsciiLetter(char ch) { return AsciiLower(ch) >= 'a' && AsciiLower(ch) <= 'z'; }

// Equal but for the case of ASCII letters.
constexpr bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return AsciiLower(x) == AsciiLower(y); });
}

// Blanks are spaces and tabs.
constexpr std::string_view kBlanks = " \t";

constexpr bool IsBlank(char ch) { return ch == ' ' || ch == '\t'; }

// White space: what Str::Trim takes off.
constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

constexpr std::string_view SkipBlanks(std::string_view text, std::string_view blanks = kBlanks) {
  return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

// Without blanks at either end.
constexpr std::string_view TrimBlanks(std::string_view text, std::string_view blanks = kBlanks) {
  text = SkipBlanks(text, blanks);
  return text.substr(0, text.find_last_not_of(blanks) + 1);  // npos + 1 is 0
}
