#include "messages/restextrules.h"

#include "base/ascii.h"

namespace {

constexpr std::string_view kEndOfList = "!END!";

bool HasTag(std::string_view text) { return text.starts_with('!') && text != kEndOfList; }

// A decimal number that fills the whole text; false otherwise.
bool ParseNumber(std::string_view text, uint32_t& number) {
  number = 0;
  for (const char ch : text) {
    if (!IsAsciiDigit(ch) || number > 0xFFFF) return false;
    number = number * 10 + static_cast<uint32_t>(ch - '0');
  }
  return !text.empty();
}

}  // namespace

ResPiece SplitPiece(std::string_view piece, uint32_t id, uint32_t firstId) {
  if (!piece.ends_with('$')) return {piece, 0};
  piece.remove_suffix(1);
  const size_t inner = piece.rfind('$');
  if (inner == std::string_view::npos) return {piece, 0};
  const std::string_view target = piece.substr(inner + 1);
  uint32_t number = 0;
  if (target.empty()) return {piece.substr(0, inner), id + 1};
  if (!ParseNumber(target, number)) return {piece, 0};
  return {piece.substr(0, inner), number + (firstId < kFirstProgramId ? 3000 : 30000)};
}

std::string_view WithoutTag(std::string_view text, bool& tagOpen) {
  tagOpen = false;
  if (!HasTag(text)) return text;
  const size_t end = text.find('!', 1);
  tagOpen = end == std::string_view::npos;
  return tagOpen ? text : text.substr(end + 1);
}

std::string_view TagOf(std::string_view text) {
  if (!HasTag(text)) return {};
  text.remove_prefix(1);
  return text.substr(0, text.find('!'));
}
