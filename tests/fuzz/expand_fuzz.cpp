// sources: messages/vartable.cpp
// Expansion always ends and gives what the plain procedure gives: the same text, the same number of
// replacements, and where it does not end by itself the same variable at the same place.
#include <cstdint>
#include <cstdlib>
#include <list>
#include <string>
#include <string_view>

#include "messages/vartable.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

struct PlainVariable {
  std::string name;
  std::string value;
  bool isMutable;
};

// The list and its expansion done step by step, without any index.
class PlainList {
 public:
  void Set(std::string name, const std::string& value, bool isMutable) {
    if (name.starts_with("%")) {
      name.erase(0, 1);
      isMutable = false;
    }
    if (name.empty()) return;
    PlainVariable* variable = nullptr;
    for (PlainVariable& known : mVariables) {
      if (known.name == name) variable = &known;
    }
    if (variable == nullptr) {
      mVariables.push_front({name, value, true});
      variable = &mVariables.front();
    } else if (variable->isMutable) {
      variable->value = value;
    }
    if (!isMutable) variable->isMutable = false;
  }

  // The name of the variable at which a limit was met, "" without one.
  std::string Expand(std::string& text, char open, char close, const ExpandLimits& limits,
                     int32_t& count) const {
    for (int32_t before = -1; before != count;) {
      before = count;
      if (text.find(open) == std::string::npos && text.find(close) == std::string::npos) break;
      for (const PlainVariable& variable : mVariables) {
        const std::string pattern = open + variable.name + close;
        for (size_t at = text.find(pattern); at != std::string::npos; at = text.find(pattern, at)) {
          if (count >= limits.replacements || text.size() > limits.size) return variable.name;
          text.erase(at, pattern.size());
          text.insert(at, variable.value);
          ++count;
        }
      }
    }
    return "";
  }

  const std::list<PlainVariable>& All() const { return mVariables; }

 private:
  std::list<PlainVariable> mVariables;
};

// Takes the bytes up to the next separator.
std::string Take(std::string_view& rest, char separator) {
  const size_t end = rest.find(separator);
  const std::string piece(rest.substr(0, end));
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return piece;
}

void CheckSameList(const VarTable& table, const PlainList& plain) {
  auto expected = plain.All().begin();
  for (const Variable& variable : table.All()) {
    Require(expected != plain.All().end());
    Require(variable.name == expected->name && variable.value == expected->value);
    Require(variable.isMutable == expected->isMutable);
    Require(table.Find(variable.name) == &variable);
    ++expected;
  }
  Require(expected == plain.All().end());
}

}  // namespace

// Input: lines "name=value", the last line is the text to expand.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 2000) return 0;
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  VarTable table;
  PlainList plain;
  while (rest.find('\n') != std::string_view::npos) {
    std::string value = Take(rest, '\n');
    std::string_view line(value);
    const bool isMutable = !line.starts_with('!');
    if (!isMutable) line.remove_prefix(1);
    const std::string name = Take(line, '=');
    Require(table.Set(name, line, isMutable) == (!name.empty() && name != "%"));
    plain.Set(name, std::string(line), isMutable);
  }
  CheckSameList(table, plain);

  const ExpandLimits small{300, 3000};
  const char marks[][2] = {{'<', '>'}, {'%', '%'}};
  for (const auto& mark : marks) {
    std::string text(rest);
    std::string expected(rest);
    int32_t count = 0;
    const std::string stopped = plain.Expand(expected, mark[0], mark[1], small, count);
    const ExpandResult result = table.Expand(text, mark[0], mark[1], small);
    Require(text == expected);
    Require(result.count == count);
    Require((result.stopped != nullptr ? result.stopped->name : "") == stopped);
  }

  std::string text(rest);
  const ExpandResult result = table.Expand(text, '<', '>');
  Require(result.count <= ExpandLimits{}.replacements);
  if (result.stopped == nullptr) {
    for (const Variable& variable : table.All())
      Require(text.find('<' + variable.name + '>') == std::string::npos);
  }
  return 0;
}
