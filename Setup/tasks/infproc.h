#pragma once
// The task table, its dispatch, the pass rule, and what all handlers share.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/str.h"

using TaskHandler = int32_t (*)(const char* name, const char* args, void* data);

// When a task acts.
enum class PassRule : uint8_t {
  kPass1,            // pass 1 only
  kPass0,            // pass 0 only
  kInstall1Remove0,  // installation: pass 1; removal: pass 0
  kNoDataOrPass0,
  kNoDataOrPass1,
  kAlways,
};

struct TaskRow {
  const char* name;
  TaskHandler handler;
  PassRule rule;
  bool quotedFirst;
  bool needsArgs;  // false for tasks that take no argument text
};

constexpr int32_t kNumTasks = 44;
const TaskRow* TaskTable();
// Null for an unknown name; names are compared byte for byte.
const TaskRow* FindTask(const char* name);

// The task handler given to the script: `key` begins with "$", `data` is the pass number or null.
int32_t TaskDispatch(const char* key, const char* args, void* data);

// Whether the task acts now. Asserts "data" when a pass is needed and absent, "args" when the text is absent;
// the task does not act then.
bool TaskActsNow(const char* name, const char* args, const void* data);
// Arguments of a task by its row: quoted first or plain, fields trimmed, empty fields not seen.
std::vector<Str> TaskArgs(const char* name, const char* args);
// As TaskArgs; fewer than `least` arguments log LogUnknownArgs and give false.
[[nodiscard]] bool TaskArgs(const char* name, const char* args, size_t least, std::vector<Str>& fields);
// Argument i; empty when it is missing.
Str ArgAt(const std::vector<Str>& args, size_t i);
// The same with its variables filled: those that were not set yet when the line was read.
Str ExpandedArgAt(const std::vector<Str>& args, size_t i);
// The decimal number at the start of an argument; 0 without one.
int32_t ArgNumber(const Str& arg);
// Logs "  Task_<name>(name: <Name>, args: <Args>)".
void LogTaskEntry(const char* name, const char* args);
// Logs "The arguments for the task <TaskName> in Setup.inf are unknown."
void LogUnknownArgs(const char* name);
// "True"/"False"; anything else logs LogUnknownArgs and gives false.
[[nodiscard]] bool ParseTrueFalse(const char* name, const Str& text, bool& value);
// As ParseTrueFalse for an argument that may be left out: an empty one leaves `value`.
[[nodiscard]] bool ParseOptionalTrueFalse(const char* name, const Str& text, bool& value);
