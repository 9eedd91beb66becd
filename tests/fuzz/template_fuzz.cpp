// sources: messages/formatspec.cpp messages/restextrules.cpp
// Placeholders are found where the rules say, filling them ends, and numbers read back
// as the number they show.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "messages/formatspec.h"
#include "messages/restextrules.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// The first placeholder, found by trying every position.
Placeholder PlainFind(std::string_view text, std::string_view name) {
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '<' || text.substr(i + 1, name.size()) != name) continue;
    const size_t behind = i + 1 + name.size();
    if (behind >= text.size()) continue;
    if (text[behind] == '>') return {i, behind + 1 - i, {}};
    if (text[behind] != ':') continue;
    const size_t close = text.find('>', behind + 1);
    if (close == std::string_view::npos || close - behind - 1 > 10) continue;
    return {i, close + 1 - i, text.substr(behind + 1, close - behind - 1)};
  }
  return {};
}

void CheckNumber(std::string_view specText, int32_t value) {
  FormatSpec spec;
  const bool decoded = ParseFormatSpec(specText, spec);
  Require(spec.width >= 0 && (spec.pad == ' ' || spec.pad == '0'));
  Require(decoded || spec.format == 'd');
  Require(decoded == (std::strchr("dxXocu", spec.format) != nullptr) || !decoded);
  bool known = false;
  const std::string digits = NumberText(value, spec, known);
  const bool hasBase = spec.format != '\0' && std::strchr("dxXo", spec.format) != nullptr;
  Require(known == (hasBase || spec.format == 'c'));
  if (spec.format == 'd') Require(std::stoll(digits) == value);
  if (spec.format == 'x' || spec.format == 'X')
    Require(std::stoul(digits, nullptr, 16) == static_cast<uint32_t>(value));
  if (spec.format == 'o') Require(std::stoul(digits, nullptr, 8) == static_cast<uint32_t>(value));

  if (spec.width > 100000) return;
  std::string padded = digits;
  PadText(padded, spec);
  Require(padded.size() == std::max(digits.size(), static_cast<size_t>(spec.width)));
  Require(padded.ends_with(digits));
  Require(padded.substr(0, padded.size() - digits.size()).find_first_not_of(spec.pad) == std::string::npos);
}

void CheckResText(std::string_view text) {
  const ResPiece piece = SplitPiece(text, 17, 17);
  Require(text.starts_with(piece.text));
  if (!text.ends_with('$')) Require(piece.text == text && piece.nextId == 0);
  if (text.ends_with("$$")) Require(piece.nextId == 18 && piece.text.size() + 2 == text.size());
  bool open = false;
  const std::string_view body = WithoutTag(text, open);
  Require(text.ends_with(body));
  if (!text.starts_with('!') || text == "!END!") Require(body == text && !open && TagOf(text).empty());
  if (text.starts_with('!') && text != "!END!" && !open)
    Require('!' + std::string(TagOf(text)) + '!' + std::string(body) == text);
}

}  // namespace

// Input: one byte for the name's length, the name, a number of four bytes, the template.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  CheckResText(rest);
  if (rest.size() < 6) return 0;
  const size_t nameSize = 1 + static_cast<unsigned char>(rest[0]) % 4;
  rest.remove_prefix(1);
  const std::string name(rest.substr(0, nameSize));
  rest.remove_prefix(std::min(nameSize, rest.size()));
  if (rest.size() < 4) return 0;
  int32_t value = 0;
  std::memcpy(&value, rest.data(), 4);
  rest.remove_prefix(4);
  CheckNumber(rest.substr(0, 12), value);

  const Placeholder found = FindPlaceholder(rest, name);
  const Placeholder expected = PlainFind(rest, name);
  // A name that itself holds "<" can lie across a place that is passed; names of templates never do.
  if (name.find('<') == std::string::npos && name.find(':') == std::string::npos) {
    Require(found.pos == expected.pos && found.size == expected.size && found.fmtSpec == expected.fmtSpec);
  }

  // Items of three kinds: plain, vanishing, and one that holds its own placeholder.
  const std::string items[] = {"#", "", "<" + name + ">#"};
  for (const std::string& item : items) {
    std::string text(rest);
    size_t calls = 0;
    const ReplaceResult result =
        ReplacePlaceholders(text, name, [&](std::string_view spec, std::string& piece) {
          Require(spec.size() <= kMaxFmtSpec);
          ++calls;
          piece = item;
          return !item.empty();
        });
    Require(calls <= static_cast<size_t>(ExpandLimits{}.replacements));
    Require(result.filled == (calls > 0 && !item.empty()));
    if (calls == 0) Require(text == rest);
    if (!result.stopped) Require(calls <= rest.size());
  }
  return 0;
}
