#include "script/filerecord.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::string_view kBlanks = " \t";

// The text up to the next comma; blanks around it do not count.
std::string_view TakeField(std::string_view& text) {
  const size_t comma = text.find(',');
  std::string_view field = text.substr(0, comma);
  text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  field.remove_prefix(std::min(field.find_first_not_of(kBlanks), field.size()));
  field.remove_suffix(field.size() - (field.find_last_not_of(kBlanks) + 1));
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
  const size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  constexpr int64_t kLowest = std::numeric_limits<int32_t>::min();
  const int64_t limit = negative ? -kLowest : static_cast<int64_t>(std::numeric_limits<uint32_t>::max());
  int64_t value = 0;
  for (const char ch : text) {
    if (ch < '0' || ch > '9') break;
    value = value * 10 + (ch - '0');
    if (value > limit) value = limit;
  }
  return negative ? -value : value;
}

bool IsRecordNumber(std::string_view text) {
  const size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return false;
  text = text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
  if (text.front() == '-' || text.front() == '+') text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string WithRecordSize(std::string_view record, int64_t size) {
  const size_t comma = record.rfind(',');
  std::string result(record.substr(0, comma == std::string_view::npos ? 0 : comma + 1));
  result += std::to_string(size);
  return result;
}

void SplitPathText(std::string_view path, PathText::LeadByteTest lead, std::string_view& dir,
                   std::string_view& name) {
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

RecordDest SplitRecordDest(std::string_view dest, PathText::LeadByteTest lead) {
  RecordDest result;
  for (; !dest.empty(); dest.remove_prefix(1)) {
    if (dest.front() == '*')
      result.hidden = true;
    else if (dest.front() == '?')
      result.keepExisting = true;
    else
      break;
  }
  dest.remove_prefix(std::min(dest.find_first_not_of(kBlanks), dest.size()));
  SplitPathText(dest, lead, result.dir, result.name);
  return result;
}
