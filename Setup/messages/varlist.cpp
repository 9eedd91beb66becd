#include "messages/varlist.h"

#include <algorithm>
#include <cstring>

#include "base/assert.h"
#include "messages/endless.h"
#include "messages/logfile.h"

void VarList::Set(const char* varName, const char* value, bool isMutable) {
  if (!VT_ASSERT(varName != nullptr, "varName")) return;
  if (!VT_ASSERT(value != nullptr, "value")) return;
  if (!mTable.Set(varName, value, isMutable)) {
    Str line("A variable without a name was not set to \"");
    line.Append(value);
    line.Append("\".");
    LogLine(line);
  }
}

bool VarList::Get(const char* varName, Str& result) const {
  const Variable* variable = FindVariable(varName);
  if (variable == nullptr) return false;
  result = variable->value.c_str();
  return true;
}

bool VarList::GetExpanded(const char* varName, Str& result, uint32_t flags) const {
  if (!Get(varName, result)) return false;
  const bool byApp = (flags & kExpandApp) != 0;
  if (byApp) AppVars().Expand(result);
  // One expansion with the same list is enough.
  if ((flags & kExpandThis) != 0 && !(byApp && this == &AppVars())) Expand(result);
  return true;
}

bool VarList::Get(const char* varName, int32_t max, char* buffer, uint32_t flags) const {
  VT_ASSERT(max > 0, "max > 0");
  Str value;
  if (!GetExpanded(varName, value, flags)) return false;
  if (max > 0) std::memcpy(buffer, value.Chars(), static_cast<size_t>(std::min(max, value.Length() + 1)));
  return true;
}

bool VarList::Exists(const char* varName) const { return FindVariable(varName) != nullptr; }

bool VarList::GetBool(const char* varName, bool& result) const {
  const Variable* variable = FindVariable(varName);
  if (variable == nullptr) return false;
  const char* value = variable->value.c_str();
  const auto is = [value](const char* word) { return Str::ICompare(value, word) == 0; };
  if (is("True") || is("Yes") || variable->value == "1") {
    result = true;
  } else if (is("False") || is("No") || variable->value == "0") {
    result = false;
  } else {
    VT_FAIL("bad Bool value");
  }
  return true;
}

void VarList::SetBool(const char* varName, bool flag, bool isMutable) {
  Set(varName, flag ? "1" : "0", isMutable);
}

int32_t VarList::Expand(Str& text, char open, char close) const {
  if (text.Find(open) < 0) return 0;
  std::string expanded(text.View());
  const ExpandResult result = mTable.Expand(expanded, open, close);
  if (result.count > 0) text = expanded.c_str();
  if (result.stopped != nullptr) LogEndless("variable", result.stopped->name);
  return result.count;
}

void VarList::Clear() { mTable.Clear(); }

const Variable* VarList::FindVariable(const char* varName) const {
  if (!VT_ASSERT(varName != nullptr, "varName")) return nullptr;
  return mTable.Find(varName);
}

VarList& AppVars() {
  static VarList list;
  return list;
}

bool AppGetVariable(const char* name, Str& value) { return AppVars().Get(name, value); }

bool AppVariableExists(const char* name) { return AppVars().Exists(name); }

Str AppGetExpanded(const char* name) {
  Str value;
  AppVars().GetExpanded(name, value, VarList::kExpandApp);
  return value;
}

void AppSetVariable(const char* name, const char* value) { AppVars().Set(name, value); }

void AppSetBool(const char* name, bool flag) { AppVars().SetBool(name, flag); }

bool AppGetBool(const char* name) {
  Str value;
  if (!AppVars().GetExpanded(name, value, VarList::kExpandApp)) return false;
  VT_ASSERT(value == "0" || value == "1", "value == \"0\" || value == \"1\"");
  return value == "1";
}
