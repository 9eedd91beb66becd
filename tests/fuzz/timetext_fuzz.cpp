// sources: base/timetext.cpp
// What a time text says survives printing and reading again, whatever the text was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/timetext.h"

namespace {

bool Same(const TimeText& a, const TimeText& b) {
  return a.month == b.month && a.day == b.day && a.year == b.year && a.hour == b.hour &&
         a.minute == b.minute && a.second == b.second;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const TimeText::Separator& separator : TimeText::kSeparators) (void)HasSeparator(text, separator);

  TimeText fields;
  if (!ParseTimeText(text, fields)) {
    if (size >= TimeText::kLength) std::abort();
    return 0;
  }
  const std::string printed = PrintTimeText(fields);
  if (printed.size() != TimeText::kLength) std::abort();
  for (const TimeText::Separator& separator : TimeText::kSeparators) {
    if (!HasSeparator(printed, separator)) std::abort();
  }
  TimeText again;
  if (!ParseTimeText(printed, again) || !Same(fields, again)) std::abort();
  return 0;
}
