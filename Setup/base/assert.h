#pragma once
// Assertions that stay active in the shipped program. A failed one is reported (debugger, log, minidump,
// question) and execution goes on: every caller continues with its own documented fall-back.

// Reports `text` when `cond` is false. The text is given apart from the condition because it is the program's
// behaviour (it reaches the log and the user), not the source's layout.
#define VT_ASSERT(cond, text) \
  (static_cast<bool>(cond) ? true : (AssertEntry(text, __FILE_NAME__, __LINE__), false))

// Reports `text` unconditionally.
#define VT_FAIL(text) AssertEntry(text, __FILE_NAME__, __LINE__)

// Records the place (the file's name without its folder) and runs the hooked assertion handler.
void AssertEntry(const char* text, const char* file, int line);

// Formats a printf-style message and runs the handler with it, at the place recorded last.
[[gnu::format(printf, 1, 2)]] void AssertFailed(const char* format, ...);

// The standard handler, installed in the hooks at program start: debugger output, log block, minidump, then a
// Yes/No box ("No" ends the process with exit code 9). Guards itself against nesting; in a silent run the
// answer is Yes.
void StandardAssertHandler(const char* text, const char* file, int line);
