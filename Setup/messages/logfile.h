#pragma once
// The run's log. Every function does nothing while no log is open.
#include <cstdint>

#include "base/str.h"

struct SystemFacts {
  uint16_t versionMajor = 0;
  uint16_t versionMinor = 0;
  bool trueTypeAvailable = false;
  bool trueTypeEnabled = false;
  int32_t mode = 0;  // 3: enhanced
  int32_t horizRes = 0;
  int32_t vertRes = 0;
  int32_t horizPPI = 0;
  int32_t vertPPI = 0;
  bool atmInstalled = false;
  bool atmRunning = false;
  uint16_t atmMajor = 0;
  uint16_t atmMinor = 0;
};

// Opens "QLSetup.log" in TempDir, else WinDir. When it cannot be made asks whether to go on (silent: yes);
// false only when the user chose to stop. `ask` false never asks again.
[[nodiscard]] bool OpenSetupLog(bool ask = true);
// dirName + fileName; false when a log is open already or the file cannot be made.
bool OpenLog(const char* dirName, const char* fileName);
bool IsLogOpen();
// One line each; an error begins with "##ERROR: ". A null text writes nothing.
void LogLine(const char* text);
void LogError(const char* text);
// LogLine when something was `done`, LogError when it was not.
void LogOutcome(bool done, const char* text);
// A text between two empty lines.
void LogBlock(const char* text);
// Reports `text` as a failed assertion and logs it.
void LogAssert(const char* text);
// The line of an internal error, its number in hexadecimal; the line that follows is set in.
void LogInternalError(uint32_t code);
// The head of the log: product, Windows, screen, fonts.
void LogSystemInfo(const SystemFacts& facts);
// Closes the log and moves it to "<AppName><MajVersion>.log" in its folder; a name that still holds "<"
// leaves it where it is. False when no log is open or it could not be closed.
bool CloseAndRenameLog();
