#pragma once
// The variables of a list, newest first, with their names indexed, and the filling of
// <Name> placeholders. Pure.
#include <bitset>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "messages/rewrite.h"

struct Variable {
  std::string name;  // without "%"
  std::string value;
  bool isMutable;
  uint32_t serial;  // grows with creation: a newer variable has a higher number
};

struct ExpandResult {
  int32_t count = 0;                  // replacements made
  const Variable* stopped = nullptr;  // where a limit was met; null when the expansion came to its end
};

class VarTable {
 public:
  VarTable() = default;
  VarTable(const VarTable&) = delete;
  VarTable& operator=(const VarTable&) = delete;

  // A leading "%" in the name freezes the variable, as does `isMutable` false. A frozen variable keeps its
  // value. False, with nothing done, when the name is empty.
  bool Set(std::string_view name, std::string_view value, bool isMutable);
  const Variable* Find(std::string_view name) const;
  // From the newest to the oldest.
  const std::list<Variable>& All() const { return mVariables; }
  void Clear();

  // For each variable from the newest on, replaces open + name + close from left to right, searching again at
  // the place of the replacement; begins anew until a whole pass replaces nothing. Ends early at a limit.
  ExpandResult Expand(std::string& text, char open, char close, const ExpandLimits& limits = {}) const;

 private:
  // The placeholders of this list's variables that stand in a text.
  struct Found {
    const Variable* newest = nullptr;       // among those created before the number asked for
    size_t first = std::string_view::npos;  // start of the first placeholder of any variable
    size_t end = 0;                         // end of the last one
  };
  class Expansion;
  Found Search(std::string_view text, uint32_t below, char open, char close) const;

  std::list<Variable> mVariables;
  std::unordered_map<std::string_view, Variable*> mByName;
  std::bitset<256> mNameBytes;  // bytes that occur in names
  size_t mLongestName = 0;
  uint32_t mNextSerial = 1;
};
