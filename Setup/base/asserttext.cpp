#include "base/asserttext.h"

#include <charconv>
#include <cstddef>

namespace {

constexpr std::string_view kDefaultFormat = "File: %s, Line#: %d\nAssert( %s );\n";
constexpr std::string_view kConversions = "sds";

std::string Digits(int value) {
  char digits[16];
  const auto result = std::to_chars(digits, digits + sizeof(digits), value);
  return {digits, result.ptr};
}

// Fills `format` by hand: it may come from a translated resource, so the C library never sees it as a format.
bool Fill(std::string_view format, const std::string_view (&fields)[3], std::string& message) {
  size_t used = 0;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      message += format[i];
      continue;
    }
    if (++i == format.size()) return false;
    if (format[i] == '%') {
      message += '%';
    } else if (used < kConversions.size() && format[i] == kConversions[used]) {
      message += fields[used++];
    } else {
      return false;
    }
  }
  return used == kConversions.size();
}

}  // namespace

std::string AssertMessage(std::string_view format, std::string_view file, int line,
                          std::string_view expression) {
  const std::string digits = Digits(line);
  const std::string_view fields[] = {file, digits, expression};
  std::string message;
  if (!Fill(format, fields, message)) {
    message.clear();
    Fill(kDefaultFormat, fields, message);
  }
  return message;
}

std::string_view BuildNumber(std::string_view version) {
  const size_t open = version.find('(');
  if (open == std::string_view::npos) return "NoBuildNum";
  std::string_view number = version.substr(open + 1);
  const size_t end = number.find_first_not_of("0123456789");
  number = number.substr(0, end);
  return number.empty() ? "NoBuildNum" : number;
}
