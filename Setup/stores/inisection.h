#pragma once
// One section of an INI store: its text, where its lines begin, and what has been found out about them. Pure.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "stores/iniline.h"

// The text is a sequence of lines, each ended by a line feed; normally the first is the header and the last
// is empty. A line longer than kIniMaxLine comes from its source in pieces; each piece is a line of the text,
// but those that continue another are known as such and are read together with it.
class IniSection {
 public:
  IniSection() = default;
  // Takes a text as it is.
  explicit IniSection(std::string text);

  const std::string& Text() const { return mText; }
  int32_t LineCount() const { return static_cast<int32_t>(mStarts.size()); }
  // Line i without its line feed.
  std::string_view Line(int32_t i) const;
  bool Continues(int32_t i) const { return (mStarts[static_cast<size_t>(i)] & kContinues) != 0; }
  // Line i together with the lines that continue it; `joined` holds the text when there are any.
  std::string_view WholeLine(int32_t i, std::string& joined) const;
  // The first line at or after i that continues no other; LineCount() when there is none.
  int32_t SkipContinued(int32_t i) const;
  bool Name(const IniRules& rules, std::string_view& name) const;

  // Appends a line (loading).
  void Append(std::string_view line, bool continues);

  // First line of that key, -1 when there is none.
  int32_t FindKey(std::string_view key, const IniRules& rules);
  // Line number of the n-th line that IsScriptLine accepts; false when there are fewer than n, LineCount()
  // when there are just n.
  bool FindScriptLine(int32_t n, int32_t& line);
  // Whether line i says anything: not the header, not empty, no comment, not part of another line.
  bool IsScriptLine(int32_t i) const;

  // Replaces line i, and what continues it, by `line`; a text up to its first line end.
  void Replace(int32_t i, std::string_view line, const IniRules& rules);
  void Remove(int32_t i);
  // Inserts a line before the final empty line, or at the end of a text without one; its number.
  int32_t Insert(std::string_view line, const IniRules& rules);

  bool changed = false;
  bool deleted = false;

 private:
  static constexpr uint32_t kContinues = 0x80000000;  // mark in mStarts
  struct KeyRef {
    uint32_t hash;  // of the folded key
    int32_t line;
    bool operator<(const KeyRef& other) const {
      return hash != other.hash ? hash < other.hash : line < other.line;
    }
  };

  size_t Start(int32_t i) const;
  void ReplaceLines(int32_t first, int32_t count, std::string_view text);
  bool KeyOf(int32_t i, std::string& joined, std::string_view& key) const;
  void BuildKeys(const IniRules& rules);
  void DropIndexes();

  std::string mText;
  std::vector<uint32_t> mStarts;  // offset of each line, with kContinues
  std::vector<KeyRef> mKeys;      // sorted; valid when mKeysValid
  std::vector<int32_t> mScriptLines;
  bool mKeysValid = false;
  bool mScriptLinesValid = false;
};
