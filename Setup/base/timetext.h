#pragma once
// The text form of a time: MM/DD/YYYY HH:MM:SS, 19 characters.
#include <string>
#include <string_view>

struct TimeText {
  // One separator of the form: its 0-based position and what stands there.
  struct Separator {
    size_t position;
    char text;
    const char* check;  // the condition in words, as a failed one is reported
  };
  static constexpr size_t kLength = 19;
  static constexpr Separator kSeparators[] = {{2, '/', "str[2] == '/'"},
                                              {5, '/', "str[5] == '/'"},
                                              {10, ' ', "str[10] == ' '"},
                                              {13, ':', "str[13] == ':'"},
                                              {16, ':', "str[16] == ':'"}};

  int month = 0;
  int day = 0;
  int year = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// Whether `text` holds the separator in its place.
bool HasSeparator(std::string_view text, const TimeText::Separator& separator);

// Reads the six numbers from their fixed positions, each cut at the place of its separator, whatever stands
// there; a number is read as far as it is decimal. False, `fields` being untouched, when `text` is shorter
// than the form.
[[nodiscard]] bool ParseTimeText(std::string_view text, TimeText& fields);

// Writes the text form; numbers wider than their field are written whole.
std::string PrintTimeText(const TimeText& fields);
