#include "base/assert.h"

#include <windows.h>

#include <cstdarg>
#include <string>

#include "base/asserttext.h"
#include "base/hooks.h"
#include "base/minidump.h"
#include "base/runstate.h"
#include "base/str.h"

namespace {

constexpr unsigned kCaptionId = 2048;
constexpr unsigned kFormatId = 2049;
constexpr size_t kResourceTextSize = 500;  // bytes, terminator included
constexpr UINT kEndedByUser = 9;           // exit code

// The place of the check that failed last, and how many reports are under way.
const char* gFile = "";
int gLine = 0;
int gNesting = 0;

class NestingScope {
 public:
  NestingScope() { ++gNesting; }
  ~NestingScope() { --gNesting; }
  NestingScope(const NestingScope&) = delete;
  NestingScope& operator=(const NestingScope&) = delete;
};

// Callers look at the system's last error after a check, so reporting must not disturb it.
class LastErrorScope {
 public:
  LastErrorScope() : mError(GetLastError()) {}
  ~LastErrorScope() { SetLastError(mError); }
  LastErrorScope(const LastErrorScope&) = delete;
  LastErrorScope& operator=(const LastErrorScope&) = delete;

 private:
  DWORD mError;
};

const char* WithoutFolder(const char* path) {
  const char* name = path;
  for (const char* p = path; *p != '\0'; ++p) {
    if (*p == '\\' || *p == '/') name = p + 1;
  }
  return name;
}

void RunHandler(const char* text) { Hooks().assertFailed(text, gFile, gLine); }

std::string ResourceText(unsigned id, const char* fallback) {
  Str text;
  if (!Hooks().resourceText(id, &text)) return fallback;
  return std::string(text.View().substr(0, kResourceTextSize - 1));
}

bool IsQuitPending() {
  MSG message;
  return PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE) != FALSE;
}

void AskToGoOn(const std::string& message, const std::string& caption) {
  if (IsQuitPending()) {
    OutputDebugStringA("**** Assert during termination ****\n");
    return;
  }
  if (Run().IsQuiet()) return;
  // "System modal" is a top-most box on every Windows; the top-most flag alone is not honoured everywhere.
  const int answer =
      MessageBoxA(nullptr, message.c_str(), caption.c_str(), MB_YESNO | MB_ICONEXCLAMATION | MB_SYSTEMMODAL);
  if (answer == IDNO) ExitProcess(kEndedByUser);
}

void Report(const char* text, const char* file, int line) {
  const std::string caption = ResourceText(kCaptionId, "Assertion Failure!");
  std::string message = AssertMessage(ResourceText(kFormatId, ""), WithoutFolder(file), line, text);
  OutputDebugStringA(message.c_str());
  Hooks().logBlock(message.c_str());

  Str dumpPath;
  if (WriteMiniDump(dumpPath)) {
    Str note;
    note.Format("Minidump created at '%s'.\n", dumpPath.Chars());
    OutputDebugStringA(note);
    message += '\n';
    message += note.View();
  }
  AskToGoOn(message, caption);
}

}  // namespace

void AssertEntry(const char* text, const char* file, int line) {
  const LastErrorScope lastError;
  gFile = WithoutFolder(file);
  gLine = line;
  RunHandler(text);
}

void AssertFailed(const char* format, ...) {
  const LastErrorScope lastError;
  Str text;
  va_list args;
  va_start(args, format);
  text.VFormat(format, args);
  va_end(args);
  RunHandler(text);
}

void StandardAssertHandler(const char* text, const char* file, int line) {
  if (gNesting != 0) {
    OutputDebugStringA("**** nested calls to AssertFailed ****\n");
    if (IsDebuggerPresent()) DebugBreak();  // without a debugger a break would end the process
    return;
  }
  const NestingScope nesting;
  Report(text, file, line);
}
