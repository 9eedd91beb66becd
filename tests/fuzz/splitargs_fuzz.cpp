// sources: tasks/splitargs.cpp
// Any argument text splits; fields are trimmed, hold no comma unless quoted, and lie in order in the text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tasks/splitargs.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

constexpr std::string_view kTrimmed = " \t\r\n\v\f";

bool IsTrimmed(const std::string& field) {
  const auto goes = [](char ch) { return kTrimmed.find(ch) != std::string_view::npos; };
  return field.empty() || (!goes(field.front()) && !goes(field.back()));
}

void Check(std::string_view text, bool quotedFirst) {
  const std::vector<std::string> fields = SplitArgs(text, quotedFirst);
  const size_t start = text.find_first_not_of(kTrimmed);
  const bool quoted = quotedFirst && start != std::string_view::npos && text[start] == '"';
  size_t at = 0;
  for (size_t i = 0; i < fields.size(); ++i) {
    const bool free = quoted && i == 0;
    Require(free ? fields[i].find('"') == std::string::npos
                 : IsTrimmed(fields[i]) && fields[i].find(',') == std::string::npos);
    at = text.find(fields[i], at);
    Require(at != std::string_view::npos);
    at += fields[i].size();
  }
  size_t commas = 0;
  for (const char ch : text)
    if (ch == ',') ++commas;
  Require(fields.size() <= commas + 2);
  Require(!quoted || !fields.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Check(text, false);
  Check(text, true);
  return 0;
}
