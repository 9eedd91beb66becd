#include "tasks/splitargs.h"

#include "base/ascii.h"

namespace {

// Takes a quoted first field off the text. What follows the closing quote is separated as usual, so the comma
// behind the quote ends this field and blanks before it are no field of their own.
std::string_view TakeQuoted(std::string_view& text) {
  text.remove_prefix(text.find('"') + 1);
  const size_t close = text.find('"');
  const std::string_view field = text.substr(0, close);
  text = SkipBlanks(text.substr(close == std::string_view::npos ? text.size() : close + 1), kWhiteSpace);
  return field;
}

}  // namespace

std::vector<std::string> SplitArgs(std::string_view text, bool quotedFirst) {
  std::vector<std::string> fields;
  if (quotedFirst && SkipBlanks(text, kWhiteSpace).starts_with('"')) fields.emplace_back(TakeQuoted(text));
  while (!text.empty()) {
    const size_t comma = text.find(',');
    const std::string_view field = text.substr(0, comma);
    if (!field.empty()) fields.emplace_back(TrimBlanks(field, kWhiteSpace));
    text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  }
  return fields;
}
