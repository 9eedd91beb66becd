#pragma once
// The one place where low modules call upward. Start-up points these at the log, the resources and the
// reporter; tests swap them. Every default is harmless.

#include <cstdint>

class Str;

struct HookTable {
  // A failed assertion. Default: StandardAssertHandler.
  void (*assertFailed)(const char* text, const char* file, int line);
  // Writes a text to the log as a block framed by empty lines. Default: nothing.
  void (*logBlock)(const char* text);
  // Writes one line to the log. Default: nothing.
  void (*logLine)(const char* text);
  // Fetches a resource text unexpanded; false when there is none. Default: false.
  bool (*resourceText)(unsigned id, Str* text);
  // Fetches an application variable, expanded; false when unset. Default: false.
  bool (*variable)(const char* name, Str* value);
  // A read (`write` false) or write of the file layer failed; tells the user. Default: nothing.
  void (*fileIoFailed)(bool write);
  // Memory is exhausted (`code`: MemError) / a fatal error was reported: reports what is left to report,
  // cleans up and ends the process. Default: nothing, the caller then ends it.
  void (*memoryExhausted)(uint32_t code);
  void (*fatalError)();
};

// The hooks in force. Never null; each entry is always callable.
const HookTable& Hooks();

// Replaces all hooks and returns the former ones. Null entries become the default.
HookTable SetHooks(const HookTable& hooks);
