// sources: stores/initext.cpp stores/inisection.cpp stores/iniline.cpp
// Any text loads; what is written loads again as the same; every key reads what a plain search of the lines
// finds; editing one key leaves all other lines as they were; the enumerations agree with each other.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "stores/initext.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool JapaneseLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

IniRules RulesFor(uint8_t choice) {
  IniRules rules = AsciiIniRules();
  if (choice % 2 != 0) rules.isLead = JapaneseLead;
  return rules;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& ch : lower) {
    if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch + 32);
  }
  return lower;
}

// The lines of the current section with their continuations, without the header.
std::vector<std::string> WholeLines(const IniText& text) {
  const IniSection& section = text.Section(text.Current());
  std::vector<std::string> lines;
  for (int32_t i = 1; i < section.LineCount(); ++i) {
    if (section.Continues(i)) {
      if (!lines.empty()) lines.back() += section.Line(i);
    } else {
      lines.emplace_back(section.Line(i));
    }
  }
  return lines;
}

// Value of the first line of that key, found by looking at one line after the other.
bool PlainRead(const std::vector<std::string>& lines, std::string_view key, std::string& value) {
  for (const std::string& line : lines) {
    std::string_view name;
    std::string_view content;
    if (!ParseIniKeyLine(line, name, content) || Lower(name) != Lower(key)) continue;
    value = content.substr(0, kIniMaxLine);
    return true;
  }
  return false;
}

void CheckEnumerations(IniText& text) {
  std::string key;
  std::string value;
  std::string other;
  std::vector<std::pair<std::string, std::string>> all;
  for (bool first = true; text.NextLine(first, key, value); first = false) all.emplace_back(key, value);
  for (size_t i = 0; i <= all.size(); i += 1 + all.size() / 5) {
    Require(text.SeekLine(static_cast<int32_t>(i)));
    Require(text.NextLine(false, key, value) == (i < all.size()));
    if (i < all.size()) Require(std::make_pair(key, value) == all[i]);
  }
  Require(!text.SeekLine(static_cast<int32_t>(all.size()) + 1));

  const std::vector<std::string> lines = WholeLines(text);
  size_t keys = 0;
  for (bool first = true; text.NextKey(first, "", key, value); first = false) {
    ++keys;
    const std::string name = key;
    std::string expected;
    Require(PlainRead(lines, name, expected));
    Require(text.ReadKey(name, other) && other == expected);
    // The look-up moved the cursor: go on behind the line of this key.
    size_t passed = 0;
    for (bool again = true; passed < keys && text.NextKey(again, "", key, value); again = false) ++passed;
    Require(passed == keys);
    if (keys > 20) break;
  }
}

void CheckEdit(IniText& text, const std::string& key, const std::string& value) {
  const std::vector<std::string> before = WholeLines(text);
  std::string read;
  const bool existed = PlainRead(before, key, read);
  Require(text.WriteKey(key, value));
  Require(text.ReadKey(key, read));
  std::vector<std::string> after = WholeLines(text);
  Require(after.size() == before.size() + (existed ? 0 : 1));
  size_t changed = 0;
  for (size_t i = 0, j = 0; i < after.size(); ++i) {
    if (j < before.size() && after[i] == before[j]) {
      ++j;
      continue;
    }
    ++changed;
    if (existed) ++j;
  }
  Require(changed <= 1);

  Require(text.DeleteKey(key));
  const std::vector<std::string> deleted = WholeLines(text);
  Require(deleted.size() == before.size() - (existed ? 1 : 0));
  if (!existed) Require(deleted == before);
  Require(text.AddKey(key, value));
  Require(text.ReadKey(key, read));
  Require(WholeLines(text).size() == deleted.size() + 1);
}

void CheckSections(IniText& text, std::string_view extra) {
  std::vector<std::string> names;
  std::string_view name;
  for (bool first = true; text.NextSection(first, "", name); first = false) names.emplace_back(name);
  for (size_t i = 0; i < names.size() && i < 10; ++i) {
    Require(text.FindSection(names[i]));
    std::string_view held;
    Require(text.Section(text.Current()).Name(text.Rules(), held) && Lower(held) == Lower(names[i]));
    for (int32_t before = 0; before < text.Current(); ++before) {
      std::string_view earlier;
      Require(!text.Section(before).Name(text.Rules(), earlier) || Lower(earlier) != Lower(names[i]));
    }
    CheckEnumerations(text);
    CheckEdit(text, "Key", std::string(extra.substr(0, 20)));
  }
  if (!names.empty()) {
    text.DeleteSection(names[0]);
    Require(!text.FindSection(names[0]));
  }
}

std::string WithoutNul(std::string_view bytes) {
  std::string text(bytes);
  std::erase(text, '\0');
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const IniRules rules = RulesFor(data[0]);
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);

  IniText text(rules);
  text.LoadFile(bytes);
  const std::string written = text.ToFile();
  IniText again(rules);
  again.LoadFile(written);
  // Without a line of several pieces, what was loaded and written loads and is written as the same.
  bool pieces = false;
  for (int32_t i = 0; i < text.SectionCount(); ++i) {
    for (int32_t line = 0; line < text.Section(i).LineCount(); ++line)
      pieces |= text.Section(i).Continues(line);
  }
  if (!pieces) Require(again.ToFile() == written);

  IniText memory(rules);
  const std::string plain = WithoutNul(bytes);
  if (memory.LoadMemory(plain)) {
    IniText reread(rules);
    Require(reread.LoadMemory(memory.ToMemory()));
    Require(reread.ToMemory() == memory.ToMemory());
  }

  CheckSections(text, bytes.substr(0, bytes.find_first_of(std::string_view("\0\r\n", 3))));
  ParseIniNumber(bytes);
  return 0;
}
