#include "messages/formatspec.h"

#include <algorithm>
#include <limits>

#include "base/ascii.h"

namespace {

std::string Digits(uint32_t value, uint32_t base, bool upper) {
  const char* const digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  std::string text;
  do {
    text.insert(text.begin(), digits[value % base]);
    value /= base;
  } while (value != 0);
  return text;
}

}  // namespace

bool ParseFormatSpec(std::string_view text, FormatSpec& spec) {
  spec.pad = ' ';
  spec.width = 0;
  if (text.starts_with('0')) {
    spec.pad = '0';
    text.remove_prefix(1);
  }
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  while (!text.empty() && IsAsciiDigit(text.front())) {
    const int32_t digit = text.front() - '0';
    spec.width = spec.width > (kMax - digit) / 10 ? kMax : spec.width * 10 + digit;
    text.remove_prefix(1);
  }
  const char format = text.empty() ? '\0' : text.front();
  if (format != '\0' && std::string_view("dxXocu").find(format) == std::string_view::npos) return false;
  spec.format = format;
  return true;
}

Placeholder FindPlaceholder(std::string_view text, std::string_view name, size_t start) {
  for (;;) {
    const size_t open = text.find('<', start);
    if (open == std::string_view::npos) return {};
    start = open + 1;
    if (!text.substr(start).starts_with(name)) continue;
    start += name.size();
    if (start >= text.size()) return {};
    if (text[start] == '>') return {open, start + 1 - open, {}};
    if (text[start] != ':') continue;
    ++start;
    const size_t length = text.substr(start, kMaxFmtSpec + 1).find('>');
    if (length != std::string_view::npos)
      return {open, start + length + 1 - open, text.substr(start, length)};
  }
}

std::string NumberText(int32_t value, const FormatSpec& spec, bool& known) {
  known = true;
  const uint32_t pattern = static_cast<uint32_t>(value);
  switch (spec.format) {
    case 'c': {
      const char ch = static_cast<char>(pattern & 0xFF);
      return ch != '\0' ? std::string(1, ch) : std::string();
    }
    case 'd':
      return value < 0 ? '-' + Digits(0 - pattern, 10, false) : Digits(pattern, 10, false);
    case 'x':
      return Digits(pattern, 16, false);
    case 'X':
      return Digits(pattern, 16, true);
    case 'o':
      return Digits(pattern, 8, false);
    default:
      known = false;
      return Digits(pattern, 10, false);
  }
}

void PadText(std::string& text, const FormatSpec& spec) {
  const size_t width = std::min(static_cast<size_t>(std::max(spec.width, 0)), ExpandLimits{}.size);
  if (text.size() < width) text.insert(0, width - text.size(), spec.pad);
}
