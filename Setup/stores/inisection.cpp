#include "stores/inisection.h"

#include <algorithm>

#include "base/ascii.h"

namespace {

uint32_t HashOf(std::string_view folded) {
  uint32_t hash = 2166136261u;
  for (const char ch : folded) hash = (hash ^ static_cast<unsigned char>(ch)) * 16777619u;
  return hash;
}

}  // namespace

IniSection::IniSection(std::string text) : mText(std::move(text)) {
  for (size_t start = 0; start < mText.size();) {
    mStarts.push_back(static_cast<uint32_t>(start));
    const size_t end = mText.find('\n', start);
    start = end == std::string::npos ? mText.size() : end + 1;
  }
}

size_t IniSection::Start(int32_t i) const {
  return i < LineCount() ? mStarts[static_cast<size_t>(i)] & ~kContinues : mText.size();
}

std::string_view IniSection::Line(int32_t i) const {
  std::string_view line(mText);
  line = line.substr(Start(i), Start(i + 1) - Start(i));
  if (line.ends_with('\n')) line.remove_suffix(1);
  return line;
}

std::string_view IniSection::WholeLine(int32_t i, std::string& joined) const {
  const int32_t end = SkipContinued(i + 1);
  if (end == i + 1) return Line(i);
  joined.clear();
  for (; i < end; ++i) joined += Line(i);
  return joined;
}

int32_t IniSection::SkipContinued(int32_t i) const {
  while (i < LineCount() && Continues(i)) ++i;
  return i;
}

bool IniSection::Name(const IniRules& rules, std::string_view& name) const {
  return LineCount() > 0 && ParseIniHeader(Line(0), rules, name);
}

void IniSection::Append(std::string_view line, bool continues) {
  mStarts.push_back(static_cast<uint32_t>(mText.size()) | (continues ? kContinues : 0));
  mText += line;
  mText += '\n';
  DropIndexes();
}

bool IniSection::KeyOf(int32_t i, std::string& joined, std::string_view& key) const {
  if (Continues(i)) return false;
  std::string_view value;
  return ParseIniKeyLine(WholeLine(i, joined), key, value);
}

void IniSection::BuildKeys(const IniRules& rules) {
  mKeys.clear();
  std::string joined;
  std::string_view key;
  for (int32_t i = 1; i < LineCount(); ++i) {
    if (KeyOf(i, joined, key)) mKeys.push_back({HashOf(FoldName(key, rules)), i});
  }
  std::sort(mKeys.begin(), mKeys.end());
  mKeysValid = true;
}

int32_t IniSection::FindKey(std::string_view key, const IniRules& rules) {
  if (!mKeysValid) BuildKeys(rules);
  const uint32_t hash = HashOf(FoldName(key, rules));
  std::string joined;
  std::string_view found;
  for (auto ref = std::lower_bound(mKeys.begin(), mKeys.end(), KeyRef{hash, 0});
       ref != mKeys.end() && ref->hash == hash; ++ref) {
    if (KeyOf(ref->line, joined, found) && SameName(found, key, rules)) return ref->line;
  }
  return -1;
}

bool IniSection::IsScriptLine(int32_t i) const {
  if (i == 0 || Continues(i)) return false;
  const std::string_view line = TrimBlanks(Line(i));
  return !line.empty() && line.front() != ';';
}

bool IniSection::FindScriptLine(int32_t n, int32_t& line) {
  if (!mScriptLinesValid) {
    mScriptLines.clear();
    for (int32_t i = 1; i < LineCount(); ++i) {
      if (IsScriptLine(i)) mScriptLines.push_back(i);
    }
    mScriptLinesValid = true;
  }
  const int32_t count = static_cast<int32_t>(mScriptLines.size());
  line = n < count ? mScriptLines[static_cast<size_t>(n)] : LineCount();
  return n <= count;
}

// Replaces lines first .. first + count - 1 by `text`, which is empty or one line with its line feed.
void IniSection::ReplaceLines(int32_t first, int32_t count, std::string_view text) {
  const size_t start = Start(first);
  const size_t oldSize = Start(first + count) - start;
  mText.replace(start, oldSize, text);
  const auto at = mStarts.begin() + first;
  const auto rest = mStarts.erase(at, at + count);
  for (auto offset = rest; offset != mStarts.end(); ++offset)
    *offset += static_cast<uint32_t>(text.size()) - static_cast<uint32_t>(oldSize);
  if (!text.empty()) mStarts.insert(rest, static_cast<uint32_t>(start));
  changed = true;
}

void IniSection::Replace(int32_t i, std::string_view line, const IniRules& rules) {
  line = UpToLineEnd(line);
  const int32_t count = SkipContinued(i + 1) - i;
  std::string joined;
  std::string_view oldKey;
  std::string_view newKey;
  std::string_view value;
  // The same key in the same place: what is known about the lines stays true.
  const bool sameKey = count == 1 && mKeysValid && KeyOf(i, joined, oldKey) &&
                       ParseIniKeyLine(line, newKey, value) && SameName(oldKey, newKey, rules);
  ReplaceLines(i, count, std::string(line) + '\n');
  if (!sameKey) DropIndexes();
}

void IniSection::Remove(int32_t i) {
  ReplaceLines(i, SkipContinued(i + 1) - i, {});
  DropIndexes();
}

int32_t IniSection::Insert(std::string_view line, const IniRules& rules) {
  line = UpToLineEnd(line);
  if (!mText.empty() && !mText.ends_with('\n')) mText += '\n';
  const int32_t at = mText.ends_with("\n\n") ? LineCount() - 1 : LineCount();
  ReplaceLines(at, 0, std::string(line) + '\n');
  mScriptLinesValid = false;

  std::string_view key;
  std::string_view value;
  if (mKeysValid && ParseIniKeyLine(line, key, value)) {
    // Behind all other lines: no known line number changes.
    const KeyRef ref{HashOf(FoldName(key, rules)), at};
    mKeys.insert(std::upper_bound(mKeys.begin(), mKeys.end(), ref), ref);
  }
  return at;
}

void IniSection::DropIndexes() {
  mKeysValid = false;
  mScriptLinesValid = false;
}
