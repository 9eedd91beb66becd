#include "stores/iniline.h"

#include <limits>

#include "base/ascii.h"

namespace {

constexpr std::string_view kLineEnds = "\r\n";

void LowerInPlace(char* text, size_t size) {
  for (size_t i = 0; i < size; ++i) text[i] = AsciiLower(text[i]);
}

bool NoLead(unsigned char) { return false; }

// Whether the last byte of `text` is a character of its own, not the second half of one.
bool LastByteIsCharacter(std::string_view text, const IniRules& rules) {
  size_t i = 0;
  while (i + 1 < text.size()) i += rules.isLead(static_cast<unsigned char>(text[i])) ? 2 : 1;
  return i + 1 == text.size();
}

}  // namespace

IniRules AsciiIniRules() { return {LowerInPlace, NoLead}; }

std::string FoldName(std::string_view name, const IniRules& rules) {
  std::string folded(name);
  rules.lower(folded.data(), folded.size());
  return folded;
}

bool SameName(std::string_view a, std::string_view b, const IniRules& rules) {
  return a.size() == b.size() && FoldName(a, rules) == FoldName(b, rules);
}

bool NameBeginsWith(std::string_view name, std::string_view prefix, const IniRules& rules) {
  return prefix.empty() ||
         (name.size() >= prefix.size() && FoldName(name, rules).starts_with(FoldName(prefix, rules)));
}

std::string_view UpToLineEnd(std::string_view text) { return text.substr(0, text.find_first_of(kLineEnds)); }

bool IsIniComment(std::string_view line) { return SkipBlanks(line).starts_with(';'); }

bool ParseIniHeader(std::string_view line, const IniRules& rules, std::string_view& name) {
  line = TrimBlanks(line);
  if (line.size() < 2 || line.front() != '[' || line.back() != ']' || !LastByteIsCharacter(line, rules))
    return false;
  name = TrimBlanks(line.substr(1, line.size() - 2));
  return true;
}

bool SplitIniLine(std::string_view line, std::string_view& key, std::string_view& value) {
  const size_t sign = line.find('=');
  if (sign == std::string_view::npos || IsIniComment(line)) return false;
  key = TrimBlanks(line.substr(0, sign));
  value = TrimBlanks(line.substr(sign + 1));
  return true;
}

bool ParseIniKeyLine(std::string_view line, std::string_view& key, std::string_view& value) {
  return SplitIniLine(line, key, value) && key.size() <= kIniMaxLine;
}

int32_t ParseIniNumber(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t\r\n\v\f");
  if (first == std::string_view::npos) return 0;
  text.remove_prefix(first);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  constexpr int64_t kMax = std::numeric_limits<int32_t>::max();
  int64_t number = 0;
  for (const char ch : text) {
    if (!IsAsciiDigit(ch)) break;
    number = number * 10 + (ch - '0');
    if (number > kMax) number = kMax + 1;
  }
  if (negative) return static_cast<int32_t>(-number);
  return static_cast<int32_t>(number > kMax ? kMax : number);
}

bool IniFilePieces::Next(IniPiece& piece) {
  if (mRest.empty()) return false;
  const std::string_view window = mRest.substr(0, kIniMaxLine);
  const size_t end = window.find_first_of(kLineEnds);
  piece.continues = mInside;
  if (end == std::string_view::npos) {
    piece.text = window;
    mRest.remove_prefix(window.size());
    mInside = true;
  } else {
    piece.text = window.substr(0, end);
    size_t next = end + 1;
    if (next < mRest.size() && mRest[next] != mRest[end] &&
        kLineEnds.find(mRest[next]) != std::string_view::npos)
      ++next;
    mRest.remove_prefix(next);
    mInside = false;
  }
  piece.text = piece.text.substr(0, piece.text.find('\0'));
  return true;
}

IniMemoryLines::Result IniMemoryLines::Next(std::string_view& line) {
  if (mRest.empty()) return kEnd;
  const size_t end = mRest.find_first_of(kLineEnds);
  line = mRest.substr(0, end);
  if (line.size() > kIniMaxLine) return kTooLong;
  if (end == std::string_view::npos) {
    mRest = {};
    return kLine;
  }
  mRest.remove_prefix(end + (mRest.substr(end).starts_with("\r\n") ? 2 : 1));
  return kLine;
}
