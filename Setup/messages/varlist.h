#pragma once
// VarList: ordered name/value list, newest first. Names are compared byte for byte. A
// frozen entry keeps its value.
#include <cstdint>

#include "base/str.h"
#include "messages/vartable.h"

class VarList {
 public:
  enum GetFlags : uint32_t { kExpandThis = 1, kExpandApp = 2 };

  VarList() = default;
  VarList(const VarList&) = delete;
  VarList& operator=(const VarList&) = delete;

  // A leading "%" in the name freezes the variable, as does `isMutable` false. An empty
  // name is logged and ignored.
  void Set(const char* varName, const char* value, bool isMutable = true);
  bool Get(const char* varName, Str& result) const;
  bool GetExpanded(const char* varName, Str& result, uint32_t flags) const;
  // Into a caller's buffer: at most `max` bytes are copied; a value of `max` bytes or more is not terminated.
  bool Get(const char* varName, int32_t max, char* buffer, uint32_t flags) const;
  bool Exists(const char* varName) const;
  // "True"/"Yes"/"1" and "False"/"No"/"0"; anything else asserts and leaves `result`.
  bool GetBool(const char* varName, bool& result) const;
  void SetBool(const char* varName, bool flag, bool isMutable = true);
  // Calls visitor(name, value, isMutable) from the newest on; stops and returns false as
  // soon as it returns false.
  template <class Visitor>
  bool ForEach(Visitor visitor) const {
    for (const Variable& variable : mTable.All())
      if (!visitor(variable.name.c_str(), variable.value.c_str(), variable.isMutable)) return false;
    return true;
  }
  // Replaces every <Name> of the list in `text`, repeatedly; returns the number of replacements. Ends after
  // 10,000 replacements or at 1 MiB with a log line that names the variable.
  int32_t Expand(Str& text, char open = '<', char close = '>') const;
  void Clear();
  bool IsEmpty() const { return mTable.All().empty(); }

 private:
  const Variable* FindVariable(const char* varName) const;
  VarTable mTable;
};

// The process-wide application variable list.
VarList& AppVars();
// Raw text of an application variable.
bool AppGetVariable(const char* name, Str& value);
bool AppVariableExists(const char* name);
// Value expanded with the application list; empty when unset.
Str AppGetExpanded(const char* name);
void AppSetVariable(const char* name, const char* value);
void AppSetBool(const char* name, bool flag);
// True only for exactly "1" after expansion; other values than "0" and "1" assert.
bool AppGetBool(const char* name);
