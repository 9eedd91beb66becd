#include "script/filerecord.h"

#include <limits>

#include "base/ascii.h"
#include "platform/pathparts.h"

namespace {

// The text up to the next comma; blanks around it do not count.
std::string_view TakeField(std::string_view& text) {
  const size_t comma = text.find(',');
  const std::string_view field = TrimBlanks(text.substr(0, comma));
  text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  return field;
}

}  // namespace

bool SplitRecord(std::string_view text, RecordFields& fields) {
  fields.disk = TakeField(text);
  fields.source = TakeField(text);
  fields.dest = TakeField(text);
  fields.size = TakeField(text);
  return !fields.disk.empty() && !fields.source.empty() && !fields.dest.empty() && !fields.size.empty();
}

size_t CountRecordFields(std::string_view text) {
  size_t count = 1;
  for (const char ch : text)
    if (ch == ',') ++count;
  return count;
}

bool SplitBeforeExpanding(std::string_view raw, std::string_view expanded) {
  return CountRecordFields(raw) == 4 && CountRecordFields(expanded) > 4;
}

int64_t ParseRecordNumber(std::string_view text) {
  text = SkipBlanks(text);
  if (text.empty()) return 0;
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  constexpr int64_t kLowest = std::numeric_limits<int32_t>::min();
  const int64_t limit = negative ? -kLowest : static_cast<int64_t>(std::numeric_limits<uint32_t>::max());
  int64_t value = 0;
  for (const char ch : text) {
    if (!IsAsciiDigit(ch)) break;
    value = value * 10 + (ch - '0');
    if (value > limit) value = limit;
  }
  return negative ? -value : value;
}

bool IsRecordNumber(std::string_view text) {
  text = TrimBlanks(text);
  if (text.empty()) return false;
  if (text.front() == '-' || text.front() == '+') text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string WithRecordSize(std::string_view record, int64_t size) {
  const size_t comma = record.rfind(',');
  std::string result(record.substr(0, comma == std::string_view::npos ? 0 : comma + 1));
  result += std::to_string(size);
  return result;
}

void SplitPathText(std::string_view path, LeadByteTest lead, std::string_view& dir, std::string_view& name) {
  const size_t slash = PathText::FindLastBackslash(path, lead);
  if (slash == PathText::kNone) {
    dir = {};
    name = path;
    return;
  }
  name = path.substr(slash + 1);
  // "C:\name" lies in the root "C:\", whose backslash belongs to it.
  const bool root = slash == 0 || (slash == 2 && path[1] == ':');
  dir = path.substr(0, root ? slash + 1 : slash);
}

RecordDest SplitRecordDest(std::string_view dest, LeadByteTest lead) {
  RecordDest result;
  for (; !dest.empty(); dest.remove_prefix(1)) {
    if (dest.front() == '*')
      result.hidden = true;
    else if (dest.front() == '?')
      result.keepExisting = true;
    else
      break;
  }
  SplitPathText(SkipBlanks(dest), lead, result.dir, result.name);
  return result;
}
