#include "base/timetext.h"

#include <charconv>
#include <cstddef>

#include "base/ascii.h"

namespace {

struct Field {
  int TimeText::*value;
  size_t position;
  size_t width;
};

constexpr Field kFields[] = {
    {&TimeText::month, 0, 2}, {&TimeText::day, 3, 2},     {&TimeText::year, 6, 4},
    {&TimeText::hour, 11, 2}, {&TimeText::minute, 14, 2}, {&TimeText::second, 17, 2},
};

bool IsSpace(char ch) { return ch == ' ' || (ch >= '\t' && ch <= '\r'); }

// A decimal number of few digits: blanks, a sign, digits up to the first other character.
int Decimal(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && IsSpace(text[i])) ++i;
  const bool negative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  int value = 0;
  for (; i < text.size() && IsAsciiDigit(text[i]); ++i) value = value * 10 + (text[i] - '0');
  return negative ? -value : value;
}

void PrintField(std::string& text, int value, size_t width) {
  char digits[16];
  const char* const end = std::to_chars(digits, digits + sizeof(digits), value).ptr;
  std::string_view number(digits, static_cast<size_t>(end - digits));
  if (value < 0) {
    text += '-';
    number.remove_prefix(1);
    --width;
  }
  if (number.size() < width) text.append(width - number.size(), '0');
  text += number;
}

}  // namespace

bool HasSeparator(std::string_view text, const TimeText::Separator& separator) {
  return separator.position < text.size() && text[separator.position] == separator.text;
}

bool ParseTimeText(std::string_view text, TimeText& fields) {
  if (text.size() < TimeText::kLength) return false;
  for (const Field& field : kFields) fields.*field.value = Decimal(text.substr(field.position, field.width));
  return true;
}

std::string PrintTimeText(const TimeText& fields) {
  std::string text;
  size_t printed = 0;
  for (const Field& field : kFields) {
    PrintField(text, fields.*field.value, field.width);
    if (printed < std::size(TimeText::kSeparators)) text += TimeText::kSeparators[printed++].text;
  }
  return text;
}
